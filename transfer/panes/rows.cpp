#include "transfer/panes/rows.h"
#include "resources/ids.h"
#include "transfer/panes/drawing.h"

#include <string.h>

HICON panes::g_listIcons[panes::ICON_COUNT];

namespace {

constexpr LONG NOT_READ = -1;
constexpr DWORD WORKDIR_INDENT = 1;
constexpr LONG WORKDIR_ROW = 1;

LRESULT tell(HWND hwnd, UINT uMessage, LONG nRow, const void* p = nullptr)
{
    return SendMessageA(hwnd, uMessage, WPARAM(nRow), reinterpret_cast<LPARAM>(p));
}

HGLOBAL makeItem(panes::ListIcon nIcon, DWORD nIndent, LONG nKind, DWORD cchPath)
{
    HGLOBAL hItem = GlobalAlloc(GMEM_MOVEABLE, sizeof(XferListItem));
    auto pItem = static_cast<XferListItem*>(hItem == nullptr ? nullptr : GlobalLock(hItem));
    if (pItem == nullptr) {
        if (hItem != nullptr) {
            GlobalFree(hItem);
        }
        return nullptr;
    }
    *pItem = {panes::g_listIcons[nIcon], nIndent, nKind, cchPath};
    GlobalUnlock(hItem);
    return hItem;
}

// Reads the record of a row. Gives false if it has none.
bool readItem(HWND hwndList, LONG nRow, XferListItem* pItem)
{
    LRESULT nData = tell(hwndList, LB_GETITEMDATA, nRow);
    auto hItem = reinterpret_cast<HGLOBAL>(nData);
    auto pFound =
        static_cast<XferListItem*>(nData == LB_ERR || nData == 0 ? nullptr : GlobalLock(hItem));
    if (pFound == nullptr) {
        return false;
    }
    *pItem = *pFound;
    GlobalUnlock(hItem);
    return true;
}

LONG kindOfRow(HWND hwndList, LONG nRow)
{
    XferListItem item;
    return readItem(hwndList, nRow, &item) ? item.nKind : NOT_READ;
}

// How a child row compares with a name; more than 0 also for a row that can't be read, so that
// a search ends there.
int compareRow(HWND hwndList, LONG nRow, const char* pszName)
{
    char szText[XFER_NAME_SIZE];
    return panes::readRowText(hwndList, nRow, szText) == LB_ERR ? 1 : lstrcmpA(szText, pszName);
}

// Whether a row lies before the place that is looked for: every row that sorts before the
// name, and those equal to it too if the place is behind them.
bool liesBefore(HWND hwndList, LONG nRow, const char* pszName, bool fBehindEqual)
{
    int nOrder = compareRow(hwndList, nRow, pszName);
    return nOrder < 0 || (nOrder == 0 && fBehindEqual);
}

// The first of the child rows. The rows above them are few.
LONG firstChildRow(HWND hwndList, LONG cRows)
{
    LONG n = 0;
    while (n < cRows && kindOfRow(hwndList, n) != XFERITEM_CHILD) {
        ++n;
    }
    return n;
}

// By scan, for a list in which other rows may stand between the child rows: one that the
// caller began to fill without clearing it first.
LONG scanForPlace(HWND hwndList, LONG cRows, const char* pszName, bool fBehindEqual)
{
    for (LONG n = 0; n < cRows; ++n) {
        LONG nKind = kindOfRow(hwndList, n);
        if (nKind == NOT_READ ||
            (nKind == XFERITEM_CHILD && !liesBefore(hwndList, n, pszName, fBehindEqual))) {
            return n;
        }
    }
    return cRows;
}

// By bisection: below its top rows a list has child rows only, in order.
LONG bisectForPlace(HWND hwndList, LONG nLow, LONG nHigh, const char* pszName, bool fBehindEqual)
{
    while (nLow < nHigh) {
        LONG nMiddle = nLow + (nHigh - nLow) / 2;
        if (liesBefore(hwndList, nMiddle, pszName, fBehindEqual)) {
            nLow = nMiddle + 1;
        } else {
            nHigh = nMiddle;
        }
    }
    return nLow;
}

LONG placeOfChild(HWND hwndList, const char* pszName, bool fBehindEqual)
{
    auto cRows = LONG(tell(hwndList, LB_GETCOUNT, 0));
    if (cRows <= 0) {
        return 0;
    }
    LONG nFirst = firstChildRow(hwndList, cRows);
    return nFirst == 0 ? scanForPlace(hwndList, cRows, pszName, fBehindEqual)
                       : bisectForPlace(hwndList, nFirst, cRows, pszName, fBehindEqual);
}

bool attachItem(HWND hwndList, UINT uSetData, UINT uDelete, LRESULT nRow, HGLOBAL hItem)
{
    if (hItem == nullptr) {
        tell(hwndList, uDelete, LONG(nRow));
        return false;
    }
    tell(hwndList, uSetData, LONG(nRow), hItem);
    return true;
}

LRESULT insertDirRow(HWND hwndList, int idControl, const char* pszText, DWORD nIndent, LONG nKind)
{
    if (idControl == IDC_DANDD_HOSTDIRS && nIndent == WORKDIR_INDENT) {
        return tell(hwndList, LB_INSERTSTRING, WORKDIR_ROW, pszText);
    }
    if (nKind != XFERITEM_CHILD) {
        return tell(hwndList, LB_ADDSTRING, 0, pszText);
    }
    return tell(hwndList, LB_INSERTSTRING, placeOfChild(hwndList, pszText, true), pszText);
}

// A text as the rows hold it. No buffer that a row is read into is longer.
void cutToRow(char (&szText)[XFER_NAME_SIZE], const char* pszText)
{
    lstrcpynA(szText, pszText == nullptr ? "" : pszText, XFER_NAME_SIZE);
}

} // namespace

int panes::readRowText(HWND hwndList, LONG nRow, char (&szText)[XFER_NAME_SIZE])
{
    szText[0] = '\0';
    LRESULT cch = tell(hwndList, LB_GETTEXTLEN, nRow);
    if (cch == LB_ERR || cch > XFER_MAX_NAME) {
        return LB_ERR;
    }
    return int(tell(hwndList, LB_GETTEXT, nRow, szText));
}

bool panes::readRow(HWND hwndList, LONG nRow, panes::Row* pRow)
{
    XferListItem item;
    if (panes::readRowText(hwndList, nRow, pRow->szText) == LB_ERR ||
        !readItem(hwndList, nRow, &item)) {
        return false;
    }
    pRow->nKind = item.nKind;
    pRow->cchPath = item.cchPath;
    return true;
}

int fXferDandDFindName(HWND hwndList, const char* pszName, LONG* pnRow)
{
    auto cRows = LONG(tell(hwndList, LB_GETCOUNT, 0));
    LONG nLow = 1;
    LONG nHigh = cRows;
    while (nLow <= nHigh) {
        LONG nMiddle = (nLow + nHigh) / 2;
        panes::readRowText(hwndList, nMiddle - 1, g_szScratch);
        int nOrder = lstrcmpA(pszName, g_szScratch);
        if (nOrder == 0) {
            *pnRow = nMiddle - 1;
            return 1;
        }
        if (nOrder < 0) {
            nHigh = nMiddle - 1;
        } else {
            nLow = nMiddle + 1;
        }
    }
    *pnRow = nLow > cRows ? -1 : nHigh;
    return 0;
}

int fXferDandDAddListItem(HWND hdlgDandD, int idControl, const char* pszText, panes::ListIcon nIcon,
                          DWORD nIndent, LONG nKind, DWORD cchPath)
{
    char szText[XFER_NAME_SIZE];
    HWND hwndList = GetDlgItem(hdlgDandD, idControl);
    cutToRow(szText, pszText);
    if (idControl == IDC_DANDD_LOCALDRIVES) {
        LRESULT nRow = tell(hwndList, CB_ADDSTRING, 0, szText);
        return nRow >= 0 && attachItem(hwndList, CB_SETITEMDATA, CB_DELETESTRING, nRow,
                                       makeItem(nIcon, nIndent, 0, 0));
    }
    if (idControl != IDC_DANDD_HOSTDIRS && idControl != IDC_DANDD_LOCALDIRS) {
        return 0;
    }
    LRESULT nRow = insertDirRow(hwndList, idControl, szText, nIndent, nKind);
    return nRow >= 0 && attachItem(hwndList, LB_SETITEMDATA, LB_DELETESTRING, nRow,
                                   makeItem(nIcon, nIndent, nKind, cchPath));
}

void panes::appendSubDir(HWND hdlgDandD, int idControl, const char* pszText, DWORD nIndent)
{
    HWND hwndList = GetDlgItem(hdlgDandD, idControl);
    LRESULT nRow = tell(hwndList, LB_INSERTSTRING, -1, pszText);
    if (nRow >= 0) {
        attachItem(hwndList, LB_SETITEMDATA, LB_DELETESTRING, nRow,
                   makeItem(panes::ICON_CLOSEDFOLDER, nIndent, XFERITEM_CHILD, 0));
    }
}

int fXferDandDRemoveSubDir(HWND hdlgDandD, int idControl, const char* pszName)
{
    char szText[XFER_NAME_SIZE];
    HWND hwndList = GetDlgItem(hdlgDandD, idControl);
    cutToRow(szText, pszName);
    LONG nRow = placeOfChild(hwndList, szText, false);
    if (kindOfRow(hwndList, nRow) != XFERITEM_CHILD || compareRow(hwndList, nRow, szText) != 0) {
        return 0;
    }
    panes::freeRowRecord(hwndList, nRow);
    tell(hwndList, LB_DELETESTRING, nRow);
    return 1;
}

void panes::insertFileName(XferWindowRecord* pRecord, int idControl, const char* pszName)
{
    char szName[XFER_NAME_SIZE];
    LONG nRow;
    HWND hwndList = GetDlgItem(pRecord->hwndDialog, idControl);
    cutToRow(szName, pszName);
    if (!fXferDandDFindName(hwndList, szName, &nRow)) {
        pRecord->fListsChanged = 1;
        panes::suspendDrawing(pRecord, idControl);
        tell(hwndList, LB_INSERTSTRING, nRow, szName);
    }
}

void panes::removeFileName(XferWindowRecord* pRecord, int idControl, const char* pszName)
{
    char szName[XFER_NAME_SIZE];
    LONG nRow;
    HWND hwndList = GetDlgItem(pRecord->hwndDialog, idControl);
    cutToRow(szName, pszName);
    if (fXferDandDFindName(hwndList, szName, &nRow)) {
        pRecord->fListsChanged = 1;
        bool fHeld = panes::suspendDrawing(pRecord, idControl);
        tell(hwndList, WM_SETREDRAW, FALSE);
        tell(hwndList, LB_SETCARETINDEX, nRow);
        tell(hwndList, LB_DELETESTRING, nRow);
        if (!fHeld) {
            tell(hwndList, WM_SETREDRAW, TRUE);
            InvalidateRect(hwndList, nullptr, FALSE);
        }
    }
}

void panes::freeRowRecord(HWND hwndList, LONG nRow)
{
    LRESULT nData = tell(hwndList, LB_GETITEMDATA, nRow);
    if (nData != LB_ERR && nData != 0) {
        GlobalFree(reinterpret_cast<HGLOBAL>(nData));
    }
}

void panes::clearRows(HWND hwndList)
{
    for (auto n = LONG(tell(hwndList, LB_GETCOUNT, 0)) - 1; n >= 0; --n) {
        panes::freeRowRecord(hwndList, n);
        tell(hwndList, LB_DELETESTRING, n);
    }
}

void panes::releaseRows(HWND hdlgDandD)
{
    panes::clearRows(GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDIRS));
    panes::clearRows(GetDlgItem(hdlgDandD, IDC_DANDD_HOSTDIRS));
    HWND hwndDrives = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDRIVES);
    for (auto n = LONG(tell(hwndDrives, CB_GETCOUNT, 0)) - 1; n >= 0; --n) {
        LRESULT nData = tell(hwndDrives, CB_GETITEMDATA, n);
        if (nData != CB_ERR && nData != 0) {
            GlobalFree(reinterpret_cast<HGLOBAL>(nData));
        }
        tell(hwndDrives, CB_DELETESTRING, n);
    }
}
