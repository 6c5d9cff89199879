// A transfer: files moved one by one, a chunk for each turn of the message loop, each shown in
// a status window. Nothing is left of a file that didn't arrive whole.
#ifndef KRDEMO_JOB_H
#define KRDEMO_JOB_H

#include "../../include/krhaul.h"

// Who wants to know how a job goes. All are called from continueJob.
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
    const char* pszFromFolder;
    const char* pszToFolder;
    HWND hwndOwner;
    DWORD fCorner;     // the status window goes into the corner of the screen
    DWORD cbPerSecond; // speed of the line
    bool fKeepWindow;  // the status window stays at the end, to be read
    JobEvents events;
    const char* pszLanguage; // of the status window
};

// Starts a job: column nFromColumn of the list holds names in the first folder, the other
// column names for the second one, or nothing where the name stays. Takes the list. Gives
// false if a job is running or no status window is to be had.
bool startJob(const JobOptions* pOptions, XferFileList list, LONG nFromColumn);

// Moves what the line takes since the last call.
void continueJob();

bool isJobRunning();

// Ends the job at the next turn.
void stopJob();

// The status window, 0 if there is none, and whether the user has done with it after the end.
HWND jobWindow();
bool isJobWindowDismissed();
void closeJobWindow();

// The number of the file in hand, from 1.
DWORD jobFileNumber();

#endif
