// The buttons of the toolbar, the busy state and the file type, whose only store is the check
// state of the toolbar.
#include "transfer/commands/busy.h"
#include "resources/ids.h"
#include "shared/module.h"
#include "toolbar/toolbar.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/columns.h"
#include "transfer/panes/drawing.h"

#include <string.h>

namespace {

constexpr UINT MENU_OFF = MF_GRAYED | MF_DISABLED;
constexpr int PICTURES = 15;
constexpr BYTE CHECKED_ENABLED = TOOLSTATE_CHECKED | TOOLSTATE_ENABLED;

constexpr BYTE PLAIN = 0;
constexpr BYTE GROUPED = TOOLSTYLE_CHECK | TOOLSTYLE_GROUP;

constexpr XferToolButton plainButton(LONG iPicture, DWORD idCommand, BYTE fsState)
{
    return {iPicture, idCommand, fsState, PLAIN};
}

constexpr XferToolButton checkButton(LONG iPicture, DWORD idCommand)
{
    return {iPicture, idCommand, TOOLSTATE_INDETERMINATE, GROUPED};
}

constexpr XferToolButton SEPARATOR = {-1, IDC_DANDD_TOOLBAR, TOOLSTATE_ENABLED,
                                      TOOLSTYLE_SEPARATOR};

// The window starts busy: all that starts a host operation is off.
constexpr XferToolButton BUTTONS[] = {
    plainButton(0, IDM_XFER_TRANSFER, 0),
    plainButton(1, IDM_XFER_RENAME, 0),
    plainButton(2, IDM_XFER_DELETE, 0),
    SEPARATOR,
    plainButton(3, IDM_XFER_MAKEDIR, 0),
    plainButton(4, IDM_XFER_REMOVEDIR, 0),
    SEPARATOR,
    plainButton(5, IDM_XFER_DETAILS, 0),
    plainButton(6, IDM_XFER_VIEW, 0),
    SEPARATOR,
    checkButton(7, IDM_XFER_TYPETEXT),
    checkButton(8, IDM_XFER_TYPEBINARY),
    checkButton(9, IDM_XFER_TYPEAUTO),
    SEPARATOR,
    checkButton(10, IDM_XFER_TWOPANE),
    checkButton(11, IDM_XFER_COMMANDLINE),
    SEPARATOR,
    plainButton(12, IDM_XFER_REFRESH, 0),
    SEPARATOR,
    plainButton(13, IDM_XFER_STOP, TOOLSTATE_ENABLED),
    SEPARATOR,
    plainButton(14, IDM_XFER_HELP, TOOLSTATE_ENABLED),
};

// File types, in the order in which menu and toolbar are set.
struct TypeRow {
    DWORD nType;
    UINT idCommand;
};
constexpr TypeRow TYPES[] = {
    {XFERTYPE_TEXT, IDM_XFER_TYPETEXT},
    {XFERTYPE_BINARY, IDM_XFER_TYPEBINARY},
    {XFERTYPE_AUTOMATIC, IDM_XFER_TYPEAUTO},
};

// What the busy state does to a command.
enum BusyRule {
    BUSY_OFF,       // off while busy, button and menu item
    BUSY_OFF_TYPE,  // off while busy; the button of the present type comes back checked
    BUSY_OFF_MODE,  // off while busy; the button of the present mode comes back checked
    BUSY_OFF_PANES, // on only when idle in two-pane mode
    BUSY_ON,        // on only while busy
};

struct BusyRow {
    UINT idCommand;
    BusyRule rule;
};

// In the order in which they are set. Details are a pane command in the end: they stand twice.
constexpr BusyRow BUSY_TABLE[] = {
    {IDM_XFER_TRANSFER, BUSY_OFF},
    {IDM_XFER_RENAME, BUSY_OFF},
    {IDM_XFER_DELETE, BUSY_OFF},
    {IDM_XFER_MAKEDIR, BUSY_OFF},
    {IDM_XFER_REMOVEDIR, BUSY_OFF},
    {IDM_XFER_DETAILS, BUSY_OFF},
    {IDM_XFER_VIEW, BUSY_OFF},
    {IDM_XFER_TYPETEXT, BUSY_OFF_TYPE},
    {IDM_XFER_TYPEBINARY, BUSY_OFF_TYPE},
    {IDM_XFER_TYPEAUTO, BUSY_OFF_TYPE},
    {IDM_XFER_COMMANDLINE, BUSY_OFF_MODE},
    {IDM_XFER_TWOPANE, BUSY_OFF_MODE},
    {IDM_XFER_REFRESH, BUSY_OFF_PANES},
    {IDM_XFER_DETAILS, BUSY_OFF_PANES},
    {IDM_XFER_STOP, BUSY_ON},
    {IDM_XFER_CHANGEDIR, BUSY_OFF},
};

LRESULT tellToolbar(HWND hdlgDandD, UINT uMessage, UINT idCommand, LPARAM lParam)
{
    return SendDlgItemMessageA(hdlgDandD, IDC_DANDD_TOOLBAR, uMessage, idCommand, lParam);
}

bool isChecked(HWND hdlgDandD, UINT idCommand)
{
    LRESULT nChecked = tellToolbar(hdlgDandD, TOOLM_ISCHECKED, idCommand, 0);
    return nChecked != 0 && nChecked != -1;
}

void enableItem(HWND hdlgDandD, UINT idCommand, bool fEnabled)
{
    EnableMenuItem(GetMenu(hdlgDandD), idCommand, fEnabled ? MF_ENABLED : MENU_OFF);
}

// Whether the check group that a command belongs to stands on it.
bool isChosen(const XferWindowRecord* pRecord, const BusyRow* pRow, DWORD nType)
{
    if (pRow->rule == BUSY_OFF_MODE) {
        return (pRow->idCommand == IDM_XFER_COMMANDLINE) == (pRecord->nViewMode != 0);
    }
    return pRow->idCommand == TYPES[nType - 1].idCommand;
}

void setPlain(HWND hdlgDandD, UINT idCommand, bool fEnabled)
{
    tellToolbar(hdlgDandD, TOOLM_ENABLEBUTTON, idCommand, fEnabled);
    enableItem(hdlgDandD, idCommand, fEnabled);
}

// A button that is switched off keeps its check.
void setGrouped(HWND hdlgDandD, const BusyRow* pRow, bool fEnabled, bool fChosen)
{
    enableItem(hdlgDandD, pRow->idCommand, fEnabled);
    if (fEnabled) {
        tellToolbar(hdlgDandD, TOOLM_SETSTATE, pRow->idCommand,
                    fChosen ? CHECKED_ENABLED : TOOLSTATE_ENABLED);
    } else {
        tellToolbar(hdlgDandD, TOOLM_ENABLEBUTTON, pRow->idCommand, 0);
    }
}

void applyRow(HWND hdlgDandD, const XferWindowRecord* pRecord, const BusyRow* pRow, DWORD nType)
{
    bool fIdle = pRecord->fBusy == 0;
    switch (pRow->rule) {
    case BUSY_OFF:
        setPlain(hdlgDandD, pRow->idCommand, fIdle);
        break;
    case BUSY_OFF_PANES:
        setPlain(hdlgDandD, pRow->idCommand, fIdle && pRecord->nViewMode == 0);
        break;
    case BUSY_ON:
        setPlain(hdlgDandD, pRow->idCommand, !fIdle);
        break;
    case BUSY_OFF_TYPE:
    case BUSY_OFF_MODE:
        setGrouped(hdlgDandD, pRow, fIdle, isChosen(pRecord, pRow, nType));
        break;
    }
}

void showCursor(const XferWindowRecord* pRecord)
{
    SetCursor(pRecord->fBusy ? pRecord->hcurBusy
                             : LoadCursorA(nullptr, MAKEINTRESOURCEA(32512))); // IDC_ARROW
}

void focusCommandLine(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    HWND hwndCommandLine = GetDlgItem(hdlgDandD, IDC_DANDD_COMMANDLINE);
    if (!pRecord->fBusy && IsWindowVisible(hwndCommandLine) && pRecord->fFocusCommandLine) {
        SetFocus(hwndCommandLine);
    }
}

void endListChanges(XferWindowRecord* pRecord)
{
    if (pRecord->fListsChanged) {
        vXferDandDSetColumnWidth(pRecord, IDC_DANDD_LOCALFILES);
        vXferDandDSetColumnWidth(pRecord, IDC_DANDD_HOSTFILES);
    }
    panes::resumeDrawing(pRecord);
}

// Of the file types and of the modes one button starts checked.
void checkButtons(XferToolButton* pButtons, UINT idType, UINT idMode)
{
    for (size_t n = 0; n < ARRAYSIZE(BUTTONS); ++n) {
        if (pButtons[n].idCommand == idType || pButtons[n].idCommand == idMode) {
            pButtons[n].fsState = TOOLSTATE_CHECKED;
        }
    }
}

} // namespace

void vXferDandDInitToolbar(HWND hdlgDandD, LONG nViewMode, DWORD nType)
{
    XferToolButton buttons[ARRAYSIZE(BUTTONS)];
    toolbar::PictureSource bitmap = {g_hInstance, IDB_TOOLBAR};
    tellToolbar(hdlgDandD, TOOLM_ADDBITMAP, PICTURES, reinterpret_cast<LPARAM>(&bitmap));
    memcpy(buttons, BUTTONS, sizeof buttons);
    // The other mode's button: the command that sets the first mode then checks the right one.
    checkButtons(buttons, TYPES[nType - 1].idCommand,
                 nViewMode != 0 ? IDM_XFER_TWOPANE : IDM_XFER_COMMANDLINE);
    tellToolbar(hdlgDandD, TOOLM_ADDBUTTONS, ARRAYSIZE(buttons), reinterpret_cast<LPARAM>(buttons));
    vXferDandDSetFileTypeSelection(hdlgDandD, nType);
}

void commands::enablePaneCommands(HWND hdlgDandD, bool fEnabled)
{
    for (const BusyRow& row : BUSY_TABLE) {
        if (row.rule == BUSY_OFF_PANES) {
            setPlain(hdlgDandD, row.idCommand, fEnabled);
        }
    }
}

void KRHAULAPI vXferDandDSetFileTypeSelection(HWND hdlgDandD, DWORD nType)
{
    if (window::recordOf(hdlgDandD) == nullptr) {
        return;
    }
    for (const TypeRow& row : TYPES) {
        if (row.nType == nType) {
            tellToolbar(hdlgDandD, TOOLM_CHECKBUTTON, row.idCommand, 1);
        }
        CheckMenuItem(GetMenu(hdlgDandD), row.idCommand,
                      row.nType == nType ? MF_CHECKED : MF_UNCHECKED);
    }
}

int KRHAULAPI nXferDandDGetFileTypeSelection(HWND hdlgDandD)
{
    if (window::recordOf(hdlgDandD) == nullptr) {
        return 0;
    }
    for (const TypeRow& row : TYPES) {
        if (isChecked(hdlgDandD, row.idCommand)) {
            return int(row.nType);
        }
    }
    return XFERTYPE_AUTOMATIC;
}

void KRHAULAPI vXferDandDSetBusyState(HWND hdlgDandD, DWORD fBusy)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr || pRecord->fBusy == LONG(fBusy) || !panes::applyChanges(pRecord)) {
        return;
    }
    if (fBusy != 0) {
        pRecord->fFocusCommandLine = 1;
    } else {
        endListChanges(pRecord);
    }
    pRecord->fListsChanged = 0;
    pRecord->fBusy = LONG(fBusy);
    showCursor(pRecord);
    focusCommandLine(hdlgDandD, pRecord);
    // A change of focus can run the caller's code.
    if (!window::isAlive(hdlgDandD, pRecord)) {
        return;
    }
    auto nType = DWORD(nXferDandDGetFileTypeSelection(hdlgDandD));
    for (const BusyRow& row : BUSY_TABLE) {
        applyRow(hdlgDandD, pRecord, &row, nType);
    }
}
