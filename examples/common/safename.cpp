#include "safename.h"

#include <windows.h>

#include <wchar.h>

namespace sample {

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
bool isDevice(const WCHAR* name)
{
    size_t cch = wcscspn(name, L".");
    while (cch > 0 && name[cch - 1] == L' ') {
        --cch;
    }
    for (const WCHAR* device : DEVICES) {
        if (wcslen(device) == cch && _wcsnicmp(name, device, cch) == 0) {
            return true;
        }
    }
    for (const WCHAR* device : NUMBERED_DEVICES) {
        if (cch == 4 && _wcsnicmp(name, device, 3) == 0 &&
            wcschr(DEVICE_DIGITS, name[3]) != nullptr) {
            return true;
        }
    }
    return false;
}

} // namespace

const char* nameProblem(const char* name)
{
    // The file system sees the name in Unicode, so that is what is looked at.
    WCHAR wide[MAX_PATH];
    if (name[0] == '\0') {
        return "it is empty";
    }
    if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, name, -1, wide, MAX_PATH) == 0) {
        return "it is too long or no text";
    }
    for (const WCHAR* pch = wide; *pch != L'\0'; ++pch) {
        if (isControl(*pch)) {
            return "it has a control character";
        }
        if (wcschr(L"\\/:*?\"<>|", *pch) != nullptr) {
            return "it has a path, a drive or a reserved character";
        }
    }
    WCHAR chLast = wide[wcslen(wide) - 1];
    if (chLast == L'.' || chLast == L' ') {
        return "it ends in a dot or a blank";
    }
    return isDevice(wide) ? "it is the name of a device" : nullptr;
}

} // namespace sample
