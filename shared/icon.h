// Painting of a minimised dialog on versions that show it as an icon.
#ifndef SHARED_ICON_H
#define SHARED_ICON_H

#include <windows.h>

namespace shared {

// Handles WM_PAINT of an iconic dialog by drawing one of the library's icons.
void paintIconic(HWND hdlg, const char* pszIcon);

} // namespace shared

#endif
