// The benchmark: each measurement beside a yardstick, in one run. Only the ratios mean
// something beyond this machine.
#include "measure.h"
#include "toolbar_bench.h"
#include "transfer_bench.h"
#include "../include/krhaul.h"

#include <stdlib.h>
#include <string.h>

namespace {

void benchCountInfo()
{
    constexpr int CALLS = 5000000;
    HWND windows[XFERSTAT_MAXWINDOWS];
    for (HWND& hwnd : windows) {
        hwnd = hdlgXferStatCreate("", 0, nullptr, 0, 1);
    }
    HWND hwndLast = windows[XFERSTAT_MAXWINDOWS - 1];
    double dCall = best([=] {
        for (DWORD n = 0; n < CALLS; ++n) {
            nXferStatCountInfo(hwndLast, n);
        }
    });
    double dEmpty = best([] {
        for (int n = 0; n < CALLS; ++n) {
            vXferStatDummy();
        }
    });
    print("nXferStatCountInfo, last of eight", dCall / CALLS * 1e9, "ns", dEmpty / CALLS * 1e9,
          "an empty export", dCall / dEmpty);
    for (HWND hwnd : windows) {
        nXferStatDestroy(hwnd);
    }
}

constexpr LONG NAMES = 100000;
char s_names[NAMES][16];
volatile int s_nSink;

void buildList()
{
    char szName[MAX_PATH];
    XferFileList list;
    XferFileList_fCreate(&list);
    XferFileList_fSetSize(&list, NAMES, XFERLIST_KEEPGROWTH);
    for (LONG n = 0; n < NAMES; ++n) {
        XferFileList_fSetString(list, n, XFERLIST_LOCAL, s_names[n]);
    }
    for (LONG n = 0; n < NAMES; ++n) {
        s_nSink = *XferFileList_lpszGetString(list, n, XFERLIST_LOCAL, szName, 64);
    }
    XferFileList_vDestroy(list);
}

void buildPlain()
{
    char szName[MAX_PATH];
    auto ppNames = static_cast<char**>(malloc(NAMES * sizeof(char*)));
    for (LONG n = 0; n < NAMES; ++n) {
        ppNames[n] = static_cast<char*>(malloc(strlen(s_names[n]) + 1));
        strcpy(ppNames[n], s_names[n]);
    }
    for (LONG n = 0; n < NAMES; ++n) {
        strcpy(szName, ppNames[n]);
        s_nSink = *szName;
    }
    for (LONG n = 0; n < NAMES; ++n) {
        free(ppNames[n]);
    }
    free(ppNames);
}

void benchFileList()
{
    for (LONG n = 0; n < NAMES; ++n) {
        sprintf(s_names[n], "file%06ld.dat", n);
    }
    double dList = best(buildList);
    double dPlain = best(buildPlain);
    print("list of 100,000 names", dList * 1e3, "ms", dPlain * 1e3, "malloc and strcpy",
          dList / dPlain);
}

int KRHAULAPI takePiece(DWORD, const char* pchText, LONG cchText, DWORD*)
{
    s_nSink = pchText[cchText - 1];
    return 0;
}

void benchHostString()
{
    constexpr size_t CCH = 10000000;
    auto pszTemplate = static_cast<char*>(malloc(CCH + 1));
    memset(pszTemplate, 'x', CCH);
    pszTemplate[CCH] = '\0';
    for (size_t n = 0; n < CCH; n += 100) {
        memcpy(pszTemplate + n, "@@", 2);
    }
    XferSendProc volatile pfnSend = takePiece;
    double dTranslate = best([=] { nXferTranslateHCS(pszTemplate, "host", "local", pfnSend, 0); });
    double dLoop = best([=] {
        DWORD dwScratch;
        for (const char* pch = pszTemplate; *pch != '\0'; ++pch) {
            pfnSend(0, pch, 1, &dwScratch);
        }
    });
    double dMegabytes = CCH / 1e6;
    print("nXferTranslateHCS", dMegabytes / dTranslate, "MB/s", dMegabytes / dLoop,
          "a loop of the callback alone", dTranslate / dLoop);
    free(pszTemplate);
}

void benchLoad()
{
    char szFile[MAX_PATH];
    HMODULE hLibrary = GetModuleHandleA("KRHAUL.DLL");
    GetModuleFileNameA(hLibrary, szFile, MAX_PATH);
    WIN32_FIND_DATAA find = {};
    FindClose(FindFirstFileA(szFile, &find));
    // A copy under another name really is loaded each time; the other is a module of
    // resources alone.
    CopyFileA(szFile, "BENCH.DLL", FALSE);
    double dLoad = best([] { FreeLibrary(LoadLibraryA("BENCH.DLL")); });
    double dResources = best([] { FreeLibrary(LoadLibraryA("XFREN.DLL")); });
    DeleteFileA("BENCH.DLL");
    print("loading KRHAUL.DLL", dLoad * 1e3, "ms", dResources * 1e3, "loading XFREN.DLL",
          dLoad / dResources);
    printf("%-34s %10lu bytes\n", "size of KRHAUL.DLL", find.nFileSizeLow);
}

void benchToolbar(BenchToolbarLook look, const char* pszWhat)
{
    constexpr int REPAINTS = 500;
    BenchToolbars toolbars = makeBenchToolbars(GetModuleHandleA("KRHAUL.DLL"));
    setBenchToolbarLook(&toolbars, look);
    double dOurs = best([=] { repaintBenchToolbar(toolbars.hwndOurs, REPAINTS); });
    double dLibrary = best([=] { repaintBenchToolbar(toolbars.hwndLibrary, REPAINTS); });
    print(pszWhat, dOurs / REPAINTS * 1e6, "us", dLibrary / REPAINTS * 1e6,
          "the common controls' toolbar", dOurs / dLibrary);
    destroyBenchToolbars(&toolbars);
}

void benchBase(const char*)
{
    benchCountInfo();
    benchFileList();
    benchHostString();
    benchLoad();
}

void benchToolbars(const char*)
{
    benchToolbar(BENCH_IDLE, "repainting the toolbar, idle");
    benchToolbar(BENCH_BUSY, "repainting the toolbar, busy");
}

struct Group {
    const char* pszName;
    void (*pfnRun)(const char* pszFolder);
};

constexpr Group GROUPS[] = {
    {"base", benchBase},   {"toolbar", benchToolbars}, {"frame", benchFrame},
    {"panes", benchPanes}, {"waits", benchWaits},
};

} // namespace

// bench FOLDER [GROUP]: the folder of scripts/bench, and the one group that is wanted.
int main(int argc, char** argv)
{
    for (const Group& group : GROUPS) {
        if (argc < 3 || strcmp(argv[2], group.pszName) == 0) {
            group.pfnRun(argc > 1 ? argv[1] : nullptr);
        }
    }
    return 0;
}
