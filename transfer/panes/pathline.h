// Enter and double clicks in the panes, and how the local side follows a typed text.
#ifndef TRANSFER_PANES_PATHLINE_H
#define TRANSFER_PANES_PATHLINE_H

#include "transfer/panes/rows.h"

// Enter or a double click in a control. Returns 1 if it means something to that control.
int fXferDandDActivate(HWND hdlgDandD, XferWindowRecord* pRecord, HWND hwndControl);
void vXferDandDApplyLocalFilter(HWND hdlgDandD);

namespace panes {

// The path of an ancestor row of the local directory list.
void ancestorPath(const XferWindowRecord* pRecord, const Row* pRow, char (&szPath)[XFER_NAME_SIZE]);

// Writes to the log that a local file or directory can't be accessed. Only cchFormat characters of
// the format are used, at most 80.
void reportLocalFailure(HWND hdlgDandD, const XferWindowRecord* pRecord, const char* pszName,
                        int cchFormat);

} // namespace panes

#endif
