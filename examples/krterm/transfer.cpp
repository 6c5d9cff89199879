#include "transfer.h"
#include "files.h"
#include "../../include/krhaul.h"

#include <stdio.h>
#include <string.h>

namespace {

struct Transfer {
    TransferOrder order;
    const TransferEvents* events;
    HWND owner;
    UINT question;
    Modem modem;
    HWND statusWindow; // 0 if there is none
    WNDPROC oldProc;   // its procedure before ours
    const char* next;  // sending: the next file
    char path[MAX_PATH];
    char problem[MODEM_STATUS]; // the last one with a file of a batch
    DWORD fileNumber, errorsShown, retriesShown;
    bool replace, endShown;
    bool cancelled, skip; // the user has pressed a button
};

Transfer transfer;

// ---- the status window

// The window tells nobody of its buttons, so we look at its commands first. What they want is
// done later, since a window is better not destroyed while one of its buttons calls.
LRESULT CALLBACK statProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && LOWORD(wParam) == XFERSTAT_CANCEL) {
        transfer.cancelled = true;
    } else if (message == WM_COMMAND && LOWORD(wParam) == XFERSTAT_BUTTON) {
        transfer.skip = true;
    }
    return CallWindowProcA(transfer.oldProc, hwnd, message, wParam, lParam);
}

bool openStatusWindow()
{
    char title[64];
    const TransferOrder* order = &transfer.order;
    wsprintfA(title, order->sending ? "Sending by %s" : "Receiving by %s",
              protocolName(order->protocol));
    transfer.statusWindow = hdlgXferStatCreate(title, order->sending, transfer.owner, FALSE, FALSE);
    if (transfer.statusWindow == nullptr) {
        return false;
    }
    transfer.oldProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(transfer.statusWindow, GWL_WNDPROC, reinterpret_cast<LONG>(statProc)));
    vXferStatButtonText(transfer.statusWindow,
                        order->protocol == YMODEM ? XFERSTAT_CAPTION_SKIP : XFERSTAT_CAPTION_STOP);
    nXferStatErrorInfo(transfer.statusWindow, 0, 0);
    nXferStatStartTransfer(transfer.statusWindow);
    return true;
}

// The keyboard goes back to the terminal.
void closeStatusWindow()
{
    if (transfer.statusWindow != nullptr) {
        SendMessageA(transfer.statusWindow, WM_XFERSTAT_FOCUSPARENT, 0, 0);
        nXferStatDestroy(transfer.statusWindow);
        transfer.statusWindow = nullptr;
    }
}

// Stores numbers and texts; the window shows them once a second.
void showProgress()
{
    char status[MODEM_STATUS + 32];
    const Modem* modem = &transfer.modem;
    if (transfer.order.protocol == YMODEM && transfer.fileNumber > 0) {
        wsprintfA(status, "File %lu. %s", transfer.fileNumber, modem->status);
    } else {
        lstrcpynA(status, modem->status, sizeof status);
    }
    nXferStatStatusInfo(transfer.statusWindow, status);
    nXferStatCountInfo(transfer.statusWindow, modem->done);
    if (modem->errors != transfer.errorsShown || modem->retries != transfer.retriesShown) {
        transfer.errorsShown = modem->errors;
        transfer.retriesShown = modem->retries;
        nXferStatErrorInfo(transfer.statusWindow, modem->errors, modem->retries);
    }
}

void showFile(const ModemFile* file, const char* first, const char* second)
{
    ++transfer.fileNumber;
    nXferStatFileInfo(transfer.statusWindow, first, second, file->size);
    nXferStatCountInfo(transfer.statusWindow, 0);
    nXferStatStartTransfer(transfer.statusWindow);
}

// The window stays, so that the end can be read.
void showEnd()
{
    char status[2 * MODEM_STATUS];
    const Modem* modem = &transfer.modem;
    showProgress();
    wsprintfA(status, "%lu %s %s. ", modem->fileCount, modem->fileCount == 1 ? "file" : "files",
              transfer.order.sending ? "sent" : "received");
    lstrcatA(status, modem->result != RESULT_DONE ? modem->status : transfer.problem);
    nXferStatStatusInfo(transfer.statusWindow, status);
    nXferStatEndTransfer(transfer.statusWindow);
    vXferStatButtonText(transfer.statusWindow, XFERSTAT_CAPTION_CLOSE);
    transfer.cancelled = transfer.skip = false;
    transfer.endShown = true;
}

const char* noteProblem(const char* name, const char* problem)
{
    snprintf(transfer.problem, sizeof transfer.problem, "%.24s: %s", name, problem);
    ++transfer.modem.errors;
    return problem;
}

// ---- what the modem asks for

// Some hosts answer a block and only then throw away what has come. On a quick line that would be
// the next block, which they'd miss for seconds. The moment is too short for a timer; with each
// block that is wanted again a slow host is given longer.
void letHostListen()
{
    constexpr DWORD MICROSECONDS = 300, LONGEST = 3000;
    DWORD wanted = MICROSECONDS * (1 + transfer.modem.retries);
    LONGLONG pause = wanted < LONGEST ? wanted : LONGEST;
    LARGE_INTEGER perSecond, start, now;
    QueryPerformanceFrequency(&perSecond);
    QueryPerformanceCounter(&start);
    do {
        Sleep(0); // the host may be on this machine
        QueryPerformanceCounter(&now);
    } while ((now.QuadPart - start.QuadPart) * 1000000 < pause * perSecond.QuadPart);
}

void putToLine(void*, const BYTE* bytes, DWORD count)
{
    if (transfer.order.sending) {
        letHostListen();
    }
    transfer.events->put(bytes, count);
}

void showStray(void*, BYTE byte)
{
    transfer.events->stray(&byte, 1);
}

// A file that can't be read is left out.
bool nextFile(void*, ModemFile* file)
{
    while (*transfer.next != '\0') {
        const char* path = transfer.next;
        transfer.next += strlen(path) + 1;
        const char* problem = openForSending(path, file);
        if (problem == nullptr) {
            bool named = transfer.order.protocol != YMODEM && transfer.order.hostName[0];
            showFile(file, path, named ? transfer.order.hostName : file->name);
            return true;
        }
        noteProblem(lastPart(path), problem);
    }
    return false;
}

const char* readFile(void*, BYTE* bytes, DWORD count, DWORD* read)
{
    return readSending(bytes, count, read);
}

// The path for the file, or false if it has none here.
bool choosePath(const ModemFile* file)
{
    if (transfer.order.protocol != YMODEM) {
        lstrcpynA(transfer.path, transfer.order.local, MAX_PATH);
        return true;
    }
    const char* problem = pathFor(transfer.order.local, file->name, transfer.path);
    if (problem != nullptr) {
        noteProblem(file->name, problem);
    }
    return problem == nullptr;
}

ModemAnswer beginFile(void*, const ModemFile* file)
{
    bool batch = transfer.order.protocol == YMODEM;
    transfer.replace = !batch;
    bool hasPath = choosePath(file);
    showFile(file, batch ? file->name : transfer.order.hostName, hasPath ? transfer.path : "");
    if (!hasPath) {
        return ANSWER_DROP;
    }
    const char* problem = beginReceiving(transfer.path);
    if (problem != nullptr) {
        noteProblem(lastPart(transfer.path), problem);
        return ANSWER_STOP;
    }
    if (batch && isThere(transfer.path)) {
        PostMessageA(transfer.owner, transfer.question, 0, 0);
        return ANSWER_LATER;
    }
    return ANSWER_TAKE;
}

const char* writeFile(void*, const BYTE* bytes, DWORD count)
{
    return writeReceiving(bytes, count);
}

const char* endFile(void*, const ModemFile* file, ModemEnd how)
{
    const char* problem = nullptr;
    showProgress();
    nXferStatEndTransfer(transfer.statusWindow);
    if (transfer.order.sending) {
        closeSending();
    } else if (how == END_WHOLE) {
        problem = keepReceived(transfer.path, file->time, transfer.replace);
    } else {
        dropReceived();
    }
    if (how == END_BROKEN && transfer.modem.result == RESULT_RUNNING) {
        noteProblem(lastPart(transfer.path), "it ended before its size");
    }
    return problem != nullptr ? noteProblem(lastPart(transfer.path), problem) : nullptr;
}

constexpr ModemWork WORK = {putToLine, showStray, nextFile, readFile,
                            beginFile, writeFile, endFile};

// ---- what the user wants

void onButtons()
{
    bool closed = transfer.statusWindow != nullptr && !IsWindow(transfer.statusWindow);
    bool batch = transfer.order.protocol == YMODEM;
    bool cancelled = transfer.cancelled || closed || (transfer.skip && !batch);
    bool skip = transfer.skip && batch;
    transfer.cancelled = transfer.skip = false;
    if (transfer.endShown) {
        if (cancelled || skip) {
            closeStatusWindow();
        }
    } else if (cancelled && !transfer.modem.cancelled) {
        cancelModem(&transfer.modem, GetTickCount());
    } else if (cancelled && !closed) {
        abortModem(&transfer.modem);
    } else if (skip) {
        skipFile(&transfer.modem);
    }
}

void showChanges()
{
    if (transfer.modem.result == RESULT_RUNNING) {
        showProgress();
    } else if (!transfer.endShown) {
        showEnd();
    }
}

} // namespace

bool startTransfer(const TransferOrder* order, HWND owner, UINT question,
                   const TransferEvents* events)
{
    if (isTransferring()) {
        return false;
    }
    closeStatusWindow();
    transfer = {};
    transfer.order = *order;
    transfer.events = events;
    transfer.owner = owner;
    transfer.question = question;
    transfer.next = transfer.order.files;
    if (!openStatusWindow()) {
        return false;
    }
    tellHost(order, events->put);
    auto start = order->sending ? sendByModem : receiveByModem;
    start(&transfer.modem, order->protocol, &WORK, nullptr, GetTickCount());
    showProgress();
    return true;
}

bool isTransferring()
{
    return transfer.events != nullptr && transfer.modem.result == RESULT_RUNNING;
}

HWND transferWindow()
{
    return transfer.statusWindow;
}

DWORD feedTransfer(const BYTE* bytes, DWORD count)
{
    if (!isTransferring()) {
        return 0;
    }
    DWORD used = feedModem(&transfer.modem, bytes, count, GetTickCount());
    showChanges();
    return used;
}

void tickTransfer()
{
    if (isTransferring()) {
        tickModem(&transfer.modem, GetTickCount());
    }
    if (transfer.statusWindow != nullptr) {
        onButtons();
        showChanges();
    }
}

void askUser()
{
    char text[MAX_PATH + 64];
    HWND hwnd = IsWindow(transfer.statusWindow) ? transfer.statusWindow : transfer.owner;
    if (!isTransferring()) {
        return;
    }
    wsprintfA(text, "%s is there already. Overwrite it?", lastPart(transfer.path));
    int button = MessageBoxA(hwnd, text, "KRTERM", MB_YESNOCANCEL | MB_ICONQUESTION);
    if (!isTransferring()) {
        return;
    }
    if (button == IDCANCEL) {
        cancelModem(&transfer.modem, GetTickCount());
    } else {
        transfer.replace = button == IDYES;
        answerModem(&transfer.modem, button == IDYES ? ANSWER_TAKE : ANSWER_DROP, GetTickCount());
    }
    showChanges();
}

void closeTransfer()
{
    if (isTransferring()) {
        abortModem(&transfer.modem);
    }
    closeStatusWindow();
}

const Modem* lastTransfer()
{
    return &transfer.modem;
}
