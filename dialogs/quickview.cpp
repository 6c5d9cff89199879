#include "dialogs/quickview.h"
#include "include/krhaul.h"

#include <string.h>

namespace {

constexpr char QUICKVIEW_COMMAND[] = "SOFTWARE\\Classes\\QuickView\\shell\\open\\command";
constexpr char QUICKVIEW_TEXT[] = "SOFTWARE\\Classes\\QuickView\\.TXT";
constexpr char BLANKS[] = " \t";
constexpr size_t PATH_SIZE = XFER_MAX_NAME + 1;

// A blank command would leave the file itself as the program to start.
bool isBlank(const char* pszText)
{
    return pszText[strspn(pszText, BLANKS)] == '\0';
}

bool readCommand(HKEY hKey, char* pszCommand, DWORD cbCommand)
{
    memset(pszCommand, 0, cbCommand + 1);
    LSTATUS nStatus = RegQueryValueExA(hKey, nullptr, nullptr, nullptr,
                                       reinterpret_cast<BYTE*>(pszCommand), &cbCommand);
    return nStatus == ERROR_SUCCESS && !isBlank(pszCommand);
}

bool hasSubkey(HKEY hKey)
{
    char szSubkey[PATH_SIZE];
    return RegEnumKeyA(hKey, 0, szSubkey, sizeof szSubkey) == ERROR_SUCCESS;
}

bool openKey(const char* pszKey, HKEY* phKey)
{
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, pszKey, 0, KEY_READ, phKey) == ERROR_SUCCESS;
}

} // namespace

int fXferDandDFindQuickView(char* pszCommand, DWORD cbCommand)
{
    HKEY hKey;
    if (!openKey(QUICKVIEW_COMMAND, &hKey)) {
        return 0;
    }
    bool fRead = readCommand(hKey, pszCommand, cbCommand);
    if (RegCloseKey(hKey) != ERROR_SUCCESS || !fRead || !openKey(QUICKVIEW_TEXT, &hKey)) {
        return 0;
    }
    bool fText = hasSubkey(hKey);
    return RegCloseKey(hKey) == ERROR_SUCCESS && fText;
}
