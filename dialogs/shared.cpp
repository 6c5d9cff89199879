// What all file dialogs share.
#include "dialogs.h"
#include "../shared/krutils.h"
#include "../shared/language.h"
#include "../transfer/panes.h"

namespace {

constexpr UINT_PTR FOCUS_TIMER = 87;
constexpr UINT FOCUS_DELAY = 1; // milliseconds

XferWindowRecord* recordOf(HWND hdlg)
{
    return reinterpret_cast<XferWindowRecord*>(GetWindowLongA(hdlg, DWL_USER));
}

// Half of what is left of the parent; nothing if the dialog is larger.
LONG halfOfRest(LONG nParent, LONG nDialog)
{
    return nParent > nDialog ? (nParent - nDialog) / 2 : 0;
}

void focusByTimer(HWND hdlg, int idControl)
{
    KillTimer(hdlg, FOCUS_TIMER);
    SetFocus(GetDlgItem(hdlg, idControl));
}

INT_PTR onCommand(const XferDialogKind* pKind, const XferDialog* pDialog, int id,
                  WORD nNotification)
{
    if (id == IDOK) {
        pKind->pfnAccept(pDialog);
    } else if (id == IDCANCEL) {
        pKind->pfnCancel(pDialog);
    } else if (id == pKind->idHelp) {
        vXferDandDDialogHelp(pDialog, pKind->context);
    } else if (id == pKind->idWatched && pKind->pfnNotify != nullptr) {
        pKind->pfnNotify(pDialog, nNotification);
    } else {
        return 0;
    }
    return 1;
}

} // namespace

INT_PTR nXferDandDDialogMessage(const XferDialogKind* pKind, HWND hdlg, UINT uMessage,
                                WPARAM wParam, LPARAM lParam)
{
    XferDialog dialog;
    if (uMessage == WM_INITDIALOG) {
        pKind->pfnInit(hdlg, lParam);
        return 1;
    }
    if (!fXferDandDDialogOf(hdlg, &dialog)) {
        return 0;
    }
    switch (uMessage) {
    case WM_TIMER:
        if (pKind->pfnFocus == nullptr) {
            return 0;
        }
        focusByTimer(hdlg, pKind->pfnFocus());
        return 1;
    case WM_COMMAND:
        return onCommand(pKind, &dialog, LOWORD(wParam), HIWORD(wParam));
    case WM_XFER_HELP:
        vXferDandDDialogHelp(&dialog, pKind->context);
        return 1;
    default:
        return 0;
    }
}

void vXferDandDCenterDialog(HWND hdlg)
{
    RECT rc;
    RECT rcParent;
    GetWindowRect(hdlg, &rc);
    GetWindowRect(GetParent(hdlg), &rcParent);
    LONG cx = rc.right - rc.left;
    LONG cy = rc.bottom - rc.top;
    MoveWindow(hdlg, rcParent.left + halfOfRest(rcParent.right - rcParent.left, cx),
               rcParent.top + halfOfRest(rcParent.bottom - rcParent.top, cy), cx, cy, TRUE);
}

void vXferDandDStartDialog(HWND hdlg, LPARAM lParam)
{
    vXferDandDCenterDialog(hdlg);
    SetWindowLongA(hdlg, DWL_USER, lParam);
    reinterpret_cast<XferWindowRecord*>(lParam)->hdlgOpen = hdlg;
}

bool fXferDandDDialogOf(HWND hdlg, XferDialog* pDialog)
{
    XferWindowRecord* pRecord = recordOf(hdlg);
    if (pRecord == nullptr) {
        return false;
    }
    *pDialog = {hdlg, pRecord->hwndDialog, pRecord};
    return true;
}

bool fXferDandDDialogIsAlive(const XferDialog* pDialog)
{
    return fXferDandDIsAlive(pDialog->hdlgDandD, pDialog->pRecord) &&
           recordOf(pDialog->hdlg) == pDialog->pRecord;
}

bool fXferDandDDialogRecordAction(const XferDialog* pDialog, int nAction, const char* pszText)
{
    KrRecordAction(pDialog->pRecord->hwndParent, nAction, pszText);
    return fXferDandDDialogIsAlive(pDialog);
}

void vXferDandDEndDialog(const XferDialog* pDialog)
{
    if (fXferDandDDialogIsAlive(pDialog)) {
        EndDialog(pDialog->hdlg, 0);
    }
}

bool fXferDandDDialogFailed(const XferDialog* pDialog, DWORD dwError)
{
    XferSystemErrorBox(pDialog->hdlg, dwError, MB_OK);
    return false;
}

void vXferDandDDialogHelp(const XferDialog* pDialog, XferHelpContext context)
{
    vXferShowHelp(XferHelpOwner(pDialog->pRecord), context);
}

void vXferDandDLimitName(HWND hdlg, int idEdit)
{
    SendDlgItemMessageA(hdlg, idEdit, EM_LIMITTEXT, XFER_MAX_NAME, 0);
}

void vXferDandDReadName(HWND hdlg, int idEdit, char (&szName)[XFER_NAME_SIZE])
{
    szName[0] = '\0';
    SendDlgItemMessageA(hdlg, idEdit, WM_GETTEXT, sizeof szName, reinterpret_cast<LPARAM>(szName));
}

void vXferDandDShowName(HWND hdlg, int idEdit, const char* pszName)
{
    SendDlgItemMessageA(hdlg, idEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszName));
}

void vXferDandDSelectName(HWND hdlg, int idEdit)
{
    SendDlgItemMessageA(hdlg, idEdit, EM_SETSEL, 0, -1);
    SendDlgItemMessageA(hdlg, idEdit, EM_SCROLLCARET, 0, 0);
}

void vXferDandDEnableOk(HWND hdlg, bool fEnable)
{
    EnableWindow(GetDlgItem(hdlg, IDOK), fEnable);
}

void vXferDandDStartFocusTimer(HWND hdlg)
{
    SetTimer(hdlg, FOCUS_TIMER, FOCUS_DELAY, nullptr);
}

bool fXferDandDNamesMeanShownDir(const XferDialog* pDialog)
{
    return fXferDandDShowsHere(pDialog->pRecord);
}
