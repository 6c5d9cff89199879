// What all file dialogs share: their message handling, their life, and their name fields.
//
// The record of the transfer window is the lParam of every dialog and is stored in its DWL_USER. A
// callback, a message box and KRUTILS can end the window and with it the dialog: code that
// continues after one calls dialogs::isAlive first, and uses copies of the names, because other
// dialogs may have run in between. What a dialog leaves in the record (szName1, szName2, nDialogOp)
// is for whoever opened it.
#ifndef DIALOGS_ENGINE_H
#define DIALOGS_ENGINE_H

#include "shared/help.h"
#include "transfer/window/record.h"

void vXferDandDCenterDialog(HWND hdlg);

namespace dialogs {

struct Kind;

// An open dialog.
struct Dialog {
    const Kind* pKind;
    HWND hdlg;
    window::Ref ref; // its transfer window
    XferWindowRecord* pRecord;
};

// How a kind of dialog handles its messages. A function that returns bool returns whether the
// dialog closes; the user has seen why if it doesn't.
struct Kind {
    HelpContext context;
    int idHelp;
    void (*pfnInit)(const Dialog* pDialog);
    bool (*pfnAccept)(const Dialog* pDialog);
    // What Cancel does to the record. Can be null.
    void (*pfnCancel)(const Dialog* pDialog);
    // The edit control whose notifications count, or 0, and what they do.
    int idWatched;
    void (*pfnNotify)(const Dialog* pDialog, WORD nNotification);
    // The control that the timer moves the focus to. Null for a dialog without a timer.
    int (*pfnFocus)(const Dialog* pDialog);
    // Whether it handles WM_CLOSE.
    bool fClosesItself;
    // The work for either side. Only for a dialog that asks for one name (onename.h).
    bool (*pfnLocal)(const Dialog* pDialog, const char* pszName);
    void (*pfnHost)(const XferWindowRecord* pRecord, const char* pszName);
};

INT_PTR handleMessage(const Kind* pKind, HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);

bool isAlive(const Dialog* pDialog);

// Reports an action to KRUTILS. Returns whether the dialog still exists afterwards.
bool recordAction(const Dialog* pDialog, int nAction, const char* pszText);

// Shows the system's text for an error over the dialog. Returns false: the dialog stays open.
bool reportFailure(const Dialog* pDialog, DWORD dwError);

// The names that the user sees are the names that are used: an edit control accepts no more
// characters than its name can hold.
void limitName(HWND hdlg, int idEdit);
void readName(HWND hdlg, int idEdit, char (&szName)[XFER_NAME_SIZE]);
void showName(HWND hdlg, int idEdit, const char* pszName);
void selectName(HWND hdlg, int idEdit);
void enableOk(HWND hdlg, bool fEnable);

// Some dialogs move the focus only once they are running.
void startFocusTimer(HWND hdlg);

// Typed names are relative to the current directory of the process. Returns whether that is still
// the one in the local panes; if it isn't, they are refilled, and the user can look at them before
// pressing OK again.
bool syncLocalPanes(const Dialog* pDialog);

} // namespace dialogs

#endif
