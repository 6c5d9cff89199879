// TELNET as a state machine that is fed with bytes: what the host sends, and what goes to it.
#ifndef KRTERM_TELNET_H
#define KRTERM_TELNET_H

#include <windows.h>

enum TelnetOption { OPTION_BINARY, OPTION_ECHO, OPTION_GOAHEAD, OPTION_TYPE, OPTION_SIZE, OPTIONS };

struct Telnet {
    void (*pfnPut)(const BYTE* pb, DWORD cb); // to the host
    int cColumns, cRows;
    int nState;                                      // where in a command the next byte stands
    BYTE bCommand;                                   // WILL, WONT, DO or DONT
    bool fSpoken;                                    // the host has shown that it speaks TELNET
    bool fReturn;                                    // a CR has come, which may bring a NUL along
    bool afHost[OPTIONS], afOurs[OPTIONS];           // in use, in each direction
    bool afHostAsked[OPTIONS], afOursAsked[OPTIONS]; // asked for by us, and not answered
    BYTE abSub[8];                                   // beginning of a subnegotiation
    DWORD cbSub;
};

void openTelnet(Telnet* pTelnet, void (*pfnPut)(const BYTE* pb, DWORD cb), int cColumns, int cRows);

// Takes the commands out of what the host has sent, in place. Returns how many bytes remain.
DWORD receiveTelnet(Telnet* pTelnet, BYTE* pb, DWORD cb);

// Sends bytes to the program on the host.
void sendTelnet(Telnet* pTelnet, const BYTE* pb, DWORD cb);

void resizeTelnet(Telnet* pTelnet, int cColumns, int cRows);

#endif
