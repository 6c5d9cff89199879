#include "check.h"
#include "options.h"

namespace {

constexpr DWORD CB_CHUNK = 256 * 1024;

struct Check {
    char szFolder[MAX_PATH];
    HANDLE hFind; // the entries that are still to come, and the next of them
    WIN32_FIND_DATAA next;
    bool fNext;
    HANDLE hFile; // the file in hand
    CheckState state;
    bool fRunning;
    bool fStop;
};

Check s_check = {};

// Opens the next file of the folder that can be opened.
void openNext()
{
    char szFile[MAX_PATH];
    s_check.hFile = INVALID_HANDLE_VALUE;
    while (s_check.hFile == INVALID_HANDLE_VALUE && s_check.fNext) {
        if ((s_check.next.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
            joinPath(szFile, s_check.szFolder, s_check.next.cFileName)) {
            s_check.hFile = CreateFileA(szFile, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        }
        s_check.fNext = FindNextFileA(s_check.hFind, &s_check.next) != 0;
    }
    s_check.state.fDone = s_check.hFile == INVALID_HANDLE_VALUE;
    s_check.state.cFiles += !s_check.state.fDone;
}

void readChunk()
{
    static BYTE s_chunk[CB_CHUNK];
    DWORD cbRead = 0;
    ReadFile(s_check.hFile, s_chunk, CB_CHUNK, &cbRead, nullptr);
    for (DWORD n = 0; n < cbRead; ++n) {
        s_check.state.dwSum = s_check.state.dwSum * 31 + s_chunk[n];
    }
    s_check.state.cbRead += cbRead;
    if (cbRead == 0) {
        CloseHandle(s_check.hFile);
        openNext();
    }
}

} // namespace

bool startCheck(const char* pszFolder)
{
    char szMask[MAX_PATH];
    if (s_check.fRunning || !joinPath(szMask, pszFolder, "*")) {
        return false;
    }
    s_check = {};
    lstrcpynA(s_check.szFolder, pszFolder, MAX_PATH);
    s_check.hFind = FindFirstFileA(szMask, &s_check.next);
    s_check.fRunning = s_check.fNext = s_check.hFind != INVALID_HANDLE_VALUE;
    if (s_check.fRunning) {
        openNext();
    }
    return s_check.fRunning;
}

bool isCheckRunning()
{
    return s_check.fRunning;
}

bool continueCheck(CheckState* pState)
{
    if (!s_check.fRunning) {
        return false;
    }
    if (s_check.fStop && !s_check.state.fDone) {
        CloseHandle(s_check.hFile);
        s_check.state.fDone = true;
    } else if (!s_check.state.fDone) {
        readChunk();
    }
    if (s_check.state.fDone) {
        FindClose(s_check.hFind);
        s_check.fRunning = false;
    }
    *pState = s_check.state;
    return true;
}

void stopCheck()
{
    s_check.fStop = s_check.fRunning;
}
