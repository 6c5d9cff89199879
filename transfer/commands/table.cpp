// The commands of the transfer window: menu items, buttons, and notifications of its controls.
#include "transfer/commands/table.h"
#include "dialogs/open.h"
#include "layout/layout.h"
#include "resources/ids.h"
#include "shared/help.h"
#include "shared/krutils.h"
#include "toolbar/toolbar.h"
#include "transfer/commands/busy.h"
#include "transfer/frame/strip.h"
#include "transfer/panes/pathline.h"

#include <direct.h>
#include <string.h>

namespace {

constexpr LONG LETTER_BEFORE_A = 96; // of the lower case letters

// Enter means something else to each control.
void enter(const commands::Command* pCommand)
{
    fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, GetFocus());
}

// Escape closes nothing; it only clears the command line.
void escape(const commands::Command* pCommand)
{
    HWND hwndCommandLine = GetDlgItem(pCommand->hdlgDandD, IDC_DANDD_COMMANDLINE);
    if (GetFocus() == hwndCommandLine) {
        SetWindowTextA(hwndCommandLine, "");
    }
}

void help(const commands::Command* pCommand)
{
    shared::showHelp(XferHelpOwner(pCommand->pRecord), XFERHELP_TRANSFER);
}

void helpSearch(const commands::Command* pCommand)
{
    shared::searchHelp(XferHelpOwner(pCommand->pRecord));
}

void typeText(const commands::Command* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_TEXT);
}

void typeBinary(const commands::Command* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_BINARY);
}

void typeAutomatic(const commands::Command* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_AUTOMATIC);
}

void commandLineMode(const commands::Command* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_COMMANDLINE);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void twoPaneMode(const commands::Command* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_TWOPANE);
    vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void copyLog(const commands::Command* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, WM_COPY, 0, 0);
}

void selectLog(const commands::Command* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, EM_SETSEL, 0, -1);
}

// A quick search by prefix: the list scrolls, and the filter itself waits for Enter.
void scrollToPrefix(const commands::Command* pCommand, int idList)
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

void localFilterLine(const commands::Command* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_LOCALFILES);
}

void hostFilterLine(const commands::Command* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_HOSTFILES);
}

void dirList(const commands::Command* pCommand)
{
    if (pCommand->nNotification == LBN_DBLCLK) {
        fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, pCommand->hwndControl);
    }
}

// A selection exists on one side only.
void unselect(const commands::Command* pCommand, int idList)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_SETSEL, FALSE, -1);
}

void hostFileList(const commands::Command* pCommand)
{
    unselect(pCommand, IDC_DANDD_LOCALFILES);
    if (pCommand->nNotification == LBN_SELCHANGE && !frame::isStripTextKept()) {
        vXferDandDDisplayDILText(pCommand->hdlgDandD, "");
    }
}

void localFileList(const commands::Command* pCommand)
{
    unselect(pCommand, IDC_DANDD_HOSTFILES);
    if (pCommand->nNotification == LBN_SELCHANGE && !frame::isStripTextKept()) {
        commands::showSelectionSum(pCommand);
    }
}

void driveList(const commands::Command* pCommand)
{
    char szText[XFER_NAME_SIZE] = "";
    XferWindowRecord* pRecord = pCommand->pRecord;
    if (pCommand->nNotification != CBN_SELCHANGE && pCommand->nNotification != CBN_SELENDOK) {
        return;
    }
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_LOCALDRIVES, WM_GETTEXT, sizeof szText,
                        reinterpret_cast<LPARAM>(szText));
    _strlwr(szText);
    LONG nDrive = szText[0] - LETTER_BEFORE_A;
    if (_chdrive(nDrive) == 0) {
        if (window::recordAction(pRecord, KRACTION_DRIVE_CHANGED, szText)) {
            pRecord->nLocalDrive = nDrive;
            vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
        }
    } else {
        window::loadString(pRecord, IDS_DRIVE_FAILED, szText, sizeof szText);
        vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
    }
}

// What a dialog has to do, it has done when it closes.
void makeDir(const commands::Command* pCommand)
{
    dialogs::askForNames(pCommand->hdlgDandD, pCommand->pRecord, dialogs::DLG_MAKEDIR);
}

void changeDir(const commands::Command* pCommand)
{
    dialogs::askForNames(pCommand->hdlgDandD, pCommand->pRecord, dialogs::DLG_CHANGEDIR);
}

void confirmSettings(const commands::Command* pCommand)
{
    dialogs::run(pCommand->pRecord, dialogs::DLG_CONFIRM);
}

// The caller listens for it.
void stop(const commands::Command* pCommand)
{
    SendMessageA(pCommand->hdlgDandD, WM_COMMAND, IDABORT, 0);
}

struct CommandRow {
    WORD idCommand;
    void (*pfnRun)(const commands::Command*);
};

// Refresh is the caller's: the window does nothing at it.
constexpr CommandRow COMMANDS[] = {
    {IDOK, enter},
    {IDCANCEL, escape},
    {IDM_XFER_REMOVEDIR, commands::removeDir},
    {IDM_XFER_HELP, help},
    {IDM_XFER_TRANSFER, commands::transferSelection},
    {IDC_DANDD_LOCALFILTER, localFilterLine},
    {IDC_DANDD_HOSTDIRS, dirList},
    {IDC_DANDD_HOSTFILES, hostFileList},
    {IDC_DANDD_HOSTFILTER, hostFilterLine},
    {IDC_DANDD_LOCALDRIVES, driveList},
    {IDM_XFER_DELETE, commands::deleteSelection},
    {IDM_XFER_MAKEDIR, makeDir},
    {IDM_XFER_RENAME, commands::renameFile},
    {IDC_DANDD_LOCALFILES, localFileList},
    {IDC_DANDD_LOCALDIRS, dirList},
    {IDM_XFER_CONFIRM, confirmSettings},
    {IDM_XFER_TYPEAUTO, typeAutomatic},
    {IDM_XFER_TYPETEXT, typeText},
    {IDM_XFER_TYPEBINARY, typeBinary},
    {IDM_XFER_COMMANDLINE, commandLineMode},
    {IDM_XFER_TWOPANE, twoPaneMode},
    {IDM_XFER_VIEW, commands::viewSelection},
    {IDM_XFER_DETAILS, commands::showDetails},
    {IDM_XFER_CHANGEDIR, changeDir},
    {IDM_XFER_COPY, copyLog},
    {IDM_XFER_SAVESELECTION, commands::saveLogSelection},
    {IDM_XFER_SELECTALL, selectLog},
    {IDM_XFER_HELPSEARCH, helpSearch},
    {IDM_XFER_STOP, stop},
};

void checkMode(HWND hdlgDandD, LONG nMode)
{
    UINT idOn = nMode != 0 ? IDM_XFER_COMMANDLINE : IDM_XFER_TWOPANE;
    UINT idOff = nMode != 0 ? IDM_XFER_TWOPANE : IDM_XFER_COMMANDLINE;
    HMENU hmenu = GetMenu(hdlgDandD);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_TOOLBAR, TOOLM_CHECKBUTTON, idOn, 1);
    CheckMenuItem(hmenu, idOn, MF_CHECKED);
    CheckMenuItem(hmenu, idOff, MF_UNCHECKED);
}

} // namespace

int fXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification)
{
    commands::Command command = {hdlgDandD, window::recordOf(hdlgDandD), idCommand, hwndControl,
                                 nNotification};
    for (const CommandRow& row : COMMANDS) {
        if (row.idCommand == idCommand && command.pRecord != nullptr) {
            row.pfnRun(&command);
            return 1;
        }
    }
    return 0;
}

void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode)
{
    if ((pRecord->nViewMode != 0) == (nNewMode != 0)) {
        return;
    }
    checkMode(hdlgDandD, nNewMode);
    commands::enablePaneCommands(hdlgDandD, pRecord->fBusy == 0 && nNewMode == 0);
    if (pRecord->callbacks.pfnViewModeChanged != nullptr) {
        pRecord->callbacks.pfnViewModeChanged(pRecord->dwCallerData, 0, 0, DWORD(nNewMode));
        if (!window::isAlive(hdlgDandD, pRecord)) {
            return;
        }
    }
    vXferDandDApplyLayout(hdlgDandD, &pRecord->layout, nNewMode != 0);
    // A control that is disabled gives up the focus, which can run the caller's code.
    if (window::isAlive(hdlgDandD, pRecord)) {
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
    HWND hwndFilter = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALFILTER);
    SetFocus(hwndFilter);
    SendMessageA(hwndFilter, EM_SETSEL, 0, -1);
    SendMessageA(hwndFilter, EM_SCROLLCARET, 0, 0);
}

void KRHAULAPI vXferDandDSetTitle(HWND hdlgDandD, const char* pszTitle)
{
    if (window::recordOf(hdlgDandD) != nullptr) {
        SendMessageA(hdlgDandD, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszTitle));
    }
}
