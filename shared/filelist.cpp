#include "shared/filelist.h"
#include "shared/block.h"
#include "shared/text.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr LONG FIRST_CAPACITY = 4;
constexpr LONG FIRST_GROWBY = 16;

// Size of a list with room for this number of rows, in bytes; 0 if that exceeds 32 bits.
SIZE_T cbOfList(LONG cRows)
{
    uint64_t cb = sizeof(XferFileListHeader) + uint64_t(cRows) * sizeof(shared::FileListRow);
    return cb > UINT32_MAX ? 0 : SIZE_T(cb);
}

void setRowsPointer(XferFileList list)
{
    list->pRows = reinterpret_cast<shared::FileListRow*>(list + 1);
}

bool isColumn(LONG nColumn)
{
    return nColumn >= 0 && nColumn < shared::XFERLIST_COLUMNS;
}

void clearCell(shared::FileListRow* pRow, LONG nColumn)
{
    if (pRow->types[nColumn] == shared::XFERCELL_STRING) {
        free(reinterpret_cast<void*>(pRow->values[nColumn]));
    }
    pRow->types[nColumn] = shared::XFERCELL_EMPTY;
    pRow->values[nColumn] = 0;
}

// Brings a cell into use and empties it. Returns its row, or null for a cell beyond the capacity:
// the list was passed by value, so it must not grow here and move.
shared::FileListRow* openCell(XferFileList list, LONG nRow, LONG nColumn)
{
    if (list == nullptr || nRow < 0 || nRow >= list->cCapacity || !isColumn(nColumn)) {
        return nullptr;
    }
    if (nRow >= list->cUsed) {
        list->cUsed = nRow + 1;
    }
    clearCell(&list->pRows[nRow], nColumn);
    return &list->pRows[nRow];
}

// The row of a cell that holds a value of this type, or null.
const shared::FileListRow* findCell(XferFileList list, LONG nRow, LONG nColumn,
                                    shared::CellType type)
{
    if (list == nullptr || nRow < 0 || nRow >= list->cUsed || !isColumn(nColumn)) {
        return nullptr;
    }
    return list->pRows[nRow].types[nColumn] == type ? &list->pRows[nRow] : nullptr;
}

// Reallocates the block for more rows, which are empty. On failure the list stays where it is. A
// lock that fails is found before the block can move: afterwards there would be no way back.
bool growTo(XferFileList* pList, LONG cRows)
{
    SIZE_T cb = cbOfList(cRows);
    HGLOBAL hBlock = GlobalHandle(*pList);
    if (cb == 0 || GlobalLock(hBlock) == nullptr) {
        return false;
    }
    GlobalUnlock(hBlock);
    GlobalUnlock(hBlock);
    LONG cOld = (*pList)->cCapacity;
    HGLOBAL hNew = GlobalReAlloc(hBlock, cb, GMEM_MOVEABLE | GMEM_ZEROINIT);
    auto list = static_cast<XferFileList>(GlobalLock(hNew != nullptr ? hNew : hBlock));
    if (hNew == nullptr || list == nullptr) {
        return false;
    }
    setRowsPointer(list);
    memset(&list->pRows[cOld], 0, SIZE_T(cRows - cOld) * sizeof(shared::FileListRow));
    list->cCapacity = cRows;
    *pList = list;
    return true;
}

void setUsed(XferFileList list, LONG cRows)
{
    if (cRows < list->cUsed) {
        XferFileListClearRows(list, cRows, list->cUsed - cRows);
    }
    list->cUsed = cRows;
}

} // namespace

int KRHAULAPI XferFileList_fCreate(XferFileList* pList)
{
    if (pList == nullptr) {
        return 0;
    }
    *pList = nullptr;
    auto list =
        static_cast<XferFileList>(shared::allocateBlock(GMEM_ZEROINIT, cbOfList(FIRST_CAPACITY)));
    if (list == nullptr) {
        return 0;
    }
    list->cCapacity = FIRST_CAPACITY;
    list->cGrowBy = FIRST_GROWBY;
    setRowsPointer(list);
    *pList = list;
    return 1;
}

void KRHAULAPI XferFileList_vDestroy(XferFileList list)
{
    if (list == nullptr) {
        return;
    }
    XferFileListClearRows(list, 0, list->cCapacity);
    shared::freeBlock(list);
}

int KRHAULAPI XferFileList_fSetSize(XferFileList* pList, LONG cRows, LONG cGrowBy)
{
    if (pList == nullptr || *pList == nullptr || cRows < 0) {
        return 0;
    }
    XferFileList list = *pList;
    LONG cGrow = cGrowBy == XFERLIST_KEEPGROWTH ? list->cGrowBy : cGrowBy;
    if (cRows <= list->cCapacity) {
        list->cGrowBy = cGrow;
        setUsed(list, cRows);
        return 1;
    }
    int64_t cGrown = int64_t(list->cCapacity) + cGrow;
    if (cGrown > INT32_MAX || !growTo(pList, cGrown > cRows ? LONG(cGrown) : cRows)) {
        return 0;
    }
    (*pList)->cGrowBy = cGrow;
    return 1;
}

LONG KRHAULAPI XferFileList_cGetSize(XferFileList list)
{
    return list == nullptr ? 0 : list->cUsed;
}

int KRHAULAPI XferFileList_vSetDWord(XferFileList list, LONG nRow, LONG nColumn, DWORD dwValue)
{
    shared::FileListRow* pRow = openCell(list, nRow, nColumn);
    if (pRow == nullptr) {
        return 0;
    }
    pRow->types[nColumn] = shared::XFERCELL_DWORD;
    pRow->values[nColumn] = dwValue;
    return 1;
}

DWORD KRHAULAPI XferFileList_nGetDWord(XferFileList list, LONG nRow, LONG nColumn)
{
    const shared::FileListRow* pRow = findCell(list, nRow, nColumn, shared::XFERCELL_DWORD);
    return pRow == nullptr ? 0 : pRow->values[nColumn];
}

int KRHAULAPI XferFileList_fSetString(XferFileList list, LONG nRow, LONG nColumn,
                                      const char* pszText)
{
    if (pszText == nullptr) {
        return 0;
    }
    shared::FileListRow* pRow = openCell(list, nRow, nColumn);
    if (pRow == nullptr) {
        return 0;
    }
    size_t cb = strlen(pszText) + 1;
    void* pCopy = malloc(cb);
    if (pCopy == nullptr) {
        return 0;
    }
    memcpy(pCopy, pszText, cb);
    pRow->types[nColumn] = shared::XFERCELL_STRING;
    pRow->values[nColumn] = reinterpret_cast<DWORD>(pCopy);
    return 1;
}

char* KRHAULAPI XferFileList_lpszGetString(XferFileList list, LONG nRow, LONG nColumn,
                                           char* pszBuffer, LONG cchBuffer)
{
    if (pszBuffer == nullptr || cchBuffer <= 0) {
        return nullptr;
    }
    pszBuffer[0] = '\0';
    const shared::FileListRow* pRow = findCell(list, nRow, nColumn, shared::XFERCELL_STRING);
    if (pRow != nullptr) {
        // strncpy clears the rest of the buffer; the copy over it cuts between two characters.
        auto pszText = reinterpret_cast<const char*>(pRow->values[nColumn]);
        strncpy(pszBuffer, pszText, size_t(cchBuffer));
        shared::copyText(pszBuffer, pszText, size_t(cchBuffer));
    }
    return pszBuffer;
}

int XferFileListCreateOne(XferFileList* pList, LONG nColumn, const char* pszText)
{
    if (!XferFileList_fCreate(pList)) {
        return 0;
    }
    if (XferFileList_fSetSize(pList, 1, XFERLIST_KEEPGROWTH) &&
        XferFileList_fSetString(*pList, 0, nColumn, pszText)) {
        return 1;
    }
    XferFileList_vDestroy(*pList);
    *pList = nullptr;
    return 0;
}

void XferFileListClearRows(XferFileList list, LONG nFirst, LONG cRows)
{
    for (LONG n = nFirst; n < nFirst + cRows; ++n) {
        for (LONG nColumn = 0; nColumn < shared::XFERLIST_COLUMNS; ++nColumn) {
            clearCell(&list->pRows[n], nColumn);
        }
    }
}
