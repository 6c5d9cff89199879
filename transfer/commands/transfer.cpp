// Sends or receives the selected files, or asks for the two names of a transfer.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/filelist.h"
#include "transfer/commands/selection.h"
#include "transfer/dragdrop/drop.h"

#include <string.h>

namespace {

// What the dialog has left in the record, which the first callback can overwrite by another dialog.
struct TypedTransfer {
    window::FileRequest request;
    char szLocal[XFER_NAME_SIZE];
    char szHost[XFER_NAME_SIZE];
};

bool askForTransfer(XferWindowRecord* pRecord, TypedTransfer* pTyped)
{
    pRecord->szName1[0] = '\0';
    pRecord->szName2[0] = '\0';
    pRecord->nDialogOp = XFEROP_SEND;
    if (!dialogs::run(pRecord, dialogs::DLG_TRANSFER)) {
        return false;
    }
    pTyped->request =
        pRecord->nDialogOp == XFEROP_SEND ? window::FILES_SEND : window::FILES_RECEIVE;
    strcpy(pTyped->szLocal, pRecord->szName1);
    strcpy(pTyped->szHost, pRecord->szName2);
    return true;
}

void transferByName(XferWindowRecord* pRecord)
{
    TypedTransfer typed;
    XferFileList list;
    if (!askForTransfer(pRecord, &typed) || !window::canRequest(pRecord, typed.request) ||
        !XferFileListCreateOne(&list, XFERLIST_LOCAL, typed.szLocal)) {
        return;
    }
    if (XferFileList_fSetString(list, 0, XFERLIST_HOST, typed.szHost) &&
        window::recordAction(pRecord, window::actionOf(typed.request), typed.szLocal)) {
        window::requestFiles(pRecord, typed.request, list);
    } else {
        XferFileList_vDestroy(list);
    }
}

} // namespace

void commands::transferFiles(const Command* pCommand)
{
    XferWindowRecord* pRecord = pCommand->pRecord;
    if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        vXferDandDDropOn(pRecord, IDC_DANDD_LOCALFILES, IDC_DANDD_HOSTFILES, XFERDIR_SEND, false);
    } else if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        vXferDandDDropOn(pRecord, IDC_DANDD_HOSTFILES, IDC_DANDD_LOCALFILES, XFERDIR_RECEIVE,
                         false);
    } else {
        transferByName(pRecord);
    }
}
