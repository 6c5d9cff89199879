#include "transfer.h"
#include "files.h"
#include "../../include/krhaul.h"

#include <stdio.h>
#include <string.h>

namespace {

struct Transfer {
    TransferOrder order;
    const TransferEvents* pEvents;
    HWND hwndOwner;
    UINT uQuestion;
    Modem modem;
    HWND hdlgStat;       // 0 if there is none
    WNDPROC pfnStatProc; // its procedure before ours
    const char* pszNext; // sending: the next file
    char szPath[MAX_PATH];
    char szProblem[MODEM_STATUS]; // the last one with a file of a batch
    DWORD nFile, cErrorsShown, cRetriesShown;
    bool fReplace, fFeeding, fEndShown;
    bool fCancel, fSkip; // the user has pressed a button
};

Transfer s_transfer;

// ---- the status window

// The window tells nobody of its buttons, so we look at its commands first. What they want is
// done later, since a window is better not destroyed while one of its buttons calls.
LRESULT CALLBACK statProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_COMMAND && LOWORD(wParam) == XFERSTAT_CANCEL) {
        s_transfer.fCancel = true;
    } else if (uMessage == WM_COMMAND && LOWORD(wParam) == XFERSTAT_BUTTON) {
        s_transfer.fSkip = true;
    }
    return CallWindowProcA(s_transfer.pfnStatProc, hwnd, uMessage, wParam, lParam);
}

bool openStatusWindow()
{
    char szTitle[64];
    const TransferOrder* pOrder = &s_transfer.order;
    wsprintfA(szTitle, pOrder->fSend ? "Sending by %s" : "Receiving by %s",
              protocolName(pOrder->nProtocol));
    s_transfer.hdlgStat =
        hdlgXferStatCreate(szTitle, pOrder->fSend, s_transfer.hwndOwner, TRUE, FALSE);
    if (s_transfer.hdlgStat == nullptr) {
        return false;
    }
    s_transfer.pfnStatProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(s_transfer.hdlgStat, GWL_WNDPROC, reinterpret_cast<LONG>(statProc)));
    vXferStatButtonText(s_transfer.hdlgStat, pOrder->nProtocol == YMODEM ? XFERSTAT_CAPTION_SKIP
                                                                         : XFERSTAT_CAPTION_STOP);
    nXferStatErrorInfo(s_transfer.hdlgStat, 0, 0);
    nXferStatStartTransfer(s_transfer.hdlgStat);
    return true;
}

// The keyboard goes back to the terminal.
void closeStatusWindow()
{
    if (s_transfer.hdlgStat != nullptr) {
        SendMessageA(s_transfer.hdlgStat, WM_XFERSTAT_FOCUSPARENT, 0, 0);
        nXferStatDestroy(s_transfer.hdlgStat);
        s_transfer.hdlgStat = nullptr;
    }
}

// Stores numbers and texts; the window shows them once a second.
void showProgress()
{
    char szStatus[MODEM_STATUS + 32];
    const Modem* pModem = &s_transfer.modem;
    if (s_transfer.order.nProtocol == YMODEM && s_transfer.nFile > 0) {
        wsprintfA(szStatus, "File %lu. %s", s_transfer.nFile, pModem->szStatus);
    } else {
        lstrcpynA(szStatus, pModem->szStatus, sizeof szStatus);
    }
    nXferStatStatusInfo(s_transfer.hdlgStat, szStatus);
    nXferStatCountInfo(s_transfer.hdlgStat, pModem->cbDone);
    if (pModem->cErrors != s_transfer.cErrorsShown ||
        pModem->cRetries != s_transfer.cRetriesShown) {
        s_transfer.cErrorsShown = pModem->cErrors;
        s_transfer.cRetriesShown = pModem->cRetries;
        nXferStatErrorInfo(s_transfer.hdlgStat, pModem->cErrors, pModem->cRetries);
    }
}

void showFile(const ModemFile* pFile, const char* pszFirst, const char* pszSecond)
{
    ++s_transfer.nFile;
    nXferStatFileInfo(s_transfer.hdlgStat, pszFirst, pszSecond, pFile->cbSize);
    nXferStatCountInfo(s_transfer.hdlgStat, 0);
    nXferStatStartTransfer(s_transfer.hdlgStat);
}

// The window stays, so that the end can be read.
void showEnd()
{
    char szStatus[2 * MODEM_STATUS];
    const Modem* pModem = &s_transfer.modem;
    showProgress();
    wsprintfA(szStatus, "%lu %s %s. ", pModem->cFiles, pModem->cFiles == 1 ? "file" : "files",
              s_transfer.order.fSend ? "sent" : "received");
    lstrcatA(szStatus, pModem->nResult != RESULT_DONE ? pModem->szStatus : s_transfer.szProblem);
    nXferStatStatusInfo(s_transfer.hdlgStat, szStatus);
    nXferStatEndTransfer(s_transfer.hdlgStat);
    vXferStatButtonText(s_transfer.hdlgStat, XFERSTAT_CAPTION_CLOSE);
    s_transfer.fCancel = s_transfer.fSkip = false;
    s_transfer.fEndShown = true;
}

const char* noteProblem(const char* pszName, const char* pszProblem)
{
    snprintf(s_transfer.szProblem, sizeof s_transfer.szProblem, "%.40s: %s", pszName, pszProblem);
    ++s_transfer.modem.cErrors;
    return pszProblem;
}

// ---- what the modem asks for

void putToLine(void*, const BYTE* pb, DWORD cb)
{
    s_transfer.pEvents->pfnPut(pb, cb);
}

void showStray(void*, BYTE b)
{
    s_transfer.pEvents->pfnStray(&b, 1);
}

// A file that can't be read is left out.
bool nextFile(void*, ModemFile* pFile)
{
    while (*s_transfer.pszNext != '\0') {
        const char* pszPath = s_transfer.pszNext;
        s_transfer.pszNext += strlen(pszPath) + 1;
        const char* pszProblem = openForSending(pszPath, pFile);
        if (pszProblem == nullptr) {
            bool fNamed = s_transfer.order.nProtocol != YMODEM && s_transfer.order.szHostName[0];
            showFile(pFile, pszPath, fNamed ? s_transfer.order.szHostName : pFile->szName);
            return true;
        }
        noteProblem(lastPart(pszPath), pszProblem);
    }
    return false;
}

const char* readFile(void*, BYTE* pb, DWORD cb, DWORD* pcbRead)
{
    return readSending(pb, cb, pcbRead);
}

// The path for the file, or false if it has none here.
bool choosePath(const ModemFile* pFile)
{
    if (s_transfer.order.nProtocol != YMODEM) {
        lstrcpynA(s_transfer.szPath, s_transfer.order.szLocal, MAX_PATH);
        return true;
    }
    const char* pszProblem = pathFor(s_transfer.order.szLocal, pFile->szName, s_transfer.szPath);
    if (pszProblem != nullptr) {
        noteProblem(pFile->szName, pszProblem);
    }
    return pszProblem == nullptr;
}

ModemAnswer beginFile(void*, const ModemFile* pFile)
{
    bool fBatch = s_transfer.order.nProtocol == YMODEM;
    s_transfer.fReplace = !fBatch;
    bool fPath = choosePath(pFile);
    showFile(pFile, fBatch ? pFile->szName : s_transfer.order.szHostName,
             fPath ? s_transfer.szPath : "");
    if (!fPath) {
        return ANSWER_DROP;
    }
    const char* pszProblem = beginReceiving(s_transfer.szPath);
    if (pszProblem != nullptr) {
        noteProblem(lastPart(s_transfer.szPath), pszProblem);
        return ANSWER_STOP;
    }
    if (fBatch && isThere(s_transfer.szPath)) {
        PostMessageA(s_transfer.hwndOwner, s_transfer.uQuestion, 0, 0);
        return ANSWER_LATER;
    }
    return ANSWER_TAKE;
}

const char* writeFile(void*, const BYTE* pb, DWORD cb)
{
    return writeReceiving(pb, cb);
}

const char* endFile(void*, const ModemFile* pFile, ModemEnd nEnd)
{
    const char* pszProblem = nullptr;
    showProgress();
    nXferStatEndTransfer(s_transfer.hdlgStat);
    if (s_transfer.order.fSend) {
        closeSending();
    } else if (nEnd == END_WHOLE) {
        pszProblem = keepReceived(s_transfer.szPath, pFile->dwTime, s_transfer.fReplace);
    } else {
        dropReceived();
    }
    if (nEnd == END_BROKEN && s_transfer.modem.nResult == RESULT_RUNNING) {
        noteProblem(lastPart(s_transfer.szPath), "it ended before its size");
    }
    return pszProblem != nullptr ? noteProblem(lastPart(s_transfer.szPath), pszProblem) : nullptr;
}

constexpr ModemWork WORK = {putToLine, showStray, nextFile, readFile,
                            beginFile, writeFile, endFile};

// ---- what the user wants

void onButtons()
{
    bool fClosed = s_transfer.hdlgStat != nullptr && !IsWindow(s_transfer.hdlgStat);
    bool fBatch = s_transfer.order.nProtocol == YMODEM;
    bool fCancel = s_transfer.fCancel || fClosed || (s_transfer.fSkip && !fBatch);
    bool fSkip = s_transfer.fSkip && fBatch;
    s_transfer.fCancel = s_transfer.fSkip = false;
    if (s_transfer.fEndShown) {
        if (fCancel || fSkip) {
            closeStatusWindow();
        }
    } else if (fCancel && !s_transfer.modem.fCancel) {
        cancelModem(&s_transfer.modem, GetTickCount());
    } else if (fCancel && !fClosed) {
        abortModem(&s_transfer.modem);
    } else if (fSkip) {
        skipFile(&s_transfer.modem);
    }
}

void showChanges()
{
    if (s_transfer.modem.nResult == RESULT_RUNNING) {
        showProgress();
    } else if (!s_transfer.fEndShown) {
        showEnd();
    }
}

} // namespace

bool startTransfer(const TransferOrder* pOrder, HWND hwndOwner, UINT uQuestion,
                   const TransferEvents* pEvents)
{
    if (isTransferring()) {
        return false;
    }
    closeStatusWindow();
    s_transfer = {};
    s_transfer.order = *pOrder;
    s_transfer.pEvents = pEvents;
    s_transfer.hwndOwner = hwndOwner;
    s_transfer.uQuestion = uQuestion;
    s_transfer.pszNext = s_transfer.order.szzFiles;
    if (!openStatusWindow()) {
        return false;
    }
    tellHost(pOrder, pEvents->pfnPut);
    auto pfnStart = pOrder->fSend ? sendByModem : receiveByModem;
    pfnStart(&s_transfer.modem, pOrder->nProtocol, &WORK, nullptr, GetTickCount());
    showProgress();
    return true;
}

bool isTransferring()
{
    return s_transfer.pEvents != nullptr && s_transfer.modem.nResult == RESULT_RUNNING;
}

HWND transferWindow()
{
    return s_transfer.hdlgStat;
}

DWORD feedTransfer(const BYTE* pb, DWORD cb)
{
    if (!isTransferring()) {
        return 0;
    }
    DWORD cbUsed = feedModem(&s_transfer.modem, pb, cb, GetTickCount());
    showChanges();
    return cbUsed;
}

void tickTransfer()
{
    if (isTransferring()) {
        tickModem(&s_transfer.modem, GetTickCount());
    }
    if (s_transfer.hdlgStat != nullptr) {
        onButtons();
        showChanges();
    }
}

void askUser()
{
    char szText[MAX_PATH + 64];
    HWND hwnd = IsWindow(s_transfer.hdlgStat) ? s_transfer.hdlgStat : s_transfer.hwndOwner;
    if (!isTransferring()) {
        return;
    }
    wsprintfA(szText, "%s is there already. Overwrite it?", lastPart(s_transfer.szPath));
    int nButton = MessageBoxA(hwnd, szText, "KRTERM", MB_YESNOCANCEL | MB_ICONQUESTION);
    if (!isTransferring()) {
        return;
    }
    if (nButton == IDCANCEL) {
        cancelModem(&s_transfer.modem, GetTickCount());
    } else {
        s_transfer.fReplace = nButton == IDYES;
        answerModem(&s_transfer.modem, nButton == IDYES ? ANSWER_TAKE : ANSWER_DROP,
                    GetTickCount());
    }
    showChanges();
}

void closeTransfer()
{
    if (isTransferring()) {
        abortModem(&s_transfer.modem);
    }
    closeStatusWindow();
}

const Modem* lastTransfer()
{
    return &s_transfer.modem;
}
