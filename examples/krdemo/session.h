// The transfer window of the sample caller: its callbacks, and the three things that reach the
// caller through none of them, refresh, stop and close.
#ifndef KRDEMO_SESSION_H
#define KRDEMO_SESSION_H

#include "options.h"

// Opens the transfer window on the options' local folder and on their host. Gives false if there
// is no such folder or no window to be had. The host is connected to later.
bool openSession(const DemoOptions* pOptions, HWND hwndOwner);

// The transfer window; 0 once it has been closed.
HWND sessionWindow();

void closeSession();

#endif
