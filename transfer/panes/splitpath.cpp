#include "transfer/panes/splitpath.h"
#include "shared/text.h"

#include <string.h>

namespace {

constexpr size_t MAX_NAME = 12; // of a short file name: eight, a dot and three
constexpr size_t MAX_BASE = 8;
constexpr size_t MAX_EXTENSION = 4; // with its dot

bool holdsDirectory(const char* pszRest)
{
    return shared::findFirstOf(pszRest, "\\") != nullptr || strstr(pszRest, "..") != nullptr;
}

bool holdsDoubleBackslash(const char* pszDir)
{
    const char* pch = pszDir;
    while ((pch = shared::findFirstOf(pch, "\\")) != nullptr && pch[1] != '\\') {
        ++pch;
    }
    return pch != nullptr;
}

// Takes a drive off the front of the text. Returns the rest, or null for a bad drive.
const char* takeDrive(const char* pszPath, XferPathParts* pParts)
{
    const char* pchColon = shared::findFirstOf(pszPath, ":");
    if (pchColon == nullptr) {
        return pszPath;
    }
    if (!IsCharAlphaA(pszPath[0]) || pchColon != pszPath + 1 ||
        shared::findFirstOf(pchColon + 1, ":") != nullptr) {
        return nullptr;
    }
    shared::copyText(pParts->szDrive, pszPath, sizeof pParts->szDrive);
    return pszPath + 2;
}

bool appendToDir(XferPathParts* pParts, const char* pch, size_t cch)
{
    size_t cchDir = strlen(pParts->szDir);
    if (cchDir + cch >= sizeof pParts->szDir) {
        return false;
    }
    memcpy(pParts->szDir + cchDir, pch, cch);
    pParts->szDir[cchDir + cch] = '\0';
    return true;
}

// Takes the directory off the front of the text. Returns the rest, or null for a bad directory.
const char* takeDir(const char* pszPath, XferPathParts* pParts)
{
    const char* pszRest = pszPath;
    if (!holdsDirectory(pszRest)) {
        return pszRest;
    }
    while (holdsDirectory(pszRest)) {
        pszRest = shared::nextChar(pszRest);
    }
    if (!appendToDir(pParts, pszPath, size_t(pszRest - pszPath))) {
        return nullptr;
    }
    if (*pszRest == '.') {
        if (!appendToDir(pParts, ".\\", 2)) {
            return nullptr;
        }
        ++pszRest;
    }
    bool fBad = holdsDoubleBackslash(pParts->szDir) || strstr(pParts->szDir, "...") != nullptr;
    return fBad ? nullptr : pszRest;
}

bool isShortName(const char* pszName)
{
    size_t cch = strlen(pszName);
    const char* pchDot = strchr(pszName, '.');
    size_t cchBase = pchDot != nullptr ? size_t(pchDot - pszName) : cch;
    return cch <= MAX_NAME && cchBase <= MAX_BASE && cch - cchBase <= MAX_EXTENSION;
}

bool namesDirectory(const XferPathParts* pParts)
{
    char szMask[sizeof pParts->szDrive + sizeof pParts->szDir + sizeof pParts->szName];
    WIN32_FIND_DATAA find;
    strcpy(szMask, pParts->szDrive);
    strcat(szMask, pParts->szDir);
    strcat(szMask, pParts->szName);
    HANDLE hFind = FindFirstFileA(szMask, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return false;
    }
    bool fDirectory;
    do {
        fDirectory = (find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    } while (!fDirectory && FindNextFileA(hFind, &find));
    FindClose(hFind);
    return fDirectory;
}

} // namespace

int nXferDandDSplitPath(const char* pszPath, XferPathParts* pParts)
{
    *pParts = {};
    const char* pszRest = takeDrive(pszPath, pParts);
    if (pszRest != nullptr) {
        pszRest = takeDir(pszRest, pParts);
    }
    if (pszRest == nullptr || !isShortName(pszRest)) {
        return -1;
    }
    strcpy(pParts->szName, pszRest);
    pParts->fWildcard = shared::findFirstOf(pszRest, "*?") != nullptr;
    if (!pParts->fWildcard && pParts->szName[0] != '\0' && namesDirectory(pParts)) {
        if (!appendToDir(pParts, pParts->szName, strlen(pParts->szName)) ||
            !appendToDir(pParts, "\\", 1)) {
            return -1;
        }
        pParts->szName[0] = '\0';
    }
    return 0;
}
