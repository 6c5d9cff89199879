// Deletes the selected files, or asks for a name.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/commands/question.h"
#include "transfer/commands/selection.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/pathline.h"

#include <stdio.h>

namespace {

constexpr commands::Question QUESTION = {XFERCONFIRM_LOCALDELETE, IDS_DELETE_TEXT,
                                         IDS_DELETE_CAPTION};

void deleteLocalFile(const commands::Command* pCommand, const char* pszName)
{
    if (!commands::mayDelete(pCommand, &QUESTION, pszName)) {
        return;
    }
    if (remove(pszName) != 0) {
        panes::reportLocalFailure(pCommand->hdlgDandD, pCommand->pRecord, pszName,
                                  commands::CCH_QUESTION);
        return;
    }
    panes::ShownDir dir = panes::shownDir(pCommand->pRecord);
    if (window::recordAction(pCommand->pRecord, KRACTION_LOCALFILE_DELETED, pszName) &&
        panes::stillShows(pCommand->pRecord, &dir)) {
        nXferDandDRemoveLocalFileName(pCommand->hdlgDandD, pszName);
    }
}

} // namespace

// The caller asks about host files itself.
void commands::deleteFiles(const Command* pCommand)
{
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        requestSelection(pCommand, window::FILES_DELETE);
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        forSelectedLocalFiles(pCommand, deleteLocalFile);
    } else {
        dialogs::syncAndRun(pCommand->pRecord, dialogs::DLG_DELETE);
    }
}
