// KRLANGCHK, the check of language modules for those who make them.
#include "contract.h"

#include <stdio.h>
#include <string.h>

namespace {

// The exit codes, from the best to the worst; the worst of all modules counts.
enum Verdict { VERDICT_WHOLE, VERDICT_BROKEN, VERDICT_UNREADABLE };

void printLine(void* pData, const char* lpszLine)
{
    printf("%s: %s\n", static_cast<const char*>(pData), lpszLine);
}

// The library knows a module by its language code alone, which stands in the name.
bool isModuleName(const char* pszName)
{
    constexpr size_t CCH_FIXED = 7;
    constexpr size_t CCH_CODE = 12;
    const size_t cch = strlen(pszName);
    return cch > CCH_FIXED && cch <= CCH_FIXED + CCH_CODE && _strnicmp(pszName, "XFR", 3) == 0 &&
           _stricmp(pszName + cch - 4, ".DLL") == 0;
}

Verdict checkFile(const char* pszFile)
{
    char path[MAX_PATH];
    char* name = nullptr;
    const DWORD cch = GetFullPathNameA(pszFile, sizeof path, path, &name);
    HMODULE hModule = cch > 0 && cch < sizeof path && name ? LoadLibraryA(path) : nullptr;
    if (!hModule) {
        printf("%s: can't be loaded\n", pszFile);
        return VERDICT_UNREADABLE;
    }
    const LangCheckReport report = {printLine, name};
    int cFound = nLangCheckModule(hModule, &report);
    if (!isModuleName(name)) {
        printLine(name, "the name is not XFR, a code of 1 to 12 characters and .DLL");
        cFound++;
    }
    printf("%s: %d found\n", name, cFound);
    FreeLibrary(hModule);
    return cFound == 0 ? VERDICT_WHOLE : VERDICT_BROKEN;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        puts("KRLANGCHK MODULE.DLL... checks language modules of KRHAUL.\n"
             "Exit code: 0 all are whole, 1 something was found, 2 a module can't be loaded");
        return VERDICT_UNREADABLE;
    }
    // A box about a file that is no module would wait for an answer.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    Verdict worst = VERDICT_WHOLE;
    for (int i = 1; i < argc; i++) {
        const Verdict verdict = checkFile(argv[i]);
        if (verdict > worst)
            worst = verdict;
    }
    return worst;
}
