// All file dialogs: their templates and procedures.
#include "dialogs.h"
#include "../transfer/panes.h"

namespace {

struct DialogRow {
    const char* pszTemplate;
    DLGPROC pfnDialog;
};

// In the order of XferFileDialog.
constexpr DialogRow DIALOGS[] = {
    {"DLGCOPY", fDlgXferDandDTranProc},   {"DLGVIEW", fDlgXferDandDViewProc},
    {"DLGRENAME", fDlgXferDandDRenProc},  {"DLGDEL", fDlgXferDandDDelProc},
    {"DLGMKDIR", fDlgXferDandDMkdirProc}, {"DLGDANDRMDIR", fDlgXferDandDRmdirProc},
    {"DLGCHDIR", fDlgXferDandDChdirProc}, {"DLGCONFIRM", fDlgXferDandDConfirmProc},
};

} // namespace

// The dialogs share fields of the record: one that opens while another is open (the caller may ask
// for it from a timer) has to be left first.
bool fXferDandDRunDialog(XferWindowRecord* pRecord, XferFileDialog dialog)
{
    const DialogRow* pRow = &DIALOGS[dialog];
    HWND hdlgDandD = pRecord->hwndDialog;
    HWND hdlgOuter = pRecord->hdlgOpen;
    EnableWindow(hdlgOuter, FALSE);
    INT_PTR nResult = -1;
    if (fXferDandDIsAlive(hdlgDandD, pRecord)) {
        nResult = nXferDandDDialogBoxParam(hdlgDandD, pRow->pszTemplate, pRow->pfnDialog,
                                           reinterpret_cast<LPARAM>(pRecord));
    }
    if (!fXferDandDIsAlive(hdlgDandD, pRecord)) {
        return false;
    }
    pRecord->hdlgOpen = hdlgOuter;
    EnableWindow(hdlgOuter, TRUE);
    return nResult != -1 && fXferDandDIsAlive(hdlgDandD, pRecord);
}

// Panes that are filled anew can run foreign code.
bool fXferDandDAskForNames(HWND hdlgDandD, XferWindowRecord* pRecord, XferFileDialog dialog)
{
    fXferDandDShowsHere(pRecord);
    return fXferDandDIsAlive(hdlgDandD, pRecord) && fXferDandDRunDialog(pRecord, dialog);
}
