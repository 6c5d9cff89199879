#include "telnet.h"

#include <string.h>

namespace {

constexpr BYTE IAC = 255, DONT = 254, DO = 253, WONT = 252, WILL = 251, SB = 250, SE = 240;
constexpr BYTE TYPE_IS = 0, TYPE_SEND = 1;
constexpr BYTE CODES[OPTIONS] = {0, 1, 3, 24, 31};
constexpr char TERMINAL[] = "xterm-256color";

// What we let the host do, what we do ourselves, and what we ask for as soon as the host speaks
// TELNET: eight bits both ways, or files wouldn't arrive as they are.
constexpr bool LET[OPTIONS] = {true, true, true, false, false};
constexpr bool CAN_DO[OPTIONS] = {true, false, true, true, true};
constexpr bool ASKED[OPTIONS] = {true, false, false, false, false};

enum { STATE_DATA, STATE_COMMAND, STATE_OPTION, STATE_SUB, STATE_SUB_COMMAND };

int indexOf(BYTE bCode)
{
    for (int n = 0; n < OPTIONS; ++n) {
        if (CODES[n] == bCode) {
            return n;
        }
    }
    return OPTIONS;
}

void putCommand(Telnet* pTelnet, BYTE bCommand, BYTE bCode)
{
    BYTE ab[] = {IAC, bCommand, bCode};
    pTelnet->pfnPut(ab, sizeof ab);
}

// An IAC inside is doubled.
void putSub(Telnet* pTelnet, BYTE bCode, const BYTE* pb, DWORD cb)
{
    BYTE ab[64] = {IAC, SB, bCode};
    DWORD cbOut = 3;
    for (DWORD n = 0; n < cb && cbOut < sizeof ab - 4; ++n) {
        ab[cbOut++] = pb[n];
        if (pb[n] == IAC) {
            ab[cbOut++] = IAC;
        }
    }
    ab[cbOut++] = IAC;
    ab[cbOut++] = SE;
    pTelnet->pfnPut(ab, cbOut);
}

void putSize(Telnet* pTelnet)
{
    BYTE ab[] = {HIBYTE(pTelnet->cColumns), LOBYTE(pTelnet->cColumns), HIBYTE(pTelnet->cRows),
                 LOBYTE(pTelnet->cRows)};
    putSub(pTelnet, CODES[OPTION_SIZE], ab, sizeof ab);
}

void putType(Telnet* pTelnet)
{
    BYTE ab[sizeof TERMINAL] = {TYPE_IS};
    memcpy(ab + 1, TERMINAL, sizeof TERMINAL - 1);
    putSub(pTelnet, CODES[OPTION_TYPE], ab, sizeof ab);
}

void greet(Telnet* pTelnet)
{
    pTelnet->fSpoken = true;
    for (int n = 0; n < OPTIONS; ++n) {
        if (ASKED[n]) {
            pTelnet->afHostAsked[n] = pTelnet->afOursAsked[n] = true;
            putCommand(pTelnet, DO, CODES[n]);
            putCommand(pTelnet, WILL, CODES[n]);
        }
    }
}

// Only a change is answered, and what we have asked for isn't answered at all: two sides that
// confirm each other would never end.
void setOption(bool* pfInUse, bool* pfAsked, bool fWanted, bool* pfAnswer)
{
    *pfAnswer = *pfInUse != fWanted && !*pfAsked;
    *pfInUse = fWanted;
    *pfAsked = false;
}

void onOption(Telnet* pTelnet, BYTE bCode)
{
    int n = indexOf(bCode);
    bool fHost = pTelnet->bCommand == WILL || pTelnet->bCommand == WONT;
    bool fOn = pTelnet->bCommand == WILL || pTelnet->bCommand == DO;
    bool fAnswer = fOn;
    bool fAllowed = n < OPTIONS && (fHost ? LET[n] : CAN_DO[n]);
    if (fAllowed && fHost) {
        setOption(&pTelnet->afHost[n], &pTelnet->afHostAsked[n], fOn, &fAnswer);
    } else if (fAllowed) {
        setOption(&pTelnet->afOurs[n], &pTelnet->afOursAsked[n], fOn, &fAnswer);
    }
    if (fAnswer) {
        fOn = fOn && fAllowed;
        putCommand(pTelnet, fHost ? (fOn ? DO : DONT) : (fOn ? WILL : WONT), bCode);
    }
    if (n == OPTION_SIZE && fOn && fAnswer) {
        putSize(pTelnet);
    }
}

void onSub(Telnet* pTelnet)
{
    if (pTelnet->cbSub >= 2 && pTelnet->abSub[0] == CODES[OPTION_TYPE] &&
        pTelnet->abSub[1] == TYPE_SEND && pTelnet->afOurs[OPTION_TYPE]) {
        putType(pTelnet);
    }
}

void takeSubByte(Telnet* pTelnet, BYTE b)
{
    if (pTelnet->cbSub < sizeof pTelnet->abSub) {
        pTelnet->abSub[pTelnet->cbSub++] = b;
    }
}

void onCommand(Telnet* pTelnet, BYTE b)
{
    pTelnet->nState = b >= WILL ? STATE_OPTION : b == SB ? STATE_SUB : STATE_DATA;
    pTelnet->bCommand = b;
    pTelnet->cbSub = 0;
    if (!pTelnet->fSpoken) {
        greet(pTelnet);
    }
}

// Whether the byte belongs to the data.
bool takeData(Telnet* pTelnet, BYTE b)
{
    // Without binary a CR comes with an LF or a NUL behind it.
    bool fFiller = pTelnet->fReturn && b == 0;
    pTelnet->fReturn = pTelnet->fSpoken && !pTelnet->afHost[OPTION_BINARY] && b == '\r';
    return !fFiller;
}

// Whether the byte belongs to the data.
bool takeByte(Telnet* pTelnet, BYTE b)
{
    switch (pTelnet->nState) {
    case STATE_COMMAND:
        if (b == IAC) {
            pTelnet->nState = STATE_DATA;
            return takeData(pTelnet, b);
        }
        onCommand(pTelnet, b);
        return false;
    case STATE_OPTION:
        pTelnet->nState = STATE_DATA;
        onOption(pTelnet, b);
        return false;
    case STATE_SUB:
        if (b == IAC) {
            pTelnet->nState = STATE_SUB_COMMAND;
        } else {
            takeSubByte(pTelnet, b);
        }
        return false;
    case STATE_SUB_COMMAND:
        pTelnet->nState = b == IAC ? STATE_SUB : STATE_DATA;
        if (b == IAC) {
            takeSubByte(pTelnet, b);
        } else if (b == SE) {
            onSub(pTelnet);
        }
        return false;
    default:
        pTelnet->nState = b == IAC ? STATE_COMMAND : STATE_DATA;
        return b != IAC && takeData(pTelnet, b);
    }
}

// How many bytes there are that need nothing done to them.
DWORD plainBytes(const Telnet* pTelnet, const BYTE* pb, DWORD cb)
{
    DWORD n = 0;
    while (n < cb && pb[n] != IAC && (pb[n] != '\r' || pTelnet->afOurs[OPTION_BINARY])) {
        ++n;
    }
    return n;
}

} // namespace

void openTelnet(Telnet* pTelnet, void (*pfnPut)(const BYTE* pb, DWORD cb), int cColumns, int cRows)
{
    *pTelnet = {};
    pTelnet->pfnPut = pfnPut;
    pTelnet->cColumns = cColumns;
    pTelnet->cRows = cRows;
}

DWORD receiveTelnet(Telnet* pTelnet, BYTE* pb, DWORD cb)
{
    DWORD cbData = 0;
    for (DWORD n = 0; n < cb; ++n) {
        if (takeByte(pTelnet, pb[n])) {
            pb[cbData++] = pb[n];
        }
    }
    return cbData;
}

void sendTelnet(Telnet* pTelnet, const BYTE* pb, DWORD cb)
{
    constexpr BYTE QUOTED_IAC[] = {IAC, IAC};
    constexpr BYTE QUOTED_RETURN[] = {'\r', 0};
    if (!pTelnet->fSpoken) {
        pTelnet->pfnPut(pb, cb);
        return;
    }
    while (cb > 0) {
        DWORD cbPlain = plainBytes(pTelnet, pb, cb);
        if (cbPlain > 0) {
            pTelnet->pfnPut(pb, cbPlain);
        }
        if (cbPlain < cb) {
            pTelnet->pfnPut(pb[cbPlain] == IAC ? QUOTED_IAC : QUOTED_RETURN, 2);
            ++cbPlain;
        }
        pb += cbPlain;
        cb -= cbPlain;
    }
}

void resizeTelnet(Telnet* pTelnet, int cColumns, int cRows)
{
    bool fChanged = cColumns != pTelnet->cColumns || cRows != pTelnet->cRows;
    pTelnet->cColumns = cColumns;
    pTelnet->cRows = cRows;
    if (fChanged && pTelnet->afOurs[OPTION_SIZE]) {
        putSize(pTelnet);
    }
}
