// Help: one help file for all windows, a context id for each.
#ifndef SHARED_HELP_H
#define SHARED_HELP_H

#include "../include/krhaul.h"

// One of the XFERHELP_ numbers.
using XferHelpContext = DWORD;

// Opens the help file at a window's page.
void vXferShowHelp(HWND hwndOwner, XferHelpContext context);

// Opens the search of the help file.
void vXferSearchHelp(HWND hwndOwner);

#endif
