// Language modules, and the message box for errors of the system. The exported calls are in
// krhaul.h.
#ifndef SHARED_LANGUAGE_H
#define SHARED_LANGUAGE_H

#include "include/krhaul.h"

// The language of creation calls that take no language code.
constexpr char XFER_DEFAULT_LANGUAGE[] = "EN";

// Loads "XFR" + code + ".DLL". Returns the module, or 0, also for a code that is null or longer
// than 12 characters.
HMODULE XferLoadLanguageModule(const char* pszLanguage);

namespace shared {

// Shows the message box for a window that can't be created.
void showNoResources(HMODULE hLanguage, HWND hwndParent);

} // namespace shared

// Shows the system's text for an error code, in the user's language or, if the system has no texts
// in it, in another. Returns the result of MessageBoxA, or 1, with no box shown, if the system has
// no text for the code.
int XferSystemErrorBox(HWND hwndOwner, DWORD dwError, UINT uStyle);

#endif
