#include "transfer/panes/records.h"
#include "shared/block.h"
#include "transfer/panes/rows.h"

HICON panes::g_listIcons[panes::ICON_COUNT];

namespace {

panes::HeldRecord* s_pHeld;

bool isHeld(HGLOBAL hRecord)
{
    const panes::HeldRecord* p = s_pHeld;
    while (p != nullptr && p->hRecord != hRecord) {
        p = p->pOuter;
    }
    return p != nullptr;
}

} // namespace

HGLOBAL panes::makeRecord(ListIcon nIcon, DWORD nIndent, LONG nKind, DWORD cchPath)
{
    auto pItem = static_cast<XferListItem*>(shared::allocateBlock(0, sizeof(XferListItem)));
    if (pItem == nullptr) {
        return nullptr;
    }
    *pItem = {g_listIcons[nIcon], nIndent, nKind, cchPath};
    HGLOBAL hRecord = GlobalHandle(pItem);
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
    LRESULT nData = sendToList(hwndList, LB_GETITEMDATA, nRow);
    return reinterpret_cast<HGLOBAL>(nData == LB_ERR ? 0 : nData);
}

void panes::holdRecord(HeldRecord* pHeld, HGLOBAL hRecord)
{
    *pHeld = {hRecord, s_pHeld};
    s_pHeld = pHeld;
}

void panes::releaseRecord(HeldRecord* pHeld)
{
    s_pHeld = pHeld->pOuter;
}

void panes::deleteRow(HWND hwndList, LONG nRow)
{
    HeldRecord held;
    HGLOBAL hRecord = recordOfRow(hwndList, nRow);
    bool fOwned = hRecord != nullptr && !isHeld(hRecord);
    holdRecord(&held, hRecord);
    sendToList(hwndList, LB_DELETESTRING, nRow);
    releaseRecord(&held);
    if (fOwned) {
        GlobalFree(hRecord);
    }
}

void panes::clearRows(const window::Ref& ref, HWND hwndList)
{
    for (auto n = LONG(sendToList(hwndList, LB_GETCOUNT)) - 1; n >= 0 && window::isAlive(ref);
         --n) {
        deleteRow(hwndList, n);
    }
}
