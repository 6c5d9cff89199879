// The toolbar's rows, messages and mouse handling.
#include "../toolbar/model.h"
#include "support/imports.h"
#include "support/input.h"
#include "support/subclassed.h"
#include "support/toolbar.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits.h>
#include <map>
#include <malloc.h>
#include <sstream>

namespace {

constexpr BYTE PRESSED = TOOLSTATE_PRESSED, ENABLED = TOOLSTATE_ENABLED, HIDDEN = TOOLSTATE_HIDDEN;
constexpr BYTE GAP = TOOLSTYLE_SEPARATOR, CHECK = TOOLSTYLE_CHECK,
               GROUP = TOOLSTYLE_CHECK | TOOLSTYLE_GROUP;
constexpr WPARAM UNKNOWN = 99; // no row has this command

HMODULE self()
{
    return GetModuleHandleA(nullptr);
}

// The part of the control that is waiting to be painted, and whether it will be erased. Nothing
// waits afterwards.
struct Waiting {
    RECT rc;
    bool fErase;
};

Waiting waiting(HWND hwnd)
{
    Waiting result = {};
    GetUpdateRect(hwnd, &result.rc, FALSE);
    PAINTSTRUCT paint;
    // The background is only asked for here if it has to be erased and nobody could.
    LONG lBrush = SetClassLongA(hwnd, GCL_HBRBACKGROUND, 0);
    BeginPaint(hwnd, &paint);
    result.fErase = paint.fErase;
    EndPaint(hwnd, &paint);
    SetClassLongA(hwnd, GCL_HBRBACKGROUND, lBrush);
    return result;
}

void expectWaiting(HWND hwnd, const RECT& rc, bool fErase)
{
    Waiting now = waiting(hwnd);
    EXPECT_TRUE(EqualRect(&now.rc, &rc)) << now.rc.left << " to " << now.rc.right;
    EXPECT_EQ(now.fErase, fErase);
}

RECT clientRect(HWND hwnd)
{
    RECT rc;
    GetClientRect(hwnd, &rc);
    return rc;
}

// All of the control that can be seen: it is wider than its parent by the borders.
RECT whole(const TestToolbar& toolbar)
{
    RECT rc = clientRect(toolbar.hwnd()), rcParent = clientRect(toolbar.parent());
    IntersectRect(&rc, &rc, &rcParent);
    return rc;
}

TEST(ToolbarClass, IsRegisteredOnce)
{
    WNDCLASSA wndclass = {};
    ASSERT_EQ(fXferToolbarRegister(self()), 1);
    ASSERT_TRUE(GetClassInfoA(self(), "KRTOOLBR", &wndclass));
    EXPECT_EQ(wndclass.style, UINT(CS_GLOBALCLASS | CS_DBLCLKS));
    EXPECT_EQ(wndclass.cbWndExtra, 4);
    EXPECT_EQ(wndclass.hbrBackground, reinterpret_cast<HBRUSH>(16));
    EXPECT_EQ(wndclass.hCursor, LoadCursorA(nullptr, IDC_ARROW));
    EXPECT_EQ(fXferToolbarRegister(self()), 1);
    UnregisterClassA("KRTOOLBR", self());
    ReplacedImport refuse(
        self(), "RegisterClassA", +[](const WNDCLASSA*) WINAPI -> ATOM { return 0; });
    EXPECT_EQ(fXferToolbarRegister(self()), 0);
}

TEST(ToolbarSize, FollowsTheParent)
{
    TestToolbar toolbar;
    for (int cx : {400, 50}) {
        SetWindowPos(toolbar.parent(), nullptr, 0, 0, cx, 100, SWP_NOMOVE | SWP_NOZORDER);
        SetWindowPos(toolbar.hwnd(), nullptr, 7, 7, 9, 9, SWP_NOZORDER | SWP_NOSENDCHANGING);
        EXPECT_EQ(toolbar.send(WM_SIZE, SIZE_RESTORED, MAKELPARAM(1, 2)), 0);
        RECT rc, rcParent = clientRect(toolbar.parent());
        GetWindowRect(toolbar.hwnd(), &rc);
        MapWindowPoints(nullptr, toolbar.parent(), reinterpret_cast<POINT*>(&rc), 2);
        RECT rcExpected = {0, 0, rcParent.right + 2 * GetSystemMetrics(SM_CXBORDER), 27};
        EXPECT_TRUE(EqualRect(&rc, &rcExpected)) << rc.right << ", " << rc.bottom;
    }
}

TEST(ToolbarChildren, BehaveAsTheParents)
{
    TestToolbar toolbar;
    const struct {
        UINT uMessage;
        const char* pszHeard;
    } table[] = {{WM_COMMAND, "{0x111, 3, 4}"},    {WM_DRAWITEM, "{0x2b, 3, 4}"},
                 {WM_MEASUREITEM, "{0x2c, 3, 4}"}, {WM_VKEYTOITEM, "{0x2e, 3, 4}"},
                 {WM_CHARTOITEM, "{0x2f, 3, 4}"},  {WM_DELETEITEM, ""}};
    for (auto& row : table) {
        toolbar.send(row.uMessage, 3, 4);
        EXPECT_EQ(toolbar.heard(), row.pszHeard);
    }
}

TEST(ToolbarState, EachMessageHasItsBit)
{
    struct {
        UINT uSet, uGet;
        BYTE fsBit;
    } const table[] = {{0x501, 0x509, 4},
                       {0x502, 0x50A, 1},
                       {0x503, 0x50B, 2},
                       {0x504, 0x50C, 8},
                       {0x505, 0x50D, 16}};
    TestToolbar toolbar({{0, 10, 0, 0}, {1, 11, 0, 0}, {1, 11, 0xE0, 0}});
    const RECT rcButton = {31, 2, 55, 24};
    for (auto& row : table) {
        SCOPED_TRACE(row.uSet);
        for (BYTE fsOthers : {BYTE(0), BYTE(0x1F & ~row.fsBit & ~HIDDEN)}) {
            toolbar.send(TOOLM_SETSTATE, 11, fsOthers);
            for (LPARAM lFlag : {0x10001, 2, 0x70000, 0}) { // only the low word counts
                bool fSet = LOWORD(lFlag) != 0, fWas = toolbar.send(row.uGet, 11) != 0;
                waiting(toolbar.hwnd());
                EXPECT_EQ(toolbar.send(row.uSet, 11, lFlag), 1);
                EXPECT_EQ(toolbar.send(row.uGet, 11), fSet ? row.fsBit : 0);
                int nState = fsOthers | (fSet ? row.fsBit : 0);
                EXPECT_EQ(toolbar.states(), "0 " + std::to_string(nState) + " 224");
                if (fSet == fWas) {
                    expectWaiting(toolbar.hwnd(), {}, false);
                } else if (row.fsBit == HIDDEN) {
                    expectWaiting(toolbar.hwnd(), whole(toolbar), true);
                } else {
                    expectWaiting(toolbar.hwnd(), rcButton, false);
                }
            }
        }
        EXPECT_EQ(toolbar.send(row.uSet, UNKNOWN, 1), 0);
        EXPECT_EQ(toolbar.send(row.uGet, UNKNOWN), -1);
        EXPECT_EQ(toolbar.send(row.uSet, 0x1000B, 1), 0); // all 32 bits of a command count
    }
    EXPECT_EQ(toolbar.send(TOOLM_SETSTATE, 11, 0x12345), 1);
    EXPECT_EQ(toolbar.send(TOOLM_GETSTATE, 11), 0x45);
    expectWaiting(toolbar.hwnd(), rcButton, false);
    EXPECT_EQ(toolbar.send(TOOLM_SETSTATE, 11, 0x45), 1);
    expectWaiting(toolbar.hwnd(), {}, false);
    toolbar.send(TOOLM_SETSTATE, 11, HIDDEN);
    expectWaiting(toolbar.hwnd(), whole(toolbar), true);
    EXPECT_EQ(toolbar.send(TOOLM_SETSTATE, UNKNOWN, 1), 0);
    EXPECT_EQ(toolbar.send(TOOLM_GETSTATE, UNKNOWN), -1);
    EXPECT_EQ(toolbar.send(TOOLM_COMMANDTOINDEX, 11), 1);
    EXPECT_EQ(toolbar.send(TOOLM_COMMANDTOINDEX, UNKNOWN), -1);
    EXPECT_EQ(toolbar.states(), "0 8 224");
}

TEST(ToolbarState, OneOfAGroupStaysChecked)
{
    // Two groups, with a gap between them, and a check button beside the second.
    const std::vector<XferToolButton> rows = {
        {0, 10, 4, GROUP}, {0, 11, 4, GROUP}, {0, 12, 4, GROUP}, {0, 240, 4, GAP},
        {0, 13, 4, GROUP}, {0, 14, 4, GROUP}, {0, 15, 4, CHECK}};
    const struct {
        const char *pszWhat, *pszBefore;
        WPARAM idCommand;
        LPARAM lFlag;
        const char* pszAfter;
    } table[] = {
        {"up", "5 4 4 4 5 4 5", 12, 1, "4 4 5 4 5 4 5"},
        {"down", "4 4 5 4 5 4 5", 10, 1, "5 4 4 4 5 4 5"},
        {"behind the gap", "4 4 5 4 5 4 5", 14, 1, "4 4 5 4 4 5 5"},
        {"the first of two only", "5 5 4 4 4 4 4", 12, 1, "4 5 5 4 4 4 4"},
        {"unchecked", "4 4 5 4 5 4 5", 12, 0, "4 4 4 4 5 4 5"},
        {"nothing new", "5 5 4 4 4 4 4", 11, 1, "5 5 4 4 4 4 4"},
        {"not of a group", "4 4 5 4 4 5 4", 15, 1, "4 4 5 4 4 5 5"},
    };
    for (auto& row : table) {
        TestToolbar toolbar(rows);
        for (size_t n = 0; n < rows.size(); ++n) {
            toolbar.send(TOOLM_SETSTATE, rows[n].idCommand, row.pszBefore[2 * n] - '0');
        }
        EXPECT_EQ(toolbar.states(), row.pszBefore) << row.pszWhat; // with no regard to groups
        EXPECT_EQ(toolbar.send(TOOLM_CHECKBUTTON, row.idCommand, row.lFlag), 1);
        EXPECT_EQ(toolbar.states(), row.pszAfter) << row.pszWhat;
    }
}

// The commands of all rows, in their order.
std::string commands(const TestToolbar& toolbar)
{
    std::string text;
    XferToolButton button;
    LRESULT cButtons = 0;
    for (; toolbar.send(TOOLM_GETBUTTON, WPARAM(cButtons), &button) != 0; ++cButtons) {
        text += std::to_string(button.idCommand) + " ";
    }
    EXPECT_EQ(toolbar.send(TOOLM_BUTTONCOUNT), cButtons);
    return text;
}

TEST(ToolbarRows, ComeAndGo)
{
    TestToolbar toolbar;
    const XferToolButton rows[] = {{0, 1, 0, 0}, {-1, 2, 0, GAP}, {12, 3, 0, GAP}, {0, 4, 0, GAP}};
    XferToolButton button = {-7, 5, 0, 0};
    EXPECT_EQ(commands(toolbar), "");
    struct {
        UINT uMessage;
        WPARAM wParam;
        const void* pParam;
        LRESULT lResult;
        const char* pszAfter;
    } const table[] = {
        {TOOLM_ADDBUTTONS, 4, rows, 1, "1 2 3 4 "},
        {TOOLM_INSERTBUTTON, 0, &button, 1, "5 1 2 3 4 "},
        {TOOLM_INSERTBUTTON, 2, &rows[3], 1, "5 1 4 2 3 4 "},
        {TOOLM_INSERTBUTTON, 6, &rows[0], 1, "5 1 4 2 3 4 1 "},
        {TOOLM_INSERTBUTTON, WPARAM(-1), &rows[1], 1, "5 1 4 2 3 4 1 2 "},
        {TOOLM_DELETEBUTTON, 7, nullptr, 1, "5 1 4 2 3 4 1 "},
        {TOOLM_DELETEBUTTON, 0, nullptr, 1, "1 4 2 3 4 1 "},
        {TOOLM_DELETEBUTTON, 1, nullptr, 1, "1 2 3 4 1 "},
        {TOOLM_DELETEBUTTON, 5, nullptr, 0, "1 2 3 4 1 "},
        {TOOLM_DELETEBUTTON, WPARAM(-1), nullptr, 0, "1 2 3 4 1 "},
        {TOOLM_ADDBUTTONS, 1, nullptr, 0, "1 2 3 4 1 "},
        {TOOLM_INSERTBUTTON, 0, nullptr, 0, "1 2 3 4 1 "},
        {TOOLM_ADDBUTTONS, 0, rows, 1, "1 2 3 4 1 "},
        // Sizes that run over 32 bits: just over, a little, and as far as can be.
        {TOOLM_ADDBUTTONS, 0x15555556, rows, 0, "1 2 3 4 1 "},
        {TOOLM_ADDBUTTONS, 0x80000000, rows, 0, "1 2 3 4 1 "},
        {TOOLM_ADDBUTTONS, WPARAM(-1), rows, 0, "1 2 3 4 1 "},
        {TOOLM_GETBUTTON, 5, &button, 0, "1 2 3 4 1 "},
        {TOOLM_GETBUTTON, WPARAM(-1), &button, 0, "1 2 3 4 1 "},
        {TOOLM_GETBUTTON, 0, nullptr, 0, "1 2 3 4 1 "},
    };
    for (auto& row : table) {
        SCOPED_TRACE(testing::Message() << &row - table);
        waiting(toolbar.hwnd());
        EXPECT_EQ(toolbar.send(row.uMessage, row.wParam, row.pParam), row.lResult);
        EXPECT_EQ(commands(toolbar), row.pszAfter);
        bool fChanged = row.lResult != 0;
        expectWaiting(toolbar.hwnd(), fChanged ? whole(toolbar) : RECT{}, fChanged);
    }
    EXPECT_EQ(button.iPicture, -7);
    const LONG widths[] = {8, 12, 8};
    for (int n = 0; n < 3; ++n) {
        ASSERT_EQ(toolbar.send(TOOLM_GETBUTTON, WPARAM(n + 1), &button), 1);
        EXPECT_EQ(button.iPicture, widths[n]);
        EXPECT_EQ(button.fsStyle, GAP);
    }
}

TEST(ToolbarPictures, AreNumberedThroughAllStrips)
{
    TestToolbar toolbar;
    HINSTANCE hOther = GetModuleHandleA("KERNEL32.DLL");
    struct {
        int cPictures;
        toolbar::PictureSource pictures;
        LRESULT lFirst;
    } const table[] = {
        {15, {self(), 240}, 0},
        {15, {self(), 0x100F0}, 0}, // the same id
        {17, {self(), 240}, 0},     // the last strip grows
        {3, {hOther, 240}, 17},
        {2, {nullptr, 240}, 20},
        {17, {self(), 240}, 0},
        {1, {self(), 240}, 0},
        {18, {self(), 240}, 22}, // no more: a strip of its own
        {18, {self(), 240}, 22},
        {4, {hOther, 240}, 40},
        {-1, {hOther, 241}, -1},
        {INT_MIN, {hOther, 240}, -1},
        {INT_MAX - 43, {hOther, 241}, -1},
        {INT_MAX, {hOther, 240}, -1},
        {INT_MAX - 44, {hOther, 241}, 44},
        {1, {hOther, 242}, -1},
        {3, {hOther, 240}, 17},
    };
    for (auto& row : table) {
        EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, WPARAM(row.cPictures), &row.pictures), row.lFirst)
            << "row " << &row - table;
    }
    EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, 1, nullptr), -1);
}

TEST(ToolbarGeometry, EveryColumnHasItsButton)
{
    const XferToolButton rows[] = {{0, 1, 4, 0},  {0, 2, 0, 0},       {-1, 240, 4, GAP},
                                   {0, 3, 8, 0},  {3, 240, 4, GAP},   {1, 240, 4, GAP},
                                   {0, 4, 16, 0}, {50, 240, 12, GAP}, {0, 5, 4, 0}};
    TestToolbar toolbar;
    for (const XferToolButton& row : rows) {
        toolbar.send(TOOLM_INSERTBUTTON, WPARAM(-1), &row);
    }
    const XferToolbar* pToolbar = toolbar::recordOf(toolbar.hwnd());
    // First columns of all rows, and the first behind them; a hidden row has none.
    const int lefts[] = {8, 31, 54, 62, 62, 65, 66, 89, 89, 112};
    for (DWORD n = 0; n < ARRAYSIZE(rows); ++n) {
        RECT rc = {-1, -1, -1, -1};
        bool fHidden = (rows[n].fsState & HIDDEN) != 0, fGap = rows[n].fsStyle == GAP;
        RECT rcExpected = {lefts[n], 2, fGap ? lefts[n + 1] : lefts[n] + 24, 24};
        EXPECT_EQ(fXferToolbarItemRect(pToolbar, n, &rc), !fHidden);
        EXPECT_TRUE(EqualRect(&rc, fHidden ? &rc : &rcExpected)) << n;
        for (int x = lefts[n]; x < lefts[n + 1]; ++x) {
            for (int y : {INT_MIN, -1, 0, 1, 2, 13, 23, 24, INT_MAX}) {
                int nHit = nXferToolbarHitTest(pToolbar, x, y);
                bool fInside = y >= 2 && y <= 23 && !fGap;
                EXPECT_EQ(nHit, fInside ? int(n) : nHit < 0 ? nHit : -1) << x << ", " << y;
            }
        }
    }
    for (int x : {INT_MIN, -1, 0, 7, 112, 113, INT_MAX}) {
        EXPECT_LT(nXferToolbarHitTest(pToolbar, x, 13), 0) << x;
    }
    RECT rc;
    EXPECT_EQ(fXferToolbarItemRect(pToolbar, ARRAYSIZE(rows), &rc), 0);
    EXPECT_EQ(fXferToolbarItemRect(pToolbar, DWORD(-1), &rc), 0);
    // Widths that can't be added up put what follows far outside, and do no other harm.
    const XferToolButton wide[] = {{INT_MAX, 240, 0, GAP}, {INT_MAX, 240, 0, GAP}, {0, 6, 4, 0}};
    toolbar.send(TOOLM_ADDBUTTONS, 3, wide);
    pToolbar = toolbar::recordOf(toolbar.hwnd());
    for (DWORD n = ARRAYSIZE(rows); n < ARRAYSIZE(rows) + 3; ++n) {
        EXPECT_EQ(fXferToolbarItemRect(pToolbar, n, &rc), 1);
        EXPECT_LE(rc.left, rc.right);
    }
    EXPECT_LT(nXferToolbarHitTest(pToolbar, INT_MAX, 13), 0);
    EXPECT_EQ(toolbar.send(TOOLM_PRESSBUTTON, 6, 1), 1);
}

// A toolbar for the mouse: plain, disabled, plain, gap, two of a group, a check button. Their
// middles are at 20, 43, 66, 80, 97, 120 and 143.
const std::vector<XferToolButton> MOUSE_ROWS = {
    {0, 10, 4, 0},     {0, 11, 0, 0},     {0, 0x1000C, 4, 0}, {0, 240, 4, GAP},
    {0, 13, 5, GROUP}, {0, 14, 4, GROUP}, {0, 15, 4, CHECK}};
const char MOUSE_STATES[] = "4 0 4 4 5 4 4";
const char CLICKED[] = "hint 10 press 10 hint 0 release 10 command 10";

// Does what a text says, such as "down 20 move 43 up 43".
void run(const TestToolbar& toolbar, const char* pszSteps)
{
    const std::map<std::string, UINT> messages = {{"down", WM_LBUTTONDOWN},
                                                  {"move", WM_MOUSEMOVE},
                                                  {"up", WM_LBUTTONUP},
                                                  {"double", WM_LBUTTONDBLCLK}};
    std::istringstream steps(pszSteps);
    std::string what;
    for (int x; steps >> what >> x;) {
        toolbar.send(messages.at(what), 0, MAKELPARAM(x, 13));
    }
}

TEST(ToolbarPress, TellsTheParentStepByStep)
{
    const struct {
        const char *pszWhat, *pszSteps, *pszHeard;
        const char* pszAfter = MOUSE_STATES;
    } table[] = {
        {"held", "down 20", "hint 10 press 10", "6 0 4 4 5 4 4"},
        {"click", "down 20 up 20", CLICKED},
        {"a command of 32 bits", "down 66 up 66",
         "hint 65548 press 12 hint 0 release 12 command 65548"},
        {"off", "down 20 move 300 move 66", "hint 10 press 10"},
        {"off, release", "down 20 move 66 up 66", "hint 10 press 10 hint 0 release 10"},
        {"off, back, release", "down 20 move 20 move 80 move 20 move 20 up 20",
         "hint 10 press 10 hint 10 hint 0 release 10 command 10"},
        {"release off without a move", "down 20 up 300", "hint 10 press 10 hint 0 release 10"},
        {"negative places", "down 20 move -5 up -5", "hint 10 press 10 hint 0 release 10"},
        {"disabled", "down 43 move 20 move 43 up 43", "hint 11 press 11 hint 0 release 11"},
        {"gap", "down 80 move 20 up 20", "hint 0"},
        {"left edge", "down 7 up 20", "hint 0"},
        {"nothing held", "move 20 up 20", "hint 0"},
        {"the one of a group", "down 97 up 97", "hint 13 press 13 hint 0 release 13"},
        {"another of a group", "down 120 up 120", "hint 14 press 14 hint 0 release 14 command 14",
         "4 0 4 4 4 5 4"},
        {"check", "down 143 up 143", "hint 15 press 15 hint 0 release 15 command 15",
         "4 0 4 4 5 4 5"},
        {"check twice", "down 143 up 143 down 143 up 143",
         "hint 15 press 15 hint 0 release 15 command 15 "
         "hint 15 press 15 hint 0 release 15 command 15"},
        {"double click", "down 20 up 20 double 20 up 20",
         "hint 10 press 10 hint 0 release 10 command 10 hint 0"},
        {"a lost release", "down 20 down 66", "hint 10 press 10 hint 65548 press 12",
         "4 0 6 4 5 4 4"},
    };
    for (auto& row : table) {
        SCOPED_TRACE(row.pszWhat);
        TestToolbar toolbar(MOUSE_ROWS);
        run(toolbar, row.pszSteps);
        EXPECT_EQ(toolbar.heard(), row.pszHeard);
        EXPECT_EQ(toolbar.states(), row.pszAfter);
        bool fHeld = toolbar::recordOf(toolbar.hwnd())->pTracked != nullptr;
        EXPECT_EQ(GetCapture(), fHeld ? toolbar.hwnd() : nullptr);
    }
}

TEST(ToolbarPress, ShowsTheButtonAtOnce)
{
    TestToolbar toolbar(MOUSE_ROWS);
    RECT rcNone = {}, rcButton = {8, 2, 32, 24};
    waiting(toolbar.hwnd());
    toolbar.m_onHear = [&] { expectWaiting(toolbar.hwnd(), rcNone, false); };
    run(toolbar, "down 20");
    toolbar.m_onHear = nullptr;
    for (const char* pszStep : {"move 300", "move 20"}) {
        run(toolbar, pszStep);
        expectWaiting(toolbar.hwnd(), rcButton, false);
    }
    // It stays down until the parent has heard of the release.
    std::string seen;
    toolbar.m_onHear = [&] { seen += toolbar.states().substr(0, 2); };
    run(toolbar, "up 20");
    EXPECT_EQ(seen, "6 6 4 ");
    expectWaiting(toolbar.hwnd(), rcButton, false);
}

TEST(ToolbarPress, EndsWithTheStateThatIsThere)
{
    const struct {
        UINT uMessage;
        LPARAM lParam;
        const char *pszHeard, *pszAfter;
    } table[] = {
        {TOOLM_ENABLEBUTTON, 0, "hint 0 release 10", "0 0 4 4 5 4 4"},
        {TOOLM_HIDEBUTTON, 1, "hint 0 release 10", "12 0 4 4 5 4 4"},
        {TOOLM_PRESSBUTTON, 0, "hint 0 release 10 command 10", MOUSE_STATES},
        {TOOLM_CHECKBUTTON, 1, "hint 0 release 10 command 10", "5 0 4 4 5 4 4"},
    };
    for (auto& row : table) {
        TestToolbar toolbar(MOUSE_ROWS);
        run(toolbar, "down 20");
        toolbar.heard();
        toolbar.send(row.uMessage, 10, row.lParam);
        run(toolbar, "up 20");
        EXPECT_EQ(toolbar.heard(), row.pszHeard) << std::hex << row.uMessage;
        EXPECT_EQ(toolbar.states(), row.pszAfter) << std::hex << row.uMessage;
    }
}

void expectNoPress(const TestToolbar& toolbar)
{
    const XferToolbar* pToolbar = toolbar::recordOf(toolbar.hwnd());
    EXPECT_EQ(pToolbar->pTracked, nullptr);
    for (DWORD n = 0; n < pToolbar->cButtons; ++n) {
        EXPECT_EQ(pToolbar->buttons[n].fsState & PRESSED, 0) << n;
    }
    EXPECT_NE(GetCapture(), toolbar.hwnd());
}

// No press is left over, and a new button can be clicked.
void expectUsable(TestToolbar& toolbar)
{
    expectNoPress(toolbar);
    const XferToolButton button = {0, 10, ENABLED, 0};
    toolbar.send(TOOLM_INSERTBUTTON, 0, &button);
    toolbar.heard();
    run(toolbar, "down 20 up 20");
    EXPECT_EQ(toolbar.heard(), CLICKED);
}

// What can happen to a toolbar at any time.
struct Event {
    const char* pszWhat;
    void (*pfnRun)(const TestToolbar& toolbar);
};

const Event EVENTS[] = {
    {"rows are added",
     [](const TestToolbar& toolbar) {
         // Enough to move the record.
         std::vector<XferToolButton> rows(5000, {0, 50, ENABLED, 0});
         toolbar.send(TOOLM_ADDBUTTONS, rows.size(), rows.data());
     }},
    {"a row is inserted in front",
     [](const TestToolbar& toolbar) {
         const XferToolButton button = {0, 50, ENABLED, 0};
         toolbar.send(TOOLM_INSERTBUTTON, 0, &button);
     }},
    {"the row goes", [](const TestToolbar& toolbar) { toolbar.send(TOOLM_DELETEBUTTON, 0); }},
    {"the last row goes", [](const TestToolbar& toolbar) { toolbar.send(TOOLM_DELETEBUTTON, 6); }},
    {"all rows go",
     [](const TestToolbar& toolbar) {
         while (toolbar.send(TOOLM_DELETEBUTTON, 0) != 0) {
         }
     }},
    {"the capture is taken", [](const TestToolbar& toolbar) { SetCapture(toolbar.parent()); }},
    {"the capture is freed", [](const TestToolbar&) { ReleaseCapture(); }},
    {"the press is cancelled", [](const TestToolbar& toolbar) { toolbar.send(WM_CANCELMODE); }},
};

TEST(ToolbarPress, ThatIsCutOffLeavesNothingPressed)
{
    for (const Event& event : EVENTS) {
        SCOPED_TRACE(event.pszWhat);
        TestToolbar toolbar(MOUSE_ROWS);
        run(toolbar, "down 20");
        toolbar.heard();
        event.pfnRun(toolbar);
        EXPECT_EQ(toolbar.heard(), "");
        expectNoPress(toolbar);
        ReleaseCapture();
        run(toolbar, "move 300 move 20 up 20");
        EXPECT_EQ(toolbar.heard(), "hint 0");
        expectUsable(toolbar);
    }
}

// Versions below 4 don't tell of it.
TEST(ToolbarPress, ThatHasLostItsCaptureUnheardEndsWithTheNextMessage)
{
    for (std::string step : {"move 20", "up 20", "down 80", "cancel"}) {
        TestToolbar toolbar(MOUSE_ROWS);
        Subclassed old(toolbar.hwnd(),
                       [](UINT uMessage, WPARAM, LPARAM) { return uMessage == WM_CAPTURECHANGED; });
        run(toolbar, "down 20");
        toolbar.heard();
        if (step == "cancel") {
            toolbar.send(WM_CANCELMODE);
        } else {
            ReleaseCapture();
            EXPECT_EQ(toolbar.states(), "6 0 4 4 5 4 4");
            run(toolbar, step.c_str());
        }
        EXPECT_EQ(toolbar.heard(), step == "up 20" ? "hint 0" : "");
        expectUsable(toolbar);
    }
}

decltype(&free) s_pfnFree;

bool isPages(void* pBlock)
{
    return pBlock != nullptr && (reinterpret_cast<UINT_PTR>(pBlock) & 0xFFFF) == 0;
}

void freeGuarded(void* pBlock)
{
    if (isPages(pBlock)) {
        VirtualFree(pBlock, 0, MEM_RELEASE);
    } else {
        s_pfnFree(pBlock);
    }
}

// A block that grows moves to pages of its own. Its old ones fault from then on.
void* reallocGuarded(void* pBlock, size_t cb)
{
    MEMORY_BASIC_INFORMATION info;
    VirtualQuery(pBlock, &info, sizeof info);
    size_t cbOld = isPages(pBlock) ? info.RegionSize : _msize(pBlock);
    void* pNew = VirtualAlloc(nullptr, cb, MEM_COMMIT, PAGE_READWRITE);
    memcpy(pNew, pBlock, std::min(cb, cbOld));
    freeGuarded(pBlock);
    return pNew;
}

// Runs something in the n-th notification from now.
void inNotification(TestToolbar& toolbar, int nAt, const std::function<void()>& act)
{
    toolbar.m_onHear = [nAt, act]() mutable {
        if (--nAt == 0) {
            act();
        }
    };
}

TEST(ToolbarPress, SurvivesAnythingInsideANotification)
{
    ReplacedImport frees(self(), "free", freeGuarded);
    ReplacedImport reallocs(self(), "realloc", reallocGuarded);
    s_pfnFree = frees.original<decltype(&free)>();
    const char STEPS[] = "down 20 move 300 move 20 up 20";
    for (const Event& event : EVENTS) {
        for (int nAt = 1; nAt <= 6; ++nAt) {
            SCOPED_TRACE(testing::Message() << event.pszWhat << " in notification " << nAt);
            TestToolbar toolbar(MOUSE_ROWS);
            inNotification(toolbar, nAt, [&] { event.pfnRun(toolbar); });
            run(toolbar, STEPS);
            ReleaseCapture();
            toolbar.m_onHear = nullptr;
            expectUsable(toolbar);
        }
    }
    // Destroyed in each, it sends nothing after its end.
    std::string heard;
    int nAt = 0;
    for (const char* pszMore :
         {"hint 10", " press 10", " hint 10", " hint 0", " release 10", " command 10"}) {
        ++nAt;
        heard += pszMore;
        for (bool fParent : {true, false}) {
            TestToolbar toolbar(MOUSE_ROWS);
            inNotification(toolbar, nAt,
                           [&] { DestroyWindow(fParent ? toolbar.parent() : toolbar.hwnd()); });
            run(toolbar, STEPS);
            EXPECT_FALSE(IsWindow(toolbar.hwnd()));
            EXPECT_EQ(toolbar.heard(), heard);
        }
    }
}

TEST(ToolbarPress, BegunAnewInsideTheReleaseIsAPressOfItsOwn)
{
    TestToolbar toolbar(MOUSE_ROWS);
    inNotification(toolbar, 4, [&] { run(toolbar, "down 66"); });
    run(toolbar, "down 20 up 20");
    EXPECT_EQ(toolbar.heard(), "hint 10 press 10 hint 0 release 10 hint 65548 press 12");
    EXPECT_EQ(toolbar.states(), "4 0 6 4 5 4 4");
    run(toolbar, "up 66");
    EXPECT_EQ(toolbar.heard(), "hint 0 release 12 command 65548");
    expectUsable(toolbar);
}

TEST(ToolbarMouse, ARealOneWorksTheButtons)
{
    TestToolbar toolbar(MOUSE_ROWS);
    auto expectHeard = [&](const std::string& expected) {
        std::string heard;
        waitUntil([&] {
            std::string more = toolbar.heard();
            heard += (heard.empty() || more.empty() ? "" : " ") + more;
            return heard.size() >= expected.size();
        });
        EXPECT_EQ(heard, expected);
    };
    movePointer(toolbar.hwnd(), 20, 13);
    pressMouse(MOUSE_LEFT);
    expectHeard("hint 10 press 10");
    movePointer(toolbar.hwnd(), 20, 60); // below the control: only the capture brings it here
    EXPECT_TRUE(waitUntil([&] { return toolbar.states() == MOUSE_STATES; }));
    movePointer(toolbar.hwnd(), 20, 14);
    expectHeard("hint 10");
    EXPECT_EQ(toolbar.states(), "6 0 4 4 5 4 4");
    releaseMouse(MOUSE_LEFT);
    expectHeard("hint 0 release 10 command 10");
    // A double click in another place, so that it doesn't go with the click before.
    movePointer(toolbar.hwnd(), 120, 13);
    for (int n = 0; n < 2; ++n) {
        pressMouse(MOUSE_LEFT);
        releaseMouse(MOUSE_LEFT);
    }
    expectHeard("hint 14 press 14 hint 0 release 14 command 14 hint 0");
    EXPECT_EQ(toolbar.states(), "4 0 4 4 4 5 4");
    expectUsable(toolbar);
}

TEST(ToolbarMemory, WithoutItNothingChanges)
{
    TestToolbar toolbar(MOUSE_ROWS);
    const XferToolButton button = {0, 50, ENABLED, 0};
    const toolbar::PictureSource pictures = {self(), 240};
    run(toolbar, "down 20");
    auto failing = [&](UINT uMessage, WPARAM wParam, const void* pParam) {
        ReplacedImport mallocs(
            self(), "malloc", +[](size_t) -> void* { return nullptr; });
        ReplacedImport reallocs(
            self(), "realloc", +[](void*, size_t) -> void* { return nullptr; });
        return toolbar.send(uMessage, wParam, pParam);
    };
    EXPECT_EQ(failing(TOOLM_INSERTBUTTON, 0, &button), 0);
    EXPECT_EQ(failing(TOOLM_ADDBUTTONS, 1, &button), 0);
    EXPECT_EQ(failing(TOOLM_ADDBITMAP, 15, &pictures), -1);
    EXPECT_EQ(commands(toolbar), "10 11 65548 240 13 14 15 ");
    EXPECT_EQ(toolbar.states(), "6 0 4 4 5 4 4"); // not even the press has ended
    EXPECT_EQ(toolbar.send(TOOLM_ADDBITMAP, 15, &pictures), 0);
    run(toolbar, "up 20");
    EXPECT_EQ(toolbar.heard(), CLICKED);
}

TEST(ToolbarMemory, WithoutARecordMessagesFail)
{
    TestToolbar toolbar(MOUSE_ROWS);
    XferToolButton button = {};
    LONG lRecord = SetWindowLongA(toolbar.hwnd(), 0, 0); // as it is from WM_DESTROY on
    for (UINT uMessage = TOOLM_ENABLEBUTTON; uMessage <= TOOLM_COMMANDTOINDEX; ++uMessage) {
        bool fState = uMessage >= TOOLM_ISENABLED && uMessage <= TOOLM_ISINDETERMINATE;
        bool fMinus = fState || uMessage == TOOLM_GETSTATE || uMessage == TOOLM_ADDBITMAP ||
                      uMessage == TOOLM_COMMANDTOINDEX;
        EXPECT_EQ(toolbar.send(uMessage, 0, &button), fMinus ? -1 : 0) << std::hex << uMessage;
    }
    run(toolbar, "down 20 move 20 up 20");
    EXPECT_EQ(toolbar.heard(), "");
    SetWindowLongA(toolbar.hwnd(), 0, lRecord);
}

} // namespace
