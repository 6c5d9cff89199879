// The commands of the transfer window. commands.cpp has the table of all of them; those that
// act on a selection or write a file have a source file of their own.
#ifndef TRANSFER_COMMANDS_H
#define TRANSFER_COMMANDS_H

#include "panes.h"

// A WM_COMMAND. The record is that of the window at its start: a command that shows a box or
// makes a callback asks fXferDandDIsAlive before it goes on.
struct XferCommand {
    HWND hdlgDandD;
    XferWindowRecord* pRecord;
    WORD idCommand;
    HWND hwndControl;
    WORD nNotification;
};

// selection.cpp: they act on selected rows in two-pane mode.
void vXferDandDRemoveDirs(const XferCommand* pCommand);
void vXferDandDTransfer(const XferCommand* pCommand);
void vXferDandDDelete(const XferCommand* pCommand);
void vXferDandDRename(const XferCommand* pCommand);
void vXferDandDView(const XferCommand* pCommand);
void vXferDandDDetails(const XferCommand* pCommand);
void vXferDandDSumSelection(const XferCommand* pCommand);

// savelog.cpp
void vXferDandDSaveLog(const XferCommand* pCommand);

#endif
