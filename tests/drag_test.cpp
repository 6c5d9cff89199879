// Dragging files, with a real mouse: a thread plays the user, while the window's thread handles
// its messages and runs the drag loop.
#include "../resources/ids.h"
#include "../transfer/window/record.h"
#include "support/imports.h"
#include "support/input.h"
#include "support/pane_window.h"
#include "support/subclassed.h"

#include <atomic>
#include <map>
#include <thread>

namespace {

constexpr DWORD WAIT_MS = 20000;
constexpr POINT OUTSIDE = {1200, 900};

// What the drag loop has seen by the end of its last pass.
struct Pass {
    std::atomic<LONG> pt{-1};
    std::atomic<HCURSOR> hcur{nullptr};
    std::atomic<bool> fLeft{false};
    std::atomic<int> cPasses{0};
};
Pass s_pass;
POINT s_pt;
HCURSOR s_hcur;
std::map<HCURSOR, std::string> s_cursors; // those that are loaded
std::atomic<int> s_cDrags;
HWND s_hwndCapture;
std::atomic<bool> s_held[3];                   // by the user, each MouseButton
std::vector<std::pair<HWND, UINT>> s_passedOn; // presses and releases that the lists got

LONG packed(POINT pt)
{
    return MAKELONG(pt.x, pt.y);
}

// Where a drag can't learn the place of the pointer, as on a screen that is locked.
std::atomic<bool> s_fNoPointer;
std::atomic<bool> s_fLocked; // from the next look at the buttons on, which then seem to be up

BOOL WINAPI fakeGetCursorPos(POINT* ppt)
{
    BOOL fDone = GetCursorPos(ppt);
    s_pt = *ppt;
    return fDone && !s_fNoPointer;
}

HCURSOR WINAPI fakeSetCursor(HCURSOR hcur)
{
    s_hcur = hcur;
    return SetCursor(hcur);
}

// The loop asks for the buttons at the end of a pass. For 50 ms Wine can miss a press that came
// from another thread, so the user says it as well.
SHORT WINAPI fakeGetAsyncKeyState(int vk)
{
    MouseButton button = vk == VK_LBUTTON   ? MOUSE_LEFT
                         : vk == VK_MBUTTON ? MOUSE_MIDDLE
                                            : MOUSE_RIGHT;
    auto nState = SHORT(GetAsyncKeyState(vk) | (s_held[button] ? 0x8000 : 0));
    if (vk == VK_LBUTTON) {
        s_hwndCapture = GetCapture();
        s_pass.fLeft = nState < 0;
        s_pass.hcur = s_hcur;
        s_pass.pt = packed(s_pt);
        ++s_pass.cPasses;
    }
    if (s_fLocked) {
        s_fNoPointer = true;
        return 0;
    }
    return nState;
}

// Presses of the left button that a list has got.
std::atomic<int> s_cPresses{0};

void hold(MouseButton button)
{
    s_held[button] = true;
    pressMouse(button);
}

void letGo(MouseButton button)
{
    releaseMouse(button);
    s_held[button] = false;
}

HCURSOR WINAPI fakeLoadCursor(HINSTANCE hInstance, LPCSTR pszName)
{
    HCURSOR hcur = LoadCursorA(hInstance, pszName);
    s_cursors[hcur] = IS_INTRESOURCE(pszName) ? "arrow" : pszName;
    return hcur;
}

BOOL WINAPI fakeDestroyCursor(HCURSOR hcur)
{
    s_cursors.erase(hcur);
    return DestroyCursor(hcur);
}

BOOL WINAPI fakeReleaseCapture()
{
    ++s_cDrags;
    return ReleaseCapture();
}

LRESULT WINAPI fakeCallWindowProc(WNDPROC pfn, HWND hwnd, UINT uMessage, WPARAM wParam,
                                  LPARAM lParam)
{
    LRESULT nResult = CallWindowProcA(pfn, hwnd, uMessage, wParam, lParam);
    s_cPresses += uMessage == WM_LBUTTONDOWN;
    if (uMessage == WM_LBUTTONDOWN || uMessage == WM_LBUTTONUP) {
        s_passedOn.push_back({hwnd, uMessage});
    }
    return nResult;
}

int s_cUnmarked;
decltype(&SendMessageA) s_pfnSendMessage;

LRESULT WINAPI countingSendMessage(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    s_cUnmarked += uMessage == LB_SETCARETINDEX && LONG(wParam) == -1;
    return s_pfnSendMessage(hwnd, uMessage, wParam, lParam);
}

// Runs on the user's thread.
bool waitFor(const std::function<bool()>& condition, DWORD dwPatience = WAIT_MS)
{
    DWORD dwStart = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - dwStart > dwPatience) {
            return false;
        }
        SwitchToThread();
    }
    return true;
}

bool waitForPasses()
{
    int cPasses = s_pass.cPasses;
    return waitFor([cPasses] { return s_pass.cPasses > cPasses + 1; });
}

// Moves the pointer during a drag. Returns the cursor that the drag then shows. Wine can lose a
// move that comes while the list is taking another one from its queue, so the user's hand trembles.
HCURSOR hover(POINT pt)
{
    constexpr DWORD TREMBLE_MS = 200;
    auto isThere = [pt] { return s_pass.pt == packed(pt); };
    DWORD dwStart = GetTickCount();
    movePointer(pt);
    while (!waitFor(isThere, TREMBLE_MS) && GetTickCount() - dwStart < WAIT_MS) {
        movePointer({pt.x + 1, pt.y});
        movePointer(pt);
    }
    return isThere() && waitForPasses() ? s_pass.hcur.load() : nullptr;
}

// Presses the left button and waits until the list knows: moves that come before that count as
// one, and the screen can add an old one of its own.
void takeHold()
{
    const int cPresses = s_cPresses;
    const int cPasses = s_pass.cPasses;
    hold(MOUSE_LEFT);
    waitFor([=] { return s_cPresses > cPresses || s_pass.cPasses > cPasses; });
}

POINT moved(POINT pt, int dx, int dy)
{
    return {pt.x + dx, pt.y + dy};
}

class Drag : public PaneWindow {
protected:
    Drag()
    {
        m_dir.makeDirs({"child"});
        for (const char* psz : {"a", "b", "c"}) {
            m_dir.makeFile(psz, 10);
        }
        movePointer(OUTSIDE);
        open();
        feedHost({"x", "y", "z"});
        SetForegroundWindow(m_hwnd);
        // Presses come quickly here, and each is to count for itself.
        HWND hwndFiles = item(IDC_DANDD_LOCALFILES);
        SetClassLongA(hwndFiles, GCL_STYLE, GetClassLongA(hwndFiles, GCL_STYLE) & ~CS_DBLCLKS);
        start();
    }

    void start()
    {
        s_fNoPointer = false;
        s_fLocked = false;
        pumpMessages();
        s_cDrags = 0;
        s_pass.pt = -1;
        s_passedOn.clear();
        heard();
    }

    // The window's thread must be asked for points before the user begins.
    // In view, however deep the tests' folder lies below others in the list.
    POINT pointOf(int idList, const std::string& row) const
    {
        const WPARAM nRow = WPARAM(rowOf(idList, row));
        RECT rc, rcList;
        GetClientRect(item(idList), &rcList);
        if (tell(idList, LB_GETITEMRECT, nRow, LPARAM(&rc)) == LB_ERR ||
            rc.bottom > rcList.bottom) {
            tell(idList, LB_SETTOPINDEX, nRow);
            tell(idList, LB_GETITEMRECT, nRow, LPARAM(&rc));
        }
        return at(idList, rc.left + 20, (rc.top + rc.bottom) / 2);
    }
    POINT at(int idControl, LONG x, LONG y) const
    {
        POINT pt = {x, y};
        ClientToScreen(item(idControl), &pt);
        return pt;
    }
    // Where a list has no row.
    POINT emptyPart(int idList) const
    {
        RECT rc;
        GetClientRect(item(idList), &rc);
        return at(idList, rc.right - 8, rc.bottom - 8);
    }

    // Handles messages while the user acts, and until a drag or a click has come to its end.
    void play(const std::function<void()>& user)
    {
        std::atomic<bool> fDone{false};
        std::thread thread([&] {
            user();
            fDone = true;
        });
        EXPECT_TRUE(waitUntil([&] { return fDone && (s_cDrags > 0 || hasReleased()); }));
        thread.join();
        pumpMessages();
    }

    // Presses at the first point, goes to the others and releases at the last. Returns the cursors
    // on the way.
    Strings drag(const std::vector<POINT>& path)
    {
        Strings names;
        start();
        play([&] {
            movePointer(path[0]);
            takeHold();
            for (size_t n = 1; n < path.size(); ++n) {
                auto found = m_names.find(hover(path[n]));
                names.push_back(found == m_names.end() ? "other" : found->second);
            }
            letGo(MOUSE_LEFT);
        });
        EXPECT_EQ(s_cDrags, 1);
        return names;
    }

    static bool hasReleased()
    {
        return !s_passedOn.empty() && s_passedOn.back().second == WM_LBUTTONUP;
    }

    std::map<HCURSOR, std::string> m_names = {
        {LoadCursorA(library(), "DropNot"), "not"},
        {LoadCursorA(library(), "DropSingle"), "single"},
        {LoadCursorA(library(), "DropMultiple"), "multiple"},
        {LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)), "arrow"}};

private:
    ReplacedImport m_pos{library(), "GetCursorPos", fakeGetCursorPos};
    ReplacedImport m_set{library(), "SetCursor", fakeSetCursor};
    ReplacedImport m_keys{library(), "GetAsyncKeyState", fakeGetAsyncKeyState};
    ReplacedImport m_load{library(), "LoadCursorA", fakeLoadCursor};
    ReplacedImport m_destroy{library(), "DestroyCursor", fakeDestroyCursor};
    ReplacedImport m_release{library(), "ReleaseCapture", fakeReleaseCapture};
    ReplacedImport m_call{library(), "CallWindowProcA", fakeCallWindowProc};
};

TEST_F(Drag, BeginsTwoPixelsFromThePress)
{
    const struct {
        int dx, dy;
        bool fDrags;
    } moves[] = {{0, 0, false}, {1, 0, false}, {-1, -1, false},
                 {2, 0, true},  {0, -2, true}, {-2, 1, true}};
    for (const auto& move : moves) {
        SCOPED_TRACE(testing::Message() << move.dx << ", " << move.dy);
        POINT pt = pointOf(IDC_DANDD_LOCALFILES, "b");
        start();
        play([&] {
            movePointer(pt);
            takeHold();
            const POINT ptTo = moved(pt, move.dx, move.dy);
            move.fDrags ? void(hover(ptTo)) : movePointer(ptTo);
            letGo(MOUSE_LEFT);
        });
        EXPECT_EQ(s_cDrags, move.fDrags ? 1 : 0);
        EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), Strings{"b"});
        EXPECT_TRUE(hasReleased());
        EXPECT_EQ(requests(), Strings{});
    }
}

TEST_F(Drag, CursorTellsWhatADropWouldDo)
{
    POINT pt = pointOf(IDC_DANDD_HOSTFILES, "y");
    POINT ptBegin = moved(pt, 2, 0);
    const std::vector<POINT> path = {pt,
                                     ptBegin,
                                     moved(ptBegin, 0, 3),
                                     moved(ptBegin, 5, 0),
                                     moved(ptBegin, 1, 1),
                                     at(IDC_DANDD_INFOLINE, 5, 5),
                                     pointOf(IDC_DANDD_LOCALDIRS, "child"),
                                     pointOf(IDC_DANDD_HOSTDIRS, "one"),
                                     at(IDC_DANDD_BAND, 0, -3),
                                     OUTSIDE,
                                     emptyPart(IDC_DANDD_LOCALFILES)};
    EXPECT_EQ(drag(path), split("arrow arrow arrow single not single not not not single"));
    EXPECT_EQ(heard(), "receive y|received: y");
    EXPECT_EQ(s_hwndCapture, m_hwnd);
    EXPECT_EQ(GetCapture(), nullptr);
    // Two of the library's own are loaded and released, the system's arrow stays.
    for (const auto& cursor : s_cursors) {
        EXPECT_EQ(cursor.second, "arrow");
    }
    selectFiles(IDC_DANDD_HOSTFILES, {"x", "y", "z"});
    EXPECT_EQ(drag({pt, pt, moved(pt, 1, 1), OUTSIDE, pointOf(IDC_DANDD_LOCALDIRS, "child"),
                    emptyPart(IDC_DANDD_LOCALFILES)}),
              split("arrow multiple not multiple multiple"));
    EXPECT_EQ(heard(), "receive x y z|received: x|received: y|received: z");
    EXPECT_EQ(selected(IDC_DANDD_HOSTFILES).size(), 3u);
}

// A press on several selected rows that moves nowhere is a click after all.
TEST_F(Drag, AClickInASelectionIsReplayedAtItsEnd)
{
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b", "c"});
    POINT pt = pointOf(IDC_DANDD_LOCALFILES, "b");
    EXPECT_EQ(drag({pt, pt}), Strings{"arrow"});
    EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), Strings{"b"});
    EXPECT_EQ(stripText(), "Files selected: 1 (10 bytes)");
    HWND hwndFiles = item(IDC_DANDD_LOCALFILES);
    s_passedOn.resize(2);
    EXPECT_EQ(s_passedOn,
              (decltype(s_passedOn){{hwndFiles, WM_LBUTTONDOWN}, {hwndFiles, WM_LBUTTONUP}}));
    // With Ctrl it takes the row out of the selection.
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b", "c"});
    ScreenToClient(hwndFiles, &pt);
    SendMessageA(hwndFiles, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, MAKELPARAM(pt.x, pt.y));
    EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), (Strings{"a", "c"}));
    // So does a drag that ends nowhere.
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b", "c"});
    drag({pointOf(IDC_DANDD_LOCALFILES, "b"), OUTSIDE});
    EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), Strings{"b"});
    EXPECT_EQ(requests(), Strings{});
}

TEST_F(Drag, ADropOnALocalDirectoryEntersIt)
{
    const std::string parent = m_dir.path().substr(0, m_dir.path().rfind('\\'));
    const struct {
        std::string row, heard, dir;
    } drops[] = {
        {"c:\\", "receive x|local directory: \\|received: x", "c:\\"},
        {parent.substr(parent.rfind('\\') + 1),
         "receive x|local directory: " + parent + "|received: x", parent},
        {m_dir.path().substr(parent.size() + 1), "receive x|received: x", m_dir.path()},
        {"child", "receive x|local directory: child|received: x", m_dir.path("child")},
    };
    // Room for the whole chain.
    MoveWindow(item(IDC_DANDD_LOCALDIRS), 10, 60, 280, 170, TRUE);
    for (const auto& drop : drops) {
        goHome();
        drag({pointOf(IDC_DANDD_HOSTFILES, "x"), pointOf(IDC_DANDD_LOCALDIRS, drop.row)});
        EXPECT_EQ(heard(), drop.heard);
        EXPECT_EQ(currentDir(), drop.dir);
        EXPECT_EQ(text(IDC_DANDD_LOCALPATH), drop.dir);
    }
    // Nothing selected: only the directory changes. Below the rows nothing happens.
    goHome();
    feedHost({});
    POINT from = emptyPart(IDC_DANDD_HOSTFILES);
    drag({from, moved(from, -2, 0), emptyPart(IDC_DANDD_LOCALDIRS)});
    EXPECT_EQ(heard(), "");
    drag({from, moved(from, -2, 0), pointOf(IDC_DANDD_LOCALDIRS, "child")});
    EXPECT_EQ(heard(), "local directory: child");
}

TEST_F(Drag, ADropGoesWhereItFalls)
{
    const POINT from = pointOf(IDC_DANDD_LOCALFILES, "a");
    const struct {
        POINT to;
        const char* pszHeard;
    } drops[] = {
        {pointOf(IDC_DANDD_HOSTDIRS, ".."), "send a > ..|host directory: ..|sent: a"},
        {pointOf(IDC_DANDD_HOSTDIRS, "work"), "send a|sent: a"},
        {pointOf(IDC_DANDD_HOSTDIRS, "two"), "send a > two|host directory: two|sent: a"},
        {emptyPart(IDC_DANDD_HOSTDIRS), ""},
        {pointOf(IDC_DANDD_LOCALFILES, "c"), ""},
        {pointOf(IDC_DANDD_LOCALDIRS, "child"), ""},
        {at(IDC_DANDD_INFOLINE, 5, 5), ""},
    };
    for (const auto& drop : drops) {
        SCOPED_TRACE(&drop - drops);
        drag({from, drop.to});
        EXPECT_EQ(heard(), drop.pszHeard);
    }
    EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), Strings{"a"});
}

// What lies where the pointer was said to be counts for nothing.
TEST_F(Drag, WithoutAPointerNothingIsDropped)
{
    POINT from = pointOf(IDC_DANDD_LOCALFILES, "a"), to = emptyPart(IDC_DANDD_HOSTFILES);
    for (std::atomic<bool>* pfGone : {&s_fNoPointer, &s_fLocked}) {
        start();
        play([&] {
            movePointer(from);
            takeHold();
            hover(to);
            const int cPasses = s_pass.cPasses;
            *pfGone = true;
            waitFor([=] { return s_pass.cPasses > cPasses + 1 || s_cDrags > 0; });
            letGo(MOUSE_LEFT);
        });
        EXPECT_EQ(s_cDrags, 1);
        EXPECT_EQ(heard(), "");
    }
}

// A drop of several rows where there is no row of the target.
TEST_F(Drag, ADropBelowTheRowsKeepsTheSelection)
{
    for (bool fEmpty : {false, true}) {
        if (fEmpty) {
            tell(IDC_DANDD_HOSTDIRS, LB_SETITEMDATA, 0, 0);
            nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_SUBDIRS | XFERCLEAR_WORKDIR);
            tell(IDC_DANDD_HOSTDIRS, LB_RESETCONTENT);
        }
        selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
        drag({pointOf(IDC_DANDD_LOCALFILES, "a"), emptyPart(IDC_DANDD_HOSTDIRS)});
        EXPECT_EQ(heard(), "");
        EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), (Strings{"a", "b"}));
    }
}

// From five seconds without a look for messages on, the system puts a picture in the place of a
// window, which swallows the drop. What waits for the window waits for the end of the drag.
TEST_F(Drag, ALongDragIsNotTakenForAHang)
{
    constexpr DWORD LONG_MS = 6500;
    constexpr UINT WAITING = WM_USER + 0x300;
    using IsHung = BOOL(WINAPI*)(HWND);
    const auto pfnIsHung = reinterpret_cast<IsHung>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("USER32.DLL"), "IsHungAppWindow")));
    if (pfnIsHung == nullptr) {
        GTEST_SKIP() << "this version doesn't know hung windows";
    }
    POINT from = pointOf(IDC_DANDD_LOCALFILES, "a"), to = emptyPart(IDC_DANDD_HOSTFILES);
    bool fHung = false;
    int cDragsThen = -1;
    Subclassed window(m_hwnd, [&](UINT uMessage, WPARAM, LPARAM) {
        cDragsThen = uMessage == WAITING ? s_cDrags.load() : cDragsThen;
        return false;
    });
    play([&] {
        movePointer(from);
        takeHold();
        hover(to);
        PostMessageA(m_hwnd, WAITING, 0, 0);
        const DWORD dwStart = GetTickCount();
        fHung = waitFor([&] { return pfnIsHung(m_hwnd) || GetTickCount() - dwStart > LONG_MS; }) &&
                GetTickCount() - dwStart <= LONG_MS;
        letGo(MOUSE_LEFT);
    });
    EXPECT_FALSE(fHung);
    EXPECT_EQ(cDragsThen, 1);
    EXPECT_EQ(requests(), Strings{"send a"});
}

// A callback may handle messages, and a move among them begins no second drag.
TEST_F(Drag, ADropIsTheEndOfItsPress)
{
    for (const Strings& names : {Strings{"a"}, Strings{"a", "b"}}) {
        selectFiles(IDC_DANDD_LOCALFILES, names);
        POINT from = pointOf(IDC_DANDD_LOCALFILES, "a");
        m_inRequest = [&] {
            vXferDandDSetBusyState(m_hwnd, 1);
            tell(IDC_DANDD_LOCALFILES, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1, 1));
            vXferDandDSetBusyState(m_hwnd, 0);
        };
        drag({from, emptyPart(IDC_DANDD_HOSTFILES)});
        EXPECT_EQ(requests().size(), 1u);
    }
}

// The list is told once that no row of it is marked, and stands as it stood.
TEST_F(Drag, TheMarkIsTakenAwayOnce)
{
    const POINT from = pointOf(IDC_DANDD_LOCALFILES, "a");
    const POINT one = pointOf(IDC_DANDD_HOSTDIRS, "one");
    ReplacedImport send(library(), "SendMessageA", countingSendMessage);
    s_pfnSendMessage = send.original<decltype(&SendMessageA)>();
    const struct {
        std::vector<POINT> path;
        int cUnmarked;
    } paths[] = {{{from, OUTSIDE}, 0}, {{from, one, OUTSIDE}, 1}, {{from, one, OUTSIDE, one}, 1}};
    for (const auto& path : paths) {
        s_cUnmarked = 0;
        drag(path.path);
        EXPECT_EQ(s_cUnmarked, path.cUnmarked) << &path - paths;
    }
}

TEST_F(Drag, TheMarkFollowsThePointer)
{
    const POINT from = pointOf(IDC_DANDD_LOCALFILES, "a");
    const POINT one = pointOf(IDC_DANDD_HOSTDIRS, "one");
    const POINT two = pointOf(IDC_DANDD_HOSTDIRS, "two");
    const POINT none = emptyPart(IDC_DANDD_HOSTDIRS);
    const struct {
        std::vector<POINT> points;
        Strings requests;
    } paths[] = {
        {{from, one, two}, {"send a > two"}},
        {{from, one, OUTSIDE}, {}},
        {{from, one, OUTSIDE, one}, {"send a > one"}},
        {{from, one, OUTSIDE, none}, {}},
        {{from, two, none}, {"send a > two"}},
        {{from, one, emptyPart(IDC_DANDD_HOSTFILES)}, {"send a"}},
    };
    for (const auto& path : paths) {
        drag(path.points);
        EXPECT_EQ(requests(), path.requests) << &path - paths;
    }
}

// The press on a selection of several rows leaves the focus where it is, and a selected row in
// the list that has it. One that loses the focus shows no selected row.
TEST_F(Drag, ASelectedDirectoryIsNotTakenForTheMark)
{
    selectRow(IDC_DANDD_LOCALDIRS, "child");
    selectRow(IDC_DANDD_HOSTDIRS, "one");
    EXPECT_EQ(tell(IDC_DANDD_LOCALDIRS, LB_GETCURSEL), LB_ERR);
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
    drag({pointOf(IDC_DANDD_LOCALFILES, "a"), pointOf(IDC_DANDD_HOSTDIRS, "two")});
    EXPECT_EQ(requests(), Strings{"send a b > two"});
    SetFocus(item(IDC_DANDD_HOSTFILES));
    EXPECT_EQ(tell(IDC_DANDD_HOSTDIRS, LB_GETCURSEL), LB_ERR);
}

TEST_F(Drag, ALongDirectoryListStaysWhereItIs)
{
    for (char ch = 'a'; ch <= 'z'; ++ch) {
        nXferDandDAddHostSubDir(m_hwnd, (std::string("d") + ch).c_str());
    }
    // Its last row is cut.
    MoveWindow(item(IDC_DANDD_HOSTDIRS), 10, 250, 280, 5 * 16 + 12, TRUE);
    tell(IDC_DANDD_HOSTDIRS, LB_SETTOPINDEX, 10);
    const POINT from = pointOf(IDC_DANDD_LOCALFILES, "a");
    const Strings all = rows(IDC_DANDD_HOSTDIRS);
    POINT above = pointOf(IDC_DANDD_HOSTDIRS, all[11]);
    POINT last = moved(above, 0, 4 * 16 - 5);
    for (const std::vector<POINT>& path :
         {std::vector<POINT>{from, last, above}, std::vector<POINT>{from, last, OUTSIDE, above}}) {
        drag(path);
        EXPECT_EQ(requests(), Strings{"send a > " + all[11]});
        EXPECT_EQ(tell(IDC_DANDD_HOSTDIRS, LB_GETTOPINDEX), 10);
    }
    drag({from, last});
    EXPECT_EQ(requests(), Strings{"send a > " + all[15]});
}

TEST_F(Drag, TheLastButtonEndsIt)
{
    POINT from = pointOf(IDC_DANDD_LOCALFILES, "b");
    POINT one = pointOf(IDC_DANDD_HOSTDIRS, "one");
    POINT two = pointOf(IDC_DANDD_HOSTDIRS, "two");
    for (MouseButton button : {MOUSE_RIGHT, MOUSE_MIDDLE}) {
        bool fWentOn = false;
        start();
        play([&] {
            movePointer(from);
            hold(MOUSE_LEFT);
            hover(one);
            hold(button);
            waitForPasses();
            letGo(MOUSE_LEFT);
            fWentOn = waitFor([] { return !s_pass.fLeft; }) && hover(two) != nullptr;
            letGo(button);
        });
        EXPECT_TRUE(fWentOn);
        EXPECT_EQ(requests(), Strings{"send b > two"});
    }
}

TEST_F(Drag, BusyStateSwallowsThePress)
{
    vXferDandDSetBusyState(m_hwnd, 1);
    for (const Strings& before : {Strings{}, Strings{"a", "b"}}) {
        selectFiles(IDC_DANDD_LOCALFILES, before);
        POINT pt = pointOf(IDC_DANDD_LOCALFILES, "b");
        start();
        play([&] {
            movePointer(pt);
            hold(MOUSE_LEFT);
            movePointer(moved(pt, 9, 0));
            letGo(MOUSE_LEFT);
        });
        EXPECT_EQ(s_cDrags, 0);
        EXPECT_EQ(s_passedOn.size(), 1u);
        EXPECT_EQ(selected(IDC_DANDD_LOCALFILES), before);
    }
}

WNDPROC listProc(HWND hwnd)
{
    return reinterpret_cast<WNDPROC>(GetClassLongA(hwnd, GCL_WNDPROC));
}

// The release of the button that lists get after a drop, as a list can answer it.
LRESULT CALLBACK tellingListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_LBUTTONUP) {
        int id = GetDlgCtrlID(hwnd);
        SendMessageA(GetParent(hwnd), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), LPARAM(hwnd));
    }
    return CallWindowProcA(listProc(hwnd), hwnd, uMessage, wParam, lParam);
}

TEST_F(Drag, WhatAFailedDropSaysStays)
{
    RemoveDirectoryA("child");
    for (bool fTelling : {false, true}) {
        const Strings names = fTelling ? Strings{"x", "y"} : Strings{"x"};
        if (fTelling) {
            record()->pfnOrigHostFileList = tellingListProc;
        }
        vXferDandDDisplayDILText(m_hwnd, "before");
        selectFiles(IDC_DANDD_HOSTFILES, names);
        drag({pointOf(IDC_DANDD_HOSTFILES, "x"), pointOf(IDC_DANDD_LOCALDIRS, "child")});
        EXPECT_EQ(stripText(), english(IDS_DROP_FAILED));
        EXPECT_EQ(heard(), "");
        EXPECT_EQ(selected(IDC_DANDD_HOSTFILES), names);
        EXPECT_EQ(currentDir(), m_dir.path());
    }
    // The next change of the selection counts again.
    notify(IDC_DANDD_HOSTFILES, LBN_SELCHANGE);
    EXPECT_EQ(stripText(), "");
}

TEST_F(Drag, ACallbackMayEndTheWindow)
{
    for (bool fSeveral : {false, true}) {
        selectFiles(IDC_DANDD_LOCALFILES, fSeveral ? Strings{"a", "b"} : Strings{});
        m_inRequest = [this] { nXferDandDDestroy(m_hwnd); };
        drag({pointOf(IDC_DANDD_LOCALFILES, "a"), emptyPart(IDC_DANDD_HOSTFILES)});
        EXPECT_EQ(requests(), Strings{fSeveral ? "send a b" : "send a"});
        EXPECT_FALSE(IsWindow(m_hwnd));
        EXPECT_FALSE(hasReleased());
        m_inRequest = nullptr;
        open();
        feedHost({});
    }
}

LRESULT CALLBACK endingListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_LBUTTONDOWN) {
        nXferDandDDestroy(GetParent(hwnd));
        return 0;
    }
    return CallWindowProcA(listProc(hwnd), hwnd, uMessage, wParam, lParam);
}

TEST_F(Drag, AReplayedPressMayEndTheWindow)
{
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
    POINT pt = pointOf(IDC_DANDD_LOCALFILES, "a");
    record()->pfnOrigLocalFileList = endingListProc;
    drag({pt, pt});
    EXPECT_FALSE(IsWindow(m_hwnd));
    EXPECT_EQ(s_passedOn.size(), 1u);
}

} // namespace
