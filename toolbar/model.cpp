#include "toolbar/model.h"
#include "toolbar/tracking.h"

#include <limits.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr LONG SEPARATOR_CX = 8;
constexpr int X_LIMIT = INT_MAX / 2;

LONG stepOf(const XferToolButton* pButton)
{
    return toolbar::hasStyle(pButton, TOOLSTYLE_SEPARATOR) ? pButton->iPicture : TOOL_STEP;
}

// Size of a record with this number of rows, in bytes; 0 if that exceeds 32 bits.
size_t cbOfRecord(uint64_t cButtons)
{
    uint64_t cb = offsetof(XferToolbar, buttons) + cButtons * sizeof(XferToolButton);
    return cb > UINT32_MAX ? 0 : size_t(cb);
}

// Returns the record with room for more rows, or null with the old one unchanged.
XferToolbar* growRecord(HWND hwnd, XferToolbar* pToolbar, DWORD cMore)
{
    size_t cb = cbOfRecord(uint64_t(pToolbar->cButtons) + cMore);
    ptrdiff_t nTracked =
        pToolbar->pTracked == nullptr ? TOOL_NONE : pToolbar->pTracked - pToolbar->buttons;
    auto pGrown = cb == 0 ? nullptr : static_cast<XferToolbar*>(realloc(pToolbar, cb));
    if (pGrown == nullptr) {
        return nullptr;
    }
    if (nTracked != TOOL_NONE) {
        pGrown->pTracked = &pGrown->buttons[nTracked];
    }
    SetWindowLongA(hwnd, 0, reinterpret_cast<LONG>(pGrown));
    return pGrown;
}

void moveRows(XferToolbar* pToolbar, DWORD nTo, DWORD nFrom)
{
    memmove(&pToolbar->buttons[nTo], &pToolbar->buttons[nFrom],
            (pToolbar->cButtons - nFrom) * sizeof(XferToolButton));
}

void copyRows(XferToolButton* pTo, const XferToolButton* pFrom, DWORD cRows)
{
    memcpy(pTo, pFrom, cRows * sizeof(XferToolButton));
    for (XferToolButton* pRow = pTo; pRow < pTo + cRows; ++pRow) {
        if (toolbar::hasStyle(pRow, TOOLSTYLE_SEPARATOR) && pRow->iPicture <= 0) {
            pRow->iPicture = SEPARATOR_CX;
        }
    }
}

// The last step after rows were added or removed: everything behind them has moved.
int finishRowChange(HWND hwnd, bool fPress)
{
    toolbar::invalidateAll(hwnd);
    if (fPress) {
        toolbar::releaseCapture(hwnd);
    }
    return 1;
}

bool fitsBehind(LONG nFirst, LONG cPictures)
{
    return cPictures <= LONG_MAX - nFirst;
}

bool appendStrip(XferToolbar* pToolbar, const XferToolBitmap* pStrip)
{
    size_t cb = size_t(pToolbar->cBitmaps + 1) * sizeof(XferToolBitmap);
    auto pBitmaps = static_cast<XferToolBitmap*>(realloc(pToolbar->pBitmaps, cb));
    if (pBitmaps == nullptr) {
        return false;
    }
    pBitmaps[pToolbar->cBitmaps++] = *pStrip;
    pToolbar->pBitmaps = pBitmaps;
    return true;
}

// Whether a strip has this number of pictures, after extending it if it is the last and can grow.
bool extendToHold(const XferToolbar* pToolbar, XferToolBitmap* pStrip, LONG nFirst, LONG cPictures)
{
    bool fLast = pStrip == &pToolbar->pBitmaps[pToolbar->cBitmaps - 1];
    if (pStrip->cPictures < cPictures && fLast && fitsBehind(nFirst, cPictures)) {
        pStrip->cPictures = cPictures;
    }
    return pStrip->cPictures >= cPictures;
}

} // namespace

XferToolbar* toolbar::recordOf(HWND hwnd)
{
    return reinterpret_cast<XferToolbar*>(GetWindowLongA(hwnd, 0));
}

XferToolbar* toolbar::createRecord(HWND hwndNotify)
{
    auto pToolbar = static_cast<XferToolbar*>(malloc(sizeof(XferToolbar)));
    if (pToolbar != nullptr) {
        memset(pToolbar, 0, sizeof *pToolbar);
        pToolbar->hwndNotify = hwndNotify;
    }
    return pToolbar;
}

void toolbar::destroyRecord(XferToolbar* pToolbar)
{
    for (LONG n = 0; n < pToolbar->cBitmaps; ++n) {
        const XferToolBitmap* pStrip = &pToolbar->pBitmaps[n];
        if (pStrip->hModule != nullptr && pStrip->hbm != nullptr) {
            DeleteObject(pStrip->hbm);
        }
    }
    free(pToolbar->pBitmaps);
    free(pToolbar);
}

int toolbar::nextX(int x, const XferToolButton* pButton)
{
    if (toolbar::hasState(pButton, TOOLSTATE_HIDDEN)) {
        return x;
    }
    int cx = stepOf(pButton);
    return x > X_LIMIT - cx ? X_LIMIT : x + cx;
}

int fXferToolbarItemRect(const XferToolbar* pToolbar, DWORD nRow, RECT* prc)
{
    if (nRow >= pToolbar->cButtons ||
        toolbar::hasState(&pToolbar->buttons[nRow], TOOLSTATE_HIDDEN)) {
        return 0;
    }
    int x = TOOL_LEFT;
    for (DWORD n = 0; n < nRow; ++n) {
        x = toolbar::nextX(x, &pToolbar->buttons[n]);
    }
    const XferToolButton* pButton = &pToolbar->buttons[nRow];
    int xRight = toolbar::hasStyle(pButton, TOOLSTYLE_SEPARATOR) ? toolbar::nextX(x, pButton)
                                                                 : x + TOOL_BUTTON_CX;
    SetRect(prc, x, TOOL_TOP, xRight, TOOL_TOP + TOOL_BUTTON_CY);
    return 1;
}

void vXferToolbarInvalidate(HWND hwnd, const XferToolbar* pToolbar, const XferToolButton* pButton)
{
    RECT rc;
    if (fXferToolbarItemRect(pToolbar, DWORD(pButton - pToolbar->buttons), &rc)) {
        InvalidateRect(hwnd, &rc, FALSE);
    }
}

void toolbar::invalidateAll(HWND hwnd)
{
    InvalidateRect(hwnd, nullptr, TRUE);
}

int nXferToolbarHitTest(const XferToolbar* pToolbar, int x, int y)
{
    if (x < TOOL_LEFT || y < TOOL_TOP || y >= TOOL_TOP + TOOL_BUTTON_CY) {
        return TOOL_NONE;
    }
    int xLeft = x - TOOL_LEFT;
    for (DWORD n = 0; n < pToolbar->cButtons; ++n) {
        const XferToolButton* pButton = &pToolbar->buttons[n];
        if (toolbar::hasState(pButton, TOOLSTATE_HIDDEN)) {
            continue;
        }
        xLeft -= stepOf(pButton);
        if (xLeft < 0) {
            return toolbar::hasStyle(pButton, TOOLSTYLE_SEPARATOR) ? TOOL_NONE : int(n);
        }
    }
    return TOOL_NONE;
}

int nXferToolbarFindCommand(const XferToolbar* pToolbar, DWORD idCommand)
{
    for (DWORD n = 0; n < pToolbar->cButtons; ++n) {
        if (pToolbar->buttons[n].idCommand == idCommand) {
            return int(n);
        }
    }
    return TOOL_NONE;
}

void vXferToolbarGroupRule(HWND hwnd, XferToolbar* pToolbar, DWORD idCommand)
{
    int nRow = nXferToolbarFindCommand(pToolbar, idCommand);
    if (nRow == TOOL_NONE) {
        return;
    }
    const XferToolButton* pGiven = &pToolbar->buttons[nRow];
    if (!toolbar::hasState(pGiven, TOOLSTATE_CHECKED) ||
        !toolbar::hasStyle(pGiven, TOOLSTYLE_GROUP)) {
        return;
    }
    XferToolButton* pButton = &pToolbar->buttons[nRow];
    while (pButton > pToolbar->buttons && toolbar::hasStyle(pButton - 1, TOOLSTYLE_GROUP)) {
        --pButton;
    }
    const XferToolButton* pEnd = pToolbar->buttons + pToolbar->cButtons;
    for (; pButton < pEnd && toolbar::hasStyle(pButton, TOOLSTYLE_GROUP); ++pButton) {
        if (pButton != pGiven && toolbar::hasState(pButton, TOOLSTATE_CHECKED)) {
            toolbar::setState(pButton, TOOLSTATE_CHECKED, false);
            vXferToolbarInvalidate(hwnd, pToolbar, pButton);
            return;
        }
    }
}

int nXferToolbarAddBitmap(XferToolbar* pToolbar, LONG cPictures, HINSTANCE hModule, WORD wId)
{
    if (cPictures < 0) {
        return TOOL_NONE;
    }
    LONG nFirst = 0;
    for (LONG n = 0; n < pToolbar->cBitmaps; ++n) {
        XferToolBitmap* pStrip = &pToolbar->pBitmaps[n];
        if (pStrip->hModule == hModule && pStrip->wId == wId &&
            extendToHold(pToolbar, pStrip, nFirst, cPictures)) {
            return nFirst;
        }
        nFirst += pStrip->cPictures;
    }
    XferToolBitmap strip = {cPictures, hModule, wId, nullptr};
    return fitsBehind(nFirst, cPictures) && appendStrip(pToolbar, &strip) ? nFirst : TOOL_NONE;
}

int fXferToolbarInsert(HWND hwnd, XferToolbar* pToolbar, DWORD nRow, DWORD cRows,
                       const XferToolButton* pRows)
{
    if (pRows == nullptr) {
        return 0;
    }
    pToolbar = growRecord(hwnd, pToolbar, cRows);
    if (pToolbar == nullptr) {
        return 0;
    }
    bool fPress = toolbar::clearPress(pToolbar);
    DWORD nAt = nRow > pToolbar->cButtons ? pToolbar->cButtons : nRow;
    moveRows(pToolbar, nAt + cRows, nAt);
    copyRows(&pToolbar->buttons[nAt], pRows, cRows);
    pToolbar->cButtons += cRows;
    return finishRowChange(hwnd, fPress);
}

int fXferToolbarDelete(HWND hwnd, XferToolbar* pToolbar, DWORD nRow)
{
    if (nRow >= pToolbar->cButtons) {
        return 0;
    }
    bool fPress = toolbar::clearPress(pToolbar);
    moveRows(pToolbar, nRow, nRow + 1);
    --pToolbar->cButtons;
    return finishRowChange(hwnd, fPress);
}
