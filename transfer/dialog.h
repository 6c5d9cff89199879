// The transfer window's frame: its dialog procedure and initialisation, and what the parts of
// the window offer one another. Each group is one source file.
#ifndef TRANSFER_DIALOG_H
#define TRANSFER_DIALOG_H

#include "record.h"

// The window posts it to itself: lists that are held back are to be drawn again.
constexpr UINT WM_XFER_SHOWLISTS = 0x0519;

// dialog.cpp
INT_PTR CALLBACK fDlgXferDandDProc(HWND hdlgDandD, UINT uMessage, WPARAM wParam, LPARAM lParam);

// init.cpp: all of WM_INITDIALOG. Gives 1.
int fXferDandDInitDialog(HWND hdlgDandD, XferWindowRecord* pRecord);

// commands.cpp: WM_COMMAND, by a table of commands.
void vXferDandDCommand(HWND hdlgDandD, WORD idCommand, HWND hwndControl, WORD nNotification);
void vXferDandDSetViewMode(HWND hdlgDandD, XferWindowRecord* pRecord, LONG nNewMode);

// busy.cpp: the toolbar's buttons, the busy state and the file type.
void vXferDandDInitToolbar(HWND hdlgDandD, LONG nViewMode, DWORD nType);

// For each of these commands: on only when idle and in two-pane mode.
void vXferDandDEnablePaneCommands(HWND hdlgDandD, bool fEnabled);

// strip.cpp: the message strip and the thermometer.
void vXferDandDInitStrip(HWND hdlgDandD, XferWindowRecord* pRecord);
void vXferDandDStripRect(HWND hdlgDandD, XferWindowRecord* pRecord);
void vXferDandDPaintStrip(HWND hdlgDandD);

// hints.cpp: what the strip says of menus and buttons.
void vXferDandDMenuHint(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam);
void vXferDandDButtonHint(HWND hdlgDandD, XferWindowRecord* pRecord, UINT idString);

#endif
