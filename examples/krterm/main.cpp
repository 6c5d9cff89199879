// KRTERM [[FOLDER] HOST[:PORT]], a small terminal that transfers files and lets KRHAUL show it.
// Files that are received go into the folder. Everything runs on one thread, driven by messages.
//
//   main.cpp      the message loop
//   terminal.cpp  the window and its menu
//   line.cpp      the connection
//   telnet.cpp    TELNET: takes its commands out of what the host sends, and answers them
//   screen.cpp    what the terminal shows, by libvterm, and the lines that have scrolled away
//   view.cpp      draws that; keys, mouse, selection and clipboard
//   order.cpp     asks what is to be transferred, and tells it the host
//   transfer.cpp  a transfer with its status window
//   modem.h       XMODEM and YMODEM, a state machine: modem.cpp, receiver.cpp, sender.cpp
//   files.cpp     the local files
//
// From ../common come safename.cpp, which names of a host can become local files, unfinished.cpp, a
// file that is being received, and help.cpp.
#include "../common/help.h"
#include "terminal.h"
#include "transfer.h"

#include <stdlib.h>

namespace {

// The status window lives in the same loop: what it can use goes to it first.
void runLoop()
{
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        HWND hdlg = transferWindow();
        if (hdlg == nullptr || !IsDialogMessageA(hdlg, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int nShow)
{
    sample::useHelpBox();
    HWND hwnd = openTerminal(hInstance);
    if (hwnd == nullptr) {
        return 1;
    }
    ShowWindow(hwnd, nShow);
    if (__argc > 2) {
        SetCurrentDirectoryA(__argv[1]);
    }
    if (__argc > 1) {
        connectTerminal(__argv[__argc - 1]);
    } else {
        PostMessageA(hwnd, WM_COMMAND, IDM_CONNECT, 0);
    }
    runLoop();
    return 0;
}
