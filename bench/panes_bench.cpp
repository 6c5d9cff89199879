#include "transfer_bench.h"
#include "measure.h"
#include "../include/krhaul.h"
#include "../resources/ids.h"

#include <math.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <vector>

namespace {

const int SIZES[] = {1000, 10000, 100000};

HWND s_hdlg;
XferFileList s_sent;

void KRHAULAPI takeSent(DWORD, DWORD, DWORD, XferFileList list, DWORD, const char*)
{
    s_sent = list;
}

void openWindow()
{
    HostCallbacks callbacks = {};
    callbacks.cbSize = sizeof callbacks;
    callbacks.pfnSendFiles = takeSent;
    s_hdlg = hdlgXferDandDCreate2("", nullptr, nullptr, 0, &callbacks, XFERVIEW_TWOPANE);
    pump();
    vXferDandDSetBusyState(s_hdlg, 0);
    // In sight, what a row costs is the drawing of the list and its scroll bar.
    ShowWindow(s_hdlg, SW_HIDE);
}

// A list box of the file lists' style, with or without sorting.
HWND makeList(DWORD dwStyle)
{
    return CreateWindowA("LISTBOX", "",
                         WS_CHILD | LBS_MULTICOLUMN | LBS_EXTENDEDSEL | LBS_NOINTEGRALHEIGHT |
                             WS_HSCROLL | dwStyle,
                         0, 0, 300, 200, s_hdlg, nullptr, nullptr, nullptr);
}

// ---- the floor of a refresh: one enumeration, a sort by keys, an append of every row

struct Name {
    std::string text, key;
    bool operator<(const Name& other) const
    {
        return key < other.key;
    }
};

std::vector<Name> enumerate()
{
    std::vector<Name> names;
    WIN32_FIND_DATAA find;
    char key[2048];
    HANDLE hFind = FindFirstFileA("*.*", &find);
    do {
        if ((find.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN)) == 0) {
            int cb =
                LCMapStringA(GetThreadLocale(), LCMAP_SORTKEY, find.cFileName, -1, key, sizeof key);
            names.push_back({find.cFileName, std::string(key, size_t(cb))});
        }
    } while (FindNextFileA(hFind, &find));
    FindClose(hFind);
    return names;
}

void append(HWND hwndList, const std::vector<Name>& names)
{
    SendMessageA(hwndList, WM_SETREDRAW, FALSE, 0);
    SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
    for (const Name& name : names) {
        SendMessageA(hwndList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.text.c_str()));
    }
    SendMessageA(hwndList, WM_SETREDRAW, TRUE, 0);
}

void benchRefresh(const char* pszFolder, int cFiles)
{
    char szWhat[64];
    char szMask[] = "*.*";
    int cRounds = cFiles > 10000 ? 2 : 5;
    SetCurrentDirectoryA(pszFolder);
    SetCurrentDirectoryA(std::to_string(cFiles).c_str());
    HWND hwndSorted = makeList(LBS_SORT);
    HWND hwndPlain = makeList(0);
    double dOurs = best([] { vXferDandDRefreshLocalFiles(s_hdlg); }, cRounds);
    double dFloor = best(
        [=] {
            std::vector<Name> names = enumerate();
            std::sort(names.begin(), names.end());
            append(hwndPlain, names);
        },
        cRounds);
    sprintf(szWhat, "local refresh, %d files", cFiles);
    print(szWhat, dOurs * 1e3, "ms", dFloor * 1e3, "one pass, sort keys, append", dOurs / dFloor);
    double dDir = best(
        [&] {
            SendMessageA(hwndSorted, LB_RESETCONTENT, 0, 0);
            SendMessageA(hwndSorted, LB_DIR, 0, reinterpret_cast<LPARAM>(szMask));
        },
        cRounds);
    print(szWhat, dOurs * 1e3, "ms", dDir * 1e3, "LB_DIR, sorted, measures nothing", dOurs / dDir);
    DestroyWindow(hwndSorted);
    DestroyWindow(hwndPlain);
}

// ---- the host side

std::vector<std::string> shuffledNames(int cNames)
{
    char szName[32];
    std::vector<std::string> names;
    for (int n = 0; n < cNames; ++n) {
        sprintf(szName, "file%06d.dat", n);
        names.push_back(szName);
    }
    // The same order in every run.
    unsigned nSeed = 12345;
    for (size_t n = names.size() - 1; n > 0; --n) {
        nSeed = nSeed * 1103515245 + 12345;
        std::swap(names[n], names[(nSeed >> 8) % (n + 1)]);
    }
    return names;
}

// Inserts in the middle, on the average, as names in random order do; nothing is searched.
double insertionFloor(const std::vector<std::string>& names, int idList)
{
    HWND hwndList = GetDlgItem(s_hdlg, idList);
    double dTime = best(
        [&] {
            SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
            unsigned nSeed = 777;
            for (size_t n = 0; n < names.size(); ++n) {
                nSeed = nSeed * 1103515245 + 12345;
                SendMessageA(hwndList, LB_INSERTSTRING, (nSeed >> 8) % (n + 1),
                             reinterpret_cast<LPARAM>(names[n].c_str()));
            }
        },
        2);
    SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
    return dTime;
}

// The same rows, appended in their order.
double appendFloor(std::vector<std::string> names, int idList)
{
    HWND hwndList = GetDlgItem(s_hdlg, idList);
    std::sort(names.begin(), names.end());
    double dTime = best(
        [&] {
            SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
            for (const std::string& name : names) {
                SendMessageA(hwndList, LB_INSERTSTRING, WPARAM(-1),
                             reinterpret_cast<LPARAM>(name.c_str()));
            }
        },
        2);
    SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
    return dTime;
}

// One of the two host lists, and the calls that work on it.
struct HostSide {
    const char* pszWhat;
    int idList;
    int(KRHAULAPI* pfnAdd)(HWND, const char*);
    int(KRHAULAPI* pfnRemove)(HWND, const char*);
};
const HostSide FILES = {"host files", IDC_DANDD_HOSTFILES, nXferDandDAddHostFileName,
                        nXferDandDRemoveHostFileName};
const HostSide DIRECTORIES = {"host directories", IDC_DANDD_HOSTDIRS, nXferDandDAddHostSubDir,
                              nXferDandDRemoveHostSubDir};

void addAll(const HostSide& side, const std::vector<std::string>& names)
{
    nXferDandDClearHostFileList(s_hdlg);
    for (const std::string& name : names) {
        side.pfnAdd(s_hdlg, name.c_str());
    }
}

// Gives what the library takes beyond the list box's own insertions.
double benchHost(const HostSide& side, int cNames)
{
    char szWhat[64];
    std::vector<std::string> names = shuffledNames(cNames);
    double dFloor = insertionFloor(names, side.idList);
    double dAppend = appendFloor(names, side.idList);
    double dAdd = best([&] { addAll(side, names); }, 2);
    nXferDandDClearHostFileList(s_hdlg);
    sprintf(szWhat, "%d %s, random", cNames, side.pszWhat);
    print(szWhat, dAdd * 1e3, "ms", dFloor * 1e3, "the list box's own insertions", dAdd / dFloor);
    print(szWhat, dAdd * 1e3, "ms", dAppend * 1e3, "an append in order", dAdd / dAppend);
    return dAdd - dFloor;
}

// How the library's own part grows, beside N log N.
void benchGrowth(const HostSide& side, const std::vector<int>& sizes)
{
    char szWhat[64];
    double dBefore = 0;
    for (size_t n = 0; n < sizes.size(); ++n) {
        double dOwn = benchHost(side, sizes[n]);
        if (n > 0) {
            double dGrowth = dOwn / dBefore;
            double dExpected =
                sizes[n] * log(double(sizes[n])) / (sizes[n - 1] * log(double(sizes[n - 1])));
            sprintf(szWhat, "%s, %d to %d, own part", side.pszWhat, sizes[n - 1], sizes[n]);
            print(szWhat, dGrowth, "times", dExpected, "N log N", dGrowth / dExpected);
        }
        dBefore = dOwn;
    }
}

// In sight, in a busy state, where the list isn't drawn meanwhile, and out of it. The window is
// shown with the lists empty, so that nothing else is drawn.
void benchInSight(const HostSide& side, int cNames)
{
    char szWhat[64];
    std::vector<std::string> names = shuffledNames(cNames);
    double dAdd[2];
    double dRemove[2];
    ShowWindow(s_hdlg, SW_SHOW);
    for (DWORD fBusy = 0; fBusy < 2; ++fBusy) {
        vXferDandDSetBusyState(s_hdlg, fBusy);
        pump();
        double dStart = seconds();
        addAll(side, names);
        pump();
        dAdd[fBusy] = seconds() - dStart;
        dStart = seconds();
        for (const std::string& name : names) {
            side.pfnRemove(s_hdlg, name.c_str());
        }
        pump();
        dRemove[fBusy] = seconds() - dStart;
    }
    vXferDandDSetBusyState(s_hdlg, 0);
    nXferDandDClearHostFileList(s_hdlg);
    ShowWindow(s_hdlg, SW_HIDE);
    sprintf(szWhat, "%d %s in sight, added", cNames, side.pszWhat);
    print(szWhat, dAdd[1] * 1e3, "ms", dAdd[0] * 1e3, "drawn each time", dAdd[1] / dAdd[0]);
    sprintf(szWhat, "%d %s in sight, removed", cNames, side.pszWhat);
    print(szWhat, dRemove[1] * 1e3, "ms", dRemove[0] * 1e3, "drawn each time",
          dRemove[1] / dRemove[0]);
}

// ---- a large selection on its way to the callback

void benchSend()
{
    constexpr int ROWS = 10000;
    HWND hwndFiles = GetDlgItem(s_hdlg, IDC_DANDD_LOCALFILES);
    SendMessageA(hwndFiles, LB_RESETCONTENT, 0, 0);
    for (int n = 0; n < ROWS; ++n) {
        char szName[32];
        sprintf(szName, "file%06d.dat", n);
        SendMessageA(hwndFiles, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(szName));
    }
    SendMessageA(hwndFiles, LB_SETSEL, TRUE, -1);
    double dSend = best([] {
        SendMessageA(s_hdlg, WM_COMMAND, IDM_XFER_TRANSFER, 0);
        XferFileList_vDestroy(s_sent);
    });
    double dRead = best([=] {
        char szName[MAX_PATH];
        for (int n = 0; n < ROWS; ++n) {
            SendMessageA(hwndFiles, LB_GETSEL, WPARAM(n), 0);
            SendMessageA(hwndFiles, LB_GETTEXT, WPARAM(n), reinterpret_cast<LPARAM>(szName));
        }
    });
    print("sending 10,000 selected rows, a row", dSend / ROWS * 1e9, "ns", dRead / ROWS * 1e9,
          "reading the rows alone", dSend / dRead);
}

} // namespace

void benchPanes(const char* pszFolder)
{
    openWindow();
    for (int cFiles : SIZES) {
        if (pszFolder != nullptr) {
            benchRefresh(pszFolder, cFiles);
        }
    }
    benchGrowth(FILES, {1000, 10000, 100000});
    benchGrowth(DIRECTORIES, {1000, 10000});
    benchInSight(FILES, 1000);
    benchInSight(DIRECTORIES, 1000);
    benchSend();
    nXferDandDDestroy(s_hdlg);
}
