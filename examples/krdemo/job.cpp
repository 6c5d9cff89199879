#include "job.h"
#include "options.h"

#include <stdio.h>
#include <string.h>

namespace {

constexpr DWORD CB_CHUNK = 64 * 1024;
constexpr DWORD CAPTION_STOP = 1;
constexpr DWORD CAPTION_CLOSE = 3;

// A file appears under its own name only when it is complete. Until then it has a name that
// nothing else has.
constexpr char UNFINISHED_PREFIX[] = "krd";

struct Job {
    bool fRunning;
    JobOptions options;
    char szFromFolder[MAX_PATH];
    char szToFolder[MAX_PATH];
    HWND hdlgStat;
    WNDPROC pfnStatProc; // the status window's procedure before ours
    XferFileList list;
    LONG nFromColumn;
    LONG nRow; // the file in hand
    char szFrom[MAX_PATH];
    char szTo[MAX_PATH];
    char szUnfinished[MAX_PATH];
    HANDLE hFrom, hTo;
    DWORD cbDone;     // bytes of the file in hand
    DWORD cbBefore;   // bytes of the files before it
    DWORD cbAll;      // bytes of all files
    DWORD dwLineTick; // the line has been used up to this time
    bool fButton;     // the user has pressed Stop, Close or Cancel
};

Job s_job = {};

// The window tells nobody of its buttons, so we look at its commands first. The work is left
// to the message loop: a window is better not destroyed while one of its buttons calls.
LRESULT CALLBACK statProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    WORD idCommand = LOWORD(wParam);
    if (uMessage == WM_COMMAND && (idCommand == XFERSTAT_BUTTON || idCommand == XFERSTAT_CANCEL)) {
        s_job.fButton = true;
    }
    return CallWindowProcA(s_job.pfnStatProc, hwnd, uMessage, wParam, lParam);
}

const char* lastPart(const char* pszPath)
{
    const char* pchLast = strrchr(pszPath, '\\');
    return pchLast != nullptr ? pchLast + 1 : pszPath;
}

// Whether a name can stand for a file of a folder: nothing in it leads elsewhere.
bool isPlainName(const char* pszName)
{
    return pszName[0] != '\0' && strcmp(pszName, ".") != 0 && strcmp(pszName, "..") != 0 &&
           strpbrk(pszName, "/\\:*?\"<>|") == nullptr;
}

bool pathsOfRow(LONG nRow, char (&szFrom)[MAX_PATH], char (&szTo)[MAX_PATH])
{
    char szName[MAX_PATH];
    char szNewName[MAX_PATH];
    XferFileList_lpszGetString(s_job.list, nRow, s_job.nFromColumn, szName, MAX_PATH);
    XferFileList_lpszGetString(s_job.list, nRow, 1 - s_job.nFromColumn, szNewName, MAX_PATH);
    const char* pszTarget = lastPart(szNewName[0] != '\0' ? szNewName : szName);
    return isPlainName(pszTarget) && joinPath(szFrom, s_job.szFromFolder, szName) &&
           joinPath(szTo, s_job.szToFolder, pszTarget);
}

DWORD sizeOfFile(const char* pszPath)
{
    WIN32_FIND_DATAA find = {};
    HANDLE hFind = FindFirstFileA(pszPath, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return 0;
    }
    FindClose(hFind);
    return find.nFileSizeLow;
}

DWORD sizeOfAll()
{
    DWORD cbAll = 0;
    for (LONG n = 0; n < XferFileList_cGetSize(s_job.list); ++n) {
        if (pathsOfRow(n, s_job.szFrom, s_job.szTo)) {
            cbAll += sizeOfFile(s_job.szFrom);
        }
    }
    return cbAll;
}

bool openFiles()
{
    s_job.hFrom = CreateFileA(s_job.szFrom, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (s_job.hFrom == INVALID_HANDLE_VALUE) {
        return false;
    }
    s_job.hTo = INVALID_HANDLE_VALUE;
    if (GetTempFileNameA(s_job.szToFolder, UNFINISHED_PREFIX, 0, s_job.szUnfinished) != 0) {
        s_job.hTo = CreateFileA(s_job.szUnfinished, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    if (s_job.hTo == INVALID_HANDLE_VALUE) {
        CloseHandle(s_job.hFrom);
        return false;
    }
    return true;
}

// Gives the copy its name. A file that had it steps aside until that has worked.
bool takeName()
{
    char szAside[MAX_PATH];
    if (MoveFileA(s_job.szUnfinished, s_job.szTo)) {
        return true;
    }
    if (GetTempFileNameA(s_job.szToFolder, UNFINISHED_PREFIX, 0, szAside) == 0) {
        return false;
    }
    DeleteFileA(szAside);
    if (!MoveFileA(s_job.szTo, szAside)) {
        return false;
    }
    if (!MoveFileA(s_job.szUnfinished, s_job.szTo)) {
        MoveFileA(szAside, s_job.szTo);
        return false;
    }
    DeleteFileA(szAside);
    return true;
}

// Closes both files; the copy gets its name if it is whole, and goes if it isn't.
bool closeFiles(bool fWhole)
{
    CloseHandle(s_job.hFrom);
    CloseHandle(s_job.hTo);
    s_job.hFrom = s_job.hTo = nullptr;
    if (fWhole && takeName()) {
        return true;
    }
    DeleteFileA(s_job.szUnfinished);
    return false;
}

void showFile()
{
    char szStatus[XFERSTAT_MAXSTATUS + 1];
    snprintf(szStatus, sizeof szStatus, "File %lu of %ld", jobFileNumber(),
             XferFileList_cGetSize(s_job.list));
    nXferStatFileInfo(s_job.hdlgStat, s_job.szFrom, s_job.szTo, GetFileSize(s_job.hFrom, nullptr));
    nXferStatErrorInfo(s_job.hdlgStat, 0, 0);
    nXferStatStatusInfo(s_job.hdlgStat, szStatus);
    nXferStatCountInfo(s_job.hdlgStat, 0);
    nXferStatStartTransfer(s_job.hdlgStat);
}

// Leaves the window of a finished job to be read, if that was asked for.
void endJob(bool fStopped)
{
    XferFileList_vDestroy(s_job.list);
    s_job.list = nullptr;
    s_job.fRunning = s_job.fButton = false;
    if (fStopped || !s_job.options.fKeepWindow) {
        closeJobWindow();
    } else {
        vXferStatButtonText(s_job.hdlgStat, CAPTION_CLOSE);
    }
    s_job.options.events.pfnEnd(fStopped);
}

// Opens the next file that can be opened; those that can't are told and passed over.
void openNextFile()
{
    for (; s_job.nRow < XferFileList_cGetSize(s_job.list); ++s_job.nRow) {
        s_job.cbBefore += s_job.cbDone;
        s_job.cbDone = 0;
        if (pathsOfRow(s_job.nRow, s_job.szFrom, s_job.szTo) && openFiles()) {
            s_job.dwLineTick = GetTickCount();
            showFile();
            return;
        }
        s_job.options.events.pfnFile(s_job.szFrom, 0, "it can't be opened");
    }
    endJob(false);
}

void finishFile(const char* pszFailure)
{
    bool fLast = s_job.nRow + 1 == XferFileList_cGetSize(s_job.list);
    if (fLast && pszFailure == nullptr) {
        nXferStatStatusInfo(s_job.hdlgStat, "All files are copied");
    }
    nXferStatEndTransfer(s_job.hdlgStat);
    if (!closeFiles(pszFailure == nullptr) && pszFailure == nullptr) {
        pszFailure = "it can't be given its name";
    }
    s_job.options.events.pfnFile(s_job.szTo, s_job.cbDone, pszFailure);
    ++s_job.nRow;
    openNextFile();
}

// How much the line has had time for since it was last used.
DWORD lineRoom()
{
    DWORD dwNow = GetTickCount();
    double dRoom = double(dwNow - s_job.dwLineTick) * s_job.options.cbPerSecond / 1000;
    s_job.dwLineTick = dwNow;
    return dRoom < 4.0 * CB_CHUNK ? DWORD(dRoom) : 4 * CB_CHUNK;
}

void moveBytes(DWORD cbRoom)
{
    static BYTE s_chunk[CB_CHUNK];
    DWORD cbRead = 1;
    DWORD cbWritten = 0;
    while (cbRoom > 0 && cbRead > 0) {
        DWORD cbWanted = cbRoom < CB_CHUNK ? cbRoom : CB_CHUNK;
        if (!ReadFile(s_job.hFrom, s_chunk, cbWanted, &cbRead, nullptr)) {
            finishFile("it can't be read");
            return;
        }
        if (!WriteFile(s_job.hTo, s_chunk, cbRead, &cbWritten, nullptr) || cbWritten != cbRead) {
            finishFile("it can't be written");
            return;
        }
        s_job.cbDone += cbRead;
        cbRoom -= cbRead;
    }
    nXferStatCountInfo(s_job.hdlgStat, s_job.cbDone);
    s_job.options.events.pfnProgress(s_job.cbBefore + s_job.cbDone, s_job.cbAll);
    if (cbRead == 0) {
        finishFile(nullptr);
    }
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

} // namespace

bool startJob(const JobOptions* pOptions, XferFileList list, LONG nFromColumn)
{
    if (s_job.fRunning) {
        XferFileList_vDestroy(list);
        return false;
    }
    closeJobWindow();
    s_job = {};
    s_job.options = *pOptions;
    s_job.list = list;
    s_job.nFromColumn = nFromColumn;
    lstrcpynA(s_job.szFromFolder, pOptions->pszFromFolder, MAX_PATH);
    lstrcpynA(s_job.szToFolder, pOptions->pszToFolder, MAX_PATH);
    if (!openStatusWindow(pOptions)) {
        XferFileList_vDestroy(list);
        return false;
    }
    s_job.fRunning = true;
    s_job.cbAll = sizeOfAll();
    openNextFile();
    return true;
}

void continueJob()
{
    if (!s_job.fRunning) {
        return;
    }
    if (!s_job.fButton) {
        moveBytes(lineRoom());
        return;
    }
    nXferStatEndTransfer(s_job.hdlgStat);
    closeFiles(false);
    endJob(true);
}

bool isJobRunning()
{
    return s_job.fRunning;
}

void stopJob()
{
    s_job.fButton = s_job.fRunning;
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

DWORD jobFileNumber()
{
    return DWORD(s_job.nRow + 1);
}
