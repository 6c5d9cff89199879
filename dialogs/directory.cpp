// The directory dialogs: make, remove and change.
#include "dialogs/onename.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/panes/rows.h"

namespace {

constexpr DWORD TYPED = 0; // the name isn't from the list

bool makeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!CreateDirectoryA(pszDir, nullptr)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (dialogs::recordAction(pDialog, KRACTION_LOCALDIR_MADE, pszDir)) {
        vXferDandDRefreshLocalFiles(pDialog->hdlgDandD);
    }
    return true;
}

bool removeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!RemoveDirectoryA(pszDir)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (dialogs::recordAction(pDialog, KRACTION_LOCALDIR_REMOVED, pszDir)) {
        fXferDandDRemoveSubDir(pDialog->hdlgDandD, IDC_DANDD_LOCALDIRS, pszDir);
    }
    return true;
}

bool changeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!SetCurrentDirectoryA(pszDir)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    vXferDandDRefreshLocalFiles(pDialog->hdlgDandD);
    return true;
}

// The parent is asked for before the callback, in which the window can die.
void makeHost(const dialogs::Dialog* pDialog, const char* pszDir)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnMakeHostDir != nullptr) {
        pRecord->callbacks.pfnMakeHostDir(pRecord->dwCallerData, 0, 0, pszDir);
        KrRecordAction(hwndParent, KRACTION_HOSTDIR_MADE, pszDir);
    }
}

void removeHost(const dialogs::Dialog* pDialog, const char* pszDir)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnRemoveHostDir != nullptr) {
        pRecord->callbacks.pfnRemoveHostDir(pRecord->dwCallerData, 0, 0, pszDir, TYPED);
        KrRecordAction(hwndParent, KRACTION_HOSTDIR_REMOVED, pszDir);
    }
}

void changeHost(const dialogs::Dialog* pDialog, const char* pszDir)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    if (pRecord->callbacks.pfnChangeHostDir != nullptr) {
        pRecord->callbacks.pfnChangeHostDir(pRecord->dwCallerData, 0, 0, pszDir, TYPED);
    }
}

constexpr dialogs::OneNameKind MAKE_DIR = {XFERHELP_MAKEDIR, IDC_DIR_NAME, IDC_DIR_HELP,
                                           makeLocal,        makeHost,     false};
constexpr dialogs::OneNameKind REMOVE_DIR = {XFERHELP_REMOVEDIR, IDC_DIR_NAME, IDC_DIR_HELP,
                                             removeLocal,        removeHost,   false};
constexpr dialogs::OneNameKind CHANGE_DIR = {XFERHELP_CHANGEDIR, IDC_DIR_NAME, IDC_DIR_HELP,
                                             changeLocal,        changeHost,   false};

} // namespace

INT_PTR CALLBACK fDlgXferDandDMkdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleOneNameMessage(&MAKE_DIR, hdlg, uMessage, wParam, lParam);
}

INT_PTR CALLBACK fDlgXferDandDRmdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleOneNameMessage(&REMOVE_DIR, hdlg, uMessage, wParam, lParam);
}

INT_PTR CALLBACK fDlgXferDandDChdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleOneNameMessage(&CHANGE_DIR, hdlg, uMessage, wParam, lParam);
}
