// The rows of the lists: search, insertion in sorted place, and removal, each at once.
#ifndef TRANSFER_PANES_ROWS_H
#define TRANSFER_PANES_ROWS_H

#include "transfer/panes/records.h"
#include "transfer/window/record.h"

namespace panes {

constexpr DWORD HOST_SUBDIR_INDENT = 2;

// The text and record of a row of a directory list.
struct Row {
    char szText[XFER_NAME_SIZE];
    LONG nKind;
    DWORD cchPath;
};

// Reads a row of a list box. Returns false, with the output undefined, if there is no such row or
// it has no record.
bool readRow(HWND hwndList, LONG nRow, Row* pRow);

// Reads the text of a row. Returns its length, or LB_ERR with an empty text if there is no such
// row or the text doesn't fit into the buffer.
int readRowText(HWND hwndList, LONG nRow, char (&szText)[XFER_NAME_SIZE]);

// Sends a message to a list box. All messages of the library that change its rows go through
// this, so that they can be told from those of the caller.
LRESULT sendToList(HWND hwndList, UINT uMessage, LONG nRow = 0, const void* p = nullptr);

// Whether a message that a list receives now is the one that sendToList sends it. Asked once for
// each message.
bool isOwnMessage(HWND hwndList, UINT uMessage);

// Whether a message is the end of a list's last row: some platforms empty the list by a message
// when that row is deleted.
bool isEndOfLastRow(HWND hwndList, UINT uMessage);

// Appends a file name that is known to sort after all others.
void appendFileName(HWND hwndList, const char* pszName);

// Appends a subdirectory row that is known to sort after all others.
void appendSubDir(HWND hdlgDandD, int idControl, const char* pszText, DWORD nIndent);

// Inserts a row before another one, or at the end for -1. Returns false with nothing inserted if
// the list refuses it. A subdirectory takes over its record, which is freed if it is refused; with
// null, for which there was no memory, it isn't inserted.
bool insertFileRow(XferWindowRecord* pRecord, HWND hwndList, LONG nRow, const char* pszName);
bool insertSubDir(const window::Ref& ref, HWND hwndList, LONG nRow, const char* pszText,
                  HGLOBAL hRecord);

// Takes a row out of a file list. The caret goes to it first, and nothing is drawn in between.
void deleteFileRow(XferWindowRecord* pRecord, HWND hwndList, LONG nRow);

// A text as the rows hold it. No buffer that a row is read into is longer.
void cutToRow(char (&szText)[XFER_NAME_SIZE], const char* pszText);

// The first child row that sorts after a name, or doesn't sort before it if fBehindEqual is
// false. Returns the number of rows if there is none.
LONG placeOfChild(HWND hwndList, const char* pszName, bool fBehindEqual);

// The first of the child rows, or the number of rows. The rows above them are few.
LONG firstChildRow(HWND hwndList, LONG cRows);

// Whether a row is a child row of that name.
bool isChildNamed(HWND hwndList, LONG nRow, const char* pszName);

// Handles WM_DESTROY: deletes all rows that have records, while the controls still exist.
void deleteRowsWithRecords(const XferWindowRecord* pRecord);

} // namespace panes

// Binary search in a list in the order of lstrcmpA. Returns 1 and the row of the name, or 0 and
// the position for LB_INSERTSTRING: the row before which it goes, or -1 for the end.
int fXferDandDFindName(HWND hwndList, const char* pszName, LONG* pnRow);

// Adds a row with its record to one of the directory lists or the drive list; child rows go to
// their sorted position, behind equal names. Returns 1, or 0 with nothing added.
int fXferDandDAddListItem(HWND hdlgDandD, int idControl, const char* pszText, panes::ListIcon nIcon,
                          DWORD nIndent, LONG nKind, DWORD cchPath);

// Removes the first child row of that name, with its record. Returns 1, or 0 if there is none.
int fXferDandDRemoveSubDir(HWND hdlgDandD, int idControl, const char* pszName);

#endif
