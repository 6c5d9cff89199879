// The transfer window of the sample caller, and the three things that reach the caller through no
// callback: refresh, stop and close.
#ifndef KRDEMO_SESSION_H
#define KRDEMO_SESSION_H

#include "options.h"

namespace demo {

// Opens the transfer window on a local folder and on the host that is open. False if there is no
// such folder, or no window.
bool openSession(const std::string& localFolder, const std::string& language, HWND owner);
void closeSession();

// The transfer window; null once it has been closed. Its language.
HWND sessionWindow();
const std::string& sessionLanguage();

// Adds a line to its log.
void say(const std::string& line);

// Runs work with the window busy. onEnd comes before the window is idle again. False, with the
// reason said, if there is other work.
bool beginSessionWork(std::function<void(bool stopped)> onEnd = nullptr);

// What a transfer of its own needs to look like one.
void showWorkBegin();
void showWorkEnd(bool stopped);

} // namespace demo

#endif
