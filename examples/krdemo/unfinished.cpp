#include "unfinished.h"
#include "options.h"

namespace {

constexpr char PREFIX[] = "krd";

// Under the lock.
bool closeFile(Unfinished* pUnfinished)
{
    HANDLE hFile = pUnfinished->hFile;
    pUnfinished->hFile = INVALID_HANDLE_VALUE;
    return hFile == INVALID_HANDLE_VALUE || CloseHandle(hFile);
}

void removeFile(Unfinished* pUnfinished)
{
    closeFile(pUnfinished);
    if (pUnfinished->szFile[0] != '\0') {
        DeleteFileA(pUnfinished->szFile);
        pUnfinished->szFile[0] = '\0';
    }
}

bool createFile(Unfinished* pUnfinished, const char* pszFolder)
{
    if (GetTempFileNameA(pszFolder, PREFIX, 0, pUnfinished->szFile) == 0) {
        pUnfinished->szFile[0] = '\0';
        return false;
    }
    pUnfinished->hFile = CreateFileA(pUnfinished->szFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    return pUnfinished->hFile != INVALID_HANDLE_VALUE;
}

bool writeFile(HANDLE hFile, const void* pBuffer, DWORD cb)
{
    DWORD cbWritten = 0;
    if (!WriteFile(hFile, pBuffer, cb, &cbWritten, nullptr)) {
        return false;
    }
    SetLastError(ERROR_DISK_FULL);
    return cbWritten == cb;
}

// A file that has the name steps aside until that has worked.
bool takeName(const char* pszFile, const char* pszFolder, const char* pszPath, bool fReplace)
{
    char szAside[MAX_PATH];
    if (MoveFileA(pszFile, pszPath)) {
        return true;
    }
    if (!fReplace || GetTempFileNameA(pszFolder, PREFIX, 0, szAside) == 0) {
        return false;
    }
    DeleteFileA(szAside);
    if (!MoveFileA(pszPath, szAside)) {
        return false;
    }
    if (!MoveFileA(pszFile, pszPath)) {
        DWORD dwError = GetLastError();
        MoveFileA(szAside, pszPath);
        SetLastError(dwError);
        return false;
    }
    SetFileAttributesA(szAside, FILE_ATTRIBUTE_NORMAL); // it may be read-only
    DeleteFileA(szAside);
    return true;
}

// The folder of a full path.
void folderOf(const char* pszPath, char (&szFolder)[MAX_PATH])
{
    char* pchLast = nullptr;
    lstrcpynA(szFolder, pszPath, MAX_PATH);
    for (char* pch = szFolder; *pch != '\0'; pch = CharNextA(pch)) {
        pchLast = *pch == '\\' ? pch : pchLast;
    }
    if (pchLast != nullptr) {
        pchLast[1] = '\0';
    }
}

} // namespace

void initUnfinished(Unfinished* pUnfinished)
{
    *pUnfinished = {};
    pUnfinished->hFile = INVALID_HANDLE_VALUE;
    InitializeCriticalSection(&pUnfinished->lock);
}

void freeUnfinished(Unfinished* pUnfinished)
{
    giveUpUnfinished(pUnfinished);
    DeleteCriticalSection(&pUnfinished->lock);
}

bool openUnfinished(Unfinished* pUnfinished, const char* pszFolder)
{
    EnterCriticalSection(&pUnfinished->lock);
    SetLastError(ERROR_OPERATION_ABORTED);
    bool fOpen = !pUnfinished->fForbidden && createFile(pUnfinished, pszFolder);
    LeaveCriticalSection(&pUnfinished->lock);
    return fOpen;
}

bool writeUnfinished(Unfinished* pUnfinished, const void* pBuffer, DWORD cb)
{
    EnterCriticalSection(&pUnfinished->lock);
    SetLastError(ERROR_OPERATION_ABORTED);
    bool fWritten =
        pUnfinished->hFile != INVALID_HANDLE_VALUE && writeFile(pUnfinished->hFile, pBuffer, cb);
    LeaveCriticalSection(&pUnfinished->lock);
    return fWritten;
}

bool nameUnfinished(Unfinished* pUnfinished, const char* pszPath, bool fReplace)
{
    char szFolder[MAX_PATH];
    folderOf(pszPath, szFolder);
    EnterCriticalSection(&pUnfinished->lock);
    SetLastError(ERROR_OPERATION_ABORTED);
    bool fNamed = pUnfinished->hFile != INVALID_HANDLE_VALUE && closeFile(pUnfinished) &&
                  takeName(pUnfinished->szFile, szFolder, pszPath, fReplace);
    if (fNamed) {
        pUnfinished->szFile[0] = '\0';
    }
    LeaveCriticalSection(&pUnfinished->lock);
    return fNamed;
}

void giveUpUnfinished(Unfinished* pUnfinished)
{
    EnterCriticalSection(&pUnfinished->lock);
    removeFile(pUnfinished);
    LeaveCriticalSection(&pUnfinished->lock);
}

void forbidUnfinished(Unfinished* pUnfinished)
{
    EnterCriticalSection(&pUnfinished->lock);
    pUnfinished->fForbidden = true;
    removeFile(pUnfinished);
    LeaveCriticalSection(&pUnfinished->lock);
}
