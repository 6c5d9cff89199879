// Help: one help file for all windows, with a context id for each.
#ifndef SHARED_HELP_H
#define SHARED_HELP_H

#include "include/krhaul.h"

// One of the XFERHELP_ numbers.
using HelpContext = DWORD;

namespace shared {

// Opens the help file at the page of a window.
void showHelp(HWND hwndOwner, HelpContext context);

// Opens the search of the help file.
void searchHelp(HWND hwndOwner);

} // namespace shared

#endif
