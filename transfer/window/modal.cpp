#include "transfer/window/modal.h"

namespace {

// A modal dialog that is about to run, and the window that it runs on.
struct Run {
    window::Ref ref;
    const window::ModalDialog* pDialog;
};

// A parent that hears of being disabled can destroy the window.
INT_PTR runDialog(const Run* pRun)
{
    if (!window::isAlive(pRun->ref)) {
        return window::DIALOG_FAILED;
    }
    const window::ModalDialog* pDialog = pRun->pDialog;
    return DialogBoxParamA(pRun->ref.pRecord->hLanguage, pDialog->pszTemplate, pRun->ref.hdlgDandD,
                           pDialog->pfnDialog, pDialog->lParam);
}

INT_PTR nXferDandDDialogBoxDisabling(const Run* pRun, HWND hwnd)
{
    if (hwnd == nullptr) {
        return runDialog(pRun);
    }
    BOOL fEnabled = IsWindowEnabled(hwnd);
    if (fEnabled) {
        EnableWindow(hwnd, FALSE);
    }
    INT_PTR nResult = nXferDandDDialogBoxDisabling(pRun, GetParent(hwnd));
    if (fEnabled) {
        EnableWindow(hwnd, TRUE);
    }
    return nResult;
}

// The file dialogs share fields of the record, so the one below has to wait. Returns whether it
// was enabled.
bool suspendOuter(const window::ModalDialog* pOuter)
{
    if (pOuter == nullptr || pOuter->hdlg == nullptr || !IsWindowEnabled(pOuter->hdlg)) {
        return false;
    }
    EnableWindow(pOuter->hdlg, FALSE);
    return true;
}

// The platform looks for another window to activate while the outer dialog is still disabled.
void resumeOuter(const window::ModalDialog* pOuter)
{
    if (pOuter->hdlg != nullptr) {
        EnableWindow(pOuter->hdlg, TRUE);
    }
    if (pOuter->hdlg != nullptr) {
        SetActiveWindow(pOuter->hdlg);
    }
}

window::ModalDialog* dialogOf(const XferWindowRecord* pRecord, HWND hdlg)
{
    window::ModalDialog* pDialog = pRecord->pInnermost;
    while (pDialog != nullptr && pDialog->hdlg != hdlg) {
        pDialog = pDialog->pOuter;
    }
    return pDialog;
}

} // namespace

INT_PTR window::runModal(XferWindowRecord* pRecord, ModalDialog* pDialog)
{
    Run run = {refOf(pRecord), pDialog};
    pDialog->hdlg = nullptr;
    pDialog->fAccepted = false;
    pDialog->pOuter = pRecord->pInnermost;
    pRecord->pInnermost = pDialog;
    bool fSuspended = suspendOuter(pDialog->pOuter);
    INT_PTR nResult =
        isAlive(run.ref) ? nXferDandDDialogBoxDisabling(&run, pRecord->hwndParent) : DIALOG_FAILED;
    if (exists(run.ref)) {
        pRecord->pInnermost = pDialog->pOuter;
    }
    if (fSuspended) {
        resumeOuter(pDialog->pOuter);
    }
    return nResult;
}

// A file dialog that the caller runs with the platform's own functions is not noted.
void window::noteStart(const XferWindowRecord* pRecord, HWND hdlg, DLGPROC pfnDialog)
{
    ModalDialog* pDialog = pRecord->pInnermost;
    if (pDialog != nullptr && pDialog->hdlg == nullptr && pDialog->pfnDialog == pfnDialog) {
        pDialog->hdlg = hdlg;
    }
}

void window::noteAcceptance(const XferWindowRecord* pRecord, HWND hdlg)
{
    if (ModalDialog* pDialog = dialogOf(pRecord, hdlg)) {
        pDialog->fAccepted = true;
    }
}

void window::noteEnd(const XferWindowRecord* pRecord, HWND hdlg)
{
    if (ModalDialog* pDialog = dialogOf(pRecord, hdlg)) {
        pDialog->hdlg = nullptr;
    }
}

INT_PTR KRHAULAPI nXferDandDDialogBoxParam(HWND hdlgDandD, const char* pszTemplate,
                                           DLGPROC pfnDialog, LPARAM lParam)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr || pszTemplate == nullptr || pfnDialog == nullptr) {
        return window::DIALOG_FAILED;
    }
    window::ModalDialog dialog = {pszTemplate, pfnDialog, lParam, nullptr, false, nullptr};
    return window::runModal(pRecord, &dialog);
}
