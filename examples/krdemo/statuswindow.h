// The status window of a transfer.
#ifndef KRDEMO_STATUSWINDOW_H
#define KRDEMO_STATUSWINDOW_H

#include <windows.h>

#include <string>

namespace demo {

struct StatusLook {
    std::string title;
    std::string language;
    HWND owner;
    bool corner; // in the corner of the screen
    bool send;   // how its second file is called
};

// onButton is called when the user presses Stop, Close or Cancel.
bool openStatusWindow(const StatusLook& look, void (*onButton)());

// Shows a file and starts its figures.
void showFile(const char* from, const char* to, DWORD size, const std::string& status);
void showCount(DWORD bytes, DWORD failed);
void showFileEnd(const char* status);

// The last transfer is over: the window stays to be read.
void keepStatusWindow();
void closeStatusWindow();

// Null if there is none.
HWND statusWindow();

} // namespace demo

#endif
