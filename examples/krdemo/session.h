// The transfer window of the sample caller: its callbacks, and the three things that reach the
// caller through none of them, refresh, stop and close.
#ifndef KRDEMO_SESSION_H
#define KRDEMO_SESSION_H

#include "host.h"
#include "options.h"

// Opens the transfer window on the options' local folder and a host that is opened on the
// other. Gives false if one of them can't be had.
bool openSession(const DemoOptions* pOptions, const Host* pHost, HWND hwndOwner);

// The transfer window; 0 once it has been closed.
HWND sessionWindow();

// Work that goes on beside the messages: called for each turn of the loop.
void continueSession();

void closeSession();

#endif
