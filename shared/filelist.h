// The file list container: its block in memory, and the calls that only this library uses.
// The exported calls are in krhaul.h.
#ifndef SHARED_FILELIST_H
#define SHARED_FILELIST_H

#include "include/krhaul.h"

#include <stddef.h>

namespace shared {

enum CellType : DWORD { XFERCELL_EMPTY = 0, XFERCELL_STRING = 1, XFERCELL_DWORD = 2 };

constexpr LONG XFERLIST_COLUMNS = 2;

struct FileListRow {
    CellType types[XFERLIST_COLUMNS];
    DWORD values[XFERLIST_COLUMNS]; // the number, or the address of the list's own copy
};

} // namespace shared

// The head of the one block that is the list; the rows follow it. cUsed is at most
// cCapacity, and all cells from row cUsed up are empty.
struct XferFileListHeader {
    LONG cCapacity;
    LONG cUsed;
    LONG cGrowBy;
    shared::FileListRow* pRows; // set again whenever the block has moved
};

static_assert(sizeof(shared::FileListRow) == 16, "a row is four 32-bit words");
static_assert(offsetof(shared::FileListRow, types) == 0, "all types of a row come first");
static_assert(offsetof(shared::FileListRow, values) == 8, "all values follow the types");
static_assert(sizeof(XferFileListHeader) == 16, "the header is four 32-bit words");
static_assert(offsetof(XferFileListHeader, cCapacity) == 0, "the capacity comes first");
static_assert(offsetof(XferFileListHeader, cUsed) == 4, "the rows in use follow it");
static_assert(offsetof(XferFileListHeader, cGrowBy) == 8, "the growth follows them");
static_assert(offsetof(XferFileListHeader, pRows) == 12, "the address of the rows comes last");

// Makes a list of one row with a text in one column. Returns 1, or 0 with no list and *pList 0.
int XferFileListCreateOne(XferFileList* pList, LONG nColumn, const char* pszText);

// Empties the cells of some rows and frees their texts.
void XferFileListClearRows(XferFileList list, LONG nFirst, LONG cRows);

#endif
