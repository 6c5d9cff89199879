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
constexpr DWORD CRC_ASKS = 3; // then a host that knows only checksums is asked for them
constexpr DWORD MAX_ASKS = 20;
constexpr DWORD SURE_CANCELS = 5;

void onAskByte(Modem* pModem, BYTE b);
void onAskSilence(Modem* pModem);
void onHeaderByte(Modem* pModem, BYTE b);
void onHeaderSilence(Modem* pModem);
void onBlockByte(Modem* pModem, BYTE b);
void onBlockSilence(Modem* pModem);
void onPurgeByte(Modem* pModem, BYTE b);
void onPurgeSilence(Modem* pModem);
void onUserByte(Modem* pModem, BYTE b);
void onUserSilence(Modem* pModem);

constexpr ModemState ASK = {onAskByte, onAskSilence, ASK_MS, true};
// The host has begun: there may be a block on its way.
constexpr ModemState ASK_MORE = {onAskByte, onAskSilence, ASK_MS, false};
constexpr ModemState HEADER = {onHeaderByte, onHeaderSilence, HEADER_MS, false};
constexpr ModemState BLOCK = {onBlockByte, onBlockSilence, BYTE_MS, false};
constexpr ModemState PURGE = {onPurgeByte, onPurgeSilence, PURGE_MS, false};
constexpr ModemState USER = {onUserByte, onUserSilence, INFINITE, true};

// The host listens now: what it gets to hear is the answer, or that the user wants no more.
bool reply(Modem* pModem, BYTE b)
{
    if (pModem->fCancel) {
        abortModem(pModem);
        return false;
    }
    putByte(pModem, b);
    return true;
}

void ask(Modem* pModem)
{
    enterState(pModem, pModem->fStarted ? &ASK_MORE : &ASK);
    putByte(pModem, pModem->fCrc ? ASK_CRC : NAK);
}

void waitForHeader(Modem* pModem, BYTE bAnswer)
{
    if (reply(pModem, bAnswer)) {
        enterState(pModem, &HEADER);
    }
}

// XMODEM has no word of the file, so it begins with its first block.
bool beginUnnamed(Modem* pModem)
{
    pModem->fFile = true;
    if (pModem->pWork->pfnBegin(pModem->pContext, &pModem->file) == ANSWER_TAKE) {
        return true;
    }
    endModem(pModem, RESULT_FAILED, "The file can't be kept", true);
    return false;
}

void startBlock(Modem* pModem, BYTE bKind)
{
    DWORD cbCheck = pModem->fCrc ? 2 : 1;
    pModem->abBlock[0] = bKind;
    pModem->cbHave = 1;
    pModem->cbBlock = 3 + (bKind == STX ? MODEM_BLOCK : SMALL_BLOCK) + cbCheck;
    pModem->fStarted = true;
    enterState(pModem, &BLOCK);
}

void onEndOfFile(Modem* pModem);

// Bytes that stand where a block begins. Returns false for one that begins nothing.
bool takeFirstByte(Modem* pModem, BYTE b)
{
    if (isHostCancel(pModem, b) || b == CAN) {
        return true;
    }
    if (b == SOH || b == STX) {
        startBlock(pModem, b);
        return true;
    }
    if (b == EOT && pModem->fStarted) {
        onEndOfFile(pModem);
        return true;
    }
    return false;
}

void onAskByte(Modem* pModem, BYTE b)
{
    // An empty XMODEM file is nothing but its end.
    if (b == EOT && !pModem->fStarted && pModem->nProtocol != YMODEM) {
        pModem->fStarted = true;
    }
    if (!takeFirstByte(pModem, b) && !pModem->fStarted) {
        pModem->pWork->pfnStray(pModem->pContext, b);
    }
}

void onAskSilence(Modem* pModem)
{
    if (pModem->fCancel) {
        abortModem(pModem);
        return;
    }
    if (++pModem->cFaults >= MAX_ASKS) {
        endModem(pModem, RESULT_FAILED, "Given up: the host doesn't begin", true);
        return;
    }
    if (pModem->nProtocol != YMODEM && pModem->cFaults == CRC_ASKS) {
        pModem->fCrc = false;
    }
    ask(pModem);
}

void onHeaderByte(Modem* pModem, BYTE b)
{
    // Noise: the block behind it is asked for again when nothing more comes.
    if (!takeFirstByte(pModem, b)) {
        enterState(pModem, &PURGE);
        ++pModem->cErrors;
        say(pModem, "noise before it");
    }
}

void onHeaderSilence(Modem* pModem)
{
    if (pModem->fCancel || noteError(pModem, "the host is silent")) {
        ++pModem->cRetries;
        waitForHeader(pModem, NAK);
    }
}

void refuseBlock(Modem* pModem, const char* pszWhat)
{
    if (noteError(pModem, pszWhat)) {
        pModem->cbBlock = pModem->cbHave = 0;
        enterState(pModem, &PURGE);
    }
}

// A host that is interrupted cancels in the middle of a block.
bool endsInCancels(const Modem* pModem)
{
    DWORD cb = pModem->cbHave;
    DWORD c = 0;
    while (cb > 0 && pModem->abBlock[cb - 1] == '\b') {
        --cb;
    }
    for (; cb > c && pModem->abBlock[cb - c - 1] == CAN; ++c) {
    }
    return c >= SURE_CANCELS;
}

void onBlockSilence(Modem* pModem)
{
    if (endsInCancels(pModem)) {
        endModem(pModem, RESULT_CANCELLED, "Cancelled by the host", false);
        return;
    }
    refuseBlock(pModem, "bytes are missing");
}

// Two bytes among so many could be noise.
void onPurgeByte(Modem* pModem, BYTE b)
{
    pModem->dwSince = pModem->dwNow;
    pModem->cCancels = b == CAN ? pModem->cCancels + 1 : 0;
    if (pModem->cCancels == SURE_CANCELS) {
        endModem(pModem, RESULT_CANCELLED, "Cancelled by the host", false);
    }
}

void onPurgeSilence(Modem* pModem)
{
    ++pModem->cRetries;
    waitForHeader(pModem, NAK);
}

// ---- the file that YMODEM tells of in block 0

void readFileInfo(ModemFile* pFile, const char* pszBlock)
{
    char* pchEnd;
    *pFile = {};
    lstrcpynA(pFile->szName, pszBlock, sizeof pFile->szName);
    const char* pszRest = pszBlock + strlen(pszBlock) + 1;
    pFile->cbSize = strtoul(pszRest, &pchEnd, 10);
    pFile->fSized = pchEnd != pszRest;
    pFile->dwTime = pFile->fSized ? strtoul(pchEnd, nullptr, 8) : 0;
}

void beginData(Modem* pModem, ModemAnswer nAnswer)
{
    if (nAnswer == ANSWER_STOP) {
        endModem(pModem, RESULT_FAILED, "The file can't be kept", true);
        return;
    }
    pModem->fDrop = nAnswer != ANSWER_TAKE;
    pModem->bNumber = 1;
    pModem->cbDone = 0;
    if (reply(pModem, ACK)) {
        ask(pModem);
    }
}

void takeFileInfo(Modem* pModem)
{
    char szBlock[MODEM_BLOCK + 2] = {}; // a name and what follows it end in any case
    memcpy(szBlock, pModem->abBlock + 3, pModem->cbBlock - 5);
    readFileInfo(&pModem->file, szBlock);
    if (pModem->file.szName[0] == '\0') {
        putByte(pModem, ACK);
        endModem(pModem, RESULT_DONE, nullptr, false);
        return;
    }
    if (pModem->fCancel) {
        abortModem(pModem);
        return;
    }
    pModem->fFile = true;
    pModem->fSkip = false;
    ModemAnswer nAnswer = pModem->pWork->pfnBegin(pModem->pContext, &pModem->file);
    if (nAnswer == ANSWER_LATER) {
        enterState(pModem, &USER);
    } else {
        beginData(pModem, nAnswer);
    }
}

void onUserByte(Modem*, BYTE)
{
}

void onUserSilence(Modem*)
{
}

// ---- blocks

bool isIntact(const Modem* pModem)
{
    BYTE abCheck[2];
    DWORD cbData = pModem->cbBlock - 3 - (pModem->fCrc ? 2 : 1);
    DWORD cbCheck = checkOf(pModem, pModem->abBlock + 3, cbData, abCheck);
    return BYTE(~pModem->abBlock[2]) == pModem->abBlock[1] &&
           memcmp(pModem->abBlock + 3 + cbData, abCheck, cbCheck) == 0;
}

const char* writeBlock(Modem* pModem)
{
    DWORD cb = pModem->cbBlock - 3 - (pModem->fCrc ? 2 : 1);
    if (pModem->file.fSized && cb > pModem->file.cbSize - pModem->cbDone) {
        cb = pModem->file.cbSize - pModem->cbDone;
    }
    pModem->cbDone += cb;
    if (cb == 0 || pModem->fDrop || pModem->fSkip) {
        return nullptr;
    }
    return pModem->pWork->pfnWrite(pModem->pContext, pModem->abBlock + 3, cb);
}

void takeData(Modem* pModem)
{
    if (!pModem->fFile && !beginUnnamed(pModem)) {
        return;
    }
    const char* pszProblem = writeBlock(pModem);
    if (pszProblem != nullptr) {
        endModem(pModem, RESULT_FAILED, pszProblem, true);
        return;
    }
    say(pModem, pModem->fSkip || pModem->fDrop ? "not kept" : "received");
    pModem->fEnding = false;
    ++pModem->bNumber;
    waitForHeader(pModem, ACK);
}

void repeatAnswer(Modem* pModem, bool fFileInfo)
{
    ++pModem->cErrors;
    say(pModem, "the one before it came twice");
    waitForHeader(pModem, ACK);
    if (fFileInfo && pModem->nResult == RESULT_RUNNING) {
        ask(pModem);
    }
}

void onBlock(Modem* pModem)
{
    BYTE bNumber = pModem->abBlock[1];
    bool fFileInfo = pModem->nProtocol == YMODEM && !pModem->fFile;
    bool fAgain = bNumber == BYTE(pModem->bNumber - 1) && pModem->fFile;
    if (!isIntact(pModem)) {
        refuseBlock(pModem, "damaged on the line");
        return;
    }
    pModem->cFaults = 0;
    if (fFileInfo && bNumber == 0) {
        takeFileInfo(pModem);
    } else if (!fFileInfo && bNumber == pModem->bNumber) {
        takeData(pModem);
    } else if (fAgain) {
        repeatAnswer(pModem, pModem->cbDone == 0 && pModem->bNumber == 1);
    } else {
        endModem(pModem, RESULT_FAILED, "Given up: a block out of order", true);
    }
}

void onBlockByte(Modem* pModem, BYTE b)
{
    pModem->abBlock[pModem->cbHave++] = b;
    if (pModem->cbHave < pModem->cbBlock) {
        return;
    }
    onBlock(pModem);
    if (pModem->pState != &BLOCK) {
        pModem->cbBlock = pModem->cbHave = 0;
    }
}

// ---- the end of a file

void finishFile(Modem* pModem)
{
    if (!pModem->fFile && !beginUnnamed(pModem)) {
        return; // an empty one, without a name
    }
    if (pModem->file.fSized && pModem->cbDone < pModem->file.cbSize) {
        ++pModem->cErrors;
        say(pModem, "the file ended before its size");
        endFile(pModem, END_BROKEN);
    } else {
        endFile(pModem, pModem->fDrop || pModem->fSkip ? END_DROPPED : END_WHOLE);
    }
}

void onSecondEnd(Modem* pModem)
{
    finishFile(pModem);
    if (pModem->nResult != RESULT_RUNNING || !reply(pModem, ACK)) {
        return;
    }
    if (pModem->nProtocol != YMODEM) {
        endModem(pModem, RESULT_DONE, nullptr, false);
        return;
    }
    pModem->bNumber = 0;
    pModem->fEnding = false;
    pModem->cFaults = 0;
    ask(pModem);
}

// The first one could be noise and is asked for again.
void onEndOfFile(Modem* pModem)
{
    bool fEnded = pModem->nProtocol == YMODEM && !pModem->fFile;
    if (fEnded) { // our answer was lost
        putByte(pModem, ACK);
        ask(pModem);
    } else if (pModem->fEnding) {
        onSecondEnd(pModem);
    } else {
        pModem->fEnding = true;
        waitForHeader(pModem, NAK);
    }
}

} // namespace

void receiveByModem(Modem* pModem, ModemProtocol nProtocol, const ModemWork* pWork, void* pContext,
                    DWORD dwNow)
{
    *pModem = {};
    pModem->pWork = pWork;
    pModem->pContext = pContext;
    pModem->nProtocol = nProtocol;
    pModem->dwNow = pModem->dwBegun = dwNow;
    pModem->fCrc = nProtocol != XMODEM_CHECKSUM;
    pModem->bNumber = nProtocol == YMODEM ? 0 : 1;
    lstrcpynA(pModem->szStatus, "Waiting for the host", MODEM_STATUS);
    ask(pModem);
}

void answerModem(Modem* pModem, ModemAnswer nAnswer, DWORD dwNow)
{
    pModem->dwNow = dwNow;
    if (pModem->pState == &USER) {
        beginData(pModem, nAnswer);
    }
}
