// The dialog of the confirmation settings: a view on the flags that the caller keeps.
#include "dialogs/engine.h"
#include "resources/ids.h"
#include "transfer/window/request.h"

namespace {

struct FlagRow {
    int idBox;
    DWORD dwFlag;
};

constexpr FlagRow FLAGS[] = {
    {IDC_CONFIRM_LOCALDELETE, XFERCONFIRM_LOCALDELETE},
    {IDC_CONFIRM_LOCALRMDIR, XFERCONFIRM_LOCALRMDIR},
    {IDC_CONFIRM_LOCALREPLACE, XFERCONFIRM_LOCALREPLACE},
    {IDC_CONFIRM_HOSTDELETE, XFERCONFIRM_HOSTDELETE},
    {IDC_CONFIRM_HOSTREPLACE, XFERCONFIRM_HOSTREPLACE},
};

// The window can die while the caller is asked for its flags.
void initDialog(HWND hdlg, LPARAM lParam)
{
    dialogs::Dialog dialog;
    dialogs::start(hdlg, lParam);
    if (!dialogs::dialogOf(hdlg, &dialog)) {
        return;
    }
    DWORD dwFlags = window::confirmFlags(dialog.pRecord);
    if (!dialogs::isAlive(&dialog)) {
        return;
    }
    for (const FlagRow& row : FLAGS) {
        CheckDlgButton(hdlg, row.idBox, dwFlags & row.dwFlag);
    }
}

void accept(const dialogs::Dialog* pDialog)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    DWORD dwFlags = 0;
    for (const FlagRow& row : FLAGS) {
        dwFlags |= IsDlgButtonChecked(pDialog->hdlg, row.idBox) != 0 ? row.dwFlag : 0;
    }
    if (pRecord->callbacks.pfnConfirmFlags != nullptr) {
        pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, dwFlags, 1);
    }
    dialogs::end(pDialog);
}

constexpr dialogs::Kind CONFIRM = {
    XFERHELP_CONFIRM, IDC_CONFIRM_HELP, initDialog, accept, dialogs::end, 0, nullptr, nullptr};

} // namespace

INT_PTR CALLBACK fDlgXferDandDConfirmProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&CONFIRM, hdlg, uMessage, wParam, lParam);
}
