#include "toolbar/objects.h"

LONG g_nToolbarUsers;
HDC g_hdcToolGlyphs;
HDC g_hdcToolMono;
HBITMAP g_hbmToolMono;
HGDIOBJ g_hbmToolMonoOld;
HBRUSH g_hbrToolDither;
LONG g_nToolDitherUsers;
LONG g_iToolSelected = TOOL_NONE;
COLORREF g_clrToolFace, g_clrToolShadow, g_clrToolHighlight, g_clrToolFrame;

namespace {

constexpr COLORREF NO_COLOR = 0xFFFFFFFF; // equals none

struct PaintColor {
    COLORREF* pclr;
    int nSysColor;
};

constexpr PaintColor PAINT_COLORS[] = {
    {&g_clrToolFace, COLOR_BTNFACE},
    {&g_clrToolShadow, COLOR_BTNSHADOW},
    {&g_clrToolHighlight, COLOR_BTNHIGHLIGHT},
    {&g_clrToolFrame, COLOR_WINDOWFRAME},
};

// The colours at the last check, in the order of PAINT_COLORS.
COLORREF g_clrToolCached[] = {NO_COLOR, NO_COLOR, NO_COLOR, NO_COLOR};

static_assert(ARRAYSIZE(g_clrToolCached) == ARRAYSIZE(PAINT_COLORS), "one for each colour");

// Reads the system's colours. Returns whether one has changed since the last check.
bool readColors()
{
    bool fChanged = false;
    for (size_t n = 0; n < ARRAYSIZE(PAINT_COLORS); ++n) {
        COLORREF clr = GetSysColor(PAINT_COLORS[n].nSysColor);
        *PAINT_COLORS[n].pclr = clr;
        fChanged = fChanged || clr != g_clrToolCached[n];
        g_clrToolCached[n] = clr;
    }
    return fChanged;
}

bool makeShared()
{
    if (!fXferToolbarDitherBrush(false)) {
        return false;
    }
    g_hdcToolGlyphs = CreateCompatibleDC(nullptr);
    if (g_hdcToolGlyphs == nullptr) {
        return false;
    }
    g_hdcToolMono = CreateCompatibleDC(nullptr);
    if (g_hdcToolMono == nullptr) {
        return false;
    }
    g_hbmToolMono = CreateBitmap(TOOL_BUTTON_CX, TOOL_BUTTON_CY, 1, 1, nullptr);
    if (g_hbmToolMono == nullptr) {
        return false;
    }
    g_hbmToolMonoOld = SelectObject(g_hdcToolMono, g_hbmToolMono);
    return g_hbmToolMonoOld != nullptr;
}

void deleteContext(HDC* phdc)
{
    if (*phdc != nullptr) {
        DeleteDC(*phdc);
        *phdc = nullptr;
    }
}

void freeShared()
{
    if (g_hbmToolMonoOld != nullptr) {
        SelectObject(g_hdcToolMono, g_hbmToolMonoOld);
        g_hbmToolMonoOld = nullptr;
    }
    deleteContext(&g_hdcToolMono);
    deleteContext(&g_hdcToolGlyphs);
    if (g_hbmToolMono != nullptr) {
        DeleteObject(g_hbmToolMono);
        g_hbmToolMono = nullptr;
    }
    vXferToolbarFreeDither();
}

RGBQUAD quadOf(COLORREF clr)
{
    return {GetBValue(clr), GetGValue(clr), GetRValue(clr), 0};
}

} // namespace

int fXferToolbarAcquireShared()
{
    return g_nToolbarUsers++ > 0 || makeShared();
}

void vXferToolbarReleaseShared()
{
    if (--g_nToolbarUsers <= 0) {
        g_nToolbarUsers = 0;
        freeShared();
    }
}

int fXferToolbarDitherBrush(bool fRecreate)
{
    if (fRecreate && g_nToolDitherUsers == 0) {
        return 1;
    }
    if (!fRecreate && g_nToolDitherUsers > 0) {
        ++g_nToolDitherUsers;
        return 1;
    }
    HBITMAP hbm = hbmXferToolbarDitherBitmap();
    HBRUSH hbr = hbm == nullptr ? nullptr : CreatePatternBrush(hbm);
    if (hbm != nullptr) {
        DeleteObject(hbm);
    }
    if (hbr == nullptr) {
        return 0;
    }
    if (g_hbrToolDither != nullptr) {
        DeleteObject(g_hbrToolDither);
    }
    g_hbrToolDither = hbr;
    if (!fRecreate) {
        g_nToolDitherUsers = 1;
    }
    return 1;
}

void vXferToolbarFreeDither()
{
    if (--g_nToolDitherUsers <= 0) {
        g_nToolDitherUsers = 0;
        if (g_hbrToolDither != nullptr) {
            DeleteObject(g_hbrToolDither);
            g_hbrToolDither = nullptr;
        }
    }
}

HBITMAP hbmXferToolbarDitherBitmap()
{
    // A checkerboard of single pixels: each word is a line, of which 8 bits count.
    constexpr DWORD EVEN = 0x5555AAAA, ODD = 0xAAAA5555;
    static constexpr DWORD LINES[] = {EVEN, ODD, EVEN, ODD, EVEN, ODD, EVEN, ODD};
    struct {
        BITMAPINFOHEADER bmiHeader;
        RGBQUAD colors[2];
    } info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = 8;
    info.bmiHeader.biHeight = ARRAYSIZE(LINES);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 1;
    info.colors[0] = quadOf(GetSysColor(COLOR_BTNFACE));
    info.colors[1] = quadOf(GetSysColor(COLOR_BTNHIGHLIGHT));
    HDC hdcScreen = GetDC(nullptr);
    if (hdcScreen == nullptr) {
        return nullptr;
    }
    HBITMAP hbm = CreateDIBitmap(hdcScreen, &info.bmiHeader, CBM_INIT, LINES,
                                 reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS);
    ReleaseDC(nullptr, hdcScreen);
    return hbm;
}

void vXferToolbarCheckColors(XferToolbar* pToolbar)
{
    if (!readColors()) {
        return;
    }
    fXferToolbarDitherBrush(true);
    for (LONG n = 0; n < pToolbar->cBitmaps; ++n) {
        XferToolBitmap* pStrip = &pToolbar->pBitmaps[n];
        if (pStrip->hModule != nullptr && pStrip->hbm != nullptr) {
            DeleteObject(pStrip->hbm);
            pStrip->hbm = nullptr;
        }
    }
}
