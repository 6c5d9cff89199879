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

// As TAKERS has them.
enum { STATE_DATA, STATE_COMMAND, STATE_OPTION, STATE_SUB, STATE_SUB_COMMAND };

int indexOf(BYTE code)
{
    for (int n = 0; n < OPTIONS; ++n) {
        if (CODES[n] == code) {
            return n;
        }
    }
    return OPTIONS;
}

void putCommand(Telnet* telnet, BYTE command, BYTE code)
{
    BYTE bytes[] = {IAC, command, code};
    telnet->put(bytes, sizeof bytes);
}

// An IAC inside is doubled.
void putSub(Telnet* telnet, BYTE code, const BYTE* bytes, DWORD count)
{
    BYTE quoted[64] = {IAC, SB, code};
    DWORD length = 3;
    for (DWORD n = 0; n < count && length < sizeof quoted - 4; ++n) {
        quoted[length++] = bytes[n];
        if (bytes[n] == IAC) {
            quoted[length++] = IAC;
        }
    }
    quoted[length++] = IAC;
    quoted[length++] = SE;
    telnet->put(quoted, length);
}

void putSize(Telnet* telnet)
{
    BYTE bytes[] = {HIBYTE(telnet->columns), LOBYTE(telnet->columns), HIBYTE(telnet->rows),
                    LOBYTE(telnet->rows)};
    putSub(telnet, CODES[OPTION_SIZE], bytes, sizeof bytes);
}

void putType(Telnet* telnet)
{
    BYTE bytes[sizeof TERMINAL] = {TYPE_IS};
    memcpy(bytes + 1, TERMINAL, sizeof TERMINAL - 1);
    putSub(telnet, CODES[OPTION_TYPE], bytes, sizeof bytes);
}

void greet(Telnet* telnet)
{
    telnet->spoken = true;
    for (int n = 0; n < OPTIONS; ++n) {
        if (ASKED[n]) {
            telnet->hostAsked[n] = telnet->oursAsked[n] = true;
            putCommand(telnet, DO, CODES[n]);
            putCommand(telnet, WILL, CODES[n]);
        }
    }
}

// Only a change is answered, and what we have asked for isn't answered at all: two sides that
// confirm each other would never end.
void setOption(bool* inUse, bool* asked, bool wanted, bool* answer)
{
    *answer = *inUse != wanted && !*asked;
    *inUse = wanted;
    *asked = false;
}

void onOption(Telnet* telnet, BYTE code)
{
    int n = indexOf(code);
    bool byHost = telnet->command == WILL || telnet->command == WONT;
    bool on = telnet->command == WILL || telnet->command == DO;
    bool answer = on;
    bool allowed = n < OPTIONS && (byHost ? LET[n] : CAN_DO[n]);
    if (allowed && byHost) {
        setOption(&telnet->host[n], &telnet->hostAsked[n], on, &answer);
    } else if (allowed) {
        setOption(&telnet->ours[n], &telnet->oursAsked[n], on, &answer);
    }
    if (answer) {
        on = on && allowed;
        putCommand(telnet, byHost ? (on ? DO : DONT) : (on ? WILL : WONT), code);
    }
    if (n == OPTION_SIZE && on && answer) {
        putSize(telnet);
    }
}

void onSub(Telnet* telnet)
{
    if (telnet->subLength >= 2 && telnet->sub[0] == CODES[OPTION_TYPE] &&
        telnet->sub[1] == TYPE_SEND && telnet->ours[OPTION_TYPE]) {
        putType(telnet);
    }
}

void takeSubByte(Telnet* telnet, BYTE byte)
{
    if (telnet->subLength < sizeof telnet->sub) {
        telnet->sub[telnet->subLength++] = byte;
    }
}

void onCommand(Telnet* telnet, BYTE byte)
{
    telnet->position = byte >= WILL ? STATE_OPTION : byte == SB ? STATE_SUB : STATE_DATA;
    telnet->command = byte;
    telnet->subLength = 0;
    if (!telnet->spoken) {
        greet(telnet);
    }
}

// Whether the byte belongs to the data.
bool takeData(Telnet* telnet, BYTE byte)
{
    // Without binary a CR comes with an LF or a NUL behind it.
    bool filler = telnet->afterReturn && byte == 0;
    telnet->afterReturn = telnet->spoken && !telnet->host[OPTION_BINARY] && byte == '\r';
    return !filler;
}

bool takeCommandByte(Telnet* telnet, BYTE byte)
{
    if (byte == IAC) {
        telnet->position = STATE_DATA;
        return takeData(telnet, byte);
    }
    onCommand(telnet, byte);
    return false;
}

bool takeOption(Telnet* telnet, BYTE byte)
{
    telnet->position = STATE_DATA;
    onOption(telnet, byte);
    return false;
}

bool takeSubData(Telnet* telnet, BYTE byte)
{
    if (byte == IAC) {
        telnet->position = STATE_SUB_COMMAND;
    } else {
        takeSubByte(telnet, byte);
    }
    return false;
}

bool takeSubCommand(Telnet* telnet, BYTE byte)
{
    telnet->position = byte == IAC ? STATE_SUB : STATE_DATA;
    if (byte == IAC) {
        takeSubByte(telnet, byte);
    } else if (byte == SE) {
        onSub(telnet);
    }
    return false;
}

bool takePlainByte(Telnet* telnet, BYTE byte)
{
    telnet->position = byte == IAC ? STATE_COMMAND : STATE_DATA;
    return byte != IAC && takeData(telnet, byte);
}

// By position. They tell whether the byte belongs to the data.
constexpr bool (*TAKERS[])(Telnet* telnet, BYTE byte) = {takePlainByte, takeCommandByte, takeOption,
                                                         takeSubData, takeSubCommand};

// How many bytes there are that need nothing done to them.
DWORD plainBytes(const Telnet* telnet, const BYTE* bytes, DWORD count)
{
    DWORD n = 0;
    while (n < count && bytes[n] != IAC && (bytes[n] != '\r' || telnet->ours[OPTION_BINARY])) {
        ++n;
    }
    return n;
}

} // namespace

void openTelnet(Telnet* telnet, void (*put)(const BYTE* bytes, DWORD count), int columns, int rows)
{
    *telnet = {};
    telnet->put = put;
    telnet->columns = columns;
    telnet->rows = rows;
}

DWORD receiveTelnet(Telnet* telnet, BYTE* bytes, DWORD count)
{
    DWORD dataSize = 0;
    for (DWORD n = 0; n < count; ++n) {
        if (TAKERS[telnet->position](telnet, bytes[n])) {
            bytes[dataSize++] = bytes[n];
        }
    }
    return dataSize;
}

void sendTelnet(Telnet* telnet, const BYTE* bytes, DWORD count)
{
    constexpr BYTE QUOTED_IAC[] = {IAC, IAC};
    constexpr BYTE QUOTED_RETURN[] = {'\r', 0};
    if (!telnet->spoken) {
        telnet->put(bytes, count);
        return;
    }
    while (count > 0) {
        DWORD plain = plainBytes(telnet, bytes, count);
        if (plain > 0) {
            telnet->put(bytes, plain);
        }
        if (plain < count) {
            telnet->put(bytes[plain] == IAC ? QUOTED_IAC : QUOTED_RETURN, 2);
            ++plain;
        }
        bytes += plain;
        count -= plain;
    }
}

void resizeTelnet(Telnet* telnet, int columns, int rows)
{
    bool changed = columns != telnet->columns || rows != telnet->rows;
    telnet->columns = columns;
    telnet->rows = rows;
    if (changed && telnet->ours[OPTION_SIZE]) {
        putSize(telnet);
    }
}
