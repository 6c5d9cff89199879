#include "ftpnames.h"

#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace {

#ifndef WC_NO_BEST_FIT_CHARS
constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;
#endif

bool isControl(WCHAR ch)
{
    return ch < 0x20 || (ch >= 0x7F && ch < 0xA0);
}

// Gives false, with the text taken for the system's code page, if it is no UTF-8.
bool toWide(const char* pszWire, WCHAR (&szWide)[MAX_WIRE])
{
    if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, pszWire, -1, szWide, MAX_WIRE) != 0) {
        return true;
    }
    if (MultiByteToWideChar(CP_ACP, 0, pszWire, -1, szWide, MAX_WIRE) == 0) {
        szWide[0] = L'\0';
    }
    return false;
}

// The bytes of a character in the system's code page; 0 if it has none there.
int toAnsi(WCHAR ch, char (&achBytes)[8])
{
    BOOL fDefault = FALSE;
    int cb = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, &ch, 1, achBytes, sizeof achBytes,
                                 nullptr, &fDefault);
    return fDefault ? 0 : cb;
}

// A number in brackets, or 0. Gives the length of what was read.
size_t bracketed(const WCHAR* psz, WCHAR chOpen, WCHAR chClose, size_t cDigits, WCHAR* pch)
{
    WCHAR szDigits[5] = {};
    if (psz[0] != chOpen || wcsspn(psz + 1, L"0123456789ABCDEF") < cDigits ||
        psz[1 + cDigits] != chClose) {
        return 0;
    }
    wcsncpy(szDigits, psz + 1, cDigits);
    *pch = WCHAR(wcstoul(szDigits, nullptr, 16));
    return cDigits + 2;
}

// A character that stands in a shown name by its number.
size_t numbered(const WCHAR* psz, WCHAR* pch)
{
    char achBytes[8];
    size_t cch = bracketed(psz, L'<', L'>', 2, pch);
    if (cch > 0) {
        return isControl(*pch) ? cch : 0;
    }
    cch = bracketed(psz, L'[', L']', 4, pch);
    return cch > 0 && toAnsi(*pch, achBytes) == 0 ? cch : 0;
}

} // namespace

bool shownName(const char* pszWire, bool* pfUtf8, char (&szShown)[MAX_PATH])
{
    WCHAR szWide[MAX_WIRE];
    size_t cch = 0;
    if (!toWide(pszWire, szWide)) {
        *pfUtf8 = false;
    }
    for (const WCHAR* pch = szWide; *pch != L'\0'; ++pch) {
        char achBytes[8] = {};
        int cb = toAnsi(*pch, achBytes);
        if (isControl(*pch)) {
            cb = wsprintfA(achBytes, "<%02X>", *pch);
        } else if (cb == 0) {
            cb = wsprintfA(achBytes, "[%04X]", *pch);
        }
        if (cch + size_t(cb) >= MAX_PATH) {
            return false;
        }
        memcpy(szShown + cch, achBytes, size_t(cb));
        cch += size_t(cb);
    }
    szShown[cch] = '\0';
    return cch > 0;
}

bool wireName(const char* pszShown, bool fUtf8, char (&szWire)[MAX_WIRE])
{
    WCHAR szWide[MAX_WIRE];
    if (MultiByteToWideChar(CP_ACP, 0, pszShown, -1, szWide, MAX_WIRE) == 0) {
        return false;
    }
    WCHAR* pchTo = szWide;
    for (const WCHAR* pch = szWide; *pch != L'\0'; ++pchTo) {
        WCHAR chNumber = L'\0';
        size_t cch = numbered(pch, &chNumber);
        *pchTo = cch > 0 ? chNumber : *pch;
        if (*pchTo == L'\r' || *pchTo == L'\n' || *pchTo == L'\0') {
            return false;
        }
        pch += cch > 0 ? cch : 1;
    }
    *pchTo = L'\0';
    return WideCharToMultiByte(fUtf8 ? CP_UTF8 : CP_ACP, 0, szWide, -1, szWire, MAX_WIRE, nullptr,
                               nullptr) != 0;
}

void shownText(const char* pszWire, char* pszText, DWORD cchText)
{
    char szCut[MAX_WIRE];
    WCHAR szWide[MAX_WIRE];
    char szText[2 * MAX_WIRE] = "";
    lstrcpynA(szCut, pszWire, MAX_WIRE);
    toWide(szCut, szWide);
    for (WCHAR* pch = szWide; *pch != L'\0'; ++pch) {
        *pch = isControl(*pch) ? L' ' : *pch;
    }
    WideCharToMultiByte(CP_ACP, 0, szWide, -1, szText, sizeof szText, nullptr, nullptr);
    lstrcpynA(pszText, szText, int(cchText));
}

bool readListLine(const char* pszLine, ListedEntry* pEntry)
{
    const char* pchName = strchr(pszLine, ' ');
    ListedEntry entry = {};
    bool fInside = false;
    if (pchName == nullptr || pchName[1] == '\0') {
        return false;
    }
    for (const char* pch = pszLine; pch < pchName; pch = pch + strcspn(pch, "; ") + 1) {
        if (_strnicmp(pch, "type=file;", 10) == 0 || _strnicmp(pch, "type=OS.", 8) == 0) {
            fInside = true;
        } else if (_strnicmp(pch, "type=dir;", 9) == 0) {
            fInside = entry.fDirectory = true;
        } else if (_strnicmp(pch, "size=", 5) == 0) {
            entry.cbSize = strtoul(pch + 5, nullptr, 10);
        }
    }
    entry.pszWireName = pchName + 1;
    if (fInside) {
        *pEntry = entry;
    }
    return fInside;
}
