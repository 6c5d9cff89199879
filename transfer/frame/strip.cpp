// The strip is no control: the window paints it.
#include "transfer/frame/strip.h"
#include "resources/ids.h"
#include "shared/text.h"

#include <stdint.h>
#include <string.h>

namespace {

constexpr int FONT_HEIGHT = -8;
constexpr int FONT_WEIGHT = 100;
constexpr char FONT_FACE[] = "MS Sans Serif";
constexpr LONG STRIP_PADDING = 12;
constexpr LONG BOX_TOP = 3;
constexpr LONG BOX_BOTTOM = 4;
constexpr LONG BOX_SIDE = 6;
constexpr LONG BOX_GAP = 12;
constexpr LONG TEXT_LEFT = 3;
constexpr LONG TEXT_TOP = 2;
constexpr COLORREF RED = 0x0000FF;
constexpr DWORD LEAST_PAINT_MS = 500;

RECT textBox(const RECT* prcStrip)
{
    RECT rc = {prcStrip->left + BOX_SIDE, prcStrip->top + BOX_TOP, 0,
               prcStrip->bottom - BOX_BOTTOM};
    rc.right = rc.left + 2 * ((prcStrip->right - prcStrip->left) / 3);
    return rc;
}

RECT thermoBox(const RECT* prcStrip)
{
    RECT rc = textBox(prcStrip);
    rc.left = rc.right + BOX_GAP;
    rc.right = prcStrip->right - BOX_SIDE;
    return rc;
}

// The lines include the corners of the box. In a narrow window there may be no room for a box, and
// its lines would then cross its neighbour.
void drawSunkenBox(HDC hdc, const RECT* prc, HPEN hpenShadow, HPEN hpenHighlight)
{
    if (prc->right <= prc->left) {
        return;
    }
    SelectObject(hdc, hpenShadow);
    MoveToEx(hdc, prc->left, prc->bottom, nullptr);
    LineTo(hdc, prc->left, prc->top);
    LineTo(hdc, prc->right, prc->top);
    SelectObject(hdc, hpenHighlight);
    LineTo(hdc, prc->right, prc->bottom);
    LineTo(hdc, prc->left, prc->bottom);
}

void drawClipped(HDC hdc, const RECT* prc, const char* pszText)
{
    if (prc->left < prc->right && prc->top < prc->bottom) {
        ExtTextOutA(hdc, prc->left + TEXT_LEFT, prc->top + TEXT_TOP, ETO_CLIPPED, prc, pszText,
                    UINT(lstrlenA(pszText)), nullptr);
    }
}

// The width of the filled part for a known total, within the bar; 0 if the bar has no width.
LONG fillWidth(const XferWindowRecord* pRecord, LONG cxBar)
{
    int64_t cx = int64_t(pRecord->nThermoPos) * cxBar / pRecord->nThermoTotal;
    if (cxBar <= 0 || cx <= 0) {
        return 0;
    }
    return cx < cxBar ? LONG(cx) : cxBar;
}

void drawBar(HDC hdc, const XferWindowRecord* pRecord, const RECT* prc)
{
    LONG cx = fillWidth(pRecord, prc->right - prc->left);
    if (cx == 0 || prc->bottom <= prc->top) {
        return;
    }
    HBRUSH hbr = CreateSolidBrush(RED);
    HGDIOBJ hbrOld = SelectObject(hdc, hbr);
    PatBlt(hdc, prc->left, prc->top, cx, prc->bottom - prc->top, PATCOPY);
    SelectObject(hdc, hbrOld);
    DeleteObject(hbr);
}

void drawPosition(HDC hdc, const XferWindowRecord* pRecord, const RECT* prc)
{
    char szFormat[50];
    char szText[XFER_FORMAT_SIZE];
    if (prc->right <= prc->left) {
        return;
    }
    window::loadString(pRecord, IDS_THERMO_COUNT, szFormat, sizeof szFormat);
    wsprintfA(szText, szFormat, pRecord->nThermoPos);
    drawClipped(hdc, prc, szText);
}

void drawThermometer(HDC hdc, XferWindowRecord* pRecord, const RECT* prcBox)
{
    if (pRecord->nThermoPos == XFERTHERMO_OFF) {
        return;
    }
    pRecord->dwLastThermoPaint = GetTickCount();
    RECT rc = *prcBox;
    InflateRect(&rc, -1, -1);
    if (pRecord->nThermoTotal != 0) {
        drawBar(hdc, pRecord, &rc);
    } else {
        drawPosition(hdc, pRecord, &rc);
    }
}

void fillBackground(HDC hdc, const RECT* prc)
{
    COLORREF clr = GetSysColor(COLOR_BTNFACE);
    SetBkColor(hdc, clr);
    SetTextColor(hdc, GetSysColor(COLOR_BTNTEXT));
    HBRUSH hbr = CreateSolidBrush(clr);
    HGDIOBJ hbrOld = SelectObject(hdc, hbr);
    PatBlt(hdc, prc->left, prc->top, prc->right - prc->left, prc->bottom - prc->top, PATCOPY);
    SelectObject(hdc, hbrOld);
    DeleteObject(hbr);
}

void drawBoxes(HDC hdc, XferWindowRecord* pRecord)
{
    RECT rcText = textBox(&pRecord->rcStrip);
    RECT rcThermo = thermoBox(&pRecord->rcStrip);
    HPEN hpenShadow = CreatePen(PS_SOLID, 1, GetSysColor(COLOR_BTNSHADOW));
    HPEN hpenHighlight = CreatePen(PS_SOLID, 1, GetSysColor(COLOR_BTNHIGHLIGHT));
    // Selected first, so that the old pen is known even if the shadow pen can't be created.
    HGDIOBJ hpenOld = SelectObject(hdc, GetStockObject(BLACK_PEN));
    drawSunkenBox(hdc, &rcText, hpenShadow, hpenHighlight);
    drawClipped(hdc, &rcText, pRecord->szStripText);
    drawSunkenBox(hdc, &rcThermo, hpenShadow, hpenHighlight);
    drawThermometer(hdc, pRecord, &rcThermo);
    SelectObject(hdc, hpenOld);
    DeleteObject(hpenShadow);
    DeleteObject(hpenHighlight);
}

bool s_fKeepText;

// The first painting after the thermometer was off is always due, even if the tick counter has just
// wrapped to less than the limit. Otherwise the difference decides, which is right across the wrap.
bool isPaintDue(const XferWindowRecord* pRecord)
{
    return pRecord->dwLastThermoPaint == 0 ||
           GetTickCount() - pRecord->dwLastThermoPaint > LEAST_PAINT_MS;
}

} // namespace

void vXferDandDInitStrip(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    TEXTMETRICA metrics = {};
    HDC hdc = GetDC(hdlgDandD);
    GetTextMetricsA(hdc, &metrics);
    ReleaseDC(hdlgDandD, hdc);
    pRecord->hfontStrip = CreateFontA(FONT_HEIGHT, metrics.tmAveCharWidth, 0, 0, FONT_WEIGHT, 0, 0,
                                      0, DEFAULT_CHARSET, 0, 0, 0, 0, FONT_FACE);
    pRecord->szStripText[0] = '\0';
    pRecord->nThermoPos = XFERTHERMO_OFF;
    vXferDandDStripRect(hdlgDandD, pRecord);
}

void vXferDandDStripRect(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    TEXTMETRICA metrics = {};
    GetClientRect(hdlgDandD, &pRecord->rcStrip);
    HDC hdc = GetDC(hdlgDandD);
    HGDIOBJ hfontOld = SelectObject(hdc, pRecord->hfontStrip);
    GetTextMetricsA(hdc, &metrics);
    SelectObject(hdc, hfontOld);
    ReleaseDC(hdlgDandD, hdc);
    pRecord->rcStrip.top =
        pRecord->rcStrip.bottom - metrics.tmHeight - metrics.tmExternalLeading - STRIP_PADDING;
}

void vXferDandDPaintStrip(HWND hdlgDandD)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    PAINTSTRUCT paint;
    HDC hdc = BeginPaint(hdlgDandD, &paint);
    // Erasing sends messages, on which the caller can destroy the window.
    if (!window::isAlive(ref)) {
        EndPaint(hdlgDandD, &paint);
        return;
    }
    HGDIOBJ hfontOld = SelectObject(hdc, pRecord->hfontStrip);
    fillBackground(hdc, &pRecord->rcStrip);
    drawBoxes(hdc, pRecord);
    SelectObject(hdc, hfontOld);
    EndPaint(hdlgDandD, &paint);
}

void frame::keepStripText(bool fKeep)
{
    s_fKeepText = fKeep;
}

bool frame::isStripTextKept()
{
    return s_fKeepText;
}

void KRHAULAPI vXferDandDDisplayDILText(HWND hdlgDandD, const char* pszText)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    char szStored[XFER_NAME_SIZE];
    if (pRecord == nullptr) {
        return;
    }
    // The text is compared as it would be stored, so that a text that is too long is painted only
    // once as well.
    shared::copyText(szStored, pszText, sizeof szStored);
    if (strcmp(szStored, pRecord->szStripText) != 0) {
        strcpy(pRecord->szStripText, szStored);
        InvalidateRect(hdlgDandD, &pRecord->rcStrip, FALSE);
    }
}

void KRHAULAPI vXferDandDSetThermometer(HWND hdlgDandD, LONG nTotal)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr) {
        pRecord->nThermoTotal = nTotal;
        InvalidateRect(hdlgDandD, &pRecord->rcStrip, FALSE);
    }
}

void KRHAULAPI vXferDandDUpdateThermometer(HWND hdlgDandD, LONG nPosition)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    pRecord->nThermoPos = nPosition;
    if (nPosition == XFERTHERMO_OFF) {
        pRecord->dwLastThermoPaint = 0;
        InvalidateRect(hdlgDandD, &pRecord->rcStrip, FALSE);
    } else if (isPaintDue(pRecord)) {
        InvalidateRect(hdlgDandD, &pRecord->rcStrip, FALSE);
    }
}
