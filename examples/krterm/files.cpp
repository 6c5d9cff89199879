#include "files.h"
#include "order.h"
#include "../krdemo/safename.h"
#include "../krdemo/unfinished.h"

#include <string.h>

namespace {

// Between the beginnings of the system's time, in units of 100 nanoseconds, and the host's.
constexpr ULONGLONG UNIX_BEGIN = 116444736000000000ULL;
constexpr ULONGLONG SECOND = 10000000;

HANDLE s_hSent = INVALID_HANDLE_VALUE;
Unfinished s_received;
bool s_fReady;

// The system's own words for what went wrong.
const char* problemText()
{
    static char s_szText[MODEM_STATUS];
    DWORD dwError = GetLastError();
    if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                           FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, dwError, 0, s_szText, sizeof s_szText, nullptr) == 0) {
        wsprintfA(s_szText, "System error %lu", dwError);
    }
    return s_szText;
}

// Hosts write names in UTF-8; a text that isn't that, or doesn't fit, stays as it is.
void convertText(const char* pszFrom, UINT uFrom, UINT uTo, char* pszTo, int cchTo)
{
    WCHAR szWide[MAX_PATH];
    lstrcpynA(pszTo, pszFrom, cchTo);
    if (MultiByteToWideChar(uFrom, uFrom == CP_UTF8 ? MB_ERR_INVALID_CHARS : 0, pszFrom, -1, szWide,
                            MAX_PATH) == 0) {
        return;
    }
    if (WideCharToMultiByte(uTo, 0, szWide, -1, pszTo, cchTo, nullptr, nullptr) == 0) {
        lstrcpynA(pszTo, pszFrom, cchTo);
    }
}

void folderOf(const char* pszPath, char (&szFolder)[MAX_PATH])
{
    lstrcpynA(szFolder, pszPath, MAX_PATH);
    szFolder[lastPart(pszPath) - pszPath] = '\0';
    if (szFolder[0] == '\0') {
        strcpy(szFolder, ".");
    }
}

DWORD unixTime(const FILETIME* pTime)
{
    ULONGLONG n = (ULONGLONG(pTime->dwHighDateTime) << 32) | pTime->dwLowDateTime;
    return n > UNIX_BEGIN ? DWORD((n - UNIX_BEGIN) / SECOND) : 0;
}

void setTime(HANDLE hFile, DWORD dwTime)
{
    ULONGLONG n = UNIX_BEGIN + dwTime * SECOND;
    FILETIME time = {DWORD(n), DWORD(n >> 32)};
    if (dwTime != 0) {
        SetFileTime(hFile, nullptr, nullptr, &time);
    }
}

} // namespace

const char* openForSending(const char* pszPath, ModemFile* pFile)
{
    FILETIME time = {};
    DWORD cbHigh = 0;
    closeSending();
    s_hSent = CreateFileA(pszPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                          FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (s_hSent == INVALID_HANDLE_VALUE) {
        return problemText();
    }
    pFile->cbSize = GetFileSize(s_hSent, &cbHigh);
    if (cbHigh != 0) {
        closeSending();
        return "The file is too large";
    }
    GetFileTime(s_hSent, nullptr, nullptr, &time);
    pFile->dwTime = unixTime(&time);
    pFile->fSized = true;
    convertText(lastPart(pszPath), CP_ACP, CP_UTF8, pFile->szName, sizeof pFile->szName);
    return nullptr;
}

const char* readSending(BYTE* pb, DWORD cb, DWORD* pcbRead)
{
    return ReadFile(s_hSent, pb, cb, pcbRead, nullptr) ? nullptr : problemText();
}

void closeSending()
{
    if (s_hSent != INVALID_HANDLE_VALUE) {
        CloseHandle(s_hSent);
    }
    s_hSent = INVALID_HANDLE_VALUE;
}

const char* pathFor(const char* pszFolder, const char* pszHostName, char (&szPath)[MAX_PATH])
{
    char szName[MODEM_BLOCK + 1];
    convertText(pszHostName, CP_UTF8, CP_ACP, szName, sizeof szName);
    const char* pszProblem = nameProblem(szName);
    if (pszProblem == nullptr && strlen(pszFolder) + strlen(szName) + 2 > MAX_PATH) {
        pszProblem = "it is too long";
    }
    if (pszProblem == nullptr) {
        bool fSlash = pszFolder[0] != '\0' && *lastPart(pszFolder) == '\0';
        wsprintfA(szPath, fSlash ? "%s%s" : "%s\\%s", pszFolder, szName);
    }
    return pszProblem;
}

bool isThere(const char* pszPath)
{
    return GetFileAttributesA(pszPath) != INVALID_FILE_ATTRIBUTES;
}

const char* beginReceiving(const char* pszPath)
{
    char szFolder[MAX_PATH];
    if (!s_fReady) {
        initUnfinished(&s_received);
        s_fReady = true;
    }
    folderOf(pszPath, szFolder);
    return openUnfinished(&s_received, szFolder) ? nullptr : problemText();
}

const char* writeReceiving(const BYTE* pb, DWORD cb)
{
    return writeUnfinished(&s_received, pb, cb) ? nullptr : problemText();
}

const char* keepReceived(const char* pszPath, DWORD dwTime, bool fReplace)
{
    setTime(s_received.hFile, dwTime);
    if (nameUnfinished(&s_received, pszPath, fReplace)) {
        return nullptr;
    }
    const char* pszProblem = problemText();
    dropReceived();
    return pszProblem;
}

void dropReceived()
{
    if (s_fReady) {
        giveUpUnfinished(&s_received);
    }
}
