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

WORD crcOf(const BYTE* bytes, DWORD count)
{
    unsigned crc = 0;
    for (DWORD n = 0; n < count; ++n) {
        crc = ((crc >> 8) | (crc << 8)) & 0xFFFF;
        crc ^= bytes[n];
        crc ^= (crc & 0xFF) >> 4;
        crc ^= (crc << 12) & 0xFFFF;
        crc ^= (crc & 0xFF) << 5;
    }
    return WORD(crc);
}

} // namespace

void enterState(Modem* modem, const ModemState* state)
{
    modem->state = state;
    modem->since = modem->now;
    modem->patience = state->patience;
    if (modem->cancelled && modem->patience > CANCEL_MS) {
        modem->patience = CANCEL_MS;
    }
    modem->cancels = 0;
}

void putByte(Modem* modem, BYTE byte)
{
    modem->work->put(modem->context, &byte, 1);
}

void say(Modem* modem, const char* what)
{
    char text[MODEM_STATUS + 32];
    wsprintfA(text, "Block %u: ", modem->number);
    lstrcpynA(text + lstrlenA(text), what, MODEM_STATUS);
    lstrcpynA(modem->status, text, MODEM_STATUS);
}

bool noteError(Modem* modem, const char* what)
{
    ++modem->errors;
    say(modem, what);
    if (++modem->faults < MAX_FAULTS) {
        return true;
    }
    endModem(modem, RESULT_FAILED, "Given up: too many errors in a row", true);
    return false;
}

void endModem(Modem* modem, ModemResult result, const char* status, bool tellHost)
{
    if (modem->result != RESULT_RUNNING) {
        return;
    }
    modem->result = result;
    if (status != nullptr) {
        lstrcpynA(modem->status, status, MODEM_STATUS);
    }
    enterState(modem, &OVER);
    if (tellHost) {
        modem->work->put(modem->context, CANCEL, sizeof CANCEL);
    }
    endFile(modem, END_BROKEN);
}

bool isHostCancel(Modem* modem, BYTE byte)
{
    modem->cancels = byte == CAN ? modem->cancels + 1 : 0;
    if (modem->cancels < 2) {
        return false;
    }
    endModem(modem, RESULT_CANCELLED, "Cancelled by the host", false);
    return true;
}

DWORD checkOf(const Modem* modem, const BYTE* bytes, DWORD count, BYTE* check)
{
    if (modem->withCrc) {
        WORD crc = crcOf(bytes, count);
        check[0] = HIBYTE(crc);
        check[1] = LOBYTE(crc);
        return 2;
    }
    check[0] = 0;
    for (DWORD n = 0; n < count; ++n) {
        check[0] = BYTE(check[0] + bytes[n]);
    }
    return 1;
}

void endFile(Modem* modem, ModemEnd how)
{
    if (!modem->fileOpen) {
        return;
    }
    modem->fileOpen = false;
    const char* problem = modem->work->end(modem->context, &modem->file, how);
    if (problem != nullptr) {
        lstrcpynA(modem->status, problem, MODEM_STATUS);
    } else if (how == END_WHOLE) {
        ++modem->fileCount;
    }
}

DWORD feedModem(Modem* modem, const BYTE* bytes, DWORD count, DWORD now)
{
    DWORD n = 0;
    modem->now = now;
    modem->discard = false;
    while (n < count && modem->result == RESULT_RUNNING) {
        DWORD wanted = modem->blockSize - modem->blockHave;
        if (modem->discard) {
            isHostCancel(modem, bytes[n++]);
        } else if (wanted > 1) {
            // All but the last byte of a block, which its state takes.
            wanted = wanted - 1 < count - n ? wanted - 1 : count - n;
            memcpy(modem->block + modem->blockHave, bytes + n, wanted);
            modem->blockHave += wanted;
            modem->since = now;
            n += wanted;
        } else {
            modem->state->onByte(modem, bytes[n++]);
        }
    }
    return n;
}

void tickModem(Modem* modem, DWORD now)
{
    modem->now = now;
    if (now - modem->since >= modem->patience) {
        modem->since = now;
        modem->state->onSilence(modem);
    }
}

void cancelModem(Modem* modem, DWORD now)
{
    modem->now = now;
    if (modem->state->listening || modem->cancelled) {
        abortModem(modem);
        return;
    }
    modem->cancelled = true;
    modem->since = now;
    modem->patience = CANCEL_MS;
}

void abortModem(Modem* modem)
{
    endModem(modem, RESULT_CANCELLED, "Cancelled", true);
}

void skipFile(Modem* modem)
{
    modem->skip = modem->fileOpen;
}
