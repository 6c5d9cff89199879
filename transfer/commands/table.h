// The commands of the transfer window: the table of all of them, and their functions.
#ifndef TRANSFER_COMMANDS_TABLE_H
#define TRANSFER_COMMANDS_TABLE_H

#include "transfer/window/record.h"

// Handles WM_COMMAND. Returns 1 if the command is known, which nobody reads.
int fXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification);
void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode);

namespace commands {

// A WM_COMMAND. The record is that of the window when the command starts: after a box or a
// callback a command calls window::isAlive before it continues.
struct Command {
    HWND hdlgDandD;
    XferWindowRecord* pRecord;
    WORD idCommand;
    HWND hwndControl;
    WORD nNotification;
};

// selection.cpp: they act on selected rows in two-pane mode.
void removeDir(const Command* pCommand);
void transferSelection(const Command* pCommand);
void deleteSelection(const Command* pCommand);
void renameFile(const Command* pCommand);
void viewSelection(const Command* pCommand);
void showDetails(const Command* pCommand);
void showSelectionSum(const Command* pCommand);

// savelog.cpp
void saveLogSelection(const Command* pCommand);

} // namespace commands

#endif
