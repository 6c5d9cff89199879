// Help: one help file for all windows, with a context id for each.
#ifndef SHARED_HELP_H
#define SHARED_HELP_H

#include <windows.h>

enum HelpContext : DWORD {
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

namespace shared {

// Opens the help file at the page of a window.
void showHelp(HWND hwndOwner, HelpContext context);

// Opens the search of the help file.
void searchHelp(HWND hwndOwner);

} // namespace shared

#endif
