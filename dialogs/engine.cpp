// What all file dialogs share.
#include "dialogs/engine.h"
#include "shared/krutils.h"
#include "shared/language.h"
#include "transfer/panes/locallist.h"

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

INT_PTR onCommand(const dialogs::Kind* pKind, const dialogs::Dialog* pDialog, int id,
                  WORD nNotification)
{
    if (id == IDOK) {
        pKind->pfnAccept(pDialog);
    } else if (id == IDCANCEL) {
        pKind->pfnCancel(pDialog);
    } else if (id == pKind->idHelp) {
        dialogs::showHelp(pDialog, pKind->context);
    } else if (id == pKind->idWatched && pKind->pfnNotify != nullptr) {
        pKind->pfnNotify(pDialog, nNotification);
    } else {
        return 0;
    }
    return 1;
}

} // namespace

INT_PTR dialogs::handleMessage(const dialogs::Kind* pKind, HWND hdlg, UINT uMessage, WPARAM wParam,
                               LPARAM lParam)
{
    dialogs::Dialog dialog;
    if (uMessage == WM_INITDIALOG) {
        pKind->pfnInit(hdlg, lParam);
        return 1;
    }
    if (!dialogs::dialogOf(hdlg, &dialog)) {
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
        dialogs::showHelp(&dialog, pKind->context);
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

void dialogs::start(HWND hdlg, LPARAM lParam)
{
    vXferDandDCenterDialog(hdlg);
    SetWindowLongA(hdlg, DWL_USER, lParam);
    reinterpret_cast<XferWindowRecord*>(lParam)->hdlgOpen = hdlg;
}

bool dialogs::dialogOf(HWND hdlg, dialogs::Dialog* pDialog)
{
    XferWindowRecord* pRecord = recordOf(hdlg);
    if (pRecord == nullptr) {
        return false;
    }
    *pDialog = {hdlg, pRecord->hwndDialog, pRecord};
    return true;
}

bool dialogs::isAlive(const dialogs::Dialog* pDialog)
{
    return window::isAlive(pDialog->hdlgDandD, pDialog->pRecord) &&
           recordOf(pDialog->hdlg) == pDialog->pRecord;
}

bool dialogs::recordAction(const dialogs::Dialog* pDialog, int nAction, const char* pszText)
{
    KrRecordAction(pDialog->pRecord->hwndParent, nAction, pszText);
    return dialogs::isAlive(pDialog);
}

void dialogs::end(const dialogs::Dialog* pDialog)
{
    if (dialogs::isAlive(pDialog)) {
        EndDialog(pDialog->hdlg, 0);
    }
}

bool dialogs::reportFailure(const dialogs::Dialog* pDialog, DWORD dwError)
{
    XferSystemErrorBox(pDialog->hdlg, dwError, MB_OK);
    return false;
}

void dialogs::showHelp(const dialogs::Dialog* pDialog, HelpContext context)
{
    shared::showHelp(XferHelpOwner(pDialog->pRecord), context);
}

void dialogs::limitName(HWND hdlg, int idEdit)
{
    SendDlgItemMessageA(hdlg, idEdit, EM_LIMITTEXT, XFER_MAX_NAME, 0);
}

void dialogs::readName(HWND hdlg, int idEdit, char (&szName)[XFER_NAME_SIZE])
{
    szName[0] = '\0';
    SendDlgItemMessageA(hdlg, idEdit, WM_GETTEXT, sizeof szName, reinterpret_cast<LPARAM>(szName));
}

void dialogs::showName(HWND hdlg, int idEdit, const char* pszName)
{
    SendDlgItemMessageA(hdlg, idEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszName));
}

void dialogs::selectName(HWND hdlg, int idEdit)
{
    SendDlgItemMessageA(hdlg, idEdit, EM_SETSEL, 0, -1);
    SendDlgItemMessageA(hdlg, idEdit, EM_SCROLLCARET, 0, 0);
}

void dialogs::enableOk(HWND hdlg, bool fEnable)
{
    EnableWindow(GetDlgItem(hdlg, IDOK), fEnable);
}

void dialogs::startFocusTimer(HWND hdlg)
{
    SetTimer(hdlg, FOCUS_TIMER, FOCUS_DELAY, nullptr);
}

bool dialogs::syncLocalPanes(const dialogs::Dialog* pDialog)
{
    return panes::syncLocalPanes(pDialog->pRecord);
}
