// The record that each row of a directory list or of the drive list carries, and its life.
#ifndef TRANSFER_PANES_RECORDS_H
#define TRANSFER_PANES_RECORDS_H

#include <windows.h>

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

// Returns null if there is no memory.
HGLOBAL makeRecord(ListIcon nIcon, DWORD nIndent, LONG nKind, DWORD cchPath);

// Copies a record. Returns false if there is none.
bool readRecord(HGLOBAL hRecord, XferListItem* pItem);

// The record of a row of a list box, or null.
HGLOBAL recordOfRow(HWND hwndList, LONG nRow);

// Records in the hand of code that deletes their rows. A list reports each row that goes to its
// owner, who can still read the record then, and who can also end the window: whatever deletes
// the same rows meanwhile must leave these records alone.
struct HeldRecords {
    HGLOBAL* phRecords;
    LONG cRecords;
    HeldRecords* pOuter;
};
void holdRecords(HeldRecords* pHeld, HGLOBAL* phRecords, LONG cRecords);

// Ends the hold that began last. The records are still there.
void releaseRecords(HeldRecords* pHeld);

bool isHeld(HGLOBAL hRecord);

// Deletes a row of a list box, then frees its record, if it has one.
void deleteRow(HWND hwndList, LONG nRow);

// Deletes all rows of a list box with their records.
void clearRows(HWND hwndList);

// The same by one message. Without the memory for that it is clearRows.
void resetRows(HWND hwndList);

} // namespace panes

#endif
