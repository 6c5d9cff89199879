// The local panes, rebuilt whole from the current directory of the process and the text of the
// local filter line.
#include "transfer/panes/locallist.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/columns.h"
#include "transfer/panes/namesort.h"
#include "transfer/panes/pathline.h"
#include "transfer/panes/rows.h"

#include <direct.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr size_t CCH_ROOT = 3;
constexpr LONG REPAINT_MARGIN = -4;
constexpr char ALL_FILES[] = "*.*";
constexpr int CCH_FAILED_FORMAT = 80;

bool isHidden(const WIN32_FIND_DATAA* pFind)
{
    return (pFind->dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

bool isDirectory(const WIN32_FIND_DATAA* pFind)
{
    return (pFind->dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void addIfDirectory(panes::Names* pDirs, const WIN32_FIND_DATAA* pFind)
{
    if (isDirectory(pFind) && !isHidden(pFind) && pFind->cFileName[0] != '.') {
        panes::addName(pDirs, pFind->cFileName);
    }
}

void addIfFile(panes::Names* pFiles, const WIN32_FIND_DATAA* pFind)
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
            addIfDirectory(pDirs, &find);
        }
        if (pFiles != nullptr) {
            addIfFile(pFiles, &find);
        }
    } while (FindNextFileA(hFind, &find));
    FindClose(hFind);
}

// The mask of the file list: the text of the filter line, or that of the selected type.
void readMask(const XferWindowRecord* pRecord, char (&szMask)[XFER_NAME_SIZE])
{
    szMask[0] = '\0';
    GetDlgItemTextA(pRecord->hwndDialog, IDC_DANDD_LOCALFILTER, szMask, sizeof szMask);
    if (szMask[0] == '\0') {
        LRESULT nType =
            SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_LOCALTYPES, CB_GETCURSEL, 0, 0);
        window::loadString(pRecord, nXferDandDTypePatternId(nType), szMask, sizeof szMask);
    }
}

// Whether the files of a mask are those of the shown directory, however the mask names it.
bool isInShownDir(const XferWindowRecord* pRecord, const char* pszMask)
{
    char szTyped[XFER_NAME_SIZE];
    char szDir[XFER_NAME_SIZE];
    size_t cb = shared::dirLength(pszMask);
    if (cb == 0) {
        return true;
    }
    shared::copyText(szTyped, pszMask, cb + 1);
    return _fullpath(szDir, szTyped, sizeof szDir) != nullptr &&
           shared::isSameDir(szDir, pRecord->szLocalDir);
}

bool isAllFiles(const char* pszMask)
{
    return strcmp(pszMask, ALL_FILES) == 0 || strcmp(pszMask, "*") == 0;
}

// Directories and files, in one pass where both masks yield the same entries.
void collect(XferWindowRecord* pRecord, panes::Names* pDirs, panes::Names* pFiles)
{
    readMask(pRecord, pRecord->szLocalMask);
    pRecord->fForeignFiles = !isInShownDir(pRecord, pRecord->szLocalMask);
    if (isAllFiles(pRecord->szLocalMask)) {
        enumerate(ALL_FILES, pDirs, pFiles);
    } else {
        enumerate(ALL_FILES, pDirs, nullptr);
        enumerate(pRecord->szLocalMask, nullptr, pFiles);
    }
    panes::sortNames(pDirs);
    panes::sortNames(pFiles);
}

struct DirRow {
    const char* pszText;
    panes::ListIcon nIcon;
    DWORD nIndent;
    LONG nKind;
    DWORD cchPath;
};

void addDirRow(HWND hdlgDandD, const DirRow& row)
{
    fXferDandDAddListItem(hdlgDandD, IDC_DANDD_LOCALDIRS, row.pszText, row.nIcon, row.nIndent,
                          row.nKind, row.cchPath);
}

DirRow rootRow(const char* pszText, bool fCurrent)
{
    panes::ListIcon nIcon = fCurrent ? panes::ICON_SELECTEDFOLDER : panes::ICON_OPENFOLDER;
    return {pszText, nIcon, 0, XFERITEM_ROOT, CCH_ROOT};
}

DirRow ancestorRow(const char* pszText, DWORD nIndent, size_t cchPath)
{
    return {pszText, panes::ICON_OPENFOLDER, nIndent, XFERITEM_ANCESTOR, DWORD(cchPath)};
}

DirRow currentRow(const char* pszText, DWORD nIndent)
{
    return {pszText, panes::ICON_SELECTEDFOLDER, nIndent, XFERITEM_CURRENT, 0};
}

// Adds the chain from the root to a directory. Returns the level of its subdirectories.
DWORD addAncestors(HWND hdlgDandD, const char* pszDir)
{
    char szPart[XFER_NAME_SIZE];
    bool fRoot = strlen(pszDir) <= CCH_ROOT;
    shared::copyText(szPart, pszDir, CCH_ROOT + 1);
    addDirRow(hdlgDandD, rootRow(szPart, fRoot));
    if (fRoot) {
        return 1;
    }
    DWORD nIndent = 1;
    const char* pszPart = pszDir + CCH_ROOT;
    while (const char* pchEnd = shared::findFirstOf(pszPart, "\\")) {
        shared::copyText(szPart, pszPart, size_t(pchEnd - pszPart) + 1);
        addDirRow(hdlgDandD, ancestorRow(szPart, nIndent++, size_t(pchEnd - pszDir)));
        pszPart = pchEnd + 1;
    }
    addDirRow(hdlgDandD, currentRow(pszPart, nIndent));
    return nIndent + 1;
}

// The names come sorted and below the chain of ancestors, so each belongs at the end.
void addSubDirs(HWND hdlgDandD, const panes::Names* pDirs, DWORD nIndent)
{
    for (LONG n = 0; n < pDirs->cNames; ++n) {
        panes::appendSubDir(hdlgDandD, IDC_DANDD_LOCALDIRS, pDirs->pNames[n].pszName, nIndent);
    }
}

void addFiles(HWND hwndFiles, const panes::Names* pFiles)
{
    for (LONG n = 0; n < pFiles->cNames; ++n) {
        if (!panes::equalsPrevious(pFiles, n)) {
            panes::appendFileName(hwndFiles, pFiles->pNames[n].pszName);
        }
    }
}

void setRedraw(HWND hwndList, BOOL fRedraw)
{
    SendMessageA(hwndList, WM_SETREDRAW, WPARAM(fRedraw), 0);
}

void resumeRedraw(HWND hwndList)
{
    RECT rc = {};
    setRedraw(hwndList, TRUE);
    GetClientRect(hwndList, &rc);
    InflateRect(&rc, REPAINT_MARGIN, REPAINT_MARGIN);
    InvalidateRect(hwndList, &rc, FALSE);
}

// Copies the current directory of the process to the record and the path line. Returns
// whether the panes can be filled: they stay empty if the directory is unavailable. The caller's
// windows hear of the new text, and the window can end in that.
bool followDirectory(XferWindowRecord* pRecord)
{
    window::Ref ref = window::refOf(pRecord);
    bool fRead = panes::readCurrentDir(pRecord->szLocalDir);
    SendDlgItemMessageA(pRecord->hwndDialog, IDC_DANDD_LOCALPATH, WM_SETTEXT, 0,
                        reinterpret_cast<LPARAM>(pRecord->szLocalDir));
    return window::isAlive(ref) && fRead;
}

// The record is not touched any more once rows are added: a list that lacks memory notifies the
// caller's windows.
void fillPanes(XferWindowRecord* pRecord, HWND hwndFiles)
{
    panes::Names dirs = {};
    panes::Names files = {};
    char szDir[XFER_NAME_SIZE];
    HWND hdlgDandD = pRecord->hwndDialog;
    collect(pRecord, &dirs, &files);
    shared::copyText(szDir, pRecord->szLocalDir, sizeof szDir);
    if (files.cNames > 0) {
        pRecord->fListsChanged = 1;
    }
    addSubDirs(hdlgDandD, &dirs, addAncestors(hdlgDandD, szDir));
    addFiles(hwndFiles, &files);
    panes::freeNames(&dirs);
    panes::freeNames(&files);
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
    window::Ref ref = window::refOf(pRecord);
    HWND hwndDirs = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDIRS);
    HWND hwndFiles = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALFILES);
    setRedraw(hwndDirs, FALSE);
    setRedraw(hwndFiles, FALSE);
    SendMessageA(hwndFiles, LB_RESETCONTENT, 0, 0);
    panes::clearRows(ref, hwndDirs);
    // The list reports each row that goes to the window, and so to the caller's procedure.
    if (window::isAlive(ref) && followDirectory(pRecord)) {
        fillPanes(pRecord, hwndFiles);
    }
    if (!window::isAlive(ref)) {
        return;
    }
    vXferDandDSetColumnWidth(pRecord, IDC_DANDD_LOCALFILES);
    resumeRedraw(hwndDirs);
    resumeRedraw(hwndFiles);
}

bool panes::readCurrentDir(char (&szDir)[XFER_NAME_SIZE])
{
    if (_getcwd(szDir, sizeof szDir) == nullptr) {
        szDir[0] = '\0';
    }
    shared::toLowerCase(szDir);
    return szDir[0] != '\0';
}

bool panes::isCurrentDir(const char* pszDir)
{
    char szDir[XFER_NAME_SIZE];
    readCurrentDir(szDir);
    return strcmp(szDir, pszDir) == 0;
}

bool panes::syncLocalPanes(XferWindowRecord* pRecord)
{
    if (isCurrentDir(pRecord->szLocalDir)) {
        return true;
    }
    vXferDandDRefreshLocalFiles(pRecord->hwndDialog);
    return false;
}

bool panes::syncLocalFiles(XferWindowRecord* pRecord)
{
    if (!syncLocalPanes(pRecord)) {
        return false;
    }
    if (pRecord->fForeignFiles) {
        reportLocalFailure(pRecord->hwndDialog, pRecord, pRecord->szLocalMask, CCH_FAILED_FORMAT);
        return false;
    }
    return true;
}

bool panes::showsCurrentFiles(const XferWindowRecord* pRecord)
{
    return !pRecord->fForeignFiles && isCurrentDir(pRecord->szLocalDir);
}

bool panes::showsFilesOf(const XferWindowRecord* pRecord, const char* pszDir)
{
    return !pRecord->fForeignFiles && shared::isSameDir(pRecord->szLocalDir, pszDir);
}

int KRHAULAPI nXferDandDAddLocalFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::changeList(pRecord, IDC_DANDD_LOCALFILES, shared::behindLastBackslash(pszName),
                          panes::CHANGE_ADD);
    }
    return 0;
}

int nXferDandDRemoveLocalFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::changeList(pRecord, IDC_DANDD_LOCALFILES, shared::behindLastBackslash(pszName),
                          panes::CHANGE_REMOVE);
    }
    return 0;
}

panes::ShownDir panes::shownDir(const XferWindowRecord* pRecord)
{
    ShownDir dir = {};
    strcpy(dir.szDir, pRecord->szLocalDir);
    return dir;
}

bool panes::stillShows(const XferWindowRecord* pRecord, const ShownDir* pDir)
{
    return strcmp(pRecord->szLocalDir, pDir->szDir) == 0;
}
