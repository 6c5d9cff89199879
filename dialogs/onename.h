// A dialog that asks for one name and a side.
#ifndef DIALOGS_ONENAME_H
#define DIALOGS_ONENAME_H

#include "dialogs/engine.h"

namespace dialogs {

struct OneNameKind {
    HelpContext context;
    int idName;
    int idHelp;
    // Does the work. Returns false if the dialog stays open; the user has seen why.
    bool (*pfnLocal)(const Dialog* pDialog, const char* pszName);
    void (*pfnHost)(const Dialog* pDialog, const char* pszName);
    bool fClosesItself; // handles WM_CLOSE
};

INT_PTR handleOneNameMessage(const OneNameKind* pKind, HWND hdlg, UINT uMessage, WPARAM wParam,
                             LPARAM lParam);

} // namespace dialogs

#endif
