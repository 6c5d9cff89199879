// Keys of the keyboard that work in the lists of the transfer window.
#ifndef KRDEMO_KEYS_H
#define KRDEMO_KEYS_H

#include <windows.h>

namespace demo {

constexpr UINT IDM_PARENT = 0x7001; // the directory above, on the side that has the focus

// True if the message was a key for the window, which may be null, and has been handled.
bool isKey(HWND window, MSG* msg);

// Shows the directory above in the window.
void enterParent(HWND window);

} // namespace demo

#endif
