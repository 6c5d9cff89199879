#include "status/bar.h"
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

Bar openBar(const status::Ref& ref)
{
    Bar bar = {};
    if (status::isAlive(ref)) {
        RedrawWindow(ref.pSlot->hdlgStat, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    }
    bar.hwnd = status::isAlive(ref) ? GetDlgItem(ref.pSlot->hdlgStat, IDC_STAT_BAR) : nullptr;
    // GetDC takes a null window for the whole screen.
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

struct Text {
    int x;
    const char* psz;
};

// Fills a part of the bar and writes the part of the text that lies in it.
void paintPart(const Bar* pBar, const RECT* prc, HBRUSH hbr, COLORREF clrText, const Text& text)
{
    FillRect(pBar->hdc, prc, hbr);
    SetTextColor(pBar->hdc, clrText);
    ExtTextOutA(pBar->hdc, text.x, TEXT_TOP, ETO_CLIPPED, prc, text.psz, UINT(lstrlenA(text.psz)),
                nullptr);
}

void paintEmptyPart(const Bar* pBar, const RECT* prc, const Text& text)
{
    HBRUSH hbr = CreateSolidBrush(GetSysColor(COLOR_WINDOW));
    paintPart(pBar, prc, hbr, BLACK, text);
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
    // As a double, 0.01 is slightly too large. The processor computes the product with more digits
    // than a double has, and there the excess would make ceil round up a product that ought to be
    // whole. Passing the product to ceil as a double rounds the excess away first.
    double dFilled = double(prc->right - prc->left) * double(nPercent) * 0.01;
    LONG nEdge = prc->left + LONG(ceil(dFilled));
    return nEdge > prc->right ? prc->right : nEdge;
}

} // namespace

void status::paintEmptyBar(const Ref& ref)
{
    char szText[30] = "";
    Bar bar = openBar(ref);
    if (bar.hdc == nullptr) {
        return;
    }
    LoadStringA(ref.pSlot->hLanguage, IDS_NOT_KNOWN, szText, sizeof szText);
    int x = (bar.rc.right - bar.rc.left - widthOfText(bar.hdc, szText)) / 2;
    paintEmptyPart(&bar, &bar.rc, {x, szText});
    closeBar(&bar);
}

void status::paintBar(const Ref& ref, DWORD nPercent)
{
    char szText[8];
    Bar bar = openBar(ref);
    if (bar.hdc == nullptr) {
        return;
    }
    wsprintfA(szText, "%lu%%", nPercent);
    int x = (bar.rc.right - bar.rc.left) / 2;
    RECT rcFilled = bar.rc;
    RECT rcRest = bar.rc;
    rcFilled.right = rcRest.left = fillEdge(&bar.rc, nPercent);
    paintPart(&bar, &rcFilled, HBRUSH(GetStockObject(GRAY_BRUSH)), WHITE, {x, szText});
    paintEmptyPart(&bar, &rcRest, {x, szText});
    closeBar(&bar);
}
