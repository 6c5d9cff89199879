#include "language.h"
#include "options.h"

#include <string.h>

namespace {

constexpr UINT FIRST_COMMAND = 100;
constexpr UINT MAX_LANGUAGES = 32;
constexpr size_t CCH_PREFIX = 3;    // "XFR"
constexpr size_t CCH_EXTENSION = 4; // ".DLL"

struct LanguageName {
    const char* pszCode;
    const char* pszName;
};

// In the words of the languages; their modules don't tell. Other codes stand for themselves.
constexpr LanguageName NAMES[] = {{"DE", "Deutsch"},
                                  {"EN", "English"},
                                  {"ES", "Espa\xF1ol"},
                                  {"FR", "Fran\xE7"
                                         "ais"}};

char s_aszCodes[MAX_LANGUAGES][CCH_LANGUAGE];
UINT s_cLanguages;

const char* nameOf(const char* pszCode)
{
    for (const LanguageName& name : NAMES) {
        if (lstrcmpiA(name.pszCode, pszCode) == 0) {
            return name.pszName;
        }
    }
    return pszCode;
}

void addLanguage(HMENU hMenu, const char* pszFile)
{
    size_t cch = strlen(pszFile);
    if (s_cLanguages == MAX_LANGUAGES || cch <= CCH_PREFIX + CCH_EXTENSION ||
        cch - CCH_PREFIX - CCH_EXTENSION >= CCH_LANGUAGE) {
        return;
    }
    char* pszCode = s_aszCodes[s_cLanguages];
    lstrcpynA(pszCode, pszFile + CCH_PREFIX, int(cch - CCH_PREFIX - CCH_EXTENSION + 1));
    AppendMenuA(hMenu, MF_STRING, FIRST_COMMAND + s_cLanguages, nameOf(pszCode));
    ++s_cLanguages;
}

void addLanguages(HMENU hMenu)
{
    char szMask[MAX_PATH] = "";
    WIN32_FIND_DATAA found;
    GetModuleFileNameA(nullptr, szMask, MAX_PATH);
    char* pchLast = strrchr(szMask, '\\');
    if (pchLast == nullptr || strlen(szMask) + sizeof "XFR*.DLL" > MAX_PATH) {
        return;
    }
    strcpy(pchLast + 1, "XFR*.DLL");
    HANDLE hFind = FindFirstFileA(szMask, &found);
    if (hFind == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        addLanguage(hMenu, found.cFileName);
    } while (FindNextFileA(hFind, &found));
    FindClose(hFind);
}

} // namespace

void appendLanguageMenu(HMENU hBar)
{
    HMENU hMenu = CreatePopupMenu();
    s_cLanguages = 0;
    addLanguages(hMenu);
    AppendMenuA(hBar, MF_POPUP, UINT_PTR(hMenu), "&Language");
}

const char* languageOf(UINT idCommand)
{
    UINT nLanguage = idCommand - FIRST_COMMAND;
    return nLanguage < s_cLanguages ? s_aszCodes[nLanguage] : nullptr;
}

void showLanguage(HMENU hMenu, const char* pszLanguage)
{
    for (UINT n = 0; n < s_cLanguages; ++n) {
        bool fShown = lstrcmpiA(s_aszCodes[n], pszLanguage) == 0;
        CheckMenuItem(hMenu, FIRST_COMMAND + n, fShown ? MF_CHECKED : MF_UNCHECKED);
    }
}
