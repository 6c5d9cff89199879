// Notifications of the directory and file lists and of the filter lines above them.
#include "resources/ids.h"
#include "transfer/commands/commands.h"
#include "transfer/frame/strip.h"
#include "transfer/panes/pathline.h"

namespace {

using commands::Command;

// A quick search by prefix: the list scrolls, and the filter itself waits for Enter.
void scrollToPrefix(const Command* pCommand, int idList)
{
    char szPrefix[XFER_NAME_SIZE] = "";
    if (pCommand->nNotification != EN_CHANGE) {
        return;
    }
    GetWindowTextA(pCommand->hwndControl, szPrefix, sizeof szPrefix);
    LRESULT nRow = SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_FINDSTRING, WPARAM(-1),
                                       reinterpret_cast<LPARAM>(szPrefix));
    if (nRow != LB_ERR) {
        SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_SETTOPINDEX, WPARAM(nRow), 0);
    }
}

void unselect(const Command* pCommand, int idList)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_SETSEL, FALSE, -1);
}

bool changesStrip(const Command* pCommand)
{
    return pCommand->nNotification == LBN_SELCHANGE && !frame::isStripTextKept();
}

} // namespace

void commands::localFilterChanged(const Command* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_LOCALFILES);
}

void commands::hostFilterChanged(const Command* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_HOSTFILES);
}

void commands::dirListNotified(const Command* pCommand)
{
    if (pCommand->nNotification == LBN_DBLCLK) {
        fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, pCommand->hwndControl);
    }
}

// A selection exists on one side only.
void commands::hostFilesNotified(const Command* pCommand)
{
    unselect(pCommand, IDC_DANDD_LOCALFILES);
    if (changesStrip(pCommand)) {
        vXferDandDDisplayDILText(pCommand->hdlgDandD, "");
    }
}

void commands::localFilesNotified(const Command* pCommand)
{
    unselect(pCommand, IDC_DANDD_HOSTFILES);
    if (changesStrip(pCommand)) {
        showSelectionSum(pCommand);
    }
}
