// Modal dialogs on a transfer window. nXferDandDDialogBoxParam (krhaul.h) is the only way to run
// one from outside; inside the library it is runModal, which does the same and also reports
// whether the dialog was accepted.
#ifndef TRANSFER_WINDOW_MODAL_H
#define TRANSFER_WINDOW_MODAL_H

#include "transfer/window/record.h"

namespace window {

// What a modal dialog returns if it could not be run.
constexpr INT_PTR DIALOG_FAILED = -1;

// A modal dialog for as long as it runs. It lives on the stack of whoever runs it, and the record
// points to the innermost one.
struct ModalDialog {
    const char* pszTemplate;
    DLGPROC pfnDialog;
    LPARAM lParam;
    HWND hdlg;      // set when a file dialog starts, 0 again when it is gone
    bool fAccepted; // an OK went through
    ModalDialog* pOuter;
};

// Runs a dialog from the window's language module, with the chain of parent windows and the dialog
// under it disabled. Returns what DialogBoxParamA returns, or DIALOG_FAILED. The window can be gone
// afterwards.
INT_PTR runModal(XferWindowRecord* pRecord, ModalDialog* pDialog);

// Called by a file dialog when it starts, when an OK has gone through, and when it is gone.
void noteStart(const XferWindowRecord* pRecord, HWND hdlg, DLGPROC pfnDialog);
void noteAcceptance(const XferWindowRecord* pRecord, HWND hdlg);
void noteEnd(const XferWindowRecord* pRecord, HWND hdlg);

} // namespace window

#endif
