#include "shared/language.h"
#include "resources/ids.h"
#include "shared/krutils.h"

#include <string.h>

namespace {

constexpr size_t CCH_FILENAME = 20;
constexpr char FILENAME_START[] = "XFR";
constexpr char FILENAME_END[] = ".DLL";
constexpr char ERROR_CAPTION[] = "Korvalen";
constexpr DWORD ANY_LANGUAGE = 0; // the platform looks for the best one

// What later versions of the platform say about a language that has no texts.
constexpr DWORD FIRST_MUI_ERROR = 15100;
constexpr DWORD LAST_MUI_ERROR = 15106;

// The handle is stored in any case, so that it is 0 after a failure.
int storeModule(HMODULE* phModule, const char* pszLanguage)
{
    *phModule = XferLoadLanguageModule(pszLanguage);
    return *phModule != nullptr ? XFER_OK : XFER_NOLANGUAGE;
}

// Allocates the system's text for an error.
bool loadSystemText(DWORD dwError, DWORD dwLanguage, char** ppszText)
{
    return FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                          dwError, dwLanguage, reinterpret_cast<char*>(ppszText), 0, nullptr) != 0;
}

// Whether a text failed to load because the system has none in that language: its regional setting
// need not be the language that it speaks.
bool lacksLanguage(DWORD dwError)
{
    return dwError == ERROR_RESOURCE_LANG_NOT_FOUND ||
           (dwError >= FIRST_MUI_ERROR && dwError <= LAST_MUI_ERROR);
}

} // namespace

HMODULE XferLoadLanguageModule(const char* pszLanguage)
{
    char szFile[CCH_FILENAME];
    constexpr size_t cchFixed = sizeof FILENAME_START - 1 + sizeof FILENAME_END;
    if (pszLanguage == nullptr || strlen(pszLanguage) > CCH_FILENAME - cchFixed) {
        return nullptr;
    }
    strcpy(szFile, FILENAME_START);
    strcat(szFile, pszLanguage);
    strcat(szFile, FILENAME_END);
    return LoadLibraryA(szFile);
}

int KRHAULAPI nXferAllocLoadLanguage(HMODULE* phModule, const char* pszLanguage)
{
    return phModule == nullptr ? XFER_NOLANGUAGE : storeModule(phModule, pszLanguage);
}

int KRHAULAPI nXferDoLanguageChange(HMODULE* phModule, const char* pszLanguage)
{
    if (phModule == nullptr) {
        return XFER_NOLANGUAGE;
    }
    if (*phModule != nullptr) {
        FreeLibrary(*phModule);
    }
    return storeModule(phModule, pszLanguage);
}

int XferSystemErrorBox(HWND hwndOwner, DWORD dwError, UINT uStyle)
{
    char* pszText = nullptr;
    if (!loadSystemText(dwError, GetUserDefaultLangID(), &pszText) &&
        !(lacksLanguage(GetLastError()) && loadSystemText(dwError, ANY_LANGUAGE, &pszText))) {
        return 1;
    }
    int nResult = MessageBoxA(hwndOwner, pszText, ERROR_CAPTION, uStyle);
    LocalFree(pszText);
    return nResult;
}

void shared::showNoResources(HMODULE hLanguage, HWND hwndParent)
{
    KrMessageBoxId(hLanguage, hwndParent, IDS_NO_RESOURCES, 0, 3, 0);
}
