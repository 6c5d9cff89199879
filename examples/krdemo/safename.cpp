#include "safename.h"

#include <windows.h>

#include <wchar.h>

namespace {

constexpr const WCHAR* DEVICES[] = {L"CON",    L"PRN",    L"AUX",    L"NUL",
                                    L"CLOCK$", L"CONIN$", L"CONOUT$"};
// Followed by a digit from 1 to 9, or by one of the superscript digits, which count as such.
constexpr const WCHAR* NUMBERED_DEVICES[] = {L"COM", L"LPT"};
constexpr WCHAR DEVICE_DIGITS[] = L"123456789\x00B9\x00B2\x00B3";

bool isControl(WCHAR ch)
{
    return ch < 0x20 || (ch >= 0x7F && ch < 0xA0);
}

// A device keeps its meaning with any extension, and with blanks before it.
bool isDevice(const WCHAR* pszName)
{
    size_t cch = wcscspn(pszName, L".");
    while (cch > 0 && pszName[cch - 1] == L' ') {
        --cch;
    }
    for (const WCHAR* pszDevice : DEVICES) {
        if (wcslen(pszDevice) == cch && _wcsnicmp(pszName, pszDevice, cch) == 0) {
            return true;
        }
    }
    for (const WCHAR* pszDevice : NUMBERED_DEVICES) {
        if (cch == 4 && _wcsnicmp(pszName, pszDevice, 3) == 0 &&
            wcschr(DEVICE_DIGITS, pszName[3]) != nullptr) {
            return true;
        }
    }
    return false;
}

} // namespace

const char* nameProblem(const char* pszName)
{
    // The file system sees the name in Unicode, so that is what is looked at.
    WCHAR szName[MAX_PATH];
    if (pszName[0] == '\0') {
        return "it is empty";
    }
    if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, pszName, -1, szName, MAX_PATH) == 0) {
        return "it is too long or no text";
    }
    for (const WCHAR* pch = szName; *pch != L'\0'; ++pch) {
        if (isControl(*pch)) {
            return "it has a control character";
        }
        if (wcschr(L"\\/:*?\"<>|", *pch) != nullptr) {
            return "it has a path, a drive or a reserved character";
        }
    }
    WCHAR chLast = szName[wcslen(szName) - 1];
    if (chLast == L'.' || chLast == L' ') {
        return "it ends in a dot or a blank";
    }
    return isDevice(szName) ? "it is the name of a device" : nullptr;
}
