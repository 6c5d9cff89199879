// The worker: a thread that has the link to the host and does one task after another, so that
// no window ever waits for the host. What a task has to tell comes to the windows' thread as
// messages. A worker that doesn't stop when it is told to is left to itself: it tidies up and
// ends when the host lets it, nobody listens to it any more, and the next task gets a new one.
#ifndef KRDEMO_WORKER_H
#define KRDEMO_WORKER_H

#include "host.h"
#include "unfinished.h"

struct Worker;

struct DirEntry {
    char szName[MAX_PATH];
    DWORD cbSize;
    bool fDirectory;
};

// What a task tells. Shown by pfnShow on the windows' thread, unless the worker has been left
// by then.
struct Report {
    DWORD nWorker; // set by report()
    void (*pfnShow)(Report* pReport);
    char szName[MAX_PATH];
    char szText[MAX_WORDS + MAX_PATH];
    DWORD cbDone, cbAll;
    LONG nNumber;
    bool fProgress;     // cbDone is brought up to date when it is shown
    DirEntry* pEntries; // belongs to the report; pfnShow may take it
    DWORD cEntries;
};

// ---- on the windows' thread

// Makes ready for a host. Nothing is asked of it before the first task.
bool openWorker(const Host* pHost, const HostAddress* pAddress, HWND hwndOwner);

// Leaves the worker, whatever it does. What it was about to receive goes.
void closeWorker();

// Starts a task, with a copy of its context, and tells its end. The task frees what its
// context refers to. Gives false if a task is running or there is no thread.
typedef void (*TaskProc)(Worker* pWorker, void* pContext);
bool startTask(TaskProc pfnTask, const void* pContext, size_t cbContext,
               void (*pfnEnd)(bool fStopped));
bool isTaskRunning();
void stopTask();

// A new worker begins in this directory of the host.
void noteHostPath(const char* pszPath);

// ---- on the worker's thread

const Host* hostOf(const Worker* pWorker);
HostLink* linkOf(const Worker* pWorker);
bool isStopped(const Worker* pWorker);

// Tells something. Takes the entries of the report.
void report(Worker* pWorker, const Report* pReport);

// The same for bytes so far, of which only the latest matter.
void reportProgress(Worker* pWorker, DWORD cbDone, void (*pfnShow)(Report* pReport));

// Asks the user, in a message box of the given kind. Gives the button, or IDCANCEL if the task
// was stopped meanwhile.
int ask(Worker* pWorker, const char* pszQuestion, UINT uType);

// After a failure: the host's current directory is the one that the user sees.
void returnTo(Worker* pWorker, const char* pszPath);

// Ends the task for the user, who waits for nothing that the task still tidies up after it.
void endTask(Worker* pWorker);

// As if the user had stopped the task.
void stopFromWithin(Worker* pWorker);

// The local file that is being received. It goes when the worker is left.
Unfinished* unfinishedOf(Worker* pWorker);

#endif
