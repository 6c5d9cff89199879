// What follows a drag or the transfer command: the target directory, the list of names and the
// callback.
#ifndef TRANSFER_DRAGDROP_DROP_H
#define TRANSFER_DRAGDROP_DROP_H

#include "transfer/window/request.h"

void vXferDandDDropOn(XferWindowRecord* pRecord, int idSource, int idTarget, Direction direction,
                      bool fOnDirList);

// Returns 1, also when nothing was selected, or 0 if the caller has no callback, the directory
// can't be entered or the list can't be made. *pList is the list that was passed to the caller; it
// is not ours any more.
int fXferDandDTransferSelection(XferWindowRecord* pRecord, int idSource, Direction direction,
                                XferFileList* pList, const char* pszDir);

namespace dragdrop {

// Makes a list of the names of the selected rows, in one column, and then records each name as
// nAction, unless that is 0. Returns false, with no list and *pList 0, if a name can't be read,
// memory is short or the window has ended.
bool listSelection(const XferWindowRecord* pRecord, int idSource, LONG nColumn, int nAction,
                   XferFileList* pList);

} // namespace dragdrop

#endif
