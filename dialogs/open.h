// The file dialogs, and how they are opened.
#ifndef DIALOGS_OPEN_H
#define DIALOGS_OPEN_H

#include "transfer/window/record.h"

namespace dialogs {

enum FileDialog {
    DLG_TRANSFER,
    DLG_VIEW,
    DLG_RENAME,
    DLG_DELETE,
    DLG_MAKEDIR,
    DLG_REMOVEDIR,
    DLG_CHANGEDIR,
    DLG_CONFIRM
};

// Runs a dialog. Returns whether an OK went through and the window still exists; what the user
// entered is then in the record.
bool run(XferWindowRecord* pRecord, FileDialog dialog);

// The same for a dialog in which names are typed: the local panes are brought up to date first.
bool syncAndRun(XferWindowRecord* pRecord, FileDialog dialog);

} // namespace dialogs

// Dialog procedures that aren't exported.
INT_PTR CALLBACK fDlgXferDandDViewProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
INT_PTR CALLBACK fDlgXferDandDChdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);

#endif
