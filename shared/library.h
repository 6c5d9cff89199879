// The library's own module: set once when the library is attached, and the place where icons,
// cursors and the bitmap come from. Dialogs and strings come from language modules.
#ifndef SHARED_LIBRARY_H
#define SHARED_LIBRARY_H

#include <windows.h>

extern HINSTANCE g_hInstance;

#endif
