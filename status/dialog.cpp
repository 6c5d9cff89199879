#include "status/dialog.h"
#include "resources/ids.h"
#include "shared/help.h"
#include "shared/icon.h"
#include "shared/module.h"
#include "status/slots.h"
#include "status/tick.h"

namespace {

constexpr char ICON[] = "FileXferIcon";
constexpr int CORNER_MARGIN = 5;

// The owner of the help calls of all status windows: the parent of the newest one.
HWND s_hwndHelpOwner;

status::Creation* s_pInnermost;

void noteCreated(HWND hdlgStat)
{
    if (s_pInnermost != nullptr && s_pInnermost->hdlgStat == nullptr) {
        s_pInnermost->hdlgStat = hdlgStat;
    }
}

void moveToCorner(HWND hdlgStat)
{
    RECT rc;
    GetWindowRect(hdlgStat, &rc);
    int cx = rc.right - rc.left;
    MoveWindow(hdlgStat, GetSystemMetrics(SM_CXSCREEN) - cx - CORNER_MARGIN, CORNER_MARGIN, cx,
               rc.bottom - rc.top, TRUE);
}

INT_PTR onInitDialog(HWND hdlgStat, WPARAM, LPARAM lParam)
{
    auto pInit = reinterpret_cast<const status::DialogInit*>(lParam);
    if (pInit == nullptr) {
        return 1;
    }
    noteCreated(hdlgStat);
    s_hwndHelpOwner = pInit->hwndParent;
    if (LOWORD(pInit->dwFlags) != 0) {
        moveToCorner(hdlgStat);
    }
    if (HIWORD(pInit->dwFlags) != 0) {
        CloseWindow(hdlgStat);
    }
    SendDlgItemMessageA(hdlgStat, IDC_STAT_PARENT, LB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(pInit->hwndParent));
    return 1;
}

INT_PTR onTimer(HWND hdlgStat, WPARAM, LPARAM)
{
    XferStatTick(hdlgStat);
    return 1;
}

INT_PTR onHelp(HWND, WPARAM, LPARAM)
{
    shared::showHelp(s_hwndHelpOwner, XFERHELP_STATUS);
    return 1;
}

// Cancel and the caption button do nothing here: a caller that subclasses the window sees them.
INT_PTR onCommand(HWND hdlgStat, WPARAM wParam, LPARAM lParam)
{
    switch (LOWORD(wParam)) {
    case IDC_STAT_HELP:
        return onHelp(hdlgStat, wParam, lParam);
    case IDCANCEL:
    case IDC_STAT_BUTTON:
        return 1;
    default:
        return 0;
    }
}

INT_PTR onFocusParent(HWND, WPARAM, LPARAM)
{
    SetFocus(s_hwndHelpOwner);
    return 1;
}

// The slot stays taken until nXferStatDestroy.
INT_PTR onClose(HWND hdlgStat, WPARAM, LPARAM)
{
    DestroyWindow(hdlgStat);
    return 1;
}

INT_PTR onNcDestroy(HWND hdlgStat, WPARAM, LPARAM)
{
    for (auto* pCreation = s_pInnermost; pCreation != nullptr; pCreation = pCreation->pOuter) {
        pCreation->fClosed = pCreation->fClosed || pCreation->hdlgStat == hdlgStat;
    }
    status::noteClosed(hdlgStat);
    return 0;
}

INT_PTR onPaint(HWND hdlgStat, WPARAM, LPARAM)
{
    if (!IsIconic(hdlgStat)) {
        return 0;
    }
    shared::paintIconic(hdlgStat, ICON);
    return 1;
}

INT_PTR onEraseBackground(HWND hdlgStat, WPARAM, LPARAM)
{
    return IsIconic(hdlgStat) ? 1 : 0;
}

INT_PTR onQueryDragIcon(HWND, WPARAM, LPARAM)
{
    return reinterpret_cast<INT_PTR>(LoadIconA(g_hInstance, ICON));
}

} // namespace

INT_PTR CALLBACK fDlgXferStatProc(HWND hdlgStat, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_INITDIALOG:
        return onInitDialog(hdlgStat, wParam, lParam);
    case WM_TIMER:
        return onTimer(hdlgStat, wParam, lParam);
    case WM_COMMAND:
        return onCommand(hdlgStat, wParam, lParam);
    case WM_XFER_HELP:
        return onHelp(hdlgStat, wParam, lParam);
    case WM_XFERSTAT_FOCUSPARENT:
        return onFocusParent(hdlgStat, wParam, lParam);
    case WM_CLOSE:
        return onClose(hdlgStat, wParam, lParam);
    case WM_NCDESTROY:
        return onNcDestroy(hdlgStat, wParam, lParam);
    case WM_PAINT:
        return onPaint(hdlgStat, wParam, lParam);
    case WM_ERASEBKGND:
        return onEraseBackground(hdlgStat, wParam, lParam);
    case WM_QUERYDRAGICON:
        return onQueryDragIcon(hdlgStat, wParam, lParam);
    default:
        return 0;
    }
}

void status::beginCreation(Creation* pCreation)
{
    *pCreation = {nullptr, false, s_pInnermost};
    s_pInnermost = pCreation;
}

void status::endCreation(const Creation* pCreation)
{
    s_pInnermost = pCreation->pOuter;
}
