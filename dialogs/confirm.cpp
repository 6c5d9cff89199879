// The dialog of the confirmation settings: a view on the flags that the caller keeps.
#include "dialogs.h"
#include "confirm.h"
#include "../resources/ids.h"

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
    XferDialog dialog;
    vXferDandDStartDialog(hdlg, lParam);
    if (!fXferDandDDialogOf(hdlg, &dialog)) {
        return;
    }
    DWORD dwFlags = dwXferDandDConfirmFlags(dialog.pRecord);
    if (!fXferDandDDialogIsAlive(&dialog)) {
        return;
    }
    for (const FlagRow& row : FLAGS) {
        CheckDlgButton(hdlg, row.idBox, dwFlags & row.dwFlag);
    }
}

void accept(const XferDialog* pDialog)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    DWORD dwFlags = 0;
    for (const FlagRow& row : FLAGS) {
        dwFlags |= IsDlgButtonChecked(pDialog->hdlg, row.idBox) != 0 ? row.dwFlag : 0;
    }
    if (pRecord->callbacks.pfnConfirmFlags != nullptr) {
        pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, dwFlags, 1);
    }
    vXferDandDEndDialog(pDialog);
}

constexpr XferDialogKind CONFIRM = {
    XFERHELP_CONFIRM, IDC_CONFIRM_HELP, initDialog, accept, vXferDandDEndDialog, 0,
    nullptr,          nullptr};

} // namespace

DWORD dwXferDandDConfirmFlags(const XferWindowRecord* pRecord)
{
    if (pRecord->callbacks.pfnConfirmFlags == nullptr) {
        return XFERCONFIRM_LOCALDELETE | XFERCONFIRM_LOCALRMDIR;
    }
    return pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, 0, 0);
}

INT_PTR CALLBACK fDlgXferDandDConfirmProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return nXferDandDDialogMessage(&CONFIRM, hdlg, uMessage, wParam, lParam);
}
