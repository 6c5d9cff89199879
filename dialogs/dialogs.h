// The file dialogs: what opens them, what they share, and the launch of a viewer. Each dialog
// is one source file; those that ask for one name and a side are rows of onename.cpp.
//
// All keep their state in the record of the transfer window, which is their lParam. A callback,
// a box and KRUTILS can end the window and with it the dialog: who goes on after one asks
// fXferDandDDialogIsAlive first, and uses copies of the names, because other dialogs can have
// run in between.
#ifndef DIALOGS_DIALOGS_H
#define DIALOGS_DIALOGS_H

#include "../shared/help.h"
#include "../transfer/record.h"

// open.cpp
enum XferFileDialog {
    XFERDLG_TRANSFER,
    XFERDLG_VIEW,
    XFERDLG_RENAME,
    XFERDLG_DELETE,
    XFERDLG_MAKEDIR,
    XFERDLG_REMOVEDIR,
    XFERDLG_CHANGEDIR,
    XFERDLG_CONFIRM
};

// Runs a dialog. Gives whether it ran and the window has outlived it; what it has to say then
// stands in the record.
bool fXferDandDRunDialog(XferWindowRecord* pRecord, XferFileDialog dialog);

// The same for a dialog in which names are typed: the local panes show first what they mean.
bool fXferDandDAskForNames(HWND hdlgDandD, XferWindowRecord* pRecord, XferFileDialog dialog);

// shared.cpp: a dialog in hand.
struct XferDialog {
    HWND hdlg;
    HWND hdlgDandD; // its transfer window
    XferWindowRecord* pRecord;
};

void vXferDandDCenterDialog(HWND hdlg);

// The start of every WM_INITDIALOG: the place of the dialog, and its record.
void vXferDandDStartDialog(HWND hdlg, LPARAM lParam);

// Gives false for a window that vXferDandDStartDialog hasn't seen.
bool fXferDandDDialogOf(HWND hdlg, XferDialog* pDialog);

bool fXferDandDDialogIsAlive(const XferDialog* pDialog);

// Tells KRUTILS of an action. Gives whether the dialog has outlived it.
bool fXferDandDDialogRecordAction(const XferDialog* pDialog, int nAction, const char* pszText);

// Ends the dialog, if it has lived so far.
void vXferDandDEndDialog(const XferDialog* pDialog);

// Shows the system's text for an error over the dialog. Gives false: the dialog goes on.
bool fXferDandDDialogFailed(const XferDialog* pDialog, DWORD dwError);

void vXferDandDDialogHelp(const XferDialog* pDialog, XferHelpContext context);

// What differs between the dialogs in the messages that they handle.
struct XferDialogKind {
    XferHelpContext context;
    int idHelp;
    void (*pfnInit)(HWND hdlg, LPARAM lParam);
    void (*pfnAccept)(const XferDialog* pDialog);
    void (*pfnCancel)(const XferDialog* pDialog);
    int idWatched; // the edit whose notifications count; 0 for none
    void (*pfnNotify)(const XferDialog* pDialog, WORD nNotification);
    int (*pfnFocus)(); // the control that the timer gives the focus to; null without a timer
};

INT_PTR nXferDandDDialogMessage(const XferDialogKind* pKind, HWND hdlg, UINT uMessage,
                                WPARAM wParam, LPARAM lParam);

// The names as the user sees them are the names that are used: an edit takes no more
// characters than its name holds.
void vXferDandDLimitName(HWND hdlg, int idEdit);
void vXferDandDReadName(HWND hdlg, int idEdit, char (&szName)[XFER_NAME_SIZE]);
void vXferDandDShowName(HWND hdlg, int idEdit, const char* pszName);
void vXferDandDSelectName(HWND hdlg, int idEdit);
void vXferDandDEnableOk(HWND hdlg, bool fEnable);

// Some dialogs move the focus only once they run.
void vXferDandDStartFocusTimer(HWND hdlg);

// Typed names mean what stands in the current directory of the process. Gives whether that is
// still the one in the local panes; if it isn't, they are filled anew, and the user may look
// before saying OK again.
bool fXferDandDNamesMeanShownDir(const XferDialog* pDialog);

// transfer.cpp: whether a local name can be sent, and be received onto. Both say why not. The
// dialog can be gone after it.
int fXferDandDCheckSource(const XferDialog* pDialog, const char* pszName);
int fXferDandDCheckTarget(const XferDialog* pDialog, const char* pszName);

// Dialog procedures that aren't exported.
INT_PTR CALLBACK fDlgXferDandDViewProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK fDlgXferDandDChdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);

// onename.cpp: a dialog that asks for a name and a side.
struct XferOneNameDialog {
    XferHelpContext context;
    int idName;
    int idHelp;
    // Does the work. Gives false if the dialog stays open; the user has been told why.
    bool (*pfnLocal)(const XferDialog* pDialog, const char* pszName);
    void (*pfnHost)(const XferDialog* pDialog, const char* pszName);
    bool fClosesItself; // handles WM_CLOSE
};

INT_PTR nXferDandDOneNameMessage(const XferOneNameDialog* pKind, HWND hdlg, UINT uMessage,
                                 WPARAM wParam, LPARAM lParam);

#endif
