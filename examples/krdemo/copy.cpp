#include "copy.h"
#include "job.h"
#include "worker.h"

#include <stdio.h>

namespace {

struct Copy {
    DemoOptions options;
    HWND hwndMain;
    HWND hwndLog;
    DWORD cFiles, cCopied;
};

Copy s_copy = {};

void log(const char* pszLine)
{
    LRESULT nRow = SendMessageA(s_copy.hwndLog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pszLine));
    SendMessageA(s_copy.hwndLog, LB_SETTOPINDEX, WPARAM(nRow), 0);
}

void onProgress(DWORD, DWORD)
{
}

void onFile(const char* pszTarget, DWORD cbSize, const char* pszFailure)
{
    char szLine[MAX_PATH + 80];
    if (pszFailure == nullptr) {
        ++s_copy.cCopied;
        snprintf(szLine, sizeof szLine, "%s, %lu bytes", pszTarget, cbSize);
    } else {
        snprintf(szLine, sizeof szLine, "%s: %s", pszTarget, pszFailure);
    }
    log(szLine);
}

void onEnd(bool fStopped)
{
    log(fStopped ? "Stopped." : "Done.");
}

// Adds a name to the list in both columns. Gives false if there is no memory.
bool addName(XferFileList* pList, const char* pszName)
{
    LONG n = XferFileList_cGetSize(*pList);
    return XferFileList_fSetSize(pList, n + 1, XFERLIST_KEEPGROWTH) &&
           XferFileList_fSetString(*pList, n, XFERLIST_LOCAL, pszName) &&
           XferFileList_fSetString(*pList, n, XFERLIST_HOST, pszName);
}

// Lists all files of a folder. Gives false, with no list, if there are none or no memory.
bool listFiles(const char* pszFolder, XferFileList* pList)
{
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    if (!joinPath(szMask, pszFolder, "*") || !XferFileList_fCreate(pList)) {
        return false;
    }
    bool fListed = true;
    HANDLE hFind = FindFirstFileA(szMask, &find);
    BOOL fFound = hFind != INVALID_HANDLE_VALUE;
    for (; fFound && fListed; fFound = FindNextFileA(hFind, &find)) {
        fListed = (find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
                  addName(pList, find.cFileName);
    }
    FindClose(hFind);
    if (fListed && XferFileList_cGetSize(*pList) > 0) {
        return true;
    }
    XferFileList_vDestroy(*pList);
    return false;
}

} // namespace

bool startCopy(const DemoOptions* pOptions, HWND hwndMain, HWND hwndLog)
{
    XferFileList list;
    s_copy = {};
    s_copy.options = *pOptions;
    s_copy.hwndMain = hwndMain;
    s_copy.hwndLog = hwndLog;
    CreateDirectoryA(pOptions->szSecond, nullptr);
    if (!listFiles(pOptions->szFirst, &list)) {
        return false;
    }
    s_copy.cFiles = DWORD(XferFileList_cGetSize(list));
    HostAddress address = {};
    lstrcpynA(address.szServer, pOptions->szSecond, MAX_PATH);
    address.cbPerSecond = pOptions->cbPerSecond;
    if (!openWorker(&FOLDER_HOST, &address, hwndMain)) {
        XferFileList_vDestroy(list);
        return false;
    }
    JobOptions job = {"Copying files",
                      s_copy.options.szFirst,
                      nullptr,
                      true,
                      XFERTYPE_BINARY,
                      false,
                      hwndMain,
                      0,
                      true,
                      nullptr,
                      {onProgress, onFile, onEnd},
                      s_copy.options.szLanguage};
    return startJob(&job, list);
}

void continueCopy()
{
    if (isJobWindowDismissed()) {
        closeJobWindow();
    }
}

void endCopy()
{
    closeWorker();
    closeJobWindow();
}

bool hasCopiedAll()
{
    return s_copy.cFiles > 0 && s_copy.cCopied == s_copy.cFiles;
}

void copyPercent(HWND hwndMain, WPARAM nPercent)
{
    char szTitle[80];
    snprintf(szTitle, sizeof szTitle, "%u%% - Sample caller", unsigned(nPercent));
    SetWindowTextA(hwndMain, szTitle);
}
