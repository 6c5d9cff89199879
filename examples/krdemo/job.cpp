#include "job.h"
#include "move.h"
#include "options.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr DWORD CAPTION_STOP = 1;
constexpr DWORD CAPTION_CLOSE = 3;

struct Job {
    bool fRunning;
    JobOptions options;
    HWND hdlgStat;
    WNDPROC pfnStatProc; // the status window's procedure before ours
    DWORD nFile;
    DWORD cFiles;
    DWORD cbFile;   // size of the file in hand
    DWORD cbBefore; // bytes of the files before it
    DWORD cbAll;    // bytes of all files
    DWORD cFailed;
    bool fButton; // the user has pressed Stop, Close or Cancel
};

Job s_job = {};

// The window tells nobody of its buttons, so we look at its commands first. It is closed later:
// a window is better not destroyed while one of its buttons calls.
LRESULT CALLBACK statProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    WORD idCommand = LOWORD(wParam);
    if (uMessage == WM_COMMAND && (idCommand == XFERSTAT_BUTTON || idCommand == XFERSTAT_CANCEL)) {
        s_job.fButton = true;
        if (s_job.fRunning) {
            stopTask();
        }
    }
    return CallWindowProcA(s_job.pfnStatProc, hwnd, uMessage, wParam, lParam);
}

bool openStatusWindow(const JobOptions* pOptions)
{
    s_job.hdlgStat = hdlgXferStatLangCreate(pOptions->pszLanguage, pOptions->pszTitle, 0,
                                            pOptions->hwndOwner, pOptions->fCorner, 0);
    if (s_job.hdlgStat == nullptr) {
        return false;
    }
    s_job.pfnStatProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(s_job.hdlgStat, GWL_WNDPROC, reinterpret_cast<LONG>(statProc)));
    vXferStatButtonText(s_job.hdlgStat, CAPTION_STOP);
    SendMessageA(s_job.hdlgStat, WM_SETICON, ICON_SMALL,
                 LONG(GetClassLongA(pOptions->hwndOwner, GCL_HICON)));
    return true;
}

// ---- what the worker tells

void showBegin(Report* pReport)
{
    char szStatus[40];
    s_job.nFile = DWORD(pReport->nNumber);
    s_job.cbFile = pReport->cbAll;
    snprintf(szStatus, sizeof szStatus, "File %lu of %lu", s_job.nFile + 1, s_job.cFiles);
    nXferStatFileInfo(s_job.hdlgStat, pReport->szText, pReport->szName, pReport->cbAll);
    nXferStatErrorInfo(s_job.hdlgStat, s_job.cFailed, 0);
    nXferStatStatusInfo(s_job.hdlgStat, szStatus);
    nXferStatCountInfo(s_job.hdlgStat, 0);
    nXferStatStartTransfer(s_job.hdlgStat);
}

// A text can grow on its way, and a file can have grown since it was listed.
void showProgress(Report* pReport)
{
    DWORD cbShown = pReport->cbDone;
    if (s_job.cbFile > 0 && cbShown > s_job.cbFile) {
        cbShown = s_job.cbFile;
    }
    nXferStatCountInfo(s_job.hdlgStat, cbShown);
    s_job.options.events.pfnProgress(s_job.cbBefore + cbShown, s_job.cbAll);
}

void showDone(Report* pReport)
{
    showProgress(pReport);
    s_job.cbBefore += s_job.cbFile;
    if (s_job.nFile + 1 == s_job.cFiles) {
        nXferStatStatusInfo(s_job.hdlgStat, "All files are copied");
    }
    nXferStatEndTransfer(s_job.hdlgStat);
    s_job.options.events.pfnFile(pReport->szName, pReport->cbDone, nullptr);
}

void showFailed(Report* pReport)
{
    s_job.cbBefore += s_job.cbFile;
    nXferStatErrorInfo(s_job.hdlgStat, ++s_job.cFailed, 0);
    nXferStatEndTransfer(s_job.hdlgStat);
    s_job.options.events.pfnFile(pReport->szName, 0, pReport->szText);
}

// Leaves the window of a finished job to be read, if that was asked for.
void showEnd(bool fStopped)
{
    s_job.fRunning = s_job.fButton = false;
    if (fStopped || !s_job.options.fKeepWindow) {
        closeJobWindow();
    } else {
        vXferStatButtonText(s_job.hdlgStat, CAPTION_CLOSE);
    }
    s_job.options.events.pfnEnd(fStopped);
}

// ---- what the worker is told

const char* lastPart(const char* pszPath)
{
    const char* pchLast = strrchr(pszPath, '\\');
    return pchLast != nullptr ? pchLast + 1 : pszPath;
}

DWORD sizeOfFile(const char* pszFolder, const char* pszName)
{
    WIN32_FIND_DATAA find = {};
    char szPath[MAX_PATH];
    bool fFull = strchr(pszName, ':') != nullptr || pszName[0] == '\\';
    HANDLE hFind = joinPath(szPath, fFull ? "" : pszFolder, pszName) ? FindFirstFileA(szPath, &find)
                                                                     : INVALID_HANDLE_VALUE;
    if (hFind != INVALID_HANDLE_VALUE) {
        FindClose(hFind);
    }
    return find.nFileSizeLow;
}

// A name that comes from a host stays as it is: whether it can be that of a local file is asked
// when the file is received.
void takeNames(const JobOptions* pOptions, XferFileList list, LONG nRow, MovedFile* pFile)
{
    XferFileList_lpszGetString(list, nRow, XFERLIST_LOCAL, pFile->szLocal, MAX_PATH);
    XferFileList_lpszGetString(list, nRow, XFERLIST_HOST, pFile->szHost, MAX_PATH);
    if (pOptions->fSend) {
        pFile->cbSize = sizeOfFile(pOptions->pszLocalFolder, pFile->szLocal);
        if (pFile->szHost[0] == '\0') {
            lstrcpynA(pFile->szHost, lastPart(pFile->szLocal), MAX_PATH);
        }
        return;
    }
    pFile->cbSize = pOptions->pfnHostSize(pFile->szHost);
    if (pFile->szLocal[0] == '\0') {
        strcpy(pFile->szLocal, pFile->szHost);
    }
}

bool makeMove(const JobOptions* pOptions, XferFileList list, Move* pMove)
{
    pMove->cFiles = DWORD(XferFileList_cGetSize(list));
    pMove->pFiles = static_cast<MovedFile*>(calloc(pMove->cFiles + 1, sizeof(MovedFile)));
    if (pMove->pFiles == nullptr) {
        return false;
    }
    pMove->fSend = pOptions->fSend;
    pMove->nType = pOptions->nType;
    pMove->fAskBeforeReplace = pOptions->fAskBeforeReplace;
    pMove->shows = {showBegin, showProgress, showDone, showFailed};
    lstrcpynA(pMove->szLocalFolder, pOptions->pszLocalFolder, MAX_PATH);
    lstrcpynA(pMove->szHostDir, pOptions->pszHostDir != nullptr ? pOptions->pszHostDir : "",
              MAX_PATH);
    for (DWORD n = 0; n < pMove->cFiles; ++n) {
        takeNames(pOptions, list, LONG(n), &pMove->pFiles[n]);
        s_job.cbAll += pMove->pFiles[n].cbSize;
    }
    return true;
}

} // namespace

bool startJob(const JobOptions* pOptions, XferFileList list)
{
    Move move = {};
    if (isTaskRunning()) {
        XferFileList_vDestroy(list);
        return false;
    }
    closeJobWindow();
    s_job = {};
    s_job.options = *pOptions;
    bool fMade = makeMove(pOptions, list, &move);
    s_job.cFiles = move.cFiles;
    XferFileList_vDestroy(list);
    if (fMade && openStatusWindow(pOptions) && startTask(moveFiles, &move, sizeof move, showEnd)) {
        s_job.fRunning = true;
        return true;
    }
    free(move.pFiles);
    closeJobWindow();
    return false;
}

bool isJobRunning()
{
    return s_job.fRunning;
}

HWND jobWindow()
{
    return s_job.hdlgStat;
}

bool isJobWindowDismissed()
{
    return s_job.hdlgStat != nullptr && !s_job.fRunning &&
           (s_job.fButton || !IsWindow(s_job.hdlgStat));
}

void closeJobWindow()
{
    if (s_job.hdlgStat != nullptr) {
        nXferStatDestroy(s_job.hdlgStat);
        s_job.hdlgStat = nullptr;
    }
}
