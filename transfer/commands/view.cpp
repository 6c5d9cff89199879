// Shows the selected files in a viewer, or their details in the log.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "transfer/commands/selection.h"
#include "transfer/panes/details.h"

#include <direct.h>

namespace {

// A path that doesn't fit names no file: it is passed on whole, and rejected there.
void viewLocalFile(const commands::Command* pCommand, const char* pszName)
{
    char szPath[2 * XFER_NAME_SIZE] = "";
    _getcwd(szPath, XFER_NAME_SIZE);
    shared::appendName(szPath, pszName, sizeof szPath);
    vXferDandDViewFile(pCommand->hdlgDandD, szPath, nullptr, nullptr, nullptr, nullptr);
}

void detailLocalFile(const commands::Command* pCommand, const char* pszName)
{
    vXferDandDFileDetails(pCommand->hdlgDandD, pszName);
}

} // namespace

void commands::viewFiles(const Command* pCommand)
{
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        requestSelection(pCommand, window::FILES_VIEW);
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        forSelectedLocalFiles(pCommand, viewLocalFile);
    } else {
        dialogs::syncAndRun(pCommand->pRecord, dialogs::DLG_VIEW);
    }
}

void commands::showDetails(const Command* pCommand)
{
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        requestSelection(pCommand, window::FILES_DETAILS);
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        forSelectedLocalFiles(pCommand, detailLocalFile);
    }
}
