// Files moved between a local folder and the host's current directory, one by one, on the
// worker's thread. A file appears under its own name only when it is whole, on either side.
#ifndef KRDEMO_MOVE_H
#define KRDEMO_MOVE_H

#include "worker.h"

struct MovedFile {
    char szLocal[MAX_PATH]; // where it is: a name or path; where it goes to: a plain name
    char szHost[MAX_PATH];
    DWORD cbSize; // 0 if it isn't known
};

// Shown by functions of the job. The reports hold the number of the file from 0, for an end its
// local and host names in szName and szText.
struct MoveShows {
    void (*pfnBegin)(Report* pReport);
    void (*pfnProgress)(Report* pReport); // cbDone of this file
    void (*pfnDone)(Report* pReport);     // cbDone: its size
    void (*pfnFailed)(Report* pReport);   // szText: why
};

struct Move {
    bool fSend;
    int nType;              // one of the XFERTYPE_ values
    bool fAskBeforeReplace; // a file that is there already
    char
        szLocalFolder[MAX_PATH]; // received files go there, and names to be sent are relative to it
    char szHostDir[MAX_PATH];    // to send to; empty for the current directory
    DWORD cFiles;
    MovedFile* pFiles; // freed by the task
    MoveShows shows;
};

// Tasks; their context is a Move. The second one receives the files under names of its own into
// the folder for temporary files, and gives each copy away with pfnDone: its path in szText, the
// host's name in szName.
void moveFiles(Worker* pWorker, void* pContext);
void fetchCopies(Worker* pWorker, void* pContext);

#endif
