// Help: one help file for all windows, a context id for each.
#ifndef SHARED_HELP_H
#define SHARED_HELP_H

#include <windows.h>

enum XferHelpContext : DWORD {
    XFERHELP_VIEW = 801,
    XFERHELP_CHANGEDIR = 802,
    XFERHELP_TRANSFER = 812,
    XFERHELP_DELETE = 813,
    XFERHELP_RENAME = 814,
    XFERHELP_COPY = 815,
    XFERHELP_MAKEDIR = 816,
    XFERHELP_REMOVEDIR = 817,
    XFERHELP_CONFIRM = 818,
    XFERHELP_STATUS = 990,
};

// Opens the help file at a window's page.
void vXferShowHelp(HWND hwndOwner, XferHelpContext context);

// Opens the search of the help file.
void vXferSearchHelp(HWND hwndOwner);

#endif
