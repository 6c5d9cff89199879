// The frame of the transfer window: what its procedure does with the platform's messages, the
// hints, help, the view modes and the simple commands.
#include "../resources/ids.h"
#include "../toolbar/toolbar.h"
#include "support/help.h"
#include "support/looks.h"

#include <fstream>
#include <set>

namespace {

class Frame : public PaneWindow {};

HCURSOR busyCursor()
{
    return LoadCursorA(nullptr, MAKEINTRESOURCEA(32650)); // IDC_APPSTARTING
}

HICON windowIcon()
{
    return LoadIconA(library(), "XferDandDIcon");
}

int s_cIconsDrawn;
BOOL WINAPI countingDrawIcon(HDC hdc, int x, int y, HICON hicon)
{
    // The rows of the lists have icons of their own.
    if (hicon == windowIcon()) {
        ++s_cIconsDrawn;
        EXPECT_EQ(x, 0);
        EXPECT_EQ(y, 0);
    }
    return DrawIcon(hdc, x, y, hicon);
}

TEST_F(Frame, ProcedureAnswersByItsTable)
{
    const INT_PTR nIcon = reinterpret_cast<INT_PTR>(windowIcon());
    const struct {
        UINT uMessage;
        WPARAM wParam;
        INT_PTR nOpen, nIcon;
    } cases[] = {{WM_ERASEBKGND, 0, 0, 1},
                 {WM_PAINT, 0, 0, 1},
                 {WM_QUERYDRAGICON, 0, nIcon, nIcon},
                 {WM_XFER_SHOWHINT, 0, 1, 1},
                 {WM_COMMAND, IDM_XFER_STOP, 0, 0}};
    ReplacedImport draw(library(), "DrawIcon", countingDrawIcon);
    create();
    EXPECT_NE(nIcon, 0);
    EXPECT_EQ(SendMessageA(m_hwnd, WM_QUERYDRAGICON, 0, 0), nIcon);
    EXPECT_EQ(SendMessageA(m_hwnd, WM_GETICON, ICON_BIG, 0), nIcon);
    for (bool fIcon : {false, true}) {
        ShowWindow(m_hwnd, fIcon ? SW_MINIMIZE : SW_SHOW);
        s_cIconsDrawn = 0;
        for (const auto& c : cases) {
            EXPECT_EQ(ask(c.uMessage, c.wParam), fIcon ? c.nIcon : c.nOpen) << c.uMessage;
        }
        EXPECT_EQ(s_cIconsDrawn, fIcon);
    }
}

TEST_F(Frame, ControlsStartAsTheWindowNeedsThem)
{
    create();
    EXPECT_EQ(HGDIOBJ(tell(IDC_DANDD_INFOLINE, WM_GETFONT)), GetStockObject(ANSI_FIXED_FONT));
    EXPECT_EQ(SendMessageA(item(IDC_DANDD_COMMANDLINE), EM_GETLIMITTEXT, 0, 0), XFER_MAX_NAME);
    EXPECT_EQ(SendMessageA(item(IDC_DANDD_LOCALTYPES), CB_GETCURSEL, 0, 0), 0);
    // Kinds of static controls up to here are drawn by every version.
    EXPECT_LE(GetWindowLongA(item(IDC_DANDD_BAND), GWL_STYLE) & (SS_TYPEMASK | 0xF000),
              SS_LEFTNOWORDWRAP);
    // The rows of the owner-drawn lists have room for their icons.
    TEXTMETRICA metrics;
    HDC hdc = GetDC(m_hwnd);
    GetTextMetricsA(hdc, &metrics);
    ReleaseDC(m_hwnd, hdc);
    const LRESULT cy = std::max(16L, metrics.tmAscent + metrics.tmExternalLeading);
    EXPECT_EQ(SendMessageA(item(IDC_DANDD_LOCALDIRS), LB_GETITEMHEIGHT, 0, 0), cy);
    EXPECT_EQ(SendMessageA(item(IDC_DANDD_HOSTDIRS), LB_GETITEMHEIGHT, 0, 0), cy);
    EXPECT_EQ(SendMessageA(item(IDC_DANDD_LOCALDRIVES), CB_GETITEMHEIGHT, 0, 0), cy);
}

TEST_F(Frame, StaysAnIconWhenItsParentComesBack)
{
    const struct {
        std::vector<int> shows; // in this order
        WORD wReason;
        bool fIcon;
    } cases[] = {
        {{SW_MINIMIZE, SW_RESTORE}, SW_PARENTOPENING, false},
        {{SW_MINIMIZE, SW_MAXIMIZE}, 0, false},
        {{SW_MINIMIZE, SW_MAXIMIZE}, SW_PARENTCLOSING, false},
        {{SW_MINIMIZE, SW_MAXIMIZE}, SW_PARENTOPENING, true},
        {{SW_MINIMIZE, SW_MAXIMIZE, SW_RESTORE}, SW_PARENTOPENING, false},
    };
    create();
    for (const auto& c : cases) {
        for (int nShow : c.shows) {
            ShowWindow(m_hwnd, nShow);
        }
        SendMessageA(m_hwnd, WM_SHOWWINDOW, TRUE, c.wReason);
        EXPECT_EQ(IsIconic(m_hwnd) != 0, c.fIcon);
        ShowWindow(m_hwnd, SW_RESTORE);
        // From the icon of a maximised window it goes back to that first.
        ShowWindow(m_hwnd, SW_RESTORE);
    }
}

TEST_F(Frame, MinimisingLeavesTheControlsAlone)
{
    create();
    for (int id : {IDC_DANDD_HOSTFILES, IDC_DANDD_TOOLBAR}) {
        const RECT rc = placeOf(m_hwnd, id);
        ShowWindow(m_hwnd, SW_MINIMIZE);
        EXPECT_EQ(placeOf(m_hwnd, id), rc);
        ShowWindow(m_hwnd, SW_MAXIMIZE);
        EXPECT_GT(placeOf(m_hwnd, id).right, rc.right);
        ShowWindow(m_hwnd, SW_RESTORE);
        EXPECT_EQ(placeOf(m_hwnd, id), rc);
    }
}

TEST_F(Frame, BusyCursorShowsInsideTheFrame)
{
    const std::set<WORD> inside = {HTCLIENT, HTCAPTION, HTMENU};
    create();
    for (DWORD fBusy : {1u, 0u, 2u}) {
        vXferDandDSetBusyState(m_hwnd, fBusy);
        for (WORD nHit = HTNOWHERE; nHit <= HTBOTTOMRIGHT; ++nHit) {
            SCOPED_TRACE(testing::Message() << fBusy << " " << nHit);
            LPARAM lParam = MAKELPARAM(nHit, WM_MOUSEMOVE);
            bool fShown = fBusy != 0 && inside.count(nHit) != 0;
            SetCursor(LoadCursorA(nullptr, IDC_CROSS));
            EXPECT_EQ(ask(WM_SETCURSOR, WPARAM(m_hwnd), lParam), fShown);
            EXPECT_EQ(GetCursor() == busyCursor(), fShown);
            LRESULT lResult = SendMessageA(m_hwnd, WM_SETCURSOR, WPARAM(m_hwnd), lParam);
            EXPECT_EQ(GetCursor() == busyCursor(), fShown);
            if (fShown) {
                EXPECT_EQ(lResult, 1);
            }
        }
    }
}

TEST_F(Frame, SecondPopupIsGreyWithoutASelection)
{
    create();
    HMENU hmenu = GetSubMenu(GetMenu(m_hwnd), 1);
    for (UINT id : {IDM_XFER_COPY, IDM_XFER_SAVESELECTION}) {
        ASSERT_NE(GetMenuState(hmenu, id, MF_BYCOMMAND), UINT(-1));
    }
    vXferDandDInfoLine(m_hwnd, "entry");
    HWND hwndInfo = item(IDC_DANDD_INFOLINE);
    for (bool fSelected : {false, true, false}) {
        SendMessageA(hwndInfo, EM_SETSEL, 3, fSelected ? 4 : 3);
        for (UINT id : {IDM_XFER_COPY, IDM_XFER_SAVESELECTION}) {
            EnableMenuItem(hmenu, id, fSelected ? MF_GRAYED : MF_ENABLED);
        }
        for (LPARAM lOther : {LPARAM(0), LPARAM(2), LPARAM(MAKELPARAM(1, TRUE))}) {
            EXPECT_EQ(ask(WM_INITMENUPOPUP, WPARAM(hmenu), lOther), 0);
            EXPECT_EQ(itemState(m_hwnd, IDM_XFER_COPY) != 0, fSelected);
        }
        EXPECT_EQ(ask(WM_INITMENUPOPUP, WPARAM(hmenu), 1), 1);
        for (UINT id : {IDM_XFER_COPY, IDM_XFER_SAVESELECTION}) {
            EXPECT_EQ(itemState(m_hwnd, id), fSelected ? UINT(MF_ENABLED) : UINT(MF_GRAYED));
        }
    }
}

std::set<UINT> s_missing;
int WINAPI forgetfulLoadString(HINSTANCE hModule, UINT id, LPSTR pszBuffer, int cch)
{
    return s_missing.count(id) != 0 ? 0 : LoadStringA(hModule, id, pszBuffer, cch);
}

TEST_F(Frame, MenuShowsHints)
{
    constexpr UINT NOTHING = 0;
    constexpr UINT AS_BEFORE = 1;
    create();
    HMENU hmenu = GetMenu(m_hwnd);
    HMENU hmenuFile = GetSubMenu(hmenu, 0);
    HMENU hmenuOther = CreateMenu();
    AppendMenuA(hmenuOther, MF_POPUP, UINT_PTR(CreatePopupMenu()), "other");
    struct Case {
        UINT idItem, uFlags;
        HMENU hmenu;
        UINT idShown;
    };
    std::vector<Case> cases = {
        {IDM_XFER_RENAME, MF_HILITE, hmenuFile, IDM_XFER_RENAME},
        {IDM_XFER_DELETE, MF_HILITE | MF_GRAYED | MF_DISABLED, hmenuFile, IDM_XFER_DELETE},
        {0, MF_HILITE | MF_SEPARATOR, hmenuFile, AS_BEFORE},
        {SC_CLOSE, MF_HILITE | MF_SYSMENU, GetSystemMenu(m_hwnd, FALSE), AS_BEFORE},
        {0, MF_HILITE | MF_POPUP | MF_SYSMENU, hmenu, AS_BEFORE},
        {9999, MF_HILITE, hmenuFile, IDS_NOT_KNOWN},
        {0, MF_HILITE | MF_POPUP, hmenuOther, IDS_NOT_KNOWN},
        {77, MF_HILITE | MF_POPUP, hmenu, IDS_NOT_KNOWN},
        {0, 0xFFFF, hmenu, AS_BEFORE},
        {1, 0xFFFF, nullptr, AS_BEFORE},
        {0, 0xFFFF, nullptr, NOTHING},
        {IDM_XFER_STOP, MF_HILITE, hmenuFile, IDM_XFER_STOP},
        {0, 0xFFFF, nullptr, NOTHING},
    };
    for (UINT n = 0; n < 5; ++n) {
        cases.push_back({n, MF_HILITE | MF_POPUP, hmenu, IDS_POPUP1_HINT + n});
    }
    DrawnTexts texts;
    std::string shown;
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.idItem << " " << c.uFlags);
        UpdateWindow(m_hwnd);
        EXPECT_EQ(SendMessageA(m_hwnd, WM_MENUSELECT, MAKEWPARAM(c.idItem, c.uFlags),
                               reinterpret_cast<LPARAM>(c.hmenu)),
                  0);
        EXPECT_EQ(GetUpdateRect(m_hwnd, nullptr, FALSE) != 0, c.idShown != AS_BEFORE);
        if (c.idShown != AS_BEFORE) {
            shown = c.idShown == NOTHING ? "" : english(c.idShown);
            EXPECT_EQ(shown.empty(), c.idShown == NOTHING);
        }
        EXPECT_EQ(texts.strip(m_hwnd), shown);
    }
    DestroyMenu(hmenuOther);
    // Without a hint for what isn't known there is still a word.
    ReplacedImport load(library(), "LoadStringA", forgetfulLoadString);
    for (UINT idToo : {0, IDS_NOT_KNOWN}) {
        s_missing = {IDM_XFER_RENAME, idToo};
        SendMessageA(m_hwnd, WM_MENUSELECT, MAKEWPARAM(IDM_XFER_RENAME, 0), LPARAM(hmenuFile));
        EXPECT_EQ(texts.strip(m_hwnd), idToo == 0 ? english(IDS_NOT_KNOWN) : "Unknown");
    }
}

TEST_F(Frame, ButtonsShowHints)
{
    create();
    DrawnTexts texts;
    for (UINT id : {UINT(IDM_XFER_VIEW), 9999u, UINT(IDM_XFER_HELP), 0u}) {
        UpdateWindow(m_hwnd);
        SendMessageA(m_hwnd, WM_XFER_SHOWHINT, id, 0);
        EXPECT_TRUE(GetUpdateRect(m_hwnd, nullptr, FALSE));
        EXPECT_EQ(texts.strip(m_hwnd), english(id));
    }
    // As the toolbar sends it: pressed and released.
    const LPARAM lPoint = MAKELPARAM(20, 12);
    SendMessageA(item(IDC_DANDD_TOOLBAR), WM_LBUTTONDOWN, MK_LBUTTON, lPoint);
    EXPECT_EQ(texts.strip(m_hwnd), english(IDM_XFER_TRANSFER));
    SendMessageA(item(IDC_DANDD_TOOLBAR), WM_LBUTTONUP, 0, lPoint);
    EXPECT_EQ(texts.strip(m_hwnd), "");
}

TEST_F(Frame, HelpBelongsToTheParentOrTheWindow)
{
    HelpCalls help;
    for (HWND hwndParent : {m_parent.hwnd(), HWND(nullptr)}) {
        m_hwnd = createOnly(hwndParent);
        help.take();
        EXPECT_EQ(ask(WM_XFER_HELP), 1);
        command(IDM_XFER_HELP);
        command(IDM_XFER_HELPSEARCH);
        const auto calls = help.take();
        ASSERT_EQ(calls.size(), 3u);
        for (const HelpCalls::Call& call : calls) {
            EXPECT_EQ(call.hwndOwner, hwndParent != nullptr ? hwndParent : m_hwnd);
            EXPECT_EQ(call.file, "KRDEMO.HLP");
            EXPECT_EQ(call.uCommand, UINT(&call == &calls[2] ? HELP_PARTIALKEY : HELP_CONTEXT));
            EXPECT_TRUE(&call == &calls[2] || call.data == 812);
        }
        EXPECT_STREQ(reinterpret_cast<const char*>(calls[2].data), "");
        close();
    }
}

TEST_F(Frame, ModeCommandsActOnChangesOnly)
{
    create();
    vXferDandDSetBusyState(m_hwnd, 0);
    const struct {
        DWORD nMode;
        size_t cCalls;
    } cases[] = {{1, 1}, {1, 0}, {0, 1}, {0, 0}};
    for (const auto& c : cases) {
        const bool fPanes = c.nMode == 0;
        // The callback comes before the change can be seen.
        m_modes.clear();
        m_whenModeChanges = [&] {
            EXPECT_EQ(IsWindowVisible(item(IDC_DANDD_COMMANDLINE)) != 0, fPanes);
        };
        SetFocus(m_parent.hwnd());
        std::ofstream("made_now").close();
        setMode(c.nMode);
        EXPECT_EQ(m_modes, std::vector<DWORD>(c.cCalls, c.nMode));
        EXPECT_EQ(GetFocus(), item(fPanes ? IDC_DANDD_LOCALFILTER : IDC_DANDD_COMMANDLINE));
        EXPECT_EQ(IsWindowVisible(item(IDC_DANDD_COMMANDLINE)) != 0, !fPanes);
        for (UINT id : {IDM_XFER_REFRESH, IDM_XFER_DETAILS}) {
            EXPECT_EQ(buttonState(m_hwnd, id), fPanes ? TOOLSTATE_ENABLED : 0);
            EXPECT_EQ(itemState(m_hwnd, id), fPanes ? 0u : UINT(MF_GRAYED | MF_DISABLED));
        }
        LRESULT nFound = SendMessageA(item(IDC_DANDD_LOCALFILES), LB_FINDSTRINGEXACT, WPARAM(-1),
                                      LPARAM("made_now"));
        EXPECT_EQ(nFound != LB_ERR, fPanes);
        DeleteFileA("made_now");
        if (fPanes) {
            vXferDandDRefreshLocalFiles(m_hwnd);
        }
    }
    m_whenModeChanges = nullptr;
    // In the busy state no mode has pane commands.
    vXferDandDSetBusyState(m_hwnd, 1);
    setMode(1);
    setMode(0);
    EXPECT_EQ(buttonState(m_hwnd, IDM_XFER_REFRESH), 0);
}

TEST_F(Frame, SimpleCommandsDoTheirWork)
{
    create();
    std::vector<WPARAM> commands;
    Subclassed window(m_hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM lParam) {
        if (uMessage == WM_COMMAND && lParam == 0) {
            commands.push_back(wParam);
        }
        return false;
    });
    // Stop and the end of the window are the caller's.
    command(IDM_XFER_STOP);
    EXPECT_EQ(commands, (std::vector<WPARAM>{IDM_XFER_STOP, IDABORT}));
    commands.clear();
    SendMessageA(m_hwnd, WM_CLOSE, 0, 0);
    EXPECT_TRUE(waitUntil([&] { return commands == std::vector<WPARAM>{IDCANCEL}; }));
    command(IDM_XFER_REFRESH);
    EXPECT_TRUE(IsWindow(m_hwnd));

    vXferDandDInfoLine(m_hwnd, "first");
    vXferDandDInfoLine(m_hwnd, "second");
    command(IDM_XFER_SELECTALL);
    EXPECT_EQ(tell(IDC_DANDD_INFOLINE, EM_GETSEL, 0, 0), MAKELRESULT(0, 15));
    command(IDM_XFER_COPY);
    ASSERT_TRUE(OpenClipboard(m_hwnd));
    HANDLE hText = GetClipboardData(CF_TEXT);
    ASSERT_NE(hText, nullptr);
    EXPECT_STREQ(static_cast<const char*>(GlobalLock(hText)), "\r\nfirst\r\nsecond");
    GlobalUnlock(hText);
    CloseClipboard();
}

TEST_F(Frame, EscapeClearsTheCommandLineAndNothingElse)
{
    create(XFERVIEW_COMMANDLINE);
    SetDlgItemTextA(m_hwnd, IDC_DANDD_COMMANDLINE, "typed");
    SetDlgItemTextA(m_hwnd, IDC_DANDD_HOSTPATH, "/typed");
    SetFocus(item(IDC_DANDD_INFOLINE));
    command(IDCANCEL);
    EXPECT_EQ(textOf(m_hwnd, IDC_DANDD_COMMANDLINE), "typed");
    vXferDandDSetFocus(m_hwnd);
    command(IDCANCEL);
    EXPECT_EQ(textOf(m_hwnd, IDC_DANDD_COMMANDLINE), "");
    setMode(0);
    SetFocus(item(IDC_DANDD_HOSTPATH));
    command(IDCANCEL);
    EXPECT_EQ(textOf(m_hwnd, IDC_DANDD_HOSTPATH), "/typed");
    EXPECT_TRUE(IsWindow(m_hwnd));
}

TEST_F(Frame, FocusAndTitleAreTheCallersToSet)
{
    create();
    SetFocus(m_parent.hwnd());
    tell(IDC_DANDD_LOCALFILTER, EM_SETSEL, 1, 1);
    vXferDandDSetFocus(m_hwnd);
    EXPECT_EQ(GetFocus(), item(IDC_DANDD_LOCALFILTER));
    EXPECT_EQ(tell(IDC_DANDD_LOCALFILTER, EM_GETSEL), MAKELRESULT(0, 3)); // of "*.*"
    const std::string longTitle(400, 't');
    for (const char* psz : {"a & b", "", longTitle.c_str()}) {
        vXferDandDSetTitle(m_hwnd, psz);
        EXPECT_EQ(textOf(m_hwnd), psz);
    }
    vXferDandDSetTitle(m_hwnd, nullptr);
    EXPECT_EQ(textOf(m_hwnd), "");
}

} // namespace
