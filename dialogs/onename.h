// The dialog that asks for one name and a side: for a directory to make, to remove or to change
// to, a file to view, and files to delete.
#ifndef DIALOGS_ONENAME_H
#define DIALOGS_ONENAME_H

#include "dialogs/engine.h"

namespace dialogs {

// What all these dialogs do. At OK, pfnLocal or pfnHost does the work for the side that is chosen.
void initOneName(const Dialog* pDialog);
bool acceptOneName(const Dialog* pDialog);
void cancelOneName(const Dialog* pDialog);
void oneNameChanged(const Dialog* pDialog, WORD nNotification);

// The row of such a dialog.
constexpr Kind oneName(HelpContext context, int idName, int idHelp,
                       bool (*pfnLocal)(const Dialog* pDialog, const char* pszName),
                       void (*pfnHost)(const XferWindowRecord* pRecord, const char* pszName))
{
    Kind kind = {};
    kind.context = context;
    kind.idHelp = idHelp;
    kind.pfnInit = initOneName;
    kind.pfnAccept = acceptOneName;
    kind.pfnCancel = cancelOneName;
    kind.idWatched = idName;
    kind.pfnNotify = oneNameChanged;
    kind.pfnLocal = pfnLocal;
    kind.pfnHost = pfnHost;
    return kind;
}

} // namespace dialogs

#endif
