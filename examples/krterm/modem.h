// XMODEM and YMODEM as a state machine that is fed with bytes and with the time. It has no
// thread, no window and no clock. receiver.cpp and sender.cpp have the states of each direction.
#ifndef KRTERM_MODEM_H
#define KRTERM_MODEM_H

#include <windows.h>

enum ModemProtocol { XMODEM_CHECKSUM, XMODEM_CRC, XMODEM_1K, YMODEM, MODEM_PROTOCOLS };

constexpr DWORD MODEM_BLOCK = 1024;
constexpr size_t MODEM_STATUS = 80;

// What YMODEM tells of a file.
struct ModemFile {
    char name[MODEM_BLOCK + 1]; // as the other side has it
    DWORD size;
    DWORD time; // seconds since 1970, 0 if it isn't known
    bool sized; // false: the size isn't known
};

enum ModemAnswer {
    ANSWER_TAKE,
    ANSWER_DROP, // receive it without keeping it: the protocols can't leave a file out
    ANSWER_STOP, // it can't be kept, and none behind it could
    ANSWER_LATER // by answerModem()
};

enum ModemEnd { END_WHOLE, END_DROPPED, END_BROKEN };

// Whom the machine works for. Texts that are returned say what went wrong, null means nothing.
struct ModemWork {
    void (*put)(void* context, const BYTE* bytes, DWORD count); // to the line
    // Text of the host before the first block.
    void (*stray)(void* context, BYTE byte);
    // Sending: the next file, or false; and its bytes, fewer than asked for only at its end.
    bool (*next)(void* context, ModemFile* file);
    const char* (*read)(void* context, BYTE* bytes, DWORD count, DWORD* read);
    // Receiving. XMODEM says nothing of the file.
    ModemAnswer (*begin)(void* context, const ModemFile* file);
    const char* (*write)(void* context, const BYTE* bytes, DWORD count);
    // The end of each file that was begun.
    const char* (*end)(void* context, const ModemFile* file, ModemEnd how);
};

struct Modem;

struct ModemState {
    void (*onByte)(Modem* modem, BYTE byte);
    void (*onSilence)(Modem* modem); // nothing has come for patience
    DWORD patience;                  // milliseconds
    bool listening;                  // the host would hear a cancel at once
};

enum ModemResult { RESULT_RUNNING, RESULT_DONE, RESULT_CANCELLED, RESULT_FAILED };

struct Modem {
    const ModemWork* work;
    void* context;
    ModemProtocol protocol;
    const ModemState* state;
    DWORD now, since, begun, patience;
    ModemResult result;
    char status[MODEM_STATUS]; // what happened last, or how it ended
    DWORD errors, retries;     // of the whole transfer
    DWORD faults;              // in a row
    DWORD done;                // of this file
    DWORD fileCount;           // that have come or gone whole
    ModemFile file;
    bool fileOpen, drop, cancelled, skip, withCrc;
    bool started;   // the host speaks the protocol
    bool ending;    // receiver: the host has told of the end of the file once
    bool discard;   // the rest of what has just come is stale
    BYTE number;    // of the block that is due
    BYTE startByte; // sender: what the host may have begun with
    DWORD cancels;
    DWORD letters; // sender: that stand in the place of the last answer
    BYTE block[MODEM_BLOCK + 5];
    DWORD blockSize, blockHave; // whole size of the block, and what is there of it
    DWORD dataSize;             // sender: bytes of the file in the block
};

void receiveByModem(Modem* modem, ModemProtocol protocol, const ModemWork* work, void* context,
                    DWORD now);
void sendByModem(Modem* modem, ModemProtocol protocol, const ModemWork* work, void* context,
                 DWORD now);

// Bytes from the line. Returns how many of them belong to the transfer; the others are for
// whatever comes behind it.
DWORD feedModem(Modem* modem, const BYTE* bytes, DWORD count, DWORD now);

// The time, some ten times a second.
void tickModem(Modem* modem, DWORD now);

// The late answer of begin.
void answerModem(Modem* modem, ModemAnswer answer, DWORD now);

// Ends the transfer at the next place where the host listens, mostly within a second; when
// called again, at once.
void cancelModem(Modem* modem, DWORD now);

// The same at once, for a connection that is closed next.
void abortModem(Modem* modem);

// Goes on with the next file: a file that is sent ends early, one that is received isn't kept.
void skipFile(Modem* modem);

// ---- what both directions share

constexpr BYTE SOH = 1, STX = 2, EOT = 4, ACK = 6, NAK = 0x15, CAN = 0x18, SUB = 0x1A;
constexpr BYTE ASK_CRC = 'C';
constexpr DWORD SMALL_BLOCK = 128;
constexpr DWORD MAX_FAULTS = 10;

void enterState(Modem* modem, const ModemState* state);
void putByte(Modem* modem, BYTE byte);

// Notes what has happened, behind the number of the block that is due.
void say(Modem* modem, const char* what);

// Notes an error. Returns false if it was one too many and the transfer has ended.
bool noteError(Modem* modem, const char* what);

// Ends the transfer, with a null status on what was said last, and tells the host unless it has
// ended by itself.
void endModem(Modem* modem, ModemResult result, const char* status, bool tellHost);

// Whether this is the second of the bytes with which the host cancels; the transfer has ended.
bool isHostCancel(Modem* modem, BYTE byte);

// The check of a block's data: two bytes with a CRC, else one. Returns their number.
DWORD checkOf(const Modem* modem, const BYTE* bytes, DWORD count, BYTE* check);

void endFile(Modem* modem, ModemEnd how);

#endif
