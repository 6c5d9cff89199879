#include "toolbar/bitmap.h"
#include "toolbar/objects.h"

#include <stdint.h>
#include <string.h>

namespace {

constexpr int STRIP_BITS = 4;
constexpr size_t STRIP_COLORS = 1 << STRIP_BITS;

// Colours in the order of a bitmap's colour table, 0x00RRGGBB.
struct ColorMapRow {
    DWORD dwColor;
    DWORD dwReplacement; // looked up again at each load
    int nSysColor;
};

ColorMapRow g_xferColorMap[] = {
    {0x000000, 0x000000, COLOR_BTNTEXT},   {0x808080, 0x808080, COLOR_BTNSHADOW},
    {0xC0C0C0, 0xC0C0C0, COLOR_BTNFACE},   {0xFFFFFF, 0xFFFFFF, COLOR_BTNHIGHLIGHT},
    {0x0000FF, 0x0000FF, COLOR_HIGHLIGHT}, {0xFF00FF, 0xFF00FF, COLOR_WINDOW},
};

// What precedes the pixels. It is a copy: if the resource itself were changed, the next load would
// take the replaced colours for those of the bitmap.
struct StripHeader {
    BITMAPINFOHEADER bmiHeader;
    DWORD colors[STRIP_COLORS];
};

static_assert(sizeof(StripHeader) == 40 + 4 * STRIP_COLORS, "the pixels follow at once");

// Whether a header is of a kind that can be adapted, and all its pixels lie in cb bytes.
bool isStrip(const BITMAPINFOHEADER* pHeader, size_t cb)
{
    if (pHeader->biSize != sizeof *pHeader || pHeader->biBitCount != STRIP_BITS ||
        pHeader->biCompression != BI_RGB || pHeader->biWidth <= 0 || pHeader->biHeight <= 0 ||
        (pHeader->biClrUsed != 0 && pHeader->biClrUsed != STRIP_COLORS)) {
        return false;
    }
    uint64_t cbLine = (uint64_t(pHeader->biWidth) * STRIP_BITS + 31) / 32 * 4;
    return cbLine * uint64_t(pHeader->biHeight) <= cb;
}

bool readHeader(const BYTE* pBytes, size_t cb, StripHeader* pHeader)
{
    if (cb < sizeof *pHeader) {
        return false;
    }
    memcpy(pHeader, pBytes, sizeof *pHeader);
    return isStrip(&pHeader->bmiHeader, cb - sizeof *pHeader);
}

void readReplacements()
{
    for (ColorMapRow& row : g_xferColorMap) {
        COLORREF clr = GetSysColor(row.nSysColor);
        row.dwReplacement = RGB(GetBValue(clr), GetGValue(clr), GetRValue(clr));
    }
}

DWORD replacementOf(DWORD dwColor)
{
    for (const ColorMapRow& row : g_xferColorMap) {
        if (row.dwColor == dwColor) {
            return row.dwReplacement;
        }
    }
    return dwColor;
}

void adaptColors(StripHeader* pHeader)
{
    readReplacements();
    for (DWORD& dwColor : pHeader->colors) {
        dwColor = replacementOf(dwColor);
    }
}

bool copyPixels(HDC hdc, HBITMAP hbm, const StripHeader* pHeader, const BYTE* pPixels)
{
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    if (hbmOld == nullptr) {
        return false;
    }
    int cx = pHeader->bmiHeader.biWidth, cy = pHeader->bmiHeader.biHeight;
    int cLines =
        StretchDIBits(hdc, 0, 0, cx, cy, 0, 0, cx, cy, pPixels,
                      reinterpret_cast<const BITMAPINFO*>(pHeader), DIB_RGB_COLORS, SRCCOPY);
    SelectObject(hdc, hbmOld);
    return cLines > 0;
}

HBITMAP makeBitmap(const StripHeader* pHeader, const BYTE* pPixels)
{
    HDC hdcScreen = GetDC(nullptr);
    if (hdcScreen == nullptr) {
        return nullptr;
    }
    HBITMAP hbm = nullptr;
    HDC hdc = CreateCompatibleDC(hdcScreen);
    if (hdc != nullptr) {
        hbm = CreateDiscardableBitmap(hdcScreen, pHeader->bmiHeader.biWidth,
                                      pHeader->bmiHeader.biHeight);
        if (hbm != nullptr && !copyPixels(hdc, hbm, pHeader, pPixels)) {
            DeleteObject(hbm);
            hbm = nullptr;
        }
        DeleteDC(hdc);
    }
    ReleaseDC(nullptr, hdcScreen);
    return hbm;
}

// Loads the bitmap of a strip that has none, or one that the system has discarded.
void loadStrip(XferToolBitmap* pStrip)
{
    if (pStrip->hModule == nullptr) {
        pStrip->hbm = reinterpret_cast<HBITMAP>(UINT_PTR(pStrip->wId));
        return;
    }
    if (pStrip->hbm != nullptr) {
        DeleteObject(pStrip->hbm);
    }
    pStrip->hbm = hbmXferToolbarLoadBitmap(pStrip->hModule, pStrip->wId);
}

HGDIOBJ selectStrip(HDC hdc, XferToolBitmap* pStrip)
{
    HGDIOBJ hbmOld = SelectObject(hdc, pStrip->hbm);
    if (hbmOld == nullptr) {
        loadStrip(pStrip);
        hbmOld = SelectObject(hdc, pStrip->hbm);
    }
    return hbmOld;
}

} // namespace

HBITMAP hbmXferToolbarLoadBitmap(HINSTANCE hModule, WORD wId)
{
    HRSRC hResource = FindResourceA(hModule, MAKEINTRESOURCEA(wId), RT_BITMAP);
    HGLOBAL hBytes = hResource == nullptr ? nullptr : LoadResource(hModule, hResource);
    auto pBytes = hBytes == nullptr ? nullptr : static_cast<const BYTE*>(LockResource(hBytes));
    if (pBytes == nullptr) {
        return nullptr;
    }
    HBITMAP hbm = nullptr;
    StripHeader header;
    if (readHeader(pBytes, SizeofResource(hModule, hResource), &header)) {
        adaptColors(&header);
        hbm = makeBitmap(&header, pBytes + sizeof header);
    }
    FreeResource(hBytes);
    return hbm;
}

UINT_PTR fXferToolbarSelectBitmap(HDC hdc, XferToolbar* pToolbar, LONG iPicture)
{
    LONG n = 0, nFirst = 0;
    while (n < pToolbar->cBitmaps && iPicture - nFirst >= pToolbar->pBitmaps[n].cPictures) {
        nFirst += pToolbar->pBitmaps[n++].cPictures;
    }
    if (iPicture < 0 || n == pToolbar->cBitmaps) {
        return 0;
    }
    if (n == g_iToolSelected) {
        return 1;
    }
    HGDIOBJ hbmOld = selectStrip(hdc, &pToolbar->pBitmaps[n]);
    if (hbmOld == nullptr) {
        return 0;
    }
    g_iToolSelected = n;
    SetWindowOrgEx(hdc, toolbar::pictureX(nFirst), 0, nullptr);
    return reinterpret_cast<UINT_PTR>(hbmOld);
}
