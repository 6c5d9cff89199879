// Looking at a file: the quick viewer of the system, else the viewer program beside the
// executable. Nothing starts whose command line or control file can't be whole: half a name is
// that of another file.
#include "resources/ids.h"
#include "transfer/window/record.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr char VIEWER_PROGRAM[] = "KRVIEWER ";
constexpr char CONTROL_OPTION[] = "-ftp1";
constexpr char CONTROL_PREFIX[] = "ftp";
constexpr char QUICKVIEW_COMMAND[] = "SOFTWARE\\Classes\\QuickView\\shell\\open\\command";
constexpr char QUICKVIEW_TEXT[] = "SOFTWARE\\Classes\\QuickView\\.TXT";
constexpr int CCH_QUICKVIEW = 260;
constexpr LONG TEMPFILES_GROWTH = 10;
constexpr UINT FIRST_SUCCESS = 32; // of WinExec
constexpr int CCH_FAILED_FORMAT = 80;

// Holds the longest command line that the limits of its parts allow: directory, program,
// option and name, with blank, quotes and NUL.
constexpr size_t CCH_COMMAND = 2 * size_t(XFER_NAME_SIZE) + 24;

// What the exported call was given.
struct View {
    XferWindowRecord* pRecord;
    const char* pszFile;
    const char* pszHostName; // null for a plain local file
    const char* pszText3;
    const char* pszText4;
    const char* pszText5;
};

void sayFailed(const View* pView, const char* pszName)
{
    char szFormat[CCH_FAILED_FORMAT];
    char szText[XFER_FORMAT_SIZE];
    window::loadString(pView->pRecord, IDS_LOCAL_FAILED, szFormat, sizeof szFormat);
    wsprintfA(szText, szFormat, pszName);
    vXferDandDDisplayDILText(pView->pRecord->hwndDialog, szText);
}

// A name that a command line can carry between double quotes.
bool isQuotable(const char* pszName)
{
    return pszName[0] != '\0' && strlen(pszName) <= XFER_MAX_NAME &&
           strchr(pszName, '"') == nullptr;
}

// A blank command would leave the file itself as the program to start.
bool isBlank(const char* pszText)
{
    return pszText[strspn(pszText, " \t")] == '\0';
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
    char szSubkey[XFER_NAME_SIZE];
    return RegEnumKeyA(hKey, 0, szSubkey, sizeof szSubkey) == ERROR_SUCCESS;
}

bool openKey(const char* pszKey, HKEY* phKey)
{
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, pszKey, 0, KEY_READ, phKey) == ERROR_SUCCESS;
}

// Reads the command into a buffer of size + 1. The quick viewer counts as present only if it
// knows text files.
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

// The copy goes with the window, which can stand in another directory by then: its full name
// is kept.
void rememberCopy(const View* pView)
{
    char szPath[XFER_NAME_SIZE];
    XferFileList* pList = &pView->pRecord->viewTempFiles;
    LONG nRow = XferFileList_cGetSize(*pList);
    if (_fullpath(szPath, pView->pszFile, sizeof szPath) != nullptr &&
        XferFileList_fSetSize(pList, nRow + 1, TEMPFILES_GROWTH)) {
        XferFileList_fSetString(*pList, nRow, XFERLIST_HOST, pView->pszHostName);
        XferFileList_fSetString(*pList, nRow, XFERLIST_LOCAL, szPath);
    }
}

int fXferDandDViewWithQuickView(const View* pView)
{
    char szCommand[CCH_COMMAND];
    if (!fXferDandDFindQuickView(szCommand, CCH_QUICKVIEW)) {
        return 0;
    }
    strcat(szCommand, " \"");
    strcat(szCommand, pView->pszFile);
    strcat(szCommand, "\"");
    if (WinExec(szCommand, SW_SHOW) < FIRST_SUCCESS) {
        return 0;
    }
    if (pView->pszHostName != nullptr) {
        rememberCopy(pView);
    }
    return 1;
}

// The start of the viewer's command line. Gives false if the executable's path is too long.
bool startCommand(char (&szCommand)[CCH_COMMAND])
{
    char szDrive[_MAX_DRIVE];
    char szDir[XFER_NAME_SIZE];
    char szPath[XFER_NAME_SIZE];
    DWORD cch = GetModuleFileNameA(nullptr, szPath, sizeof szPath);
    if (cch == 0 || cch >= sizeof szPath) {
        return false;
    }
    szPath[cch] = '\0';
    _splitpath(szPath, szDrive, szDir, nullptr, nullptr);
    strcpy(szCommand, szDrive);
    strcat(szCommand, szDir);
    strcat(szCommand, VIEWER_PROGRAM);
    return true;
}

// A text that would be taken for more than its own line makes another file the copy.
bool isLine(const char* pszText)
{
    return strpbrk(pszText, "\r\n\x1A") == nullptr;
}

bool writeLines(const View* pView, FILE* pFile)
{
    const char* lines[] = {pView->pszText4, pView->pszText3, pView->pszHostName, pView->pszFile,
                           pView->pszText5};
    bool fWritten = true;
    for (const char* pszLine : lines) {
        fWritten =
            fWritten && isLine(pszLine) && fputs(pszLine, pFile) >= 0 && fputc('\n', pFile) != EOF;
    }
    return fWritten;
}

// Gives false, with no file left, if it can't be written whole.
bool writeControlFile(const View* pView, const char* pszControl)
{
    FILE* pFile = fopen(pszControl, "at");
    if (pFile == nullptr) {
        remove(pszControl);
        return false;
    }
    bool fWritten = writeLines(pView, pFile);
    if (fclose(pFile) == 0 && fWritten) {
        return true;
    }
    remove(pszControl);
    return false;
}

// Gives false, with the control file's name, or what else can't be had, in its place.
bool makeControlFile(const View* pView, char (&szControl)[XFER_NAME_SIZE])
{
    char szDir[XFER_NAME_SIZE];
    DWORD cch = GetTempPathA(sizeof szDir, szDir);
    if (cch == 0 || cch >= sizeof szDir) {
        strcpy(szControl, pView->pszFile);
        return false;
    }
    if (GetTempFileNameA(szDir, CONTROL_PREFIX, 0, szControl) == 0) {
        strcpy(szControl, szDir);
        return false;
    }
    return writeControlFile(pView, szControl);
}

void quote(char* pszCommand, const char* pszOption, const char* pszName)
{
    strcat(pszCommand, "\"");
    strcat(pszCommand, pszOption);
    strcat(pszCommand, pszName);
    strcat(pszCommand, "\"");
}

void vXferDandDViewWithViewer(const View* pView)
{
    char szCommand[CCH_COMMAND];
    char szControl[XFER_NAME_SIZE];
    if (!startCommand(szCommand)) {
        sayFailed(pView, VIEWER_PROGRAM);
        return;
    }
    if (pView->pszHostName == nullptr) {
        quote(szCommand, "", pView->pszFile);
    } else if (makeControlFile(pView, szControl)) {
        quote(szCommand, CONTROL_OPTION, szControl);
    } else {
        sayFailed(pView, szControl);
        return;
    }
    WinExec(szCommand, SW_SHOW);
}

const char* textOrEmpty(const char* pszText)
{
    return pszText != nullptr ? pszText : "";
}

} // namespace

void KRHAULAPI vXferDandDViewFile(HWND hdlgDandD, const char* pszFile, const char* pszHostName,
                                  const char* pszText3, const char* pszText4, const char* pszText5)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    View view = {pRecord,
                 textOrEmpty(pszFile),
                 pszHostName,
                 textOrEmpty(pszText3),
                 textOrEmpty(pszText4),
                 textOrEmpty(pszText5)};
    if (!isQuotable(view.pszFile)) {
        sayFailed(&view, view.pszFile);
    } else if (!fXferDandDViewWithQuickView(&view)) {
        vXferDandDViewWithViewer(&view);
    }
    pRecord->fFocusCommandLine = 0;
}
