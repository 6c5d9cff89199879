// Opens the rename dialog, with the side and the name of the one selected file.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "transfer/commands/selection.h"
#include "transfer/panes/locallist.h"

namespace {

// Reads the name of the selected row, if there is exactly one.
bool readOnlySelected(const commands::Command* pCommand, int idList, char (&szName)[XFER_NAME_SIZE])
{
    int nRow;
    return commands::countSelected(pCommand, idList) == 1 &&
           SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_GETSELITEMS, 1,
                               reinterpret_cast<LPARAM>(&nRow)) == 1 &&
           panes::readRowText(GetDlgItem(pCommand->hdlgDandD, idList), nRow, szName) != LB_ERR;
}

} // namespace

void commands::renameFile(const Command* pCommand)
{
    XferWindowRecord* pRecord = pCommand->pRecord;
    bool fShown = panes::syncLocalPanes(pRecord);
    if (!window::isAlive(pCommand->ref)) {
        return;
    }
    bool fHere = fShown && panes::showsCurrentFiles(pRecord);
    pRecord->nDialogOp = XFEROP_HOST;
    if (!readOnlySelected(pCommand, IDC_DANDD_HOSTFILES, pRecord->szName1)) {
        pRecord->nDialogOp = XFEROP_LOCAL;
        if (!fHere || !readOnlySelected(pCommand, IDC_DANDD_LOCALFILES, pRecord->szName1)) {
            pRecord->szName1[0] = '\0';
        }
    }
    dialogs::run(pRecord, dialogs::DLG_RENAME);
}
