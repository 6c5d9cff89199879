// The delete dialog: a file, or on the local side every match of a pattern.
#include "dialogs/onename.h"
#include "resources/ids.h"
#include "shared/filelist.h"
#include "shared/krutils.h"
#include "transfer/panes/locallist.h"

#include <stdlib.h>
#include <string.h>

namespace {

// What the search finds in a directory is deleted by its path there: a bare name would mean
// another file as soon as the current directory is another one.
struct Match {
    char szDir[XFER_NAME_SIZE]; // full, with a backslash at its end
    WIN32_FIND_DATAA find;
};

bool isPattern(const char* pszName)
{
    return strchr(pszName, '*') != nullptr || strchr(pszName, '?') != nullptr;
}

// The end of the directory part of a typed name.
size_t dirLength(const char* pszName)
{
    size_t cch = strlen(pszName);
    while (cch > 0 && strchr("\\/:", pszName[cch - 1]) == nullptr) {
        --cch;
    }
    return cch;
}

// Only the directory part is made full. The rest must reach the search as typed: completing it
// would drop a dot at the end of a pattern, which then matched more files.
bool fullDirectory(const char* pszName, char (&szDir)[XFER_NAME_SIZE])
{
    char szTyped[XFER_NAME_SIZE];
    size_t cch = dirLength(pszName);
    memcpy(szTyped, pszName, cch);
    strcpy(szTyped + cch, cch == 0 ? "." : "");
    if (_fullpath(szDir, szTyped, sizeof szDir - 1) == nullptr) {
        return false;
    }
    cch = strlen(szDir);
    if (cch > 0 && szDir[cch - 1] != '\\') {
        strcpy(szDir + cch, "\\");
    }
    return true;
}

// The record keeps its directory in lower case, with a backslash only behind a root.
bool isShown(const XferWindowRecord* pRecord, const char* pszDir)
{
    char szShown[XFER_NAME_SIZE + 1];
    strcpy(szShown, pRecord->szLocalDir);
    size_t cch = strlen(szShown);
    if (cch > 0 && szShown[cch - 1] != '\\') {
        strcpy(szShown + cch, "\\");
    }
    return !pRecord->fForeignFiles && _stricmp(szShown, pszDir) == 0;
}

// Takes a file away, and its row if the list shows it. pszText is how its deletion is told.
// Gives false if the file is still there or the dialog isn't.
bool deleteFile(const dialogs::Dialog* pDialog, const char* pszPath, const Match* pMatch,
                const char* pszText)
{
    if (!DeleteFileA(pszPath)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (!dialogs::recordAction(pDialog, KRACTION_LOCALFILE_DELETED, pszText)) {
        return false;
    }
    if (isShown(pDialog->pRecord, pMatch->szDir)) {
        nXferDandDRemoveLocalFileName(pDialog->hdlgDandD, pMatch->find.cFileName);
    }
    return true;
}

bool deleteMatch(const dialogs::Dialog* pDialog, const Match* pMatch)
{
    char szPath[XFER_NAME_SIZE];
    if (strlen(pMatch->szDir) + strlen(pMatch->find.cFileName) > XFER_MAX_NAME) {
        return dialogs::reportFailure(pDialog, ERROR_FILENAME_EXCED_RANGE);
    }
    strcpy(szPath, pMatch->szDir);
    strcat(szPath, pMatch->find.cFileName);
    return deleteFile(pDialog, szPath, pMatch, pMatch->find.cFileName);
}

bool deletePattern(const dialogs::Dialog* pDialog, const char* pszPattern)
{
    Match match;
    if (!fullDirectory(pszPattern, match.szDir)) {
        return dialogs::reportFailure(pDialog, ERROR_FILENAME_EXCED_RANGE);
    }
    HANDLE hFind = FindFirstFileA(pszPattern, &match.find);
    if (hFind == INVALID_HANDLE_VALUE) {
        return true;
    }
    bool fDeleted;
    do {
        fDeleted = deleteMatch(pDialog, &match);
    } while (fDeleted && FindNextFileA(hFind, &match.find));
    FindClose(hFind);
    return fDeleted;
}

// The row bears the name that the file has on the disk, which can be written otherwise than it
// was typed.
bool deleteOne(const dialogs::Dialog* pDialog, const char* pszName)
{
    Match match;
    HANDLE hFind = FindFirstFileA(pszName, &match.find);
    if (hFind != INVALID_HANDLE_VALUE) {
        FindClose(hFind);
    } else {
        match.find.cFileName[0] = '\0';
    }
    if (!fullDirectory(pszName, match.szDir)) {
        match.szDir[0] = '\0';
    }
    return deleteFile(pDialog, pszName, &match, pszName);
}

bool deleteLocal(const dialogs::Dialog* pDialog, const char* pszName)
{
    return isPattern(pszName) ? deletePattern(pDialog, pszName) : deleteOne(pDialog, pszName);
}

void deleteHost(const dialogs::Dialog* pDialog, const char* pszName)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    XferFileList list;
    if (pRecord->callbacks.pfnDeleteHostFiles == nullptr ||
        !XferFileListCreateOne(&list, XFERLIST_HOST, pszName)) {
        return;
    }
    if (dialogs::recordAction(pDialog, KRACTION_HOSTFILE_DELETED, pszName)) {
        pRecord->callbacks.pfnDeleteHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
    } else {
        XferFileList_vDestroy(list);
    }
}

constexpr dialogs::OneNameKind DELETE_FILES = {XFERHELP_DELETE, IDC_DEL_NAME, IDC_DEL_HELP,
                                               deleteLocal,     deleteHost,   false};

} // namespace

INT_PTR CALLBACK fDlgXferDandDDelProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleOneNameMessage(&DELETE_FILES, hdlg, uMessage, wParam, lParam);
}
