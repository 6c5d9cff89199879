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
void initDialog(const dialogs::Dialog* pDialog)
{
    DWORD dwFlags = window::confirmFlags(pDialog->pRecord);
    if (!dialogs::isAlive(pDialog)) {
        return;
    }
    for (const FlagRow& row : FLAGS) {
        CheckDlgButton(pDialog->hdlg, row.idBox, dwFlags & row.dwFlag);
    }
}

bool accept(const dialogs::Dialog* pDialog)
{
    DWORD dwFlags = 0;
    for (const FlagRow& row : FLAGS) {
        dwFlags |= IsDlgButtonChecked(pDialog->hdlg, row.idBox) != 0 ? row.dwFlag : 0;
    }
    window::setConfirmFlags(pDialog->pRecord, dwFlags);
    return true;
}

constexpr dialogs::Kind confirmKind()
{
    dialogs::Kind kind = {};
    kind.context = XFERHELP_CONFIRM;
    kind.idHelp = IDC_CONFIRM_HELP;
    kind.pfnInit = initDialog;
    kind.pfnAccept = accept;
    return kind;
}

constexpr dialogs::Kind CONFIRM = confirmKind();

} // namespace

INT_PTR CALLBACK fDlgXferDandDConfirmProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&CONFIRM, hdlg, uMessage, wParam, lParam);
}
