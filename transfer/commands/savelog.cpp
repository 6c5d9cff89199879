// Saving the selection of the log to a file.
#include "resources/ids.h"
#include "shared/version.h"
#include "transfer/commands/table.h"

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

struct Selection {
    DWORD nStart;
    DWORD nEnd;
};

LRESULT askLog(const XferWindowRecord* pRecord, UINT uMessage, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_INFOLINE, uMessage, wParam, lParam);
}

// Appends a text with its NUL. Gives where the next one goes.
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

// The dialog changes the current directory to that of the file, but the current directory is
// what the local panes show and what their names mean. They can have followed another one
// while the dialog was open.
bool saveDialog(const XferWindowRecord* pRecord, OPENFILENAMEA* pOpen)
{
    char szDir[XFER_NAME_SIZE] = "";
    HWND hdlgDandD = pRecord->hwndDialog;
    _getcwd(szDir, sizeof szDir);
    bool fChosen = GetSaveFileNameA(pOpen) != 0;
    bool fFollowed = window::isAlive(hdlgDandD, pRecord) && pRecord->szLocalDir[0] != '\0';
    _chdir(fFollowed ? pRecord->szLocalDir : szDir);
    return fChosen;
}

// Asks for the file; the window can be gone after it. The name has a buffer of its own: the
// scratch buffers serve other calls while the dialog is open.
bool askForFile(HWND hdlgDandD, const XferWindowRecord* pRecord, char (&szFile)[XFER_NAME_SIZE])
{
    FilterText szFilter;
    char szTitle[XFER_NAME_SIZE];
    OPENFILENAMEA open = {};
    buildFilter(pRecord, szFilter);
    window::loadString(pRecord, IDS_SAVE_TITLE, szTitle, sizeof szTitle);
    szFile[0] = '\0';
    open.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    open.hwndOwner = hdlgDandD;
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
    return saveDialog(pRecord, &open);
}

// Reads the part of a line that is selected, with a line end behind it.
void readLine(const XferWindowRecord* pRecord, LONG nLine, const Selection* pSelection,
              char (&szLine)[XFER_NAME_SIZE])
{
    auto nStart = DWORD(askLog(pRecord, EM_LINEINDEX, WPARAM(nLine)));
    *reinterpret_cast<WORD*>(szLine) = CCH_LINE;
    auto cch = DWORD(askLog(pRecord, EM_GETLINE, WPARAM(nLine), reinterpret_cast<LPARAM>(szLine)));
    DWORD nFrom = nStart < pSelection->nStart ? pSelection->nStart - nStart : 0;
    DWORD nTo = nStart + cch > pSelection->nEnd ? pSelection->nEnd - nStart : cch;
    nFrom = nFrom < nTo ? nFrom : nTo;
    memmove(szLine, szLine + nFrom, nTo - nFrom);
    strcpy(szLine + (nTo - nFrom), "\n");
}

bool writeLines(const XferWindowRecord* pRecord, const Selection* pSelection, FILE* pFile)
{
    auto nFirst = LONG(askLog(pRecord, EM_LINEFROMCHAR, pSelection->nStart));
    auto nLast = LONG(askLog(pRecord, EM_LINEFROMCHAR, pSelection->nEnd));
    for (LONG nLine = nFirst; nLine <= nLast; ++nLine) {
        readLine(pRecord, nLine, pSelection, g_szScratch2);
        if (fputs(g_szScratch2, pFile) < 0) {
            return false;
        }
    }
    return true;
}

bool writeFile(const XferWindowRecord* pRecord, const Selection* pSelection, const char* pszFile)
{
    FILE* pFile = fopen(pszFile, "wt");
    if (pFile == nullptr) {
        return false;
    }
    bool fWritten = writeLines(pRecord, pSelection, pFile);
    return fclose(pFile) == 0 && fWritten;
}

} // namespace

void commands::saveLogSelection(const commands::Command* pCommand)
{
    XferWindowRecord* pRecord = pCommand->pRecord;
    char szFile[XFER_NAME_SIZE];
    Selection selection = {};
    askLog(pRecord, EM_GETSEL, reinterpret_cast<WPARAM>(&selection.nStart),
           reinterpret_cast<LPARAM>(&selection.nEnd));
    bool fChosen = askForFile(pCommand->hdlgDandD, pRecord, szFile);
    if (!window::isAlive(pCommand->hdlgDandD, pRecord)) {
        return;
    }
    if (fChosen && !writeFile(pRecord, &selection, szFile)) {
        window::loadString(pRecord, IDS_SAVE_FAILED, g_szScratch, sizeof g_szScratch);
        vXferDandDDisplayDILText(pCommand->hdlgDandD, g_szScratch);
        return;
    }
    askLog(pRecord, EM_SETSEL, selection.nStart, LPARAM(selection.nEnd));
}
