#include "dialogs/onename.h"
#include "resources/ids.h"

#include <string.h>

namespace {

// Of all five templates.
constexpr int IDC_LOCAL = IDC_DIR_LOCAL;
constexpr int IDC_HOST = IDC_DIR_HOST;
static_assert(IDC_VIEW_LOCAL == IDC_LOCAL && IDC_DEL_LOCAL == IDC_LOCAL, "one id for the side");
static_assert(IDC_VIEW_HOST == IDC_HOST && IDC_DEL_HOST == IDC_HOST, "one id for the side");

} // namespace

void dialogs::initOneName(const Dialog* pDialog)
{
    CheckRadioButton(pDialog->hdlg, IDC_LOCAL, IDC_HOST, IDC_LOCAL);
    limitName(pDialog->hdlg, pDialog->pKind->idWatched);
    enableOk(pDialog->hdlg, false);
}

bool dialogs::acceptOneName(const Dialog* pDialog)
{
    char szName[XFER_NAME_SIZE];
    const Kind* pKind = pDialog->pKind;
    XferWindowRecord* pRecord = pDialog->pRecord;
    readName(pDialog->hdlg, pKind->idWatched, pRecord->szName1);
    strcpy(szName, pRecord->szName1);
    bool fLocal = IsDlgButtonChecked(pDialog->hdlg, IDC_LOCAL) != 0;
    pRecord->nDialogOp = fLocal ? XFEROP_LOCAL : XFEROP_HOST;
    if (fLocal) {
        return syncLocalPanes(pDialog) && isAlive(pDialog) && pKind->pfnLocal(pDialog, szName);
    }
    pKind->pfnHost(pRecord, szName);
    return true;
}

void dialogs::cancelOneName(const Dialog* pDialog)
{
    pDialog->pRecord->szName1[0] = '\0';
}

void dialogs::oneNameChanged(const Dialog* pDialog, WORD)
{
    enableOk(pDialog->hdlg, SendDlgItemMessageA(pDialog->hdlg, pDialog->pKind->idWatched,
                                                EM_LINELENGTH, 0, 0) > 0);
}
