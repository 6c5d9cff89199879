// What the user wants to be transferred, and what the host is told to make it do its part.
#ifndef KRTERM_ORDER_H
#define KRTERM_ORDER_H

#include "modem.h"

constexpr int CCH_COMMAND = 128;
constexpr DWORD CCH_FILES = 16384;

struct TransferOrder {
    bool fSend;
    ModemProtocol nProtocol;
    char szHostName[MAX_PATH];   // as the command names it
    char szLocal[MAX_PATH];      // receiving: the file, or the folder for YMODEM
    char szCommand[CCH_COMMAND]; // host command string; empty tells the host nothing
    int nLineEnd;
    char szzFiles[CCH_FILES]; // sending: full paths, each with its NUL, and one more behind them
};

// Asks the user. The last command of each direction and protocol comes back next time.
bool askForOrder(HWND hwndOwner, bool fSend, TransferOrder* pOrder);

// Sends the command to the host.
void tellHost(const TransferOrder* pOrder, void (*pfnPut)(const BYTE* pb, DWORD cb));

const char* protocolName(ModemProtocol nProtocol);
const char* lastPart(const char* pszPath);

#endif
