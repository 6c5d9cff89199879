// The commands of the transfer window: menu items, buttons, and notifications of its controls.
#include "commands.h"
#include "dialog.h"
#include "../dialogs/dialogs.h"
#include "../resources/ids.h"
#include "../shared/help.h"
#include "../shared/krutils.h"
#include "../toolbar/toolbar.h"

#include <direct.h>
#include <string.h>

namespace {

constexpr LONG LETTER_BEFORE_A = 96; // of the lower case letters

bool s_fKeepStripText;

// Enter means something else to each control.
void enter(const XferCommand* pCommand)
{
    fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, GetFocus());
}

// Escape closes nothing; it only clears the command line.
void escape(const XferCommand* pCommand)
{
    HWND hwndCommandLine = GetDlgItem(pCommand->hdlgDandD, IDC_DANDD_COMMANDLINE);
    if (GetFocus() == hwndCommandLine) {
        SetWindowTextA(hwndCommandLine, "");
    }
}

void help(const XferCommand* pCommand)
{
    vXferShowHelp(XferHelpOwner(pCommand->pRecord), XFERHELP_TRANSFER);
}

void helpSearch(const XferCommand* pCommand)
{
    vXferSearchHelp(XferHelpOwner(pCommand->pRecord));
}

void typeText(const XferCommand* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_TEXT);
}

void typeBinary(const XferCommand* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_BINARY);
}

void typeAutomatic(const XferCommand* pCommand)
{
    vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, XFERTYPE_AUTOMATIC);
}

void commandLineMode(const XferCommand* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_COMMANDLINE);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void twoPaneMode(const XferCommand* pCommand)
{
    vXferDandDSetViewMode(pCommand->hdlgDandD, pCommand->pRecord, XFERVIEW_TWOPANE);
    vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
    vXferDandDSetFocus(pCommand->hdlgDandD);
}

void copyLog(const XferCommand* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, WM_COPY, 0, 0);
}

void selectLog(const XferCommand* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, EM_SETSEL, 0, -1);
}

// A quick search by prefix: the list scrolls, and the filter itself waits for Enter.
void scrollToPrefix(const XferCommand* pCommand, int idList)
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

void localFilterLine(const XferCommand* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_LOCALFILES);
}

void hostFilterLine(const XferCommand* pCommand)
{
    scrollToPrefix(pCommand, IDC_DANDD_HOSTFILES);
}

void dirList(const XferCommand* pCommand)
{
    if (pCommand->nNotification == LBN_DBLCLK) {
        fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, pCommand->hwndControl);
    }
}

// A selection exists on one side only.
void unselect(const XferCommand* pCommand, int idList)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_SETSEL, FALSE, -1);
}

void hostFileList(const XferCommand* pCommand)
{
    unselect(pCommand, IDC_DANDD_LOCALFILES);
    if (pCommand->nNotification == LBN_SELCHANGE && !s_fKeepStripText) {
        vXferDandDDisplayDILText(pCommand->hdlgDandD, "");
    }
}

void localFileList(const XferCommand* pCommand)
{
    unselect(pCommand, IDC_DANDD_HOSTFILES);
    if (pCommand->nNotification == LBN_SELCHANGE && !s_fKeepStripText) {
        vXferDandDSumSelection(pCommand);
    }
}

void driveList(const XferCommand* pCommand)
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
        if (fXferDandDRecordAction(pRecord, KRACTION_DRIVE_CHANGED, szText)) {
            pRecord->nLocalDrive = nDrive;
            vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
        }
    } else {
        vXferDandDLoadString(pRecord, IDS_DRIVE_FAILED, szText, sizeof szText);
        vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
    }
}

// What a dialog has to do, it has done when it closes.
void makeDir(const XferCommand* pCommand)
{
    fXferDandDAskForNames(pCommand->hdlgDandD, pCommand->pRecord, XFERDLG_MAKEDIR);
}

void changeDir(const XferCommand* pCommand)
{
    fXferDandDAskForNames(pCommand->hdlgDandD, pCommand->pRecord, XFERDLG_CHANGEDIR);
}

void confirmSettings(const XferCommand* pCommand)
{
    fXferDandDRunDialog(pCommand->pRecord, XFERDLG_CONFIRM);
}

// The caller listens for it.
void stop(const XferCommand* pCommand)
{
    SendMessageA(pCommand->hdlgDandD, WM_COMMAND, IDABORT, 0);
}

struct CommandRow {
    WORD idCommand;
    void (*pfnRun)(const XferCommand*);
};

// Refresh is the caller's: the window does nothing at it.
constexpr CommandRow COMMANDS[] = {
    {IDOK, enter},
    {IDCANCEL, escape},
    {IDM_XFER_REMOVEDIR, vXferDandDRemoveDirs},
    {IDM_XFER_HELP, help},
    {IDM_XFER_TRANSFER, vXferDandDTransfer},
    {IDC_DANDD_LOCALFILTER, localFilterLine},
    {IDC_DANDD_HOSTDIRS, dirList},
    {IDC_DANDD_HOSTFILES, hostFileList},
    {IDC_DANDD_HOSTFILTER, hostFilterLine},
    {IDC_DANDD_LOCALDRIVES, driveList},
    {IDM_XFER_DELETE, vXferDandDDelete},
    {IDM_XFER_MAKEDIR, makeDir},
    {IDM_XFER_RENAME, vXferDandDRename},
    {IDC_DANDD_LOCALFILES, localFileList},
    {IDC_DANDD_LOCALDIRS, dirList},
    {IDM_XFER_CONFIRM, confirmSettings},
    {IDM_XFER_TYPEAUTO, typeAutomatic},
    {IDM_XFER_TYPETEXT, typeText},
    {IDM_XFER_TYPEBINARY, typeBinary},
    {IDM_XFER_COMMANDLINE, commandLineMode},
    {IDM_XFER_TWOPANE, twoPaneMode},
    {IDM_XFER_VIEW, vXferDandDView},
    {IDM_XFER_DETAILS, vXferDandDDetails},
    {IDM_XFER_CHANGEDIR, changeDir},
    {IDM_XFER_COPY, copyLog},
    {IDM_XFER_SAVESELECTION, vXferDandDSaveLog},
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

void vXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification)
{
    XferCommand command = {hdlgDandD, pXferDandDRecord(hdlgDandD), idCommand, hwndControl,
                           nNotification};
    for (const CommandRow& row : COMMANDS) {
        if (row.idCommand == idCommand && command.pRecord != nullptr) {
            row.pfnRun(&command);
            return;
        }
    }
}

void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode)
{
    if ((pRecord->nViewMode != 0) == (nNewMode != 0)) {
        return;
    }
    checkMode(hdlgDandD, nNewMode);
    vXferDandDEnablePaneCommands(hdlgDandD, pRecord->fBusy == 0 && nNewMode == 0);
    if (pRecord->callbacks.pfnViewModeChanged != nullptr) {
        pRecord->callbacks.pfnViewModeChanged(pRecord->dwCallerData, 0, 0, DWORD(nNewMode));
        if (!fXferDandDIsAlive(hdlgDandD, pRecord)) {
            return;
        }
    }
    vXferDandDApplyLayout(hdlgDandD, &pRecord->layout, nNewMode != 0);
    // A control that is disabled gives up the focus, which can run the caller's code.
    if (fXferDandDIsAlive(hdlgDandD, pRecord)) {
        pRecord->nViewMode = nNewMode;
    }
}

void vXferDandDKeepStripText(bool fKeep)
{
    s_fKeepStripText = fKeep;
}

void KRHAULAPI vXferDandDSetFocus(HWND hdlgDandD)
{
    const XferWindowRecord* pRecord = pXferDandDRecord(hdlgDandD);
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
    if (pXferDandDRecord(hdlgDandD) != nullptr) {
        SendMessageA(hdlgDandD, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszTitle));
    }
}
