#include "transfer/window/modal.h"
#include "transfer/window/record.h"

namespace {

// A modal dialog that is about to run.
struct ModalDialog {
    HWND hdlgDandD;
    const XferWindowRecord* pRecord;
    const char* pszTemplate;
    DLGPROC pfnDialog;
    LPARAM lParam;
};

// A parent that hears of being disabled can destroy the window.
INT_PTR runDialog(const ModalDialog* pDialog)
{
    if (!window::isAlive(pDialog->hdlgDandD, pDialog->pRecord)) {
        return window::DIALOG_FAILED;
    }
    return DialogBoxParamA(pDialog->pRecord->hLanguage, pDialog->pszTemplate, pDialog->hdlgDandD,
                           pDialog->pfnDialog, pDialog->lParam);
}

INT_PTR nXferDandDDialogBoxDisabling(const ModalDialog* pDialog, HWND hwnd)
{
    if (hwnd == nullptr) {
        return runDialog(pDialog);
    }
    BOOL fEnabled = IsWindowEnabled(hwnd);
    if (fEnabled) {
        EnableWindow(hwnd, FALSE);
    }
    INT_PTR nResult = nXferDandDDialogBoxDisabling(pDialog, GetParent(hwnd));
    if (fEnabled) {
        EnableWindow(hwnd, TRUE);
    }
    return nResult;
}

} // namespace

INT_PTR KRHAULAPI nXferDandDDialogBoxParam(HWND hdlgDandD, const char* pszTemplate,
                                           DLGPROC pfnDialog, LPARAM lParam)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr || pszTemplate == nullptr || pfnDialog == nullptr) {
        return window::DIALOG_FAILED;
    }
    ModalDialog dialog = {hdlgDandD, pRecord, pszTemplate, pfnDialog, lParam};
    return nXferDandDDialogBoxDisabling(&dialog, pRecord->hwndParent);
}
