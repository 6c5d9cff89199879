// A transfer as the windows show it: the worker moves the files one by one, and each is shown
// in a status window.
#ifndef KRDEMO_JOB_H
#define KRDEMO_JOB_H

#include "../../include/krhaul.h"

// Who wants to know how a job goes.
struct JobEvents {
    // Bytes moved so far of all bytes of the job.
    void (*pfnProgress)(DWORD cbDone, DWORD cbAll);
    // A file has arrived, or hasn't, for the reason that is told.
    void (*pfnFile)(const char* pszTarget, DWORD cbSize, const char* pszFailure);
    // The job is over.
    void (*pfnEnd)(bool fStopped);
};

struct JobOptions {
    const char* pszTitle;
    const char* pszLocalFolder;
    const char* pszHostDir; // null or empty for the host's current directory
    bool fSend;
    int nType; // one of the XFERTYPE_ values
    bool fAskBeforeReplace;
    HWND hwndOwner;
    DWORD fCorner;    // the status window goes into the corner of the screen
    bool fKeepWindow; // the status window stays at the end, to be read
    // The size of a host file, 0 if it isn't known. Can be null when files are sent.
    DWORD (*pfnHostSize)(const char* pszName);
    JobEvents events;
    const char* pszLanguage; // of the status window
};

// Starts a job with the worker's host: the list holds names on the side that files come from,
// and names for the other side, or nothing where the name stays. Takes the list. Gives false if
// there is no memory, a task is running or no status window is to be had.
bool startJob(const JobOptions* pOptions, XferFileList list);

bool isJobRunning();

// The status window, 0 if there is none, and whether the user has done with it after the end.
HWND jobWindow();
bool isJobWindowDismissed();
void closeJobWindow();

#endif
