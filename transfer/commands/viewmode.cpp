// The two view modes, and where the focus goes in each of them.
#include "layout/layout.h"
#include "resources/ids.h"
#include "toolbar/toolbar.h"
#include "transfer/commands/commands.h"
#include "transfer/commands/toolbar.h"
#include "transfer/window/request.h"

namespace {

void checkMode(HWND hdlgDandD, LONG nMode)
{
    WORD idOn = commands::commandOfMode(nMode);
    commands::sendToToolbar(hdlgDandD, TOOLM_CHECKBUTTON, idOn, 1);
    commands::checkItem(hdlgDandD, IDM_XFER_COMMANDLINE, nMode != 0);
    commands::checkItem(hdlgDandD, IDM_XFER_TWOPANE, nMode == 0);
}

} // namespace

WORD commands::commandOfMode(LONG nViewMode)
{
    return nViewMode != 0 ? IDM_XFER_COMMANDLINE : IDM_XFER_TWOPANE;
}

void commands::showCommandLine(const Command* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_COMMANDLINE);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void commands::showTwoPanes(const Command* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_TWOPANE);
    vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode)
{
    window::Ref ref = window::refOf(pRecord);
    if ((pRecord->nViewMode != 0) == (nNewMode != 0)) {
        return;
    }
    checkMode(hdlgDandD, nNewMode);
    commands::enablePaneCommands(hdlgDandD, pRecord->fBusy == 0 && nNewMode == 0);
    if (!window::reportViewMode(pRecord, nNewMode)) {
        return;
    }
    vXferDandDApplyLayout(hdlgDandD, &pRecord->layout, nNewMode != 0);
    // A control that is disabled gives up the focus, which can run the caller's code.
    if (window::isAlive(ref)) {
        pRecord->nViewMode = nNewMode;
    }
}

void KRHAULAPI vXferDandDSetFocus(HWND hdlgDandD)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    if (pRecord->nViewMode != 0) {
        SetFocus(GetDlgItem(hdlgDandD, IDC_DANDD_COMMANDLINE));
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    HWND hwndFilter = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALFILTER);
    SetFocus(hwndFilter);
    if (window::isAlive(ref)) {
        SendMessageA(hwndFilter, EM_SETSEL, 0, -1);
        SendMessageA(hwndFilter, EM_SCROLLCARET, 0, 0);
    }
}
