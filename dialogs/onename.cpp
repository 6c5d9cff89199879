// The dialog that asks for one name and a side: for a directory to make, to remove or to change
// to, a file to view, and files to delete. What differs stands in a row of dialogs::OneNameKind.
#include "dialogs/onename.h"
#include "resources/ids.h"

#include <string.h>

namespace {

// Of all five templates.
constexpr int IDC_LOCAL = IDC_DIR_LOCAL;
constexpr int IDC_HOST = IDC_DIR_HOST;
static_assert(IDC_VIEW_LOCAL == IDC_LOCAL && IDC_DEL_LOCAL == IDC_LOCAL, "one id for the side");
static_assert(IDC_VIEW_HOST == IDC_HOST && IDC_DEL_HOST == IDC_HOST, "one id for the side");

void accept(const dialogs::OneNameKind* pKind, const dialogs::Dialog* pDialog)
{
    char szName[XFER_NAME_SIZE];
    XferWindowRecord* pRecord = pDialog->pRecord;
    dialogs::readName(pDialog->hdlg, pKind->idName, pRecord->szName1);
    strcpy(szName, pRecord->szName1);
    bool fLocal = IsDlgButtonChecked(pDialog->hdlg, IDC_LOCAL) != 0;
    pRecord->nDialogOp = fLocal ? XFEROP_LOCAL : XFEROP_HOST;
    if (!fLocal) {
        pKind->pfnHost(pDialog, szName);
    } else if (!dialogs::syncLocalPanes(pDialog) || !pKind->pfnLocal(pDialog, szName)) {
        return;
    }
    dialogs::end(pDialog);
}

void cancel(const dialogs::Dialog* pDialog)
{
    pDialog->pRecord->szName1[0] = '\0';
    dialogs::end(pDialog);
}

void nameChanged(const dialogs::OneNameKind* pKind, HWND hdlg)
{
    dialogs::enableOk(hdlg, SendDlgItemMessageA(hdlg, pKind->idName, EM_LINELENGTH, 0, 0) > 0);
}

INT_PTR onCommand(const dialogs::OneNameKind* pKind, const dialogs::Dialog* pDialog, int id)
{
    if (id == IDOK) {
        accept(pKind, pDialog);
    } else if (id == IDCANCEL) {
        cancel(pDialog);
    } else if (id == pKind->idName) {
        nameChanged(pKind, pDialog->hdlg);
    } else if (id == pKind->idHelp) {
        dialogs::showHelp(pDialog, pKind->context);
    } else {
        return 0;
    }
    return 1;
}

INT_PTR onClose(const dialogs::OneNameKind* pKind, const dialogs::Dialog* pDialog)
{
    if (!pKind->fClosesItself) {
        return 0;
    }
    cancel(pDialog);
    return 1;
}

void initDialog(const dialogs::OneNameKind* pKind, HWND hdlg, LPARAM lParam)
{
    dialogs::start(hdlg, lParam);
    CheckRadioButton(hdlg, IDC_LOCAL, IDC_HOST, IDC_LOCAL);
    dialogs::limitName(hdlg, pKind->idName);
    dialogs::enableOk(hdlg, false);
}

} // namespace

INT_PTR dialogs::handleOneNameMessage(const dialogs::OneNameKind* pKind, HWND hdlg, UINT uMessage,
                                      WPARAM wParam, LPARAM lParam)
{
    dialogs::Dialog dialog;
    if (uMessage == WM_INITDIALOG) {
        initDialog(pKind, hdlg, lParam);
        return 1;
    }
    if (!dialogs::dialogOf(hdlg, &dialog)) {
        return 0;
    }
    switch (uMessage) {
    case WM_COMMAND:
        return onCommand(pKind, &dialog, LOWORD(wParam));
    case WM_CLOSE:
        return onClose(pKind, &dialog);
    case WM_XFER_HELP:
        dialogs::showHelp(&dialog, pKind->context);
        return 1;
    default:
        return 0;
    }
}
