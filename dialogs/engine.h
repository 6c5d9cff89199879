// What all file dialogs share: their message handling, their life, and their name fields.
//
// The record of the transfer window is the lParam of every dialog. A callback, a message box and
// KRUTILS can end the window and with it the dialog: code that continues after one calls
// dialogs::isAlive first, and uses copies of the names, because other dialogs may have run in
// between.
#ifndef DIALOGS_ENGINE_H
#define DIALOGS_ENGINE_H

#include "shared/help.h"
#include "transfer/window/record.h"

void vXferDandDCenterDialog(HWND hdlg);

namespace dialogs {

// An open dialog.
struct Dialog {
    HWND hdlg;
    HWND hdlgDandD; // its transfer window
    XferWindowRecord* pRecord;
};

// The start of every WM_INITDIALOG: centres the dialog and stores its record.
void start(HWND hdlg, LPARAM lParam);

// Returns false for a window that start hasn't seen.
bool dialogOf(HWND hdlg, Dialog* pDialog);

bool isAlive(const Dialog* pDialog);

// Reports an action to KRUTILS. Returns whether the dialog still exists afterwards.
bool recordAction(const Dialog* pDialog, int nAction, const char* pszText);

// Ends the dialog if it still exists.
void end(const Dialog* pDialog);

// Shows the system's text for an error over the dialog. Returns false: the dialog stays open.
bool reportFailure(const Dialog* pDialog, DWORD dwError);

void showHelp(const Dialog* pDialog, HelpContext context);

// How a kind of dialog handles its messages.
struct Kind {
    HelpContext context;
    int idHelp;
    void (*pfnInit)(HWND hdlg, LPARAM lParam);
    void (*pfnAccept)(const Dialog* pDialog);
    void (*pfnCancel)(const Dialog* pDialog);
    int idWatched; // the edit control whose notifications count; 0 for none
    void (*pfnNotify)(const Dialog* pDialog, WORD nNotification);
    int (*pfnFocus)(); // the control that the timer moves the focus to; null without a timer
};

INT_PTR handleMessage(const Kind* pKind, HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);

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
