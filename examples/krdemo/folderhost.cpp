// The built-in host: a folder of this machine, which it never leaves.
#include "host.h"
#include "options.h"

#include <string.h>

namespace {

char s_szRoot[MAX_PATH];
char s_szPath[MAX_PATH]; // current directory, from the root on: "/", "/a", "/a/b"

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

// The folder of this machine that a host path stands for.
bool folderOf(const char* pszPath, char (&szFolder)[MAX_PATH])
{
    char szRelative[MAX_PATH];
    lstrcpynA(szRelative, pszPath + 1, MAX_PATH);
    for (char* pch = szRelative; *pch != '\0'; ++pch) {
        *pch = *pch == '/' ? '\\' : *pch;
    }
    return szRelative[0] == '\0' ? lstrcpynA(szFolder, s_szRoot, MAX_PATH) != nullptr
                                 : joinPath(szFolder, s_szRoot, szRelative);
}

bool folder(const char* pszDir, char (&szFolder)[MAX_PATH])
{
    char szPath[MAX_PATH];
    strcpy(szPath, s_szPath);
    return walk(szPath, pszDir) && folderOf(szPath, szFolder);
}

bool isFolder(const char* pszFolder)
{
    DWORD dwAttributes = GetFileAttributesA(pszFolder);
    return dwAttributes != INVALID_FILE_ATTRIBUTES &&
           (dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool open(const char* pszRoot)
{
    lstrcpynA(s_szRoot, pszRoot, MAX_PATH);
    strcpy(s_szPath, "/");
    CreateDirectoryA(s_szRoot, nullptr);
    return isFolder(s_szRoot);
}

bool changeDir(const char* pszDir)
{
    char szPath[MAX_PATH];
    char szFolder[MAX_PATH];
    strcpy(szPath, s_szPath);
    if (!walk(szPath, pszDir) || !folderOf(szPath, szFolder) || !isFolder(szFolder)) {
        return false;
    }
    strcpy(s_szPath, szPath);
    return true;
}

bool isSelfOrParent(const char* pszName)
{
    return strcmp(pszName, ".") == 0 || strcmp(pszName, "..") == 0;
}

bool list(HostEntryProc pfnEntry)
{
    char szFolder[MAX_PATH];
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    if (!folderOf(s_szPath, szFolder) || !joinPath(szMask, szFolder, "*")) {
        return false;
    }
    HANDLE hFind = FindFirstFileA(szMask, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return false;
    }
    do {
        if (!isSelfOrParent(find.cFileName)) {
            pfnEntry(find.cFileName, find.nFileSizeLow,
                     (find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
        }
    } while (FindNextFileA(hFind, &find));
    FindClose(hFind);
    return true;
}

bool makeDir(const char* pszDir)
{
    char szFolder[MAX_PATH];
    return folder(pszDir, szFolder) && CreateDirectoryA(szFolder, nullptr);
}

bool removeDir(const char* pszDir)
{
    char szFolder[MAX_PATH];
    return folder(pszDir, szFolder) && RemoveDirectoryA(szFolder);
}

bool rename(const char* pszOldName, const char* pszNewName)
{
    char szOld[MAX_PATH];
    char szNew[MAX_PATH];
    return folder(pszOldName, szOld) && folder(pszNewName, szNew) && MoveFileA(szOld, szNew);
}

bool deleteFile(const char* pszName)
{
    char szFile[MAX_PATH];
    return folder(pszName, szFile) && DeleteFileA(szFile);
}

const char* path()
{
    return s_szPath;
}

} // namespace

const Host FOLDER_HOST = {open,   changeDir,  list,   makeDir, removeDir,
                          rename, deleteFile, folder, path};
