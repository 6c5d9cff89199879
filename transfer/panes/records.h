// The record that each row of a directory list or of the drive list carries, and its life.
#ifndef TRANSFER_PANES_RECORDS_H
#define TRANSFER_PANES_RECORDS_H

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

// The place and level of the working directory row in the host directory list, and the level of its
// subdirectories.
constexpr LONG WORKDIR_ROW = 1;
constexpr DWORD WORKDIR_INDENT = 1;
constexpr DWORD SUBDIR_INDENT = 2;

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

// A record in the hand of code that deletes its row. A list reports each row that goes to its
// owner, who can still read the record then, and who can also end the window: whatever deletes the
// same row meanwhile must leave the record alone.
struct HeldRecord {
    HGLOBAL hRecord;
    HeldRecord* pOuter;
};
void holdRecord(HeldRecord* pHeld, HGLOBAL hRecord);

// Ends the hold that began last. The record is still there.
void releaseRecord(HeldRecord* pHeld);

// Deletes a row of a list box, then frees its record, if it has one.
void deleteRow(HWND hwndList, LONG nRow);

// Deletes all rows of a list box with their records, until the window ends. One by one: the end of
// the window inside a message that deletes them all would leave the list with nothing to go on
// with.
void clearRows(const window::Ref& ref, HWND hwndList);

} // namespace panes

#endif
