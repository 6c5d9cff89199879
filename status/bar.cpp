// The progress bar: its text changes colour where the fill edge crosses it.
#include "status/dialog.h"
#include "resources/ids.h"

#include <math.h>

namespace {

constexpr int TEXT_TOP = 2;
constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr COLORREF BLACK = RGB(0, 0, 0);

struct Bar {
    HWND hwnd;
    HDC hdc; // 0 if the control can't be painted
    RECT rc; // the client area, less a pixel on each side
};

Bar openBar(HWND hdlgStat)
{
    Bar bar = {GetDlgItem(hdlgStat, IDC_STAT_BAR), nullptr, {}};
    // Without this, no control would mean the whole screen to GetDC.
    if (bar.hwnd == nullptr) {
        return bar;
    }
    GetClientRect(bar.hwnd, &bar.rc);
    InflateRect(&bar.rc, -1, -1);
    bar.hdc = GetDC(bar.hwnd);
    SetBkMode(bar.hdc, TRANSPARENT);
    return bar;
}

void closeBar(const Bar* pBar)
{
    ReleaseDC(pBar->hwnd, pBar->hdc);
}

// Fills a part of the bar and writes the part of the text that lies in it.
void paintPart(const Bar* pBar, const RECT* prc, HBRUSH hbr, COLORREF clrText, int x,
               const char* pszText)
{
    FillRect(pBar->hdc, prc, hbr);
    SetTextColor(pBar->hdc, clrText);
    ExtTextOutA(pBar->hdc, x, TEXT_TOP, ETO_CLIPPED, prc, pszText, UINT(lstrlenA(pszText)),
                nullptr);
}

void paintEmptyPart(const Bar* pBar, const RECT* prc, int x, const char* pszText)
{
    HBRUSH hbr = CreateSolidBrush(GetSysColor(COLOR_WINDOW));
    paintPart(pBar, prc, hbr, BLACK, x, pszText);
    DeleteObject(hbr);
}

int widthOfText(HDC hdc, const char* pszText)
{
    SIZE size = {};
    GetTextExtentPointA(hdc, pszText, lstrlenA(pszText), &size);
    return size.cx;
}

LONG fillEdge(const RECT* prc, DWORD nPercent)
{
    // The registers of the processor hold more digits than a double, in which 1 hundredth is a
    // little too large. ceil is called with a double, which rounds the product as it has to be.
    double dFilled = double(prc->right - prc->left) * double(nPercent) * 0.01;
    LONG nEdge = prc->left + LONG(ceil(dFilled));
    return nEdge > prc->right ? prc->right : nEdge;
}

} // namespace

void status::paintEmptyBar(HWND hdlgStat, HMODULE hLanguage)
{
    char szText[30] = "";
    Bar bar = openBar(hdlgStat);
    if (bar.hdc == nullptr) {
        return;
    }
    LoadStringA(hLanguage, IDS_NOT_KNOWN, szText, sizeof szText);
    int x = (bar.rc.right - bar.rc.left - widthOfText(bar.hdc, szText)) / 2;
    paintEmptyPart(&bar, &bar.rc, x, szText);
    closeBar(&bar);
}

void status::paintBar(HWND hdlgStat, DWORD nPercent)
{
    char szText[8];
    Bar bar = openBar(hdlgStat);
    if (bar.hdc == nullptr) {
        return;
    }
    wsprintfA(szText, "%lu%%", nPercent);
    int x = (bar.rc.right - bar.rc.left) / 2;
    RECT rcFilled = bar.rc;
    RECT rcRest = bar.rc;
    rcFilled.right = rcRest.left = fillEdge(&bar.rc, nPercent);
    paintPart(&bar, &rcFilled, HBRUSH(GetStockObject(GRAY_BRUSH)), WHITE, x, szText);
    paintEmptyPart(&bar, &rcRest, x, szText);
    closeBar(&bar);
}
