#include "modem.h"

#include <string.h>

namespace {

// Enough for hosts that want more than two, and backspaces for a shell that gets the rest.
constexpr BYTE CANCEL[] = {CAN, CAN, CAN, CAN, CAN, CAN, CAN, CAN, 8, 8, 8, 8, 8, 8, 8, 8};
constexpr DWORD CANCEL_MS = 1000;

void ignoreByte(Modem*, BYTE)
{
}

void ignoreSilence(Modem*)
{
}

constexpr ModemState OVER = {ignoreByte, ignoreSilence, INFINITE, false};

WORD crcOf(const BYTE* pb, DWORD cb)
{
    unsigned uCrc = 0;
    for (DWORD n = 0; n < cb; ++n) {
        uCrc = ((uCrc >> 8) | (uCrc << 8)) & 0xFFFF;
        uCrc ^= pb[n];
        uCrc ^= (uCrc & 0xFF) >> 4;
        uCrc ^= (uCrc << 12) & 0xFFFF;
        uCrc ^= (uCrc & 0xFF) << 5;
    }
    return WORD(uCrc);
}

} // namespace

void enterState(Modem* pModem, const ModemState* pState)
{
    pModem->pState = pState;
    pModem->dwSince = pModem->dwNow;
    pModem->dwPatience = pState->dwPatience;
    if (pModem->fCancel && pModem->dwPatience > CANCEL_MS) {
        pModem->dwPatience = CANCEL_MS;
    }
    pModem->cCancels = 0;
}

void putByte(Modem* pModem, BYTE b)
{
    pModem->pWork->pfnPut(pModem->pContext, &b, 1);
}

void say(Modem* pModem, const char* pszWhat)
{
    char szText[MODEM_STATUS + 32];
    wsprintfA(szText, "Block %u: ", pModem->bNumber);
    lstrcpynA(szText + lstrlenA(szText), pszWhat, MODEM_STATUS);
    lstrcpynA(pModem->szStatus, szText, MODEM_STATUS);
}

bool noteError(Modem* pModem, const char* pszWhat)
{
    ++pModem->cErrors;
    say(pModem, pszWhat);
    if (++pModem->cFaults < MAX_FAULTS) {
        return true;
    }
    endModem(pModem, RESULT_FAILED, "Given up: too many errors in a row", true);
    return false;
}

void endModem(Modem* pModem, ModemResult nResult, const char* pszStatus, bool fTellHost)
{
    if (pModem->nResult != RESULT_RUNNING) {
        return;
    }
    pModem->nResult = nResult;
    if (pszStatus != nullptr) {
        lstrcpynA(pModem->szStatus, pszStatus, MODEM_STATUS);
    }
    enterState(pModem, &OVER);
    if (fTellHost) {
        pModem->pWork->pfnPut(pModem->pContext, CANCEL, sizeof CANCEL);
    }
    endFile(pModem, END_BROKEN);
}

bool isHostCancel(Modem* pModem, BYTE b)
{
    pModem->cCancels = b == CAN ? pModem->cCancels + 1 : 0;
    if (pModem->cCancels < 2) {
        return false;
    }
    endModem(pModem, RESULT_CANCELLED, "Cancelled by the host", false);
    return true;
}

DWORD checkOf(const Modem* pModem, const BYTE* pb, DWORD cb, BYTE* pbCheck)
{
    if (pModem->fCrc) {
        WORD wCrc = crcOf(pb, cb);
        pbCheck[0] = HIBYTE(wCrc);
        pbCheck[1] = LOBYTE(wCrc);
        return 2;
    }
    pbCheck[0] = 0;
    for (DWORD n = 0; n < cb; ++n) {
        pbCheck[0] = BYTE(pbCheck[0] + pb[n]);
    }
    return 1;
}

void endFile(Modem* pModem, ModemEnd nEnd)
{
    if (!pModem->fFile) {
        return;
    }
    pModem->fFile = false;
    const char* pszProblem = pModem->pWork->pfnEnd(pModem->pContext, &pModem->file, nEnd);
    if (pszProblem != nullptr) {
        ++pModem->cErrors;
        lstrcpynA(pModem->szStatus, pszProblem, MODEM_STATUS);
    } else if (nEnd == END_WHOLE) {
        ++pModem->cFiles;
    }
}

DWORD feedModem(Modem* pModem, const BYTE* pb, DWORD cb, DWORD dwNow)
{
    DWORD n = 0;
    pModem->dwNow = dwNow;
    pModem->fDiscard = false;
    while (n < cb && pModem->nResult == RESULT_RUNNING) {
        DWORD cbWanted = pModem->cbBlock - pModem->cbHave;
        if (pModem->fDiscard) {
            isHostCancel(pModem, pb[n++]);
        } else if (cbWanted > 1) {
            // All but the last byte of a block, which its state takes.
            cbWanted = cbWanted - 1 < cb - n ? cbWanted - 1 : cb - n;
            memcpy(pModem->abBlock + pModem->cbHave, pb + n, cbWanted);
            pModem->cbHave += cbWanted;
            pModem->dwSince = dwNow;
            n += cbWanted;
        } else {
            pModem->pState->pfnByte(pModem, pb[n++]);
        }
    }
    return n;
}

void tickModem(Modem* pModem, DWORD dwNow)
{
    pModem->dwNow = dwNow;
    if (dwNow - pModem->dwSince >= pModem->dwPatience) {
        pModem->dwSince = dwNow;
        pModem->pState->pfnSilence(pModem);
    }
}

void cancelModem(Modem* pModem, DWORD dwNow)
{
    pModem->dwNow = dwNow;
    if (pModem->pState->fListening || pModem->fCancel) {
        abortModem(pModem);
        return;
    }
    pModem->fCancel = true;
    pModem->dwSince = dwNow;
    pModem->dwPatience = CANCEL_MS;
}

void abortModem(Modem* pModem)
{
    endModem(pModem, RESULT_CANCELLED, "Cancelled", true);
}

void skipFile(Modem* pModem)
{
    pModem->fSkip = pModem->fFile;
}
