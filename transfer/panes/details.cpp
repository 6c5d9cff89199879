// Details of local files: lines in the style of a directory listing, and the size of a file.
#include "transfer/panes/details.h"
#include "shared/text.h"

#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <string.h>

namespace {

constexpr char FILE_LINE[] = "%-8s%4s%8li%10s%6s";
constexpr char DIRECTORY_LINE[] = "%-8s%4s%8s";
constexpr int FIRST_YEAR = 1900;

typedef char DateText[12];
typedef char TimeText[8];

// Returns the text in the buffer; the year has three digits from 2000 on.
const char* lpszXferDandDFormatDate(const SYSTEMTIME* pTime, DateText& szDate)
{
    wsprintfA(szDate, "%02i-%02i-%02i", pTime->wYear - FIRST_YEAR, int(pTime->wMonth),
              int(pTime->wDay));
    return szDate;
}

const char* lpszXferDandDFormatTime(const SYSTEMTIME* pTime, TimeText& szTime)
{
    wsprintfA(szTime, "%02i:%02i", int(pTime->wHour), int(pTime->wMinute));
    return szTime;
}

// Cuts a name at its first dot. Returns what follows the dot, or a blank if there is none.
const char* cutAtDot(char* pszName)
{
    char* pchDot = strchr(pszName, '.');
    if (pchDot == nullptr) {
        return " ";
    }
    *pchDot = '\0';
    return pchDot + 1;
}

bool isListedAsDirectory(const WIN32_FIND_DATAA* pFind)
{
    return (pFind->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && pFind->cFileName[0] != '.';
}

void formatLine(char (&szLine)[XFER_FORMAT_SIZE], const WIN32_FIND_DATAA* pFind)
{
    char szName[XFER_NAME_SIZE];
    DateText szDate;
    TimeText szTime;
    SYSTEMTIME time = {};
    shared::copyText(szName, pFind->cFileName, sizeof szName);
    const char* pszExtension = cutAtDot(szName);
    if (isListedAsDirectory(pFind)) {
        wsprintfA(szLine, DIRECTORY_LINE, szName, pszExtension, "<DIR>");
        return;
    }
    FileTimeToSystemTime(&pFind->ftLastWriteTime, &time);
    wsprintfA(szLine, FILE_LINE, szName, pszExtension, LONG(pFind->nFileSizeLow),
              lpszXferDandDFormatDate(&time, szDate), lpszXferDandDFormatTime(&time, szTime));
}

} // namespace

void vXferDandDFileDetails(HWND hdlgDandD, const char* pszName)
{
    char szLine[XFER_FORMAT_SIZE];
    WIN32_FIND_DATAA find;
    if (pszName == nullptr) {
        return;
    }
    memset(g_szScratch2, 0, sizeof g_szScratch2);
    shared::copyText(g_szScratch2, pszName, sizeof g_szScratch2);
    while (const char* pchSlash = shared::findFirstOf(g_szScratch2, "/")) {
        g_szScratch2[pchSlash - g_szScratch2] = '\\';
    }
    CharUpperBuffA(g_szScratch2, sizeof g_szScratch2);
    HANDLE hFind = FindFirstFileA(g_szScratch2, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return;
    }
    formatLine(szLine, &find);
    vXferDandDInfoLine(hdlgDandD, szLine);
    FindClose(hFind);
}

int nXferDandDFileStat(const char* pszPath, struct _stat* pStat)
{
    int hFile = _open(pszPath, _O_RDONLY);
    if (hFile < 0) {
        return -1;
    }
    int nResult = _fstat(hFile, pStat);
    int nError = errno;
    _close(hFile);
    errno = nError;
    return nResult;
}
