// Enter and double clicks, what a typed text comes to, and the drives.
#include "../resources/ids.h"
#include "../transfer/panes/rows.h"
#include "support/imports.h"
#include "support/pane_window.h"
#include "support/subclassed.h"

#include <algorithm>
#include <direct.h>
#include <utility>

namespace {

class PathLine : public PaneWindow {};

struct Typed {
    const char *pszText, *pszDir, *pszLine, *pszFiles;
};
// All in the directory of the test; a directory that starts with ".." or "\" isn't below it.
const Typed TYPED[] = {
    {"", "", "", "a.txt b.c"},
    {"*.txt", "", "*.txt", "a.txt"},
    {"a.txt", "", "a.txt", "a.txt"},
    {"gone.txt", "", "gone.txt", ""},
    {"sub", "sub", "*.*", "c.txt d.c"},
    {"SUB\\", "SUB", "*.*", "c.txt d.c"},
    {"sub\\*.c", "sub", "*.c", "d.c"},
    {".\\sub\\..\\sub\\d.c", "sub", "d.c", "d.c"},
    {"long directory name\\", "long directory name", "*.*", "e.txt"},
    {"long directory name\\e.*", "long directory name", "e.*", "e.txt"},
    {"long directory name", "", "*.*", "a.txt b.c"},
    {"\\\\server\\share", "", "*.*", "a.txt b.c"},
    {"a:b:c", "", "*.*", "a.txt b.c"},
    {"sub\\..", "", "*.*", "a.txt b.c"},
    {"gone\\*.txt", "", "*.txt", "a.txt"},
};

TEST_F(PathLine, ATypedTextIsFollowedAndItsMaskStays)
{
    m_dir.makeDirs({"sub", "long directory name"});
    m_dir.makeFiles({"a.txt", "b.c", "sub\\c.txt", "sub\\d.c", "long directory name\\e.txt"});
    open();
    for (const Typed& typed : TYPED) {
        SCOPED_TRACE(typed.pszText);
        m_dir.enter();
        type(IDC_DANDD_LOCALFILTER, typed.pszText);
        enter(IDC_DANDD_LOCALFILTER);
        std::string dir = *typed.pszDir == '\0' ? m_dir.path() : m_dir.path(lower(typed.pszDir));
        EXPECT_EQ(currentDir(), dir);
        EXPECT_EQ(text(IDC_DANDD_LOCALPATH), dir);
        EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), typed.pszLine);
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), split(typed.pszFiles));
        DWORD nStart, nEnd;
        tell(IDC_DANDD_LOCALFILTER, EM_GETSEL, WPARAM(&nStart), LPARAM(&nEnd));
        EXPECT_EQ(nStart, nEnd);
    }
    // Up, and to the root; nothing of all this was recorded or asked of the caller.
    for (const char* psz : {"..", "\\", "c:\\"}) {
        _chdir(m_dir.path("sub").c_str());
        type(IDC_DANDD_LOCALFILTER, psz);
        enter(IDC_DANDD_LOCALFILTER);
        EXPECT_EQ(currentDir(), *psz == '.' ? m_dir.path() : "c:\\");
        EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.*");
    }
    EXPECT_EQ(heard(), "");
}

// The default pattern is that of the file type in the list.
TEST_F(PathLine, TheFileTypeTakesEffectAtEnter)
{
    m_dir.makeFiles({"a.txt", "b.c"});
    open();
    tell(IDC_DANDD_LOCALTYPES, CB_SETCURSEL, 1);
    notify(IDC_DANDD_LOCALTYPES, CBN_SELCHANGE);
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), (Strings{"a.txt", "b.c"}));
    enter(IDC_DANDD_LOCALTYPES);
    EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.txt");
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"a.txt"});
    type(IDC_DANDD_LOCALFILTER, "verylongname.html");
    enter(IDC_DANDD_LOCALFILTER);
    EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.txt");
    type(IDC_DANDD_LOCALFILTER, "*.c");
    tell(IDC_DANDD_LOCALTYPES, CB_SETCURSEL, WPARAM(-1));
    enter(IDC_DANDD_LOCALTYPES);
    EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.c");
}

char* refuseFullPath(char*, const char*, size_t)
{
    return nullptr;
}

TEST_F(PathLine, ATextThatCannotBeCompletedIsRejected)
{
    open();
    ReplacedImport fullpath(library(), "_fullpath", refuseFullPath);
    type(IDC_DANDD_LOCALFILTER, "d:\\sub");
    enter(IDC_DANDD_LOCALFILTER);
    EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.*");
    EXPECT_EQ(currentDir(), m_dir.path());
}

// The drives of the machine, by their letters.
struct Drive {
    char chLetter;
    UINT uType;
    const char* pszLabel; // null where it can't be read
};
const Drive DRIVES[] = {
    {'A', DRIVE_REMOVABLE, "never read"},
    {'C', DRIVE_FIXED, "SYSTEM Disk"},
    {'D', DRIVE_FIXED, ""},
    {'E', DRIVE_CDROM, "never read"},
    {'F', DRIVE_REMOTE, nullptr},
    {'G', DRIVE_REMOTE, "Share"},
    {'H', DRIVE_RAMDISK, "Ram"},
    {'I', DRIVE_NO_ROOT_DIR, "x"},
    {'Z', DRIVE_UNKNOWN, "x"},
};

const Drive& driveOf(LPCSTR pszRoot)
{
    return *std::find_if(DRIVES, DRIVES + ARRAYSIZE(DRIVES) - 1,
                         [=](const Drive& drive) { return drive.chLetter == *pszRoot; });
}

Strings s_asked;
DWORD s_dwVersion;
std::vector<int> s_drives;
int s_nChangeDrive;
int s_nDrive; // of the process

DWORD WINAPI fakeLogicalDrives()
{
    return 0x020001FD; // A, C to I, and Z
}

UINT WINAPI fakeDriveType(LPCSTR pszRoot)
{
    s_asked.push_back(pszRoot);
    return driveOf(pszRoot).uType;
}

BOOL WINAPI fakeVolume(LPCSTR pszRoot, LPSTR pszLabel, DWORD cchLabel, LPDWORD, LPDWORD, LPDWORD,
                       LPSTR, DWORD)
{
    const char* psz = driveOf(pszRoot).pszLabel;
    s_asked.push_back(std::string("label ") + pszRoot);
    EXPECT_EQ(cchLabel, 260u);
    return psz != nullptr && lstrcpynA(pszLabel, psz, int(cchLabel)) != nullptr;
}

DWORD WINAPI fakeVersion()
{
    return s_dwVersion;
}

int fakeChdrive(int nDrive)
{
    s_drives.push_back(nDrive);
    s_nDrive = s_nChangeDrive == 0 ? nDrive : s_nDrive;
    return s_nChangeDrive;
}

int fakeGetdrive()
{
    return s_nDrive;
}

class Drives : public PaneWindow {
protected:
    Drives()
    {
        s_asked.clear();
        s_drives.clear();
        s_nChangeDrive = 0;
        s_nDrive = 3;
    }
    std::string shownDrive() const
    {
        LRESULT n = tell(IDC_DANDD_LOCALDRIVES, CB_GETCURSEL);
        return n == CB_ERR ? "none" : rows(IDC_DANDD_LOCALDRIVES)[size_t(n)];
    }

private:
    ReplacedImport m_drives{library(), "GetLogicalDrives", fakeLogicalDrives};
    ReplacedImport m_type{library(), "GetDriveTypeA", fakeDriveType};
    ReplacedImport m_volume{library(), "GetVolumeInformationA", fakeVolume};
    ReplacedImport m_chdrive{library(), "_chdrive", fakeChdrive};
    ReplacedImport m_getdrive{library(), "_getdrive", fakeGetdrive};
};

TEST_F(Drives, EachKindHasItsRow)
{
    const char* const icons[] = {"FloppyDrive", "FixedDrive", "FixedDrive",
                                 "CDRomDrive",  "NetDrive",   "RamDrive"};
    for (DWORD dwVersion : {4u, 3u}) {
        s_dwVersion = dwVersion;
        s_asked.clear();
        ReplacedImport version(library(), "GetVersion", fakeVersion);
        open();
        EXPECT_EQ(rows(IDC_DANDD_LOCALDRIVES),
                  (Strings{"a: ", "c: system disk", "d: ", "e: ", "g: share", "h: ram"}));
        EXPECT_EQ(shownDrive(), "c: system disk");
        for (size_t n = 0; n < ARRAYSIZE(icons); ++n) {
            auto hItem = HGLOBAL(tell(IDC_DANDD_LOCALDRIVES, CB_GETITEMDATA, n));
            auto pItem = static_cast<const XferListItem*>(GlobalLock(hItem));
            ASSERT_NE(pItem, nullptr);
            EXPECT_EQ(pItem->hIcon, LoadIconA(library(), icons[n])) << icons[n];
            EXPECT_EQ(pItem->nIndent, 0u);
            GlobalUnlock(hItem);
        }
        // Only older versions want a blank behind the root, and never for the label.
        std::string blank = dwVersion < 4 ? " " : "";
        Strings expected;
        for (const Drive& drive : DRIVES) {
            const std::string root = std::string(1, drive.chLetter) + ":\\";
            expected.push_back(root + blank);
            if (strchr("CDFGH", drive.chLetter) != nullptr) {
                expected.push_back("label " + root);
            }
        }
        EXPECT_EQ(s_asked, expected);
        close();
    }
}

TEST_F(Drives, TheListChangesTheDrive)
{
    open();
    m_dir.makeFile("new");
    for (UINT nNotification : {CBN_SELCHANGE, CBN_SELENDOK}) {
        tell(IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, 4);
        notify(IDC_DANDD_LOCALDRIVES, nNotification);
        EXPECT_EQ(recorded(), Strings{"local drive: g: share"});
    }
    EXPECT_EQ(s_drives, (std::vector<int>{7, 7}));
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"new"});
    s_nChangeDrive = -1;
    m_dir.makeFile("newer");
    tell(IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, 0);
    notify(IDC_DANDD_LOCALDRIVES, CBN_SELCHANGE);
    EXPECT_EQ(stripText(), english(IDS_DRIVE_FAILED));
    EXPECT_EQ(recorded(), Strings{});
    EXPECT_EQ(shownDrive(), "a: ");
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"new"});
    notify(IDC_DANDD_LOCALDRIVES, CBN_DROPDOWN);
    EXPECT_EQ(s_drives.size(), 3u);
    EXPECT_EQ(requests(), Strings{});
}

TEST_F(Drives, ATypedDriveIsFollowedByTheList)
{
    open();
    const struct {
        const char *pszText, *pszShown;
        int nDrive, nResult; // 0 where no drive is changed to
    } cases[] = {
        {"D:\\*.c", "d: ", 4, 0},
        {"d:\\*.c", "d: ", 0, 0},    // it is the drive already
        {"g:\\", "g: share", 7, -1}, // a failure is silent
        {"z:\\*.*", "none", 26, 0},  // a drive without a row
        {"c:\\*.*", "c: system disk", 3, 0},
    };
    for (const auto& c : cases) {
        s_drives.clear();
        s_nChangeDrive = c.nResult;
        type(IDC_DANDD_LOCALFILTER, c.pszText);
        enter(IDC_DANDD_LOCALFILTER);
        EXPECT_TRUE(waitUntil([&] { return shownDrive() == c.pszShown; })) << c.pszText;
        EXPECT_EQ(s_drives, c.nDrive == 0 ? std::vector<int>{} : std::vector<int>{c.nDrive});
    }
    EXPECT_EQ(recorded(), Strings{});
}

// The process can be on another drive than the one that was followed last: the typed one counts.
// Only a drive that is new to the window moves the list.
TEST_F(PathLine, ATypedDriveCountsWhereverTheProcessIs)
{
    const int nHome = _getdrive();
    int nOther = 26;
    while (nOther > 0 && (nOther == nHome || _chdrive(nOther) != 0)) {
        --nOther;
    }
    if (nOther == 0) {
        GTEST_SKIP() << "there is one drive only";
    }
    m_dir.enter();
    m_dir.makeFile("a.txt");
    open();
    for (bool fRefilled : {false, true}) {
        _chdrive(nOther);
        if (fRefilled) {
            vXferDandDRefreshLocalFiles(m_hwnd);
        }
        tell(IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, WPARAM(-1));
        type(IDC_DANDD_LOCALFILTER, m_dir.path("*.txt"));
        enter(IDC_DANDD_LOCALFILTER);
        pumpMessages();
        EXPECT_EQ(currentDir(), m_dir.path());
        EXPECT_EQ(text(IDC_DANDD_LOCALPATH), m_dir.path());
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"a.txt"});
        EXPECT_EQ(tell(IDC_DANDD_LOCALDRIVES, CB_GETCURSEL), CB_ERR);
    }
    m_dir.enter();
}

TEST_F(PathLine, LocalDirectoryRowsAreEntered)
{
    m_dir.makeDirs({"Sub", "Gone"});
    m_dir.makeFiles({"Sub\\a.c", "Sub\\a.txt"});
    open();
    type(IDC_DANDD_LOCALFILTER, "*.c");
    // The line's mask goes on applying; a double click does the same as Enter.
    selectRow(IDC_DANDD_LOCALDIRS, "Sub");
    notify(IDC_DANDD_LOCALDIRS, LBN_DBLCLK);
    EXPECT_EQ(currentDir(), m_dir.path("sub"));
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{"a.c"});
    EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "*.c");
    EXPECT_EQ(recorded(), Strings{"local directory: Sub"});
    selectRow(IDC_DANDD_LOCALDIRS, "sub"); // the current one
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(recorded(), Strings{});
    Strings chain = split(m_dir.path(), '\\');
    selectRow(IDC_DANDD_LOCALDIRS, chain.back());
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(currentDir(), m_dir.path());
    EXPECT_EQ(recorded(), Strings{"local directory: " + m_dir.path()});
    // The process has gone elsewhere, where that name means another directory.
    m_dir.makeDirs({"Sub\\Gone"});
    selectRow(IDC_DANDD_LOCALDIRS, "Gone");
    _chdir("Sub");
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(currentDir(), m_dir.path("sub"));
    EXPECT_EQ(text(IDC_DANDD_LOCALPATH), m_dir.path("sub"));
    _chdir(m_dir.path().c_str());
    vXferDandDRefreshLocalFiles(m_hwnd);
    // One that has gone: the log says so, as far as its format goes, and nothing moves.
    RemoveDirectoryA("Gone");
    selectRow(IDC_DANDD_LOCALDIRS, "Gone");
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(log(), Strings{"Cannot access Gone"});
    EXPECT_EQ(recorded(), Strings{});
    EXPECT_EQ(tell(IDC_DANDD_LOCALDIRS, LB_FINDSTRING, WPARAM(-1), LPARAM("Gone")) == LB_ERR,
              false);
    selectRow(IDC_DANDD_LOCALDIRS, "c:\\");
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(currentDir(), "c:\\");
    EXPECT_EQ(recorded(), Strings{"local directory: \\"});
    enter(IDC_DANDD_LOCALDIRS); // no row is selected
    EXPECT_EQ(recorded(), Strings{});
}

struct Activation {
    int idControl;
    const char *pszText, *pszHeard; // the text can be a row
};
const Activation ACTIVATIONS[] = {
    {IDC_DANDD_HOSTPATH, "/etc", "chdir /etc 0|host directory: /etc"},
    {IDC_DANDD_HOSTPATH, "", "chdir  0|host directory: "},
    {IDC_DANDD_HOSTDIRS, "..", "chdir .. 1|host directory: .."},
    {IDC_DANDD_HOSTDIRS, "one", "chdir one 1|host directory: one"},
    {IDC_DANDD_HOSTDIRS, "work", ""},
    {IDC_DANDD_HOSTFILTER, "*.c", "filter *.c"},
    {IDC_DANDD_HOSTFILTER, "", "filter "},
    {IDC_DANDD_COMMANDLINE, "ls %s", "command ls %s|command: ls %s"},
    {IDC_DANDD_COMMANDLINE, "", ""},
    {IDC_DANDD_LOCALFILES, nullptr, ""},
    {IDC_DANDD_HOSTFILES, nullptr, ""},
    {IDC_DANDD_INFOLINE, nullptr, ""},
};

TEST_F(PathLine, EnterAsksTheCaller)
{
    open();
    feedHost({"f"});
    ShowWindow(item(IDC_DANDD_COMMANDLINE), SW_SHOW);
    EnableWindow(item(IDC_DANDD_COMMANDLINE), TRUE);
    const Strings dirs = rows(IDC_DANDD_HOSTDIRS);
    // The busy state doesn't keep the user from asking.
    for (DWORD fBusy : {0u, 1u}) {
        vXferDandDSetBusyState(m_hwnd, fBusy);
        for (const Activation& a : ACTIVATIONS) {
            SCOPED_TRACE(testing::Message() << a.idControl << a.pszHeard);
            if (a.idControl == IDC_DANDD_HOSTDIRS) {
                selectRow(a.idControl, a.pszText);
            } else if (a.pszText != nullptr) {
                type(a.idControl, a.pszText);
            }
            enter(a.idControl);
            EXPECT_EQ(heard(), a.pszHeard);
            if (a.idControl == IDC_DANDD_COMMANDLINE) {
                // The next command replaces this one.
                EXPECT_EQ(tell(a.idControl, EM_GETSEL), MAKELONG(0, strlen(a.pszText)));
            }
            if (a.idControl == IDC_DANDD_HOSTDIRS) {
                notify(a.idControl, LBN_DBLCLK);
                EXPECT_EQ(heard(), a.pszHeard);
            }
            EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), dirs);
        }
    }
    EXPECT_EQ(text(IDC_DANDD_COMMANDLINE), "");
    const std::string longest(259, 'p');
    type(IDC_DANDD_HOSTPATH, longest + "rest");
    enter(IDC_DANDD_HOSTPATH);
    EXPECT_EQ(heard(), "chdir " + longest + " 0|host directory: " + longest);
}

// Paintings and changes of a text ask the caller's windows, which can end the window.
TEST_F(PathLine, APaintingMayEndTheWindow)
{
    const struct {
        UINT uMessage;
        int idControl; // that it is about
    } ends[] = {{WM_CTLCOLORSTATIC, IDC_DANDD_LOCALPATH},
                {WM_CTLCOLOREDIT, IDC_DANDD_LOCALFILTER},
                {WM_COMMAND, IDC_DANDD_LOCALFILTER}};
    for (const auto& end : ends) {
        for (int idControl : {IDC_DANDD_LOCALTYPES, IDC_DANDD_LOCALFILTER}) {
            open();
            pumpMessages();
            SetFocus(item(idControl));
            Subclassed window(m_hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM lParam) {
                if (uMessage == end.uMessage && HWND(lParam) == item(end.idControl) &&
                    (uMessage != WM_COMMAND || HIWORD(wParam) == EN_CHANGE)) {
                    nXferDandDDestroy(m_hwnd);
                }
                return false;
            });
            command(IDOK);
            EXPECT_FALSE(IsWindow(m_hwnd)) << end.uMessage << " " << idControl;
        }
    }
}

// What a filter is applied with overwrites no text of the request.
HWND s_hwndFed;
std::string s_filter;

void KRHAULAPI feedAndFilter(DWORD, DWORD, DWORD, const char* pszFilter)
{
    for (const char* psz : {"a", "b", "c"}) {
        nXferDandDAddHostFileName(s_hwndFed, psz);
        nXferDandDRemoveHostFileName(s_hwndFed, psz);
    }
    s_filter = pszFilter;
}

TEST_F(PathLine, ACallbackMayFeedThePanes)
{
    const auto pfnFilter = std::exchange(m_callbacks.pfnHostFilter, feedAndFilter);
    open();
    s_hwndFed = m_hwnd;
    feedHost({"f"});
    type(IDC_DANDD_HOSTFILTER, "*.c");
    enter(IDC_DANDD_HOSTFILTER);
    EXPECT_EQ(s_filter, "*.c");
    m_callbacks.pfnHostFilter = pfnFilter;
    close();
    open();
    feedHost({"f"});
    m_inRequest = [this] {
        feedHost({"x", "y", "z"});
        nXferDandDRemoveHostFileName(m_hwnd, "y");
        nXferDandDAddLocalFileName(m_hwnd, "other");
        vXferDandDRefreshLocalFiles(m_hwnd);
    };
    type(IDC_DANDD_HOSTPATH, "/typed");
    enter(IDC_DANDD_HOSTPATH);
    EXPECT_EQ(recorded(), Strings{"host directory: /typed"});
    selectRow(IDC_DANDD_HOSTDIRS, "one");
    enter(IDC_DANDD_HOSTDIRS);
    EXPECT_EQ(recorded(), Strings{"host directory: one"});
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"x", "z"}));
    // Or end the window.
    for (int id : {IDC_DANDD_HOSTPATH, IDC_DANDD_HOSTFILTER, IDC_DANDD_HOSTDIRS}) {
        m_inRequest = nullptr;
        close();
        open();
        feedHost({});
        selectRow(IDC_DANDD_HOSTDIRS, "two");
        m_inRequest = [this] { nXferDandDDestroy(m_hwnd); };
        enter(id);
        EXPECT_FALSE(IsWindow(m_hwnd));
    }
    EXPECT_EQ(recorded().back(), "host directory: two");
}

} // namespace
