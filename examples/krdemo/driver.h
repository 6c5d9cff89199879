// A user who works the transfer window by himself: real mouse and keyboard input from a thread
// of its own, pictures on the way, and a look at the disk after each step.
#ifndef KRDEMO_DRIVER_H
#define KRDEMO_DRIVER_H

#include "options.h"

// The local folder has to hold what scripts/demo puts there.
void startDriver(const DemoOptions* pOptions);

// Waits for the end. Gives the number of steps that failed.
int endDriver();

#endif
