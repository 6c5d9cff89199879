#include "shared/text.h"

#include <ctype.h>
#include <string.h>
#include <windows.h>

namespace {

constexpr char BACKSLASH[] = "\\";
constexpr char DIR_ENDS[] = "\\/:";

// A lead byte at the very end of a text is a character of its own.
size_t charLength(const char* pszText)
{
    if (pszText[0] == '\0') {
        return 0;
    }
    return IsDBCSLeadByte(BYTE(pszText[0])) && pszText[1] != '\0' ? 2 : 1;
}

bool isOneOf(const char* pchText, const char* pszSet)
{
    return charLength(pchText) == 1 && strchr(pszSet, *pchText) != nullptr;
}

// A directory as it is compared: in capitals, without a backslash at its end.
void normalizeDir(char (&szDir)[MAX_PATH], const char* pszDir)
{
    shared::copyText(szDir, pszDir, sizeof szDir);
    if (shared::endsInBackslash(szDir)) {
        szDir[strlen(szDir) - 1] = '\0';
    }
    CharUpperA(szDir);
}

} // namespace

const char* shared::nextChar(const char* pszText)
{
    return pszText + charLength(pszText);
}

const char* shared::findFirstOf(const char* pszText, const char* pszSet)
{
    const char* pch = pszText;
    while (*pch != '\0' && !isOneOf(pch, pszSet)) {
        pch = nextChar(pch);
    }
    return *pch != '\0' ? pch : nullptr;
}

const char* shared::findLastOf(const char* pszText, const char* pszSet)
{
    const char* pchLast = nullptr;
    for (const char* pch = pszText; *pch != '\0'; pch = nextChar(pch)) {
        if (isOneOf(pch, pszSet)) {
            pchLast = pch;
        }
    }
    return pchLast;
}

const char* shared::behindLastBackslash(const char* pszPath)
{
    const char* pchLast = pszPath == nullptr ? nullptr : findLastOf(pszPath, BACKSLASH);
    return pchLast != nullptr ? pchLast + 1 : pszPath;
}

bool shared::endsInBackslash(const char* pszPath)
{
    const char* pchLast = findLastOf(pszPath, BACKSLASH);
    return pchLast != nullptr && pchLast[1] == '\0';
}

size_t shared::dirLength(const char* pszName)
{
    const char* pchEnd = findLastOf(pszName, DIR_ENDS);
    return pchEnd != nullptr ? size_t(pchEnd - pszName) + 1 : 0;
}

void shared::copyText(char* pszBuffer, const char* pszText, size_t cbBuffer)
{
    const char* pchEnd = pszText == nullptr ? "" : pszText;
    const char* pchStart = pchEnd;
    while (*pchEnd != '\0' && size_t(nextChar(pchEnd) - pchStart) < cbBuffer) {
        pchEnd = nextChar(pchEnd);
    }
    memmove(pszBuffer, pchStart, size_t(pchEnd - pchStart));
    pszBuffer[pchEnd - pchStart] = '\0';
}

bool shared::appendName(char* pszDir, const char* pszName, size_t cbBuffer)
{
    size_t cbDir = strlen(pszDir);
    const char* pszSeparator = cbDir == 0 || endsInBackslash(pszDir) ? "" : BACKSLASH;
    if (cbDir + strlen(pszSeparator) + strlen(pszName) >= cbBuffer) {
        return false;
    }
    strcat(pszDir, pszSeparator);
    strcat(pszDir, pszName);
    return true;
}

void shared::toLowerCase(char* pszText)
{
    for (char* pch = pszText; *pch != '\0'; pch += charLength(pch)) {
        if (charLength(pch) == 1) {
            *pch = char(tolower(static_cast<unsigned char>(*pch)));
        }
    }
}

bool shared::isSameDir(const char* pszDir, const char* pszOther)
{
    char szDir[MAX_PATH];
    char szOther[MAX_PATH];
    normalizeDir(szDir, pszDir);
    normalizeDir(szOther, pszOther);
    return strcmp(szDir, szOther) == 0;
}
