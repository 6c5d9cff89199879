// Names that wait in the busy state: the lists have to be what they are where nothing waits.
#include "../resources/ids.h"
#include "../transfer/panes/rows.h"
#include "support/ledger.h"
#include "support/pane_window.h"

#include <algorithm>
#include <random>

namespace {

constexpr int LISTS[] = {IDC_DANDD_HOSTFILES, IDC_DANDD_LOCALFILES, IDC_DANDD_HOSTDIRS,
                         IDC_DANDD_LOCALDIRS};
constexpr int DIRS = 2; // from here on directories

bool readRecord(LRESULT nData, XferListItem* pItem)
{
    auto hRecord = reinterpret_cast<HGLOBAL>(nData);
    auto pFound = static_cast<const XferListItem*>(nData == 0 ? nullptr : GlobalLock(hRecord));
    if (pFound != nullptr) {
        *pItem = *pFound;
        GlobalUnlock(hRecord);
    }
    return pFound != nullptr;
}

LRESULT tellOf(HWND hwnd, int idList, UINT uMessage, LONG n = 0, LPARAM lParam = 0)
{
    return SendDlgItemMessageA(hwnd, idList, uMessage, WPARAM(n), lParam);
}

// All that a list answers about its rows.
std::string stateOf(HWND hwnd, int idList)
{
    std::string state;
    char szText[300];
    LRESULT cRows = tellOf(hwnd, idList, LB_GETCOUNT);
    for (LONG n = 0; n < cRows; ++n) {
        XferListItem item = {};
        tellOf(hwnd, idList, LB_GETTEXT, n, LPARAM(szText));
        bool fDirs = std::find(LISTS, LISTS + DIRS, idList) == LISTS + DIRS;
        LRESULT nData = tellOf(hwnd, idList, LB_GETITEMDATA, n);
        if (fDirs && readRecord(nData, &item)) {
            nData = item.nKind + 1;
        }
        state += szText + std::string(tellOf(hwnd, idList, LB_GETSEL, n) > 0 ? "*" : "") + " " +
                 std::to_string(nData) + std::to_string(item.nIndent) + "\n";
    }
    for (UINT uMessage : {LB_GETCARETINDEX, LB_GETTOPINDEX, LB_GETCURSEL, LB_GETANCHORINDEX}) {
        state += std::to_string(tellOf(hwnd, idList, uMessage)) + " ";
    }
    RECT rc = {};
    tellOf(hwnd, idList, LB_GETITEMRECT, 0, LPARAM(&rc));
    return state + std::to_string(rc.right - rc.left);
}

std::mt19937 s_random;

LONG upTo(LONG n)
{
    return LONG(s_random() % ULONG(n));
}

// A few letters that orders part on, so that names meet again, and numbers for long runs.
std::string anyName()
{
    constexpr char LETTERS[] = "aAbB-\xE9'.";
    std::string name;
    for (LONG n = upTo(4); n >= 0; --n) {
        name += LETTERS[upTo(sizeof LETTERS - 1)];
    }
    return upTo(3) == 0 ? name : "n" + std::to_string(upTo(60));
}

typedef int(KRHAULAPI* NameCall)(HWND, const char*);
constexpr NameCall NAME_CALLS[] = {nXferDandDAddHostFileName, nXferDandDRemoveHostFileName,
                                   nXferDandDAddHostSubDir, nXferDandDRemoveHostSubDir,
                                   nXferDandDAddLocalFileName};

// Drawn once, then done to each window.
typedef std::function<void(HWND)> Step;

Step callStep()
{
    NameCall pfn = NAME_CALLS[upTo(ARRAYSIZE(NAME_CALLS))];
    std::string name = anyName();
    return [=](HWND hwnd) { pfn(hwnd, name.c_str()); };
}

// Far more names than the lists have, as they come from a large directory.
Step bulkStep()
{
    NameCall pfn = NAME_CALLS[upTo(ARRAYSIZE(NAME_CALLS))];
    Strings names;
    for (LONG n = 1100; n >= 0; --n) {
        names.push_back("bulk" + std::to_string(upTo(3000)));
    }
    return [=](HWND hwnd) {
        for (const std::string& name : names) {
            pfn(hwnd, name.c_str());
        }
    };
}

Step messageStep()
{
    struct Choice {
        UINT uMessage;
        bool fFiles, fDirs, fText;
    };
    constexpr Choice CHOICES[] = {
        {LB_SETSEL, true, false, false},        {LB_SETCURSEL, false, true, false},
        {LB_SETCARETINDEX, true, true, false},  {LB_SETTOPINDEX, true, true, false},
        {LB_SETANCHORINDEX, true, true, false}, {LB_INSERTSTRING, true, true, true},
        {LB_ADDSTRING, true, true, true},       {LB_DELETESTRING, true, false, false},
        {LB_SETITEMDATA, true, false, false},   {LB_RESETCONTENT, true, false, false},
        {LB_GETCOUNT, true, true, false},       {LB_FINDSTRING, true, true, true},
    };
    const Choice& choice = CHOICES[upTo(ARRAYSIZE(CHOICES))];
    LONG nList = upTo(ARRAYSIZE(LISTS));
    if (nList < DIRS ? !choice.fFiles : !choice.fDirs) {
        return [](HWND) {};
    }
    // Rows of the caller's own put an end to all waiting: they are rare.
    if (choice.fText && choice.uMessage != LB_FINDSTRING && upTo(20) != 0) {
        return [](HWND) {};
    }
    LONG n = upTo(30);
    std::string text = anyName();
    return [=](HWND hwnd) {
        bool fSelect = choice.uMessage == LB_SETSEL;
        tellOf(hwnd, LISTS[nList], choice.uMessage, fSelect ? n % 2 : n,
               fSelect        ? n
               : choice.fText ? LPARAM(text.c_str())
                              : 7);
    };
}

Step otherStep()
{
    switch (LONG n = upTo(16)) {
    case 0:
        return vXferDandDRefreshLocalFiles;
    case 1:
        return [](HWND hwnd) { vXferDandDPrintWorkingDir(hwnd, "work", "/work"); };
    case 2:
        return nXferDandDClearHostFileList;
    case 3:
        return [flags = DWORD(upTo(16))](HWND hwnd) { nXferDandDClearHostFileInfo(hwnd, flags); };
    case 4:
        return bulkStep();
    case 5:
    case 6:
        return [](HWND) { pumpMessages(); };
    default:
        return [n](HWND hwnd) { vXferDandDSetBusyState(hwnd, n < 9 ? 0 : n < 15 ? 1 : 2); };
    }
}

class Changes : public PaneWindow {
protected:
    // A second window, in which nothing waits.
    void openBoth()
    {
        open();
        m_hwndPlain = createOnly(m_parent.hwnd());
        pumpMessages();
        SendMessageA(m_hwndPlain, WM_COMMAND, IDM_XFER_TWOPANE, 0);
        vXferDandDSetBusyState(m_hwndPlain, 0);
        for (HWND hwnd : {m_hwnd, m_hwndPlain}) {
            ShowWindow(hwnd, SW_HIDE);
        }
        both(nXferDandDClearHostFileList);
        both(vXferDandDRefreshLocalFiles);
    }
    ~Changes() override
    {
        nXferDandDDestroy(m_hwndPlain);
    }
    static XferWindowRecord* recordOf(HWND hwnd)
    {
        return reinterpret_cast<XferWindowRecord*>(GetWindowLongA(hwnd, DWL_USER));
    }
    void both(const Step& step) const
    {
        step(m_hwnd);
        // Nothing waits in a list that has rows of the caller's own.
        for (window::PaneList& list : recordOf(m_hwndPlain)->paneLists) {
            list.fForeignRows = 1;
        }
        step(m_hwndPlain);
    }
    void compare(int nStep) const
    {
        for (int id : LISTS) {
            ASSERT_EQ(stateOf(m_hwnd, id), stateOf(m_hwndPlain, id)) << id << " step " << nStep;
        }
        ASSERT_EQ(record()->fListsChanged, recordOf(m_hwndPlain)->fListsChanged) << nStep;
    }

    HWND m_hwndPlain = nullptr;
};

TEST_F(Changes, ThatWaitComeOutAsThoseMadeOneByOne)
{
    m_dir.makeFiles({"n1", "n2", "b.txt"});
    m_dir.makeDirs({"d1", "d2"});
    openBoth();
    for (unsigned nSeed = 1; nSeed <= 4; ++nSeed) {
        s_random.seed(nSeed);
        for (int nStep = 0; nStep < 4000; ++nStep) {
            LONG n = upTo(40);
            Step step = n < 34   ? callStep()
                        : n < 37 ? messageStep()
                        : n < 38 ? otherStep()
                                 : nullptr;
            if (step) {
                both(step);
            } else if (upTo(4) == 0) {
                compare(nStep);
                ASSERT_FALSE(HasFatalFailure()) << "seed " << nSeed;
            }
        }
    }
}

// ---- what a list refuses, and memory that runs out

// A list that holds no more than so many rows, as those of some versions do.
LONG s_cMost;
WNDPROC s_pfnList;

LRESULT CALLBACK fullProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    bool fFull = uMessage == LB_INSERTSTRING && SendMessageA(hwnd, LB_GETCOUNT, 0, 0) >= s_cMost;
    return fFull ? LB_ERRSPACE : CallWindowProcA(s_pfnList, hwnd, uMessage, wParam, lParam);
}

struct Feed {
    NameCall pfnAdd, pfnRemove;
    int idList;
};
constexpr Feed FEEDS[] = {
    {nXferDandDAddHostFileName, nXferDandDRemoveHostFileName, IDC_DANDD_HOSTFILES},
    {nXferDandDAddHostSubDir, nXferDandDRemoveHostSubDir, IDC_DANDD_HOSTDIRS},
};

// Names in disorder; every number up to the next power of two is a multiple of the step once.
void feed(HWND hwnd, NameCall pfn, int cNames)
{
    for (int n = 0; n < cNames; ++n) {
        pfn(hwnd, ("name" + std::to_string(n * 7919 % 4096)).c_str());
    }
}

TEST_F(Changes, AFullListHoldsTheNamesThatCameFirst)
{
    Ledger ledger;
    openBoth();
    for (const Feed& f : FEEDS) {
        for (int cNames : {100, 1500}) {
            s_cMost = cNames / 2;
            both([&](HWND hwnd) {
                HWND hwndList = GetDlgItem(hwnd, f.idList);
                nXferDandDClearHostFileList(hwnd);
                vXferDandDSetBusyState(hwnd, 1);
                s_pfnList = WNDPROC(SetWindowLongA(hwndList, GWL_WNDPROC, LONG(fullProc)));
                feed(hwnd, f.pfnAdd, cNames);
                f.pfnRemove(hwnd, "name0");
                f.pfnAdd(hwnd, "last");
                vXferDandDSetBusyState(hwnd, 0);
                SetWindowLongA(hwndList, GWL_WNDPROC, LONG(s_pfnList));
            });
            EXPECT_EQ(tell(f.idList, LB_GETCOUNT), s_cMost);
            compare(cNames);
        }
    }
    nXferDandDDestroy(m_hwndPlain);
    close();
    EXPECT_EQ(ledger.owed(), "");
}

// The records of directory rows need memory of their own: a row without one isn't there.
TEST_F(Changes, WithoutMemoryNoNameIsLost)
{
    Ledger ledger;
    open();
    hide();
    for (int nFail = 1; nFail < 12; ++nFail) {
        for (bool fForGood : {false, true}) {
            nXferDandDClearHostFileList(m_hwnd);
            vXferDandDSetBusyState(m_hwnd, 1);
            ledger.failAt(nFail, fForGood);
            feed(m_hwnd, nXferDandDAddHostFileName, 300);
            EXPECT_EQ(tell(IDC_DANDD_HOSTFILES, LB_GETCOUNT), 300) << nFail;
            ledger.failAt(0);
            feed(m_hwnd, nXferDandDAddHostSubDir, 300);
            ledger.failAt(nFail, fForGood);
            for (int id : {IDC_DANDD_HOSTFILES, IDC_DANDD_HOSTDIRS}) {
                Strings all = rows(id);
                EXPECT_TRUE(std::is_sorted(all.begin(), all.end(),
                                           [](const std::string& a, const std::string& b) {
                                               return lstrcmpA(a.c_str(), b.c_str()) < 0;
                                           }));
            }
            ledger.failAt(0);
            vXferDandDSetBusyState(m_hwnd, 0);
        }
    }
    // What waits at the end of a window goes with it.
    vXferDandDSetBusyState(m_hwnd, 1);
    feed(m_hwnd, nXferDandDAddHostSubDir, 5);
    close();
    EXPECT_EQ(ledger.owed(), "");
}

} // namespace
