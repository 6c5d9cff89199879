#include "transfer/panes/rows.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "transfer/panes/drawing.h"

#include <string.h>

namespace {

constexpr LONG NOT_READ = -1;

// A message of the library on its way to a list.
struct OwnMessage {
    HWND hwndList;
    UINT uMessage;
    bool fArrived;
    OwnMessage* pOuter;
};
OwnMessage* s_pOwn;

LONG kindOfRow(HWND hwndList, LONG nRow)
{
    XferListItem item;
    return panes::readRecord(panes::recordOfRow(hwndList, nRow), &item) ? item.nKind : NOT_READ;
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

LRESULT insertDirRow(HWND hwndList, int idControl, const char* pszText, DWORD nIndent, LONG nKind)
{
    if (idControl == IDC_DANDD_HOSTDIRS && nIndent == panes::WORKDIR_INDENT) {
        return panes::sendToList(hwndList, LB_INSERTSTRING, panes::WORKDIR_ROW, pszText);
    }
    if (nKind != XFERITEM_CHILD) {
        return panes::sendToList(hwndList, LB_ADDSTRING, 0, pszText);
    }
    LONG nRow = panes::placeOfChild(hwndList, pszText, true);
    return panes::sendToList(hwndList, LB_INSERTSTRING, nRow, pszText);
}

// Gives a new row its record, or frees the record of a row that was refused, or whose window ended
// while the row came in.
bool attachRecord(const window::Ref& ref, HWND hwndList, UINT uSetData, LRESULT nRow,
                  HGLOBAL hRecord)
{
    if (nRow < 0 || !window::isAlive(ref)) {
        GlobalFree(hRecord);
        return false;
    }
    panes::sendToList(hwndList, uSetData, LONG(nRow), hRecord);
    return true;
}

} // namespace

LRESULT panes::sendToList(HWND hwndList, UINT uMessage, LONG nRow, const void* p)
{
    OwnMessage own = {hwndList, uMessage, false, s_pOwn};
    s_pOwn = &own;
    LRESULT nResult = SendMessageA(hwndList, uMessage, WPARAM(nRow), reinterpret_cast<LPARAM>(p));
    s_pOwn = own.pOuter;
    return nResult;
}

bool panes::isOwnMessage(HWND hwndList, UINT uMessage)
{
    if (s_pOwn == nullptr || s_pOwn->hwndList != hwndList || s_pOwn->uMessage != uMessage ||
        s_pOwn->fArrived) {
        return false;
    }
    s_pOwn->fArrived = true;
    return true;
}

bool panes::isEndOfLastRow(HWND hwndList, UINT uMessage)
{
    return uMessage == LB_RESETCONTENT && s_pOwn != nullptr && s_pOwn->hwndList == hwndList &&
           s_pOwn->uMessage == LB_DELETESTRING && s_pOwn->fArrived &&
           SendMessageA(hwndList, LB_GETCOUNT, 0, 0) <= 1;
}

void panes::cutToRow(char (&szText)[XFER_NAME_SIZE], const char* pszText)
{
    shared::copyText(szText, pszText, sizeof szText);
}

LONG panes::firstChildRow(HWND hwndList, LONG cRows)
{
    LONG n = 0;
    while (n < cRows && kindOfRow(hwndList, n) != XFERITEM_CHILD) {
        ++n;
    }
    return n;
}

LONG panes::placeOfChild(HWND hwndList, const char* pszName, bool fBehindEqual)
{
    auto cRows = LONG(sendToList(hwndList, LB_GETCOUNT));
    if (cRows <= 0) {
        return 0;
    }
    LONG nFirst = firstChildRow(hwndList, cRows);
    return nFirst == 0 ? scanForPlace(hwndList, cRows, pszName, fBehindEqual)
                       : bisectForPlace(hwndList, nFirst, cRows, pszName, fBehindEqual);
}

bool panes::isChildNamed(HWND hwndList, LONG nRow, const char* pszName)
{
    return kindOfRow(hwndList, nRow) == XFERITEM_CHILD && compareRow(hwndList, nRow, pszName) == 0;
}

int panes::readRowText(HWND hwndList, LONG nRow, char (&szText)[XFER_NAME_SIZE])
{
    szText[0] = '\0';
    LRESULT cch = panes::sendToList(hwndList, LB_GETTEXTLEN, nRow);
    if (cch == LB_ERR || cch > XFER_MAX_NAME) {
        return LB_ERR;
    }
    return int(panes::sendToList(hwndList, LB_GETTEXT, nRow, szText));
}

bool panes::readRow(HWND hwndList, LONG nRow, panes::Row* pRow)
{
    XferListItem item;
    if (panes::readRowText(hwndList, nRow, pRow->szText) == LB_ERR ||
        !readRecord(recordOfRow(hwndList, nRow), &item)) {
        return false;
    }
    pRow->nKind = item.nKind;
    pRow->cchPath = item.cchPath;
    return true;
}

int fXferDandDFindName(HWND hwndList, const char* pszName, LONG* pnRow)
{
    auto cRows = LONG(panes::sendToList(hwndList, LB_GETCOUNT));
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

bool panes::insertFileRow(XferWindowRecord* pRecord, HWND hwndList, LONG nRow, const char* pszName)
{
    suspendDrawing(pRecord, GetDlgCtrlID(hwndList));
    return sendToList(hwndList, LB_INSERTSTRING, nRow, pszName) >= 0;
}

bool panes::insertSubDir(const window::Ref& ref, HWND hwndList, LONG nRow, const char* pszText,
                         HGLOBAL hRecord)
{
    return hRecord != nullptr &&
           attachRecord(ref, hwndList, LB_SETITEMDATA,
                        sendToList(hwndList, LB_INSERTSTRING, nRow, pszText), hRecord);
}

int fXferDandDAddListItem(HWND hdlgDandD, int idControl, const char* pszText, panes::ListIcon nIcon,
                          DWORD nIndent, LONG nKind, DWORD cchPath)
{
    char szText[XFER_NAME_SIZE];
    HWND hwndList = GetDlgItem(hdlgDandD, idControl);
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    bool fDrives = idControl == IDC_DANDD_LOCALDRIVES;
    if (pRecord == nullptr ||
        (!fDrives && idControl != IDC_DANDD_HOSTDIRS && idControl != IDC_DANDD_LOCALDIRS)) {
        return 0;
    }
    window::Ref ref = window::refOf(pRecord);
    HGLOBAL hRecord = panes::makeRecord(nIcon, nIndent, fDrives ? 0 : nKind, fDrives ? 0 : cchPath);
    if (hRecord == nullptr) {
        return 0;
    }
    panes::cutToRow(szText, pszText);
    LRESULT nRow = fDrives ? panes::sendToList(hwndList, CB_ADDSTRING, 0, szText)
                           : insertDirRow(hwndList, idControl, szText, nIndent, nKind);
    return attachRecord(ref, hwndList, fDrives ? CB_SETITEMDATA : LB_SETITEMDATA, nRow, hRecord);
}

void panes::appendFileName(HWND hwndList, const char* pszName)
{
    sendToList(hwndList, LB_ADDSTRING, 0, pszName);
}

void panes::appendSubDir(HWND hdlgDandD, int idControl, const char* pszText, DWORD nIndent)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr) {
        insertSubDir(window::refOf(pRecord), GetDlgItem(hdlgDandD, idControl), -1, pszText,
                     makeRecord(ICON_CLOSEDFOLDER, nIndent, XFERITEM_CHILD, 0));
    }
}

int fXferDandDRemoveSubDir(HWND hdlgDandD, int idControl, const char* pszName)
{
    char szText[XFER_NAME_SIZE];
    HWND hwndList = GetDlgItem(hdlgDandD, idControl);
    panes::cutToRow(szText, pszName);
    LONG nRow = panes::placeOfChild(hwndList, szText, false);
    if (!panes::isChildNamed(hwndList, nRow, szText)) {
        return 0;
    }
    panes::deleteRow(hwndList, nRow);
    return 1;
}

void panes::deleteFileRow(XferWindowRecord* pRecord, HWND hwndList, LONG nRow)
{
    window::Ref ref = window::refOf(pRecord);
    bool fHeld = suspendDrawing(pRecord, GetDlgCtrlID(hwndList));
    sendToList(hwndList, WM_SETREDRAW, FALSE);
    sendToList(hwndList, LB_SETCARETINDEX, nRow);
    sendToList(hwndList, LB_DELETESTRING, nRow);
    if (!fHeld && window::isAlive(ref)) {
        sendToList(hwndList, WM_SETREDRAW, TRUE);
        InvalidateRect(hwndList, nullptr, FALSE);
    }
}

void panes::deleteRowsWithRecords(const XferWindowRecord* pRecord)
{
    window::Ref ref = window::refOf(pRecord);
    clearRows(ref, GetDlgItem(ref.hdlgDandD, IDC_DANDD_LOCALDIRS));
    if (window::isAlive(ref)) {
        clearRows(ref, GetDlgItem(ref.hdlgDandD, IDC_DANDD_HOSTDIRS));
    }
    if (!window::isAlive(ref)) {
        return;
    }
    HWND hwndDrives = GetDlgItem(ref.hdlgDandD, IDC_DANDD_LOCALDRIVES);
    for (auto n = LONG(sendToList(hwndDrives, CB_GETCOUNT)) - 1; n >= 0; --n) {
        LRESULT nData = sendToList(hwndDrives, CB_GETITEMDATA, n);
        sendToList(hwndDrives, CB_DELETESTRING, n);
        if (nData != CB_ERR && nData != 0) {
            GlobalFree(reinterpret_cast<HGLOBAL>(nData));
        }
    }
}
