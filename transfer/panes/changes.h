// Names that come to a list and go from it. In the busy state they come and go in long runs: they
// wait here, and reach the list together, as soon as anybody sends the list a message.
#ifndef TRANSFER_PANES_CHANGES_H
#define TRANSFER_PANES_CHANGES_H

#include "transfer/window/record.h"

namespace panes {

// What a name does to its list. A file name that is there already isn't added; a subdirectory
// that is there gives its row to a new one.
enum Change : LONG { CHANGE_ADD, CHANGE_REMOVE };

// Changes a file list or the host directory list. The names of a file list are compared whole, and
// cut to the length that a row can have.
void changeList(XferWindowRecord* pRecord, int idControl, const char* pszName, Change change);

// The same with nothing left waiting. The name has the length of a row.
void changeListAtOnce(XferWindowRecord* pRecord, int idControl, const char* pszName, Change change);

// Makes the changes that wait. Returns false if the window ended meanwhile.
bool applyChanges(XferWindowRecord* pRecord);

// Called by the window procedure of a list before it handles a message or passes it on: makes the
// changes that wait for this list, so that the message meets the rows that there have to be.
// Returns false if the window ended meanwhile; the message has nobody to go to then.
bool prepareList(XferWindowRecord* pRecord, HWND hwndList, UINT uMessage);

// The lists of the panes, in the order of XferWindowRecord::paneLists. Returns their number if a
// control is none of them.
int paneListIndex(int idControl);

// Frees what waits at the end of a window.
void forgetChanges(XferWindowRecord* pRecord);

} // namespace panes

#endif
