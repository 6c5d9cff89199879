// All file dialogs: their templates and procedures.
#include "dialogs/open.h"
#include "transfer/panes/locallist.h"

namespace {

struct DialogRow {
    const char* pszTemplate;
    DLGPROC pfnDialog;
};

// In the order of dialogs::FileDialog.
constexpr DialogRow DIALOGS[] = {
    {"DLGCOPY", fDlgXferDandDTranProc},   {"DLGVIEW", fDlgXferDandDViewProc},
    {"DLGRENAME", fDlgXferDandDRenProc},  {"DLGDEL", fDlgXferDandDDelProc},
    {"DLGMKDIR", fDlgXferDandDMkdirProc}, {"DLGDANDRMDIR", fDlgXferDandDRmdirProc},
    {"DLGCHDIR", fDlgXferDandDChdirProc}, {"DLGCONFIRM", fDlgXferDandDConfirmProc},
};

} // namespace

// The dialogs share fields of the record: one that opens while another is open (the caller may ask
// for it from a timer) has to be left first.
bool dialogs::run(XferWindowRecord* pRecord, dialogs::FileDialog dialog)
{
    const DialogRow* pRow = &DIALOGS[dialog];
    HWND hdlgDandD = pRecord->hwndDialog;
    HWND hdlgOuter = pRecord->hdlgOpen;
    EnableWindow(hdlgOuter, FALSE);
    INT_PTR nResult = -1;
    if (window::isAlive(hdlgDandD, pRecord)) {
        nResult = nXferDandDDialogBoxParam(hdlgDandD, pRow->pszTemplate, pRow->pfnDialog,
                                           reinterpret_cast<LPARAM>(pRecord));
    }
    if (!window::isAlive(hdlgDandD, pRecord)) {
        return false;
    }
    pRecord->hdlgOpen = hdlgOuter;
    EnableWindow(hdlgOuter, TRUE);
    return nResult != -1 && window::isAlive(hdlgDandD, pRecord);
}

// Panes that are filled anew can run foreign code.
bool dialogs::askForNames(HWND hdlgDandD, XferWindowRecord* pRecord, dialogs::FileDialog dialog)
{
    panes::syncLocalPanes(pRecord);
    return window::isAlive(hdlgDandD, pRecord) && dialogs::run(pRecord, dialog);
}
