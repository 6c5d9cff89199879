// The delete dialog: a file, or on the local side every match of a pattern.
#include "dialogs/onename.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "shared/text.h"
#include "transfer/panes/locallist.h"
#include "transfer/window/request.h"

#include <stdlib.h>
#include <string.h>

namespace {

// What the search finds in a directory is deleted by its path there: a bare name would mean
// another file as soon as the current directory is another one.
struct Match {
    char szDir[XFER_NAME_SIZE]; // full
    WIN32_FIND_DATAA find;
};

// A second byte of a character is never one of these.
bool isPattern(const char* pszName)
{
    return strchr(pszName, '*') != nullptr || strchr(pszName, '?') != nullptr;
}

// Only the directory part is made full. The rest must reach the search as typed: completing it
// would drop a dot at the end of a pattern, and the pattern would match more files.
bool fullDirectory(const char* pszName, char (&szDir)[XFER_NAME_SIZE])
{
    char szTyped[XFER_NAME_SIZE];
    size_t cch = shared::dirLength(pszName);
    memcpy(szTyped, pszName, cch);
    strcpy(szTyped + cch, cch == 0 ? "." : "");
    return _fullpath(szDir, szTyped, sizeof szDir) != nullptr;
}

// Deletes a file, and its row if the list shows it. pszText is how the deletion is recorded.
// Returns false if the file is still there or the dialog isn't.
bool deleteFile(const dialogs::Dialog* pDialog, const char* pszPath, const Match* pMatch,
                const char* pszText)
{
    if (!DeleteFileA(pszPath)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (!dialogs::recordAction(pDialog, KRACTION_LOCALFILE_DELETED, pszText)) {
        return false;
    }
    if (panes::showsFilesOf(pDialog->pRecord, pMatch->szDir)) {
        nXferDandDRemoveLocalFileName(pDialog->ref.hdlgDandD, pMatch->find.cFileName);
    }
    return true;
}

bool deleteMatch(const dialogs::Dialog* pDialog, const Match* pMatch)
{
    char szPath[XFER_NAME_SIZE];
    strcpy(szPath, pMatch->szDir);
    if (!shared::appendName(szPath, pMatch->find.cFileName, sizeof szPath)) {
        return dialogs::reportFailure(pDialog, ERROR_FILENAME_EXCED_RANGE);
    }
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

// The row shows the name that the file has on the disk, which can differ from the typed one in the
// case of its letters.
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

void deleteHost(const XferWindowRecord* pRecord, const char* pszName)
{
    window::requestFile(pRecord, window::FILES_DELETE, pszName);
}

constexpr dialogs::Kind DELETE_FILES =
    dialogs::oneName(XFERHELP_DELETE, IDC_DEL_NAME, IDC_DEL_HELP, deleteLocal, deleteHost);

} // namespace

INT_PTR CALLBACK fDlgXferDandDDelProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&DELETE_FILES, hdlg, uMessage, wParam, lParam);
}
