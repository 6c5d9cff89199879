#include "toolbar/paint.h"
#include "toolbar/bitmap.h"
#include "toolbar/objects.h"

namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr COLORREF BLACK = RGB(0, 0, 0);

// Raster operations of a mask and a brush: the brush is applied where the mask has one colour, and
// where it has the other the destination stays.
constexpr DWORD BRUSH_WHERE_BLACK = 0x00B8074A;
constexpr DWORD BRUSH_WHERE_WHITE = 0x00E20746;

// A line of a face. A negative position counts from the right or bottom edge.
struct FaceLine {
    int x, y;
    bool fDown;
    int nShorter; // than the button is wide or high
    const COLORREF* pclr;
};

// The corners keep the colour of the face.
constexpr FaceLine FRAME[] = {
    {1, 0, false, 2, &g_clrToolFrame},
    {1, -1, false, 2, &g_clrToolFrame},
    {0, 1, true, 2, &g_clrToolFrame},
    {-1, 1, true, 2, &g_clrToolFrame},
};

constexpr FaceLine SUNKEN[] = {
    {1, 1, true, 2, &g_clrToolShadow},
    {1, 1, false, 2, &g_clrToolShadow},
};

constexpr FaceLine RAISED[] = {
    {1, 1, true, 3, &g_clrToolHighlight}, {1, 1, false, 3, &g_clrToolHighlight},
    {-2, 1, true, 2, &g_clrToolShadow},   {1, -2, false, 2, &g_clrToolShadow},
    {-3, 2, true, 4, &g_clrToolShadow},   {2, -3, false, 4, &g_clrToolShadow},
};

struct Face {
    int x, y, cx, cy;
};

template <size_t COUNT> void drawLines(HDC hdc, const Face& face, const FaceLine (&lines)[COUNT])
{
    for (const FaceLine& line : lines) {
        int x = face.x + line.x + (line.x < 0 ? face.cx : 0);
        int y = face.y + line.y + (line.y < 0 ? face.cy : 0);
        vXferToolbarFill(hdc, x, y, line.fDown ? 1 : face.cx - line.nShorter,
                         line.fDown ? face.cy - line.nShorter : 1, *line.pclr);
    }
}

// How a button is drawn: its work area, which is the part inside the edges, and the position of
// the picture in it. The picture of a pressed button is offset by one pixel.
struct Look {
    BYTE fsState;
    int x, y, cx, cy;
    int xPicture, yPicture;
};

// An indeterminate button that is enabled and not pressed is drawn neither as enabled nor as
// checked; for all other buttons the bit is ignored.
BYTE shownState(const XferToolButton* pButton)
{
    constexpr BYTE WORKING = TOOLSTATE_ENABLED | TOOLSTATE_PRESSED;
    if (toolbar::hasState(pButton, TOOLSTATE_INDETERMINATE) &&
        (pButton->fsState & WORKING) == TOOLSTATE_ENABLED) {
        return TOOLSTATE_INDETERMINATE;
    }
    return toolbar::withBits(pButton->fsState, TOOLSTATE_INDETERMINATE, false);
}

Look lookOf(const XferToolButton* pButton, int x, int y, int cx, int cy)
{
    Look look;
    look.fsState = shownState(pButton);
    bool fDown = (look.fsState & (TOOLSTATE_PRESSED | TOOLSTATE_CHECKED)) != 0;
    int nEdges = fDown ? 3 : 5;
    look.x = x + 2;
    look.y = y + 2;
    look.cx = cx - nEdges;
    look.cy = cy - nEdges;
    look.xPicture = (look.cx - TOOL_PICTURE_CX) / 2;
    look.yPicture = fDown ? 2 : 1;
    return look;
}

void makeMask(const Look* pLook, const XferToolbar* pToolbar, const XferToolButton* pButton)
{
    vXferToolbarMakeMask(pToolbar, pButton, pLook->xPicture, pLook->yPicture, pLook->cx, pLook->cy);
}

// Applies a brush to the work area through the mask. Without a brush nothing is drawn.
void brushThroughMask(HDC hdc, const Look* pLook, int nOffset, HBRUSH hbr, DWORD dwOperation)
{
    HGDIOBJ hbrOld = SelectObject(hdc, hbr);
    if (hbrOld == nullptr) {
        return;
    }
    SetTextColor(hdc, BLACK);
    SetBkColor(hdc, WHITE);
    BitBlt(hdc, pLook->x + nOffset, pLook->y + nOffset, pLook->cx, pLook->cy, g_hdcToolMono, 0, 0,
           dwOperation);
    SelectObject(hdc, hbrOld);
}

void drawShape(HDC hdc, const Look* pLook, int nOffset, COLORREF clr)
{
    HBRUSH hbr = CreateSolidBrush(clr);
    brushThroughMask(hdc, pLook, nOffset, hbr, BRUSH_WHERE_BLACK);
    if (hbr != nullptr) {
        DeleteObject(hbr);
    }
}

// The engraved look: the shape of the picture in shadow, with a light edge to the lower right.
void drawEngraved(HDC hdc, const Look* pLook)
{
    if ((pLook->fsState & TOOLSTATE_INDETERMINATE) == 0) {
        drawShape(hdc, pLook, 1, g_clrToolHighlight);
    }
    drawShape(hdc, pLook, 0, g_clrToolShadow);
    if ((pLook->fsState & TOOLSTATE_CHECKED) != 0) {
        // The halftone must spare the light edge too: the black parts are extended over it.
        BitBlt(g_hdcToolMono, 1, 1, pLook->cx - 1, pLook->cy - 1, g_hdcToolMono, 0, 0, SRCAND);
    }
}

void drawPicture(HDC hdc, const Look* pLook, const XferToolButton* pButton)
{
    BitBlt(hdc, pLook->x + pLook->xPicture, pLook->y + pLook->yPicture, TOOL_PICTURE_CX,
           TOOL_PICTURE_CY, g_hdcToolGlyphs, toolbar::pictureX(pButton->iPicture), 0, SRCCOPY);
}

void maskColor(const XferToolButton* pButton, int xPicture, int yPicture, COLORREF clr,
               DWORD dwOperation)
{
    // Pixels of the background colour become white, all others black.
    SetBkColor(g_hdcToolGlyphs, clr);
    BitBlt(g_hdcToolMono, xPicture, yPicture, TOOL_PICTURE_CX, TOOL_PICTURE_CY, g_hdcToolGlyphs,
           toolbar::pictureX(pButton->iPicture), 0, dwOperation);
}

void drawButtons(HDC hdc, int y, XferToolbar* pToolbar)
{
    int x = TOOL_LEFT;
    const XferToolButton* pEnd = pToolbar->buttons + pToolbar->cButtons;
    for (const XferToolButton* pButton = pToolbar->buttons; pButton < pEnd; ++pButton) {
        RECT rc = {x, y, x + TOOL_BUTTON_CX, y + TOOL_BUTTON_CY};
        if (!toolbar::hasState(pButton, TOOLSTATE_HIDDEN) &&
            !toolbar::hasStyle(pButton, TOOLSTYLE_SEPARATOR) && RectVisible(hdc, &rc)) {
            vXferToolbarDrawButton(hdc, x, y, TOOL_BUTTON_CX, TOOL_BUTTON_CY, pToolbar, pButton);
        }
        x = toolbar::nextX(x, pButton);
    }
}

} // namespace

void vXferToolbarFill(HDC hdc, int x, int y, int cx, int cy, COLORREF clr)
{
    RECT rc = {x, y, x + cx, y + cy};
    SetBkColor(hdc, clr);
    ExtTextOutA(hdc, 0, 0, ETO_OPAQUE, &rc, nullptr, 0, nullptr);
}

void vXferToolbarDrawFace(HDC hdc, int x, int y, int cx, int cy, BYTE fsState)
{
    vXferToolbarFill(hdc, x, y, cx, cy, g_clrToolFace);
    drawLines(hdc, {x, y, cx, cy}, FRAME);
    if ((fsState & TOOLSTATE_PRESSED) != 0) {
        drawLines(hdc, {x, y, cx, cy}, SUNKEN);
    } else {
        drawLines(hdc, {x, y, cx, cy}, RAISED);
    }
}

void vXferToolbarMakeMask(const XferToolbar*, const XferToolButton* pButton, int xPicture,
                          int yPicture, int cx, int cy)
{
    PatBlt(g_hdcToolMono, 0, 0, cx, cy, WHITENESS);
    maskColor(pButton, xPicture, yPicture, g_clrToolFace, SRCCOPY);
    maskColor(pButton, xPicture, yPicture, g_clrToolHighlight, SRCPAINT);
}

void vXferToolbarDrawButton(HDC hdc, int x, int y, int cx, int cy, XferToolbar* pToolbar,
                            const XferToolButton* pButton)
{
    Look look = lookOf(pButton, x, y, cx, cy);
    vXferToolbarDrawFace(hdc, x, y, cx, cy, look.fsState);
    if (!fXferToolbarSelectBitmap(g_hdcToolGlyphs, pToolbar, pButton->iPicture)) {
        return;
    }
    bool fEnabled = (look.fsState & TOOLSTATE_ENABLED) != 0;
    bool fHalftone = (look.fsState & (TOOLSTATE_CHECKED | TOOLSTATE_INDETERMINATE)) != 0;
    if (fEnabled) {
        drawPicture(hdc, &look, pButton);
    }
    if (!fEnabled || fHalftone) {
        makeMask(&look, pToolbar, pButton);
    }
    if (!fEnabled) {
        drawEngraved(hdc, &look);
    }
    if (fHalftone) {
        brushThroughMask(hdc, &look, 0, g_hbrToolDither, BRUSH_WHERE_WHITE);
    }
}

void vXferToolbarPaint(HWND hwnd, XferToolbar* pToolbar)
{
    vXferToolbarCheckColors(pToolbar);
    PAINTSTRUCT paint;
    HDC hdc = BeginPaint(hwnd, &paint);
    // Erasing the background sends a message, on which the control may have been destroyed.
    pToolbar = toolbar::recordOf(hwnd);
    RECT rc = {};
    GetClientRect(hwnd, &rc);
    if (hdc != nullptr && pToolbar != nullptr && rc.right > 0) {
        g_iToolSelected = TOOL_NONE;
        UINT_PTR uReplaced = fXferToolbarSelectBitmap(g_hdcToolGlyphs, pToolbar, 0);
        if (uReplaced != 0) {
            drawButtons(hdc, (rc.bottom - TOOL_BUTTON_CY) / 2, pToolbar);
            SelectObject(g_hdcToolGlyphs, reinterpret_cast<HGDIOBJ>(uReplaced));
        }
    }
    EndPaint(hwnd, &paint);
}
