// The commands of the transfer window: what they do with a selection, and with the log.
#include "../resources/ids.h"
#include "support/imports.h"
#include "support/ledger.h"
#include "support/pane_window.h"

#include <algorithm>
#include <commdlg.h>
#include <direct.h>
#include <stdio.h>

namespace {

// What the user is asked: each answer serves one box, the last all others.
Strings s_boxes;
std::vector<int> s_answers;
std::function<void()> s_inBox;

int WINAPI fakeMessageBox(HWND, LPCSTR pszText, LPCSTR pszCaption, UINT uStyle)
{
    EXPECT_EQ(uStyle, UINT(MB_YESNO | MB_ICONQUESTION));
    s_boxes.push_back(std::string(pszCaption) + ": " + pszText);
    if (s_inBox) {
        s_inBox();
    }
    int nAnswer = s_answers.front();
    if (s_answers.size() > 1) {
        s_answers.erase(s_answers.begin());
    }
    return nAnswer;
}

// The dialogs that were asked for; nobody answers them.
Strings s_dialogs;

INT_PTR WINAPI fakeDialogBox(HINSTANCE, LPCSTR pszTemplate, HWND, DLGPROC, LPARAM)
{
    s_dialogs.push_back(pszTemplate);
    return -1;
}

class Command : public PaneWindow {
protected:
    Command()
    {
        s_dialogs.clear();
        s_boxes.clear();
        s_answers = {IDYES};
        s_inBox = nullptr;
        m_dir.makeFile("a", 10);
        m_dir.makeFile("b", 200);
        m_dir.makeDirs({"child", "full"});
        m_dir.makeFiles({"c", "full\\a", "full\\b"});
    }

    void openFilled(DWORD nViewMode = XFERVIEW_TWOPANE)
    {
        open(nViewMode);
        feedHost({"x", "y", "z"});
    }

private:
    ReplacedImport m_box{library(), "MessageBoxA", fakeMessageBox};
    ReplacedImport m_dialog{library(), "DialogBoxParamA", fakeDialogBox};
};

TEST_F(Command, ASelectionExistsOnOneSideOnly)
{
    openFilled();
    for (bool fHost : {false, true}) {
        const int id = fHost ? IDC_DANDD_HOSTFILES : IDC_DANDD_LOCALFILES;
        const int idOther = fHost ? IDC_DANDD_LOCALFILES : IDC_DANDD_HOSTFILES;
        for (UINT nNotification : {LBN_SELCHANGE, LBN_SETFOCUS, LBN_KILLFOCUS, LBN_DBLCLK}) {
            tell(id, LB_SETSEL, TRUE, -1);
            tell(idOther, LB_SETSEL, TRUE, -1);
            vXferDandDDisplayDILText(m_hwnd, "kept");
            notify(id, nNotification);
            EXPECT_EQ(selected(id).size(), 3u);
            EXPECT_EQ(selected(idOther), Strings{});
            const char* pszSum = fHost ? "" : "Files selected: 3 (210 bytes)";
            EXPECT_EQ(stripText(), nNotification == LBN_SELCHANGE ? pszSum : "kept");
        }
    }
}

TEST_F(Command, TheSumTellsCountAndSize)
{
    openFilled();
    m_dir.makeFile("gone");
    vXferDandDRefreshLocalFiles(m_hwnd);
    DeleteFileA("gone");
    const struct {
        Strings names;
        const char* pszText;
    } sums[] = {
        {{"a", "b", "c"}, "Files selected: 3 (210 bytes)"},
        {{"c"}, "Files selected: 1 (0 bytes)"},
        {{"a", "b", "gone"}, "Files selected: 3 (0 bytes)"},
        {{}, "kept"},
    };
    for (const auto& sum : sums) {
        vXferDandDDisplayDILText(m_hwnd, "kept");
        selectFiles(IDC_DANDD_LOCALFILES, sum.names);
        notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
        EXPECT_EQ(stripText(), sum.pszText);
    }
    Ledger ledger;
    ledger.failAt(1);
    selectFiles(IDC_DANDD_LOCALFILES, {"a"});
    notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
    EXPECT_EQ(stripText(), "kept");
    notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
    EXPECT_EQ(stripText(), "Files selected: 1 (10 bytes)");
    EXPECT_EQ(ledger.owed(), "");
}

TEST_F(Command, TypingAPrefixScrollsTheList)
{
    openFilled();
    Strings names;
    hide();
    for (int n = 1000; n < 1300; ++n) {
        names.push_back("n" + std::to_string(n));
        nXferDandDAddLocalFileName(m_hwnd, names.back().c_str());
    }
    feedHost(names);
    for (bool fHost : {false, true}) {
        const int idLine = fHost ? IDC_DANDD_HOSTFILTER : IDC_DANDD_LOCALFILTER;
        const int id = fHost ? IDC_DANDD_HOSTFILES : IDC_DANDD_LOCALFILES;
        auto isShown = [&](const char* pszRow) {
            RECT rc, rcRow;
            GetClientRect(item(id), &rc);
            tell(id, LB_GETITEMRECT, WPARAM(rowOf(id, pszRow)), LPARAM(&rcRow));
            return rcRow.left >= rc.left && rcRow.left < rc.right;
        };
        for (const char* pszRow : {"n1250", "n1100"}) {
            EXPECT_FALSE(isShown(pszRow));
            type(idLine, pszRow);
            EXPECT_TRUE(isShown(pszRow));
            type(idLine, "none of them");
            EXPECT_TRUE(isShown(pszRow));
        }
        EXPECT_EQ(selected(id), Strings{});
        EXPECT_EQ(rows(id).size(), fHost ? 300u : 303u);
    }
    EXPECT_EQ(requests(), Strings{});
}

struct Deletion {
    DWORD dwConfirm;
    std::vector<int> answers;
    const char *pszAsked, *pszLeft;
};
const Deletion DELETIONS[] = {
    {~2u, {IDNO}, "", ""},
    {2, {IDYES}, "a b c", ""},
    {2, {IDYES, IDNO, IDYES}, "a b c", "b"},
    {~0u, {IDNO}, "a b c", "a b c"},
    {2, {IDCANCEL, IDYES}, "a b c", "a"},
};

TEST_F(Command, LocalFilesAreDeletedAfterAQuestion)
{
    openFilled();
    for (const Deletion& deletion : DELETIONS) {
        m_dir.makeFiles({"a", "b", "c"});
        vXferDandDRefreshLocalFiles(m_hwnd);
        selectFiles(IDC_DANDD_LOCALFILES, {"a", "b", "c"});
        s_boxes.clear();
        s_answers = deletion.answers;
        m_dwConfirm = deletion.dwConfirm;
        command(IDM_XFER_DELETE);
        Strings left = split(deletion.pszLeft), expectedBoxes;
        for (const std::string& name : split(deletion.pszAsked)) {
            expectedBoxes.push_back(
                "Confirm File Delete: Are you sure you want to delete the file '" + name + "'?");
        }
        std::string expected = "flags|flags|flags";
        for (const char* psz : {"a", "b", "c"}) {
            bool fLeft = std::find(left.begin(), left.end(), psz) != left.end();
            EXPECT_EQ(m_dir.holds(psz), fLeft);
            expected += fLeft ? "" : std::string("|local file deleted: ") + psz;
        }
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), left);
        EXPECT_EQ(s_boxes, expectedBoxes);
        EXPECT_EQ(heard(), expected);
    }
    EXPECT_TRUE(m_dir.holds("child"));
}

TEST_F(Command, AFileThatCannotBeDeletedIsReported)
{
    openFilled();
    SetFileAttributesA("b", FILE_ATTRIBUTE_READONLY);
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b", "c"});
    command(IDM_XFER_DELETE);
    EXPECT_EQ(log(), Strings{"Cannot access b"});
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"b"});
    EXPECT_EQ(recorded(), (Strings{"local file deleted: a", "local file deleted: c"}));
}

// A caller that keeps no flags has its user asked each time.
TEST_F(Command, WithoutFlagsTheUserIsAlwaysAsked)
{
    m_callbacks.pfnConfirmFlags = nullptr;
    openFilled();
    s_answers = {IDNO};
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
    command(IDM_XFER_DELETE);
    selectRow(IDC_DANDD_LOCALDIRS, "child");
    command(IDM_XFER_REMOVEDIR);
    EXPECT_EQ(s_boxes.size(), 3u);
    EXPECT_TRUE(m_dir.holds("a") && m_dir.holds("b") && m_dir.holds("child"));
}

// Another window, or the caller, has changed the directory of the process, or the filter line
// holds a path that Enter hasn't followed: a name of the list then means another file.
TEST_F(Command, NamesOfAnotherDirectoryAreLeftAlone)
{
    openFilled();
    selectFiles(IDC_DANDD_LOCALFILES, {"a"});
    _chdir("full");
    command(IDM_XFER_DELETE);
    EXPECT_TRUE(m_dir.holds("full\\a") && m_dir.holds("a"));
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"a", "b"}));

    // Nor is anything received into a directory that isn't shown.
    selectFiles(IDC_DANDD_HOSTFILES, {"x"});
    _chdir(m_dir.path().c_str());
    command(IDM_XFER_TRANSFER);
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"a", "b", "c"}));
    selectFiles(IDC_DANDD_HOSTFILES, {});

    // Nor does the sum count namesakes.
    m_dir.makeFile("full\\a", 77);
    selectFiles(IDC_DANDD_LOCALFILES, {"a"});
    _chdir("full");
    notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
    EXPECT_EQ(stripText().find("77"), std::string::npos) << stripText();

    // What is reported is the mask that filled the list.
    type(IDC_DANDD_LOCALFILTER, "full\\*.*");
    goHome();
    type(IDC_DANDD_LOCALFILTER, "*.new");
    for (UINT idCommand : {IDM_XFER_DELETE, IDM_XFER_TRANSFER, IDM_XFER_DETAILS}) {
        selectFiles(IDC_DANDD_LOCALFILES, {"a"});
        command(idCommand);
        EXPECT_TRUE(m_dir.holds("full\\a") && m_dir.holds("a"));
    }
    EXPECT_EQ(log(), Strings(3, "Cannot access full\\*.*"));
    EXPECT_EQ(recorded(), Strings{});
}

// A mask that names the directory that is shown, however it is written.
TEST_F(Command, AMaskMayNameTheShownDirectory)
{
    openFilled();
    std::string upper = m_dir.path("*.*");
    CharUpperBuffA(&upper[0], DWORD(upper.size()));
    for (const std::string& mask : {m_dir.path("*.*"), upper, std::string(".\\*.*"),
                                    std::string("full\\..\\*.*"), m_dir.path().substr(2) + "\\*"}) {
        SCOPED_TRACE(mask);
        m_dir.makeFile("a", 10);
        type(IDC_DANDD_LOCALFILTER, mask);
        goHome();
        selectFiles(IDC_DANDD_LOCALFILES, {"a"});
        notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
        EXPECT_EQ(stripText(), "Files selected: 1 (10 bytes)");
        vXferDandDDisplayDILText(m_hwnd, "");
        command(IDM_XFER_TRANSFER);
        command(IDM_XFER_DELETE);
        EXPECT_EQ(heard(), "send a|flags|sent: a|local file deleted: a");
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"b", "c"}));
    }
    EXPECT_EQ(log(), Strings{});
}

// What is recorded may lead to another directory, where a file of that name is still there.
TEST_F(Command, ANamesakeElsewhereKeepsItsRow)
{
    openFilled();
    InRecord moving([&] {
        SetCurrentDirectoryA(m_dir.path("full").c_str());
        vXferDandDRefreshLocalFiles(m_hwnd);
    });
    selectFiles(IDC_DANDD_LOCALFILES, {"a"});
    command(IDM_XFER_DELETE);
    const Strings shown = rows(IDC_DANDD_LOCALFILES);
    EXPECT_EQ(std::count(shown.begin(), shown.end(), "a"), 1);
}

// A question runs a message loop. What it leaves behind need not be what it found.
TEST_F(Command, AQuestionCanBeOvertakenByEvents)
{
    m_dwConfirm = 6;
    m_dir.makeDirs({"full\\child"});
    openFilled();
    // Another directory of the process: names of this one mean nothing there.
    for (bool fShown : {false, true}) {
        s_inBox = [&] {
            _chdir("full");
            if (fShown) {
                vXferDandDRefreshLocalFiles(m_hwnd);
            }
        };
        selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
        command(IDM_XFER_DELETE);
        EXPECT_TRUE(m_dir.holds("full\\a") && m_dir.holds("full\\b") && m_dir.holds("a"));
        goHome();
        selectRow(IDC_DANDD_LOCALDIRS, "child");
        command(IDM_XFER_REMOVEDIR);
        EXPECT_TRUE(m_dir.holds("full\\child") && m_dir.holds("child"));
        goHome();
    }
    EXPECT_EQ(s_boxes.size(), 4u);
    // Other rows in the list: the names that were selected count, not the rows.
    s_inBox = [&] {
        m_dir.makeFile("0");
        vXferDandDRefreshLocalFiles(m_hwnd);
    };
    selectFiles(IDC_DANDD_LOCALFILES, {"a", "b"});
    command(IDM_XFER_DELETE);
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"0", "c"}));
    // No window.
    s_inBox = [&] { nXferDandDDestroy(m_hwnd); };
    selectFiles(IDC_DANDD_LOCALFILES, {"0", "c"});
    command(IDM_XFER_DELETE);
    EXPECT_TRUE(m_dir.holds("0") && m_dir.holds("c"));
}

struct Removal {
    int idList;
    const char* pszRow;
    DWORD dwConfirm;
    int nAnswer;
    const char *pszHeard, *pszLog;
    bool fSaysFixed;
};
const char* const CHILD_REMOVED = "flags|local directory removed: child";
const Removal REMOVALS[] = {
    {IDC_DANDD_HOSTDIRS, "one", 4, IDNO, "rmdir one 1|host directory removed: one", "", false},
    {IDC_DANDD_HOSTDIRS, "..", 0, IDNO, "", "", true},
    {IDC_DANDD_HOSTDIRS, "work", 0, IDNO, "", "", true},
    {IDC_DANDD_LOCALDIRS, "child", 4, IDNO, "flags", "", false},
    {IDC_DANDD_LOCALDIRS, "child", 4, IDYES, CHILD_REMOVED, "", false},
    {IDC_DANDD_LOCALDIRS, "child", ~4u, IDNO, CHILD_REMOVED, "", false},
    {IDC_DANDD_LOCALDIRS, "full", 0, IDNO, "flags", "Cannot access full", false},
    {IDC_DANDD_LOCALDIRS, "c:\\", 0, IDNO, "", "", true},
    {IDC_DANDD_LOCALDIRS, nullptr, 0, IDNO, "", "", true}, // the directory that is shown
};

TEST_F(Command, ASelectedDirectoryIsRemoved)
{
    openFilled();
    std::string expectedLog;
    for (const Removal& removal : REMOVALS) {
        const std::string row =
            removal.pszRow == nullptr ? split(m_dir.path(), '\\').back() : removal.pszRow;
        SCOPED_TRACE(row);
        CreateDirectoryA("child", nullptr);
        vXferDandDRefreshLocalFiles(m_hwnd);
        vXferDandDDisplayDILText(m_hwnd, "");
        Strings before = rows(removal.idList);
        m_dwConfirm = removal.dwConfirm;
        s_answers = {removal.nAnswer};
        selectRow(removal.idList, row);
        command(IDM_XFER_REMOVEDIR);
        EXPECT_EQ(heard(), removal.pszHeard);
        EXPECT_EQ(stripText(), removal.fSaysFixed ? english(IDS_HOSTDIR_FIXED) : "");
        expectedLog += removal.pszLog;
        EXPECT_EQ(log(), split(expectedLog, '|'));
        if (removal.pszHeard == CHILD_REMOVED) {
            EXPECT_FALSE(m_dir.holds("child"));
            before.erase(std::find(before.begin(), before.end(), "child"));
        }
        EXPECT_EQ(rows(removal.idList), before);
    }
}

struct Selection {
    int idList;
    const char* pszNames;
    UINT idCommand;
    const char *pszRequest, *pszRecorded;
};
const Selection SELECTIONS[] = {
    {IDC_DANDD_LOCALFILES, "c a", IDM_XFER_TRANSFER, "send a c", "|sent: a|sent: c"},
    {IDC_DANDD_HOSTFILES, "z y", IDM_XFER_TRANSFER, "receive y z", "|received: y|received: z"},
    {IDC_DANDD_HOSTFILES, "x z", IDM_XFER_DELETE, "delete x z",
     "|host file deleted: x|host file deleted: z"},
    {IDC_DANDD_HOSTFILES, "x", IDM_XFER_VIEW, "view x", ""},
    {IDC_DANDD_HOSTFILES, "y x", IDM_XFER_DETAILS, "details x y", ""},
};

TEST_F(Command, ASelectionGoesToTheCaller)
{
    openFilled();
    for (const Selection& selection : SELECTIONS) {
        selectOnly(selection.idList, split(selection.pszNames));
        command(selection.idCommand);
        EXPECT_EQ(heard(), std::string(selection.pszRequest) + selection.pszRecorded);
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"x", "y", "z"}));
    }
    EXPECT_TRUE(s_boxes.empty());
}

TEST_F(Command, ASelectionOfAnySizeIsOneList)
{
    const char NAMES[] = "a b c d e f g h i j k l m n o p q r s t";
    open();
    feedHost(split(NAMES));
    selectOnly(IDC_DANDD_HOSTFILES, split(NAMES));
    command(IDM_XFER_TRANSFER);
    EXPECT_EQ(requests(), Strings{std::string("receive ") + NAMES});
}

// The dialog of a command: where nothing is selected, and where a selection counts.
struct Asked {
    UINT idCommand;
    const char *pszAlone, *pszSelected;
};
const Asked ASKED[] = {
    {IDM_XFER_TRANSFER, "DLGCOPY", ""},
    {IDM_XFER_DELETE, "DLGDEL", ""},
    {IDM_XFER_VIEW, "DLGVIEW", ""},
    {IDM_XFER_DETAILS, "", ""},
    {IDM_XFER_REMOVEDIR, "DLGDANDRMDIR", ""},
    {IDM_XFER_MAKEDIR, "DLGMKDIR", "DLGMKDIR"},
    {IDM_XFER_CHANGEDIR, "DLGCHDIR", "DLGCHDIR"},
    {IDM_XFER_CONFIRM, "DLGCONFIRM", "DLGCONFIRM"},
    {IDM_XFER_RENAME, "DLGRENAME", "DLGRENAME"},
};

// In command line mode a selection counts for nothing.
TEST_F(Command, WithoutASelectionADialogAsks)
{
    openFilled();
    for (DWORD nMode : {XFERVIEW_TWOPANE, XFERVIEW_COMMANDLINE}) {
        command(nMode == XFERVIEW_TWOPANE ? IDM_XFER_TWOPANE : IDM_XFER_COMMANDLINE);
        for (bool fSelected : {false, true}) {
            for (const Asked& asked : ASKED) {
                SCOPED_TRACE(testing::Message() << asked.idCommand << " " << nMode << fSelected);
                selectFiles(IDC_DANDD_HOSTFILES, fSelected ? Strings{"x", "y"} : Strings{});
                tell(IDC_DANDD_HOSTDIRS, LB_SETCURSEL, fSelected ? 0 : WPARAM(-1));
                requests();
                command(asked.idCommand);
                bool fAlone = !fSelected || nMode == XFERVIEW_COMMANDLINE;
                EXPECT_EQ(s_dialogs, split(fAlone ? asked.pszAlone : asked.pszSelected));
                EXPECT_TRUE(!fAlone || requests().empty());
                s_dialogs.clear();
            }
        }
    }
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"a", "b", "c"}));
    EXPECT_EQ(log(), Strings{});
}

TEST_F(Command, NoListIsLeftBehind)
{
    Ledger ledger;
    // Each request for memory fails in turn: the caller gets the whole list or none.
    openFilled();
    size_t cBefore = ledger.count();
    for (const Selection& selection : SELECTIONS) {
        for (int n = 1;; ++n) {
            selectOnly(selection.idList, split(selection.pszNames));
            ledger.failAt(n);
            command(selection.idCommand);
            EXPECT_EQ(requests(), ledger.hasFailed() ? Strings{} : Strings{selection.pszRequest});
            EXPECT_EQ(ledger.count(), cBefore);
            if (!ledger.hasFailed()) {
                break;
            }
        }
    }
    selectOnly(IDC_DANDD_LOCALFILES, {"a", "b"});
    ledger.failAt(1);
    command(IDM_XFER_DELETE);
    EXPECT_TRUE(m_dir.holds("a") && m_dir.holds("b"));
    ledger.failAt(0);
    close();
    EXPECT_EQ(ledger.owed(), "");

    // Nobody takes the lists.
    HostCallbacks none = {};
    none.cbSize = sizeof none;
    none.pfnViewModeChanged = m_callbacks.pfnViewModeChanged;
    m_callbacks = none;
    openFilled();
    cBefore = ledger.count();
    for (const Selection& selection : SELECTIONS) {
        selectOnly(selection.idList, split(selection.pszNames));
        command(selection.idCommand);
        EXPECT_EQ(ledger.count(), cBefore);
    }
    selectRow(IDC_DANDD_HOSTDIRS, "one");
    command(IDM_XFER_REMOVEDIR);
    for (int id : {IDC_DANDD_HOSTPATH, IDC_DANDD_HOSTFILTER, IDC_DANDD_COMMANDLINE}) {
        type(id, "text");
        EnableWindow(item(id), TRUE);
        ShowWindow(item(id), SW_SHOW);
        enter(id);
    }
    EXPECT_EQ(heard(), "");
    close();
    EXPECT_EQ(ledger.owed(), "");
}

// A list holds the names that were selected first, whatever becomes of its rows while they are
// recorded.
TEST_F(Command, WhatIsRecordedChangesNoList)
{
    const struct {
        UINT uMessage;
        WPARAM wParam;
        LPARAM lParam;
    } changes[] = {
        {LB_INSERTSTRING, 0, LPARAM("0")}, {LB_DELETESTRING, 0, 0}, {LB_SETSEL, FALSE, -1}};
    openFilled();
    for (const Selection& selection : SELECTIONS) {
        for (const auto& change : changes) {
            goHome();
            feedHost({"x", "y", "z"});
            selectOnly(selection.idList, split(selection.pszNames));
            bool fChanged = false;
            InRecord changing([&] {
                if (!std::exchange(fChanged, true)) {
                    tell(selection.idList, change.uMessage, change.wParam, change.lParam);
                }
            });
            command(selection.idCommand);
            EXPECT_EQ(requests(), Strings{selection.pszRequest}) << &change - changes;
        }
    }
}

// The caller can have put a row into a list that is too long to be read.
TEST_F(Command, ARowThatCannotBeReadEndsTheCommand)
{
    const std::string tooLong(300, 'w');
    openFilled();
    for (const Selection& selection : SELECTIONS) {
        for (UINT idCommand : {selection.idCommand, UINT(IDM_XFER_DELETE)}) {
            goHome();
            feedHost({"x", "y", "z"});
            selectOnly(selection.idList, split(selection.pszNames));
            tell(selection.idList, LB_INSERTSTRING, WPARAM(-1), LPARAM(tooLong.c_str()));
            tell(selection.idList, LB_SETSEL, TRUE, tell(selection.idList, LB_GETCOUNT) - 1);
            command(idCommand);
            EXPECT_EQ(heard(), "") << selection.idList << " " << idCommand;
        }
    }
    EXPECT_EQ(log(), Strings{});
    EXPECT_EQ(m_dir.names(), split("a b c child full full\\a full\\b"));
}

// KRUTILS isn't ours: what it is told can end the window. Each step records something.
struct Recorder {
    int idList; // its first row of that name is selected
    const char* pszRow;
    UINT idCommand;       // 0: Enter on the list
    const char* pszAsked; // what the caller has been asked before the end
};
const Recorder RECORDERS[] = {
    {IDC_DANDD_LOCALFILES, "a", IDM_XFER_TRANSFER, ""},
    {IDC_DANDD_HOSTFILES, "x", IDM_XFER_TRANSFER, ""},
    {IDC_DANDD_HOSTFILES, "x", IDM_XFER_DELETE, ""},
    {IDC_DANDD_LOCALFILES, "a", IDM_XFER_DELETE, "flags"},
    {IDC_DANDD_LOCALDIRS, "child", IDM_XFER_REMOVEDIR, "flags"},
    {IDC_DANDD_HOSTDIRS, "one", IDM_XFER_REMOVEDIR, "rmdir one 1"},
    {IDC_DANDD_LOCALDIRS, "full", 0, ""},
    {IDC_DANDD_HOSTDIRS, "one", 0, "chdir one 1"},
    {IDC_DANDD_COMMANDLINE, "dir", 0, ""},
    {IDC_DANDD_LOCALDRIVES, "", 0, ""},
};

TEST_F(Command, ARecordedActionMayEndTheWindow)
{
    Ledger ledger;
    for (const Recorder& recorder : RECORDERS) {
        SCOPED_TRACE(testing::Message() << recorder.idList << " " << recorder.idCommand);
        bool fTyped = recorder.idList == IDC_DANDD_COMMANDLINE;
        openFilled(fTyped ? XFERVIEW_COMMANDLINE : XFERVIEW_TWOPANE);
        int cRecorded = 0;
        InRecord ending([&] {
            ++cRecorded;
            close();
        });
        if (fTyped) {
            type(recorder.idList, recorder.pszRow);
        } else if (recorder.idList == IDC_DANDD_LOCALDIRS ||
                   recorder.idList == IDC_DANDD_HOSTDIRS) {
            selectRow(recorder.idList, recorder.pszRow);
        } else {
            tell(recorder.idList, LB_SETSEL, TRUE, -1);
        }
        if (recorder.idCommand != 0) {
            command(recorder.idCommand);
        } else if (recorder.idList == IDC_DANDD_LOCALDRIVES) {
            notify(recorder.idList, CBN_SELCHANGE);
        } else {
            enter(recorder.idList);
        }
        EXPECT_EQ(cRecorded, 1);
        EXPECT_EQ(m_hwnd, nullptr);
        EXPECT_EQ(heard(), recorder.pszAsked);
        EXPECT_EQ(ledger.owed(), "");
        m_dir.enter();
    }
}

// Memory runs out at each place in turn; what a failure leaves is what there was before.
TEST_F(Command, AWindowThatWasUsedLeavesNothingBehind)
{
    Ledger ledger;
    openFilled();
    hide();
    auto fill = [this] {
        feedHost({"x", "y"});
        vXferDandDRefreshLocalFiles(m_hwnd);
    };
    fill();
    const size_t cBefore = ledger.count();
    int n = 0;
    for (bool fFailed = true; fFailed && !HasFailure();) {
        m_dir.makeFile("c");
        ledger.failAt(++n);
        fill();
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_SUBDIRS);
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_WORKDIR);
        tell(IDC_DANDD_LOCALFILES, LB_SETSEL, TRUE, -1);
        notify(IDC_DANDD_LOCALFILES, LBN_SELCHANGE);
        command(IDM_XFER_TRANSFER);
        tell(IDC_DANDD_LOCALFILES, LB_SETSEL, FALSE, -1);
        tell(IDC_DANDD_LOCALFILES, LB_SETSEL, TRUE, 2);
        command(IDM_XFER_DETAILS);
        command(IDM_XFER_DELETE);
        command(IDM_XFER_COMMANDLINE);
        command(IDM_XFER_TWOPANE);
        fFailed = ledger.hasFailed();
        EXPECT_TRUE(fFailed || !m_dir.holds("c"));
        ledger.failAt(0);
        fill();
        EXPECT_EQ(ledger.count(), cBefore) << n;
    }
    EXPECT_GT(n, 20);
    close();
    EXPECT_EQ(ledger.owed(), "");
}

// The file system's answer to a search for details.
WIN32_FIND_DATAA s_details;
std::string s_searched;
int s_cSearches;

HANDLE WINAPI fakeFindFirst(LPCSTR pszPath, WIN32_FIND_DATAA* pFind)
{
    s_searched = pszPath;
    *pFind = s_details;
    s_cSearches += s_details.cFileName[0] != '\0';
    return s_details.cFileName[0] == '\0' ? INVALID_HANDLE_VALUE : HANDLE(1);
}

BOOL WINAPI fakeFindClose(HANDLE)
{
    --s_cSearches;
    return TRUE;
}

struct Detail {
    const char* pszName;
    DWORD cb;
    SYSTEMTIME time;
    DWORD dwAttributes;
    const char* pszLine;
};
constexpr SYSTEMTIME T1995 = {1995, 3, 0, 7, 9, 5, 59, 0};
constexpr SYSTEMTIME T2026 = {2026, 12, 0, 31, 23, 59, 0, 0};
constexpr SYSTEMTIME T2000 = {2000, 1, 0, 1, 0, 0, 0, 0};
const Detail DETAILS[] = {
    {"Readme.txt", 1234, T1995, 0, "Readme   txt    1234  95-03-07 09:05"},
    {"12345678.123", 99999999, T2026, 0, "12345678 12399999999 126-12-31 23:59"},
    {"noext", 0, T2000, 0, "noext              0 100-01-01 00:00"},
    {"a.tar.gz", 1, T1995, 0, "a       tar.gz       1  95-03-07 09:05"},
    {"verylongname.html", 1, T1995, 0, "verylongnamehtml       1  95-03-07 09:05"},
    {"a.b", 0x80000000, T1995, 0, "a          b-2147483648  95-03-07 09:05"},
    {"a.b", 0xFFFFFFFF, T1995, FILE_ATTRIBUTE_READONLY, "a          b      -1  95-03-07 09:05"},
    {"Dir", 0, T1995, FILE_ATTRIBUTE_DIRECTORY, "Dir            <DIR>"},
    {"Dir.ext", 0, T1995, FILE_ATTRIBUTE_DIRECTORY, "Dir      ext   <DIR>"},
    {".dir", 0, T1995, FILE_ATTRIBUTE_DIRECTORY, "         dir       0  95-03-07 09:05"},
    {"100%s", 5, T1995, 0, "100%s              5  95-03-07 09:05"},
};

TEST_F(Command, DetailsAreALineForEachFile)
{
    openFilled();
    nXferDandDAddLocalFileName(m_hwnd, "sub/name.txt");
    ReplacedImport first(library(), "FindFirstFileA", fakeFindFirst);
    ReplacedImport close(library(), "FindClose", fakeFindClose);
    selectFiles(IDC_DANDD_LOCALFILES, {"sub/name.txt"});
    Strings expected;
    for (const Detail& detail : DETAILS) {
        s_details = {};
        lstrcpyA(s_details.cFileName, detail.pszName);
        s_details.dwFileAttributes = detail.dwAttributes;
        s_details.nFileSizeLow = detail.cb;
        s_details.nFileSizeHigh = 7;
        SystemTimeToFileTime(&detail.time, &s_details.ftLastWriteTime);
        command(IDM_XFER_DETAILS);
        expected.push_back(detail.pszLine);
        EXPECT_EQ(log(), expected);
        EXPECT_EQ(s_searched, "SUB\\NAME.TXT");
    }
    // The longest name there can be, in one entry; a file that has gone has none.
    std::string longest = std::string(130, 'n') + "." + std::string(128, 'e');
    lstrcpyA(s_details.cFileName, longest.c_str());
    command(IDM_XFER_DETAILS);
    longest.erase(130, 1);
    EXPECT_EQ(log().back(), (longest + "       5  95-03-07 09:05").substr(0, 260));
    s_details.cFileName[0] = '\0';
    command(IDM_XFER_DETAILS);
    EXPECT_EQ(log().size(), expected.size() + 1);
    EXPECT_EQ(s_cSearches, 0);
}

// What the user does in the save dialog.
std::function<bool(char*)> s_inSave;

BOOL WINAPI fakeGetSaveFileName(LPOPENFILENAMEA pOpen)
{
    return s_inSave(pOpen->lpstrFile);
}

int refuseText(const char*, FILE*)
{
    return EOF;
}

int refuseEnd(FILE* pFile)
{
    fclose(pFile);
    return EOF;
}

class SaveLog : public Command {
protected:
    SaveLog()
    {
        openFilled();
        for (const char* psz : {"alpha", "beta", "gamma"}) {
            vXferDandDInfoLine(m_hwnd, psz);
        }
        s_inSave = [](char* pszFile) { return lstrcpyA(pszFile, "log.txt") != nullptr; };
    }

    void save(DWORD nStart, DWORD nEnd) const
    {
        tell(IDC_DANDD_INFOLINE, EM_SETSEL, nStart, LPARAM(nEnd));
        vXferDandDDisplayDILText(m_hwnd, "");
        command(IDM_XFER_SAVESELECTION);
    }
    std::pair<DWORD, DWORD> selection() const
    {
        std::pair<DWORD, DWORD> range;
        tell(IDC_DANDD_INFOLINE, EM_GETSEL, WPARAM(&range.first), LPARAM(&range.second));
        return range;
    }

private:
    ReplacedImport m_save{library(), "GetSaveFileNameA", fakeGetSaveFileName};
};

TEST_F(SaveLog, WritesTheSelectedPartOfEachLine)
{
    // An empty line, then "alpha" at 2, "beta" at 9, "gamma" at 15, and a long one at 22.
    const std::string longLine(260, 'x');
    vXferDandDInfoLine(m_hwnd, longLine.c_str());
    const struct {
        DWORD nStart, nEnd;
        std::string bytes;
    } parts[] = {
        {2, 7, "alpha\r\n"},
        {4, 11, "pha\r\nbe\r\n"},
        {3, 5, "lp\r\n"},
        {2, 9, "alpha\r\n\r\n"},
        {0, 20, "\r\nalpha\r\nbeta\r\ngamma\r\n"},
        {5, 5, "\r\n"},
        {15, 282, "gamma\r\n" + longLine.substr(0, 258) + "\r\n"},
        {23, 281, longLine.substr(0, 257) + "\r\n"},
        {281, 282, "\r\n"},
    };
    for (const auto& part : parts) {
        SCOPED_TRACE(testing::Message() << part.nStart << " to " << part.nEnd);
        save(part.nStart, part.nEnd);
        EXPECT_EQ(contentsOf("log.txt"), part.bytes);
        EXPECT_EQ(stripText(), "");
        EXPECT_EQ(selection(), std::make_pair(part.nStart, part.nEnd));
    }
}

TEST_F(SaveLog, FailuresAreTold)
{
    const std::string failed = english(IDS_SAVE_FAILED);
    ReplacedImport(library(), "fputs", refuseText), save(2, 11);
    EXPECT_EQ(stripText(), failed);
    EXPECT_TRUE(DeleteFileA("log.txt")); // it isn't open any more
    ReplacedImport(library(), "fclose", refuseEnd), save(2, 11);
    EXPECT_EQ(stripText(), failed);
    EXPECT_EQ(contentsOf("log.txt"), "alpha\r\nbe\r\n");
    s_inSave = [](char* pszFile) { return lstrcpyA(pszFile, "none\\log.txt") != nullptr; };
    save(2, 7);
    EXPECT_EQ(stripText(), failed);
    s_inSave = [](char*) { return false; };
    save(2, 7);
    EXPECT_EQ(stripText(), "");
    EXPECT_EQ(selection(), std::make_pair(DWORD(2), DWORD(7)));
}

// The dialog can change the current directory. The process goes back to where it was, unless the
// panes have followed it.
TEST_F(SaveLog, TheDialogMovesTheProcessOnlyWithThePanes)
{
    const struct {
        std::string before; // what the panes show is the test's directory
        bool fFollowed;
        std::string after;
    } cases[] = {{m_dir.path(), false, m_dir.path()},
                 {m_dir.path("full"), false, m_dir.path("full")},
                 {m_dir.path(), true, m_dir.path("child")},
                 {m_dir.path("full"), true, m_dir.path("child")}};
    for (const auto& c : cases) {
        for (bool fChosen : {true, false}) {
            goHome();
            _chdir(c.before.c_str());
            s_inSave = [&](char* pszFile) {
                lstrcpyA(pszFile, m_dir.path("child\\log.txt").c_str());
                _chdir(m_dir.path("child").c_str());
                if (c.fFollowed) {
                    vXferDandDRefreshLocalFiles(m_hwnd);
                }
                return fChosen;
            };
            save(2, 7);
            EXPECT_EQ(currentDir(), c.after) << &c - cases << fChosen;
            EXPECT_EQ(m_dir.holds("child\\log.txt"), fChosen);
            DeleteFileA(m_dir.path("child\\log.txt").c_str());
        }
    }
    m_dir.enter();
    s_inSave = [&](char* pszFile) {
        nXferDandDDestroy(m_hwnd);
        return lstrcpyA(pszFile, "late.txt") != nullptr;
    };
    command(IDM_XFER_SAVESELECTION);
    EXPECT_FALSE(m_dir.holds("late.txt"));
}

// Entries that come while the dialog is open move all others, or push them out.
TEST_F(SaveLog, WhatWasSelectedFirstIsSaved)
{
    const std::string entry(258, 'x');
    hide();
    s_inSave = [&](char* pszFile) {
        for (int n = 0; n < 120; ++n) {
            vXferDandDInfoLine(m_hwnd, entry.c_str());
        }
        return lstrcpyA(pszFile, "log.txt") != nullptr;
    };
    save(4, 11);
    EXPECT_EQ(contentsOf("log.txt"), "pha\r\nbe\r\n");
}

} // namespace
