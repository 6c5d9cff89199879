// Copying all files of a folder with a status window alone, as a protocol does that has no
// transfer window.
#ifndef KRDEMO_COPY_H
#define KRDEMO_COPY_H

#include "options.h"

// Starts copying the first folder's files into the second. Gives false if there is nothing to
// copy or no window is to be had.
bool startCopy(const DemoOptions* pOptions, HWND hwndMain, HWND hwndLog);

// A turn of the message loop.
void continueCopy();

// Ends a copy that is still running, and leaves nothing unfinished.
void endCopy();

bool hasCopiedAll();

// The whole percentage of the file in hand has changed.
void copyPercent(HWND hwndMain, WPARAM nPercent);

#endif
