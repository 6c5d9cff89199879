// A transfer that copies real files, a chunk at a time, and shows each in a status window.
#ifndef KRDEMO_TRANSFER_H
#define KRDEMO_TRANSFER_H

#include "options.h"

enum TransferResult { TRANSFER_MORE, TRANSFER_DONE, TRANSFER_STOPPED, TRANSFER_FAILED };

// Starts copying all files of options.szFrom to options.szTo, for the owner of the status
// window. Gives false if there is nothing to copy or no window to be had.
bool startTransfer(const DemoOptions* pOptions, HWND hwndOwner);

// Moves as much as the line takes since the last call. Called from the message loop, which
// therefore stays alive. After any result but TRANSFER_MORE the transfer is over; nothing is
// left of a file that didn't arrive whole. After TRANSFER_DONE the window stays to be read.
TransferResult continueTransfer();

// Once the transfer is over: tells whether the user has done with its window, and closes it.
bool transferWindowIsDismissed();
void closeTransferWindow();

// The status window of the transfer, or 0.
HWND transferWindow();

// The number of the file in hand, from 1.
DWORD transferFileNumber();

// The name and size of a file that is complete, told before the next one starts.
typedef void (*FileDoneProc)(const char* pszName, DWORD cbSize);
void tellFilesDone(FileDoneProc pfnDone);

#endif
