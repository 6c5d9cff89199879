// The looks of the toolbar, pixel by pixel, and the drawing objects behind them.
#include "../resources/ids.h"
#include "../toolbar/bitmap.h"
#include "../toolbar/objects.h"
#include "../toolbar/paint.h"
#include "support/ledger.h"
#include "support/picture.h"
#include "support/subclassed.h"
#include "support/toolbar.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits.h>
#include <map>
#include <memory>

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

// The pictures of the strip in the present system colours.
Picture strip()
{
    const std::map<COLORREF, int> elements = {
        {RGB(0, 0, 0), COLOR_BTNTEXT},       {RGB(128, 128, 128), COLOR_BTNSHADOW},
        {RGB(192, 192, 192), COLOR_BTNFACE}, {RGB(255, 255, 255), COLOR_BTNHIGHLIGHT},
        {RGB(0, 0, 255), COLOR_HIGHLIGHT},   {RGB(255, 0, 255), COLOR_WINDOW}};
    HBITMAP hbm = LoadBitmapA(self(), MAKEINTRESOURCEA(STRIP));
    Picture picture(hbm);
    DeleteObject(hbm);
    for (int n = 0; n < picture.cx * picture.cy; ++n) {
        const int x = n % picture.cx, y = n / picture.cx;
        auto element = elements.find(picture.at(x, y));
        if (element != elements.end()) {
            picture.set(x, y, GetSysColor(element->second));
        }
    }
    return picture;
}

// The frame and the face of a button.
Picture expectedFace(bool fPressed)
{
    const COLORREF clrFrame = GetSysColor(COLOR_WINDOWFRAME),
                   clrShadow = GetSysColor(COLOR_BTNSHADOW),
                   clrEdge = fPressed ? clrShadow : GetSysColor(COLOR_BTNHIGHLIGHT);
    Picture button(24, 22, GetSysColor(COLOR_BTNFACE));
    auto line = [&](int xFirst, int yFirst, int xLast, int yLast, COLORREF clrLine) {
        for (int y = yFirst; y <= yLast; ++y) {
            for (int x = xFirst; x <= xLast; ++x) {
                button.set(x, y, clrLine);
            }
        }
    };
    line(1, 0, 22, 0, clrFrame);
    line(1, 21, 22, 21, clrFrame);
    line(0, 1, 0, 20, clrFrame);
    line(23, 1, 23, 20, clrFrame);
    line(1, 1, 1, fPressed ? 20 : 19, clrEdge);
    line(1, 1, fPressed ? 22 : 21, 1, clrEdge);
    if (!fPressed) {
        line(22, 1, 22, 20, clrShadow);
        line(1, 20, 22, 20, clrShadow);
        line(21, 2, 21, 19, clrShadow);
        line(2, 19, 21, 19, clrShadow);
    }
    return button;
}

// One button, drawn by the rules, pixel by pixel. iPicture -1 gives the empty face.
Picture expectedButton(BYTE fsState, int iPicture, const Picture& pictures, int nDitherPhase)
{
    const bool fPressed = (fsState & PRESSED) != 0;
    const bool fIndeterminate =
        (fsState & (INDETERMINATE | ENABLED | PRESSED)) == (INDETERMINATE | ENABLED);
    const bool fEnabled = (fsState & ENABLED) != 0 && !fIndeterminate;
    const bool fChecked = (fsState & CHECKED) != 0 && !fIndeterminate;
    const bool fWidened = !fEnabled && fChecked;
    const COLORREF clrFace = GetSysColor(COLOR_BTNFACE),
                   clrHighlight = GetSysColor(COLOR_BTNHIGHLIGHT);
    const int nDown = fChecked || fPressed, nLeft = 1 + nDown, cx = 19 + 2 * nDown, cy = cx - 2;
    Picture button = expectedFace(fPressed);
    // Places in the work area.
    auto isPicture = [&](int x, int y) {
        return x >= nLeft && x < nLeft + 16 && y >= nLeft && y < nLeft + 15;
    };
    auto picture = [&](int x, int y) { return pictures.at(16 * iPicture + x - nLeft, y - nLeft); };
    auto isDark = [&](int x, int y) {
        return isPicture(x, y) && picture(x, y) != clrFace && picture(x, y) != clrHighlight;
    };
    // What each pixel of the work area becomes, from the bottom layer to the top one.
    auto colour = [&](int x, int y) {
        const bool fDark = isDark(x, y), fDarkBefore = isDark(x - 1, y - 1);
        const bool fKept = fDark || (fWidened && fDarkBefore);
        // Wine 8 copies a mask onto itself byte by byte, and loses what should be carried from
        // one byte to the next.
        if (fWidened && fDarkBefore && !fDark && x % 8 == 0) {
            return ANY;
        }
        if ((fChecked || fIndeterminate) && !fKept && x < cx && y < cy) {
            return (x + y + nDitherPhase) % 2 != 0 ? clrHighlight : clrFace;
        }
        if (!fEnabled && fDark) {
            return GetSysColor(COLOR_BTNSHADOW);
        }
        if (!fEnabled && !fIndeterminate && fDarkBefore) {
            return clrHighlight;
        }
        return fEnabled && isPicture(x, y) ? picture(x, y) : button.at(x + 2, y + 2);
    };
    for (int y = 0; iPicture >= 0 && y <= cy; ++y) {
        for (int x = 0; x <= cx; ++x) {
            button.set(x + 2, y + 2, colour(x, y));
        }
    }
    return button;
}

// Column and row where a button isn't as it should be, or nothing.
std::string difference(const Picture& screen, int xButton, const Picture& button)
{
    for (int y = 0; y < 22; ++y) {
        for (int x = 0; x < 24; ++x) {
            COLORREF clr = screen.at(xButton + x, y + 2), clrExpected = button.at(x, y);
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
    const toolbar::PictureSource pictures = {self(), STRIP};
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
void expectLook(const TestToolbar& toolbar, BYTE fsState, const Picture& pictures)
{
    const Picture screen(toolbar.hwnd());
    std::string first[2];
    for (int nPhase = 0; nPhase < 2; ++nPhase) {
        for (int n = 0; n < PICTURES && first[nPhase].empty(); ++n) {
            int x = 8 + 23 * n;
            first[nPhase] = difference(screen, x, expectedButton(fsState, n, pictures, nPhase + x));
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
    ReplacedImport selects(self(), "SelectObject", countingSelect);
    s_pfnSelectObject = selects.original<decltype(&SelectObject)>();
    s_cSelected = 0;
    repaint(toolbar);
    EXPECT_EQ(s_cSelected, 2); // the strip, once for all buttons, and back
    CountedCalls<decltype(BitBlt)> blits(self(), "BitBlt");
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
        blits.take();
        InvalidateRect(toolbar.hwnd(), &row.rc, FALSE);
        UpdateWindow(toolbar.hwnd());
        EXPECT_EQ(blits.take(), row.cButtons) << row.rc.left;
        const Picture screen(toolbar.hwnd());
        for (LONG x = 0; x < 400; ++x) {
            POINT point = {x, 12};
            bool fDrawn = PtInRect(&row.rc, point) && row.cButtons > 0;
            EXPECT_EQ(screen.at(x, 12) != clrOld, fDrawn) << x;
        }
    }
    // What a paint has selected is let go again.
    EXPECT_EQ(GetCurrentObject(g_hdcToolGlyphs, OBJ_BITMAP), hbmOld);
}

TEST(ToolbarPaint, WithoutWidthNothingIsDrawn)
{
    const std::vector<XferToolButton> rows = buttonsIn(ENABLED);
    CountedCalls<decltype(BitBlt)> blits(self(), "BitBlt");
    fXferToolbarRegister(self());
    for (int cx : {0, 100}) {
        // Without a parent, whose size it would follow.
        HWND hwnd = CreateWindowExA(WS_EX_TOPMOST, XFER_TOOLBARCLASS, "", WS_POPUP | WS_VISIBLE, 0,
                                    0, cx, 27, nullptr, nullptr, self(), nullptr);
        const toolbar::PictureSource pictures = {self(), STRIP};
        SendMessageA(hwnd, TOOLM_ADDBITMAP, PICTURES, reinterpret_cast<LPARAM>(&pictures));
        SendMessageA(hwnd, TOOLM_ADDBUTTONS, PICTURES, reinterpret_cast<LPARAM>(rows.data()));
        blits.take();
        SendMessageA(hwnd, WM_SIZE, 0, 0);
        SendMessageA(hwnd, WM_PAINT, 0, 0);
        EXPECT_EQ(blits.take(), cx == 0 ? 0 : 4);
        EXPECT_EQ(toolbar::recordOf(hwnd)->pBitmaps[0].hbm != nullptr, cx != 0);
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
    const Picture screen(toolbar.hwnd()), pictures = strip();
    for (auto& row : table) {
        EXPECT_EQ(difference(screen, row.x, expectedButton(ENABLED, row.iPicture, pictures, 0)), "")
            << row.x;
    }
    for (LONG x : {0, 7, 32, 38, 155, 599}) { // the background
        EXPECT_EQ(screen.at(x, 12), GetSysColor(COLOR_BTNFACE)) << x;
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

TEST(ToolbarPaint, ABadStripLeavesTheBackground)
{
    const Damage table[] = {{"an old header", 0, 12, 0},
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
                            {"compressed", 8, 2, 0},
                            {"not all colours", 16, 15, 0},
                            {"more colours", 16, 256, 0},
                            {"a byte short", 0, 40, 1},
                            {"no pixels", 0, 40, 1800},
                            {"half a colour table", 0, 40, 1840},
                            {"no header", 0, 40, 1904}};
    ReplacedImport lock(self(), "LockResource", damagedBytes);
    ReplacedImport size(self(), "SizeofResource", damagedSize);
    CountedCalls<decltype(StretchDIBits)> stretches(self(), "StretchDIBits");
    s_pfnLockResource = lock.original<decltype(&LockResource)>();
    s_pfnSizeofResource = size.original<decltype(&SizeofResource)>();
    for (auto& row : table) {
        TestToolbar toolbar(buttonsIn(ENABLED));
        addStrip(toolbar);
        s_damage = row;
        stretches.take();
        repaint(toolbar);
        EXPECT_EQ(stretches.take(), 0) << row.pszWhat; // its pixels aren't even looked at
        const Picture screen(toolbar.hwnd());
        for (LONG x = 0; x < 600; ++x) {
            ASSERT_EQ(screen.at(x, 12), GetSysColor(COLOR_BTNFACE)) << row.pszWhat;
        }
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

TEST(ToolbarPaint, StripsAreUsedSideBySide)
{
    HBITMAP hbmOwn = makeOwnBitmap();
    const Picture own(hbmOwn);
    {
        TestToolbar toolbar;
        addStrip(toolbar, 3);
        const toolbar::PictureSource pictures = {nullptr, LOWORD(hbmOwn)},
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
            const Picture screen(toolbar.hwnd()), library = strip();
            int x = 8;
            for (int iPicture : order) {
                bool fOwn = iPicture == 3 || iPicture == 4;
                int iExpected = iPicture == 5 ? -1 : fOwn ? iPicture - 3 : iPicture;
                EXPECT_EQ(difference(screen, x,
                                     expectedButton(ENABLED, iExpected, fOwn ? own : library, 0)),
                          "")
                    << "picture " << iPicture;
                x += 23;
            }
        }
    }
    EXPECT_EQ(own.difference(Picture(hbmOwn)), ""); // neither adapted nor deleted
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
    const Picture old = strip();
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
            EXPECT_EQ(
                difference(Picture(toolbar.hwnd()), 8, expectedButton(ENABLED, 0, strip(), 0)), "");
        }
    }
}

TEST(ToolbarObjects, AreSharedUntilTheLastToolbarGoes)
{
    SystemColors systemColors(PLAIN);
    Ledger ledger(self());
    for (bool fFirstGoes : {true, false}) {
        auto pFirst = std::make_unique<TestToolbar>(buttonsIn(CHECKED | ENABLED));
        addStrip(*pFirst);
        const size_t cShared = Ledger::count();
        auto pSecond = std::make_unique<TestToolbar>(buttonsIn(CHECKED | ENABLED));
        addStrip(*pSecond);
        EXPECT_EQ(Ledger::count(), cShared); // the second one makes nothing of its own
        repaint(*pFirst);
        repaint(*pSecond);
        (fFirstGoes ? pFirst : pSecond).reset();
        auto& pLeft = fFirstGoes ? pSecond : pFirst;
        SetWindowPos(pLeft->parent(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        repaint(*pLeft);
        expectLook(*pLeft, CHECKED | ENABLED, strip());
        pLeft.reset();
        EXPECT_EQ(Ledger::owed(), "");
    }
}

TEST(ToolbarObjects, EachCanFailAndNothingIsLeft)
{
    constexpr int SHARED = 6; // objects without which there is no toolbar
    Ledger ledger(self());
    bool fFailed = true;
    int nFailing = 0;
    while (fFailed) {
        SCOPED_TRACE(++nFailing);
        // Other colours each time, so that the first paint makes the brush anew.
        SystemColors systemColors(nFailing % 2 != 0 ? PLAIN : CONTRAST);
        ledger.failAt(nFailing);
        {
            TestToolbar toolbar(buttonsIn(0));
            if (IsWindow(toolbar.hwnd())) {
                addStrip(toolbar);
                repaint(toolbar);
            }
            fFailed = ledger.hasFailed();
            ledger.failAt(0);
            EXPECT_EQ(IsWindow(toolbar.hwnd()) != 0, nFailing > SHARED);
            if (IsWindow(toolbar.hwnd())) {
                repaint(toolbar);
                expectLook(toolbar, 0, strip());
            }
        }
        EXPECT_EQ(Ledger::owed(), "");
    }
    EXPECT_GT(nFailing, SHARED + 2 * PICTURES); // as far as the brushes of the last button
}

} // namespace
