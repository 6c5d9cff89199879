// The sending side: blocks go out, and the host answers each.
#include "modem.h"

#include <string.h>

namespace {

// What the host begins with could as well be a letter of a text, unless nothing follows it.
constexpr DWORD START_MS = 200;
constexpr DWORD MAX_START_MS = 60000;
constexpr DWORD ANSWER_MS = 15000; // later than a receiver asks again
constexpr DWORD ASK_MS = 3000;
// Some hosts ask, and only then throw away what has come before.
constexpr DWORD SETTLE_MS = 50;
// An early "C" behind block 0 was on its way before it.
constexpr DWORD STALE_MS = 1000;
// Letters in the place of the last answer are those of a shell.
constexpr DWORD SHELL_LETTERS = 2;
constexpr DWORD SHELL_MS = 500;

void onStartByte(Modem* modem, BYTE byte);
void onStartSilence(Modem* modem);
void onInfoAnswer(Modem* modem, BYTE byte);
void onDataAnswer(Modem* modem, BYTE byte);
void onEndAnswer(Modem* modem, BYTE byte);
void onLastAnswer(Modem* modem, BYTE byte);
void onNoAnswer(Modem* modem);
void onAsking(Modem* modem, BYTE byte);
void sendData(Modem* modem);
void sendInfo(Modem* modem);
void onShellByte(Modem* modem, BYTE byte);
void onShellSilence(Modem* modem);

// The host's program may be about to start, and wouldn't hear a cancel.
constexpr ModemState START = {onStartByte, onStartSilence, START_MS, false};
constexpr ModemState INFO = {onInfoAnswer, onNoAnswer, ANSWER_MS, true}; // block 0 is out
constexpr ModemState GO = {onAsking, sendData, ASK_MS, true};            // and was taken
constexpr ModemState DATA = {onDataAnswer, onNoAnswer, ANSWER_MS, true}; // a block is out
constexpr ModemState END = {onEndAnswer, onNoAnswer, ANSWER_MS, true};   // the end of a file is
constexpr ModemState NEXT = {onAsking, sendInfo, ASK_MS, true};          // and was taken
constexpr ModemState LAST = {onLastAnswer, onNoAnswer, ANSWER_MS, true}; // the end of all is out
constexpr ModemState SHELL = {onShellByte, onShellSilence, SHELL_MS, true};

void putBlock(Modem* modem)
{
    modem->work->put(modem->context, modem->block, modem->blockSize);
}

// Makes the block that is due of the data that lies in it.
void makeBlock(Modem* modem, DWORD dataSize, BYTE fill)
{
    DWORD count = dataSize > SMALL_BLOCK ? MODEM_BLOCK : SMALL_BLOCK;
    memset(modem->block + 3 + dataSize, fill, count - dataSize);
    modem->block[0] = count == MODEM_BLOCK ? STX : SOH;
    modem->block[1] = modem->number;
    modem->block[2] = BYTE(~modem->number);
    modem->blockSize =
        3 + count + checkOf(modem, modem->block + 3, count, modem->block + 3 + count);
    modem->blockHave = modem->blockSize; // nothing is awaited of it
    modem->dataSize = dataSize;
}

void sendEnd(Modem* modem)
{
    modem->block[0] = EOT;
    modem->blockSize = modem->blockHave = 1;
    modem->letters = 0;
    putBlock(modem);
    enterState(modem, &END);
}

// In front of the next block what has come before it is stale.
void sendData(Modem* modem)
{
    DWORD read = 0;
    DWORD most = modem->protocol >= XMODEM_1K ? MODEM_BLOCK : SMALL_BLOCK;
    const char* problem =
        modem->skip ? nullptr : modem->work->read(modem->context, modem->block + 3, most, &read);
    modem->discard = true;
    if (problem != nullptr) {
        endModem(modem, RESULT_FAILED, problem, true);
    } else if (read == 0) {
        sendEnd(modem);
    } else {
        makeBlock(modem, read, SUB);
        putBlock(modem);
        enterState(modem, &DATA);
    }
}

// ---- block 0

DWORD writeFileInfo(const ModemFile* file, BYTE* bytes)
{
    constexpr DWORD CCH_NUMBERS = 40;
    char octal[16] = {};
    char* digits = octal + sizeof octal - 1;
    DWORD time = file->time;
    do {
        *--digits = char('0' + (time & 7));
        time >>= 3;
    } while (time != 0);
    auto block = reinterpret_cast<char*>(bytes);
    lstrcpynA(block, file->name, MODEM_BLOCK - CCH_NUMBERS);
    size_t nameLength = strlen(block) + 1;
    wsprintfA(block + nameLength, "%lu %s 100644", file->size, digits);
    return DWORD(nameLength + strlen(block + nameLength) + 1);
}

bool nextFile(Modem* modem)
{
    modem->file = {};
    modem->done = 0;
    modem->skip = false;
    modem->fileOpen = modem->work->next(modem->context, &modem->file);
    return modem->fileOpen;
}

void sendInfo(Modem* modem)
{
    bool more = nextFile(modem);
    modem->number = 0;
    makeBlock(modem, more ? writeFileInfo(&modem->file, modem->block + 3) : 0, 0);
    modem->dataSize = 0;
    modem->letters = 0;
    putBlock(modem);
    enterState(modem, more ? &INFO : &LAST);
}

void beginFile(Modem* modem)
{
    modem->started = true;
    modem->withCrc = modem->startByte == ASK_CRC;
    if (modem->protocol == YMODEM) {
        sendInfo(modem);
    } else if (nextFile(modem)) {
        modem->number = 1;
        sendData(modem);
    } else {
        endModem(modem, RESULT_FAILED, "The file can't be read", true);
    }
}

// ---- what the host says

void onStartByte(Modem* modem, BYTE byte)
{
    if (isHostCancel(modem, byte)) {
        return;
    }
    if (modem->startByte != 0 && modem->startByte != byte) {
        modem->work->stray(modem->context, modem->startByte);
    }
    bool starts = byte == ASK_CRC || byte == NAK;
    modem->startByte = starts ? byte : BYTE(0);
    modem->since = modem->now;
    if (!starts && byte != CAN) {
        modem->work->stray(modem->context, byte);
    }
}

void onStartSilence(Modem* modem)
{
    if (modem->cancelled) {
        abortModem(modem);
    } else if (modem->startByte != 0) {
        beginFile(modem);
    } else if (modem->now - modem->begun >= MAX_START_MS) {
        endModem(modem, RESULT_FAILED, "Given up: the host doesn't ask for the file", true);
    }
}

void sendAgain(Modem* modem, const char* why)
{
    if (noteError(modem, why)) {
        ++modem->retries;
        putBlock(modem);
        enterState(modem, modem->state);
        modem->discard = true;
    }
}

// Up to the first block that it has taken, a host refuses one in the way that it asks for it.
bool isLate(const Modem* modem, BYTE byte)
{
    return byte == ASK_CRC && modem->done == 0 && modem->now - modem->since >= STALE_MS;
}

// Whether the host has taken what is out. If it wants it again, it gets it.
bool isTaken(Modem* modem, BYTE byte)
{
    if (isHostCancel(modem, byte) || byte == CAN) {
        return false;
    }
    if (byte == NAK || isLate(modem, byte)) {
        sendAgain(modem, "the host wants it again");
    } else if (byte == ACK) {
        modem->faults = 0;
    } else if (byte != ASK_CRC) {
        ++modem->errors;
        say(modem, "noise instead of an answer");
    }
    return byte == ACK;
}

void onInfoAnswer(Modem* modem, BYTE byte)
{
    if (isTaken(modem, byte)) {
        modem->number = 1;
        enterState(modem, &GO);
    }
}

// What is due is sent in a moment.
void onAsking(Modem* modem, BYTE byte)
{
    if (!isHostCancel(modem, byte) && (byte == ASK_CRC || byte == NAK)) {
        modem->since = modem->now;
        modem->patience = SETTLE_MS;
    }
}

// A host can end without its answer getting through, but its shell is heard then. To say the end
// of a file once more to that would end the shell.
bool takeText(Modem* modem, BYTE byte)
{
    if (byte == ACK || byte == NAK || byte == CAN || byte == ASK_CRC) {
        return false;
    }
    modem->work->stray(modem->context, byte);
    if (++modem->letters == SHELL_LETTERS) {
        enterState(modem, &SHELL);
    }
    return true;
}

void onShellByte(Modem* modem, BYTE byte)
{
    modem->since = modem->now;
    modem->work->stray(modem->context, byte);
}

void onShellSilence(Modem* modem)
{
    endFile(modem, modem->skip ? END_DROPPED : END_WHOLE);
    endModem(modem, RESULT_DONE, "The host didn't confirm the end", false);
}

void onDataAnswer(Modem* modem, BYTE byte)
{
    if (isTaken(modem, byte)) {
        modem->done += modem->dataSize;
        say(modem, "sent");
        ++modem->number;
        sendData(modem);
    }
}

void onEndAnswer(Modem* modem, BYTE byte)
{
    bool last = modem->protocol != YMODEM;
    if ((last && takeText(modem, byte)) || !isTaken(modem, byte)) {
        return;
    }
    endFile(modem, modem->skip ? END_DROPPED : END_WHOLE);
    if (last) {
        endModem(modem, RESULT_DONE, nullptr, false);
    } else {
        enterState(modem, &NEXT);
    }
}

void onLastAnswer(Modem* modem, BYTE byte)
{
    if (!takeText(modem, byte) && isTaken(modem, byte)) {
        endModem(modem, RESULT_DONE, nullptr, false);
    }
}

void onNoAnswer(Modem* modem)
{
    sendAgain(modem, "no answer");
}

} // namespace

void sendByModem(Modem* modem, ModemProtocol protocol, const ModemWork* work, void* context,
                 DWORD now)
{
    *modem = {};
    modem->work = work;
    modem->context = context;
    modem->protocol = protocol;
    modem->now = modem->begun = now;
    lstrcpynA(modem->status, "Waiting for the host", MODEM_STATUS);
    enterState(modem, &START);
}
