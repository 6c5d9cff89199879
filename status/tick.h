// The once-a-second tick of a status window.
#ifndef STATUS_TICK_H
#define STATUS_TICK_H

#include <windows.h>

// Turns the values in the window's slot into figures. Returns 0, or -1 if it has no slot.
int XferStatTick(HWND hdlgStat);

#endif
