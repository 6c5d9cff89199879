#include "transfer/panes/records.h"
#include "transfer/panes/rows.h"

#include <stdlib.h>

HICON panes::g_listIcons[panes::ICON_COUNT];

namespace {

panes::HeldRecords* s_pHeld;

int compareHandles(const void* p1, const void* p2)
{
    HGLOBAL h1 = *static_cast<const HGLOBAL*>(p1);
    HGLOBAL h2 = *static_cast<const HGLOBAL*>(p2);
    return h1 < h2 ? -1 : h1 > h2;
}

} // namespace

HGLOBAL panes::makeRecord(ListIcon nIcon, DWORD nIndent, LONG nKind, DWORD cchPath)
{
    HGLOBAL hRecord = GlobalAlloc(GMEM_MOVEABLE, sizeof(XferListItem));
    auto pItem = static_cast<XferListItem*>(hRecord == nullptr ? nullptr : GlobalLock(hRecord));
    if (pItem == nullptr) {
        if (hRecord != nullptr) {
            GlobalFree(hRecord);
        }
        return nullptr;
    }
    *pItem = {g_listIcons[nIcon], nIndent, nKind, cchPath};
    GlobalUnlock(hRecord);
    return hRecord;
}

bool panes::readRecord(HGLOBAL hRecord, XferListItem* pItem)
{
    auto pFound =
        static_cast<const XferListItem*>(hRecord == nullptr ? nullptr : GlobalLock(hRecord));
    if (pFound == nullptr) {
        return false;
    }
    *pItem = *pFound;
    GlobalUnlock(hRecord);
    return true;
}

HGLOBAL panes::recordOfRow(HWND hwndList, LONG nRow)
{
    LRESULT nData = tellList(hwndList, LB_GETITEMDATA, nRow);
    return reinterpret_cast<HGLOBAL>(nData == LB_ERR ? 0 : nData);
}

// Sorted, so that many rows can be looked up.
void panes::holdRecords(HeldRecords* pHeld, HGLOBAL* phRecords, LONG cRecords)
{
    qsort(phRecords, size_t(cRecords), sizeof *phRecords, compareHandles);
    *pHeld = {phRecords, cRecords, s_pHeld};
    s_pHeld = pHeld;
}

void panes::releaseRecords(HeldRecords* pHeld)
{
    s_pHeld = pHeld->pOuter;
}

bool panes::isHeld(HGLOBAL hRecord)
{
    for (const HeldRecords* p = s_pHeld; p != nullptr; p = p->pOuter) {
        if (bsearch(&hRecord, p->phRecords, size_t(p->cRecords), sizeof hRecord, compareHandles) !=
            nullptr) {
            return true;
        }
    }
    return false;
}

void panes::deleteRow(HWND hwndList, LONG nRow)
{
    HeldRecords held;
    HGLOBAL hRecord = recordOfRow(hwndList, nRow);
    bool fOwned = hRecord != nullptr && !isHeld(hRecord);
    holdRecords(&held, &hRecord, fOwned ? 1 : 0);
    tellList(hwndList, LB_DELETESTRING, nRow);
    releaseRecords(&held);
    if (fOwned) {
        GlobalFree(hRecord);
    }
}

void panes::clearRows(HWND hwndList)
{
    for (auto n = LONG(tellList(hwndList, LB_GETCOUNT)) - 1; n >= 0; --n) {
        deleteRow(hwndList, n);
    }
}

void panes::resetRows(HWND hwndList)
{
    HeldRecords held;
    auto cRows = LONG(tellList(hwndList, LB_GETCOUNT));
    auto phRecords =
        static_cast<HGLOBAL*>(cRows <= 0 ? nullptr : malloc(size_t(cRows) * sizeof(HGLOBAL)));
    if (phRecords == nullptr) {
        clearRows(hwndList);
        return;
    }
    LONG cRecords = 0;
    for (LONG n = 0; n < cRows; ++n) {
        HGLOBAL hRecord = recordOfRow(hwndList, n);
        if (hRecord != nullptr && !isHeld(hRecord)) {
            phRecords[cRecords++] = hRecord;
        }
    }
    holdRecords(&held, phRecords, cRecords);
    tellList(hwndList, LB_RESETCONTENT);
    releaseRecords(&held);
    for (LONG n = 0; n < cRecords; ++n) {
        GlobalFree(phRecords[n]);
    }
    free(phRecords);
}
