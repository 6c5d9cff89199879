#include "shared/language.h"

#include <string.h>

namespace {

constexpr size_t CCH_FILENAME = 20;
constexpr char FILENAME_START[] = "XFR";
constexpr char FILENAME_END[] = ".DLL";
constexpr char ERROR_CAPTION[] = "Korvalen";

// The handle is stored in any case, so that it is 0 after a failure.
int storeModule(HMODULE* phModule, const char* pszLanguage)
{
    *phModule = XferLoadLanguageModule(pszLanguage);
    return *phModule != nullptr ? XFER_OK : XFER_NOLANGUAGE;
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
    DWORD cch = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                               dwError, GetUserDefaultLangID(), reinterpret_cast<char*>(&pszText),
                               0, nullptr);
    if (cch == 0) {
        return 1;
    }
    int nResult = MessageBoxA(hwndOwner, pszText, ERROR_CAPTION, uStyle);
    LocalFree(pszText);
    return nResult;
}
