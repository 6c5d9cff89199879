// The built-in host: a folder of this machine, which it never leaves. Its files go over a line
// of limited speed, and have no types: bytes are moved as they are.
#include "host.h"
#include "options.h"

#include <stdlib.h>
#include <string.h>

namespace {

// The line is waited for in pieces that are neither too short to be kept nor too long to stop.
constexpr DWORD SHORTEST_WAIT_MS = 10;
constexpr DWORD LONGEST_WAIT_MS = 100;

struct FolderLink {
    HostLink base; // its path goes from the root on: "/", "/a", "/a/b"
    char szRoot[MAX_PATH];
    HANDLE hFile;
    DWORD cbPerSecond;
    DWORD dwLineTick; // the file was opened at this time
    DWORD cbMoved;    // bytes of it since then
};

FolderLink* linkOf(HostLink* pLink)
{
    return reinterpret_cast<FolderLink*>(pLink);
}

// Keeps the system's words for the last error where it failed.
bool outcome(HostLink* pLink, bool fDone)
{
    if (!fDone) {
        systemWords(GetLastError(), pLink->szWords);
    }
    return fDone;
}

// Applies a directory text to a host path, part by part. Gives false if it leads out of the
// host or doesn't fit.
bool walk(char (&szPath)[MAX_PATH], const char* pszDir)
{
    char szParts[MAX_PATH];
    lstrcpynA(szParts, pszDir, MAX_PATH);
    if (szParts[0] == '/' || szParts[0] == '\\') {
        strcpy(szPath, "/");
    }
    for (char* psz = strtok(szParts, "/\\"); psz != nullptr; psz = strtok(nullptr, "/\\")) {
        char* pchLast = strrchr(szPath, '/');
        if (strcmp(psz, "..") == 0) {
            if (szPath[1] == '\0') {
                return false;
            }
            pchLast[pchLast == szPath ? 1 : 0] = '\0';
        } else if (strcmp(psz, ".") != 0) {
            if (strpbrk(psz, ":*?\"<>|") != nullptr ||
                strlen(szPath) + strlen(psz) + 2 > MAX_PATH) {
                return false;
            }
            strcat(szPath, szPath[1] == '\0' ? "" : "/");
            strcat(szPath, psz);
        }
    }
    return true;
}

// The folder or file of this machine that a name stands for. Gives false, as the system would,
// if there can't be one.
bool localPath(HostLink* pLink, const char* pszName, char (&szLocal)[MAX_PATH])
{
    char szPath[MAX_PATH];
    strcpy(szPath, pLink->szPath);
    bool fInside = walk(szPath, pszName);
    for (char* pch = szPath; *pch != '\0'; ++pch) {
        *pch = *pch == '/' ? '\\' : *pch;
    }
    if (!fInside || !joinPath(szLocal, linkOf(pLink)->szRoot, szPath + 1)) {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    return true;
}

bool isFolder(const char* pszFolder)
{
    DWORD dwAttributes = GetFileAttributesA(pszFolder);
    return dwAttributes != INVALID_FILE_ATTRIBUTES &&
           (dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

HostLink* make(const HostAddress* pAddress)
{
    auto pLink = static_cast<FolderLink*>(calloc(1, sizeof(FolderLink)));
    if (pLink != nullptr) {
        strcpy(pLink->base.szPath, "/");
        walk(pLink->base.szPath, pAddress->szPath);
        lstrcpynA(pLink->szRoot, pAddress->szServer, MAX_PATH);
        pLink->cbPerSecond = pAddress->cbPerSecond;
        CreateDirectoryA(pLink->szRoot, nullptr);
    }
    return reinterpret_cast<HostLink*>(pLink);
}

void freeLink(HostLink* pLink)
{
    free(pLink);
}

// No call waits long here.
void abortCall(HostLink*)
{
}

bool changeDir(HostLink* pLink, const char* pszDir)
{
    char szFolder[MAX_PATH];
    if (!localPath(pLink, pszDir, szFolder)) {
        return outcome(pLink, false);
    }
    if (!isFolder(szFolder)) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return outcome(pLink, false);
    }
    return walk(pLink->szPath, pszDir);
}

bool isSelfOrParent(const char* pszName)
{
    return strcmp(pszName, ".") == 0 || strcmp(pszName, "..") == 0;
}

bool list(HostLink* pLink, HostEntryProc pfnEntry, void* pContext)
{
    char szFolder[MAX_PATH];
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    if (!localPath(pLink, ".", szFolder) || !joinPath(szMask, szFolder, "*")) {
        return outcome(pLink, false);
    }
    HANDLE hFind = FindFirstFileA(szMask, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return outcome(pLink, false);
    }
    do {
        if (!isSelfOrParent(find.cFileName)) {
            pfnEntry(pContext, find.cFileName, find.nFileSizeLow,
                     (find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
        }
    } while (FindNextFileA(hFind, &find));
    FindClose(hFind);
    return true;
}

bool makeDir(HostLink* pLink, const char* pszDir)
{
    char szFolder[MAX_PATH];
    return outcome(pLink,
                   localPath(pLink, pszDir, szFolder) && CreateDirectoryA(szFolder, nullptr));
}

bool removeDir(HostLink* pLink, const char* pszDir)
{
    char szFolder[MAX_PATH];
    return outcome(pLink, localPath(pLink, pszDir, szFolder) && RemoveDirectoryA(szFolder));
}

bool renameFile(HostLink* pLink, const char* pszOldName, const char* pszNewName)
{
    char szOld[MAX_PATH];
    char szNew[MAX_PATH];
    return outcome(pLink, localPath(pLink, pszOldName, szOld) &&
                              localPath(pLink, pszNewName, szNew) && MoveFileA(szOld, szNew));
}

bool deleteFile(HostLink* pLink, const char* pszName)
{
    char szFile[MAX_PATH];
    return outcome(pLink, localPath(pLink, pszName, szFile) && DeleteFileA(szFile));
}

bool exists(HostLink* pLink, const char* pszName, bool* pfThere)
{
    char szFile[MAX_PATH];
    if (!localPath(pLink, pszName, szFile)) {
        return outcome(pLink, false);
    }
    *pfThere = GetFileAttributesA(szFile) != INVALID_FILE_ATTRIBUTES;
    return true;
}

bool openFile(HostLink* pLink, const char* pszName, bool fWrite, int)
{
    char szFile[MAX_PATH];
    if (!localPath(pLink, pszName, szFile)) {
        return outcome(pLink, false);
    }
    HANDLE hFile = CreateFileA(
        szFile, fWrite ? GENERIC_WRITE : GENERIC_READ, fWrite ? 0 : FILE_SHARE_READ, nullptr,
        fWrite ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    linkOf(pLink)->hFile = hFile;
    linkOf(pLink)->dwLineTick = GetTickCount();
    linkOf(pLink)->cbMoved = 0;
    return outcome(pLink, hFile != INVALID_HANDLE_VALUE);
}

// Waits until the line has had time for so many bytes more.
void useLine(FolderLink* pLink, DWORD cb)
{
    pLink->cbMoved += cb;
    double dNeeded = double(pLink->cbMoved) * 1000 / pLink->cbPerSecond;
    double dAhead = dNeeded - (GetTickCount() - pLink->dwLineTick);
    if (dAhead >= SHORTEST_WAIT_MS) {
        Sleep(dAhead < LONGEST_WAIT_MS ? DWORD(dAhead) : LONGEST_WAIT_MS);
    }
}

bool readFile(HostLink* pLink, void* pBuffer, DWORD cb, DWORD* pcbRead)
{
    bool fRead = ReadFile(linkOf(pLink)->hFile, pBuffer, cb, pcbRead, nullptr) != 0;
    useLine(linkOf(pLink), fRead ? *pcbRead : 0);
    return outcome(pLink, fRead);
}

bool writeFile(HostLink* pLink, const void* pBuffer, DWORD cb)
{
    DWORD cbWritten = 0;
    bool fWritten =
        WriteFile(linkOf(pLink)->hFile, pBuffer, cb, &cbWritten, nullptr) && cbWritten == cb;
    useLine(linkOf(pLink), cbWritten);
    return outcome(pLink, fWritten);
}

bool closeFile(HostLink* pLink)
{
    return outcome(pLink, CloseHandle(linkOf(pLink)->hFile) != 0);
}

} // namespace

const Host FOLDER_HOST = {make,     freeLink,  abortCall,  changeDir,  list,
                          makeDir,  removeDir, renameFile, deleteFile, exists,
                          openFile, readFile,  writeFile,  closeFile};
