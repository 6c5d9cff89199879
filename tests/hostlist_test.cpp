// The calls that fill and clear the host panes.
#include "../resources/ids.h"
#include "../transfer/panes/rows.h"
#include "support/imports.h"
#include "support/ledger.h"
#include "support/pane_window.h"
#include "support/picture.h"
#include "support/subclassed.h"

namespace {

class HostList : public PaneWindow {
protected:
    // Opens a window anew, whose directory list is what the text says: ".." seeds it, "w" is the
    // working directory.
    void openWith(const std::string& dirs)
    {
        close();
        open();
        for (const std::string& dir : split(dirs)) {
            if (dir == "..") {
                nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_SUBDIRS);
            } else if (dir == "w") {
                vXferDandDPrintWorkingDir(m_hwnd, "w", "/w");
            } else {
                nXferDandDAddHostSubDir(m_hwnd, dir.c_str());
            }
        }
    }
};

BOOL WINAPI noPost(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

struct Clearing {
    const char* pszBefore;
    DWORD dwFlags;
    const char* pszAfter;
};
const Clearing CLEARINGS[] = {
    {".. w a b c", 0, ".. w a b c"},
    {".. w a b c", XFERCLEAR_SUBDIRS, ".. w"},
    {".. w a b c", XFERCLEAR_WORKDIR, ".. a b c"},
    {".. w a b c", XFERCLEAR_SUBDIRS | XFERCLEAR_WORKDIR, ".."},
    {".. w a b c", XFERCLEAR_FILES, ".. w a b c"},
    {".. w a b c", XFERCLEAR_FILTER, ".. w a b c"},
    {".. w a b c", 15, ".."},
    {".. w a b c", 0xFFFFFFF0, ".. w a b c"},
    {".. w", XFERCLEAR_SUBDIRS, ".. w"},
    {".. w w", XFERCLEAR_SUBDIRS, ".. w"},
    {".. w w", XFERCLEAR_WORKDIR, ".. w"},
    {".. a b", XFERCLEAR_SUBDIRS, ".."},
    {".. a b", XFERCLEAR_WORKDIR, ".. a b"},
    {"..", XFERCLEAR_SUBDIRS, ".."},
    {"..", XFERCLEAR_WORKDIR, ".."},
    {"", XFERCLEAR_SUBDIRS, ".."},
    {"", XFERCLEAR_WORKDIR, ""},
    {"a b", XFERCLEAR_SUBDIRS, ".."},
    {"a b", XFERCLEAR_WORKDIR, "a b"},
};

TEST_F(HostList, ClearsWhatTheFlagsSay)
{
    Ledger ledger;
    for (const Clearing& c : CLEARINGS) {
        SCOPED_TRACE(testing::Message() << c.pszBefore << ": " << c.dwFlags);
        openWith(c.pszBefore);
        size_t cOthers = ledger.count() - rows(IDC_DANDD_HOSTDIRS).size();
        nXferDandDAddHostFileName(m_hwnd, "file");
        type(IDC_DANDD_HOSTPATH, "/typed");
        tell(IDC_DANDD_HOSTPATH, EM_SETMODIFY, TRUE);
        type(IDC_DANDD_HOSTFILTER, "*");
        LRESULT nKept = tell(IDC_DANDD_HOSTDIRS, LB_GETITEMDATA, 1);
        EXPECT_EQ(nXferDandDClearHostFileInfo(m_hwnd, c.dwFlags), 0);
        Strings after = split(c.pszAfter);
        EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), after);
        bool fWorkDir = (c.dwFlags & XFERCLEAR_WORKDIR) != 0;
        EXPECT_EQ(text(IDC_DANDD_HOSTPATH), fWorkDir ? "" : "/typed");
        EXPECT_EQ(tell(IDC_DANDD_HOSTPATH, EM_GETMODIFY), !fWorkDir);
        EXPECT_EQ(text(IDC_DANDD_HOSTFILTER), (c.dwFlags & XFERCLEAR_FILTER) != 0 ? "" : "*");
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES).empty(), (c.dwFlags & XFERCLEAR_FILES) != 0);
        // A working directory that stays keeps its record.
        if (after.size() > 1 && after[1] == "w" && split(c.pszBefore).size() != 3) {
            EXPECT_EQ(tell(IDC_DANDD_HOSTDIRS, LB_GETITEMDATA, 1), nKept);
        }
        EXPECT_EQ(ledger.count(), cOthers + after.size());
    }
    openWith(".. w a");
    type(IDC_DANDD_HOSTFILTER, "*");
    EXPECT_EQ(nXferDandDClearHostFileList(m_hwnd), 0);
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), Strings{".."});
    EXPECT_EQ(text(IDC_DANDD_HOSTFILTER) + text(IDC_DANDD_HOSTPATH), "");
    close();
    EXPECT_EQ(ledger.owed(), "");
}

// The list tells its owner of each row that goes, which can end the window; the row still has its
// record then. The list of some platforms doesn't survive that: this one ends in its place.
TEST_F(HostList, TheEndOfARowMayEndTheWindow)
{
    const DWORD flags[] = {XFERCLEAR_SUBDIRS, XFERCLEAR_WORKDIR, 15, 0};
    for (DWORD dwFlags : flags) {
        for (int nCase = 0; nCase < 6; ++nCase) {
            int nEndAt = nCase % 3;
            SCOPED_TRACE(testing::Message() << dwFlags << " at " << nEndAt);
            Ledger ledger;
            openWith(".. w a b");
            int cTold = 0;
            Subclassed window(m_hwnd, [](UINT uMessage, WPARAM, LPARAM lParam) {
                auto pRow = reinterpret_cast<const DELETEITEMSTRUCT*>(lParam);
                if (uMessage == WM_DELETEITEM && pRow->itemData != 0) {
                    const HGLOBAL hItem = HGLOBAL(pRow->itemData);
                    auto pItem = static_cast<const XferListItem*>(GlobalLock(hItem));
                    EXPECT_TRUE(pItem != nullptr && pItem->nKind >= 0);
                    GlobalUnlock(hItem);
                }
                return false;
            });
            Subclassed list(item(IDC_DANDD_HOSTDIRS), [&](UINT uMessage, WPARAM, LPARAM) {
                bool fEnd = uMessage == LB_DELETESTRING && ++cTold == nEndAt;
                if (fEnd) {
                    nXferDandDDestroy(m_hwnd);
                }
                return fEnd;
            });
            vXferDandDSetBusyState(m_hwnd, nCase / 3);
            if (dwFlags != 0) {
                nXferDandDClearHostFileInfo(m_hwnd, dwFlags);
            } else {
                nXferDandDRemoveHostSubDir(m_hwnd, "a");
                nXferDandDAddHostSubDir(m_hwnd, "b");
                pumpMessages();
            }
            close();
            EXPECT_EQ(ledger.owed(), "");
        }
    }
}

TEST_F(HostList, PrintsTheWorkingDirectory)
{
    openWith(".. w");
    tell(IDC_DANDD_HOSTPATH, EM_SETMODIFY, TRUE);
    vXferDandDPrintWorkingDir(m_hwnd, "row", "/a/path");
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS)[1], "row");
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/a/path");
    EXPECT_FALSE(tell(IDC_DANDD_HOSTPATH, EM_GETMODIFY));
    vXferDandDPrintWorkingDir(m_hwnd, nullptr, nullptr);
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "");
}

TEST_F(HostList, NamesAreTextsAndCutToTheirLimit)
{
    const std::string longName = std::string(255, 'n') + "12345";
    openWith("..");
    Strings expected = {"a", "A", "c:\\x\\y&z", "dir/file;1"};
    for (const std::string& name :
         Strings{"A", "a", expected[2], expected[3], longName, longName + "6"}) {
        for (int n = 0; n < 2; ++n) {
            EXPECT_EQ(nXferDandDAddHostFileName(m_hwnd, name.c_str()), 0);
            EXPECT_EQ(nXferDandDAddHostSubDir(m_hwnd, name.c_str()), 0);
        }
    }
    expected.push_back(longName.substr(0, 259));
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), expected);
    expected.insert(expected.begin(), "..");
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), expected);
    // What is cut on its way in is cut when it is looked for. A file takes its selection along.
    selectFiles(IDC_DANDD_HOSTFILES, {"a", expected.back()});
    nXferDandDRemoveHostFileName(m_hwnd, longName.c_str());
    nXferDandDRemoveHostSubDir(m_hwnd, longName.c_str());
    EXPECT_EQ(selected(IDC_DANDD_HOSTFILES), Strings{"a"});
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES).size(), 4u);
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS).size(), 5u);
}

// Column widths are due at the end of a busy state in which a name came or went.
struct Change {
    std::vector<DWORD> flags; // of the busy state, from idle; the change comes where it says so
    void (*pfnDo)(HWND);
    bool fMeasured;
};
constexpr DWORD NOW = 99;
void addNew(HWND hwnd)
{
    nXferDandDAddHostFileName(hwnd, "new");
}
const Change CHANGES[] = {
    {{1, NOW, 0}, [](HWND) {}, false},
    {{1, NOW, 0}, addNew, true},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDAddHostFileName(hwnd, "old"); }, false},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDRemoveHostFileName(hwnd, "old"); }, true},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDRemoveHostFileName(hwnd, "none"); }, false},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDAddHostSubDir(hwnd, "new"); }, false},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDRemoveHostSubDir(hwnd, "one"); }, false},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDClearHostFileInfo(hwnd, XFERCLEAR_FILES); }, false},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDAddLocalFileName(hwnd, "new"); }, true},
    {{1, NOW, 0}, [](HWND hwnd) { nXferDandDAddLocalFileName(hwnd, "local"); }, false},
    {{NOW, 1, 0}, addNew, false},    // what came while idle is forgotten
    {{1, NOW, 1, 0}, addNew, true},  // the same flag again changes nothing
    {{1, NOW, 2, 0}, addNew, false}, // another flag begins anew
    {{0xFFFFFFFF, NOW, 0}, addNew, true},
};

TEST_F(HostList, ColumnsFollowTheNamesAtTheEndOfTheBusyState)
{
    constexpr LONG WIDE = 444;
    open();
    m_dir.makeFile("local");
    for (const Change& change : CHANGES) {
        SCOPED_TRACE(&change - CHANGES);
        feedHost({"old"});
        vXferDandDRefreshLocalFiles(m_hwnd);
        tell(IDC_DANDD_HOSTFILES, LB_SETCOLUMNWIDTH, WIDE);
        tell(IDC_DANDD_LOCALFILES, LB_SETCOLUMNWIDTH, WIDE);
        for (DWORD dwFlag : change.flags) {
            EXPECT_EQ(columnWidth(IDC_DANDD_HOSTFILES), WIDE);
            dwFlag == NOW ? change.pfnDo(m_hwnd) : vXferDandDSetBusyState(m_hwnd, dwFlag);
        }
        EXPECT_EQ(columnWidth(IDC_DANDD_HOSTFILES) != WIDE, change.fMeasured);
        EXPECT_EQ(columnWidth(IDC_DANDD_LOCALFILES) != WIDE, change.fMeasured);
    }
}

// In a busy state the lists aren't drawn until one of these has happened.
struct Ending {
    const char* pszWhat;
    void (*pfnDo)(HWND);
};
const Ending ENDINGS[] = {
    {"the message loop", [](HWND) { pumpMessages(); }},
    {"the end of the busy state", [](HWND hwnd) { vXferDandDSetBusyState(hwnd, 0); }},
    {"the message loop, after another busy state began",
     [](HWND hwnd) {
         vXferDandDSetBusyState(hwnd, 0);
         vXferDandDSetBusyState(hwnd, 1);
         nXferDandDRemoveHostFileName(hwnd, "none");
         pumpMessages();
     }},
    {"the message loop, while the lists are hidden",
     [](HWND hwnd) {
         SendMessageA(hwnd, WM_COMMAND, IDM_XFER_COMMANDLINE, 0);
         pumpMessages();
         SendMessageA(hwnd, WM_COMMAND, IDM_XFER_TWOPANE, 0);
     }},
};

TEST_F(HostList, IsDrawnOnceForARunOfChangesInABusyState)
{
    constexpr int LISTS[] = {IDC_DANDD_HOSTFILES, IDC_DANDD_HOSTDIRS};
    auto change = [this] {
        nXferDandDAddHostSubDir(m_hwnd, "three");
        nXferDandDRemoveHostSubDir(m_hwnd, "one");
        nXferDandDAddHostFileName(m_hwnd, "c");
        nXferDandDRemoveHostFileName(m_hwnd, "b");
    };
    const Strings dirs = {"..", "work", "three", "two"};
    open();
    for (const Ending& ending : ENDINGS) {
        SCOPED_TRACE(ending.pszWhat);
        std::vector<Picture> drawn; // out of a busy state, then in it
        for (bool fBusy : {false, true}) {
            feedHost({"a", "b"});
            pumpMessages();
            vXferDandDSetBusyState(m_hwnd, fBusy);
            change();
            for (int id : LISTS) {
                EXPECT_EQ(GetUpdateRect(item(id), nullptr, FALSE), !fBusy);
            }
            // The rows are there all the same.
            EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), dirs);
            EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"a", "c"}));
            ending.pfnDo(m_hwnd);
            pumpMessages();
            for (int id : LISTS) {
                UpdateWindow(item(id));
                drawn.emplace_back(item(id));
            }
            vXferDandDSetBusyState(m_hwnd, 0);
        }
        EXPECT_EQ(drawn[0].difference(drawn[2]), "");
        EXPECT_EQ(drawn[1].difference(drawn[3]), "");
    }
    // The message that ends it comes when the window has gone, or can't be posted at all.
    vXferDandDSetBusyState(m_hwnd, 1);
    change();
    close();
    pumpMessages();
    open();
    feedHost({"a", "b"});
    pumpMessages();
    UpdateWindow(m_hwnd);
    vXferDandDSetBusyState(m_hwnd, 1);
    ReplacedImport post(library(), "PostMessageA", noPost);
    change();
    EXPECT_TRUE(GetUpdateRect(item(IDC_DANDD_HOSTFILES), nullptr, FALSE));
}

TEST_F(HostList, NullNamesAreRefused)
{
    open();
    feedHost({"", "a"});
    nXferDandDAddHostFileName(m_hwnd, nullptr);
    nXferDandDRemoveHostFileName(m_hwnd, nullptr);
    nXferDandDAddHostSubDir(m_hwnd, nullptr);
    nXferDandDRemoveHostSubDir(m_hwnd, nullptr);
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"", "a"}));
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), (Strings{"..", "work", "one", "two"}));
}

} // namespace
