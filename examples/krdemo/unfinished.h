// A local file that is being received. It has a name that nothing else has until it is whole,
// and it goes if it is given up: by the thread that writes it, or by another one that no longer
// wants to wait for it.
#ifndef KRDEMO_UNFINISHED_H
#define KRDEMO_UNFINISHED_H

#include <windows.h>

struct Unfinished {
    CRITICAL_SECTION lock;
    HANDLE hFile; // INVALID_HANDLE_VALUE if there is none
    char szFile[MAX_PATH];
    bool fForbidden;
};

void initUnfinished(Unfinished* pUnfinished);
void freeUnfinished(Unfinished* pUnfinished);

// All of these give false, with the reason as last error, also when the file has been given up.
bool openUnfinished(Unfinished* pUnfinished, const char* pszFolder);
bool writeUnfinished(Unfinished* pUnfinished, const void* pBuffer, DWORD cb);

// The file is whole: it takes its name. One that is there already is replaced if that is
// allowed. If it can't be done, the unfinished file is still there to be given up.
bool nameUnfinished(Unfinished* pUnfinished, const char* pszPath, bool fReplace);

// Closes and deletes the file, if there is one.
void giveUpUnfinished(Unfinished* pUnfinished);

// The same, and lets no other come after it.
void forbidUnfinished(Unfinished* pUnfinished);

#endif
