// TELNET as a state machine that is fed with bytes: what the host sends, and what goes to it.
#ifndef KRTERM_TELNET_H
#define KRTERM_TELNET_H

#include <windows.h>

enum TelnetOption { OPTION_BINARY, OPTION_ECHO, OPTION_GOAHEAD, OPTION_TYPE, OPTION_SIZE, OPTIONS };

struct Telnet {
    void (*put)(const BYTE* bytes, DWORD count); // to the host
    int columns, rows;
    int position;                                // where in a command the next byte stands
    BYTE command;                                // WILL, WONT, DO or DONT
    bool spoken;                                 // the host has shown that it speaks TELNET
    bool afterReturn;                            // a CR has come, which may bring a NUL along
    bool host[OPTIONS], ours[OPTIONS];           // in use, in each direction
    bool hostAsked[OPTIONS], oursAsked[OPTIONS]; // asked for by us, and not answered
    BYTE sub[8];                                 // beginning of a subnegotiation
    DWORD subLength;
};

void openTelnet(Telnet* telnet, void (*put)(const BYTE* bytes, DWORD count), int columns, int rows);

// Takes the commands out of what the host has sent, in place. Returns how many bytes remain.
DWORD receiveTelnet(Telnet* telnet, BYTE* bytes, DWORD count);

// Sends bytes to the program on the host.
void sendTelnet(Telnet* telnet, const BYTE* bytes, DWORD count);

void resizeTelnet(Telnet* telnet, int columns, int rows);

#endif
