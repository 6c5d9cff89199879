// The confirmation flags, which live with the caller.
#ifndef DIALOGS_CONFIRM_H
#define DIALOGS_CONFIRM_H

#include "../transfer/record.h"

// Those without LOCALDELETE and LOCALRMDIR have no reader but the caller.
enum XferConfirmFlag : DWORD {
    XFERCONFIRM_LOCALREPLACE = 1,
    XFERCONFIRM_LOCALDELETE = 2,
    XFERCONFIRM_LOCALRMDIR = 4,
    XFERCONFIRM_HOSTDELETE = 8,
    XFERCONFIRM_HOSTREPLACE = 16
};

// Asks the caller, in whose callback the window can die. Where the caller keeps no flags, the
// user is asked each time.
DWORD dwXferDandDConfirmFlags(const XferWindowRecord* pRecord);

#endif
