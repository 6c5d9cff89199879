// All file dialogs: their templates and procedures.
#include "dialogs/open.h"
#include "transfer/panes/locallist.h"
#include "transfer/window/modal.h"

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

bool dialogs::run(XferWindowRecord* pRecord, FileDialog dialog)
{
    window::Ref ref = window::refOf(pRecord);
    window::ModalDialog modal = {};
    modal.pszTemplate = DIALOGS[dialog].pszTemplate;
    modal.pfnDialog = DIALOGS[dialog].pfnDialog;
    modal.lParam = reinterpret_cast<LPARAM>(pRecord);
    window::runModal(pRecord, &modal);
    return modal.fAccepted && window::isAlive(ref);
}

// Panes that are refilled can run foreign code.
bool dialogs::syncAndRun(XferWindowRecord* pRecord, FileDialog dialog)
{
    window::Ref ref = window::refOf(pRecord);
    panes::syncLocalPanes(pRecord);
    return window::isAlive(ref) && run(pRecord, dialog);
}
