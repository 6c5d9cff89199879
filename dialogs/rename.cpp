// The rename dialog.
#include "dialogs.h"
#include "../resources/ids.h"
#include "../shared/krutils.h"

#include <string.h>

namespace {

// Both names whole, and the blank between them.
constexpr size_t CCH_REPORT = 2 * size_t(XFER_MAX_NAME) + 2;

struct Names {
    char szOld[XFER_NAME_SIZE];
    char szNew[XFER_NAME_SIZE];
    char szReport[CCH_REPORT];
};

void initDialog(HWND hdlg, LPARAM lParam)
{
    vXferDandDStartDialog(hdlg, lParam);
    const auto* pRecord = reinterpret_cast<const XferWindowRecord*>(lParam);
    bool fNamed = pRecord->szName1[0] != '\0';
    CheckRadioButton(hdlg, IDC_RENAME_LOCAL, IDC_RENAME_HOST,
                     pRecord->nDialogOp == XFEROP_LOCAL ? IDC_RENAME_LOCAL : IDC_RENAME_HOST);
    vXferDandDLimitName(hdlg, IDC_RENAME_OLDNAME);
    vXferDandDLimitName(hdlg, IDC_RENAME_NEWNAME);
    vXferDandDShowName(hdlg, IDC_RENAME_OLDNAME, pRecord->szName1);
    vXferDandDShowName(hdlg, IDC_RENAME_NEWNAME, pRecord->szName1);
    if (fNamed) {
        vXferDandDSelectName(hdlg, IDC_RENAME_NEWNAME);
    } else {
        vXferDandDEnableOk(hdlg, false);
    }
    vXferDandDStartFocusTimer(hdlg);
}

void newNameChanged(const XferDialog* pDialog, WORD)
{
    vXferDandDReadName(pDialog->hdlg, IDC_RENAME_NEWNAME, pDialog->pRecord->szName2);
    vXferDandDEnableOk(pDialog->hdlg, pDialog->pRecord->szName2[0] != '\0');
}

// The new name is read once more: the record can have served another dialog since.
void readNames(const XferDialog* pDialog, Names* pNames)
{
    XferWindowRecord* pRecord = pDialog->pRecord;
    vXferDandDReadName(pDialog->hdlg, IDC_RENAME_OLDNAME, pRecord->szName1);
    vXferDandDReadName(pDialog->hdlg, IDC_RENAME_NEWNAME, pRecord->szName2);
    strcpy(pNames->szOld, pRecord->szName1);
    strcpy(pNames->szNew, pRecord->szName2);
    strcpy(pNames->szReport, pNames->szOld);
    strcat(pNames->szReport, " ");
    strcat(pNames->szReport, pNames->szNew);
}

bool renameLocal(const XferDialog* pDialog, const Names* pNames)
{
    if (!fXferDandDNamesMeanShownDir(pDialog)) {
        return false;
    }
    if (!MoveFileA(pNames->szOld, pNames->szNew)) {
        return fXferDandDDialogFailed(pDialog, GetLastError());
    }
    if (fXferDandDDialogRecordAction(pDialog, KRACTION_LOCALFILE_RENAMED, pNames->szReport)) {
        vXferDandDRefreshLocalFiles(pDialog->hdlgDandD);
    }
    return true;
}

void renameHost(const XferDialog* pDialog, const Names* pNames)
{
    const XferWindowRecord* pRecord = pDialog->pRecord;
    if (pRecord->callbacks.pfnRenameHostFile != nullptr &&
        fXferDandDDialogRecordAction(pDialog, KRACTION_HOSTFILE_RENAMED, pNames->szReport)) {
        pRecord->callbacks.pfnRenameHostFile(pRecord->dwCallerData, 0, 0, pNames->szOld,
                                             pNames->szNew);
    }
}

void accept(const XferDialog* pDialog)
{
    Names names;
    readNames(pDialog, &names);
    bool fLocal = IsDlgButtonChecked(pDialog->hdlg, IDC_RENAME_LOCAL) != 0;
    pDialog->pRecord->nDialogOp = fLocal ? XFEROP_LOCAL : XFEROP_HOST;
    if (!fLocal) {
        renameHost(pDialog, &names);
    } else if (!renameLocal(pDialog, &names)) {
        return;
    }
    vXferDandDEndDialog(pDialog);
}

void cancel(const XferDialog* pDialog)
{
    pDialog->pRecord->szName2[0] = '\0';
    vXferDandDEndDialog(pDialog);
}

int focusControl()
{
    return IDC_RENAME_NEWNAME;
}

constexpr XferDialogKind RENAME = {XFERHELP_RENAME,    IDC_RENAME_HELP, initDialog,  accept, cancel,
                                   IDC_RENAME_NEWNAME, newNameChanged,  focusControl};

} // namespace

INT_PTR CALLBACK fDlgXferDandDRenProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return nXferDandDDialogMessage(&RENAME, hdlg, uMessage, wParam, lParam);
}
