#include "transfer.h"
#include "../../include/krhaul.h"

#include <stdio.h>
#include <string.h>

namespace {

constexpr DWORD CB_CHUNK = 64 * 1024;
constexpr DWORD CAPTION_STOP = 1;
constexpr DWORD CAPTION_CLOSE = 3;

// A file appears under its own name only when it is complete.
constexpr char UNFINISHED[] = ".part";

struct Transfer {
    DemoOptions options;
    HWND hdlgStat;
    WNDPROC pfnStatProc; // the status window's procedure before ours
    XferFileList list;   // local name, name at the other end
    LONG nRow;           // the file in hand
    HANDLE hFrom, hTo;
    DWORD cbDone;     // bytes of the file in hand
    DWORD dwLineTick; // the line has been used up to this time
    bool fButton;     // the user has pressed Stop, Close or Cancel
    FileDoneProc pfnDone;
};

Transfer s_transfer = {};

// The window tells nobody of its buttons, so we look at its commands first. The work is left
// to the message loop: a window is better not destroyed while one of its buttons calls.
LRESULT CALLBACK statProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    WORD idCommand = LOWORD(wParam);
    if (uMessage == WM_COMMAND && (idCommand == XFERSTAT_BUTTON || idCommand == XFERSTAT_CANCEL)) {
        s_transfer.fButton = true;
    }
    return CallWindowProcA(s_transfer.pfnStatProc, hwnd, uMessage, wParam, lParam);
}

// Puts the names of all files of the folder into a list.
bool listFiles(const char* pszFolder, XferFileList* pList)
{
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    LONG cFiles = 0;
    if (!joinPath(szMask, pszFolder, "*") || !XferFileList_fCreate(pList)) {
        return false;
    }
    HANDLE hFind = FindFirstFileA(szMask, &find);
    for (BOOL fFound = hFind != INVALID_HANDLE_VALUE; fFound;
         fFound = FindNextFileA(hFind, &find)) {
        if ((find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            XferFileList_fSetSize(pList, cFiles + 1, XFERLIST_KEEPGROWTH);
            XferFileList_fSetString(*pList, cFiles, XFERLIST_LOCAL, find.cFileName);
            XferFileList_fSetString(*pList, cFiles, XFERLIST_HOST, find.cFileName);
            ++cFiles;
        }
    }
    FindClose(hFind);
    return cFiles > 0;
}

void unfinishedName(char (&szUnfinished)[MAX_PATH + sizeof UNFINISHED], const char* pszTo)
{
    snprintf(szUnfinished, sizeof szUnfinished, "%s%s", pszTo, UNFINISHED);
}

bool openFiles(const char* pszFrom, const char* pszTo)
{
    char szUnfinished[MAX_PATH + sizeof UNFINISHED];
    unfinishedName(szUnfinished, pszTo);
    s_transfer.hFrom = CreateFileA(pszFrom, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
    s_transfer.hTo = CreateFileA(szUnfinished, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
    return s_transfer.hFrom != INVALID_HANDLE_VALUE && s_transfer.hTo != INVALID_HANDLE_VALUE;
}

// Closes both files; the copy gets its name if it is whole, and goes if it isn't.
bool closeFiles(const char* pszTo, bool fWhole)
{
    char szUnfinished[MAX_PATH + sizeof UNFINISHED];
    unfinishedName(szUnfinished, pszTo);
    CloseHandle(s_transfer.hFrom);
    CloseHandle(s_transfer.hTo);
    s_transfer.hFrom = s_transfer.hTo = nullptr;
    if (fWhole && (DeleteFileA(pszTo) || GetLastError() == ERROR_FILE_NOT_FOUND)) {
        return MoveFileA(szUnfinished, pszTo) != 0;
    }
    DeleteFileA(szUnfinished);
    return false;
}

bool pathsOfRow(char (&szFrom)[MAX_PATH], char (&szTo)[MAX_PATH])
{
    char szName[MAX_PATH];
    XferFileList_lpszGetString(s_transfer.list, s_transfer.nRow, XFERLIST_LOCAL, szName, MAX_PATH);
    bool fFits = joinPath(szFrom, s_transfer.options.szFrom, szName);
    XferFileList_lpszGetString(s_transfer.list, s_transfer.nRow, XFERLIST_HOST, szName, MAX_PATH);
    return joinPath(szTo, s_transfer.options.szTo, szName) && fFits;
}

bool startFile()
{
    char szFrom[MAX_PATH];
    char szTo[MAX_PATH];
    char szStatus[XFERSTAT_MAXSTATUS + 1];
    if (!pathsOfRow(szFrom, szTo) || !openFiles(szFrom, szTo)) {
        return false;
    }
    s_transfer.cbDone = 0;
    s_transfer.dwLineTick = GetTickCount();
    sprintf(szStatus, "Copying file %ld of %ld", s_transfer.nRow + 1,
            XferFileList_cGetSize(s_transfer.list));
    nXferStatFileInfo(s_transfer.hdlgStat, szFrom, szTo, GetFileSize(s_transfer.hFrom, nullptr));
    nXferStatErrorInfo(s_transfer.hdlgStat, 0, 0);
    nXferStatStatusInfo(s_transfer.hdlgStat, szStatus);
    nXferStatCountInfo(s_transfer.hdlgStat, 0);
    nXferStatStartTransfer(s_transfer.hdlgStat);
    return true;
}

// Ends the file in hand and starts the next. Gives what the transfer does now.
TransferResult finishFile()
{
    char szFrom[MAX_PATH];
    char szTo[MAX_PATH];
    bool fLast = s_transfer.nRow + 1 == XferFileList_cGetSize(s_transfer.list);
    if (fLast) {
        nXferStatStatusInfo(s_transfer.hdlgStat, "All files are copied");
    }
    nXferStatEndTransfer(s_transfer.hdlgStat);
    if (!pathsOfRow(szFrom, szTo) || !closeFiles(szTo, true)) {
        return TRANSFER_FAILED;
    }
    if (s_transfer.pfnDone != nullptr) {
        s_transfer.pfnDone(szTo, s_transfer.cbDone);
    }
    if (fLast) {
        return TRANSFER_DONE;
    }
    ++s_transfer.nRow;
    return startFile() ? TRANSFER_MORE : TRANSFER_FAILED;
}

// How much the line has had time for since it was last used.
DWORD lineRoom()
{
    DWORD dwNow = GetTickCount();
    double dRoom = double(dwNow - s_transfer.dwLineTick) * s_transfer.options.cbPerSecond / 1000;
    s_transfer.dwLineTick = dwNow;
    return dRoom < 4.0 * CB_CHUNK ? DWORD(dRoom) : 4 * CB_CHUNK;
}

TransferResult moveBytes(DWORD cbRoom)
{
    static BYTE s_chunk[CB_CHUNK];
    DWORD cbRead = 1;
    DWORD cbWritten;
    while (cbRoom > 0 && cbRead > 0) {
        DWORD cbWanted = cbRoom < CB_CHUNK ? cbRoom : CB_CHUNK;
        if (!ReadFile(s_transfer.hFrom, s_chunk, cbWanted, &cbRead, nullptr) ||
            !WriteFile(s_transfer.hTo, s_chunk, cbRead, &cbWritten, nullptr) ||
            cbWritten != cbRead) {
            return TRANSFER_FAILED;
        }
        s_transfer.cbDone += cbRead;
        cbRoom -= cbRead;
        nXferStatCountInfo(s_transfer.hdlgStat, s_transfer.cbDone);
    }
    return cbRead > 0 ? TRANSFER_MORE : finishFile();
}

// Leaves the window of a finished transfer to be read; any other goes at once.
TransferResult endTransfer(TransferResult result)
{
    char szFrom[MAX_PATH];
    char szTo[MAX_PATH];
    if (s_transfer.hFrom != nullptr && pathsOfRow(szFrom, szTo)) {
        closeFiles(szTo, false);
    }
    XferFileList_vDestroy(s_transfer.list);
    s_transfer.list = nullptr;
    s_transfer.fButton = false;
    vXferStatButtonText(s_transfer.hdlgStat, CAPTION_CLOSE);
    if (result != TRANSFER_DONE) {
        closeTransferWindow();
    }
    return result;
}

} // namespace

bool startTransfer(const DemoOptions* pOptions, HWND hwndOwner)
{
    FileDoneProc pfnDone = s_transfer.pfnDone;
    s_transfer = {};
    s_transfer.options = *pOptions;
    s_transfer.pfnDone = pfnDone;
    CreateDirectoryA(pOptions->szTo, nullptr);
    if (listFiles(pOptions->szFrom, &s_transfer.list)) {
        s_transfer.hdlgStat = hdlgXferStatCreate("Copying files", 0, hwndOwner, 0, 0);
    }
    if (s_transfer.hdlgStat == nullptr) {
        XferFileList_vDestroy(s_transfer.list);
        return false;
    }
    s_transfer.pfnStatProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(s_transfer.hdlgStat, GWL_WNDPROC, reinterpret_cast<LONG>(statProc)));
    vXferStatButtonText(s_transfer.hdlgStat, CAPTION_STOP);
    SendMessageA(s_transfer.hdlgStat, WM_SETICON, ICON_SMALL,
                 LONG(GetClassLongA(hwndOwner, GCL_HICON)));
    if (!startFile()) {
        endTransfer(TRANSFER_FAILED);
        return false;
    }
    return true;
}

TransferResult continueTransfer()
{
    TransferResult result = s_transfer.fButton ? TRANSFER_STOPPED : moveBytes(lineRoom());
    return result == TRANSFER_MORE ? result : endTransfer(result);
}

bool transferWindowIsDismissed()
{
    return s_transfer.hdlgStat != nullptr && (s_transfer.fButton || !IsWindow(s_transfer.hdlgStat));
}

void closeTransferWindow()
{
    nXferStatDestroy(s_transfer.hdlgStat);
    s_transfer.hdlgStat = nullptr;
}

HWND transferWindow()
{
    return s_transfer.hdlgStat;
}

DWORD transferFileNumber()
{
    return DWORD(s_transfer.nRow + 1);
}

void tellFilesDone(FileDoneProc pfnDone)
{
    s_transfer.pfnDone = pfnDone;
}
