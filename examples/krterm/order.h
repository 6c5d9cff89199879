// What the user wants to be transferred, and what the host is told to make it do its part.
#ifndef KRTERM_ORDER_H
#define KRTERM_ORDER_H

#include "modem.h"

constexpr int CCH_COMMAND = 128;
constexpr DWORD CCH_FILES = 16384;

struct TransferOrder {
    bool sending;
    ModemProtocol protocol;
    char hostName[MAX_PATH];   // as the command names it
    char local[MAX_PATH];      // receiving: the file, or the folder for YMODEM
    char command[CCH_COMMAND]; // host command string; empty tells the host nothing
    int lineEnd;
    char files[CCH_FILES]; // sending: full paths, each with its NUL, and one more behind them
};

// Asks the user. The last command of each direction and protocol comes back next time.
bool askForOrder(HWND owner, bool sending, TransferOrder* order);

// Sends the command to the host.
void tellHost(const TransferOrder* order, void (*put)(const BYTE* bytes, DWORD count));

const char* protocolName(ModemProtocol protocol);
const char* lastPart(const char* path);

#endif
