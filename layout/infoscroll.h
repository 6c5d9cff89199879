// How far the log of the transfer window is scrolled. A line count of 0 means the number of lines
// in the control.
#ifndef LAYOUT_INFOSCROLL_H
#define LAYOUT_INFOSCROLL_H

#include <windows.h>

// Lines that fit into the log.
int nXferDandDInfoVisibleLines(HWND hdlgDandD);

// The first line of the last page.
int nXferDandDInfoLastTopLine(HWND hdlgDandD, int cLines);

// Returns 1 if the end of the log is in view and the log doesn't have the focus.
int fXferDandDInfoAtEnd(HWND hdlgDandD);

// Scrolls to the last page.
void vXferDandDInfoScrollToEnd(HWND hdlgDandD, int cLines);

#endif
