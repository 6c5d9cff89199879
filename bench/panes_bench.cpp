#include "transfer_bench.h"
#include "measure.h"
#include "../include/krhaul.h"
#include "../resources/ids.h"

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

Name nameOf(const char* pszText)
{
    char key[2048];
    int cb = LCMapStringA(GetThreadLocale(), LCMAP_SORTKEY, pszText, -1, key, sizeof key);
    return {pszText, std::string(key, size_t(cb))};
}

std::vector<Name> enumerate()
{
    std::vector<Name> names;
    WIN32_FIND_DATAA find;
    HANDLE hFind = FindFirstFileA("*.*", &find);
    do {
        if ((find.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN)) == 0) {
            names.push_back(nameOf(find.cFileName));
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

std::vector<std::string> sorted(std::vector<std::string> names)
{
    std::sort(names.begin(), names.end());
    return names;
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

// The floor: one sort by keys, and an append of rows in order.
double sortAndAppend(const std::vector<std::string>& names, const std::vector<std::string>& rows,
                     int idList)
{
    HWND hwndList = GetDlgItem(s_hdlg, idList);
    double dTime = best(
        [&] {
            std::vector<Name> keys;
            for (const std::string& name : names) {
                keys.push_back(nameOf(name.c_str()));
            }
            std::sort(keys.begin(), keys.end());
            SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
            for (const std::string& row : rows) {
                SendMessageA(hwndList, LB_INSERTSTRING, WPARAM(-1),
                             reinterpret_cast<LPARAM>(row.c_str()));
            }
        },
        3);
    SendMessageA(hwndList, LB_RESETCONTENT, 0, 0);
    return dTime;
}

void clearHost()
{
    vXferDandDSetBusyState(s_hdlg, 0);
    nXferDandDClearHostFileList(s_hdlg);
    vXferDandDSetBusyState(s_hdlg, 1);
    pump();
}

// Calls of one busy period, until the list has the rows.
double timeCalls(const HostSide& side, int(KRHAULAPI* pfn)(HWND, const char*),
                 const std::vector<std::string>& names)
{
    double dStart = seconds();
    for (const std::string& name : names) {
        pfn(s_hdlg, name.c_str());
    }
    SendDlgItemMessageA(s_hdlg, side.idList, LB_GETCOUNT, 0, 0);
    return seconds() - dStart;
}

double timeAdding(const HostSide& side, const std::vector<std::string>& names)
{
    double dBest = 1e9;
    for (int n = 0; n < 3; ++n) {
        clearHost();
        dBest = std::min(dBest, timeCalls(side, side.pfnAdd, names));
    }
    clearHost();
    return dBest;
}

double timeRemoving(const HostSide& side, const std::vector<std::string>& names,
                    const std::vector<std::string>& gone)
{
    double dBest = 1e9;
    for (int n = 0; n < 3; ++n) {
        clearHost();
        timeCalls(side, side.pfnAdd, names);
        dBest = std::min(dBest, timeCalls(side, side.pfnRemove, gone));
    }
    clearHost();
    return dBest;
}

void benchHost(const HostSide& side, int cNames)
{
    char szWhat[64];
    std::vector<std::string> names = shuffledNames(cNames);
    double dFloor = sortAndAppend(names, sorted(names), side.idList);
    double dRandom = timeAdding(side, names);
    sprintf(szWhat, "%d %s, random", cNames, side.pszWhat);
    print(szWhat, dRandom * 1e3, "ms", dFloor * 1e3, "sort keys, append", dRandom / dFloor);
    double dSorted = timeAdding(side, sorted(names));
    sprintf(szWhat, "%d %s, sorted", cNames, side.pszWhat);
    print(szWhat, dSorted * 1e3, "ms", dFloor * 1e3, "sort keys, append", dSorted / dFloor);
    // Every second row, in disorder.
    std::vector<std::string> gone(names.begin(), names.begin() + cNames / 2);
    std::vector<std::string> left(names.begin() + cNames / 2, names.end());
    double dLeft = sortAndAppend(gone, sorted(left), side.idList);
    double dRemove = timeRemoving(side, names, gone);
    sprintf(szWhat, "every second of %d removed", cNames);
    print(szWhat, dRemove * 1e3, "ms", dLeft * 1e3, "sort keys, append what stays",
          dRemove / dLeft);
}

// A name that comes alone is searched and inserted by messages.
double timeSingly(const std::vector<std::string>& names)
{
    HWND hwndList = GetDlgItem(s_hdlg, IDC_DANDD_HOSTFILES);
    double dStart = seconds();
    for (const std::string& name : names) {
        char szText[MAX_PATH];
        LRESULT nLow = 0;
        LRESULT nHigh = SendMessageA(hwndList, LB_GETCOUNT, 0, 0);
        while (nLow < nHigh) {
            LRESULT nMiddle = (nLow + nHigh) / 2;
            SendMessageA(hwndList, LB_GETTEXTLEN, WPARAM(nMiddle), 0);
            SendMessageA(hwndList, LB_GETTEXT, WPARAM(nMiddle), reinterpret_cast<LPARAM>(szText));
            (lstrcmpA(szText, name.c_str()) < 0 ? nLow : nHigh) = nMiddle + (nLow == nMiddle);
        }
        SendMessageA(hwndList, LB_INSERTSTRING, WPARAM(nLow),
                     reinterpret_cast<LPARAM>(name.c_str()));
    }
    return seconds() - dStart;
}

void benchFewAmongMany()
{
    std::vector<std::string> many = shuffledNames(100000);
    std::vector<std::string> few(many.begin(), many.begin() + 100);
    many.erase(many.begin(), many.begin() + 100);
    double dTimes[2];
    for (double& dTime : dTimes) {
        clearHost();
        timeCalls(FILES, FILES.pfnAdd, many);
        vXferDandDSetBusyState(s_hdlg, 0);
        dTime = &dTime == dTimes ? timeCalls(FILES, FILES.pfnAdd, few) : timeSingly(few);
    }
    clearHost();
    print("100 names to 100,000, not busy", dTimes[0] * 1e3, "ms", dTimes[1] * 1e3,
          "search and insertion by messages", dTimes[0] / dTimes[1]);
}

// Used bytes of all heaps of the process.
size_t usedMemory()
{
    HANDLE heaps[64];
    size_t cbUsed = 0;
    DWORD cHeaps = std::min(GetProcessHeaps(ARRAYSIZE(heaps), heaps), DWORD(ARRAYSIZE(heaps)));
    for (DWORD n = 0; n < cHeaps; ++n) {
        PROCESS_HEAP_ENTRY entry = {};
        while (HeapWalk(heaps[n], &entry)) {
            cbUsed += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
    }
    return cbUsed;
}

void benchMemory()
{
    std::vector<std::string> names = shuffledNames(100000);
    clearHost();
    size_t cbBefore = usedMemory();
    for (const std::string& name : names) {
        nXferDandDAddHostFileName(s_hdlg, name.c_str());
    }
    size_t cbWaiting = usedMemory() - cbBefore;
    clearHost();
    printf("memory of 100,000 names that wait: %.1f bytes a name beside %.1f of text, %.1f left\n",
           double(cbWaiting) / 1e5, double(names[0].size() + 1),
           double(usedMemory() - cbBefore) / 1e5);
}

// In sight, in a busy state, where the list isn't drawn meanwhile. The window is shown with the
// lists empty, so that nothing else is drawn.
void benchInSight(const HostSide& side, int cNames)
{
    char szWhat[64];
    std::vector<std::string> names = shuffledNames(cNames);
    double dTimes[2] = {1e9, 1e9};
    ShowWindow(s_hdlg, SW_SHOW);
    for (int n = 0; n < 3; ++n) {
        clearHost();
        for (auto pfn : {side.pfnAdd, side.pfnRemove}) {
            double dStart = seconds();
            timeCalls(side, pfn, names);
            pump();
            double* pdTime = &dTimes[pfn == side.pfnRemove];
            *pdTime = std::min(*pdTime, seconds() - dStart);
        }
    }
    ShowWindow(s_hdlg, SW_HIDE);
    sprintf(szWhat, "%d %s in sight, removed", cNames, side.pszWhat);
    print(szWhat, dTimes[1] * 1e3, "ms", dTimes[0] * 1e3, "added", dTimes[1] / dTimes[0]);
}

// From the first call to a list that is drawn, with the width of its columns.
void benchWaitForHost()
{
    std::vector<std::string> names = shuffledNames(100000);
    double dFloor = sortAndAppend(names, sorted(names), FILES.idList);
    clearHost();
    vXferDandDSetBusyState(s_hdlg, 0);
    ShowWindow(s_hdlg, SW_SHOW);
    pump();
    double dStart = seconds();
    vXferDandDSetBusyState(s_hdlg, 1);
    for (const std::string& name : names) {
        nXferDandDAddHostFileName(s_hdlg, name.c_str());
    }
    vXferDandDSetBusyState(s_hdlg, 0);
    pump();
    UpdateWindow(s_hdlg);
    double dTime = seconds() - dStart;
    ShowWindow(s_hdlg, SW_HIDE);
    print("100,000 files from a host, shown", dTime * 1e3, "ms", dFloor * 1e3, "sort keys, append",
          dTime / dFloor);
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
        benchHost(FILES, cFiles);
    }
    benchHost(DIRECTORIES, 1000);
    benchHost(DIRECTORIES, 10000);
    benchFewAmongMany();
    benchMemory();
    benchInSight(FILES, 1000);
    benchInSight(DIRECTORIES, 1000);
    vXferDandDSetBusyState(s_hdlg, 0);
    benchSend();
    nXferDandDDestroy(s_hdlg);
}

void benchWaits(const char* pszFolder)
{
    printf("what a user waits for:\n");
    openWindow();
    if (pszFolder != nullptr) {
        benchRefresh(pszFolder, 100000);
    }
    benchWaitForHost();
    nXferDandDDestroy(s_hdlg);
}
