// The size for which a dialog template is made.
#ifndef LAYOUT_TEMPLATESIZE_H
#define LAYOUT_TEMPLATESIZE_H

#include <windows.h>

namespace layout {

// The client area that the template asks for, in pixels of a dialog that was created from it.
// Returns false if there is no such template in the module that the dialog was created from.
bool templateClient(HWND hdlg, const char* pszTemplate, RECT* prcClient);

} // namespace layout

#endif
