// The view dialog.
#include "dialogs/checkname.h"
#include "dialogs/onename.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "transfer/window/request.h"

namespace {

bool viewLocal(const dialogs::Dialog* pDialog, const char* pszFile)
{
    if (!fXferDandDCheckSource(pDialog, pszFile)) {
        return false;
    }
    vXferDandDViewFile(pDialog->ref.hdlgDandD, pszFile, nullptr, nullptr, nullptr, nullptr);
    return true;
}

void viewHost(const XferWindowRecord* pRecord, const char* pszFile)
{
    window::requestFile(pRecord, window::FILES_VIEW, pszFile);
}

constexpr dialogs::Kind viewKind()
{
    dialogs::Kind kind =
        dialogs::oneName(XFERHELP_VIEW, IDC_VIEW_NAME, IDC_VIEW_HELP, viewLocal, viewHost);
    kind.fClosesItself = true;
    return kind;
}

constexpr dialogs::Kind VIEW = viewKind();

} // namespace

INT_PTR CALLBACK fDlgXferDandDViewProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&VIEW, hdlg, uMessage, wParam, lParam);
}
