// The transfer dialog: the two names of a transfer, and its direction. It transfers nothing; what
// it has found out stands in the record when it closes.
#include "dialogs/checkname.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "transfer/panes/locallist.h"

#include <string.h>

namespace {

// Where names and direction are given, only the target name can be changed.
constexpr int FIXED[] = {IDC_COPY_RECEIVE, IDC_COPY_SEND, IDC_COPY_SOURCE};

// Of the dialog that is starting, until its timer comes.
bool s_fFocusOnTarget;

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
void initBlank(HWND hdlg, XferWindowRecord* pRecord)
{
    panes::syncLocalPanes(pRecord);
    CheckRadioButton(hdlg, IDC_COPY_SEND, IDC_COPY_RECEIVE, IDC_COPY_SEND);
    dialogs::enableOk(hdlg, false);
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
    // An empty source has switched it off as it came.
    dialogs::enableOk(hdlg, true);
}

void initDialog(HWND hdlg, LPARAM lParam)
{
    auto* pRecord = reinterpret_cast<XferWindowRecord*>(lParam);
    dialogs::start(hdlg, lParam);
    dialogs::limitName(hdlg, IDC_COPY_SOURCE);
    dialogs::limitName(hdlg, IDC_COPY_TARGET);
    s_fFocusOnTarget = pRecord->szName1[0] != '\0' || pRecord->szName2[0] != '\0';
    if (s_fFocusOnTarget) {
        initFilled(hdlg, pRecord);
    } else {
        initBlank(hdlg, pRecord);
    }
    dialogs::startFocusTimer(hdlg);
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

void accept(const dialogs::Dialog* pDialog)
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
    if (!isFilled(pDialog->hdlg) && !dialogs::syncLocalPanes(pDialog)) {
        return;
    }
    if (fSend ? fXferDandDCheckSource(pDialog, szLocal) : fXferDandDCheckTarget(pDialog, szLocal)) {
        dialogs::end(pDialog);
    }
}

void cancel(const dialogs::Dialog* pDialog)
{
    pDialog->pRecord->nDialogOp = XFEROP_CANCELLED;
    dialogs::end(pDialog);
}

// Cut to the record's field.
void keepName(char (&szTo)[XFER_NAME_SIZE], const char* pszFrom)
{
    strncpy(szTo, pszFrom, XFER_MAX_NAME);
    szTo[XFER_MAX_NAME] = '\0';
}

int focusControl()
{
    return s_fFocusOnTarget ? IDC_COPY_TARGET : IDC_COPY_SEND;
}

constexpr dialogs::Kind TRANSFER = {XFERHELP_COPY, IDC_COPY_HELP,   initDialog,    accept,
                                    cancel,        IDC_COPY_SOURCE, sourceChanged, focusControl};

} // namespace

INT_PTR CALLBACK fDlgXferDandDTranProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&TRANSFER, hdlg, uMessage, wParam, lParam);
}

int fXferDandDCheckSource(const dialogs::Dialog* pDialog, const char* pszName)
{
    if (GetFileAttributesA(pszName) == INVALID_FILE_ATTRIBUTES) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    return 1;
}

int fXferDandDCheckTarget(const dialogs::Dialog* pDialog, const char* pszName)
{
    DWORD dwAttributes = GetFileAttributesA(pszName);
    if (dwAttributes == INVALID_FILE_ATTRIBUTES) {
        DWORD dwError = GetLastError();
        return dwError == ERROR_FILE_NOT_FOUND || dialogs::reportFailure(pDialog, dwError);
    }
    if ((dwAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return dialogs::reportFailure(pDialog, ERROR_ACCESS_DENIED);
    }
    if ((dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return dialogs::reportFailure(pDialog, ERROR_CANNOT_MAKE);
    }
    return 1;
}

int KRHAULAPI fXferDandDConfirmTransfer(HWND hdlgDandD, DWORD fSend, char* pszLocalName,
                                        char* pszHostName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr || pszLocalName == nullptr || pszHostName == nullptr) {
        return 0;
    }
    pRecord->nDialogOp = fSend != 0 ? XFEROP_SEND : XFEROP_RECEIVE;
    keepName(pRecord->szName1, pszLocalName);
    keepName(pRecord->szName2, pszHostName);
    if (!dialogs::run(pRecord, dialogs::DLG_TRANSFER) ||
        (pRecord->nDialogOp != XFEROP_SEND && pRecord->nDialogOp != XFEROP_RECEIVE)) {
        return 0;
    }
    strncpy(pszLocalName, pRecord->szName1, XFER_NAME_SIZE);
    strncpy(pszHostName, pRecord->szName2, XFER_NAME_SIZE);
    return 1;
}
