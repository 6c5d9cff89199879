// The busy state: what it switches off and on, the cursor and the focus.
#include "resources/ids.h"
#include "toolbar/toolbar.h"
#include "transfer/commands/table.h"
#include "transfer/commands/toolbar.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/columns.h"
#include "transfer/panes/drawing.h"

namespace {

constexpr BYTE CHECKED_ENABLED = TOOLSTATE_CHECKED | TOOLSTATE_ENABLED;

// What the buttons and menu items depend on.
struct State {
    HWND hdlgDandD;
    bool fIdle;
    LONG nViewMode;
    DWORD nType; // the file type before any button changes
};

void setBoth(const State* pState, WORD idCommand)
{
    commands::enableButton(pState->hdlgDandD, idCommand, pState->fIdle);
    commands::enableItem(pState->hdlgDandD, idCommand, pState->fIdle);
}

void setItem(const State* pState, WORD idCommand)
{
    commands::enableItem(pState->hdlgDandD, idCommand, pState->fIdle);
}

// A button of a check group keeps its check when it is disabled.
void setGrouped(const State* pState, WORD idCommand, bool fChosen)
{
    if (pState->fIdle) {
        commands::sendToToolbar(pState->hdlgDandD, TOOLM_SETSTATE, idCommand,
                                fChosen ? CHECKED_ENABLED : TOOLSTATE_ENABLED);
    } else {
        commands::enableButton(pState->hdlgDandD, idCommand, false);
    }
}

void setTypeButton(const State* pState, WORD idCommand)
{
    setGrouped(pState, idCommand, commands::commandOfType(pState->nType) == idCommand);
}

void setModeButton(const State* pState, WORD idCommand)
{
    setGrouped(pState, idCommand, commands::commandOfMode(pState->nViewMode) == idCommand);
}

void setPaneCommand(const State* pState, WORD idCommand)
{
    bool fEnabled = pState->fIdle && pState->nViewMode == 0;
    commands::enableButton(pState->hdlgDandD, idCommand, fEnabled);
    commands::enableItem(pState->hdlgDandD, idCommand, fEnabled);
}

void setStop(const State* pState, WORD idCommand)
{
    commands::enableItem(pState->hdlgDandD, idCommand, !pState->fIdle);
    commands::enableButton(pState->hdlgDandD, idCommand, !pState->fIdle);
}

struct Step {
    commands::BusyRule rule;
    void (*pfnSet)(const State* pState, WORD idCommand);
    bool fBackwards; // from the last row of the table to the first
};

// The details command is a pane command in the end: two steps set it.
constexpr Step STEPS[] = {
    {commands::BUSY_OFF, setBoth, false},
    {commands::BUSY_OFF_TYPE, setItem, false},
    {commands::BUSY_OFF_TYPE, setTypeButton, false},
    {commands::BUSY_OFF_MODE, setItem, false},
    {commands::BUSY_OFF_MODE, setModeButton, true},
    {commands::BUSY_OFF_PANES, setPaneCommand, false},
    {commands::BUSY_ON, setStop, false},
    {commands::BUSY_OFF_ITEM, setItem, false},
};

void applyStep(const Step* pStep, const State* pState)
{
    for (int n = 0; n < commands::COMMAND_COUNT; ++n) {
        int nRow = pStep->fBackwards ? commands::COMMAND_COUNT - 1 - n : n;
        const commands::CommandRow* pRow = &commands::COMMANDS[nRow];
        if ((pRow->fsBusy & pStep->rule) != 0) {
            pStep->pfnSet(pState, pRow->idCommand);
        }
    }
}

void showCursor(const XferWindowRecord* pRecord)
{
    SetCursor(pRecord->fBusy ? pRecord->hcurBusy : LoadCursorA(nullptr, IDC_ARROW));
}

void focusCommandLine(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    HWND hwndCommandLine = GetDlgItem(hdlgDandD, IDC_DANDD_COMMANDLINE);
    if (!pRecord->fBusy && IsWindowVisible(hwndCommandLine) && pRecord->fFocusCommandLine) {
        SetFocus(hwndCommandLine);
    }
}

// Its messages pass through procedures that the caller can replace. Returns whether the window
// still exists.
bool endListChanges(XferWindowRecord* pRecord)
{
    window::Ref ref = window::refOf(pRecord);
    if (pRecord->fListsChanged) {
        vXferDandDSetColumnWidth(pRecord, IDC_DANDD_LOCALFILES);
        if (!window::isAlive(ref)) {
            return false;
        }
        vXferDandDSetColumnWidth(pRecord, IDC_DANDD_HOSTFILES);
    }
    return window::isAlive(ref) && panes::resumeDrawing(pRecord);
}

} // namespace

void commands::enablePaneCommands(HWND hdlgDandD, bool fEnabled)
{
    constexpr Step PANES = {BUSY_OFF_PANES, setPaneCommand, false};
    State state = {hdlgDandD, fEnabled, XFERVIEW_TWOPANE, 0};
    applyStep(&PANES, &state);
}

void KRHAULAPI vXferDandDSetBusyState(HWND hdlgDandD, DWORD fBusy)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    // Making the changes that wait can run the caller's code, which may call this function too.
    if (pRecord == nullptr || pRecord->fBusy == LONG(fBusy) || !panes::applyChanges(pRecord) ||
        pRecord->fBusy == LONG(fBusy)) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    if (fBusy != 0) {
        pRecord->fFocusCommandLine = 1;
    } else if (!endListChanges(pRecord)) {
        return;
    }
    pRecord->fListsChanged = 0;
    pRecord->fBusy = LONG(fBusy);
    showCursor(pRecord);
    focusCommandLine(hdlgDandD, pRecord);
    // A change of focus can run the caller's code.
    if (!window::isAlive(ref)) {
        return;
    }
    State state = {hdlgDandD, pRecord->fBusy == 0, pRecord->nViewMode,
                   DWORD(nXferDandDGetFileTypeSelection(hdlgDandD))};
    for (const Step& step : STEPS) {
        applyStep(&step, &state);
    }
}
