// All file dialogs: their templates and procedures.
#include "dialogs.h"

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

bool fXferDandDRunDialog(XferWindowRecord* pRecord, XferFileDialog dialog)
{
    const DialogRow* pRow = &DIALOGS[dialog];
    HWND hdlgDandD = pRecord->hwndDialog;
    INT_PTR nResult = nXferDandDDialogBoxParam(hdlgDandD, pRow->pszTemplate, pRow->pfnDialog,
                                               reinterpret_cast<LPARAM>(pRecord));
    return nResult != -1 && fXferDandDIsAlive(hdlgDandD, pRecord);
}
