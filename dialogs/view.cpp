// The view dialog.
#include "dialogs/checkname.h"
#include "dialogs/onename.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/filelist.h"

namespace {

bool viewLocal(const dialogs::Dialog* pDialog, const char* pszFile)
{
    if (!fXferDandDCheckSource(pDialog, pszFile)) {
        return false;
    }
    vXferDandDViewFile(pDialog->hdlgDandD, pszFile, nullptr, nullptr, nullptr, nullptr);
    return true;
}

void viewHost(const dialogs::Dialog* pDialog, const char* pszFile)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    XferFileList list;
    if (pRecord->callbacks.pfnViewHostFiles != nullptr &&
        XferFileListCreateOne(&list, XFERLIST_HOST, pszFile)) {
        pRecord->callbacks.pfnViewHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
    }
}

constexpr dialogs::OneNameKind VIEW = {XFERHELP_VIEW, IDC_VIEW_NAME, IDC_VIEW_HELP,
                                       viewLocal,     viewHost,      true};

} // namespace

INT_PTR CALLBACK fDlgXferDandDViewProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleOneNameMessage(&VIEW, hdlg, uMessage, wParam, lParam);
}
