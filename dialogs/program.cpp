#include "dialogs/program.h"
#include "include/krhaul.h"
#include "shared/text.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr char BLANKS[] = " \t";
constexpr char PROGRAM_EXTENSION[] = ".exe";
constexpr size_t PATH_SIZE = XFER_MAX_NAME + 1;

// Whether a path means the same from every current directory.
bool isAbsolute(const char* pszPath)
{
    const char* pszRest = pszPath[0] != '\0' && pszPath[1] == ':' ? pszPath + 2 : pszPath;
    return pszRest[0] == '\\' || pszRest[0] == '/';
}

// Looks for a program in a directory; an empty one is the current one. szPath is its path then.
bool findProgram(const char* pszDir, const char* pszName, char (&szPath)[PATH_SIZE])
{
    bool fExtension = strchr(pszName + shared::dirLength(pszName), '.') != nullptr;
    shared::copyText(szPath, pszDir, sizeof szPath);
    if (!shared::appendName(szPath, pszName, sizeof szPath) ||
        strlen(szPath) + sizeof PROGRAM_EXTENSION > sizeof szPath) {
        return false;
    }
    strcat(szPath, fExtension ? "" : PROGRAM_EXTENSION);
    DWORD dwAttributes = GetFileAttributesA(szPath);
    return dwAttributes != INVALID_FILE_ATTRIBUTES &&
           (dwAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// Looks in the directories of the PATH, but for those that depend on the current one.
bool findInPath(const char* pszName, char (&szPath)[PATH_SIZE])
{
    char szDir[PATH_SIZE];
    const char* pszRest = getenv("PATH");
    bool fFound = false;
    while (!fFound && pszRest != nullptr && *pszRest != '\0') {
        const char* pchEnd = shared::findFirstOf(pszRest, ";");
        size_t cch = pchEnd != nullptr ? size_t(pchEnd - pszRest) : strlen(pszRest);
        if (cch < sizeof szDir) {
            memcpy(szDir, pszRest, cch);
            szDir[cch] = '\0';
            fFound = isAbsolute(szDir) && findProgram(szDir, pszName, szPath);
        }
        pszRest = pchEnd != nullptr ? pchEnd + 1 : nullptr;
    }
    return fFound;
}

bool findInSystem(const char* pszName, char (&szPath)[PATH_SIZE])
{
    char szDir[PATH_SIZE];
    UINT cch = GetSystemDirectoryA(szDir, sizeof szDir);
    if (cch > 0 && cch < sizeof szDir && findProgram(szDir, pszName, szPath)) {
        return true;
    }
    cch = GetWindowsDirectoryA(szDir, sizeof szDir);
    if (cch > 0 && cch < sizeof szDir && findProgram(szDir, pszName, szPath)) {
        return true;
    }
    return findInPath(pszName, szPath);
}

// The end of the shortest program name that a command line can begin with, or of the next longer
// one: without quotes the platform tries the text up to each blank. Null if there is none.
const char* nextNameEnd(const char* pszCommand, const char* pchEnd)
{
    if (pszCommand[0] == '"') {
        return pchEnd == nullptr ? shared::findFirstOf(pszCommand + 1, "\"") : nullptr;
    }
    if (pchEnd != nullptr && *pchEnd == '\0') {
        return nullptr;
    }
    const char* pchNext = shared::findFirstOf(pchEnd == nullptr ? pszCommand : pchEnd + 1, BLANKS);
    return pchNext != nullptr ? pchNext : pszCommand + strlen(pszCommand);
}

bool appendSystemProgram(char* pszCommand, const char* pszName)
{
    char szPath[PATH_SIZE];
    char szDir[PATH_SIZE];
    if (!findInSystem(pszName, szPath)) {
        return false;
    }
    size_t cchDir = shared::dirLength(szPath);
    lstrcpynA(szDir, szPath, int(cchDir) + 1);
    dialogs::appendProgram(pszCommand, szDir, szPath + cchDir);
    return true;
}

} // namespace

void dialogs::appendProgram(char* pszCommand, const char* pszDir, const char* pszName)
{
    char szShort[PATH_SIZE];
    const char* pszUsed = pszDir;
    if (strpbrk(pszDir, BLANKS) != nullptr) {
        DWORD cch = GetShortPathNameA(pszDir, szShort, sizeof szShort);
        pszUsed = cch > 0 && cch < sizeof szShort ? szShort : pszDir;
    }
    bool fQuoted = strpbrk(pszUsed, BLANKS) != nullptr || strpbrk(pszName, BLANKS) != nullptr;
    strcat(pszCommand, fQuoted ? "\"" : "");
    strcat(pszCommand, pszUsed);
    strcat(pszCommand, pszName);
    strcat(pszCommand, fQuoted ? "\"" : "");
}

bool dialogs::makeCommandSafe(char* pszSafe, const char* pszCommand)
{
    char szName[PATH_SIZE + 1];
    char szPath[PATH_SIZE];
    strcpy(pszSafe, pszCommand);
    pszCommand += strspn(pszCommand, BLANKS);
    const char* pszStart = pszCommand + (pszCommand[0] == '"' ? 1 : 0);
    if (isAbsolute(pszStart)) {
        return true;
    }
    const char* pchEnd = nextNameEnd(pszCommand, nullptr);
    for (; pchEnd != nullptr; pchEnd = nextNameEnd(pszCommand, pchEnd)) {
        lstrcpynA(szName, pszStart, int(pchEnd - pszStart) + 1);
        if (findProgram("", szName, szPath)) {
            pszSafe[0] = '\0';
            return appendSystemProgram(pszSafe, szName) &&
                   strcat(pszSafe, *pchEnd == '"' ? pchEnd + 1 : pchEnd) != nullptr;
        }
    }
    return true;
}
