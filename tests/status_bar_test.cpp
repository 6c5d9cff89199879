// The progress bar of the status window, pixel by pixel.
#include "../include/krhaul.h"
#include "../resources/ids.h"
#include "support/picture.h"
#include "support/strict.h"
#include "support/windows.h"

#include <gtest/gtest.h>
#include <math.h>

namespace {

constexpr COLORREF GRAY = RGB(128, 128, 128);
constexpr COLORREF WHITE = RGB(255, 255, 255);
constexpr COLORREF BLACK = RGB(0, 0, 0);
constexpr int TEXT_TOP = 2;

// The pixels that a text sets, in a device context like that of the bar.
Picture drawText(HWND hwndBar, int cx, int cy, int x, const std::string& text)
{
    HDC hdcBar = GetDC(hwndBar);
    HDC hdc = CreateCompatibleDC(hdcBar);
    HBITMAP hbm = CreateCompatibleBitmap(hdcBar, cx, cy);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    PatBlt(hdc, 0, 0, cx, cy, WHITENESS);
    SetBkMode(hdc, TRANSPARENT);
    ExtTextOutA(hdc, x, TEXT_TOP, 0, nullptr, text.c_str(), UINT(text.size()), nullptr);
    SelectObject(hdc, hbmOld);
    Picture picture(hbm);
    DeleteObject(hbm);
    DeleteDC(hdc);
    ReleaseDC(hwndBar, hdcBar);
    return picture;
}

int textWidth(HWND hwndBar, const std::string& text)
{
    SIZE size;
    HDC hdc = GetDC(hwndBar);
    GetTextExtentPointA(hdc, text.c_str(), int(text.size()), &size);
    ReleaseDC(hwndBar, hdc);
    return size.cx;
}

class StatusBar : public testing::Test {
protected:
    StatusBar()
        : m_hdlgStat(hdlgXferStatCreate("", 0, m_parent.hwnd(), 0, 0)),
          m_hwndBar(GetDlgItem(m_hdlgStat, IDC_STAT_BAR))
    {
        // Two colours that the text hasn't, so that every pixel tells where it comes from.
        int nElement = COLOR_WINDOW;
        COLORREF clr = RGB(255, 255, 192);
        m_clrOld = GetSysColor(COLOR_WINDOW);
        SetSysColors(1, &nElement, &clr);
        m_clrWindow = GetSysColor(COLOR_WINDOW);
        SetWindowPos(m_hdlgStat, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
        pumpMessages();
    }
    ~StatusBar() override
    {
        int nElement = COLOR_WINDOW;
        SetSysColors(1, &nElement, &m_clrOld);
        nXferStatDestroy(m_hdlgStat);
    }

    // Returns the bar a rectangle R of this width, which is its client width less 2.
    void setWidth(int cx)
    {
        RECT rcWindow;
        GetWindowRect(m_hwndBar, &rcWindow);
        GetClientRect(m_hwndBar, &m_rc);
        int cxFrame = rcWindow.right - rcWindow.left - m_rc.right;
        SetWindowPos(m_hwndBar, nullptr, 0, 0, cx + 2 + cxFrame, rcWindow.bottom - rcWindow.top,
                     SWP_NOMOVE | SWP_NOZORDER);
        pumpMessages();
        GetClientRect(m_hwndBar, &m_rc);
        ASSERT_EQ(m_rc.right, cx + 2);
        m_before = Picture(m_hwndBar);
    }

    void show(DWORD nPercent)
    {
        nXferStatFileInfo(m_hdlgStat, "a", "b", 100);
        nXferStatCountInfo(m_hdlgStat, nPercent);
        SendMessageA(m_hdlgStat, WM_TIMER, 0, 0);
    }

    // Compares the whole bar with a fill up to an edge and a text whose left end is at x.
    void expectBar(int nEdge, int x, const std::string& text) const
    {
        const Picture shape = drawText(m_hwndBar, m_rc.right, m_rc.bottom, x, text);
        const Picture now(m_hwndBar);
        for (LONG row = 0; row < m_rc.bottom; ++row) {
            for (LONG column = 0; column < m_rc.right; ++column) {
                bool fInside =
                    row >= 1 && row < m_rc.bottom - 1 && column >= 1 && column < m_rc.right - 1;
                bool fText = shape.at(column, row) == BLACK;
                bool fFilled = column < nEdge;
                COLORREF clr = fText ? (fFilled ? WHITE : BLACK) : (fFilled ? GRAY : m_clrWindow);
                ASSERT_EQ(now.at(column, row), fInside ? clr : m_before.at(column, row))
                    << "column " << column << " row " << row;
            }
        }
    }

    ParentWindow m_parent;
    StrictPlatform m_strict;
    HWND m_hdlgStat;
    HWND m_hwndBar;
    RECT m_rc = {};
    Picture m_before{0, 0, 0}; // what stood there before the bar was painted
    COLORREF m_clrWindow = 0, m_clrOld = 0;
};

TEST_F(StatusBar, FillsToItsEdgeWithATextInTwoColours)
{
    for (int cx : {101, 100, 57, 29}) {
        setWidth(cx);
        for (DWORD nPercent = 0; nPercent <= 100; ++nPercent) {
            SCOPED_TRACE(testing::Message() << cx << " wide at " << nPercent);
            show(nPercent);
            int nEdge = 1 + int(ceil(double(cx) * double(nPercent) * 0.01));
            expectBar(std::min(nEdge, 1 + cx), cx / 2, std::to_string(nPercent) + "%");
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST_F(StatusBar, StartClearsItToTheCentredText)
{
    HMODULE hEnglish = LoadLibraryA("XFREN.DLL");
    const std::string notKnown = stringOf(hEnglish, IDS_NOT_KNOWN);
    FreeLibrary(hEnglish);
    for (int cx : {200, 101}) {
        setWidth(cx);
        show(70);
        nXferStatStartTransfer(m_hdlgStat);
        expectBar(0, (cx - textWidth(m_hwndBar, notKnown)) / 2, notKnown);
        // The same percentage again isn't painted; another one is.
        show(70);
        expectBar(0, (cx - textWidth(m_hwndBar, notKnown)) / 2, notKnown);
        show(71);
        expectBar(1 + int(ceil(double(cx) * 71.0 * 0.01)), cx / 2, "71%");
    }
}

// In the order of calls that callers use, with no message handled before; also for a file that ends
// before the first one is.
TEST_F(StatusBar, AFirstPaintingLeavesWhatItShows)
{
    for (bool fEnds : {false, true}) {
        for (bool fAtOnce : {false, true}) {
            StrictPlatform::paintAtOnce(fAtOnce);
            nXferStatDestroy(m_hdlgStat);
            m_hdlgStat = hdlgXferStatCreate("", 0, m_parent.hwnd(), 0, 0);
            m_hwndBar = GetDlgItem(m_hdlgStat, IDC_STAT_BAR);
            SetWindowPos(m_hdlgStat, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
            nXferStatFileInfo(m_hdlgStat, "a", "b", 100);
            nXferStatStartTransfer(m_hdlgStat);
            if (fEnds) {
                nXferStatCountInfo(m_hdlgStat, 100);
                nXferStatEndTransfer(m_hdlgStat);
            }
            const Picture before(m_hwndBar);
            pumpMessages();
            EXPECT_EQ(before.difference(Picture(m_hwndBar)), "") << fEnds << fAtOnce;
        }
    }
}

TEST_F(StatusBar, AWindowOfNoWidthIsNoTrouble)
{
    for (int cx : {0, 1, 2}) {
        SetWindowPos(m_hwndBar, nullptr, 0, 0, cx, cx, SWP_NOMOVE | SWP_NOZORDER);
        EXPECT_EQ(nXferStatStartTransfer(m_hdlgStat), XFER_OK);
        show(DWORD(cx) + 10);
    }
}

} // namespace
