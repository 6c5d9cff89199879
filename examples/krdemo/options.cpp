#include "options.h"
#include "address.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr DWORD DEFAULT_SPEED = 8 * 1024 * 1024;
constexpr char SPEED[] = "/speed:";
constexpr char LANGUAGE[] = "/language:";
constexpr char ENGLISH[] = "EN";

const char* valueOf(const char* pszArgument, const char* pszOption)
{
    size_t cch = strlen(pszOption);
    return strncmp(pszArgument, pszOption, cch) == 0 ? pszArgument + cch : nullptr;
}

void setDefaults(DemoOptions* pOptions)
{
    char szTemp[MAX_PATH] = "";
    *pOptions = {};
    GetModuleFileNameA(nullptr, pOptions->szFirst, MAX_PATH);
    if (char* pchLast = strrchr(pOptions->szFirst, '\\')) {
        *pchLast = '\0';
    }
    GetTempPathA(MAX_PATH, szTemp);
    joinPath(pOptions->szSecond, szTemp, "KRDEMO");
    pOptions->cbPerSecond = DEFAULT_SPEED;
    strcpy(pOptions->szLanguage, ENGLISH);
}

} // namespace

bool joinPath(char (&szPath)[MAX_PATH], const char* pszFolder, const char* pszName)
{
    size_t cchFolder = strlen(pszFolder);
    // Asked by character: in some code pages one ends in the byte of a backslash.
    bool fSlash = cchFolder > 0 && *CharPrevA(pszFolder, pszFolder + cchFolder) != '\\';
    szPath[0] = '\0';
    if (cchFolder + strlen(pszName) + 2 > MAX_PATH) {
        return false;
    }
    strcpy(szPath, pszFolder);
    strcat(szPath, fSlash ? "\\" : "");
    strcat(szPath, pszName);
    return true;
}

void systemWords(DWORD dwError, char (&szWords)[MAX_WORDS])
{
    DWORD cch = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                               dwError, 0, szWords, MAX_WORDS, nullptr);
    if (cch == 0) {
        wsprintfA(szWords, "System error %lu.", dwError);
    }
    while (cch > 0 && szWords[cch - 1] <= ' ' && szWords[cch - 1] >= 0) {
        szWords[--cch] = '\0';
    }
}

void readOptions(DemoOptions* pOptions)
{
    char* const aszFolders[] = {pOptions->szFirst, pOptions->szSecond};
    unsigned cFolders = 0;
    setDefaults(pOptions);
    for (int n = 1; n < __argc; ++n) {
        const char* pszArgument = __argv[n];
        if (const char* pszSpeed = valueOf(pszArgument, SPEED)) {
            pOptions->cbPerSecond = strtoul(pszSpeed, nullptr, 10);
        } else if (const char* pszLanguage = valueOf(pszArgument, LANGUAGE)) {
            lstrcpynA(pOptions->szLanguage, pszLanguage, CCH_LANGUAGE);
        } else if (strcmp(pszArgument, "/copy") == 0) {
            pOptions->fCopy = true;
        } else if (strcmp(pszArgument, "/connect") == 0) {
            pOptions->fConnect = true;
        } else if (isAddress(pszArgument)) {
            pOptions->fServer = readAddress(pszArgument, &pOptions->server);
            pOptions->fConnect = !pOptions->fServer;
        } else if (cFolders < ARRAYSIZE(aszFolders)) {
            lstrcpynA(aszFolders[cFolders++], pszArgument, MAX_PATH);
        }
    }
}
