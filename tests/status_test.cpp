// The status window: its slots, its calls, its figures and its procedure.
#include "../include/krhaul.h"
#include "../resources/ids.h"
#include "support/clock.h"
#include "support/help.h"
#include "support/input.h"
#include "support/ledger.h"
#include "support/refusal.h"
#include "support/strict.h"
#include "support/subclassed.h"
#include "support/windows.h"

#include <gtest/gtest.h>
#include <map>

namespace {

HMODULE library()
{
    return GetModuleHandleA("KRHAUL.DLL");
}

// The timers of the library: id and window of those that run.
std::map<UINT_PTR, HWND> s_timers;
int s_cTimersSet;
bool s_fTimersFail;
UINT_PTR WINAPI fakeSetTimer(HWND hwnd, UINT_PTR id, UINT uMs, TIMERPROC)
{
    EXPECT_EQ(uMs, 1000u);
    if (s_fTimersFail) {
        return 0;
    }
    s_timers[id] = hwnd;
    ++s_cTimersSet;
    return id + 100;
}

BOOL WINAPI fakeKillTimer(HWND hwnd, UINT_PTR id)
{
    auto timer = s_timers.find(id);
    if (timer == s_timers.end() || timer->second != hwnd) {
        return FALSE;
    }
    s_timers.erase(timer);
    return TRUE;
}

// The library may only draw in windows.
decltype(&GetDC) s_pfnGetDC;
HDC WINAPI windowsDC(HWND hwnd)
{
    EXPECT_NE(hwnd, nullptr) << "that is the whole screen";
    return s_pfnGetDC(hwnd);
}

class Status : public testing::Test {
protected:
    Status()
        : m_setTimer(library(), "SetTimer", fakeSetTimer),
          m_killTimer(library(), "KillTimer", fakeKillTimer), m_getDC(library(), "GetDC", windowsDC)
    {
        s_timers.clear();
        s_fTimersFail = false;
        s_cTimersSet = 0;
        s_pfnGetDC = m_getDC.original<decltype(&GetDC)>();
        m_hEnglish = LoadLibraryA("XFREN.DLL");
    }
    ~Status() override
    {
        for (HWND hwnd : m_windows) {
            nXferStatDestroy(hwnd);
        }
        EXPECT_EQ(Ledger::owed(), "");
        EXPECT_TRUE(s_timers.empty());
        FreeLibrary(m_hEnglish);
    }

    // Goes with the test, if it is still there.
    HWND create(DWORD dwLabel = 1)
    {
        HWND hwnd = hdlgXferStatCreate("Title", dwLabel, m_parent.hwnd(), 0, 0);
        EXPECT_NE(hwnd, nullptr);
        m_windows.push_back(hwnd);
        return hwnd;
    }

    // A window owes its language module, and nothing else.
    static void expectWindows(size_t c)
    {
        EXPECT_EQ(Ledger::count(), c) << Ledger::owed();
    }

    void tickAfter(HWND hwnd, DWORD dwMs)
    {
        FakeClock::s_dwNow += dwMs;
        SendMessageA(hwnd, WM_TIMER, 0, 0);
    }

    ParentWindow m_parent;
    HMODULE m_hEnglish;

private:
    std::vector<HWND> m_windows;
    StrictPlatform m_strict;
    Ledger m_ledger;
    FakeClock m_clock{5000};
    ReplacedImport m_setTimer, m_killTimer, m_getDC;
};

TEST_F(Status, EightWindowsRunSideBySideAndTheNinthIsRefused)
{
    Refusals refusals;
    HWND windows[XFERSTAT_MAXWINDOWS];
    for (HWND& hwnd : windows) {
        hwnd = create();
        EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_OK);
        nXferStatFileInfo(hwnd, "a", "b", 100 + DWORD(&hwnd - windows));
    }
    for (int n = 0; n < XFERSTAT_MAXWINDOWS; ++n) {
        EXPECT_EQ(s_timers[UINT_PTR(n)], windows[n]);
        EXPECT_EQ(textOf(windows[n], IDC_STAT_SIZE), std::to_string(100 + n));
    }
    EXPECT_EQ(hdlgXferStatCreate("Ninth", 0, m_parent.hwnd(), 0, 0), nullptr);
    EXPECT_EQ(refusals.take(), std::vector<HWND>{m_parent.hwnd()});
    expectWindows(XFERSTAT_MAXWINDOWS);

    // The lowest place that is free is taken again: the timer's id tells which it is.
    for (int n : {6, 3}) {
        EXPECT_EQ(nXferStatDestroy(windows[n]), XFER_OK);
    }
    for (int n : {3, 6}) {
        windows[n] = create();
        nXferStatStartTransfer(windows[n]);
        EXPECT_EQ(s_timers[UINT_PTR(n)], windows[n]);
    }
    for (HWND hwnd : windows) {
        EXPECT_EQ(nXferStatDestroy(hwnd), XFER_OK);
    }
}

// A caller whose windows hear of a creation, and make another window before it is done.
HWND s_hwndMadeFirst;
HWND WINAPI createAnotherFirst(HINSTANCE hModule, LPCSTR pszTemplate, HWND hwndParent,
                               DLGPROC pfnDialog, LPARAM lParam)
{
    if (s_hwndMadeFirst == nullptr) {
        s_hwndMadeFirst = hwndParent;
        s_hwndMadeFirst = hdlgXferStatCreate("first", 1, hwndParent, 0, 0);
    }
    return CreateDialogParamA(hModule, pszTemplate, hwndParent, pfnDialog, lParam);
}

TEST_F(Status, ACreationInsideACreationTakesItsOwnPlace)
{
    Refusals refusals;
    ReplacedImport dialog(library(), "CreateDialogParamA", createAnotherFirst);
    // With room for both, then for the inner one alone.
    for (int cBefore : {0, XFERSTAT_MAXWINDOWS - 1}) {
        SCOPED_TRACE(cBefore);
        std::vector<HWND> windows;
        s_hwndMadeFirst = m_parent.hwnd();
        for (int n = 0; n < cBefore; ++n) {
            windows.push_back(create());
        }
        s_hwndMadeFirst = nullptr;
        HWND hwndOuter = hdlgXferStatCreate("outer", 1, m_parent.hwnd(), 0, 0);
        EXPECT_EQ(FindWindowA(nullptr, "outer"), hwndOuter);
        windows.push_back(s_hwndMadeFirst);
        if (cBefore == 0) {
            windows.push_back(hwndOuter);
            EXPECT_TRUE(refusals.take().empty());
        } else {
            EXPECT_EQ(hwndOuter, nullptr);
            EXPECT_EQ(refusals.take(), std::vector<HWND>{m_parent.hwnd()});
        }
        expectWindows(windows.size());
        for (HWND hwnd : windows) {
            EXPECT_EQ(nXferStatDestroy(hwnd), XFER_OK);
        }
    }
}

TEST_F(Status, CreationSetsCaptionAndLabel)
{
    for (DWORD dwLabel : {0u, 1u, 0x10000u}) {
        HWND hwnd = create(dwLabel);
        EXPECT_EQ(textOf(hwnd), "Title");
        EXPECT_EQ(textOf(hwnd, IDC_STAT_LABEL) == stringOf(m_hEnglish, IDS_STAT_LABEL),
                  dwLabel == 0);
        EXPECT_EQ(SendDlgItemMessageA(hwnd, IDC_STAT_PARENT, LB_GETITEMDATA, 0, 0),
                  LRESULT(m_parent.hwnd()));
        nXferStatDestroy(hwnd);
    }
    HWND hwnd = hdlgXferStatLangCreate("EN", nullptr, 0, nullptr, 0, 0);
    ASSERT_NE(hwnd, nullptr);
    EXPECT_EQ(textOf(hwnd), "");
    EXPECT_EQ(GetWindow(hwnd, GW_OWNER), nullptr);
    nXferStatDestroy(hwnd);
}

TEST_F(Status, PlaceAndIconComeFromTheLowWords)
{
    const struct {
        DWORD fCorner, fMinimize;
        bool fInCorner, fIcon;
    } cases[] = {{0, 0, false, false},
                 {1, 0, true, false},
                 {0x8000, 0x10000, true, false},
                 {0x10000, 2, false, true}};
    for (const auto& c : cases) {
        HWND hwnd = hdlgXferStatCreate("", 0, m_parent.hwnd(), c.fCorner, c.fMinimize);
        RECT rc;
        GetWindowRect(hwnd, &rc);
        bool fInCorner = rc.top == 5 && rc.right == GetSystemMetrics(SM_CXSCREEN) - 5;
        EXPECT_EQ(fInCorner, c.fInCorner);
        EXPECT_EQ(IsIconic(hwnd) != 0, c.fIcon);
        nXferStatDestroy(hwnd);
    }
}

TEST_F(Status, CreationFailuresLeaveNothing)
{
    EXPECT_EQ(hdlgXferStatLangCreate("NO", "", 0, m_parent.hwnd(), 0, 0), nullptr);
    EXPECT_EQ(hdlgXferStatLangCreate(nullptr, "", 0, m_parent.hwnd(), 0, 0), nullptr);
    EXPECT_EQ(hdlgXferStatCreate("", 0, reinterpret_cast<HWND>(0xBAD), 0, 0), nullptr);
    // A module without templates.
    ASSERT_TRUE(CopyFileA("KRUTILS.DLL", "XFRBARE.DLL", FALSE));
    EXPECT_EQ(hdlgXferStatLangCreate("BARE", "", 0, m_parent.hwnd(), 0, 0), nullptr);
    EXPECT_TRUE(DeleteFileA("XFRBARE.DLL"));
    HWND hwnd = create();
    nXferStatStartTransfer(hwnd);
    EXPECT_EQ(s_timers.count(0), 1u);
}

TEST_F(Status, FileInfoAndErrorsShowAtOnce)
{
    HWND hwnd = create();
    HWND hwndBar = GetDlgItem(hwnd, IDC_STAT_BAR);
    nXferStatFileInfo(hwnd, "c:\\a&b.bin", "host.bin", 0xFFFFFFFF);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_NAME1), "c:\\a&b.bin");
    EXPECT_EQ(textOf(hwnd, IDC_STAT_NAME2), "host.bin");
    EXPECT_EQ(textOf(hwnd, IDC_STAT_SIZE), "4294967295");
    EXPECT_TRUE(IsWindowEnabled(hwndBar));
    nXferStatFileInfo(hwnd, nullptr, nullptr, 0);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_NAME1), "");
    EXPECT_EQ(textOf(hwnd, IDC_STAT_SIZE), stringOf(m_hEnglish, IDS_NOT_KNOWN));
    nXferStatFileInfo(hwnd, "a", "b", 1);
    EXPECT_FALSE(IsWindowEnabled(hwndBar));
    nXferStatErrorInfo(hwnd, 0, 0xFFFFFFFF);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_ERRORS1), "0");
    EXPECT_EQ(textOf(hwnd, IDC_STAT_ERRORS2), "4294967295");
}

constexpr LONG NO_MESSAGE = -1;

struct Tick {
    DWORD cbSize, cbCount, dwMs; // milliseconds since the start
    const char *pszElapsed, *pszRate, *pszRemaining, *pszTimeLeft;
    LONG nPercent; // what the parent is told
};

// A field that isn't touched keeps this.
constexpr char KEPT[] = "kept";

const Tick TICKS[] = {
    {1000, 0, 999, "00:00:00", KEPT, "1000", KEPT, 0},
    {1000, 500, 999, "00:00:00", KEPT, "500", KEPT, 50},
    {1000, 0, 1000, "00:00:01", "0", "1000", KEPT, 0},
    {1000, 333, 2000, "00:00:02", "166", "667", "00:00:04", 33},
    {1000, 999, 3661000, "01:01:01", "0", "1", KEPT, 99},
    {1000, 1000, 1000, "00:00:01", "1000", "0", "00:00:00", 100},
    {1000, 2000, 1000, "00:00:01", "2000", "0", "00:00:00", 100},
    {0xFFFFFFFF, 0xFFFFFFFE, 360000000, "100:00:00", "11930", "1", "00:00:00", 99},
    {0xFFFFFFFF, 1, 1000, "00:00:01", "1", "4294967294", "1193046:28:14", 0},
    {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, "1193:02:47", "1000", "0", "00:00:00", 100},
    {1, 0xFFFFFFFF, 1000, "00:00:01", "4294967295", "0", "00:00:00", 100},
    {0, 700, 7000, "00:00:07", "100", nullptr, nullptr, NO_MESSAGE},
};

TEST_F(Status, TickTurnsValuesIntoFigures)
{
    const std::string notKnown = stringOf(m_hEnglish, IDS_NOT_KNOWN);
    auto expected = [&](const char* psz) { return psz == nullptr ? notKnown : std::string(psz); };
    for (const Tick& tick : TICKS) {
        SCOPED_TRACE(testing::Message()
                     << tick.cbCount << " of " << tick.cbSize << " in " << tick.dwMs);
        // The clock runs over the end of the counter meanwhile.
        FakeClock::s_dwNow = 0xFFFFFF00;
        HWND hwnd = create();
        for (int id : {IDC_STAT_RATE, IDC_STAT_REMAINING, IDC_STAT_TIMELEFT}) {
            SetDlgItemTextA(hwnd, id, KEPT);
        }
        nXferStatFileInfo(hwnd, "a", "b", tick.cbSize);
        nXferStatStartTransfer(hwnd);
        nXferStatCountInfo(hwnd, tick.cbCount);
        nXferStatStatusInfo(hwnd, "Busy");
        EXPECT_EQ(textOf(hwnd, IDC_STAT_COUNT), "");
        tickAfter(hwnd, tick.dwMs);
        EXPECT_EQ(textOf(hwnd, IDC_STAT_STATUS), "Busy");
        EXPECT_EQ(textOf(hwnd, IDC_STAT_COUNT), std::to_string(tick.cbCount));
        EXPECT_EQ(textOf(hwnd, IDC_STAT_ELAPSED), tick.pszElapsed);
        EXPECT_EQ(textOf(hwnd, IDC_STAT_RATE), tick.pszRate);
        EXPECT_EQ(textOf(hwnd, IDC_STAT_REMAINING), expected(tick.pszRemaining));
        EXPECT_EQ(textOf(hwnd, IDC_STAT_TIMELEFT), expected(tick.pszTimeLeft));
        std::vector<Message> messages;
        if (tick.nPercent != NO_MESSAGE) {
            messages.push_back({WM_XFERSTAT_PERCENT, WPARAM(tick.nPercent), 0});
        }
        tickAfter(hwnd, 0);
        EXPECT_EQ(m_parent.messages(), messages);
        nXferStatDestroy(hwnd);
        EXPECT_EQ(m_parent.messages(), (std::vector<Message>{{WM_XFERSTAT_CLOSED, 0, 0}}));
    }
}

TEST_F(Status, StartAndEndRunOneTimer)
{
    HWND hwnd = create();
    nXferStatFileInfo(hwnd, "a", "b", 100);
    // An end without a start ticks all the same, on the clock of the system.
    EXPECT_EQ(nXferStatEndTransfer(hwnd), XFER_OK);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_ELAPSED), "00:00:05");

    s_fTimersFail = true;
    EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_OK);
    s_fTimersFail = false;
    EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_OK);
    EXPECT_EQ(s_timers.size(), 1u);
    tickAfter(hwnd, 3000);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_ELAPSED), "00:00:03");
    EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_OK);
    EXPECT_EQ(s_timers.size(), 1u);
    nXferStatCountInfo(hwnd, 40);
    FakeClock::s_dwNow += 2000;
    EXPECT_EQ(nXferStatEndTransfer(hwnd), XFER_OK);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_ELAPSED), "00:00:02");
    EXPECT_EQ(textOf(hwnd, IDC_STAT_RATE), "20");
    EXPECT_TRUE(s_timers.empty());
}

TEST(StatusTimer, TicksByItselfOnceStarted)
{
    HWND hwnd = hdlgXferStatCreate("", 0, nullptr, 0, 0);
    nXferStatFileInfo(hwnd, "a", "b", 100);
    nXferStatStartTransfer(hwnd);
    nXferStatCountInfo(hwnd, 64);
    EXPECT_TRUE(waitUntil([&] { return textOf(hwnd, IDC_STAT_COUNT) == "64"; }));
    nXferStatDestroy(hwnd);
}

TEST_F(Status, StatusTextIsCutToItsFieldAndStays)
{
    HWND hwnd = create();
    const std::string longText(5000, 's');
    nXferStatFileInfo(hwnd, "a", "b", 100);
    nXferStatCountInfo(hwnd, 17);
    for (size_t cch : {0u, 78u, 79u, 80u, 81u, 5000u}) {
        nXferStatStatusInfo(hwnd, longText.substr(0, cch).c_str());
        tickAfter(hwnd, 0);
        EXPECT_EQ(textOf(hwnd, IDC_STAT_STATUS), longText.substr(0, std::min<size_t>(cch, 79)));
        EXPECT_EQ(textOf(hwnd, IDC_STAT_COUNT), "17");
    }
    nXferStatStatusInfo(hwnd, nullptr);
    nXferStatDestroy(hwnd);
    // The next window of the same place still shows it.
    hwnd = create();
    tickAfter(hwnd, 0);
    EXPECT_EQ(textOf(hwnd, IDC_STAT_STATUS), longText.substr(0, 79));
}

TEST_F(Status, ButtonTakesItsCaptions)
{
    HWND hwnd = create();
    HWND hwndButton = GetDlgItem(hwnd, IDC_STAT_BUTTON);
    const DWORD strings[] = {IDS_STAT_BUTTON1, IDS_STAT_BUTTON2, IDS_STAT_BUTTON3};
    for (DWORD n = 0; n < 3; ++n) {
        vXferStatButtonText(hwnd, XFERSTAT_CAPTION_STOP + n);
        EXPECT_EQ(textOf(hwndButton), stringOf(m_hEnglish, strings[n]));
    }
    const std::string before = textOf(hwndButton);
    for (DWORD dwCode : {4u, 0xFFFFFFFFu}) {
        vXferStatButtonText(hwnd, dwCode);
        EXPECT_EQ(textOf(hwndButton), before);
        EXPECT_TRUE(IsWindowVisible(hwndButton));
    }
    vXferStatButtonText(hwnd, XFERSTAT_CAPTION_NONE);
    vXferStatButtonText(hwnd, XFERSTAT_CAPTION_STOP);
    EXPECT_FALSE(IsWindowVisible(hwndButton));
}

TEST_F(Status, NoSlotNoEffect)
{
    HWND hwndOwn = create();
    for (HWND hwnd : {HWND(nullptr), m_parent.hwnd(), reinterpret_cast<HWND>(0xBAD)}) {
        EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_NOWINDOW);
        EXPECT_EQ(nXferStatEndTransfer(hwnd), XFER_NOWINDOW);
        EXPECT_EQ(nXferStatDestroy(hwnd), XFER_NOWINDOW);
        EXPECT_EQ(nXferStatFileInfo(hwnd, "a", "b", 1), XFER_OK);
        EXPECT_EQ(nXferStatErrorInfo(hwnd, 1, 1), XFER_OK);
        EXPECT_EQ(nXferStatStatusInfo(hwnd, "x"), XFER_OK);
        EXPECT_EQ(nXferStatCountInfo(hwnd, 1), XFER_OK);
        vXferStatButtonText(hwnd, 1);
    }
    vXferStatDummy();
    EXPECT_TRUE(IsWindow(m_parent.hwnd()));
    EXPECT_EQ(textOf(hwndOwn, IDC_STAT_SIZE), "");
}

TEST_F(Status, TheCallerGoesOnWhenTheUserClosesTheWindow)
{
    HWND hwnd = create();
    nXferStatFileInfo(hwnd, "a", "b", 100);
    nXferStatStartTransfer(hwnd);
    SetForegroundWindow(hwnd);
    typeKey(VK_F4, true);
    ASSERT_TRUE(waitUntil([&] { return !IsWindow(hwnd); }));
    EXPECT_EQ(nXferStatFileInfo(hwnd, "c", "d", 0), XFER_OK);
    EXPECT_EQ(nXferStatErrorInfo(hwnd, 1, 2), XFER_OK);
    EXPECT_EQ(nXferStatCountInfo(hwnd, 50), XFER_OK);
    vXferStatButtonText(hwnd, 2);
    EXPECT_EQ(nXferStatStartTransfer(hwnd), XFER_OK);
    EXPECT_EQ(nXferStatEndTransfer(hwnd), XFER_OK);
    // The place is still taken: the next window gets the second one.
    HWND hwndNext = create();
    nXferStatStartTransfer(hwndNext);
    EXPECT_EQ(s_timers.count(1), 1u);
    m_parent.messages();
    EXPECT_EQ(nXferStatDestroy(hwnd), XFER_OK);
    EXPECT_EQ(m_parent.messages(), (std::vector<Message>{{WM_XFERSTAT_CLOSED, 0, 0}}));
    EXPECT_EQ(nXferStatDestroy(hwnd), XFER_NOWINDOW);
}

// A caller that destroys the window from inside its last tick or its end, and makes another, which
// runs at once.
TEST_F(Status, SurvivesCallsFromInsideItsEnd)
{
    ParentWindow other;
    const struct {
        int(KRHAULAPI* pfnEnd)(HWND);
        UINT uInside;
    } cases[] = {{nXferStatEndTransfer, WM_TIMER},
                 {nXferStatDestroy, WM_TIMER},
                 {nXferStatDestroy, WM_DESTROY}};
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        HWND hwnd = create();
        nXferStatStartTransfer(hwnd);
        HWND hwndInside = nullptr;
        Subclassed ending(hwnd, [&](UINT uMessage, WPARAM, LPARAM) {
            if (uMessage != c.uInside || hwndInside != nullptr) {
                return false;
            }
            hwndInside = hwnd;
            EXPECT_EQ(nXferStatDestroy(hwnd), XFER_OK);
            hwndInside = hdlgXferStatCreate("inside", 0, other.hwnd(), 0, 0);
            nXferStatStartTransfer(hwndInside);
            return uMessage == WM_TIMER;
        });
        EXPECT_EQ(c.pfnEnd(hwnd), XFER_OK);
        EXPECT_FALSE(IsWindow(hwnd));
        // By then the first of the two calls has told the parent as well.
        const size_t cTold = c.uInside == WM_DESTROY ? 2 : 1;
        EXPECT_EQ(m_parent.messages(), std::vector<Message>(cTold, {WM_XFERSTAT_CLOSED, 0, 0}));
        // The new window knows nothing of it: nobody told its parent, and its timer runs on,
        // so that another start sets none.
        EXPECT_EQ(other.messages(), std::vector<Message>{});
        EXPECT_EQ(s_timers[0], hwndInside);
        const int cBefore = s_cTimersSet;
        EXPECT_EQ(nXferStatStartTransfer(hwndInside), XFER_OK);
        EXPECT_EQ(s_cTimersSet, cBefore);
        expectWindows(1);
        EXPECT_EQ(nXferStatDestroy(hwndInside), XFER_OK);
        other.messages();
    }
}

// A listener at the figures, which changes what they come from.
TEST_F(Status, ATickGoesByWhatItFoundFirst)
{
    ParentWindow other;
    for (bool fEnds : {false, true}) {
        HWND hwnd = create(), hwndNext = nullptr;
        nXferStatFileInfo(hwnd, "a", "b", 100);
        nXferStatCountInfo(hwnd, 40);
        Subclassed listening(GetDlgItem(hwnd, IDC_STAT_REMAINING),
                             [&](UINT uMessage, WPARAM, LPARAM) {
                                 if (uMessage != WM_SETTEXT || hwndNext != nullptr) {
                                     return false;
                                 }
                                 hwndNext = hwnd;
                                 if (fEnds) {
                                     nXferStatDestroy(hwnd);
                                     hwndNext = hdlgXferStatCreate("next", 0, other.hwnd(), 0, 0);
                                     nXferStatFileInfo(hwndNext, "c", "d", 10);
                                     nXferStatCountInfo(hwndNext, 4);
                                 } else {
                                     nXferStatFileInfo(hwnd, "a", "b", 0);
                                 }
                                 return fEnds;
                             });
        m_parent.messages();
        tickAfter(hwnd, 1000);
        EXPECT_EQ(other.messages(), std::vector<Message>{});
        // The end of a window has a last tick of its own.
        std::vector<Message> told = {{WM_XFERSTAT_PERCENT, 40, 0}};
        if (fEnds) {
            told.push_back({WM_XFERSTAT_CLOSED, 0, 0});
        }
        EXPECT_EQ(m_parent.messages(), told);
        // The next window knows nothing of that tick: its own finds a change.
        if (fEnds) {
            tickAfter(hwndNext, 1000);
            EXPECT_EQ(other.messages(), (std::vector<Message>{{WM_XFERSTAT_PERCENT, 40, 0}}));
        }
        EXPECT_EQ(nXferStatDestroy(hwndNext), XFER_OK);
    }
}

// The handle of a window that was closed is the next window's.
HWND s_hwndReused;
HWND WINAPI reuseHandle(HINSTANCE, LPCSTR, HWND, DLGPROC, LPARAM)
{
    return s_hwndReused;
}

TEST_F(Status, TheLivingWindowCountsWhereHandlesAreReused)
{
    ParentWindow second;
    ReplacedImport dialog(library(), "CreateDialogParamA", reuseHandle);
    s_hwndReused = CreateDialogParamA(m_hEnglish, "DLGXFER", nullptr, fDlgXferStatProc, 0);
    EXPECT_EQ(create(), s_hwndReused);
    fDlgXferStatProc(s_hwndReused, WM_NCDESTROY, 0, 0);
    EXPECT_EQ(nXferStatFileInfo(s_hwndReused, "gone", "gone", 7), XFER_OK);
    EXPECT_EQ(textOf(s_hwndReused, IDC_STAT_NAME1), "");
    EXPECT_EQ(hdlgXferStatCreate("", 1, second.hwnd(), 0, 0), s_hwndReused);
    nXferStatFileInfo(s_hwndReused, "a", "b", 100);
    EXPECT_EQ(textOf(s_hwndReused, IDC_STAT_NAME1), "a");
    nXferStatStartTransfer(s_hwndReused);
    EXPECT_EQ(s_timers.count(1), 1u);
    nXferStatCountInfo(s_hwndReused, 50);
    tickAfter(s_hwndReused, 1000);
    EXPECT_EQ(second.messages(), (std::vector<Message>{{WM_XFERSTAT_PERCENT, 50, 0}}));
    EXPECT_EQ(nXferStatDestroy(s_hwndReused), XFER_OK);
    EXPECT_EQ(second.messages(), (std::vector<Message>{{WM_XFERSTAT_CLOSED, 0, 0}}));
    // What is left is the place of the one that was closed.
    EXPECT_EQ(nXferStatDestroy(s_hwndReused), XFER_OK);
    EXPECT_EQ(m_parent.messages(), (std::vector<Message>{{WM_XFERSTAT_CLOSED, 0, 0}}));
    EXPECT_EQ(nXferStatDestroy(s_hwndReused), XFER_NOWINDOW);
}

TEST_F(Status, HelpAndFocusGoByTheParentOfTheLastWindow)
{
    HelpCalls help;
    ParentWindow second;
    HWND hwnd = create();
    HWND hwndSecond = hdlgXferStatCreate("", 0, second.hwnd(), 0, 0);
    SendMessageA(hwnd, WM_COMMAND, IDC_STAT_HELP, 0);
    SendMessageA(hwnd, WM_XFER_HELP, 0, 0);
    const auto calls = help.take();
    ASSERT_EQ(calls.size(), 2u);
    for (const HelpCalls::Call& call : calls) {
        EXPECT_EQ(call.hwndOwner, second.hwnd());
        EXPECT_EQ(call.file, "KRDEMO.HLP");
        EXPECT_EQ(call.uCommand, UINT(HELP_CONTEXT));
        EXPECT_EQ(call.data, 990u);
    }
    {
        HelpCalls shownByKrutils(nullptr);
        SendMessageA(hwnd, WM_XFER_HELP, 0, 0);
        EXPECT_TRUE(shownByKrutils.take().empty());
    }
    SetFocus(hwnd);
    SendMessageA(hwnd, WM_XFERSTAT_FOCUSPARENT, 0, 0);
    EXPECT_EQ(GetFocus(), second.hwnd());
    nXferStatDestroy(hwndSecond);
}

// How a window is painted as an icon: the background that its class has for that, then the icon.
std::vector<HDC> s_iconsErased, s_iconsDrawn;
LRESULT WINAPI recordingDefDlgProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_ICONERASEBKGND) {
        EXPECT_TRUE(s_iconsDrawn.empty());
        s_iconsErased.push_back(reinterpret_cast<HDC>(wParam));
    }
    return DefDlgProcA(hwnd, uMessage, wParam, lParam);
}

BOOL WINAPI recordingDrawIcon(HDC hdc, int x, int y, HICON hicon)
{
    s_iconsDrawn.push_back(hdc);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    return DrawIcon(hdc, x, y, hicon);
}

TEST_F(Status, ProcedureAnswersByItsTable)
{
    struct {
        DWORD dwFlags;
        HWND hwndParent;
    } init = {0, m_parent.hwnd()};
    const struct {
        UINT uMessage;
        WPARAM wParam;
        INT_PTR nOpen, nIcon;
        LPARAM lParam = 0;
    } cases[] = {{WM_INITDIALOG, 0, 1, 1, reinterpret_cast<LPARAM>(&init)},
                 {WM_INITDIALOG, 0, 1, 1},
                 {WM_COMMAND, IDC_STAT_HELP, 1, 1},
                 {WM_XFER_HELP, 0, 1, 1},
                 {WM_XFERSTAT_FOCUSPARENT, 0, 1, 1},
                 {WM_COMMAND, IDCANCEL, 1, 1},
                 {WM_COMMAND, IDC_STAT_BUTTON, 1, 1},
                 {WM_COMMAND, MAKELONG(IDC_STAT_BUTTON, BN_DOUBLECLICKED), 1, 1},
                 {WM_COMMAND, IDC_STAT_BAR, 0, 0},
                 {WM_TIMER, 12345, 1, 1},
                 {WM_ERASEBKGND, 0, 0, 1},
                 {WM_PAINT, 0, 0, 1},
                 {WM_CLOSE, 0, 1, 1}};
    HelpCalls help;
    ReplacedImport erase(library(), "DefDlgProcA", recordingDefDlgProc);
    ReplacedImport draw(library(), "DrawIcon", recordingDrawIcon);
    HWND hwnd = create();
    HWND hwndIcon = hdlgXferStatCreate("", 0, m_parent.hwnd(), 0, 1);
    HICON hicon = LoadIconA(library(), "FileXferIcon");
    EXPECT_NE(hicon, nullptr);
    EXPECT_EQ(SendMessageA(hwnd, WM_QUERYDRAGICON, 0, 0), LRESULT(hicon));
    s_iconsErased.clear();
    s_iconsDrawn.clear();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.uMessage << " " << c.wParam);
        EXPECT_EQ(fDlgXferStatProc(hwnd, c.uMessage, c.wParam, c.lParam), c.nOpen);
        EXPECT_EQ(fDlgXferStatProc(hwndIcon, c.uMessage, c.wParam, c.lParam), c.nIcon);
    }
    EXPECT_EQ(s_iconsDrawn.size(), 1u);
    EXPECT_EQ(s_iconsErased, s_iconsDrawn);
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_FALSE(IsWindow(hwndIcon));
    nXferStatDestroy(hwndIcon);
}

// What a caller does that wants to know of Stop and Cancel.
TEST_F(Status, ASubclassSeesRealPressesOfItsButtons)
{
    HWND hwnd = create();
    std::vector<WORD> commands;
    Subclassed listening(hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM) {
        if (uMessage == WM_COMMAND) {
            commands.push_back(LOWORD(wParam));
        }
        return false;
    });
    SetForegroundWindow(hwnd);
    for (int id : {XFERSTAT_BUTTON, XFERSTAT_CANCEL}) {
        commands.clear();
        clickWindow(GetDlgItem(hwnd, id));
        EXPECT_TRUE(waitUntil([&] { return !commands.empty(); }));
        EXPECT_EQ(commands, std::vector<WORD>{WORD(id)});
        EXPECT_TRUE(IsWindow(hwnd));
    }
}

} // namespace
