// The rows of the lists: the record that each row of a directory list or of the drive list
// carries, sorted insertion and search, removal, and the width of the file lists' columns.
#ifndef TRANSFER_ROWS_H
#define TRANSFER_ROWS_H

#include "record.h"

enum XferItemKind : LONG {
    XFERITEM_ROOT = 0,
    XFERITEM_ANCESTOR = 1,
    XFERITEM_CURRENT = 2,
    XFERITEM_CHILD = 3 // a subdirectory: alone of these sorted, and removed by name
};

// One moveable block of the global heap, which belongs to its row: whoever deletes the row
// frees the block.
struct XferListItem {
    HICON hIcon;
    DWORD nIndent; // levels
    LONG nKind;    // 0 in the drive list
    DWORD cchPath; // local root and ancestors: leading characters of szLocalDir that name them
};

// What a row of a directory list says of itself.
struct XferRow {
    char szText[XFER_NAME_SIZE];
    LONG nKind;
    DWORD cchPath;
};

// Reads a row of a list box. Gives false, with nothing promised of the output, if there is no
// such row or it has no record.
bool fXferDandDReadRow(HWND hwndList, LONG nRow, XferRow* pRow);

// Reads the text of a row. Gives its length, or LB_ERR with an empty text if there is no such
// row or the buffer can't hold it whole.
int nXferDandDRowText(HWND hwndList, LONG nRow, char (&szText)[XFER_NAME_SIZE]);

// Binary search in a list in the order of lstrcmpA. Gives 1 and the row of the name, or 0 and
// the place for LB_INSERTSTRING: the row before which it goes, or -1 for the end.
int fXferDandDFindName(HWND hwndList, const char* pszName, LONG* pnRow);

// Adds a row with its record to one of the directory lists or the drive list; child rows go to
// their sorted place, behind equal names. Gives 1, or 0 with nothing added.
int fXferDandDAddListItem(HWND hdlgDandD, int idControl, const char* pszText, XferListIcon nIcon,
                          DWORD nIndent, LONG nKind, DWORD cchPath);

// Appends a child row that is known to sort behind all others.
void vXferDandDAppendChild(HWND hdlgDandD, int idControl, const char* pszText, DWORD nIndent);

// Removes the first child row of that name, with its record. Gives 1, or 0 if there is none.
int fXferDandDRemoveSubDir(HWND hdlgDandD, int idControl, const char* pszName);

// hold.cpp: for a change of a list. In a busy state a host list isn't drawn from the first
// change on, until the message loop runs or the busy state ends. Gives whether that is so.
bool fXferDandDHoldList(XferWindowRecord* pRecord, int idControl);
void vXferDandDShowLists(XferWindowRecord* pRecord);

// Inserts a name into a file list unless it is there. Removes one if it is there.
void vXferDandDInsertFileName(XferWindowRecord* pRecord, int idControl, const char* pszName);
void vXferDandDRemoveFileName(XferWindowRecord* pRecord, int idControl, const char* pszName);

// Frees the record of a row, and takes all rows of a list away with their records.
void vXferDandDFreeRowRecord(HWND hwndList, LONG nRow);
void vXferDandDClearRows(HWND hwndList);

// Makes the columns of a file list as wide as its widest name.
void vXferDandDSetColumnWidth(XferWindowRecord* pRecord, int idControl);

#endif
