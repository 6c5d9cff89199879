#include "dialogs/engine.h"
#include "shared/krutils.h"
#include "shared/language.h"
#include "transfer/panes/locallist.h"
#include "transfer/window/modal.h"

namespace {

constexpr UINT_PTR FOCUS_TIMER = 87;
constexpr UINT FOCUS_DELAY = 1; // milliseconds

// Only a live record counts: an exported procedure can be called with any window.
XferWindowRecord* recordOf(HWND hdlg)
{
    XferWindowRecord* pRecord = window::liveRecord(GetWindowLongA(hdlg, DWL_USER));
    return pRecord != nullptr && pRecord->hwndDialog != hdlg ? pRecord : nullptr;
}

// Half of the room that the parent has around the dialog; 0 if the dialog is larger.
LONG halfOfRest(LONG nParent, LONG nDialog)
{
    return nParent > nDialog ? (nParent - nDialog) / 2 : 0;
}

// Where a minimised window is when it is restored. Its stored place is relative to the work area,
// which versions without a taskbar don't know.
RECT restoredRect(HWND hwnd)
{
    RECT rcWork = {};
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(hwnd, &placement);
    bool fWork = SystemParametersInfoA(SPI_GETWORKAREA, 0, &rcWork, 0) != 0;
    if (fWork && (placement.flags & WPF_RESTORETOMAXIMIZED) != 0) {
        return rcWork;
    }
    OffsetRect(&placement.rcNormalPosition, rcWork.left, rcWork.top);
    return placement.rcNormalPosition;
}

void start(const dialogs::Dialog* pDialog)
{
    vXferDandDCenterDialog(pDialog->hdlg);
    SetWindowLongA(pDialog->hdlg, DWL_USER, reinterpret_cast<LONG>(pDialog->pRecord));
    window::noteStart(pDialog->pRecord, pDialog->hdlg,
                      reinterpret_cast<DLGPROC>(GetWindowLongA(pDialog->hdlg, DWL_DLGPROC)));
    pDialog->pKind->pfnInit(pDialog);
}

// The OKs that are being handled. What an OK does can run a message loop, in which the dialog is
// still enabled: until it is done, the dialog takes no other OK.
struct Acceptance {
    HWND hdlg;
    Acceptance* pOuter;
};
Acceptance* s_pInnermost;

bool isAccepting(HWND hdlg)
{
    const Acceptance* pAcceptance = s_pInnermost;
    while (pAcceptance != nullptr && pAcceptance->hdlg != hdlg) {
        pAcceptance = pAcceptance->pOuter;
    }
    return pAcceptance != nullptr;
}

void forgetAcceptance(HWND hdlg)
{
    for (Acceptance* pAcceptance = s_pInnermost; pAcceptance != nullptr;
         pAcceptance = pAcceptance->pOuter) {
        if (pAcceptance->hdlg == hdlg) {
            pAcceptance->hdlg = nullptr;
        }
    }
}

void accept(const dialogs::Dialog* pDialog)
{
    Acceptance acceptance = {pDialog->hdlg, s_pInnermost};
    s_pInnermost = &acceptance;
    bool fAccepted = pDialog->pKind->pfnAccept(pDialog);
    s_pInnermost = acceptance.pOuter;
    if (fAccepted && dialogs::isAlive(pDialog)) {
        window::noteAcceptance(pDialog->pRecord, pDialog->hdlg);
        EndDialog(pDialog->hdlg, 0);
    }
}

void cancel(const dialogs::Dialog* pDialog)
{
    if (pDialog->pKind->pfnCancel != nullptr) {
        pDialog->pKind->pfnCancel(pDialog);
    }
    EndDialog(pDialog->hdlg, 0);
}

void showHelp(const dialogs::Dialog* pDialog)
{
    shared::showHelp(XferHelpOwner(pDialog->pRecord), pDialog->pKind->context);
}

INT_PTR onCommand(const dialogs::Dialog* pDialog, WPARAM wParam)
{
    const dialogs::Kind* pKind = pDialog->pKind;
    int id = LOWORD(wParam);
    if (id == IDOK && isAccepting(pDialog->hdlg)) {
        return 1;
    }
    if (id == IDOK) {
        accept(pDialog);
    } else if (id == IDCANCEL) {
        cancel(pDialog);
    } else if (id == pKind->idHelp) {
        showHelp(pDialog);
    } else if (id == pKind->idWatched && pKind->pfnNotify != nullptr) {
        pKind->pfnNotify(pDialog, HIWORD(wParam));
    } else {
        return 0;
    }
    return 1;
}

INT_PTR onTimer(const dialogs::Dialog* pDialog, WPARAM)
{
    if (pDialog->pKind->pfnFocus == nullptr) {
        return 0;
    }
    KillTimer(pDialog->hdlg, FOCUS_TIMER);
    SetFocus(GetDlgItem(pDialog->hdlg, pDialog->pKind->pfnFocus(pDialog)));
    return 1;
}

INT_PTR onClose(const dialogs::Dialog* pDialog, WPARAM)
{
    if (!pDialog->pKind->fClosesItself) {
        return 0;
    }
    cancel(pDialog);
    return 1;
}

INT_PTR onHelp(const dialogs::Dialog* pDialog, WPARAM)
{
    showHelp(pDialog);
    return 1;
}

INT_PTR onNcDestroy(const dialogs::Dialog* pDialog, WPARAM)
{
    forgetAcceptance(pDialog->hdlg);
    window::noteEnd(pDialog->pRecord, pDialog->hdlg);
    return 0;
}

// Without its record a dialog could not even be cancelled.
INT_PTR closeWithoutRecord(HWND hdlg)
{
    EndDialog(hdlg, 0);
    return 0;
}

struct MessageRow {
    UINT uMessage;
    INT_PTR (*pfnHandle)(const dialogs::Dialog* pDialog, WPARAM wParam);
};

// The messages of a dialog that has its record.
constexpr MessageRow MESSAGES[] = {
    {WM_COMMAND, onCommand}, {WM_TIMER, onTimer},         {WM_CLOSE, onClose},
    {WM_XFER_HELP, onHelp},  {WM_NCDESTROY, onNcDestroy},
};

} // namespace

INT_PTR dialogs::handleMessage(const Kind* pKind, HWND hdlg, UINT uMessage, WPARAM wParam,
                               LPARAM lParam)
{
    bool fStarts = uMessage == WM_INITDIALOG;
    XferWindowRecord* pRecord = fStarts ? window::liveRecord(LONG(lParam)) : recordOf(hdlg);
    if (pRecord == nullptr) {
        return fStarts ? closeWithoutRecord(hdlg) : 0;
    }
    Dialog dialog = {pKind, hdlg, window::refOf(pRecord), pRecord};
    if (fStarts) {
        start(&dialog);
        return 1;
    }
    for (const MessageRow& row : MESSAGES) {
        if (row.uMessage == uMessage) {
            return row.pfnHandle(&dialog, wParam);
        }
    }
    return 0;
}

void vXferDandDCenterDialog(HWND hdlg)
{
    RECT rc;
    RECT rcParent;
    HWND hwndParent = GetParent(hdlg);
    GetWindowRect(hdlg, &rc);
    GetWindowRect(hwndParent, &rcParent);
    if (IsIconic(hwndParent)) {
        rcParent = restoredRect(hwndParent);
    }
    LONG cx = rc.right - rc.left;
    LONG cy = rc.bottom - rc.top;
    MoveWindow(hdlg, rcParent.left + halfOfRest(rcParent.right - rcParent.left, cx),
               rcParent.top + halfOfRest(rcParent.bottom - rcParent.top, cy), cx, cy, TRUE);
}

bool dialogs::isAlive(const Dialog* pDialog)
{
    return window::isAlive(pDialog->ref) && recordOf(pDialog->hdlg) == pDialog->pRecord;
}

bool dialogs::recordAction(const Dialog* pDialog, int nAction, const char* pszText)
{
    KrRecordAction(pDialog->pRecord->hwndParent, nAction, pszText);
    return isAlive(pDialog);
}

bool dialogs::reportFailure(const Dialog* pDialog, DWORD dwError)
{
    XferSystemErrorBox(pDialog->hdlg, dwError, MB_OK);
    return false;
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

bool dialogs::syncLocalPanes(const Dialog* pDialog)
{
    return panes::syncLocalPanes(pDialog->pRecord);
}
