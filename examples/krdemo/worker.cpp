#include "worker.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr char CLASS[] = "KRDEMO.Worker";
constexpr char ASK_CAPTION[] = "Sample caller";
constexpr UINT WM_REPORT = WM_APP;
constexpr UINT_PTR TIMER_PATIENCE = 1;
constexpr UINT PATIENCE_MS = 400; // for a task that was stopped, and a worker that is closed

} // namespace

struct Worker {
    LONG cOwners; // the windows' thread and the worker's own
    DWORD nNumber;
    HANDLE hThread;
    HANDLE hWake;   // there is a task, or the worker has been left
    HANDLE hAnswer; // there is an answer, or the task is to stop
    const Host* pHost;
    HostLink* pLink;
    HWND hwndReports;
    TaskProc pfnTask;
    void* pContext;
    LONG fStop, fLeft;
    LONG nAnswer;
    bool fEnded; // the task in hand is only tidying up
    LONG cbDone, fProgressPosted;
    Unfinished unfinished;
};

namespace {

// What the windows' thread knows.
struct WorkerPlace {
    const Host* pHost;
    HostAddress address;
    HWND hwndOwner, hwndReports;
    Worker* pWorker;
    DWORD nNumber;
    bool fRunning;
    void (*pfnEnd)(bool fStopped);
};

WorkerPlace s_place = {};

void releaseWorker(Worker* pWorker)
{
    if (InterlockedDecrement(&pWorker->cOwners) > 0) {
        return;
    }
    pWorker->pHost->pfnFree(pWorker->pLink);
    freeUnfinished(&pWorker->unfinished);
    CloseHandle(pWorker->hWake);
    CloseHandle(pWorker->hAnswer);
    free(pWorker->pContext);
    free(pWorker);
}

// ---- the worker's thread

void freeReport(Report* pReport)
{
    free(pReport->pEntries);
    free(pReport);
}

void showEnd(Report* pReport)
{
    void (*pfnEnd)(bool) = s_place.pfnEnd;
    KillTimer(s_place.hwndReports, TIMER_PATIENCE);
    s_place.fRunning = false;
    pfnEnd(pReport->nNumber != 0);
}

// Once the task has ended for the user, the next one can come in.
void runTask(Worker* pWorker)
{
    TaskProc pfnTask = pWorker->pfnTask;
    void* pContext = pWorker->pContext;
    pWorker->pfnTask = nullptr;
    pWorker->pContext = nullptr;
    pWorker->fEnded = false;
    pfnTask(pWorker, pContext);
    endTask(pWorker);
    free(pContext);
}

DWORD WINAPI work(void* pContext)
{
    auto pWorker = static_cast<Worker*>(pContext);
    while (WaitForSingleObject(pWorker->hWake, INFINITE) == WAIT_OBJECT_0 && !pWorker->fLeft) {
        runTask(pWorker);
    }
    releaseWorker(pWorker);
    return 0;
}

// ---- the windows' thread

// Nobody listens to this worker any more.
void leaveWorker()
{
    Worker* pWorker = s_place.pWorker;
    if (pWorker == nullptr) {
        return;
    }
    s_place.pWorker = nullptr;
    InterlockedExchange(&pWorker->fStop, TRUE);
    InterlockedExchange(&pWorker->fLeft, TRUE);
    forbidUnfinished(&pWorker->unfinished);
    SetEvent(pWorker->hWake);
    SetEvent(pWorker->hAnswer);
    CloseHandle(pWorker->hThread);
    releaseWorker(pWorker);
}

void onPatienceEnds()
{
    KillTimer(s_place.hwndReports, TIMER_PATIENCE);
    leaveWorker();
    if (s_place.fRunning) {
        s_place.fRunning = false;
        s_place.pfnEnd(true);
    }
}

void onReport(Report* pReport)
{
    Worker* pWorker = s_place.pWorker;
    if (pWorker != nullptr && pReport->nWorker == pWorker->nNumber) {
        if (pReport->fProgress) {
            // One message stands for all that came since it was posted.
            InterlockedExchange(&pWorker->fProgressPosted, FALSE);
            pReport->cbDone = DWORD(pWorker->cbDone);
        }
        pReport->pfnShow(pReport);
    }
    freeReport(pReport);
}

LRESULT CALLBACK reportsProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_REPORT:
        onReport(reinterpret_cast<Report*>(lParam));
        return 0;
    case WM_TIMER:
        onPatienceEnds();
        return 0;
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

HWND makeReportsWindow()
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = reportsProc;
    wndclass.hInstance = GetModuleHandleA(nullptr);
    wndclass.lpszClassName = CLASS;
    RegisterClassA(&wndclass);
    return CreateWindowA(CLASS, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, wndclass.hInstance,
                         nullptr);
}

Worker* makeWorker()
{
    DWORD idThread;
    auto pWorker = static_cast<Worker*>(calloc(1, sizeof(Worker)));
    if (pWorker == nullptr) {
        return nullptr;
    }
    pWorker->pLink = s_place.pHost->pfnMake(&s_place.address);
    if (pWorker->pLink == nullptr) {
        free(pWorker);
        return nullptr;
    }
    pWorker->cOwners = 2;
    pWorker->nNumber = ++s_place.nNumber;
    pWorker->pHost = s_place.pHost;
    pWorker->hwndReports = s_place.hwndReports;
    pWorker->hWake = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    pWorker->hAnswer = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    initUnfinished(&pWorker->unfinished);
    pWorker->hThread = CreateThread(nullptr, 0, work, pWorker, 0, &idThread);
    if (pWorker->hThread == nullptr) {
        pWorker->cOwners = 1;
        releaseWorker(pWorker);
        return nullptr;
    }
    return pWorker;
}

// The worker waits for the answer, so the report stays valid while the box is open. The box
// may outlive worker and windows.
void showQuestion(Report* pReport)
{
    int nAnswer =
        MessageBoxA(s_place.hwndOwner, pReport->szText, ASK_CAPTION, UINT(pReport->nNumber));
    Worker* pWorker = s_place.pWorker;
    if (pWorker != nullptr && pWorker->nNumber == pReport->nWorker) {
        InterlockedExchange(&pWorker->nAnswer, nAnswer);
        SetEvent(pWorker->hAnswer);
    }
}

} // namespace

bool openWorker(const Host* pHost, const HostAddress* pAddress, HWND hwndOwner)
{
    closeWorker();
    s_place.pHost = pHost;
    s_place.address = *pAddress;
    s_place.hwndOwner = hwndOwner;
    if (s_place.hwndReports == nullptr) {
        s_place.hwndReports = makeReportsWindow();
    }
    return s_place.hwndReports != nullptr;
}

void closeWorker()
{
    Worker* pWorker = s_place.pWorker;
    KillTimer(s_place.hwndReports, TIMER_PATIENCE);
    s_place.fRunning = false;
    if (pWorker == nullptr) {
        return;
    }
    // Most often it can still tidy up on the host.
    HANDLE hThread = nullptr;
    DuplicateHandle(GetCurrentProcess(), pWorker->hThread, GetCurrentProcess(), &hThread, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    InterlockedExchange(&pWorker->fStop, TRUE);
    pWorker->pHost->pfnAbort(pWorker->pLink);
    leaveWorker();
    WaitForSingleObject(hThread, PATIENCE_MS);
    CloseHandle(hThread);
}

bool startTask(TaskProc pfnTask, const void* pContext, size_t cbContext,
               void (*pfnEnd)(bool fStopped))
{
    if (s_place.fRunning) {
        return false;
    }
    if (s_place.pWorker == nullptr) {
        s_place.pWorker = makeWorker();
    }
    void* pCopy = malloc(cbContext + 1);
    if (s_place.pWorker == nullptr || pCopy == nullptr) {
        free(pCopy);
        return false;
    }
    if (cbContext > 0) {
        memcpy(pCopy, pContext, cbContext);
    }
    Worker* pWorker = s_place.pWorker;
    pWorker->pContext = pCopy;
    pWorker->pfnTask = pfnTask;
    pWorker->fStop = FALSE;
    ResetEvent(pWorker->hAnswer);
    s_place.fRunning = true;
    s_place.pfnEnd = pfnEnd;
    SetEvent(pWorker->hWake);
    return true;
}

bool isTaskRunning()
{
    return s_place.fRunning;
}

void stopTask()
{
    Worker* pWorker = s_place.pWorker;
    if (!s_place.fRunning || pWorker == nullptr || pWorker->fStop) {
        return;
    }
    InterlockedExchange(&pWorker->fStop, TRUE);
    pWorker->pHost->pfnAbort(pWorker->pLink);
    SetEvent(pWorker->hAnswer);
    SetTimer(s_place.hwndReports, TIMER_PATIENCE, PATIENCE_MS, nullptr);
}

void noteHostPath(const char* pszPath)
{
    lstrcpynA(s_place.address.szPath, pszPath, MAX_PATH);
}

const Host* hostOf(const Worker* pWorker)
{
    return pWorker->pHost;
}

HostLink* linkOf(const Worker* pWorker)
{
    return pWorker->pLink;
}

bool isStopped(const Worker* pWorker)
{
    return pWorker->fStop != FALSE;
}

void report(Worker* pWorker, const Report* pReport)
{
    auto pCopy = static_cast<Report*>(malloc(sizeof(Report)));
    if (pCopy == nullptr) {
        free(pReport->pEntries);
        return;
    }
    *pCopy = *pReport;
    pCopy->nWorker = pWorker->nNumber;
    if (pWorker->fLeft ||
        !PostMessageA(pWorker->hwndReports, WM_REPORT, 0, reinterpret_cast<LPARAM>(pCopy))) {
        freeReport(pCopy);
    }
}

void reportProgress(Worker* pWorker, DWORD cbDone, void (*pfnShow)(Report* pReport))
{
    InterlockedExchange(&pWorker->cbDone, LONG(cbDone));
    if (InterlockedExchange(&pWorker->fProgressPosted, TRUE) == FALSE) {
        Report progress = {};
        progress.pfnShow = pfnShow;
        progress.fProgress = true;
        report(pWorker, &progress);
    }
}

int ask(Worker* pWorker, const char* pszQuestion, UINT uType)
{
    Report question = {};
    question.pfnShow = showQuestion;
    question.nNumber = LONG(uType);
    lstrcpynA(question.szText, pszQuestion, sizeof question.szText);
    if (isStopped(pWorker)) {
        return IDCANCEL;
    }
    InterlockedExchange(&pWorker->nAnswer, IDCANCEL);
    report(pWorker, &question);
    WaitForSingleObject(pWorker->hAnswer, INFINITE);
    return isStopped(pWorker) ? IDCANCEL : int(pWorker->nAnswer);
}

// Whatever the connection has come to, the next one begins there.
void returnTo(Worker* pWorker, const char* pszPath)
{
    pWorker->pHost->pfnAbort(pWorker->pLink);
    lstrcpynA(pWorker->pLink->szPath, pszPath, MAX_PATH);
}

void endTask(Worker* pWorker)
{
    Report end = {};
    end.pfnShow = showEnd;
    end.nNumber = pWorker->fStop;
    if (!pWorker->fEnded) {
        pWorker->fEnded = true;
        report(pWorker, &end);
    }
}

// A task that is only tidying up has nothing left to stop: the mark may be that of the next one.
void stopFromWithin(Worker* pWorker)
{
    if (!pWorker->fEnded) {
        InterlockedExchange(&pWorker->fStop, TRUE);
    }
}

Unfinished* unfinishedOf(Worker* pWorker)
{
    return &pWorker->unfinished;
}
