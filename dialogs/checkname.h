// The tests of a local name before a transfer.
#ifndef DIALOGS_CHECKNAME_H
#define DIALOGS_CHECKNAME_H

#include "dialogs/engine.h"

// Whether a local file can be sent, and be received onto. Both show the reason if not. The dialog
// can be gone afterwards.
bool fXferDandDCheckSource(const dialogs::Dialog* pDialog, const char* pszName);
bool fXferDandDCheckTarget(const dialogs::Dialog* pDialog, const char* pszName);

#endif
