// Files moved between a local folder and a directory of the host, one by one, with a status
// window. A file appears under its own name only when it is whole, on either side.
#ifndef KRDEMO_TRANSFER_H
#define KRDEMO_TRANSFER_H

#include "host.h"

#include <vector>

namespace demo {

struct MovedFile {
    std::string local; // where it is, a name or a path; where it goes to, a plain name
    std::string host;  // as it is shown
    std::string bytes; // as the host knows it; empty if the host has no such characters
    DWORD size = 0;    // 0 if it isn't known
};

struct Transfer {
    std::string title;
    bool send = false;
    std::string localFolder; // received files go there; names to be sent are relative to it
    std::string hostDir;     // in bytes
    int type = 0;            // one of the XFERTYPE_ values
    bool askBeforeReplace = false;
    bool inCorner = false;   // where the status window stands
    bool keepWindow = false; // it stays at the end, to be read
    bool isCopy = false;     // received under names of their own, to be looked at
    HWND owner = nullptr;
    std::string language;
    std::vector<MovedFile> files;
    std::function<void(DWORD done, DWORD all)> onProgress;
    // A file has arrived, or hasn't, for a reason.
    std::function<void(const MovedFile& file, DWORD size, const std::string& failure)> onFile;
    std::function<void(bool stopped)> onEnd;
};

// Starts it. False if there is other work, or no status window.
bool startTransfer(Transfer&& transfer);

} // namespace demo

#endif
