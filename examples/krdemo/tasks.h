// What the transfer window asks of the host beside transfers, on the worker's thread.
#ifndef KRDEMO_TASKS_H
#define KRDEMO_TASKS_H

#include "worker.h"

struct HostName {
    char szName[MAX_PATH];
};

struct TaskShows {
    void (*pfnDirectory)(Report* pReport); // szName: its path, and its entries
    void (*pfnLine)(Report* pReport);      // szText, for the log
    void (*pfnRemoved)(Report* pReport);   // szName
    void (*pfnAdded)(Report* pReport);     // szName; cbDone: its size; nNumber: 1 for a directory
    void (*pfnCount)(Report* pReport);     // cbDone: bytes read so far
};

// The context of all of these tasks.
struct HostTask {
    char szName[MAX_PATH];
    char szNewName[MAX_PATH];
    bool fAsk; // before each deletion, or before a file is renamed over another one
    DWORD cNames;
    HostName* pNames; // freed by the task
    DWORD cbEntry;    // size of the file that is renamed
    TaskShows shows;
};

// Enters a directory, unless the name is empty, and lists it.
void enterDirectory(Worker* pWorker, void* pContext);
void makeDirectory(Worker* pWorker, void* pContext);
void removeDirectory(Worker* pWorker, void* pContext);
void renameFile(Worker* pWorker, void* pContext);
void deleteFiles(Worker* pWorker, void* pContext);

// Reads all files of the directory and tells their number, size and sum.
void checkFiles(Worker* pWorker, void* pContext);

#endif
