// Painting of the dialogs where the platform shows them as icons itself.
#ifndef SHARED_ICON_H
#define SHARED_ICON_H

#include <windows.h>

// Answers WM_PAINT of an iconic dialog with one of the library's icons.
void XferPaintIconic(HWND hdlg, const char* pszIcon);

#endif
