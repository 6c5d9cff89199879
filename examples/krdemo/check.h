// Reading all files of a folder, a chunk for each turn of the message loop.
#ifndef KRDEMO_CHECK_H
#define KRDEMO_CHECK_H

#include <windows.h>

struct CheckState {
    DWORD cFiles;
    DWORD cbRead;
    DWORD dwSum; // of all bytes
    bool fDone;
};

bool startCheck(const char* pszFolder);
bool isCheckRunning();

// Reads on. Gives false if no check is running, else its state.
bool continueCheck(CheckState* pState);

// Ends the check at the next turn.
void stopCheck();

#endif
