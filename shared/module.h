// The library's own module, from which icons, cursors and the toolbar bitmap are loaded. Dialogs
// and strings come from language modules instead.
#ifndef SHARED_MODULE_H
#define SHARED_MODULE_H

#include <windows.h>

// Set once, when the library is loaded.
extern HINSTANCE g_hInstance;

#endif
