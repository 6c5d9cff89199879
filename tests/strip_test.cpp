// The message strip: where its boxes are, what is painted into them, and how often.
#include "../resources/ids.h"
#include "support/clock.h"
#include "support/looks.h"

#include <limits.h>

namespace {

constexpr COLORREF RED = RGB(255, 0, 0);

using IsRight = std::function<bool(LONG x, LONG y, COLORREF clr)>;

// Where the strip has to be, from the client area and the height of its font.
struct Geometry {
    RECT rcStrip, rcText, rcThermo, rcBar;
};

class Strip : public PaneWindow {
protected:
    Strip()
    {
        HDC hdc = GetDC(nullptr);
        TEXTMETRICA metrics;
        GetTextMetricsA(hdc, &metrics);
        HFONT hfont = CreateFontA(-8, metrics.tmAveCharWidth, 0, 0, 100, 0, 0, 0, DEFAULT_CHARSET,
                                  0, 0, 0, 0, "MS Sans Serif");
        HGDIOBJ hfontOld = SelectObject(hdc, hfont);
        GetTextMetricsA(hdc, &metrics);
        SelectObject(hdc, hfontOld);
        DeleteObject(hfont);
        ReleaseDC(nullptr, hdc);
        m_cyStrip = metrics.tmHeight + metrics.tmExternalLeading + 12;
    }

    Geometry geometry() const
    {
        Geometry g;
        GetClientRect(m_hwnd, &g.rcStrip);
        g.rcStrip.top = g.rcStrip.bottom - m_cyStrip;
        const RECT& rc = g.rcStrip;
        g.rcText = {6, rc.top + 3, 6 + 2 * (rc.right / 3), rc.bottom - 4};
        g.rcThermo = {g.rcText.right + 12, rc.top + 3, rc.right - 6, rc.bottom - 4};
        g.rcBar = g.rcThermo;
        InflateRect(&g.rcBar, -1, -1);
        return g;
    }

    // Paints the window and looks at pixels of it.
    void expectPixels(const RECT& rc, const IsRight& isRight) const
    {
        InvalidateRect(m_hwnd, nullptr, FALSE);
        UpdateWindow(m_hwnd);
        const Picture picture(m_hwnd);
        int cWrong = 0;
        for (LONG y = rc.top; y < rc.bottom; ++y) {
            for (LONG x = rc.left; x < rc.right; ++x) {
                cWrong += !isRight(x, y, picture.at(x, y));
            }
        }
        EXPECT_EQ(cWrong, 0) << rc;
    }

    void setThermometer(LONG nTotal, LONG nPosition) const
    {
        vXferDandDSetThermometer(m_hwnd, nTotal);
        vXferDandDUpdateThermometer(m_hwnd, nPosition);
    }

    // Whether the strip, and nothing else, waits to be painted; then it is.
    bool takeUpdate() const
    {
        RECT rc;
        if (!GetUpdateRect(m_hwnd, &rc, FALSE)) {
            return false;
        }
        EXPECT_EQ(rc, geometry().rcStrip);
        UpdateWindow(m_hwnd);
        return true;
    }

    LONG m_cyStrip;

private:
    FakeClock m_clock{100000};
};

// The colour that the strip has at a place where boxes stand: each of their lines with its last
// point left out, the highlight over the shadow.
COLORREF stripColor(const std::vector<RECT>& boxes, LONG x, LONG y)
{
    for (const RECT& rc : boxes) {
        if (x < rc.left || x > rc.right || y < rc.top || y > rc.bottom) {
            continue;
        }
        if (x == rc.right || (y == rc.bottom && x > rc.left)) {
            return GetSysColor(COLOR_BTNHIGHLIGHT);
        }
        if (x == rc.left || y == rc.top) {
            return GetSysColor(COLOR_BTNSHADOW);
        }
    }
    return GetSysColor(COLOR_BTNFACE);
}

TEST_F(Strip, PaintsItsBoxesWhereTheyBelong)
{
    create();
    for (LONG cx : {640, 641, 642, 300}) {
        SCOPED_TRACE(cx);
        setClientSize(cx, 400);
        const Geometry g = geometry();
        expectPixels(g.rcStrip, [&](LONG x, LONG y, COLORREF clr) {
            return clr == stripColor({g.rcText, g.rcThermo}, x, y);
        });
    }
}

TEST_F(Strip, ClipsItsTextsToTheirBoxes)
{
    create();
    DrawnTexts texts;
    const Geometry g = geometry();
    vXferDandDDisplayDILText(m_hwnd, "a & b");
    setThermometer(0, 0);
    auto drawn = texts.of(m_hwnd);
    ASSERT_EQ(drawn.size(), 2u);
    EXPECT_EQ(drawn[0].text, "a & b");
    EXPECT_EQ(drawn[0].rc, g.rcText);
    EXPECT_EQ(drawn[0].x, g.rcText.left + 3);
    EXPECT_EQ(drawn[0].y, g.rcText.top + 2);
    EXPECT_EQ(drawn[1].rc, g.rcBar);
    EXPECT_EQ(drawn[1].x, g.rcBar.left + 3);
    EXPECT_EQ(drawn[1].y, g.rcBar.top + 2);
    // The number, as the string of the language has it.
    for (DWORD dwPosition : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu}) {
        char szExpected[80];
        wsprintfA(szExpected, english(IDS_THERMO_COUNT).c_str(), dwPosition);
        vXferDandDUpdateThermometer(m_hwnd, LONG(dwPosition));
        drawn = texts.of(m_hwnd);
        ASSERT_EQ(drawn.size(), 2u);
        EXPECT_EQ(drawn[1].text, szExpected);
    }
    vXferDandDUpdateThermometer(m_hwnd, -1);
    EXPECT_EQ(texts.of(m_hwnd).size(), 1u);
}

TEST_F(Strip, FillsTheBarInProportion)
{
    struct Case {
        LONG nTotal, nPosition;
        LONG cxFill; // -1: as much as there is
    };
    create();
    const LONG cx = geometry().rcBar.right - geometry().rcBar.left;
    ASSERT_GT(cx, 50);
    std::vector<Case> cases = {{100, 0, 0},
                               {100, 100, -1},
                               {100, 101, -1},
                               {100, INT_MAX, -1},
                               {100, -2, 0},
                               {100, INT_MIN, 0},
                               {1, 1, -1},
                               {INT_MAX, INT_MAX, -1},
                               {INT_MAX, INT_MAX - 1, cx - 1},
                               {INT_MAX, INT_MAX / 2, (cx - 1) / 2},
                               {-100, 50, 0},
                               {-1, INT_MIN, -1},
                               {INT_MIN, INT_MIN, -1},
                               {0, 50, 0},
                               {100, -1, 0}};
    for (LONG n = 0; n < 40; ++n) {
        LONG nTotal = 1000003 + n * 7919;
        LONG nPosition = nTotal / 40 * n + n;
        cases.push_back({nTotal, nPosition, LONG(LONGLONG(nPosition) * cx / nTotal)});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.nPosition << " of " << c.nTotal);
        setThermometer(c.nTotal, c.nPosition);
        const RECT rc = geometry().rcBar;
        const LONG xEdge = rc.left + (c.cxFill == -1 ? cx : c.cxFill);
        expectPixels({0, rc.top - 3, geometry().rcStrip.right, rc.bottom + 3},
                     [&](LONG x, LONG y, COLORREF clr) {
                         bool fRed = x >= rc.left && x < xEdge && y >= rc.top && y < rc.bottom;
                         return (clr == RED) == fRed;
                     });
    }
}

TEST_F(Strip, DrawsNothingWhereThereIsNoRoom)
{
    create();
    // Without a frame nothing keeps the window from becoming this narrow.
    SetMenu(m_hwnd, nullptr);
    SetWindowLongA(m_hwnd, GWL_STYLE, LONG(WS_POPUP | WS_VISIBLE));
    DrawnTexts texts;
    bool fSeen = false;
    for (LONG cx : {80, 75, 74, 73, 72, 71, 70, 66, 48, 24, 9, 3, 2, 1, 0}) {
        SCOPED_TRACE(cx);
        SetWindowPos(m_hwnd, nullptr, 0, 0, cx, 300, SWP_NOMOVE | SWP_NOZORDER | SWP_FRAMECHANGED);
        const Geometry g = geometry();
        if (g.rcStrip.right != cx || g.rcThermo.right > g.rcThermo.left) {
            continue;
        }
        fSeen = true;
        for (LONG nTotal : {0, 100}) {
            setThermometer(nTotal, 50);
            EXPECT_LE(texts.of(m_hwnd).size(), 1u);
            // The box of the text is there as far as it has room.
            const bool fBox = g.rcText.right > g.rcText.left && g.rcText.right < cx;
            const LONG xFirst = fBox ? 0 : std::max(g.rcText.right + 1, 0L);
            expectPixels(
                {xFirst, g.rcStrip.top, cx, g.rcStrip.bottom},
                [&](LONG x, LONG y, COLORREF clr) { return clr == stripColor({g.rcText}, x, y); });
        }
    }
    EXPECT_TRUE(fSeen);
}

// Pens: the first of the two that are made fails.
int s_nPen;
HGDIOBJ s_selected;

HPEN WINAPI failingCreatePen(int nStyle, int cx, COLORREF clr)
{
    return s_nPen++ == 0 ? nullptr : CreatePen(nStyle, cx, clr);
}

HGDIOBJ WINAPI notingSelectObject(HDC hdc, HGDIOBJ h)
{
    s_selected = GetObjectType(h) == OBJ_PEN ? h : s_selected;
    return SelectObject(hdc, h);
}

BOOL WINAPI checkingDeleteObject(HGDIOBJ h)
{
    EXPECT_TRUE(h == nullptr || h != s_selected) << "it is selected";
    return DeleteObject(h);
}

TEST_F(Strip, NoPenIsDeletedWhileItIsSelected)
{
    create();
    ReplacedImport make(library(), "CreatePen", failingCreatePen);
    ReplacedImport select(library(), "SelectObject", notingSelectObject);
    ReplacedImport drop(library(), "DeleteObject", checkingDeleteObject);
    s_nPen = 0;
    s_selected = nullptr;
    InvalidateRect(m_hwnd, nullptr, FALSE);
    UpdateWindow(m_hwnd);
    EXPECT_GT(s_nPen, 1);
}

TEST_F(Strip, PaintsTheThermometerTwiceASecondAtMost)
{
    create();
    // Also while the counter of the clock runs over.
    for (DWORD dwStart : {DWORD(1000000), DWORD(-700), DWORD(-500), DWORD(-200), DWORD(-1)}) {
        SCOPED_TRACE(dwStart);
        FakeClock::s_dwNow = dwStart;
        vXferDandDSetThermometer(m_hwnd, 100);
        EXPECT_TRUE(takeUpdate());
        vXferDandDUpdateThermometer(m_hwnd, -1);
        EXPECT_TRUE(takeUpdate());
        vXferDandDUpdateThermometer(m_hwnd, 1);
        EXPECT_TRUE(takeUpdate()) << "the first after it was off";
        struct Step {
            DWORD dwMs; // since the last paint
            bool fPainted;
        };
        for (Step step : {Step{0, false}, Step{100, false}, Step{500, false}, Step{501, true},
                          Step{500, false}, Step{5000, true}, Step{1, false}}) {
            DWORD dwPainted = FakeClock::s_dwNow;
            FakeClock::s_dwNow += step.dwMs;
            vXferDandDUpdateThermometer(m_hwnd, 2);
            EXPECT_EQ(takeUpdate(), step.fPainted) << step.dwMs;
            if (!step.fPainted) {
                FakeClock::s_dwNow = dwPainted;
            }
        }
        // Off shows at once, and so does the next run, at whatever time.
        vXferDandDUpdateThermometer(m_hwnd, -1);
        EXPECT_TRUE(takeUpdate());
        FakeClock::s_dwNow = 400;
        vXferDandDUpdateThermometer(m_hwnd, 3);
        EXPECT_TRUE(takeUpdate());
        // The paint counts, whatever it was for.
        FakeClock::s_dwNow += 5000;
        vXferDandDSetThermometer(m_hwnd, 100);
        EXPECT_TRUE(takeUpdate());
        FakeClock::s_dwNow += 500;
        vXferDandDUpdateThermometer(m_hwnd, 4);
        EXPECT_FALSE(takeUpdate());
    }
}

TEST_F(Strip, TheSameTextRepaintsOnce)
{
    create();
    DrawnTexts texts;
    const std::string longText(5000, 'x');
    for (size_t cch : {0u, 1u, 258u, 259u, 260u, 261u, 5000u}) {
        SCOPED_TRACE(cch);
        const std::string text = longText.substr(0, cch);
        vXferDandDDisplayDILText(m_hwnd, "other");
        EXPECT_TRUE(takeUpdate());
        vXferDandDDisplayDILText(m_hwnd, text.c_str());
        EXPECT_TRUE(takeUpdate());
        vXferDandDDisplayDILText(m_hwnd, text.c_str());
        EXPECT_FALSE(takeUpdate());
        EXPECT_EQ(texts.strip(m_hwnd), text.substr(0, XFER_MAX_NAME));
    }
    // Case counts, and null is empty.
    vXferDandDDisplayDILText(m_hwnd, "TEXT");
    vXferDandDDisplayDILText(m_hwnd, "text");
    EXPECT_EQ(texts.strip(m_hwnd), "text");
    vXferDandDDisplayDILText(m_hwnd, nullptr);
    EXPECT_EQ(texts.strip(m_hwnd), "");
    vXferDandDDisplayDILText(m_hwnd, "");
    EXPECT_FALSE(takeUpdate());
}

} // namespace
