// The directory dialogs: make, remove and change.
#include "dialogs/onename.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/rows.h"
#include "transfer/window/request.h"

namespace {

bool makeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!CreateDirectoryA(pszDir, nullptr)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (dialogs::recordAction(pDialog, KRACTION_LOCALDIR_MADE, pszDir)) {
        vXferDandDRefreshLocalFiles(pDialog->ref.hdlgDandD);
    }
    return true;
}

bool removeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!RemoveDirectoryA(pszDir)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    panes::ShownDir dir = panes::shownDir(pDialog->pRecord);
    if (dialogs::recordAction(pDialog, KRACTION_LOCALDIR_REMOVED, pszDir) &&
        panes::stillShows(pDialog->pRecord, &dir)) {
        fXferDandDRemoveSubDir(pDialog->ref.hdlgDandD, IDC_DANDD_LOCALDIRS, pszDir);
    }
    return true;
}

bool changeLocal(const dialogs::Dialog* pDialog, const char* pszDir)
{
    if (!SetCurrentDirectoryA(pszDir)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    vXferDandDRefreshLocalFiles(pDialog->ref.hdlgDandD);
    return true;
}

void removeHost(const XferWindowRecord* pRecord, const char* pszDir)
{
    window::requestRemoveDir(pRecord, pszDir, window::NAME_TYPED);
}

void changeHost(const XferWindowRecord* pRecord, const char* pszDir)
{
    window::requestChangeDir(pRecord, pszDir, window::NAME_TYPED);
}

constexpr dialogs::Kind MAKE_DIR = dialogs::oneName(XFERHELP_MAKEDIR, IDC_DIR_NAME, IDC_DIR_HELP,
                                                    makeLocal, window::requestMakeDir);
constexpr dialogs::Kind REMOVE_DIR =
    dialogs::oneName(XFERHELP_REMOVEDIR, IDC_DIR_NAME, IDC_DIR_HELP, removeLocal, removeHost);
constexpr dialogs::Kind CHANGE_DIR =
    dialogs::oneName(XFERHELP_CHANGEDIR, IDC_DIR_NAME, IDC_DIR_HELP, changeLocal, changeHost);

} // namespace

INT_PTR CALLBACK fDlgXferDandDMkdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&MAKE_DIR, hdlg, uMessage, wParam, lParam);
}

INT_PTR CALLBACK fDlgXferDandDRmdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&REMOVE_DIR, hdlg, uMessage, wParam, lParam);
}

INT_PTR CALLBACK fDlgXferDandDChdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&CHANGE_DIR, hdlg, uMessage, wParam, lParam);
}
