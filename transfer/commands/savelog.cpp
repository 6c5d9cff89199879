// Saves the selection of the log to a file.
#include "resources/ids.h"
#include "shared/block.h"
#include "shared/version.h"
#include "transfer/commands/commands.h"

#include <commdlg.h>
#include <direct.h>
#include <stdio.h>
#include <string.h>

namespace {

constexpr int CCH_LINE = 258; // leaves room for the line end and the NUL in 260
constexpr int CCH_DESCRIPTION = 60;
constexpr int CCH_PATTERN = 20;
constexpr DWORD TEXT_FILES = 2;
constexpr char EXTENSION[] = "txt";
constexpr char OLD_TEMPLATE[] = "FILEOPEN";

typedef char LineText[XFER_NAME_SIZE];

// What is selected when the command begins. Entries that come while the dialog is open can push it
// out of the log, so its text is taken first.
struct Selection {
    DWORD nStart;
    DWORD nEnd;
    DWORD cchTrimmed; // from the start of the log until then
    char* pszText;    // a block
};

LRESULT sendToLog(const XferWindowRecord* pRecord, UINT uMessage, WPARAM wParam = 0,
                  LPARAM lParam = 0)
{
    return SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_INFOLINE, uMessage, wParam, lParam);
}

// Reads the part of a line that is selected, with a line end behind it.
void readLine(const XferWindowRecord* pRecord, LONG nLine, const Selection* pSelection,
              LineText& szLine)
{
    auto nStart = DWORD(sendToLog(pRecord, EM_LINEINDEX, WPARAM(nLine)));
    *reinterpret_cast<WORD*>(szLine) = CCH_LINE;
    auto cch =
        DWORD(sendToLog(pRecord, EM_GETLINE, WPARAM(nLine), reinterpret_cast<LPARAM>(szLine)));
    DWORD nFrom = nStart < pSelection->nStart ? pSelection->nStart - nStart : 0;
    DWORD nTo = nStart + cch > pSelection->nEnd ? pSelection->nEnd - nStart : cch;
    nFrom = nFrom < nTo ? nFrom : nTo;
    memmove(szLine, szLine + nFrom, nTo - nFrom);
    strcpy(szLine + (nTo - nFrom), "\n");
}

// Returns false if there is no memory for the text.
bool readSelection(const XferWindowRecord* pRecord, Selection* pSelection)
{
    LineText szLine;
    sendToLog(pRecord, EM_GETSEL, reinterpret_cast<WPARAM>(&pSelection->nStart),
              reinterpret_cast<LPARAM>(&pSelection->nEnd));
    pSelection->cchTrimmed = pRecord->cchLogTrimmed;
    auto nFirst = LONG(sendToLog(pRecord, EM_LINEFROMCHAR, pSelection->nStart));
    auto nLast = LONG(sendToLog(pRecord, EM_LINEFROMCHAR, pSelection->nEnd));
    auto cLines = SIZE_T(nLast - nFirst + 1);
    pSelection->pszText =
        static_cast<char*>(shared::allocateBlock(GMEM_ZEROINIT, cLines * (CCH_LINE + 1) + 1));
    if (pSelection->pszText == nullptr) {
        return false;
    }
    char* pchEnd = pSelection->pszText;
    for (LONG nLine = nFirst; nLine <= nLast; ++nLine) {
        readLine(pRecord, nLine, pSelection, szLine);
        strcpy(pchEnd, szLine);
        pchEnd += strlen(szLine);
    }
    return true;
}

// Selects again what was selected at first, as far as the log still has it.
void restoreSelection(const XferWindowRecord* pRecord, const Selection* pSelection)
{
    DWORD cchGone = pRecord->cchLogTrimmed - pSelection->cchTrimmed;
    DWORD nStart = pSelection->nStart > cchGone ? pSelection->nStart - cchGone : 0;
    DWORD nEnd = pSelection->nEnd > cchGone ? pSelection->nEnd - cchGone : 0;
    sendToLog(pRecord, EM_SETSEL, nStart, LPARAM(nEnd));
}

// Appends a text with its NUL. Returns where the next one goes.
char* appendPart(const XferWindowRecord* pRecord, char* pchTo, UINT idString, int cchLimit)
{
    window::loadString(pRecord, idString, pchTo, cchLimit);
    return pchTo + strlen(pchTo) + 1;
}

typedef char FilterText[2 * (CCH_DESCRIPTION + CCH_PATTERN) + 1];

void buildFilter(const XferWindowRecord* pRecord, FilterText& szFilter)
{
    char* pch = appendPart(pRecord, szFilter, IDS_TYPE1_NAME, CCH_DESCRIPTION);
    pch = appendPart(pRecord, pch, IDS_TYPE1_MASK, CCH_PATTERN);
    pch = appendPart(pRecord, pch, IDS_TYPE2_NAME, CCH_DESCRIPTION);
    pch = appendPart(pRecord, pch, IDS_TYPE2_MASK, CCH_PATTERN);
    *pch = '\0';
}

// The dialog changes the current directory to that of the file. The process goes back to where it
// was, unless the local panes have followed it to another directory while the dialog was open.
bool runSaveDialog(const XferWindowRecord* pRecord, OPENFILENAMEA* pOpen)
{
    char szDir[XFER_NAME_SIZE] = "";
    char szShown[XFER_NAME_SIZE];
    window::Ref ref = window::refOf(pRecord);
    _getcwd(szDir, sizeof szDir);
    strcpy(szShown, pRecord->szLocalDir);
    bool fChosen = GetSaveFileNameA(pOpen) != 0;
    bool fFollowed = window::isAlive(ref) && pRecord->szLocalDir[0] != '\0' &&
                     strcmp(szShown, pRecord->szLocalDir) != 0;
    _chdir(fFollowed ? pRecord->szLocalDir : szDir);
    return fChosen;
}

// Asks for the file; the window can be gone after it. The name has a buffer of its own: other calls
// use the scratch buffers while the dialog is open.
bool askForFile(const XferWindowRecord* pRecord, char (&szFile)[XFER_NAME_SIZE])
{
    FilterText szFilter;
    char szTitle[XFER_NAME_SIZE];
    OPENFILENAMEA open = {};
    buildFilter(pRecord, szFilter);
    window::loadString(pRecord, IDS_SAVE_TITLE, szTitle, sizeof szTitle);
    szFile[0] = '\0';
    open.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    open.hwndOwner = pRecord->hwndDialog;
    open.hInstance = pRecord->hLanguage;
    open.lpstrFilter = szFilter;
    open.nFilterIndex = TEXT_FILES;
    open.lpstrFile = szFile;
    open.nMaxFile = sizeof szFile;
    open.lpstrTitle = szTitle;
    open.lpstrDefExt = EXTENSION;
    open.lpTemplateName = OLD_TEMPLATE;
    open.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
    open.Flags |= shared::isVersion4() ? OFN_EXPLORER : OFN_ENABLETEMPLATE;
    return runSaveDialog(pRecord, &open);
}

bool writeFile(const char* pszText, const char* pszFile)
{
    FILE* pFile = fopen(pszFile, "wt");
    if (pFile == nullptr) {
        return false;
    }
    bool fWritten = fputs(pszText, pFile) >= 0;
    return fclose(pFile) == 0 && fWritten;
}

void saveSelection(const commands::Command* pCommand, const Selection* pSelection)
{
    char szFile[XFER_NAME_SIZE];
    char szFailed[XFER_NAME_SIZE];
    const XferWindowRecord* pRecord = pCommand->pRecord;
    bool fChosen = askForFile(pRecord, szFile);
    if (!window::isAlive(pCommand->ref)) {
        return;
    }
    if (fChosen && !writeFile(pSelection->pszText, szFile)) {
        window::loadString(pRecord, IDS_SAVE_FAILED, szFailed, sizeof szFailed);
        vXferDandDDisplayDILText(pCommand->hdlgDandD, szFailed);
        return;
    }
    restoreSelection(pRecord, pSelection);
}

} // namespace

void commands::saveLogSelection(const Command* pCommand)
{
    Selection selection = {};
    if (readSelection(pCommand->pRecord, &selection)) {
        saveSelection(pCommand, &selection);
    }
    shared::freeBlock(selection.pszText);
}
