// Removes the selected directory, or asks for a name.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/commands/question.h"
#include "transfer/commands/selection.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/pathline.h"

#include <direct.h>

namespace {

constexpr commands::Question QUESTION = {XFERCONFIRM_LOCALRMDIR, IDS_RMDIR_TEXT, IDS_RMDIR_CAPTION};

void removeHostDir(const commands::Command* pCommand, const panes::Row* pRow)
{
    if (pRow->nKind == XFERITEM_CHILD) {
        window::requestRemoveDir(pCommand->pRecord, pRow->szText, window::NAME_FROM_LIST);
    } else {
        commands::showString(pCommand, IDS_HOSTDIR_FIXED);
    }
}

void removeLocalDir(const commands::Command* pCommand, const panes::Row* pRow)
{
    if (pRow->nKind != XFERITEM_CHILD) {
        commands::showString(pCommand, IDS_HOSTDIR_FIXED);
        return;
    }
    if (!panes::syncLocalPanes(pCommand->pRecord) ||
        !commands::mayDelete(pCommand, &QUESTION, pRow->szText)) {
        return;
    }
    if (_rmdir(pRow->szText) != 0) {
        panes::reportLocalFailure(pCommand->hdlgDandD, pCommand->pRecord, pRow->szText,
                                  commands::CCH_QUESTION);
        return;
    }
    panes::ShownDir dir = panes::shownDir(pCommand->pRecord);
    if (window::recordAction(pCommand->pRecord, KRACTION_LOCALDIR_REMOVED, pRow->szText) &&
        panes::stillShows(pCommand->pRecord, &dir)) {
        fXferDandDRemoveSubDir(pCommand->hdlgDandD, IDC_DANDD_LOCALDIRS, pRow->szText);
    }
}

} // namespace

void commands::removeDir(const Command* pCommand)
{
    panes::Row row;
    RowState state = selectedDir(pCommand, IDC_DANDD_HOSTDIRS, &row);
    if (state != ROW_NONE) {
        if (state == ROW_FOUND) {
            removeHostDir(pCommand, &row);
        }
        return;
    }
    state = selectedDir(pCommand, IDC_DANDD_LOCALDIRS, &row);
    if (state == ROW_FOUND) {
        removeLocalDir(pCommand, &row);
    } else if (state == ROW_NONE) {
        dialogs::syncAndRun(pCommand->pRecord, dialogs::DLG_REMOVEDIR);
    }
}
