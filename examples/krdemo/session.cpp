#include "session.h"
#include "job.h"
#include "move.h"
#include "tasks.h"
#include "../../include/krhaul.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr DWORD CONFIRM_ALL = 31;
constexpr DWORD CONFIRM_LOCALREPLACE = 1; // the flags that are ours
constexpr DWORD CONFIRM_HOSTDELETE = 8;
constexpr DWORD CONFIRM_HOSTREPLACE = 16;
constexpr char ALL_FILES[] = "*";

struct Session {
    HWND hdlg;
    WNDPROC pfnProc; // the window's procedure before ours
    DemoOptions options;
    char szFilter[MAX_PATH];
    DWORD dwConfirmFlags;
    char szPath[MAX_PATH]; // the host's current directory, and what is in it
    DirEntry* pEntries;
    DWORD cEntries;
    bool fSending;
    char szTarget[MAX_PATH]; // folder that the running job moves files into
    bool fTargetShown;
};

Session s_session = {};

void say(const char* pszFormat, ...)
{
    char szLine[2 * MAX_PATH + MAX_WORDS];
    va_list arguments;
    va_start(arguments, pszFormat);
    vsnprintf(szLine, sizeof szLine, pszFormat, arguments);
    va_end(arguments);
    vXferDandDInfoLine(s_session.hdlg, szLine);
}

void setBusy(bool fBusy)
{
    vXferDandDSetBusyState(s_session.hdlg, fBusy);
}

// ---- the host panes

// "*" stands for any characters, "?" for one.
bool passesFilter(const char* pszName, const char* pszFilter)
{
    if (*pszFilter == '*') {
        return passesFilter(pszName, pszFilter + 1) ||
               (*pszName != '\0' && passesFilter(pszName + 1, pszFilter));
    }
    if (*pszName == '\0' || *pszFilter == '\0') {
        return *pszName == *pszFilter;
    }
    return (*pszFilter == '?' || *pszFilter == *pszName) &&
           passesFilter(pszName + 1, pszFilter + 1);
}

void showRow(const DirEntry* pEntry)
{
    if (pEntry->fDirectory) {
        nXferDandDAddHostSubDir(s_session.hdlg, pEntry->szName);
    } else if (passesFilter(pEntry->szName, s_session.szFilter)) {
        nXferDandDAddHostFileName(s_session.hdlg, pEntry->szName);
    }
}

// Inside a busy period, whose end gives the columns their width.
void fillHostPanes()
{
    setBusy(true);
    nXferDandDClearHostFileInfo(s_session.hdlg,
                                XFERCLEAR_FILES | XFERCLEAR_SUBDIRS | XFERCLEAR_WORKDIR);
    vXferDandDPrintWorkingDir(s_session.hdlg, s_session.szPath, s_session.szPath);
    for (DWORD n = 0; n < s_session.cEntries; ++n) {
        showRow(&s_session.pEntries[n]);
    }
    setBusy(isTaskRunning());
}

DirEntry* findEntry(const char* pszName)
{
    for (DWORD n = 0; n < s_session.cEntries; ++n) {
        if (strcmp(s_session.pEntries[n].szName, pszName) == 0) {
            return &s_session.pEntries[n];
        }
    }
    return nullptr;
}

void removeEntry(const char* pszName)
{
    DirEntry* pEntry = findEntry(pszName);
    if (pEntry == nullptr) {
        return;
    }
    if (pEntry->fDirectory) {
        nXferDandDRemoveHostSubDir(s_session.hdlg, pszName);
    } else {
        nXferDandDRemoveHostFileName(s_session.hdlg, pszName);
    }
    *pEntry = s_session.pEntries[--s_session.cEntries];
}

void addEntry(const char* pszName, DWORD cbSize, bool fDirectory)
{
    removeEntry(pszName);
    auto pEntries = static_cast<DirEntry*>(
        realloc(s_session.pEntries, (s_session.cEntries + 1) * sizeof(DirEntry)));
    if (pEntries == nullptr) {
        return;
    }
    s_session.pEntries = pEntries;
    DirEntry* pEntry = &pEntries[s_session.cEntries++];
    lstrcpynA(pEntry->szName, pszName, MAX_PATH);
    pEntry->cbSize = cbSize;
    pEntry->fDirectory = fDirectory;
    showRow(pEntry);
}

DWORD sizeOfHostFile(const char* pszName)
{
    const DirEntry* pEntry = findEntry(pszName);
    return pEntry != nullptr ? pEntry->cbSize : 0;
}

// ---- what the tasks tell

void showDirectory(Report* pReport)
{
    free(s_session.pEntries);
    s_session.pEntries = pReport->pEntries;
    s_session.cEntries = pReport->cEntries;
    pReport->pEntries = nullptr;
    lstrcpynA(s_session.szPath, pReport->szName, MAX_PATH);
    noteHostPath(s_session.szPath);
    fillHostPanes();
}

void showLine(Report* pReport)
{
    say("%s", pReport->szText);
}

void showRemoved(Report* pReport)
{
    removeEntry(pReport->szName);
}

void showAdded(Report* pReport)
{
    if (strchr(pReport->szName, '/') == nullptr) {
        addEntry(pReport->szName, pReport->cbDone, pReport->nNumber != 0);
    }
}

void showCount(Report* pReport)
{
    vXferDandDUpdateThermometer(s_session.hdlg, LONG(pReport->cbDone / 1024));
}

void showTaskEnd(bool fStopped)
{
    vXferDandDUpdateThermometer(s_session.hdlg, -1);
    if (fStopped) {
        vXferDandDDisplayDILText(s_session.hdlg, "Stopped.");
    }
    setBusy(false);
}

// Takes the names of the task.
void runHostTask(TaskProc pfnTask, HostTask* pTask)
{
    pTask->shows = {showDirectory, showLine, showRemoved, showAdded, showCount};
    setBusy(true);
    if (!startTask(pfnTask, pTask, sizeof *pTask, showTaskEnd)) {
        free(pTask->pNames);
        say("The host is busy.");
        setBusy(isTaskRunning());
    }
}

void runHostTask(TaskProc pfnTask, const char* pszName)
{
    HostTask task = {};
    lstrcpynA(task.szName, pszName, MAX_PATH);
    runHostTask(pfnTask, &task);
}

void refreshHost()
{
    runHostTask(enterDirectory, "");
}

// ---- transfers

void showProgress(DWORD cbDone, DWORD cbAll)
{
    vXferDandDSetThermometer(s_session.hdlg, LONG(cbAll / 1024));
    vXferDandDUpdateThermometer(s_session.hdlg, LONG(cbDone / 1024));
}

// The user can go to another local directory while files arrive.
bool isTargetShown()
{
    char szShown[MAX_PATH] = "";
    GetCurrentDirectoryA(MAX_PATH, szShown);
    return s_session.fSending ? s_session.fTargetShown
                              : lstrcmpiA(szShown, s_session.szTarget) == 0;
}

void showArrival(const char* pszName, DWORD cbSize, const char* pszFailure)
{
    if (pszFailure != nullptr) {
        say("%s: %s", pszName, pszFailure);
        return;
    }
    say("%s %s, %lu bytes.", s_session.fSending ? "Sent" : "Received", pszName, cbSize);
    if (!isTargetShown()) {
        return;
    }
    if (s_session.fSending) {
        addEntry(pszName, cbSize, false);
    } else {
        nXferDandDAddLocalFileName(s_session.hdlg, pszName);
    }
}

void showEnd(bool fStopped)
{
    showTaskEnd(fStopped);
    if (!fStopped) {
        vXferDandDDisplayDILText(s_session.hdlg, "Done.");
    }
}

void transfer(XferFileList list, bool fSend, const char* pszHostDir)
{
    char szLocalFolder[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, szLocalFolder);
    DWORD dwAsk = fSend ? CONFIRM_HOSTREPLACE : CONFIRM_LOCALREPLACE;
    JobOptions job = {fSend ? "Sending files" : "Receiving files",
                      szLocalFolder,
                      pszHostDir,
                      fSend,
                      nXferDandDGetFileTypeSelection(s_session.hdlg),
                      (s_session.dwConfirmFlags & dwAsk) != 0,
                      s_session.hdlg,
                      1,
                      false,
                      sizeOfHostFile,
                      {showProgress, showArrival, showEnd},
                      s_session.options.szLanguage};
    s_session.fSending = fSend;
    s_session.fTargetShown = pszHostDir == nullptr;
    lstrcpynA(s_session.szTarget, szLocalFolder, MAX_PATH);
    setBusy(true);
    if (!startJob(&job, list)) {
        say("No transfer can be started now.");
        setBusy(isTaskRunning());
    }
}

void KRHAULAPI onSendFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD, const char* pszHostDir)
{
    transfer(list, true, pszHostDir);
}

void KRHAULAPI onReceiveFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    transfer(list, false, nullptr);
}

// ---- host commands

int compareNames(const void* pName1, const void* pName2)
{
    return lstrcmpA(static_cast<const HostName*>(pName1)->szName,
                    static_cast<const HostName*>(pName2)->szName);
}

// The host's files that a name means, in the order of the list: the one that is called so, or those
// that match it. Gives their number.
DWORD findMatches(const char* pszName, HostName* pMatches)
{
    DWORD cMatches = 0;
    if (findEntry(pszName) != nullptr || strpbrk(pszName, "*?") == nullptr) {
        lstrcpynA(pMatches[cMatches++].szName, pszName, MAX_PATH);
        return cMatches;
    }
    for (DWORD n = 0; n < s_session.cEntries; ++n) {
        const DirEntry* pEntry = &s_session.pEntries[n];
        if (!pEntry->fDirectory && passesFilter(pEntry->szName, pszName)) {
            lstrcpynA(pMatches[cMatches++].szName, pEntry->szName, MAX_PATH);
        }
    }
    qsort(pMatches, cMatches, sizeof *pMatches, compareNames);
    return cMatches;
}

void KRHAULAPI onDeleteHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    HostTask task = {};
    char szName[MAX_PATH];
    LONG cNames = XferFileList_cGetSize(list);
    for (LONG n = 0; n < cNames; ++n) {
        auto pMore = static_cast<HostName*>(
            realloc(task.pNames, (task.cNames + s_session.cEntries + 1) * sizeof(HostName)));
        if (pMore != nullptr) {
            task.pNames = pMore;
            XferFileList_lpszGetString(list, n, XFERLIST_HOST, szName, MAX_PATH);
            task.cNames += findMatches(szName, task.pNames + task.cNames);
        }
    }
    XferFileList_vDestroy(list);
    task.fAsk = (s_session.dwConfirmFlags & CONFIRM_HOSTDELETE) != 0;
    runHostTask(deleteFiles, &task);
}

// The copy belongs to the viewer, which takes it away.
void showCopy(Report* pReport)
{
    const DemoOptions* pOptions = &s_session.options;
    vXferDandDViewFile(s_session.hdlg, pReport->szText, pReport->szName,
                       pOptions->fServer ? pOptions->server.szServer : "the host", "KRDEMO", "");
}

void showNoCopy(Report* pReport)
{
    say("%s can't be viewed: %s", pReport->szName, pReport->szText);
}

void KRHAULAPI onViewHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    Move move = {};
    LONG cNames = XferFileList_cGetSize(list);
    move.pFiles = static_cast<MovedFile*>(calloc(size_t(cNames) + 1, sizeof(MovedFile)));
    for (LONG n = 0; move.pFiles != nullptr && n < cNames; ++n) {
        XferFileList_lpszGetString(list, n, XFERLIST_HOST, move.pFiles[n].szHost, MAX_PATH);
        ++move.cFiles;
    }
    XferFileList_vDestroy(list);
    move.nType = nXferDandDGetFileTypeSelection(s_session.hdlg);
    move.shows = {nullptr, showCount, showCopy, showNoCopy};
    vXferDandDSetThermometer(s_session.hdlg, 0);
    setBusy(true);
    if (!startTask(fetchCopies, &move, sizeof move, showTaskEnd)) {
        free(move.pFiles);
        setBusy(isTaskRunning());
    }
}

void KRHAULAPI onRenameHostFile(DWORD, DWORD, DWORD, const char* pszOldName, const char* pszNewName)
{
    HostTask task = {};
    lstrcpynA(task.szName, pszOldName, MAX_PATH);
    lstrcpynA(task.szNewName, pszNewName, MAX_PATH);
    task.cbEntry = sizeOfHostFile(pszOldName);
    task.fAsk = (s_session.dwConfirmFlags & CONFIRM_HOSTREPLACE) != 0;
    runHostTask(renameFile, &task);
}

void KRHAULAPI onMakeHostDir(DWORD, DWORD, DWORD, const char* pszDir)
{
    runHostTask(makeDirectory, pszDir);
}

void KRHAULAPI onChangeHostDir(DWORD, DWORD, DWORD, const char* pszDir, DWORD)
{
    runHostTask(enterDirectory, pszDir);
}

void KRHAULAPI onRemoveHostDir(DWORD, DWORD, DWORD, const char* pszDir, DWORD)
{
    runHostTask(removeDirectory, pszDir);
}

DWORD KRHAULAPI onConfirmFlags(DWORD, DWORD dwFlags, DWORD fSet)
{
    if (fSet != 0) {
        s_session.dwConfirmFlags = dwFlags;
    }
    return s_session.dwConfirmFlags;
}

void KRHAULAPI onHostFilter(DWORD, DWORD, DWORD, const char* pszFilter)
{
    lstrcpynA(s_session.szFilter, pszFilter[0] != '\0' ? pszFilter : ALL_FILES, MAX_PATH);
    fillHostPanes();
}

void KRHAULAPI onViewModeChanged(DWORD, DWORD, DWORD, DWORD nViewMode)
{
    vXferDandDDisplayDILText(s_session.hdlg,
                             nViewMode == XFERVIEW_TWOPANE
                                 ? "Drag files from one side to the other."
                                 : "Commands of the host: pwd, dir, cd DIRECTORY, check");
}

void tellEntry(const DirEntry* pEntry)
{
    if (pEntry->fDirectory) {
        say("%-24s     <DIR>", pEntry->szName);
    } else {
        say("%-24s%10lu", pEntry->szName, pEntry->cbSize);
    }
}

void KRHAULAPI onHostFileDetails(DWORD, DWORD, DWORD, XferFileList list)
{
    char szName[MAX_PATH];
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        const DirEntry* pEntry =
            findEntry(XferFileList_lpszGetString(list, n, XFERLIST_HOST, szName, sizeof szName));
        if (pEntry != nullptr) {
            tellEntry(pEntry);
        }
    }
    XferFileList_vDestroy(list);
}

// ---- raw commands

void commandDir(const char*)
{
    for (DWORD n = 0; n < s_session.cEntries; ++n) {
        tellEntry(&s_session.pEntries[n]);
    }
}

void commandPwd(const char*)
{
    say("%s", s_session.szPath);
}

void commandCd(const char* pszDir)
{
    onChangeHostDir(0, 0, 0, pszDir, 0);
}

// Reads all files of the host's directory. Nobody knows beforehand how many bytes that are.
void commandCheck(const char*)
{
    vXferDandDSetThermometer(s_session.hdlg, 0);
    runHostTask(checkFiles, "");
}

struct RawCommand {
    const char* pszName;
    void (*pfnRun)(const char* pszArgument);
};

constexpr RawCommand RAW_COMMANDS[] = {
    {"cd", commandCd}, {"check", commandCheck}, {"dir", commandDir}, {"pwd", commandPwd}};

void KRHAULAPI onHostCommand(DWORD, DWORD, DWORD, const char* pszCommand)
{
    char szCommand[MAX_PATH];
    lstrcpynA(szCommand, pszCommand, MAX_PATH);
    char* pszArgument = strchr(szCommand, ' ');
    if (pszArgument != nullptr) {
        *pszArgument++ = '\0';
    }
    say("> %s", pszCommand);
    for (const RawCommand& command : RAW_COMMANDS) {
        if (strcmp(command.pszName, szCommand) == 0) {
            command.pfnRun(pszArgument != nullptr ? pszArgument : "");
            return;
        }
    }
    say("The host doesn't know %s.", szCommand);
}

// ---- what reaches us through no callback

LRESULT CALLBACK sessionProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_COMMAND && LOWORD(wParam) == XFERCMD_REFRESH) {
        refreshHost();
    } else if (uMessage == WM_COMMAND && LOWORD(wParam) == IDABORT) {
        stopTask();
    } else if (uMessage == WM_CLOSE) {
        closeSession();
        return 0;
    }
    return CallWindowProcA(s_session.pfnProc, hwnd, uMessage, wParam, lParam);
}

// Not const: the creation of the window writes the size that the library knows into it.
HostCallbacks s_callbacks = {sizeof(HostCallbacks), onSendFiles,      onReceiveFiles,
                             onDeleteHostFiles,     onRenameHostFile, onMakeHostDir,
                             onChangeHostDir,       onRemoveHostDir,  onConfirmFlags,
                             onHostCommand,         onHostFilter,     onViewModeChanged,
                             onHostFileDetails,     onViewHostFiles};

} // namespace

bool openSession(const DemoOptions* pOptions, HWND hwndOwner)
{
    HostAddress folder = {};
    char szTitle[2 * MAX_PATH] = "Files - Sample caller";
    s_session = {};
    s_session.options = *pOptions;
    s_session.dwConfirmFlags = CONFIRM_ALL;
    lstrcpynA(s_session.szFilter, ALL_FILES, MAX_PATH);
    lstrcpynA(folder.szServer, pOptions->szSecond, MAX_PATH);
    folder.cbPerSecond = pOptions->cbPerSecond;
    if (pOptions->fServer) {
        snprintf(szTitle, sizeof szTitle, "%s - Sample caller", pOptions->server.szServer);
    }
    if (!SetCurrentDirectoryA(pOptions->szFirst)) {
        return false;
    }
    s_session.hdlg = hdlgXferDandDLangCreate2(s_session.options.szLanguage, szTitle, hwndOwner,
                                              nullptr, 0, &s_callbacks, XFERVIEW_TWOPANE);
    if (s_session.hdlg == nullptr) {
        return false;
    }
    s_session.pfnProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(s_session.hdlg, GWL_WNDPROC, reinterpret_cast<LONG>(sessionProc)));
    if (!openWorker(pOptions->fServer ? &FTP_HOST : &FOLDER_HOST,
                    pOptions->fServer ? &pOptions->server : &folder, s_session.hdlg)) {
        closeSession();
        return false;
    }
    say("The host is %s.", pOptions->fServer ? pOptions->server.szServer : pOptions->szSecond);
    refreshHost();
    return true;
}

HWND sessionWindow()
{
    return s_session.hdlg;
}

void closeSession()
{
    HWND hdlg = s_session.hdlg;
    closeWorker();
    closeJobWindow();
    free(s_session.pEntries);
    s_session.pEntries = nullptr;
    s_session.cEntries = 0;
    s_session.hdlg = nullptr;
    nXferDandDDestroy(hdlg);
}
