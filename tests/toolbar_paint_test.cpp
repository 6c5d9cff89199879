// The looks of the toolbar, pixel by pixel, and the drawing objects behind them.
#include "../resources/ids.h"
#include "../toolbar/paint.h"
#include "support/imports.h"
#include "support/subclassed.h"
#include "support/toolbar.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits.h>
#include <map>
#include <memory>
#include <set>

namespace {

constexpr BYTE CHECKED = TOOLSTATE_CHECKED, PRESSED = TOOLSTATE_PRESSED,
               ENABLED = TOOLSTATE_ENABLED, HIDDEN = TOOLSTATE_HIDDEN,
               INDETERMINATE = TOOLSTATE_INDETERMINATE;
constexpr int PICTURES = 15;
constexpr WORD STRIP = IDB_TOOLBAR;
constexpr COLORREF ANY = CLR_INVALID; // a pixel that nothing is said about

HINSTANCE self()
{
    return GetModuleHandleA(nullptr);
}

// A part of the screen or of a picture: rows of columns.
using Pixels = std::vector<std::vector<COLORREF>>;

Pixels read(HDC hdc, int cx, int cy)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pBits;
    HDC hdcCopy = CreateCompatibleDC(hdc);
    HBITMAP hbm = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hbmOld = SelectObject(hdcCopy, hbm);
    BitBlt(hdcCopy, 0, 0, cx, cy, hdc, 0, 0, SRCCOPY);
    GdiFlush();
    Pixels pixels;
    for (int y = 0; y < cy; ++y) {
        pixels.emplace_back();
        for (int x = 0; x < cx; ++x) {
            DWORD dw = static_cast<DWORD*>(pBits)[y * cx + x];
            pixels.back().push_back(RGB(BYTE(dw >> 16), BYTE(dw >> 8), BYTE(dw)));
        }
    }
    SelectObject(hdcCopy, hbmOld);
    DeleteObject(hbm);
    DeleteDC(hdcCopy);
    return pixels;
}

Pixels readClient(HWND hwnd)
{
    RECT rc;
    GetClientRect(hwnd, &rc);
    HDC hdc = GetDC(hwnd);
    Pixels pixels = read(hdc, std::min(rc.right, LONG(600)), rc.bottom);
    ReleaseDC(hwnd, hdc);
    return pixels;
}

// Sets system colours for as long as it lives.
class SystemColors {
public:
    explicit SystemColors(std::map<int, COLORREF> colors)
    {
        for (auto& [nElement, clr] : colors) {
            m_old[nElement] = GetSysColor(nElement);
        }
        set(colors);
    }
    ~SystemColors()
    {
        set(m_old);
    }
    SystemColors(const SystemColors&) = delete;
    SystemColors& operator=(const SystemColors&) = delete;

private:
    static void set(const std::map<int, COLORREF>& colors)
    {
        std::vector<int> elements;
        std::vector<COLORREF> values;
        for (auto& [nElement, clr] : colors) {
            elements.push_back(nElement);
            values.push_back(clr);
        }
        SetSysColors(int(elements.size()), elements.data(), values.data());
        pumpMessages();
    }
    std::map<int, COLORREF> m_old;
};

// Colours that all differ, so that every pixel tells where it comes from.
const std::map<int, COLORREF> PLAIN = {
    {COLOR_BTNFACE, RGB(201, 202, 203)},      {COLOR_BTNSHADOW, RGB(101, 102, 103)},
    {COLOR_BTNHIGHLIGHT, RGB(251, 252, 253)}, {COLOR_WINDOWFRAME, RGB(1, 2, 3)},
    {COLOR_BTNTEXT, RGB(11, 12, 13)},         {COLOR_HIGHLIGHT, RGB(21, 22, 123)},
    {COLOR_WINDOW, RGB(231, 232, 133)}};
// Light on dark, with the paper of the pictures in the colour of the highlight.
const std::map<int, COLORREF> CONTRAST = {
    {COLOR_BTNFACE, RGB(0, 0, 0)},          {COLOR_BTNSHADOW, RGB(128, 0, 128)},
    {COLOR_BTNHIGHLIGHT, RGB(0, 255, 255)}, {COLOR_WINDOWFRAME, RGB(255, 255, 0)},
    {COLOR_BTNTEXT, RGB(255, 255, 255)},    {COLOR_HIGHLIGHT, RGB(0, 128, 0)},
    {COLOR_WINDOW, RGB(0, 255, 255)}};

// The pictures of the strip in the present system colours, taken from the bytes of the file.
Pixels strip()
{
    constexpr int CX = 16 * PICTURES, CY = 15;
    const std::map<DWORD, int> elements = {
        {0x000000, COLOR_BTNTEXT},      {0x808080, COLOR_BTNSHADOW}, {0xC0C0C0, COLOR_BTNFACE},
        {0xFFFFFF, COLOR_BTNHIGHLIGHT}, {0x0000FF, COLOR_HIGHLIGHT}, {0xFF00FF, COLOR_WINDOW}};
    HRSRC hResource = FindResourceA(self(), MAKEINTRESOURCEA(STRIP), RT_BITMAP);
    auto pBytes = static_cast<const BYTE*>(LockResource(LoadResource(self(), hResource)));
    Pixels pixels;
    for (int y = 0; y < CY; ++y) {
        pixels.emplace_back();
        for (int x = 0; x < CX; ++x) {
            BYTE pair = pBytes[40 + 64 + (CY - 1 - y) * CX / 2 + x / 2];
            const BYTE* pQuad = pBytes + 40 + 4 * (x % 2 == 0 ? pair >> 4 : pair & 15);
            auto element = elements.find(RGB(pQuad[0], pQuad[1], pQuad[2]));
            pixels.back().push_back(element == elements.end() ? RGB(pQuad[2], pQuad[1], pQuad[0])
                                                              : GetSysColor(element->second));
        }
    }
    return pixels;
}

// One button, drawn by the rules, pixel by pixel. iPicture -1 gives the empty face.
class ExpectedButton {
public:
    ExpectedButton(BYTE fsState, int iPicture, const Pixels& pictures, int nDitherPhase)
        : m_pixels(22, std::vector<COLORREF>(24, clr(COLOR_BTNFACE))), m_pictures(pictures),
          m_iPicture(iPicture)
    {
        bool fIndeterminate =
            (fsState & (INDETERMINATE | ENABLED | PRESSED)) == (INDETERMINATE | ENABLED);
        bool fEnabled = (fsState & ENABLED) != 0 && !fIndeterminate;
        bool fChecked = (fsState & CHECKED) != 0 && !fIndeterminate;
        bool fPressed = (fsState & PRESSED) != 0;
        m_fDown = fChecked || fPressed;
        drawFace(fPressed);
        if (iPicture < 0) {
            return;
        }
        // What each pixel of the work area becomes, from the bottom layer to the top one.
        int cx = m_fDown ? 21 : 19, cy = m_fDown ? 19 : 17;
        for (int y = 0; y <= cy; ++y) {
            for (int x = 0; x <= cx; ++x) {
                COLORREF& pixel = m_pixels[size_t(y + 2)][size_t(x + 2)];
                bool fDark = isDark(x, y), fDarkBefore = isDark(x - 1, y - 1);
                if (fEnabled && isPicture(x, y)) {
                    pixel = picture(x, y);
                }
                if (!fEnabled && !fIndeterminate && fDarkBefore) {
                    pixel = clr(COLOR_BTNHIGHLIGHT);
                }
                if (!fEnabled && fDark) {
                    pixel = clr(COLOR_BTNSHADOW);
                }
                bool fWidened = !fEnabled && fChecked;
                bool fKept = fDark || (fWidened && fDarkBefore);
                if ((fChecked || fIndeterminate) && !fKept && x < cx && y < cy) {
                    pixel =
                        clr((x + y + nDitherPhase) % 2 != 0 ? COLOR_BTNHIGHLIGHT : COLOR_BTNFACE);
                }
                // Wine 8 copies a mask onto itself byte by byte, and loses what should be carried
                // from one byte to the next.
                if (fWidened && fDarkBefore && !fDark && x % 8 == 0) {
                    pixel = ANY;
                }
            }
        }
    }

    const Pixels& pixels() const
    {
        return m_pixels;
    }

private:
    static COLORREF clr(int nElement)
    {
        return GetSysColor(nElement);
    }

    void drawFace(bool fPressed)
    {
        const COLORREF clrFrame = clr(COLOR_WINDOWFRAME), clrShadow = clr(COLOR_BTNSHADOW),
                       clrLight = clr(COLOR_BTNHIGHLIGHT);
        auto line = [&](int xFirst, int yFirst, int xLast, int yLast, COLORREF clrLine) {
            for (int y = yFirst; y <= yLast; ++y) {
                for (int x = xFirst; x <= xLast; ++x) {
                    m_pixels[size_t(y)][size_t(x)] = clrLine;
                }
            }
        };
        line(1, 0, 22, 0, clrFrame);
        line(1, 21, 22, 21, clrFrame);
        line(0, 1, 0, 20, clrFrame);
        line(23, 1, 23, 20, clrFrame);
        line(1, 1, 1, fPressed ? 20 : 19, fPressed ? clrShadow : clrLight);
        line(1, 1, fPressed ? 22 : 21, 1, fPressed ? clrShadow : clrLight);
        if (!fPressed) {
            line(22, 1, 22, 20, clrShadow);
            line(1, 20, 22, 20, clrShadow);
            line(21, 2, 21, 19, clrShadow);
            line(2, 19, 21, 19, clrShadow);
        }
    }

    // Places in the work area.
    bool isPicture(int x, int y) const
    {
        int nLeft = m_fDown ? 2 : 1;
        return x >= nLeft && x < nLeft + 16 && y >= nLeft && y < nLeft + 15;
    }
    COLORREF picture(int x, int y) const
    {
        int nLeft = m_fDown ? 2 : 1;
        return m_pictures[size_t(y - nLeft)][size_t(16 * m_iPicture + x - nLeft)];
    }
    bool isDark(int x, int y) const
    {
        return isPicture(x, y) && picture(x, y) != clr(COLOR_BTNFACE) &&
               picture(x, y) != clr(COLOR_BTNHIGHLIGHT);
    }

    Pixels m_pixels;
    const Pixels& m_pictures;
    int m_iPicture;
    bool m_fDown = false;
};

// Column and row where a button isn't as it should be, or nothing.
std::string difference(const Pixels& screen, int xButton, const Pixels& button)
{
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 24; ++x) {
            COLORREF clr = screen[size_t(y + 2)][size_t(xButton + x)];
            COLORREF clrExpected = button[size_t(y)][size_t(x)];
            if (clr != clrExpected && clrExpected != ANY) {
                char szText[64];
                wsprintfA(szText, "%d, %d: %06lX, not %06lX", x, y, clr, clrExpected);
                return szText;
            }
        }
    }
    return "";
}

void repaint(const TestToolbar& toolbar)
{
    InvalidateRect(toolbar.hwnd(), nullptr, TRUE);
    UpdateWindow(toolbar.hwnd());
}

void addStrip(const TestToolbar& toolbar, int cPictures = PICTURES)
{
    const XferToolPictures pictures = {self(), STRIP};
    EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, WPARAM(cPictures), &pictures), 0);
}

// A toolbar with one button for each picture, in one state.
std::vector<XferToolButton> buttonsIn(BYTE fsState)
{
    std::vector<XferToolButton> rows;
    for (LONG n = 0; n < PICTURES; ++n) {
        rows.push_back({n, DWORD(n), fsState, 0});
    }
    return rows;
}

// Compares all buttons with a look. Where the checkerboard begins is the system's matter, but it
// begins in one place for all.
void expectLook(const TestToolbar& toolbar, BYTE fsState, const Pixels& pictures)
{
    Pixels screen = readClient(toolbar.hwnd());
    std::string first[2];
    for (int nPhase = 0; nPhase < 2; ++nPhase) {
        for (int n = 0; n < PICTURES && first[nPhase].empty(); ++n) {
            int x = 8 + 23 * n;
            ExpectedButton expected(fsState, n, pictures, nPhase + x);
            first[nPhase] = difference(screen, x, expected.pixels());
            if (!first[nPhase].empty()) {
                first[nPhase] = "picture " + std::to_string(n) + " at " + first[nPhase];
            }
        }
    }
    EXPECT_TRUE(first[0].empty() || first[1].empty())
        << "state " << int(fsState) << ": " << first[0] << " or " << first[1];
}

TEST(ToolbarPaint, EveryStateHasItsLook)
{
    for (auto& colors : {PLAIN, CONTRAST}) {
        SystemColors systemColors(colors);
        for (int nState = 0; nState < 32; ++nState) {
            if ((nState & HIDDEN) == 0) {
                TestToolbar toolbar(buttonsIn(BYTE(nState)));
                addStrip(toolbar);
                repaint(toolbar);
                expectLook(toolbar, BYTE(nState), strip());
            }
        }
    }
}

int s_cBlits;
decltype(&BitBlt) s_pfnBitBlt;

BOOL WINAPI countingBitBlt(HDC hdc, int x, int y, int cx, int cy, HDC hdcFrom, int xFrom, int yFrom,
                           DWORD dwOperation)
{
    ++s_cBlits;
    return s_pfnBitBlt(hdc, x, y, cx, cy, hdcFrom, xFrom, yFrom, dwOperation);
}

int s_cSelected; // into the device context of the strips
decltype(&SelectObject) s_pfnSelectObject;

HGDIOBJ WINAPI countingSelect(HDC hdc, HGDIOBJ handle)
{
    s_cSelected += hdc == g_hdcToolGlyphs;
    return s_pfnSelectObject(hdc, handle);
}

TEST(ToolbarPaint, DrawsOnlyWhatIsAskedFor)
{
    TestToolbar toolbar(buttonsIn(ENABLED));
    const HGDIOBJ hbmOld = GetCurrentObject(g_hdcToolGlyphs, OBJ_BITMAP);
    addStrip(toolbar);
    repaint(toolbar);
    ReplacedImport blits(self(), "BitBlt", countingBitBlt);
    s_pfnBitBlt = blits.original<decltype(&BitBlt)>();
    ReplacedImport selects(self(), "SelectObject", countingSelect);
    s_pfnSelectObject = selects.original<decltype(&SelectObject)>();
    s_cSelected = 0;
    repaint(toolbar);
    EXPECT_EQ(s_cSelected, 2); // the strip, once for all buttons, and back
    const struct {
        RECT rc;
        int cButtons;
    } table[] = {{{33, 2, 53, 24}, 1},    // inside of the second
                 {{31, 2, 55, 24}, 3},    // the shared lines of its frame as well
                 {{31, 2, 32, 3}, 2},     // the line that it shares with the first
                 {{0, 2, 8, 24}, 0},      // the left edge
                 {{8, 0, 300, 2}, 0},     // above
                 {{332, 2, 353, 24}, 1}}; // the last
    const COLORREF clrOld = RGB(1, 200, 100);
    for (auto& row : table) {
        HDC hdc = GetDC(toolbar.hwnd());
        vXferToolbarFill(hdc, 0, 0, 600, 27, clrOld);
        ReleaseDC(toolbar.hwnd(), hdc);
        s_cBlits = 0;
        InvalidateRect(toolbar.hwnd(), &row.rc, FALSE);
        UpdateWindow(toolbar.hwnd());
        EXPECT_EQ(s_cBlits, row.cButtons) << row.rc.left;
        Pixels screen = readClient(toolbar.hwnd());
        for (LONG x = 0; x < 400; ++x) {
            POINT point = {x, 12};
            bool fDrawn = PtInRect(&row.rc, point) && row.cButtons > 0;
            EXPECT_EQ(screen[12][size_t(x)] != clrOld, fDrawn) << x;
        }
    }
    // What a paint has selected is let go again.
    EXPECT_EQ(GetCurrentObject(g_hdcToolGlyphs, OBJ_BITMAP), hbmOld);
}

TEST(ToolbarPaint, WithoutWidthNothingIsDrawn)
{
    const std::vector<XferToolButton> rows = buttonsIn(ENABLED);
    ReplacedImport blits(self(), "BitBlt", countingBitBlt);
    s_pfnBitBlt = blits.original<decltype(&BitBlt)>();
    fXferToolbarRegister(self());
    for (int cx : {0, 100}) {
        // Without a parent, whose size it would follow.
        HWND hwnd = CreateWindowExA(WS_EX_TOPMOST, XFER_TOOLBARCLASS, "", WS_POPUP | WS_VISIBLE, 0,
                                    0, cx, 27, nullptr, nullptr, self(), nullptr);
        const XferToolPictures pictures = {self(), STRIP};
        SendMessageA(hwnd, TOOLM_ADDBITMAP, PICTURES, reinterpret_cast<LPARAM>(&pictures));
        SendMessageA(hwnd, TOOLM_ADDBUTTONS, PICTURES, reinterpret_cast<LPARAM>(rows.data()));
        s_cBlits = 0;
        SendMessageA(hwnd, WM_SIZE, 0, 0);
        SendMessageA(hwnd, WM_PAINT, 0, 0);
        EXPECT_EQ(s_cBlits, cx == 0 ? 0 : 4);
        EXPECT_EQ(XferToolbarGet(hwnd)->pBitmaps[0].hbm != nullptr, cx != 0);
        DestroyWindow(hwnd);
    }
}

TEST(ToolbarPaint, RowsLieAsTheMouseFindsThem)
{
    SystemColors systemColors(PLAIN);
    TestToolbar toolbar({{0, 1, ENABLED, 0},
                         {-1, 2, ENABLED, TOOLSTYLE_SEPARATOR},
                         {1, 3, ENABLED | HIDDEN, 0},
                         {2, 4, ENABLED, 0},
                         {-1, 5, ENABLED, 0},
                         {PICTURES, 6, ENABLED, 0},
                         {LONG_MAX, 7, ENABLED, 0},
                         {3, 8, ENABLED, 0}});
    addStrip(toolbar);
    repaint(toolbar);
    // Pictures that aren't there leave the face empty.
    const struct {
        int x, iPicture;
    } table[] = {{8, 0}, {39, 2}, {62, -1}, {85, -1}, {108, -1}, {131, 3}};
    Pixels screen = readClient(toolbar.hwnd()), pictures = strip();
    for (auto& row : table) {
        ExpectedButton expected(ENABLED, row.iPicture, pictures, 0);
        EXPECT_EQ(difference(screen, row.x, expected.pixels()), "") << row.x;
    }
    for (size_t x : {0, 7, 32, 38, 155, 599}) { // the background
        EXPECT_EQ(screen[12][x], GetSysColor(COLOR_BTNFACE)) << x;
    }
}

// Changes one word of the strip, and how many bytes the module says that it has. The bytes end
// where memory ends.
struct Damage {
    const char* pszWhat;
    int nWord; // of the header, 2 bytes each
    WORD wValue;
    int cbLess;
};

Damage s_damage;
decltype(&LockResource) s_pfnLockResource;
decltype(&SizeofResource) s_pfnSizeofResource;
decltype(&StretchDIBits) s_pfnStretchDIBits;
int s_cStretched;

DWORD WINAPI damagedSize(HMODULE hModule, HRSRC hResource)
{
    return s_pfnSizeofResource(hModule, hResource) - DWORD(s_damage.cbLess);
}

void* WINAPI damagedBytes(HGLOBAL hBytes)
{
    constexpr size_t PAGE = 4096;
    static auto pPages =
        static_cast<BYTE*>(VirtualAlloc(nullptr, 2 * PAGE, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(pPages, PAGE, MEM_COMMIT, PAGE_READWRITE);
    size_t cb = damagedSize(self(), FindResourceA(self(), MAKEINTRESOURCEA(STRIP), RT_BITMAP));
    BYTE* pCopy = pPages + PAGE - cb;
    memcpy(pCopy, s_pfnLockResource(hBytes), cb);
    if (cb >= 2 * size_t(s_damage.nWord + 1)) {
        memcpy(pCopy + 2 * s_damage.nWord, &s_damage.wValue, sizeof s_damage.wValue);
    }
    return pCopy;
}

int WINAPI countingStretch(HDC hdc, int x, int y, int cx, int cy, int xFrom, int yFrom, int cxFrom,
                           int cyFrom, const void* pBits, const BITMAPINFO* pInfo, UINT uColors,
                           DWORD dwOperation)
{
    ++s_cStretched;
    return s_pfnStretchDIBits(hdc, x, y, cx, cy, xFrom, yFrom, cxFrom, cyFrom, pBits, pInfo,
                              uColors, dwOperation);
}

TEST(ToolbarPaint, ABadStripLeavesTheBackground)
{
    const Damage table[] = {
        {"an old header", 0, 12, 0},
        {"a new header", 0, 108, 0},
        {"no width", 2, 0, 0},
        {"negative width", 3, 0xFFFF, 0},
        {"huge width", 3, 0x7FFF, 0},
        {"too wide", 2, 248, 0},
        {"no height", 4, 0, 0},
        {"negative height", 5, 0xFFFF, 0},
        {"huge height", 5, 0x7FFF, 0},
        {"too high", 4, 16, 0},
        {"8 bits a pixel", 7, 8, 0},
        {"1 bit a pixel", 7, 1, 0},
        {"32 bits a pixel", 7, 32, 0},
        {"compressed", 8, 2, 0},
        {"not all colours", 16, 15, 0},
        {"more colours", 16, 256, 0},
        {"a byte short", 0, 40, 1},
        {"no pixels", 0, 40, 1800},
        {"half a colour table", 0, 40, 1840},
        {"no header", 0, 40, 1904},
    };
    ReplacedImport lock(self(), "LockResource", damagedBytes);
    ReplacedImport size(self(), "SizeofResource", damagedSize);
    ReplacedImport stretch(self(), "StretchDIBits", countingStretch);
    s_pfnStretchDIBits = stretch.original<decltype(&StretchDIBits)>();
    s_pfnLockResource = lock.original<decltype(&LockResource)>();
    s_pfnSizeofResource = size.original<decltype(&SizeofResource)>();
    for (auto& row : table) {
        TestToolbar toolbar(buttonsIn(ENABLED));
        addStrip(toolbar);
        s_damage = row;
        s_cStretched = 0;
        repaint(toolbar);
        EXPECT_EQ(s_cStretched, 0) << row.pszWhat; // its pixels aren't even looked at
        Pixels screen = readClient(toolbar.hwnd());
        EXPECT_EQ(std::count(screen[12].begin(), screen[12].end(), GetSysColor(COLOR_BTNFACE)), 600)
            << row.pszWhat;
        s_damage = {"", 0, 40, 0}; // in good order
        repaint(toolbar);
        expectLook(toolbar, ENABLED, strip());
    }
}

// A bitmap of the caller's, of two pictures in colours of their own.
HBITMAP makeOwnBitmap()
{
    HDC hdcScreen = GetDC(nullptr), hdc = CreateCompatibleDC(hdcScreen);
    HBITMAP hbm = CreateCompatibleBitmap(hdcScreen, 32, 15);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    vXferToolbarFill(hdc, 0, 0, 16, 15, RGB(0, 0, 255));
    vXferToolbarFill(hdc, 16, 0, 16, 15, RGB(1, 99, 1));
    vXferToolbarFill(hdc, 20, 4, 5, 5, RGB(192, 192, 192));
    SelectObject(hdc, hbmOld);
    DeleteDC(hdc);
    ReleaseDC(nullptr, hdcScreen);
    return hbm;
}

Pixels bitmapPixels(HBITMAP hbm, int cx, int cy)
{
    HDC hdc = CreateCompatibleDC(nullptr);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    Pixels pixels = read(hdc, cx, cy);
    SelectObject(hdc, hbmOld);
    DeleteDC(hdc);
    return pixels;
}

TEST(ToolbarPaint, StripsAreUsedSideBySide)
{
    HBITMAP hbmOwn = makeOwnBitmap();
    const Pixels own = bitmapPixels(hbmOwn, 32, 15);
    {
        TestToolbar toolbar;
        addStrip(toolbar, 3);
        const XferToolPictures pictures = {nullptr, LOWORD(hbmOwn)},
                               again = {GetModuleHandleA("KERNEL32.DLL"), 999};
        EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, 2, &pictures), 3);
        EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, 1, &again), 5);
        // Both strips by turns, and in between one that can't be had.
        const int order[] = {4, 0, 3, 5, 1, 4, 2};
        for (int iPicture : order) {
            const XferToolButton button = {iPicture, 1, ENABLED, 0};
            toolbar.send(TOOLM_ADDBUTTONS, 1, &button);
        }
        for (auto& colors : {PLAIN, CONTRAST}) {
            SystemColors systemColors(colors);
            repaint(toolbar);
            Pixels screen = readClient(toolbar.hwnd()), library = strip();
            int x = 8;
            for (int iPicture : order) {
                bool fOwn = iPicture == 3 || iPicture == 4;
                ExpectedButton expected(ENABLED,
                                        iPicture == 5 ? -1
                                        : fOwn        ? iPicture - 3
                                                      : iPicture,
                                        fOwn ? own : library, 0);
                EXPECT_EQ(difference(screen, x, expected.pixels()), "") << "picture " << iPicture;
                x += 23;
            }
        }
    }
    EXPECT_EQ(bitmapPixels(hbmOwn, 32, 15), own); // neither adapted nor deleted
    EXPECT_TRUE(DeleteObject(hbmOwn));
}

TEST(ToolbarPaint, NewColoursTakeEffectAtTheNextPaint)
{
    constexpr BYTE fsState = ENABLED | CHECKED;
    SystemColors before(PLAIN);
    TestToolbar first(buttonsIn(fsState)), second(buttonsIn(fsState));
    SetWindowPos(second.parent(), nullptr, 100, 300, 0, 0, SWP_NOSIZE);
    for (const TestToolbar* pToolbar : {&first, &second}) {
        addStrip(*pToolbar);
        repaint(*pToolbar);
        expectLook(*pToolbar, fsState, strip());
    }
    Pixels old = strip();
    ShowWindow(second.parent(), SW_HIDE); // the system repaints what it sees at once
    SystemColors after(CONTRAST);
    repaint(first);
    expectLook(first, fsState, strip());
    // The change was seen by the first one: the second has the new face, and its old pictures
    // until they are thrown away for another reason.
    ShowWindow(second.parent(), SW_SHOW);
    repaint(second);
    expectLook(second, fsState, old);
    SystemColors again(PLAIN);
    repaint(second);
    expectLook(second, fsState, strip());
}

TEST(ToolbarPaint, SurvivesAnythingWhileTheBackgroundIsErased)
{
    auto addMany = [](HWND hwnd) {
        std::vector<XferToolButton> rows(20000, {0, 1, ENABLED, 0});
        SendMessageA(hwnd, TOOLM_ADDBUTTONS, rows.size(), reinterpret_cast<LPARAM>(rows.data()));
    };
    auto destroy = [](HWND hwnd) { DestroyWindow(hwnd); };
    for (void (*pfnOnErase)(HWND) : {+addMany, +destroy}) {
        TestToolbar toolbar;
        addStrip(toolbar);
        Subclassed erasing(toolbar.hwnd(), [&](UINT uMessage, WPARAM, LPARAM) {
            if (uMessage == WM_ERASEBKGND) {
                pfnOnErase(toolbar.hwnd());
            }
            return false;
        });
        repaint(toolbar);
        if (IsWindow(toolbar.hwnd())) {
            ExpectedButton expected(ENABLED, 0, strip(), 0);
            EXPECT_EQ(difference(readClient(toolbar.hwnd()), 8, expected.pixels()), "");
        }
    }
}

// Keeps account of what is made and deleted, and makes one creation fail.
std::multiset<void*> s_live;
int s_nUntilFailure;

template <typename Function> class Maker;

template <typename R, typename... Args> class Maker<R WINAPI(Args...)> {
public:
    explicit Maker(const char* pszName) : m_import(self(), pszName, make)
    {
        s_pfnMake = m_import.template original<R(WINAPI*)(Args...)>();
    }

private:
    static R WINAPI make(Args... args)
    {
        R result = --s_nUntilFailure == 0 ? nullptr : s_pfnMake(args...);
        if (result != nullptr) {
            s_live.insert(result);
        }
        return result;
    }
    static inline R(WINAPI* s_pfnMake)(Args...);
    ReplacedImport m_import;
};

decltype(&DeleteObject) s_pfnDeleteObject;
decltype(&DeleteDC) s_pfnDeleteDC;
decltype(&ReleaseDC) s_pfnReleaseDC;

void forget(void* handle)
{
    auto found = s_live.find(handle);
    if (found != s_live.end()) {
        s_live.erase(found);
    }
}

BOOL WINAPI deleteObject(HGDIOBJ handle)
{
    forget(handle);
    BOOL fDone = s_pfnDeleteObject(handle);
    EXPECT_TRUE(fDone);
    return fDone;
}

BOOL WINAPI deleteDC(HDC hdc)
{
    forget(hdc);
    return s_pfnDeleteDC(hdc);
}

int WINAPI releaseDC(HWND hwnd, HDC hdc)
{
    forget(hdc);
    return s_pfnReleaseDC(hwnd, hdc);
}

class ToolbarObjects : public testing::Test {
protected:
    ToolbarObjects()
    {
        s_pfnDeleteObject = m_deleteObject.original<decltype(&DeleteObject)>();
        s_pfnDeleteDC = m_deleteDC.original<decltype(&DeleteDC)>();
        s_pfnReleaseDC = m_releaseDC.original<decltype(&ReleaseDC)>();
        s_live.clear();
        s_nUntilFailure = 0;
    }

private:
    Maker<decltype(CreateBitmap)> m_bitmap{"CreateBitmap"};
    Maker<decltype(CreateDiscardableBitmap)> m_discardable{"CreateDiscardableBitmap"};
    Maker<decltype(CreateDIBitmap)> m_dib{"CreateDIBitmap"};
    Maker<decltype(CreatePatternBrush)> m_pattern{"CreatePatternBrush"};
    Maker<decltype(CreateSolidBrush)> m_solid{"CreateSolidBrush"};
    Maker<decltype(CreateCompatibleDC)> m_memory{"CreateCompatibleDC"};
    Maker<decltype(GetDC)> m_screen{"GetDC"};
    ReplacedImport m_deleteObject{self(), "DeleteObject", deleteObject};
    ReplacedImport m_deleteDC{self(), "DeleteDC", deleteDC};
    ReplacedImport m_releaseDC{self(), "ReleaseDC", releaseDC};
};

TEST_F(ToolbarObjects, AreSharedUntilTheLastToolbarGoes)
{
    SystemColors systemColors(PLAIN);
    for (bool fFirstGoes : {true, false}) {
        auto pFirst = std::make_unique<TestToolbar>(buttonsIn(CHECKED | ENABLED));
        addStrip(*pFirst);
        size_t cLive = s_live.size();
        auto pSecond = std::make_unique<TestToolbar>(buttonsIn(CHECKED | ENABLED));
        addStrip(*pSecond);
        EXPECT_EQ(s_live.size(), cLive); // the second one makes nothing of its own
        repaint(*pFirst);
        repaint(*pSecond);
        (fFirstGoes ? pFirst : pSecond).reset();
        auto& pLeft = fFirstGoes ? pSecond : pFirst;
        SetWindowPos(pLeft->parent(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        repaint(*pLeft);
        expectLook(*pLeft, CHECKED | ENABLED, strip());
        pLeft.reset();
        EXPECT_TRUE(s_live.empty()) << s_live.size();
    }
}

TEST_F(ToolbarObjects, EachCanFailAndNothingIsLeft)
{
    constexpr int SHARED = 6; // objects without which there is no toolbar
    bool fFailed = true;
    int nFailing = 0;
    while (fFailed) {
        SCOPED_TRACE(++nFailing);
        // Other colours each time, so that the first paint makes the brush anew.
        SystemColors systemColors(nFailing % 2 != 0 ? PLAIN : CONTRAST);
        s_nUntilFailure = nFailing;
        {
            TestToolbar toolbar(buttonsIn(0));
            if (IsWindow(toolbar.hwnd())) {
                addStrip(toolbar);
                repaint(toolbar);
            }
            fFailed = s_nUntilFailure <= 0;
            s_nUntilFailure = 0;
            EXPECT_EQ(IsWindow(toolbar.hwnd()) != 0, nFailing > SHARED);
            if (IsWindow(toolbar.hwnd())) {
                repaint(toolbar);
                expectLook(toolbar, 0, strip());
            }
        }
        EXPECT_TRUE(s_live.empty()) << s_live.size();
    }
    EXPECT_GT(nFailing, SHARED + 2 * PICTURES); // as far as the brushes of the last button
}

} // namespace
