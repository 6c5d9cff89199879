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
    char szName[MODEM_BLOCK + 1]; // as the other side has it
    DWORD cbSize;
    DWORD dwTime; // seconds since 1970, 0 if it isn't known
    bool fSized;  // false: the size isn't known
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
    void (*pfnPut)(void* pContext, const BYTE* pb, DWORD cb); // to the line
    // Text of the host before the first block.
    void (*pfnStray)(void* pContext, BYTE b);
    // Sending: the next file, or false; and its bytes, fewer than asked for only at its end.
    bool (*pfnNext)(void* pContext, ModemFile* pFile);
    const char* (*pfnRead)(void* pContext, BYTE* pb, DWORD cb, DWORD* pcbRead);
    // Receiving. XMODEM says nothing of the file.
    ModemAnswer (*pfnBegin)(void* pContext, const ModemFile* pFile);
    const char* (*pfnWrite)(void* pContext, const BYTE* pb, DWORD cb);
    // The end of each file that was begun.
    const char* (*pfnEnd)(void* pContext, const ModemFile* pFile, ModemEnd nEnd);
};

struct Modem;

struct ModemState {
    void (*pfnByte)(Modem* pModem, BYTE b);
    void (*pfnSilence)(Modem* pModem); // nothing has come for dwPatience
    DWORD dwPatience;                  // milliseconds
    bool fListening;                   // the host would hear a cancel at once
};

enum ModemResult { RESULT_RUNNING, RESULT_DONE, RESULT_CANCELLED, RESULT_FAILED };

struct Modem {
    const ModemWork* pWork;
    void* pContext;
    ModemProtocol nProtocol;
    const ModemState* pState;
    DWORD dwNow, dwSince, dwBegun, dwPatience;
    ModemResult nResult;
    char szStatus[MODEM_STATUS]; // what happened last, or how it ended
    DWORD cErrors, cRetries;     // of the whole transfer
    DWORD cFaults;               // in a row
    DWORD cbDone;                // of this file
    DWORD cFiles;                // that have come or gone whole
    ModemFile file;
    bool fFile, fDrop, fCancel, fSkip, fCrc;
    bool fStarted; // the host speaks the protocol
    bool fEnding;  // receiver: the host has told of the end of the file once
    bool fDiscard; // the rest of what has just come is stale
    BYTE bNumber;  // of the block that is due
    BYTE bStart;   // sender: what the host may have begun with
    DWORD cCancels;
    BYTE abBlock[MODEM_BLOCK + 5];
    DWORD cbBlock, cbHave; // whole size of the block, and what is there of it
    DWORD cbData;          // sender: bytes of the file in the block
};

void receiveByModem(Modem* pModem, ModemProtocol nProtocol, const ModemWork* pWork, void* pContext,
                    DWORD dwNow);
void sendByModem(Modem* pModem, ModemProtocol nProtocol, const ModemWork* pWork, void* pContext,
                 DWORD dwNow);

// Bytes from the line. Returns how many of them belong to the transfer; the others are for
// whatever comes behind it.
DWORD feedModem(Modem* pModem, const BYTE* pb, DWORD cb, DWORD dwNow);

// The time, some ten times a second.
void tickModem(Modem* pModem, DWORD dwNow);

// The late answer of pfnBegin.
void answerModem(Modem* pModem, ModemAnswer nAnswer, DWORD dwNow);

// Ends the transfer at the next place where the host listens, mostly within a second; when
// called again, at once.
void cancelModem(Modem* pModem, DWORD dwNow);

// The same at once, for a connection that is closed next.
void abortModem(Modem* pModem);

// Goes on with the next file: a file that is sent ends early, one that is received isn't kept.
void skipFile(Modem* pModem);

// ---- what both directions share

constexpr BYTE SOH = 1, STX = 2, EOT = 4, ACK = 6, NAK = 0x15, CAN = 0x18, SUB = 0x1A;
constexpr BYTE ASK_CRC = 'C';
constexpr DWORD SMALL_BLOCK = 128;
constexpr DWORD MAX_FAULTS = 10;

void enterState(Modem* pModem, const ModemState* pState);
void putByte(Modem* pModem, BYTE b);

// Notes what has happened, behind the number of the block that is due.
void say(Modem* pModem, const char* pszWhat);

// Notes an error. Returns false if it was one too many and the transfer has ended.
bool noteError(Modem* pModem, const char* pszWhat);

// Ends the transfer, with a null status on what was said last, and tells the host unless it has
// ended by itself.
void endModem(Modem* pModem, ModemResult nResult, const char* pszStatus, bool fTellHost);

// Whether this is the second of the bytes with which the host cancels; the transfer has ended.
bool isHostCancel(Modem* pModem, BYTE b);

// The check of a block's data: two bytes with a CRC, else one. Returns their number.
DWORD checkOf(const Modem* pModem, const BYTE* pb, DWORD cb, BYTE* pbCheck);

void endFile(Modem* pModem, ModemEnd nEnd);

#endif
