#include "transfer/dialog.h"
#include "resources/ids.h"
#include "shared/help.h"
#include "shared/icon.h"
#include "shared/module.h"
#include "transfer/commands/commands.h"
#include "transfer/frame/hints.h"
#include "transfer/frame/strip.h"
#include "transfer/init.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/drawing.h"
#include "transfer/panes/drawitem.h"
#include "transfer/panes/rows.h"

namespace {

constexpr char ICON[] = "XferDandDIcon";
constexpr int LEAST_ITEM_HEIGHT = 16;
constexpr LPARAM SECOND_POPUP = 1; // not a system menu, at position 1

INT_PTR onSize(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam)
{
    if (wParam == SIZE_MINIMIZED) {
        pRecord->fMinimized = 1;
        return 0;
    }
    if (wParam == SIZE_RESTORED) {
        pRecord->fMinimized = 0;
    }
    window::Ref ref = window::refOf(pRecord);
    vXferDandDStripRect(hdlgDandD, pRecord);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_TOOLBAR, WM_SIZE, wParam, lParam);
    if (window::isAlive(ref)) {
        vXferDandDApplyLayout(hdlgDandD, &pRecord->layout, pRecord->nViewMode != 0);
    }
    return 0;
}

INT_PTR onPaint(HWND hdlgDandD, XferWindowRecord*, WPARAM, LPARAM)
{
    if (!IsIconic(hdlgDandD)) {
        vXferDandDPaintStrip(hdlgDandD);
        return 0;
    }
    shared::paintIconic(hdlgDandD, ICON);
    return 1;
}

INT_PTR onEraseBackground(HWND hdlgDandD, XferWindowRecord*, WPARAM, LPARAM)
{
    return IsIconic(hdlgDandD) ? 1 : 0;
}

// An iconic window stays an icon when its parent comes back.
INT_PTR onShowWindow(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM, LPARAM lParam)
{
    if (LOWORD(lParam) == SW_PARENTOPENING && pRecord->fMinimized) {
        ShowWindow(hdlgDandD, SW_MINIMIZE);
    }
    return 0;
}

INT_PTR onSetCursor(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM, LPARAM lParam)
{
    WORD nHit = LOWORD(lParam);
    if (!pRecord->fBusy || (nHit != HTCLIENT && nHit != HTCAPTION && nHit != HTMENU)) {
        return 0;
    }
    SetCursor(pRecord->hcurBusy);
    SetWindowLongA(hdlgDandD, DWL_MSGRESULT, 1);
    return 1;
}

INT_PTR onDrawItem(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM, LPARAM lParam)
{
    vXferDandDDrawListItem(hdlgDandD, pRecord, reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    return 1;
}

INT_PTR onQueryDragIcon(HWND, XferWindowRecord*, WPARAM, LPARAM)
{
    return reinterpret_cast<INT_PTR>(LoadIconA(g_hInstance, ICON));
}

// The controls still exist here, and with them the rows that have records.
INT_PTR onDestroy(HWND, XferWindowRecord* pRecord, WPARAM, LPARAM)
{
    panes::forgetChanges(pRecord);
    panes::deleteRowsWithRecords(pRecord);
    return 0;
}

// The result 1 skips the dialog manager's own cleanup, which frees the dialog's font. So it is
// called from here.
INT_PTR onNcDestroy(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam)
{
    panes::forgetChanges(pRecord);
    window::freeRecord(pRecord);
    DefDlgProcA(hdlgDandD, WM_NCDESTROY, wParam, lParam);
    return 1;
}

INT_PTR onCommand(HWND hdlgDandD, XferWindowRecord*, WPARAM wParam, LPARAM lParam)
{
    fXferDandDCommand(hdlgDandD, LOWORD(wParam), reinterpret_cast<HWND>(lParam), HIWORD(wParam));
    return 0;
}

// Copy and save need a selection in the log.
INT_PTR onInitMenuPopup(HWND hdlgDandD, XferWindowRecord*, WPARAM wParam, LPARAM lParam)
{
    if (lParam != SECOND_POPUP) {
        return 0;
    }
    DWORD nStart = 0;
    DWORD nEnd = 0;
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_INFOLINE, EM_GETSEL, reinterpret_cast<WPARAM>(&nStart),
                        reinterpret_cast<LPARAM>(&nEnd));
    UINT uState = nStart != nEnd ? MF_ENABLED : MF_GRAYED;
    auto hmenu = reinterpret_cast<HMENU>(wParam);
    EnableMenuItem(hmenu, IDM_XFER_COPY, uState);
    EnableMenuItem(hmenu, IDM_XFER_SAVESELECTION, uState);
    return 1;
}

INT_PTR onMenuSelect(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam)
{
    frame::showMenuHint(hdlgDandD, pRecord, wParam, lParam);
    return 0;
}

INT_PTR onHelp(HWND, XferWindowRecord* pRecord, WPARAM, LPARAM)
{
    shared::showHelp(XferHelpOwner(pRecord), XFERHELP_TRANSFER);
    return 1;
}

INT_PTR onShowHint(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM)
{
    frame::showButtonHint(hdlgDandD, pRecord, UINT(wParam));
    return 1;
}

INT_PTR onShowLists(HWND, XferWindowRecord* pRecord, WPARAM, LPARAM)
{
    panes::resumeDrawing(pRecord);
    return 1;
}

struct MessageRow {
    UINT uMessage;
    INT_PTR (*pfnHandle)(HWND, XferWindowRecord*, WPARAM, LPARAM);
};

// The messages of a window that has its record.
constexpr MessageRow MESSAGES[] = {
    {WM_SIZE, onSize},
    {WM_PAINT, onPaint},
    {WM_ERASEBKGND, onEraseBackground},
    {WM_SHOWWINDOW, onShowWindow},
    {WM_SETCURSOR, onSetCursor},
    {WM_DRAWITEM, onDrawItem},
    {WM_QUERYDRAGICON, onQueryDragIcon},
    {WM_DESTROY, onDestroy},
    {WM_NCDESTROY, onNcDestroy},
    {WM_COMMAND, onCommand},
    {WM_INITMENUPOPUP, onInitMenuPopup},
    {WM_MENUSELECT, onMenuSelect},
    {WM_XFER_HELP, onHelp},
    {WM_XFER_SHOWHINT, onShowHint},
    {panes::WM_XFER_SHOWLISTS, onShowLists},
};

bool isOwnerDrawn(UINT idControl)
{
    return idControl == IDC_DANDD_LOCALDIRS || idControl == IDC_DANDD_HOSTDIRS ||
           idControl == IDC_DANDD_LOCALDRIVES;
}

// Arrives while the controls are made, when the window has no record yet.
INT_PTR onMeasureItem(HWND hdlgDandD, LPARAM lParam)
{
    auto pMeasure = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
    if (!isOwnerDrawn(pMeasure->CtlID)) {
        return 0;
    }
    TEXTMETRICA metrics = {};
    HDC hdc = GetDC(hdlgDandD);
    GetTextMetricsA(hdc, &metrics);
    ReleaseDC(hdlgDandD, hdc);
    int cy = metrics.tmAscent + metrics.tmExternalLeading;
    g_nListItemHeight = cy < LEAST_ITEM_HEIGHT ? LEAST_ITEM_HEIGHT : cy;
    pMeasure->itemHeight = UINT(g_nListItemHeight);
    return 0;
}

// Only the creation of a window passes a record that has none yet.
INT_PTR onInitDialog(HWND hdlgDandD, LPARAM lParam)
{
    XferWindowRecord* pRecord = window::liveRecord(LONG(lParam));
    bool fNew = pRecord != nullptr && pRecord->hwndDialog == nullptr;
    return fNew ? fXferDandDInitDialog(hdlgDandD, pRecord) : 0;
}

} // namespace

INT_PTR CALLBACK fDlgXferDandDProc(HWND hdlgDandD, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_MEASUREITEM) {
        return onMeasureItem(hdlgDandD, lParam);
    }
    if (uMessage == WM_INITDIALOG) {
        return onInitDialog(hdlgDandD, lParam);
    }
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return 0;
    }
    for (const MessageRow& row : MESSAGES) {
        if (row.uMessage == uMessage) {
            return row.pfnHandle(hdlgDandD, pRecord, wParam, lParam);
        }
    }
    return 0;
}
