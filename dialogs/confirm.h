// The confirmation flags, which live with the caller.
#ifndef DIALOGS_CONFIRM_H
#define DIALOGS_CONFIRM_H

#include "../transfer/record.h"

// Asks the caller, in whose callback the window can die. Where the caller keeps no flags, the
// user is asked each time.
DWORD dwXferDandDConfirmFlags(const XferWindowRecord* pRecord);

#endif
