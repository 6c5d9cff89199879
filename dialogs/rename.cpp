// The rename dialog.
#include "dialogs/engine.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/window/request.h"

#include <string.h>

namespace {

// Both names whole, and the blank between them.
constexpr size_t CCH_REPORT = 2 * size_t(XFER_MAX_NAME) + 2;

struct Names {
    char szOld[XFER_NAME_SIZE];
    char szNew[XFER_NAME_SIZE];
    char szReport[CCH_REPORT];
};

void initDialog(const dialogs::Dialog* pDialog)
{
    HWND hdlg = pDialog->hdlg;
    const XferWindowRecord* pRecord = pDialog->pRecord;
    bool fNamed = pRecord->szName1[0] != '\0';
    CheckRadioButton(hdlg, IDC_RENAME_LOCAL, IDC_RENAME_HOST,
                     pRecord->nDialogOp == XFEROP_LOCAL ? IDC_RENAME_LOCAL : IDC_RENAME_HOST);
    dialogs::limitName(hdlg, IDC_RENAME_OLDNAME);
    dialogs::limitName(hdlg, IDC_RENAME_NEWNAME);
    dialogs::showName(hdlg, IDC_RENAME_OLDNAME, pRecord->szName1);
    dialogs::showName(hdlg, IDC_RENAME_NEWNAME, pRecord->szName1);
    if (fNamed) {
        dialogs::selectName(hdlg, IDC_RENAME_NEWNAME);
    } else {
        dialogs::enableOk(hdlg, false);
    }
    dialogs::startFocusTimer(hdlg);
}

void newNameChanged(const dialogs::Dialog* pDialog, WORD)
{
    dialogs::readName(pDialog->hdlg, IDC_RENAME_NEWNAME, pDialog->pRecord->szName2);
    dialogs::enableOk(pDialog->hdlg, pDialog->pRecord->szName2[0] != '\0');
}

// The new name is read once more: another dialog can have used the record meanwhile.
void readNames(const dialogs::Dialog* pDialog, Names* pNames)
{
    XferWindowRecord* pRecord = pDialog->pRecord;
    dialogs::readName(pDialog->hdlg, IDC_RENAME_OLDNAME, pRecord->szName1);
    dialogs::readName(pDialog->hdlg, IDC_RENAME_NEWNAME, pRecord->szName2);
    strcpy(pNames->szOld, pRecord->szName1);
    strcpy(pNames->szNew, pRecord->szName2);
    strcpy(pNames->szReport, pNames->szOld);
    strcat(pNames->szReport, " ");
    strcat(pNames->szReport, pNames->szNew);
}

bool renameLocal(const dialogs::Dialog* pDialog, const Names* pNames)
{
    if (!dialogs::syncLocalPanes(pDialog) || !dialogs::isAlive(pDialog)) {
        return false;
    }
    if (!MoveFileA(pNames->szOld, pNames->szNew)) {
        return dialogs::reportFailure(pDialog, GetLastError());
    }
    if (dialogs::recordAction(pDialog, KRACTION_LOCALFILE_RENAMED, pNames->szReport)) {
        vXferDandDRefreshLocalFiles(pDialog->ref.hdlgDandD);
    }
    return true;
}

bool accept(const dialogs::Dialog* pDialog)
{
    Names names;
    readNames(pDialog, &names);
    bool fLocal = IsDlgButtonChecked(pDialog->hdlg, IDC_RENAME_LOCAL) != 0;
    pDialog->pRecord->nDialogOp = fLocal ? XFEROP_LOCAL : XFEROP_HOST;
    if (fLocal) {
        return renameLocal(pDialog, &names);
    }
    window::requestRename(pDialog->pRecord, names.szOld, names.szNew, names.szReport);
    return true;
}

void cancel(const dialogs::Dialog* pDialog)
{
    pDialog->pRecord->szName2[0] = '\0';
}

int focusControl(const dialogs::Dialog*)
{
    return IDC_RENAME_NEWNAME;
}

constexpr dialogs::Kind renameKind()
{
    dialogs::Kind kind = {};
    kind.context = XFERHELP_RENAME;
    kind.idHelp = IDC_RENAME_HELP;
    kind.pfnInit = initDialog;
    kind.pfnAccept = accept;
    kind.pfnCancel = cancel;
    kind.idWatched = IDC_RENAME_NEWNAME;
    kind.pfnNotify = newNameChanged;
    kind.pfnFocus = focusControl;
    return kind;
}

constexpr dialogs::Kind RENAME = renameKind();

} // namespace

INT_PTR CALLBACK fDlgXferDandDRenProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dialogs::handleMessage(&RENAME, hdlg, uMessage, wParam, lParam);
}
