// The receiving side: it asks, and the host answers with blocks.
#include "modem.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr DWORD ASK_MS = 3000;
// Sooner than a sender repeats itself, or a block that comes twice would have two answers, of
// which the second is taken for that of the next block.
constexpr DWORD HEADER_MS = 7000;
constexpr DWORD BYTE_MS = 1000;
constexpr DWORD PURGE_MS = 300;
// The host's program is given time to start, or its shell would get the first word.
constexpr DWORD FIRST_MS = 500;
constexpr DWORD CRC_ASKS = 4; // then a host that knows only checksums is asked for them
constexpr DWORD MAX_ASKS = 20;
constexpr DWORD SURE_CANCELS = 5;

void onAskByte(Modem* modem, BYTE byte);
void onAskSilence(Modem* modem);
void onHeaderByte(Modem* modem, BYTE byte);
void onHeaderSilence(Modem* modem);
void onBlockByte(Modem* modem, BYTE byte);
void onBlockSilence(Modem* modem);
void onPurgeByte(Modem* modem, BYTE byte);
void onPurgeSilence(Modem* modem);
void onUserByte(Modem* modem, BYTE byte);
void onUserSilence(Modem* modem);

// A block may be on its way, or the host's program be about to start: neither hears a cancel.
constexpr ModemState ASK = {onAskByte, onAskSilence, ASK_MS, false};
constexpr ModemState HEADER = {onHeaderByte, onHeaderSilence, HEADER_MS, false};
constexpr ModemState BLOCK = {onBlockByte, onBlockSilence, BYTE_MS, false};
constexpr ModemState PURGE = {onPurgeByte, onPurgeSilence, PURGE_MS, false};
constexpr ModemState USER = {onUserByte, onUserSilence, INFINITE, true};

// The host listens now: what it gets to hear is the answer, or that the user wants no more.
bool reply(Modem* modem, BYTE byte)
{
    if (modem->cancelled) {
        abortModem(modem);
        return false;
    }
    putByte(modem, byte);
    return true;
}

void ask(Modem* modem)
{
    enterState(modem, &ASK);
    putByte(modem, modem->withCrc ? ASK_CRC : NAK);
}

void waitForHeader(Modem* modem, BYTE answer)
{
    if (reply(modem, answer)) {
        enterState(modem, &HEADER);
    }
}

// XMODEM has no word of the file, so it begins with its first block.
bool beginUnnamed(Modem* modem)
{
    modem->fileOpen = true;
    if (modem->work->begin(modem->context, &modem->file) == ANSWER_TAKE) {
        return true;
    }
    endModem(modem, RESULT_FAILED, "The file can't be kept", true);
    return false;
}

void startBlock(Modem* modem, BYTE kind)
{
    DWORD checkSize = modem->withCrc ? 2 : 1;
    modem->block[0] = kind;
    modem->blockHave = 1;
    modem->blockSize = 3 + (kind == STX ? MODEM_BLOCK : SMALL_BLOCK) + checkSize;
    modem->started = true;
    enterState(modem, &BLOCK);
}

void onEndOfFile(Modem* modem);

// Bytes that stand where a block begins. Returns false for one that begins nothing.
bool takeFirstByte(Modem* modem, BYTE byte)
{
    if (isHostCancel(modem, byte) || byte == CAN) {
        return true;
    }
    if (byte == SOH || byte == STX) {
        startBlock(modem, byte);
        return true;
    }
    if (byte == EOT && modem->started) {
        onEndOfFile(modem);
        return true;
    }
    return false;
}

void onAskByte(Modem* modem, BYTE byte)
{
    // An empty XMODEM file is nothing but its end.
    if (byte == EOT && !modem->started && modem->protocol != YMODEM) {
        modem->started = true;
    }
    if (!takeFirstByte(modem, byte) && !modem->started) {
        modem->work->stray(modem->context, byte);
        modem->since = modem->now;
    }
}

void onAskSilence(Modem* modem)
{
    if (modem->cancelled) {
        abortModem(modem);
        return;
    }
    if (++modem->faults >= MAX_ASKS) {
        endModem(modem, RESULT_FAILED, "Given up: the host doesn't begin", true);
        return;
    }
    if (modem->protocol != YMODEM && modem->faults == CRC_ASKS) {
        modem->withCrc = false;
    }
    ask(modem);
}

void onHeaderByte(Modem* modem, BYTE byte)
{
    // Noise: the block behind it is asked for again when nothing more comes.
    if (!takeFirstByte(modem, byte)) {
        enterState(modem, &PURGE);
        ++modem->errors;
        say(modem, "noise before it");
    }
}

void onHeaderSilence(Modem* modem)
{
    if (modem->cancelled || noteError(modem, "the host is silent")) {
        ++modem->retries;
        waitForHeader(modem, NAK);
    }
}

void refuseBlock(Modem* modem, const char* what)
{
    if (noteError(modem, what)) {
        modem->blockSize = modem->blockHave = 0;
        enterState(modem, &PURGE);
    }
}

// A host that is interrupted cancels in the middle of a block.
bool endsInCancels(const Modem* modem)
{
    DWORD end = modem->blockHave;
    DWORD cancels = 0;
    while (end > 0 && modem->block[end - 1] == '\b') {
        --end;
    }
    while (end > cancels && modem->block[end - cancels - 1] == CAN) {
        ++cancels;
    }
    return cancels >= SURE_CANCELS;
}

void onBlockSilence(Modem* modem)
{
    if (endsInCancels(modem)) {
        endModem(modem, RESULT_CANCELLED, "Cancelled by the host", false);
        return;
    }
    refuseBlock(modem, "bytes are missing");
}

// Two bytes among so many could be noise.
void onPurgeByte(Modem* modem, BYTE byte)
{
    modem->since = modem->now;
    modem->cancels = byte == CAN ? modem->cancels + 1 : 0;
    if (modem->cancels == SURE_CANCELS) {
        endModem(modem, RESULT_CANCELLED, "Cancelled by the host", false);
    }
}

void onPurgeSilence(Modem* modem)
{
    ++modem->retries;
    waitForHeader(modem, NAK);
}

// ---- the file that YMODEM tells of in block 0

void readFileInfo(ModemFile* file, const char* block)
{
    char* end;
    *file = {};
    lstrcpynA(file->name, block, sizeof file->name);
    const char* rest = block + strlen(block) + 1;
    file->size = strtoul(rest, &end, 10);
    file->sized = end != rest;
    file->time = file->sized ? strtoul(end, nullptr, 8) : 0;
}

void beginData(Modem* modem, ModemAnswer answer)
{
    if (answer == ANSWER_STOP) {
        endModem(modem, RESULT_FAILED, "The file can't be kept", true);
        return;
    }
    modem->drop = answer != ANSWER_TAKE;
    modem->number = 1;
    modem->done = 0;
    if (reply(modem, ACK)) {
        ask(modem);
    }
}

void takeFileInfo(Modem* modem)
{
    char block[MODEM_BLOCK + 2] = {}; // a name and what follows it end in any case
    memcpy(block, modem->block + 3, modem->blockSize - 5);
    readFileInfo(&modem->file, block);
    if (modem->file.name[0] == '\0') {
        putByte(modem, ACK);
        endModem(modem, RESULT_DONE, nullptr, false);
        return;
    }
    if (modem->cancelled) {
        abortModem(modem);
        return;
    }
    modem->fileOpen = true;
    modem->skip = false;
    ModemAnswer answer = modem->work->begin(modem->context, &modem->file);
    if (answer == ANSWER_LATER) {
        enterState(modem, &USER);
    } else {
        beginData(modem, answer);
    }
}

void onUserByte(Modem*, BYTE)
{
}

void onUserSilence(Modem*)
{
}

// ---- blocks

bool isIntact(const Modem* modem)
{
    BYTE check[2];
    DWORD dataSize = modem->blockSize - 3 - (modem->withCrc ? 2 : 1);
    DWORD checkSize = checkOf(modem, modem->block + 3, dataSize, check);
    return BYTE(~modem->block[2]) == modem->block[1] &&
           memcmp(modem->block + 3 + dataSize, check, checkSize) == 0;
}

const char* writeBlock(Modem* modem)
{
    DWORD count = modem->blockSize - 3 - (modem->withCrc ? 2 : 1);
    if (modem->file.sized && count > modem->file.size - modem->done) {
        count = modem->file.size - modem->done;
    }
    modem->done += count;
    if (count == 0 || modem->drop || modem->skip) {
        return nullptr;
    }
    return modem->work->write(modem->context, modem->block + 3, count);
}

void takeData(Modem* modem)
{
    if (!modem->fileOpen && !beginUnnamed(modem)) {
        return;
    }
    const char* problem = writeBlock(modem);
    if (problem != nullptr) {
        endModem(modem, RESULT_FAILED, problem, true);
        return;
    }
    say(modem, modem->skip || modem->drop ? "not kept" : "received");
    modem->ending = false;
    ++modem->number;
    waitForHeader(modem, ACK);
}

void repeatAnswer(Modem* modem, bool isInfo)
{
    ++modem->errors;
    say(modem, "the one before it came twice");
    waitForHeader(modem, ACK);
    if (isInfo && modem->result == RESULT_RUNNING) {
        ask(modem);
    }
}

void onBlock(Modem* modem)
{
    BYTE number = modem->block[1];
    bool isInfo = modem->protocol == YMODEM && !modem->fileOpen;
    bool again = number == BYTE(modem->number - 1) && modem->fileOpen;
    if (!isIntact(modem)) {
        refuseBlock(modem, "damaged on the line");
        return;
    }
    modem->faults = 0;
    if (isInfo && number == 0) {
        takeFileInfo(modem);
    } else if (!isInfo && number == modem->number) {
        takeData(modem);
    } else if (again) {
        repeatAnswer(modem, modem->done == 0 && modem->number == 1);
    } else {
        endModem(modem, RESULT_FAILED, "Given up: a block out of order", true);
    }
}

void onBlockByte(Modem* modem, BYTE byte)
{
    modem->block[modem->blockHave++] = byte;
    if (modem->blockHave < modem->blockSize) {
        return;
    }
    onBlock(modem);
    if (modem->state != &BLOCK) {
        modem->blockSize = modem->blockHave = 0;
    }
}

// ---- the end of a file

void finishFile(Modem* modem)
{
    if (!modem->fileOpen && !beginUnnamed(modem)) {
        return; // an empty one, without a name
    }
    if (modem->file.sized && modem->done < modem->file.size) {
        ++modem->errors;
        say(modem, "the file ended before its size");
        endFile(modem, END_BROKEN);
    } else {
        endFile(modem, modem->drop || modem->skip ? END_DROPPED : END_WHOLE);
    }
}

void onSecondEnd(Modem* modem)
{
    finishFile(modem);
    if (modem->result != RESULT_RUNNING || !reply(modem, ACK)) {
        return;
    }
    if (modem->protocol != YMODEM) {
        endModem(modem, RESULT_DONE, nullptr, false);
        return;
    }
    modem->number = 0;
    modem->ending = false;
    modem->faults = 0;
    ask(modem);
}

// The first one could be noise and is asked for again.
void onEndOfFile(Modem* modem)
{
    bool ended = modem->protocol == YMODEM && !modem->fileOpen;
    if (ended) { // our answer was lost
        putByte(modem, ACK);
        ask(modem);
    } else if (modem->ending) {
        onSecondEnd(modem);
    } else {
        modem->ending = true;
        waitForHeader(modem, NAK);
    }
}

} // namespace

void receiveByModem(Modem* modem, ModemProtocol protocol, const ModemWork* work, void* context,
                    DWORD now)
{
    *modem = {};
    modem->work = work;
    modem->context = context;
    modem->protocol = protocol;
    modem->now = modem->begun = now;
    modem->withCrc = protocol != XMODEM_CHECKSUM;
    modem->number = protocol == YMODEM ? 0 : 1;
    lstrcpynA(modem->status, "Waiting for the host", MODEM_STATUS);
    enterState(modem, &ASK);
    modem->patience = FIRST_MS;
}

void answerModem(Modem* modem, ModemAnswer answer, DWORD now)
{
    modem->now = now;
    if (modem->state == &USER) {
        beginData(modem, answer);
    }
}
