// The commands of the transfer window, one file each or one for a few that belong together, and
// what they share with each other and with the window. The exported calls are in krhaul.h.
#ifndef TRANSFER_COMMANDS_COMMANDS_H
#define TRANSFER_COMMANDS_COMMANDS_H

#include "transfer/window/record.h"

// Handles WM_COMMAND. Returns 1 if the command is known, which nobody reads.
int fXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification);
void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode);
void vXferDandDInitToolbar(HWND hdlgDandD, LONG nViewMode, DWORD nType);

namespace commands {

// A WM_COMMAND. The window exists when the command starts; after a box, a dialog or a callback a
// command calls window::isAlive before it continues.
struct Command {
    window::Ref ref;
    HWND hdlgDandD;
    XferWindowRecord* pRecord;
    WORD idCommand;
    HWND hwndControl;
    WORD nNotification;
};

// Act on selected rows in two-pane mode; without a selection, most of them open a dialog.
void transferFiles(const Command* pCommand); // transfer.cpp
void deleteFiles(const Command* pCommand);   // delete.cpp
void removeDir(const Command* pCommand);     // removedir.cpp
void renameFile(const Command* pCommand);    // rename.cpp
void viewFiles(const Command* pCommand);     // view.cpp
void showDetails(const Command* pCommand);

// keys.cpp
void enter(const Command* pCommand);
void escape(const Command* pCommand);

// Notifications of the lists and of the lines above them: lists.cpp, drive.cpp, sum.cpp
void localFilterChanged(const Command* pCommand);
void hostFilterChanged(const Command* pCommand);
void dirListNotified(const Command* pCommand);
void localFilesNotified(const Command* pCommand);
void hostFilesNotified(const Command* pCommand);
void driveListNotified(const Command* pCommand);
void showSelectionSum(const Command* pCommand);

void chooseFileType(const Command* pCommand); // filetype.cpp

// viewmode.cpp
void showCommandLine(const Command* pCommand);
void showTwoPanes(const Command* pCommand);

// log.cpp, savelog.cpp
void copyLog(const Command* pCommand);
void selectLog(const Command* pCommand);
void saveLogSelection(const Command* pCommand);

// The command of a file type or a view mode.
WORD commandOfType(DWORD nType);    // filetype.cpp
WORD commandOfMode(LONG nViewMode); // viewmode.cpp

// busy.cpp: enables or disables the commands that are available only when idle and in two-pane
// mode.
void enablePaneCommands(HWND hdlgDandD, bool fEnabled);

} // namespace commands

#endif
