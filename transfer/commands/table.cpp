// The table of all commands, and those that only pass on to another room.
#include "transfer/commands/table.h"
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/help.h"

namespace {

using commands::Command;

void showHelp(const Command* pCommand)
{
    shared::showHelp(XferHelpOwner(pCommand->pRecord), XFERHELP_TRANSFER);
}

void searchHelp(const Command* pCommand)
{
    shared::searchHelp(XferHelpOwner(pCommand->pRecord));
}

// The dialogs have done their work by the time they close.
void makeDir(const Command* pCommand)
{
    dialogs::syncAndRun(pCommand->pRecord, dialogs::DLG_MAKEDIR);
}

void changeDir(const Command* pCommand)
{
    dialogs::syncAndRun(pCommand->pRecord, dialogs::DLG_CHANGEDIR);
}

void editConfirmations(const Command* pCommand)
{
    dialogs::run(pCommand->pRecord, dialogs::DLG_CONFIRM);
}

// The caller listens for it.
void stop(const Command* pCommand)
{
    SendMessageA(pCommand->hdlgDandD, WM_COMMAND, IDABORT, 0);
}

typedef void (*CommandProc)(const Command* pCommand);

// The notification of a control, or a key.
constexpr commands::CommandRow notice(WORD id, CommandProc pfnRun)
{
    return {id, pfnRun, commands::BUSY_LEAVES, commands::NO_PICTURE, commands::BUTTON_FOLLOWS};
}

constexpr commands::CommandRow menuItem(WORD id, CommandProc pfnRun,
                                        DWORD fsBusy = commands::BUSY_LEAVES)
{
    return {id, pfnRun, fsBusy, commands::NO_PICTURE, commands::BUTTON_FOLLOWS};
}

constexpr commands::CommandRow button(int iPicture, WORD id, CommandProc pfnRun, DWORD fsBusy,
                                      commands::ButtonGap gap = commands::BUTTON_FOLLOWS)
{
    return {id, pfnRun, fsBusy, iPicture, gap};
}

} // namespace

// In the order in which the busy state sets them.
const commands::CommandRow commands::COMMANDS[] = {
    button(0, IDM_XFER_TRANSFER, transferFiles, BUSY_OFF),
    button(1, IDM_XFER_RENAME, renameFile, BUSY_OFF),
    button(2, IDM_XFER_DELETE, deleteFiles, BUSY_OFF),
    button(3, IDM_XFER_MAKEDIR, makeDir, BUSY_OFF, BUTTON_STARTS_GROUP),
    button(4, IDM_XFER_REMOVEDIR, removeDir, BUSY_OFF),
    button(12, IDM_XFER_REFRESH, nullptr, BUSY_OFF_PANES, BUTTON_STARTS_GROUP),
    button(5, IDM_XFER_DETAILS, showDetails, BUSY_OFF | BUSY_OFF_PANES, BUTTON_STARTS_GROUP),
    button(6, IDM_XFER_VIEW, viewFiles, BUSY_OFF),
    button(7, IDM_XFER_TYPETEXT, chooseFileType, BUSY_OFF_TYPE, BUTTON_STARTS_GROUP),
    button(8, IDM_XFER_TYPEBINARY, chooseFileType, BUSY_OFF_TYPE),
    button(9, IDM_XFER_TYPEAUTO, chooseFileType, BUSY_OFF_TYPE),
    button(11, IDM_XFER_COMMANDLINE, showCommandLine, BUSY_OFF_MODE),
    button(10, IDM_XFER_TWOPANE, showTwoPanes, BUSY_OFF_MODE, BUTTON_STARTS_GROUP),
    button(13, IDM_XFER_STOP, stop, BUSY_ON, BUTTON_STARTS_GROUP),
    menuItem(IDM_XFER_CHANGEDIR, changeDir, BUSY_OFF_ITEM),
    button(14, IDM_XFER_HELP, showHelp, BUSY_LEAVES, BUTTON_STARTS_GROUP),
    menuItem(IDM_XFER_CONFIRM, editConfirmations),
    menuItem(IDM_XFER_COPY, copyLog),
    menuItem(IDM_XFER_SAVESELECTION, saveLogSelection),
    menuItem(IDM_XFER_SELECTALL, selectLog),
    menuItem(IDM_XFER_HELPSEARCH, searchHelp),
    notice(IDOK, enter),
    notice(IDCANCEL, escape),
    notice(IDC_DANDD_LOCALFILTER, localFilterChanged),
    notice(IDC_DANDD_HOSTFILTER, hostFilterChanged),
    notice(IDC_DANDD_LOCALDIRS, dirListNotified),
    notice(IDC_DANDD_HOSTDIRS, dirListNotified),
    notice(IDC_DANDD_LOCALFILES, localFilesNotified),
    notice(IDC_DANDD_HOSTFILES, hostFilesNotified),
    notice(IDC_DANDD_LOCALDRIVES, driveListNotified),
};

int fXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return 0;
    }
    Command command = {window::refOf(pRecord), hdlgDandD, pRecord, idCommand, hwndControl,
                       nNotification};
    for (const commands::CommandRow& row : commands::COMMANDS) {
        if (row.idCommand == idCommand && row.pfnRun != nullptr) {
            row.pfnRun(&command);
            return 1;
        }
    }
    return 0;
}
