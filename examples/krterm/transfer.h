// A transfer as the user sees it: the modem's machine between the line and the files, and the
// status window over it.
#ifndef KRTERM_TRANSFER_H
#define KRTERM_TRANSFER_H

#include "order.h"

struct TransferEvents {
    void (*put)(const BYTE* bytes, DWORD count);   // to the host
    void (*stray)(const BYTE* bytes, DWORD count); // text of the host, for the screen
};

// The owner gets the messages of the status window, and question, a free message of its own,
// for which it calls askUser(). Returns false if one is running or there is no status window.
bool startTransfer(const TransferOrder* order, HWND owner, UINT question,
                   const TransferEvents* events);
bool isTransferring();

// The status window, which stays after the end until the user closes it; 0 if there is none.
HWND transferWindow();

// Bytes of the host: returns how many were the transfer's. The others are for the screen.
DWORD feedTransfer(const BYTE* bytes, DWORD count);

// Some ten times a second.
void tickTransfer();

// Asks whether a file that is there may be replaced.
void askUser();

// Ends the transfer at once and closes its window.
void closeTransfer();

// How the last one ended, its errors and retries.
const Modem* lastTransfer();

#endif
