// The transfer dialog: the two names of a transfer, and its direction. It transfers nothing; what
// the user has entered is in the record when it closes.
#include "dialogs/checkname.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/text.h"

#include <string.h>

namespace {

// Where names and direction are given, only the target name can be changed.
constexpr int FIXED[] = {IDC_COPY_RECEIVE, IDC_COPY_SEND, IDC_COPY_SOURCE};

// Which of the two names is the source follows from the direction.
char (&sourceName(XferWindowRecord* pRecord))[XFER_NAME_SIZE]
{
    return pRecord->nDialogOp == XFEROP_SEND ? pRecord->szName1 : pRecord->szName2;
}

char (&targetName(XferWindowRecord* pRecord))[XFER_NAME_SIZE]
{
    return pRecord->nDialogOp == XFEROP_SEND ? pRecord->szName2 : pRecord->szName1;
}

// Names will be typed with the panes in view, which therefore show the current directory first.
// Panes that are refilled can run foreign code.
void initBlank(const dialogs::Dialog* pDialog)
{
    dialogs::syncLocalPanes(pDialog);
    if (dialogs::isAlive(pDialog)) {
        CheckRadioButton(pDialog->hdlg, IDC_COPY_SEND, IDC_COPY_RECEIVE, IDC_COPY_SEND);
        dialogs::enableOk(pDialog->hdlg, false);
    }
}

void initFilled(HWND hdlg, XferWindowRecord* pRecord)
{
    CheckRadioButton(hdlg, IDC_COPY_SEND, IDC_COPY_RECEIVE,
                     pRecord->nDialogOp == XFEROP_SEND ? IDC_COPY_SEND : IDC_COPY_RECEIVE);
    dialogs::showName(hdlg, IDC_COPY_SOURCE, sourceName(pRecord));
    dialogs::showName(hdlg, IDC_COPY_TARGET, targetName(pRecord));
    dialogs::selectName(hdlg, IDC_COPY_TARGET);
    for (int id : FIXED) {
        EnableWindow(GetDlgItem(hdlg, id), FALSE);
    }
    // An empty source has disabled it when its text was set.
    dialogs::enableOk(hdlg, true);
}

void initDialog(const dialogs::Dialog* pDialog)
{
    HWND hdlg = pDialog->hdlg;
    XferWindowRecord* pRecord = pDialog->pRecord;
    dialogs::limitName(hdlg, IDC_COPY_SOURCE);
    dialogs::limitName(hdlg, IDC_COPY_TARGET);
    if (pRecord->szName1[0] != '\0' || pRecord->szName2[0] != '\0') {
        initFilled(hdlg, pRecord);
    } else {
        initBlank(pDialog);
    }
    if (dialogs::isAlive(pDialog)) {
        dialogs::startFocusTimer(hdlg);
    }
}

void sourceChanged(const dialogs::Dialog* pDialog, WORD nNotification)
{
    if (nNotification == EN_CHANGE) {
        dialogs::enableOk(pDialog->hdlg,
                          GetWindowTextLengthA(GetDlgItem(pDialog->hdlg, IDC_COPY_SOURCE)) > 0);
    }
}

// The names of a filled form are the caller's, whatever the panes show.
bool isFilled(HWND hdlg)
{
    return !IsWindowEnabled(GetDlgItem(hdlg, IDC_COPY_SOURCE));
}

// The record holds what was entered, and the checks work on a copy.
bool accept(const dialogs::Dialog* pDialog)
{
    char szLocal[XFER_NAME_SIZE];
    XferWindowRecord* pRecord = pDialog->pRecord;
    bool fSend = IsDlgButtonChecked(pDialog->hdlg, IDC_COPY_SEND) != 0;
    pRecord->nDialogOp = fSend ? XFEROP_SEND : XFEROP_RECEIVE;
    dialogs::readName(pDialog->hdlg, IDC_COPY_SOURCE, sourceName(pRecord));
    dialogs::readName(pDialog->hdlg, IDC_COPY_TARGET, targetName(pRecord));
    if (targetName(pRecord)[0] == '\0') {
        strcpy(targetName(pRecord), sourceName(pRecord));
    }
    strcpy(szLocal, pRecord->szName1);
    if (!isFilled(pDialog->hdlg) &&
        !(dialogs::syncLocalPanes(pDialog) && dialogs::isAlive(pDialog))) {
        return false;
    }
    return fSend ? fXferDandDCheckSource(pDialog, szLocal)
                 : fXferDandDCheckTarget(pDialog, szLocal);
}

void cancel(const dialogs::Dialog* pDialog)
{
    pDialog->pRecord->nDialogOp = XFEROP_CANCELLED;
}

int focusControl(const dialogs::Dialog* pDialog)
{
    return isFilled(pDialog->hdlg) ? IDC_COPY_TARGET : IDC_COPY_SEND;
}

constexpr dialogs::Kind transferKind()
{
    dialogs::Kind kind = {};
    kind.context = XFERHELP_COPY;
    kind.idHelp = IDC_COPY_HELP;
    kind.pfnInit = initDialog;
    kind.pfnAccept = accept;
    kind.pfnCancel = cancel;
    kind.idWatched = IDC_COPY_SOURCE;
    kind.pfnNotify = sourceChanged;
    kind.pfnFocus = focusControl;
    return kind;
}

constexpr dialogs::Kind TRANSFER = transferKind();

} // namespace

INT_PTR CALLBACK fDlgXferDandDTranProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&TRANSFER, hdlg, uMessage, wParam, lParam);
}

int KRHAULAPI fXferDandDConfirmTransfer(HWND hdlgDandD, DWORD fSend, char* pszLocalName,
                                        char* pszHostName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr || pszLocalName == nullptr || pszHostName == nullptr) {
        return 0;
    }
    pRecord->nDialogOp = fSend != 0 ? XFEROP_SEND : XFEROP_RECEIVE;
    shared::copyText(pRecord->szName1, pszLocalName, sizeof pRecord->szName1);
    shared::copyText(pRecord->szName2, pszHostName, sizeof pRecord->szName2);
    if (!dialogs::run(pRecord, dialogs::DLG_TRANSFER)) {
        return 0;
    }
    strncpy(pszLocalName, pRecord->szName1, XFER_NAME_SIZE);
    strncpy(pszHostName, pRecord->szName2, XFER_NAME_SIZE);
    return 1;
}
