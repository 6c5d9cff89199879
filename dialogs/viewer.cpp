// Looking at a file: the quick viewer of the system, else the viewer program beside the
// executable. Nothing starts whose command line or control file can't be whole: half a name is
// that of another file.
#include "dialogs/program.h"
#include "dialogs/quickview.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "transfer/window/record.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr char VIEWER_NAME[] = "KRVIEWER";
constexpr char VIEWER_PROGRAM[] = "KRVIEWER "; // as a command line has it
constexpr char CONTROL_OPTION[] = "-ftp1";
constexpr char CONTROL_PREFIX[] = "ftp";
constexpr char THIS_DIR[] = ".\\";
constexpr int CCH_QUICKVIEW = 260;
constexpr LONG TEMPFILES_GROWTH = 10;
constexpr UINT FIRST_SUCCESS = 32; // of WinExec
constexpr int CCH_FAILED_FORMAT = 80;

// Holds the longest command line that the limits of its parts allow: a program's path, the command
// from the registry or the viewer's name and option, and a name, with blanks, quotes and NUL.
constexpr size_t CCH_COMMAND = 3 * size_t(XFER_NAME_SIZE) + 24;
typedef char CommandText[CCH_COMMAND];

// What the exported call was given.
struct View {
    XferWindowRecord* pRecord;
    window::Ref ref;
    const char* pszFile;
    const char* pszHostName; // null for a plain local file
    const char* pszText3;
    const char* pszText4;
    const char* pszText5;
};

void reportFailure(const View* pView, const char* pszName)
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

void quote(char* pszCommand, const char* pszStart, const char* pszName, const char* pszEnd)
{
    strcat(pszCommand, "\"");
    strcat(pszCommand, pszStart);
    strcat(pszCommand, pszName);
    strcat(pszCommand, pszEnd);
    strcat(pszCommand, "\"");
}

// A backslash at the end would escape the quote behind it.
const char* endOfSpelling(const char* pszFile)
{
    return shared::endsInBackslash(pszFile) ? "." : "";
}

// The copy is deleted with the window. The current directory can be another one by then, so its
// full path is kept.
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

// Returns 1 also if the window has gone while the viewer started.
int fXferDandDViewWithQuickView(const View* pView)
{
    char szRegistered[CCH_QUICKVIEW + 1];
    CommandText szCommand;
    if (!fXferDandDFindQuickView(szRegistered, CCH_QUICKVIEW) ||
        !dialogs::makeCommandSafe(szCommand, szRegistered)) {
        return 0;
    }
    strcat(szCommand, " ");
    quote(szCommand, "", pView->pszFile, endOfSpelling(pView->pszFile));
    UINT uResult = WinExec(szCommand, SW_SHOW);
    if (!window::isAlive(pView->ref)) {
        return 1;
    }
    if (uResult < FIRST_SUCCESS) {
        return 0;
    }
    if (pView->pszHostName != nullptr) {
        rememberCopy(pView);
    }
    return 1;
}

// The start of the viewer's command line. Returns false if the executable's path is too long.
bool startCommand(CommandText& szCommand)
{
    char szDir[XFER_NAME_SIZE];
    DWORD cch = GetModuleFileNameA(nullptr, szDir, sizeof szDir);
    if (cch == 0 || cch >= sizeof szDir) {
        return false;
    }
    szDir[cch] = '\0';
    szDir[shared::dirLength(szDir)] = '\0';
    szCommand[0] = '\0';
    dialogs::appendProgram(szCommand, szDir, VIEWER_NAME);
    strcat(szCommand, " ");
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

// Creates the file, empty.
bool createControlFile(const View* pView, char (&szControl)[XFER_NAME_SIZE])
{
    char szDir[XFER_NAME_SIZE];
    DWORD cch = GetTempPathA(sizeof szDir, szDir);
    if (cch == 0 || cch >= sizeof szDir) {
        reportFailure(pView, pView->pszFile);
        return false;
    }
    if (GetTempFileNameA(szDir, CONTROL_PREFIX, 0, szControl) == 0) {
        reportFailure(pView, szDir);
        return false;
    }
    return true;
}

// Nothing is reported for a file that can't be opened; it stays. One that can't be written whole is
// deleted.
bool writeControlFile(const View* pView, const char* pszControl)
{
    FILE* pFile = fopen(pszControl, "at");
    if (pFile == nullptr) {
        return false;
    }
    bool fWritten = writeLines(pView, pFile);
    if (fclose(pFile) == 0 && fWritten) {
        return true;
    }
    remove(pszControl);
    reportFailure(pView, pszControl);
    return false;
}

// A name that begins like the option is that of a file in the current directory.
void quoteFile(char* pszCommand, const char* pszFile)
{
    bool fLikeOption = _strnicmp(pszFile, CONTROL_OPTION, sizeof CONTROL_OPTION - 1) == 0;
    quote(pszCommand, fLikeOption ? THIS_DIR : "", pszFile, endOfSpelling(pszFile));
}

void vXferDandDViewWithViewer(const View* pView)
{
    CommandText szCommand;
    char szControl[XFER_NAME_SIZE];
    if (!startCommand(szCommand)) {
        reportFailure(pView, VIEWER_PROGRAM);
        return;
    }
    if (pView->pszHostName == nullptr) {
        quoteFile(szCommand, pView->pszFile);
    } else if (createControlFile(pView, szControl) && writeControlFile(pView, szControl)) {
        quote(szCommand, CONTROL_OPTION, szControl, "");
    } else {
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
    View view = {};
    view.pRecord = pRecord;
    view.ref = window::refOf(pRecord);
    view.pszFile = textOrEmpty(pszFile);
    view.pszHostName = pszHostName;
    view.pszText3 = textOrEmpty(pszText3);
    view.pszText4 = textOrEmpty(pszText4);
    view.pszText5 = textOrEmpty(pszText5);
    if (!isQuotable(view.pszFile)) {
        reportFailure(&view, view.pszFile);
    } else if (!fXferDandDViewWithQuickView(&view)) {
        vXferDandDViewWithViewer(&view);
    }
    // The start of a program dispatches what is sent meanwhile.
    if (window::isAlive(view.ref)) {
        pRecord->fFocusCommandLine = 0;
    }
}
