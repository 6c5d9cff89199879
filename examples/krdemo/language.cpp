#include "language.h"

#include <string.h>

namespace demo {

namespace {

constexpr size_t CCH_LANGUAGE = 13; // a code of 12 characters is the most that KRHAUL takes
constexpr UINT FIRST_COMMAND = 100;
constexpr UINT MAX_LANGUAGES = 32;
constexpr size_t CCH_PREFIX = 3;    // "XFR"
constexpr size_t CCH_EXTENSION = 4; // ".DLL"

struct LanguageName {
    const char* code;
    const char* name;
};

// In the words of the languages; their modules don't tell. Other codes stand for themselves.
constexpr LanguageName NAMES[] = {{"DE", "Deutsch"},
                                  {"EN", "English"},
                                  {"ES", "Espa\xF1ol"},
                                  {"FR", "Fran\xE7"
                                         "ais"}};

char codes[MAX_LANGUAGES][CCH_LANGUAGE];
UINT languageCount;

const char* nameOf(const char* code)
{
    for (const LanguageName& name : NAMES) {
        if (lstrcmpiA(name.code, code) == 0) {
            return name.name;
        }
    }
    return code;
}

void addLanguage(HMENU hMenu, const char* file)
{
    size_t cch = strlen(file);
    if (languageCount == MAX_LANGUAGES || cch <= CCH_PREFIX + CCH_EXTENSION ||
        cch - CCH_PREFIX - CCH_EXTENSION >= CCH_LANGUAGE) {
        return;
    }
    char* code = codes[languageCount];
    lstrcpynA(code, file + CCH_PREFIX, int(cch - CCH_PREFIX - CCH_EXTENSION + 1));
    AppendMenuA(hMenu, MF_STRING, FIRST_COMMAND + languageCount, nameOf(code));
    ++languageCount;
}

void addLanguages(HMENU hMenu)
{
    char mask[MAX_PATH] = "";
    WIN32_FIND_DATAA found;
    GetModuleFileNameA(nullptr, mask, MAX_PATH);
    char* last = strrchr(mask, '\\');
    if (last == nullptr || strlen(mask) + sizeof "XFR*.DLL" > MAX_PATH) {
        return;
    }
    strcpy(last + 1, "XFR*.DLL");
    HANDLE search = FindFirstFileA(mask, &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        addLanguage(hMenu, found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
}

} // namespace

void appendLanguageMenu(HMENU hBar)
{
    HMENU hMenu = CreatePopupMenu();
    languageCount = 0;
    addLanguages(hMenu);
    AppendMenuA(hBar, MF_POPUP, UINT_PTR(hMenu), "&Language");
}

const char* languageOf(UINT idCommand)
{
    UINT number = idCommand - FIRST_COMMAND;
    return number < languageCount ? codes[number] : nullptr;
}

void showLanguage(HMENU hMenu, const char* language)
{
    for (UINT n = 0; n < languageCount; ++n) {
        bool isShown = lstrcmpiA(codes[n], language) == 0;
        CheckMenuItem(hMenu, FIRST_COMMAND + n, isShown ? MF_CHECKED : MF_UNCHECKED);
    }
}

} // namespace demo
