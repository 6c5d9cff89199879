#include "session.h"
#include "check.h"
#include "job.h"
#include "../../include/krhaul.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

namespace {

constexpr DWORD CONFIRM_ALL = 31;
constexpr char ALL_FILES[] = "*";

struct Session {
    HWND hdlg;
    WNDPROC pfnProc; // the window's procedure before ours
    const Host* pHost;
    DemoOptions options;
    char szFilter[MAX_PATH];
    DWORD dwConfirmFlags;
    bool fSending;
    char szTarget[MAX_PATH]; // folder that the running job moves files into
    const char* pszDetailName;
    const char* pszPattern;
};

Session s_session = {};

void say(const char* pszFormat, ...)
{
    char szLine[2 * MAX_PATH];
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

void showEntry(const char* pszName, DWORD, bool fDirectory)
{
    if (fDirectory) {
        nXferDandDAddHostSubDir(s_session.hdlg, pszName);
    } else if (passesFilter(pszName, s_session.szFilter)) {
        nXferDandDAddHostFileName(s_session.hdlg, pszName);
    }
}

// Inside a busy period, whose end gives the columns their width.
void fillHostPanes()
{
    const char* pszPath = s_session.pHost->pfnPath();
    setBusy(true);
    nXferDandDClearHostFileInfo(s_session.hdlg,
                                XFERCLEAR_FILES | XFERCLEAR_SUBDIRS | XFERCLEAR_WORKDIR);
    vXferDandDPrintWorkingDir(s_session.hdlg, pszPath, pszPath);
    if (!s_session.pHost->pfnList(showEntry)) {
        say("%s can't be listed.", pszPath);
    }
    setBusy(isJobRunning() || isCheckRunning());
}

// ---- transfers

void showProgress(DWORD cbDone, DWORD cbAll)
{
    vXferDandDSetThermometer(s_session.hdlg, LONG(cbAll / 1024));
    vXferDandDUpdateThermometer(s_session.hdlg, LONG(cbDone / 1024));
}

// The user can go to another directory while files arrive.
bool isTargetShown()
{
    char szShown[MAX_PATH] = "";
    if (s_session.fSending) {
        s_session.pHost->pfnFolder(".", szShown);
    } else {
        GetCurrentDirectoryA(MAX_PATH, szShown);
    }
    return lstrcmpiA(szShown, s_session.szTarget) == 0;
}

void showArrival(const char* pszTarget, DWORD cbSize, const char* pszFailure)
{
    const char* pchLast = strrchr(pszTarget, '\\');
    const char* pszName = pchLast != nullptr ? pchLast + 1 : pszTarget;
    if (pszFailure != nullptr) {
        say("%s: %s.", pszName, pszFailure);
        return;
    }
    say("%s %s, %lu bytes.", s_session.fSending ? "Sent" : "Received", pszName, cbSize);
    if (!isTargetShown()) {
        return;
    }
    if (s_session.fSending) {
        nXferDandDAddHostFileName(s_session.hdlg, pszName);
    } else {
        nXferDandDAddLocalFileName(s_session.hdlg, pszName);
    }
}

void showEnd(bool fStopped)
{
    vXferDandDUpdateThermometer(s_session.hdlg, -1);
    vXferDandDDisplayDILText(s_session.hdlg, fStopped ? "Stopped." : "Done.");
    setBusy(false);
}

void transfer(XferFileList list, bool fSend, const char* pszHostDir)
{
    char szHostFolder[MAX_PATH];
    char szLocalFolder[MAX_PATH];
    GetCurrentDirectoryA(MAX_PATH, szLocalFolder);
    s_session.fSending = fSend;
    if (!s_session.pHost->pfnFolder(pszHostDir != nullptr ? pszHostDir : ".", szHostFolder)) {
        say("%s isn't a directory of the host.", pszHostDir);
        XferFileList_vDestroy(list);
        return;
    }
    JobOptions job = {fSend ? "Sending files" : "Receiving files",
                      fSend ? szLocalFolder : szHostFolder,
                      fSend ? szHostFolder : szLocalFolder,
                      s_session.hdlg,
                      1,
                      s_session.options.cbPerSecond,
                      false,
                      {showProgress, showArrival, showEnd},
                      s_session.options.szLanguage};
    lstrcpynA(s_session.szTarget, job.pszToFolder, MAX_PATH);
    setBusy(true);
    if (!startJob(&job, list, fSend ? XFERLIST_LOCAL : XFERLIST_HOST)) {
        say("No transfer can be started now.");
        setBusy(isJobRunning());
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

void deleteOnHost(const char* pszName)
{
    if (s_session.pHost->pfnDelete(pszName)) {
        nXferDandDRemoveHostFileName(s_session.hdlg, pszName);
        say("Deleted %s on the host.", pszName);
    } else {
        say("%s can't be deleted on the host.", pszName);
    }
}

void deleteMatch(const char* pszName, DWORD, bool fDirectory)
{
    if (!fDirectory && passesFilter(pszName, s_session.pszPattern)) {
        deleteOnHost(pszName);
    }
}

void KRHAULAPI onDeleteHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    char szName[MAX_PATH];
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        XferFileList_lpszGetString(list, n, XFERLIST_HOST, szName, sizeof szName);
        if (strpbrk(szName, "*?") != nullptr) {
            s_session.pszPattern = szName;
            s_session.pHost->pfnList(deleteMatch);
        } else {
            deleteOnHost(szName);
        }
    }
    XferFileList_vDestroy(list);
}

// The copy belongs to the viewer, which takes it away.
void viewHostFile(const char* pszName)
{
    char szFolder[MAX_PATH];
    char szFile[MAX_PATH];
    char szCopy[MAX_PATH];
    GetTempPathA(MAX_PATH, szFolder);
    if (!s_session.pHost->pfnFolder(pszName, szFile) ||
        GetTempFileNameA(szFolder, "krv", 0, szCopy) == 0) {
        say("%s can't be viewed.", pszName);
    } else if (CopyFileA(szFile, szCopy, FALSE)) {
        vXferDandDViewFile(s_session.hdlg, szCopy, pszName, "the host", "KRDEMO", "");
    } else {
        DeleteFileA(szCopy);
        say("%s can't be viewed.", pszName);
    }
}

void KRHAULAPI onViewHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    char szName[MAX_PATH];
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        viewHostFile(XferFileList_lpszGetString(list, n, XFERLIST_HOST, szName, sizeof szName));
    }
    XferFileList_vDestroy(list);
}

void KRHAULAPI onRenameHostFile(DWORD, DWORD, DWORD, const char* pszOldName, const char* pszNewName)
{
    if (s_session.pHost->pfnRename(pszOldName, pszNewName)) {
        nXferDandDRemoveHostFileName(s_session.hdlg, pszOldName);
        nXferDandDAddHostFileName(s_session.hdlg, pszNewName);
        say("Renamed %s to %s on the host.", pszOldName, pszNewName);
    } else {
        say("%s can't be renamed on the host.", pszOldName);
    }
}

void KRHAULAPI onMakeHostDir(DWORD, DWORD, DWORD, const char* pszDir)
{
    if (s_session.pHost->pfnMakeDir(pszDir)) {
        nXferDandDAddHostSubDir(s_session.hdlg, pszDir);
    } else {
        say("%s can't be made on the host.", pszDir);
    }
}

void KRHAULAPI onChangeHostDir(DWORD, DWORD, DWORD, const char* pszDir, DWORD)
{
    if (s_session.pHost->pfnChangeDir(pszDir)) {
        fillHostPanes();
    } else {
        say("%s can't be entered on the host.", pszDir);
    }
}

void KRHAULAPI onRemoveHostDir(DWORD, DWORD, DWORD, const char* pszDir, DWORD)
{
    if (s_session.pHost->pfnRemoveDir(pszDir)) {
        nXferDandDRemoveHostSubDir(s_session.hdlg, pszDir);
    } else {
        say("%s can't be removed on the host.", pszDir);
    }
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

void tellDetails(const char* pszName, DWORD cbSize, bool fDirectory)
{
    if (strcmp(pszName, s_session.pszDetailName) == 0 && !fDirectory) {
        say("%-24s%10lu", pszName, cbSize);
    }
}

void KRHAULAPI onHostFileDetails(DWORD, DWORD, DWORD, XferFileList list)
{
    char szName[MAX_PATH];
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        s_session.pszDetailName =
            XferFileList_lpszGetString(list, n, XFERLIST_HOST, szName, sizeof szName);
        s_session.pHost->pfnList(tellDetails);
    }
    XferFileList_vDestroy(list);
}

// ---- raw commands

void tellEntry(const char* pszName, DWORD cbSize, bool fDirectory)
{
    if (fDirectory) {
        say("%-24s     <DIR>", pszName);
    } else {
        say("%-24s%10lu", pszName, cbSize);
    }
}

void commandDir(const char*)
{
    s_session.pHost->pfnList(tellEntry);
}

void commandPwd(const char*)
{
    say("%s", s_session.pHost->pfnPath());
}

void commandCd(const char* pszDir)
{
    onChangeHostDir(0, 0, 0, pszDir, 0);
}

// Reads all files of the host's directory. Nobody knows beforehand how many bytes that are.
void commandCheck(const char*)
{
    char szFolder[MAX_PATH];
    if (!isJobRunning() && s_session.pHost->pfnFolder(".", szFolder) && startCheck(szFolder)) {
        setBusy(true);
        vXferDandDSetThermometer(s_session.hdlg, 0);
    }
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

void stop()
{
    stopJob();
    stopCheck();
}

LRESULT CALLBACK sessionProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_COMMAND && LOWORD(wParam) == XFERCMD_REFRESH) {
        fillHostPanes();
    } else if (uMessage == WM_COMMAND && LOWORD(wParam) == IDABORT) {
        stop();
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

bool openSession(const DemoOptions* pOptions, const Host* pHost, HWND hwndOwner)
{
    s_session = {};
    s_session.options = *pOptions;
    s_session.pHost = pHost;
    s_session.dwConfirmFlags = CONFIRM_ALL;
    lstrcpynA(s_session.szFilter, ALL_FILES, MAX_PATH);
    if (!SetCurrentDirectoryA(pOptions->szFirst) || !pHost->pfnOpen(pOptions->szSecond)) {
        return false;
    }
    s_session.hdlg =
        hdlgXferDandDLangCreate2(s_session.options.szLanguage, "Files - Sample caller", hwndOwner,
                                 nullptr, 0, &s_callbacks, XFERVIEW_TWOPANE);
    if (s_session.hdlg == nullptr) {
        return false;
    }
    s_session.pfnProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(s_session.hdlg, GWL_WNDPROC, reinterpret_cast<LONG>(sessionProc)));
    say("The host is %s.", pOptions->szSecond);
    fillHostPanes();
    return true;
}

HWND sessionWindow()
{
    return s_session.hdlg;
}

void continueSession()
{
    CheckState check;
    continueJob();
    if (!continueCheck(&check)) {
        return;
    }
    vXferDandDUpdateThermometer(s_session.hdlg, check.fDone ? -1 : LONG(check.cbRead / 1024));
    if (check.fDone) {
        say("%lu files, %lu bytes, sum %08lX.", check.cFiles, check.cbRead, check.dwSum);
        setBusy(false);
    }
}

void closeSession()
{
    HWND hdlg = s_session.hdlg;
    stop();
    continueSession();
    s_session.hdlg = nullptr;
    nXferDandDDestroy(hdlg);
}
