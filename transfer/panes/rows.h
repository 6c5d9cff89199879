// The rows of the lists: the record that each row of a directory list or of the drive list
// carries, sorted insertion and search, and removal.
#ifndef TRANSFER_PANES_ROWS_H
#define TRANSFER_PANES_ROWS_H

#include "transfer/window/record.h"

enum ItemKind : LONG {
    XFERITEM_ROOT = 0,
    XFERITEM_ANCESTOR = 1,
    XFERITEM_CURRENT = 2,
    XFERITEM_CHILD = 3 // a subdirectory; only these are sorted, and removed by name
};

// One moveable block of the global heap, which belongs to its row: code that deletes the row
// frees the block.
struct XferListItem {
    HICON hIcon;
    DWORD nIndent; // levels
    LONG nKind;    // 0 in the drive list
    DWORD cchPath; // local root and ancestors: leading characters of szLocalDir that name them
};

namespace panes {

// Icons of the lists, in the order of g_listIcons.
enum ListIcon {
    ICON_OPENFOLDER,
    ICON_CLOSEDFOLDER,
    ICON_SELECTEDFOLDER,
    ICON_FLOPPYDRIVE,
    ICON_FIXEDDRIVE,
    ICON_CDROMDRIVE,
    ICON_NETDRIVE,
    ICON_RAMDRIVE,
    ICON_COUNT
};
extern HICON g_listIcons[ICON_COUNT];

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

// Appends a subdirectory row that is known to sort after all others.
void appendSubDir(HWND hdlgDandD, int idControl, const char* pszText, DWORD nIndent);

// Adds a file name in sorted place unless it is already there, and removes one.
void insertFileName(XferWindowRecord* pRecord, int idControl, const char* pszName);
void removeFileName(XferWindowRecord* pRecord, int idControl, const char* pszName);

// Frees the record of a row.
void freeRowRecord(HWND hwndList, LONG nRow);

// Deletes all rows of a list with their records.
void clearRows(HWND hwndList);

// Handles WM_DESTROY: deletes all rows that have records, while the controls still exist.
void releaseRows(HWND hdlgDandD);

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
