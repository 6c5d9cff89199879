#include "transfer/commands/toolbar.h"
#include "resources/ids.h"
#include "shared/module.h"
#include "toolbar/toolbar.h"
#include "transfer/commands/table.h"

namespace {

constexpr UINT ITEM_OFF = MF_GRAYED | MF_DISABLED;
constexpr int PICTURES = 15;
constexpr int MOST_BUTTONS = 2 * PICTURES;
constexpr DWORD CHECK_GROUPS = commands::BUSY_OFF_TYPE | commands::BUSY_OFF_MODE;

constexpr XferToolButton SEPARATOR = {-1, IDC_DANDD_TOOLBAR, TOOLSTATE_ENABLED,
                                      TOOLSTYLE_SEPARATOR};

// The window starts busy: all that starts a host operation is off.
XferToolButton buttonOf(const commands::CommandRow* pRow)
{
    XferToolButton button = {};
    button.iPicture = pRow->iPicture;
    button.idCommand = pRow->idCommand;
    if ((pRow->fsBusy & CHECK_GROUPS) != 0) {
        button.fsState = TOOLSTATE_INDETERMINATE;
        button.fsStyle = TOOLSTYLE_CHECK | TOOLSTYLE_GROUP;
    } else if (pRow->fsBusy == commands::BUSY_LEAVES || pRow->fsBusy == commands::BUSY_ON) {
        button.fsState = TOOLSTATE_ENABLED;
    }
    return button;
}

const commands::CommandRow* rowOfPicture(int iPicture)
{
    const commands::CommandRow* pRow = commands::COMMANDS;
    while (pRow->iPicture != iPicture) {
        ++pRow;
    }
    return pRow;
}

// Returns the number of rows. The buttons of idType and idMode start checked.
int buildRows(XferToolButton (&rows)[MOST_BUTTONS], WORD idType, WORD idMode)
{
    int cRows = 0;
    for (int iPicture = 0; iPicture < PICTURES; ++iPicture) {
        const commands::CommandRow* pRow = rowOfPicture(iPicture);
        if (pRow->gap == commands::BUTTON_STARTS_GROUP) {
            rows[cRows++] = SEPARATOR;
        }
        rows[cRows] = buttonOf(pRow);
        if (pRow->idCommand == idType || pRow->idCommand == idMode) {
            rows[cRows].fsState = TOOLSTATE_CHECKED;
        }
        ++cRows;
    }
    return cRows;
}

} // namespace

LRESULT commands::sendToToolbar(HWND hdlgDandD, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return SendDlgItemMessageA(hdlgDandD, IDC_DANDD_TOOLBAR, uMessage, wParam, lParam);
}

bool commands::isButtonChecked(HWND hdlgDandD, WORD idCommand)
{
    LRESULT nChecked = sendToToolbar(hdlgDandD, TOOLM_ISCHECKED, idCommand, 0);
    return nChecked != 0 && nChecked != -1;
}

void commands::enableButton(HWND hdlgDandD, WORD idCommand, bool fEnabled)
{
    sendToToolbar(hdlgDandD, TOOLM_ENABLEBUTTON, idCommand, fEnabled);
}

void commands::enableItem(HWND hdlgDandD, WORD idCommand, bool fEnabled)
{
    EnableMenuItem(GetMenu(hdlgDandD), idCommand, fEnabled ? MF_ENABLED : ITEM_OFF);
}

void commands::checkItem(HWND hdlgDandD, WORD idCommand, bool fChecked)
{
    CheckMenuItem(GetMenu(hdlgDandD), idCommand, fChecked ? MF_CHECKED : MF_UNCHECKED);
}

void vXferDandDInitToolbar(HWND hdlgDandD, LONG nViewMode, DWORD nType)
{
    XferToolButton rows[MOST_BUTTONS];
    toolbar::PictureSource bitmap = {g_hInstance, IDB_TOOLBAR};
    commands::sendToToolbar(hdlgDandD, TOOLM_ADDBITMAP, PICTURES,
                            reinterpret_cast<LPARAM>(&bitmap));
    // The other mode's button: the command that sets the first mode then checks the right one.
    int cRows =
        buildRows(rows, commands::commandOfType(nType), commands::commandOfMode(nViewMode == 0));
    commands::sendToToolbar(hdlgDandD, TOOLM_ADDBUTTONS, WPARAM(cRows),
                            reinterpret_cast<LPARAM>(rows));
    vXferDandDSetFileTypeSelection(hdlgDandD, nType);
}
