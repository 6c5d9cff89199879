#include "layout/infoscroll.h"
#include "resources/ids.h"

namespace {

int sendInfoLine(HWND hdlgDandD, UINT uMessage)
{
    return int(SendDlgItemMessageA(hdlgDandD, IDC_DANDD_INFOLINE, uMessage, 0, 0));
}

int lineHeight(HWND hwndInfo)
{
    TEXTMETRICA metrics = {};
    HDC hdc = GetDC(hwndInfo);
    HGDIOBJ hfontOld =
        SelectObject(hdc, reinterpret_cast<HGDIOBJ>(SendMessageA(hwndInfo, WM_GETFONT, 0, 0)));
    GetTextMetricsA(hdc, &metrics);
    SelectObject(hdc, hfontOld);
    ReleaseDC(hwndInfo, hdc);
    return metrics.tmHeight + metrics.tmExternalLeading;
}

} // namespace

int nXferDandDInfoVisibleLines(HWND hdlgDandD)
{
    HWND hwndInfo = GetDlgItem(hdlgDandD, IDC_DANDD_INFOLINE);
    // GetDC takes a null window for the whole screen.
    if (hwndInfo == nullptr) {
        return 0;
    }
    RECT rc = {};
    SendMessageA(hwndInfo, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&rc));
    int cyLine = lineHeight(hwndInfo);
    return cyLine > 0 ? (rc.bottom - rc.top) / cyLine : 0;
}

int nXferDandDInfoLastTopLine(HWND hdlgDandD, int cLines)
{
    int cAll = cLines != 0 ? cLines : sendInfoLine(hdlgDandD, EM_GETLINECOUNT);
    int nTop = cAll - nXferDandDInfoVisibleLines(hdlgDandD);
    // A log that is too low for a single line can still be scrolled no further than to its last.
    nTop = nTop < cAll ? nTop : cAll - 1;
    return nTop < 0 ? 0 : nTop;
}

int fXferDandDInfoAtEnd(HWND hdlgDandD)
{
    if (GetFocus() == GetDlgItem(hdlgDandD, IDC_DANDD_INFOLINE)) {
        return 0;
    }
    return sendInfoLine(hdlgDandD, EM_GETFIRSTVISIBLELINE) >=
           nXferDandDInfoLastTopLine(hdlgDandD, 0);
}

void vXferDandDInfoScrollToEnd(HWND hdlgDandD, int cLines)
{
    int nDifference = nXferDandDInfoLastTopLine(hdlgDandD, cLines) -
                      sendInfoLine(hdlgDandD, EM_GETFIRSTVISIBLELINE);
    if (nDifference != 0) {
        SendDlgItemMessageA(hdlgDandD, IDC_DANDD_INFOLINE, EM_LINESCROLL, 0, nDifference);
    }
}
