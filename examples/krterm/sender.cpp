// The sending side: blocks go out, and the host answers each.
#include "modem.h"

#include <string.h>

namespace {

// What the host begins with could as well be a letter of a text, unless nothing follows it.
constexpr DWORD START_MS = 200;
constexpr DWORD MAX_START_MS = 60000;
constexpr DWORD ANSWER_MS = 15000; // later than a receiver asks again
constexpr DWORD ASK_MS = 3000;
// An early "C" behind block 0 was on its way before it.
constexpr DWORD STALE_MS = 1000;

void onStartByte(Modem* pModem, BYTE b);
void onStartSilence(Modem* pModem);
void onInfoAnswer(Modem* pModem, BYTE b);
void onDataAnswer(Modem* pModem, BYTE b);
void onEndAnswer(Modem* pModem, BYTE b);
void onLastAnswer(Modem* pModem, BYTE b);
void onNoAnswer(Modem* pModem);
void onNoLastAnswer(Modem* pModem);
void onGoByte(Modem* pModem, BYTE b);
void sendData(Modem* pModem);
void onNextByte(Modem* pModem, BYTE b);
void sendInfo(Modem* pModem);

constexpr ModemState START = {onStartByte, onStartSilence, START_MS, true};
// Block 0 is out; the host says "C" behind its answer; data is out; the end of a file is out;
// the host asks for the next file; the end of the batch is out.
constexpr ModemState INFO = {onInfoAnswer, onNoAnswer, ANSWER_MS, true};
constexpr ModemState GO = {onGoByte, sendData, ASK_MS, true};
constexpr ModemState DATA = {onDataAnswer, onNoAnswer, ANSWER_MS, true};
constexpr ModemState END = {onEndAnswer, onNoAnswer, ANSWER_MS, true};
constexpr ModemState NEXT = {onNextByte, sendInfo, ASK_MS, true};
constexpr ModemState LAST = {onLastAnswer, onNoLastAnswer, ANSWER_MS, true};

void putBlock(Modem* pModem)
{
    pModem->pWork->pfnPut(pModem->pContext, pModem->abBlock, pModem->cbBlock);
}

// Makes the block that is due of the data that lies in it.
void makeBlock(Modem* pModem, DWORD cbData, BYTE bFill)
{
    DWORD cb = cbData > SMALL_BLOCK ? MODEM_BLOCK : SMALL_BLOCK;
    memset(pModem->abBlock + 3 + cbData, bFill, cb - cbData);
    pModem->abBlock[0] = cb == MODEM_BLOCK ? STX : SOH;
    pModem->abBlock[1] = pModem->bNumber;
    pModem->abBlock[2] = BYTE(~pModem->bNumber);
    pModem->cbBlock = 3 + cb + checkOf(pModem, pModem->abBlock + 3, cb, pModem->abBlock + 3 + cb);
    pModem->cbHave = pModem->cbBlock; // nothing is awaited of it
    pModem->cbData = cbData;
}

void sendEnd(Modem* pModem)
{
    pModem->abBlock[0] = EOT;
    pModem->cbBlock = pModem->cbHave = 1;
    putBlock(pModem);
    enterState(pModem, &END);
}

// In front of the next block what has come before it is stale.
void sendData(Modem* pModem)
{
    DWORD cbRead = 0;
    DWORD cbMost = pModem->nProtocol >= XMODEM_1K ? MODEM_BLOCK : SMALL_BLOCK;
    const char* pszProblem =
        pModem->fSkip
            ? nullptr
            : pModem->pWork->pfnRead(pModem->pContext, pModem->abBlock + 3, cbMost, &cbRead);
    pModem->fDiscard = true;
    if (pszProblem != nullptr) {
        endModem(pModem, RESULT_FAILED, pszProblem, true);
    } else if (cbRead == 0) {
        sendEnd(pModem);
    } else {
        makeBlock(pModem, cbRead, SUB);
        putBlock(pModem);
        enterState(pModem, &DATA);
    }
}

// ---- block 0

DWORD writeFileInfo(const ModemFile* pFile, BYTE* pb)
{
    constexpr DWORD CCH_NUMBERS = 40;
    char szOctal[16] = {};
    char* pchOctal = szOctal + sizeof szOctal - 1;
    DWORD dwTime = pFile->dwTime;
    do {
        *--pchOctal = char('0' + (dwTime & 7));
        dwTime >>= 3;
    } while (dwTime != 0);
    auto pszBlock = reinterpret_cast<char*>(pb);
    lstrcpynA(pszBlock, pFile->szName, MODEM_BLOCK - CCH_NUMBERS);
    size_t cchName = strlen(pszBlock) + 1;
    wsprintfA(pszBlock + cchName, "%lu %s 100644", pFile->cbSize, pchOctal);
    return DWORD(cchName + strlen(pszBlock + cchName) + 1);
}

bool nextFile(Modem* pModem)
{
    pModem->file = {};
    pModem->cbDone = 0;
    pModem->fSkip = false;
    pModem->fFile = pModem->pWork->pfnNext(pModem->pContext, &pModem->file);
    return pModem->fFile;
}

void sendInfo(Modem* pModem)
{
    bool fMore = nextFile(pModem);
    pModem->bNumber = 0;
    makeBlock(pModem, fMore ? writeFileInfo(&pModem->file, pModem->abBlock + 3) : 0, 0);
    pModem->cbData = 0;
    putBlock(pModem);
    enterState(pModem, fMore ? &INFO : &LAST);
}

void beginFile(Modem* pModem)
{
    pModem->fStarted = true;
    pModem->fCrc = pModem->bStart == ASK_CRC;
    if (pModem->nProtocol == YMODEM) {
        sendInfo(pModem);
    } else if (nextFile(pModem)) {
        pModem->bNumber = 1;
        sendData(pModem);
    } else {
        endModem(pModem, RESULT_FAILED, "The file can't be read", true);
    }
}

// ---- what the host says

void onStartByte(Modem* pModem, BYTE b)
{
    if (isHostCancel(pModem, b)) {
        return;
    }
    if (pModem->bStart != 0 && pModem->bStart != b) {
        pModem->pWork->pfnStray(pModem->pContext, pModem->bStart);
    }
    bool fStart = b == ASK_CRC || b == NAK;
    pModem->bStart = fStart ? b : BYTE(0);
    pModem->dwSince = pModem->dwNow;
    if (!fStart && b != CAN) {
        pModem->pWork->pfnStray(pModem->pContext, b);
    }
}

void onStartSilence(Modem* pModem)
{
    if (pModem->bStart != 0) {
        beginFile(pModem);
    } else if (pModem->dwNow - pModem->dwBegun >= MAX_START_MS) {
        endModem(pModem, RESULT_FAILED, "Given up: the host doesn't ask for the file", true);
    }
}

void sendAgain(Modem* pModem, const char* pszWhy)
{
    if (noteError(pModem, pszWhy)) {
        ++pModem->cRetries;
        putBlock(pModem);
        enterState(pModem, pModem->pState);
        pModem->fDiscard = true;
    }
}

// Whether the host has taken what is out. If it wants it again, it gets it.
bool isTaken(Modem* pModem, BYTE b)
{
    if (isHostCancel(pModem, b) || b == CAN) {
        return false;
    }
    if (b == NAK) {
        sendAgain(pModem, "the host wants it again");
    } else if (b == ACK) {
        pModem->cFaults = 0;
    } else if (b != ASK_CRC) {
        ++pModem->cErrors;
        say(pModem, "noise instead of an answer");
    }
    return b == ACK;
}

void onInfoAnswer(Modem* pModem, BYTE b)
{
    if (b == ASK_CRC && pModem->dwNow - pModem->dwSince >= STALE_MS) {
        sendAgain(pModem, "the host wants it again");
    } else if (isTaken(pModem, b)) {
        pModem->bNumber = 1;
        enterState(pModem, &GO);
    }
}

void onGoByte(Modem* pModem, BYTE b)
{
    if (!isHostCancel(pModem, b) && (b == ASK_CRC || b == NAK)) {
        sendData(pModem);
    }
}

void onDataAnswer(Modem* pModem, BYTE b)
{
    if (isTaken(pModem, b)) {
        pModem->cbDone += pModem->cbData;
        say(pModem, "sent");
        ++pModem->bNumber;
        sendData(pModem);
    }
}

void onEndAnswer(Modem* pModem, BYTE b)
{
    if (!isTaken(pModem, b)) {
        return;
    }
    endFile(pModem, pModem->fSkip ? END_DROPPED : END_WHOLE);
    if (pModem->nProtocol == YMODEM) {
        enterState(pModem, &NEXT);
    } else {
        endModem(pModem, RESULT_DONE, nullptr, false);
    }
}

void onNextByte(Modem* pModem, BYTE b)
{
    if (!isHostCancel(pModem, b) && (b == ASK_CRC || b == NAK)) {
        sendInfo(pModem);
        pModem->fDiscard = true;
    }
}

void onLastAnswer(Modem* pModem, BYTE b)
{
    if (isTaken(pModem, b)) {
        endModem(pModem, RESULT_DONE, nullptr, false);
    }
}

void onNoAnswer(Modem* pModem)
{
    sendAgain(pModem, "no answer");
}

// All files have been taken, and a host that says nothing more has ended.
void onNoLastAnswer(Modem* pModem)
{
    endModem(pModem, RESULT_DONE, nullptr, false);
}

} // namespace

void sendByModem(Modem* pModem, ModemProtocol nProtocol, const ModemWork* pWork, void* pContext,
                 DWORD dwNow)
{
    *pModem = {};
    pModem->pWork = pWork;
    pModem->pContext = pContext;
    pModem->nProtocol = nProtocol;
    pModem->dwNow = pModem->dwBegun = dwNow;
    lstrcpynA(pModem->szStatus, "Waiting for the host", MODEM_STATUS);
    enterState(pModem, &START);
}
