// The local panes, rebuilt whole from the current directory of the process and the text of the
// local filter line.
#include "transfer/panes/locallist.h"
#include "resources/ids.h"
#include "transfer/panes/columns.h"
#include "transfer/panes/namesort.h"
#include "transfer/panes/pathline.h"
#include "transfer/panes/rows.h"

#include <direct.h>
#include <string.h>

namespace {

constexpr size_t CCH_ROOT = 3;
constexpr LONG REPAINT_MARGIN = -4;
constexpr char ALL_FILES[] = "*.*";
constexpr int CCH_FAILED_FORMAT = 80;

// Calls for every entry that a mask yields.
typedef void (*EntryProc)(panes::Names* pNames, const WIN32_FIND_DATAA* pFind);

bool isHidden(const WIN32_FIND_DATAA* pFind)
{
    return (pFind->dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

bool isDirectory(const WIN32_FIND_DATAA* pFind)
{
    return (pFind->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void takeDirectory(panes::Names* pDirs, const WIN32_FIND_DATAA* pFind)
{
    if (isDirectory(pFind) && !isHidden(pFind) && pFind->cFileName[0] != '.') {
        panes::addName(pDirs, pFind->cFileName);
    }
}

void takeFile(panes::Names* pFiles, const WIN32_FIND_DATAA* pFind)
{
    if (!isDirectory(pFind) && !isHidden(pFind)) {
        panes::addName(pFiles, pFind->cFileName);
    }
}

// One pass over the entries of a mask; either list can be null.
void enumerate(const char* pszMask, panes::Names* pDirs, panes::Names* pFiles)
{
    WIN32_FIND_DATAA find;
    HANDLE hFind = FindFirstFileA(pszMask, &find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        if (pDirs != nullptr) {
            takeDirectory(pDirs, &find);
        }
        if (pFiles != nullptr) {
            takeFile(pFiles, &find);
        }
    } while (FindNextFileA(hFind, &find));
    FindClose(hFind);
}

// The mask of the file list: the text of the filter line, or that of the selected type.
void readMask(const XferWindowRecord* pRecord, char (&szMask)[XFER_NAME_SIZE])
{
    GetDlgItemTextA(pRecord->hwndDialog, IDC_DANDD_LOCALFILTER, szMask, sizeof szMask);
    if (szMask[0] == '\0') {
        LRESULT nType =
            SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_LOCALTYPES, CB_GETCURSEL, 0, 0);
        window::loadString(pRecord, nXferDandDTypePatternId(nType), szMask, sizeof szMask);
    }
}

bool namesDirectory(const char* pszMask)
{
    return strpbrk(pszMask, "\\/:") != nullptr;
}

bool isAllFiles(const char* pszMask)
{
    return strcmp(pszMask, ALL_FILES) == 0 || strcmp(pszMask, "*") == 0;
}

// Directories and files, in one pass where both masks yield the same entries.
void collect(XferWindowRecord* pRecord, panes::Names* pDirs, panes::Names* pFiles)
{
    char szMask[XFER_NAME_SIZE];
    readMask(pRecord, szMask);
    pRecord->fForeignFiles = namesDirectory(szMask);
    if (isAllFiles(szMask)) {
        enumerate(ALL_FILES, pDirs, pFiles);
    } else {
        enumerate(ALL_FILES, pDirs, nullptr);
        enumerate(szMask, nullptr, pFiles);
    }
    panes::sortNames(pDirs);
    panes::sortNames(pFiles);
}

void addDirRow(const XferWindowRecord* pRecord, const char* pszText, panes::ListIcon nIcon,
               DWORD nIndent, LONG nKind, DWORD cchPath)
{
    fXferDandDAddListItem(pRecord->hwndDialog, IDC_DANDD_LOCALDIRS, pszText, nIcon, nIndent, nKind,
                          cchPath);
}

// The chain from the root to the current directory. Gives the level of its subdirectories.
DWORD addAncestors(const XferWindowRecord* pRecord)
{
    char szPart[XFER_NAME_SIZE];
    const char* pszDir = pRecord->szLocalDir;
    bool fRoot = strlen(pszDir) <= CCH_ROOT;
    lstrcpynA(szPart, pszDir, CCH_ROOT + 1);
    addDirRow(pRecord, szPart, fRoot ? panes::ICON_SELECTEDFOLDER : panes::ICON_OPENFOLDER, 0,
              XFERITEM_ROOT, CCH_ROOT);
    if (fRoot) {
        return 1;
    }
    DWORD nIndent = 1;
    const char* pszPart = pszDir + CCH_ROOT;
    while (const char* pchEnd = strchr(pszPart, '\\')) {
        lstrcpynA(szPart, pszPart, int(pchEnd - pszPart) + 1);
        addDirRow(pRecord, szPart, panes::ICON_OPENFOLDER, nIndent++, XFERITEM_ANCESTOR,
                  DWORD(pchEnd - pszDir));
        pszPart = pchEnd + 1;
    }
    addDirRow(pRecord, pszPart, panes::ICON_SELECTEDFOLDER, nIndent, XFERITEM_CURRENT, 0);
    return nIndent + 1;
}

// The names come sorted and below the chain of ancestors, so each belongs at the end.
void addSubDirs(const XferWindowRecord* pRecord, const panes::Names* pDirs, DWORD nIndent)
{
    for (LONG n = 0; n < pDirs->cNames; ++n) {
        panes::appendSubDir(pRecord->hwndDialog, IDC_DANDD_LOCALDIRS, pDirs->pNames[n].pszName,
                            nIndent);
    }
}

void addFiles(XferWindowRecord* pRecord, HWND hwndFiles, const panes::Names* pFiles)
{
    for (LONG n = 0; n < pFiles->cNames; ++n) {
        if (!panes::equalsPrevious(pFiles, n)) {
            pRecord->fListsChanged = 1;
            SendMessageA(hwndFiles, LB_ADDSTRING, 0,
                         reinterpret_cast<LPARAM>(pFiles->pNames[n].pszName));
        }
    }
}

void setRedraw(HWND hwndList, BOOL fRedraw)
{
    SendMessageA(hwndList, WM_SETREDRAW, WPARAM(fRedraw), 0);
}

void showAgain(HWND hwndList)
{
    RECT rc = {};
    setRedraw(hwndList, TRUE);
    GetClientRect(hwndList, &rc);
    InflateRect(&rc, REPAINT_MARGIN, REPAINT_MARGIN);
    InvalidateRect(hwndList, &rc, FALSE);
}

// Follows the process. Gives false if its directory can't be had; the panes then stay empty.
bool followDirectory(XferWindowRecord* pRecord)
{
    if (_getcwd(pRecord->szLocalDir, sizeof pRecord->szLocalDir) == nullptr) {
        pRecord->szLocalDir[0] = '\0';
    }
    _strlwr(pRecord->szLocalDir);
    SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_LOCALPATH, WM_SETTEXT, 0,
                        reinterpret_cast<LPARAM>(pRecord->szLocalDir));
    return pRecord->szLocalDir[0] != '\0';
}

void fillPanes(XferWindowRecord* pRecord, HWND hwndFiles)
{
    panes::Names dirs = {};
    panes::Names files = {};
    collect(pRecord, &dirs, &files);
    addSubDirs(pRecord, &dirs, addAncestors(pRecord));
    addFiles(pRecord, hwndFiles, &files);
    panes::freeNames(&dirs);
    panes::freeNames(&files);
}

const char* behindLastBackslash(const char* pszPath)
{
    const char* pchLast = pszPath == nullptr ? nullptr : strrchr(pszPath, '\\');
    return pchLast != nullptr ? pchLast + 1 : pszPath;
}

} // namespace

UINT nXferDandDTypePatternId(LRESULT nTypeRow)
{
    return nTypeRow == 1 ? IDS_TYPE2_MASK : IDS_TYPE1_MASK;
}

void KRHAULAPI vXferDandDRefreshLocalFiles(HWND hdlgDandD)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    HWND hwndDirs = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDIRS);
    HWND hwndFiles = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALFILES);
    setRedraw(hwndDirs, FALSE);
    setRedraw(hwndFiles, FALSE);
    SendMessageA(hwndFiles, LB_RESETCONTENT, 0, 0);
    panes::clearRows(hwndDirs);
    if (followDirectory(pRecord)) {
        fillPanes(pRecord, hwndFiles);
    }
    vXferDandDSetColumnWidth(pRecord, IDC_DANDD_LOCALFILES);
    showAgain(hwndDirs);
    showAgain(hwndFiles);
}

bool panes::syncLocalPanes(XferWindowRecord* pRecord)
{
    char szDir[XFER_NAME_SIZE] = "";
    _getcwd(szDir, sizeof szDir);
    if (strcmp(_strlwr(szDir), pRecord->szLocalDir) == 0) {
        return true;
    }
    vXferDandDRefreshLocalFiles(pRecord->hwndDialog);
    return false;
}

bool panes::syncLocalFiles(XferWindowRecord* pRecord)
{
    char szMask[XFER_NAME_SIZE];
    if (!panes::syncLocalPanes(pRecord)) {
        return false;
    }
    if (pRecord->fForeignFiles) {
        readMask(pRecord, szMask);
        panes::reportLocalFailure(pRecord->hwndDialog, pRecord, szMask, CCH_FAILED_FORMAT);
        return false;
    }
    return true;
}

int KRHAULAPI nXferDandDAddLocalFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::insertFileName(pRecord, IDC_DANDD_LOCALFILES, behindLastBackslash(pszName));
    }
    return 0;
}

int nXferDandDRemoveLocalFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::removeFileName(pRecord, IDC_DANDD_LOCALFILES, behindLastBackslash(pszName));
    }
    return 0;
}
