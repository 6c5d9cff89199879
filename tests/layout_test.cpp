// The anchored layout: where the controls are at every size and in both modes, and what a
// change of size costs.
#include "../resources/ids.h"
#include "support/looks.h"

#include <map>
#include <memory>

namespace {

// The lines that edges hang on: those of the client area, and those of a box of 10 by 10 pixels
// at its centre.
enum Line { LEFT, TOP, RIGHT, BOTTOM, CENTRE_LEFT, CENTRE_TOP, CENTRE_RIGHT, CENTRE_BOTTOM };

struct Anchors {
    int id;
    Line top, bottom, left, right;
};

const std::vector<Anchors> PANES = {
    {226, TOP, TOP, CENTRE_RIGHT, CENTRE_RIGHT},
    {207, TOP, TOP, CENTRE_LEFT, RIGHT},
    {223, TOP, CENTRE_TOP, CENTRE_RIGHT, RIGHT},
    {229, TOP, TOP, LEFT, LEFT},
    {221, TOP, TOP, LEFT, CENTRE_LEFT},
    {224, TOP, CENTRE_TOP, LEFT, CENTRE_LEFT},
    {232, CENTRE_TOP, CENTRE_TOP, LEFT, LEFT},
    {211, CENTRE_TOP, CENTRE_TOP, LEFT, CENTRE_LEFT},
    {227, CENTRE_BOTTOM, CENTRE_BOTTOM, CENTRE_RIGHT, CENTRE_RIGHT},
    {210, CENTRE_BOTTOM, CENTRE_BOTTOM, CENTRE_RIGHT, RIGHT},
    {209, CENTRE_BOTTOM, BOTTOM, CENTRE_RIGHT, RIGHT},
    {230, CENTRE_BOTTOM, CENTRE_BOTTOM, LEFT, LEFT},
    {222, CENTRE_BOTTOM, CENTRE_BOTTOM, LEFT, CENTRE_LEFT},
    {208, CENTRE_BOTTOM, BOTTOM, LEFT, CENTRE_LEFT},
    {241, CENTRE_TOP, CENTRE_BOTTOM, LEFT, RIGHT},
    {201, BOTTOM, BOTTOM, LEFT, RIGHT},
    {255, BOTTOM, BOTTOM, LEFT, RIGHT},
};
const std::vector<Anchors> COMMANDLINE = {
    {237, BOTTOM, BOTTOM, LEFT, LEFT},
    {238, BOTTOM, BOTTOM, LEFT, RIGHT},
    {201, TOP, BOTTOM, LEFT, RIGHT},
};
constexpr int ALL[] = {226, 207, 223, 229, 221, 224, 232, 211, 227, 210,
                       209, 230, 222, 208, 241, 237, 238, 201, 255};

LONG lineAt(const SIZE& size, Line line)
{
    const LONG x = size.cx / 2;
    const LONG y = size.cy / 2;
    const LONG at[] = {0, 0, size.cx, size.cy, x - 5, y - 5, x + 5, y + 5};
    return at[line];
}

INT_PTR CALLBACK emptyProc(HWND, UINT, WPARAM, LPARAM)
{
    return 0;
}

class Layout : public PaneWindow {
protected:
    void createMeasured(DWORD nMode = XFERVIEW_TWOPANE)
    {
        create(nMode);
        // The template alone, with nothing of the library's in it.
        HWND hwnd = CreateDialogParamA(m_hEnglish, "DLGDANDD", nullptr, emptyProc, 0);
        RECT rc;
        GetClientRect(hwnd, &rc);
        m_template = {rc.right, rc.bottom};
        for (int id : ALL) {
            m_places[id] = placeOf(hwnd, id);
        }
        DestroyWindow(hwnd);
        // The log of the command line mode has a place of its own.
        RECT& rcLog = m_logPlace;
        rcLog = {-1, 26, m_template.cx + 1, m_places[238].top - 4};
    }

    SIZE clientSize() const
    {
        RECT rc;
        GetClientRect(m_hwnd, &rc);
        return {rc.right, rc.bottom};
    }

    RECT expectedPlace(const Anchors& anchors, const SIZE& size, DWORD nMode) const
    {
        const RECT rc = anchors.id == 201 && nMode != 0 ? m_logPlace : m_places.at(anchors.id);
        auto moved = [&](LONG n, Line line) {
            return n + lineAt(size, line) - lineAt(m_template, line);
        };
        RECT rcNow = {moved(rc.left, anchors.left), moved(rc.top, anchors.top),
                      moved(rc.right, anchors.right), moved(rc.bottom, anchors.bottom)};
        // Where edges cross, the platform makes no window smaller than nothing.
        rcNow.right = std::max(rcNow.left, rcNow.right);
        rcNow.bottom = std::max(rcNow.top, rcNow.bottom);
        return rcNow;
    }

    void expectLayout(DWORD nMode) const
    {
        const SIZE size = clientSize();
        SCOPED_TRACE(testing::Message() << size.cx << " by " << size.cy << " mode " << nMode);
        std::map<int, bool> shown;
        for (const Anchors& anchors : nMode == 0 ? PANES : COMMANDLINE) {
            RECT rc = expectedPlace(anchors, size, nMode);
            const RECT rcNow = placeOf(m_hwnd, anchors.id);
            shown[anchors.id] = true;
            // The height of a closed combo box is its own affair; the list has what was set.
            if (anchors.id == IDC_DANDD_LOCALDRIVES) {
                rc.bottom = rcNow.bottom;
                expectDropDown(rcNow);
            }
            EXPECT_EQ(rcNow, rc) << anchors.id;
        }
        for (int id : ALL) {
            EXPECT_EQ((GetWindowLongA(item(id), GWL_STYLE) & WS_VISIBLE) != 0, shown[id]) << id;
            EXPECT_EQ(IsWindowEnabled(item(id)) != 0, shown[id]) << id;
        }
    }

    // What the platform makes of ten times the height is there already.
    void expectDropDown(const RECT& rcClosed) const
    {
        HWND hwnd = item(IDC_DANDD_LOCALDRIVES);
        RECT rc = {};
        RECT rcOfTen = {};
        SendMessageA(hwnd, CB_GETDROPPEDCONTROLRECT, 0, LPARAM(&rc));
        SetWindowPos(hwnd, nullptr, 0, 0, rcClosed.right - rcClosed.left,
                     10 * (rcClosed.bottom - rcClosed.top), SWP_NOMOVE | SWP_NOZORDER);
        SendMessageA(hwnd, CB_GETDROPPEDCONTROLRECT, 0, LPARAM(&rcOfTen));
        EXPECT_EQ(rc, rcOfTen);
        EXPECT_GT(rc.bottom - rc.top, 8 * (rcClosed.bottom - rcClosed.top));
    }

    SIZE m_template;
    std::map<int, RECT> m_places;
    RECT m_logPlace;
};

TEST_F(Layout, ControlsHangOnTheirLinesAtEverySize)
{
    createMeasured();
    const SIZE t = m_template;
    const SIZE sizes[] = {{t.cx, t.cy},         {t.cx + 100, t.cy + 100},
                          {t.cx + 1, t.cy + 1}, {t.cx + 2, t.cy + 3},
                          {t.cx - 1, t.cy - 1}, {t.cx + 333, t.cy - 57},
                          {t.cx / 2, t.cy / 2}, {200, 900},
                          {1200, 120},          {t.cx, t.cy}};
    for (DWORD nMode : {0u, 1u, 0u}) {
        setMode(nMode);
        for (const SIZE& size : sizes) {
            setClientSize(size.cx, size.cy);
            ASSERT_EQ(clientSize().cx, size.cx);
            ASSERT_EQ(clientSize().cy, size.cy);
            expectLayout(nMode);
        }
    }
    // The other mode is right for the size that it finds.
    for (const SIZE& size : sizes) {
        setClientSize(size.cx, size.cy);
        for (DWORD nMode : {1u, 0u}) {
            setMode(nMode);
            expectLayout(nMode);
        }
    }
}

TEST_F(Layout, TinyWindowsComeBackWhole)
{
    createMeasured(XFERVIEW_COMMANDLINE);
    SetMenu(m_hwnd, nullptr);
    SetWindowLongA(m_hwnd, GWL_STYLE, LONG(WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN));
    const SIZE sizes[] = {{50, 50}, {1, 1}, {0, 0}, {9, 11}, {0, 400}, {600, 0}};
    for (const SIZE& size : sizes) {
        for (const SIZE& now : {size, m_template}) {
            SetWindowPos(m_hwnd, nullptr, 0, 0, now.cx, now.cy,
                         SWP_NOMOVE | SWP_NOZORDER | SWP_FRAMECHANGED);
            ASSERT_EQ(clientSize().cx, now.cx);
            ASSERT_EQ(clientSize().cy, now.cy);
            for (DWORD nMode : {0u, 1u}) {
                setMode(nMode);
                expectLayout(nMode);
            }
        }
    }
}

// On a small screen the platform cuts the window at its creation.
LRESULT CALLBACK cutWindow(int nCode, WPARAM wParam, LPARAM lParam)
{
    const auto pSent = reinterpret_cast<const CWPRETSTRUCT*>(lParam);
    if (nCode == HC_ACTION && pSent->message == WM_GETMINMAXINFO) {
        reinterpret_cast<MINMAXINFO*>(pSent->lParam)->ptMaxTrackSize = {500, 300};
    }
    return CallNextHookEx(nullptr, nCode, wParam, lParam);
}

TEST_F(Layout, IsMeasuredAtTheSizeOfTheTemplate)
{
    HHOOK hhook = SetWindowsHookExA(WH_CALLWNDPROCRET, cutWindow, nullptr, GetCurrentThreadId());
    m_hwnd = createOnly(m_parent.hwnd(), XFERVIEW_COMMANDLINE);
    UnhookWindowsHookEx(hhook);
    if (clientSize().cx > 500) {
        GTEST_SKIP() << "this platform creates no window smaller because a hook asks for it";
    }
    HWND hwndCut = std::exchange(m_hwnd, nullptr);
    createMeasured();
    close();
    m_hwnd = hwndCut;
    for (const SIZE& size : {m_template, SIZE{600, 400}}) {
        setClientSize(size.cx, size.cy);
        for (DWORD nMode : {0u, 1u}) {
            setMode(nMode);
            expectLayout(nMode);
        }
    }
}

TEST_F(Layout, LogFollowsItsEndOnlyWhenItWasInView)
{
    auto first = [&] { return tell(IDC_DANDD_INFOLINE, EM_GETFIRSTVISIBLELINE, 0, 0); };
    auto lastTop = [&] {
        HWND hwnd = item(IDC_DANDD_INFOLINE);
        RECT rc;
        TEXTMETRICA metrics;
        HDC hdc = GetDC(hwnd);
        SelectObject(hdc, GetStockObject(ANSI_FIXED_FONT));
        GetTextMetricsA(hdc, &metrics);
        ReleaseDC(hwnd, hdc);
        SendMessageA(hwnd, EM_GETRECT, 0, LPARAM(&rc));
        LRESULT nTop = SendMessageA(hwnd, EM_GETLINECOUNT, 0, 0) -
                       (rc.bottom - rc.top) / (metrics.tmHeight + metrics.tmExternalLeading);
        return std::max(nTop, LRESULT(0));
    };
    createMeasured(XFERVIEW_COMMANDLINE);
    setClientSize(600, 400);
    EXPECT_EQ(first(), 0);
    std::string lines = "0";
    for (int n = 1; n < 60; ++n) {
        lines += "\r\n" + std::to_string(n);
    }
    vXferDandDInfoLine(m_hwnd, lines.c_str());
    SetFocus(item(IDC_DANDD_COMMANDLINE));
    const LONG heights[] = {300, 350, 200, 401, 400};
    tell(IDC_DANDD_INFOLINE, EM_LINESCROLL, 0, lastTop() - first());
    for (LONG cy : heights) {
        setClientSize(600, cy);
        EXPECT_EQ(first(), lastTop()) << cy;
        EXPECT_GT(first(), 0);
    }
    for (DWORD nMode : {0u, 1u}) {
        setMode(nMode);
        EXPECT_EQ(first(), lastTop());
    }
    // Also when it had no room for a line meanwhile.
    for (LONG cy : {20, 0, 21, 400}) {
        setClientSize(600, cy);
    }
    EXPECT_EQ(first(), lastTop());
    // Scrolled back by its user, or with the user in it, it stays.
    tell(IDC_DANDD_INFOLINE, EM_LINESCROLL, 0, 5 - first());
    for (LONG cy : heights) {
        setClientSize(600, cy);
        EXPECT_EQ(first(), 5) << cy;
    }
    tell(IDC_DANDD_INFOLINE, EM_LINESCROLL, 0, lastTop() - first());
    SetFocus(item(IDC_DANDD_INFOLINE));
    const LRESULT nKept = first();
    setClientSize(600, 250);
    EXPECT_EQ(first(), nKept);
    EXPECT_NE(first(), lastTop());
}

TEST_F(Layout, ASizeRepaintsEachWindowOnce)
{
    createMeasured();
    nXferDandDClearHostFileList(m_hwnd);
    nXferDandDAddHostFileName(m_hwnd, "name");
    vXferDandDInfoLine(m_hwnd, "entry");
    std::map<HWND, int> painted;
    int cErased = 0;
    std::vector<std::unique_ptr<Subclassed>> all;
    auto watch = [&](HWND hwnd) {
        all.push_back(std::make_unique<Subclassed>(hwnd, [&, hwnd](UINT uMessage, WPARAM, LPARAM) {
            painted[hwnd] += uMessage == WM_PAINT;
            cErased += uMessage == WM_ERASEBKGND && hwnd == m_hwnd;
            return false;
        }));
    };
    watch(m_hwnd);
    for (HWND hwnd = GetWindow(m_hwnd, GW_CHILD); hwnd != nullptr;
         hwnd = GetWindow(hwnd, GW_HWNDNEXT)) {
        watch(hwnd);
    }
    auto settle = [&] {
        EXPECT_TRUE(waitUntil([&] {
            MSG msg;
            return !PeekMessageA(&msg, nullptr, 0, 0, PM_NOREMOVE);
        }));
    };
    // Shown once, each control has the scroll bars that it wants.
    for (DWORD nMode : {0u, 1u, 0u}) {
        setMode(nMode);
        settle();
    }
    struct Step {
        LONG dx, dy;
        DWORD nMode;
    };
    for (Step step : {Step{60, 40, 0}, Step{-31, 0, 0}, Step{0, 25, 0}, Step{0, 25, 1},
                      Step{40, -30, 1}, Step{40, -30, 0}}) {
        SCOPED_TRACE(testing::Message() << step.dx << ", " << step.dy << " mode " << step.nMode);
        painted.clear();
        cErased = 0;
        setMode(step.nMode);
        RECT rc;
        GetWindowRect(m_hwnd, &rc);
        SetWindowPos(m_hwnd, nullptr, 0, 0, rc.right - rc.left + step.dx,
                     rc.bottom - rc.top + step.dy, SWP_NOMOVE | SWP_NOZORDER);
        settle();
        EXPECT_EQ(painted[m_hwnd], 1);
        // The platform itself erases what comes into view.
        EXPECT_LE(cErased, 2);
        for (const auto& [hwnd, c] : painted) {
            EXPECT_LE(c, 1) << "control " << GetDlgCtrlID(hwnd);
        }
        // Nothing of the old size is left: all of it looks as if it were drawn anew.
        const Picture before(m_hwnd);
        RedrawWindow(m_hwnd, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        EXPECT_EQ(before.difference(Picture(m_hwnd)), "");
    }
}

} // namespace
