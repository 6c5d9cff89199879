// What the sample caller needs of a host. The functions of one host stand in one table; the
// built-in one serves a folder of this machine.
#ifndef KRDEMO_HOST_H
#define KRDEMO_HOST_H

#include <windows.h>

// Called for each entry of a directory.
typedef void (*HostEntryProc)(const char* pszName, DWORD cbSize, bool fDirectory);

// Names are relative to the host's current directory; directories may hold "..", and can't
// lead out of the host. All but pfnPath give false on failure.
struct Host {
    bool (*pfnOpen)(const char* pszRoot);
    bool (*pfnChangeDir)(const char* pszDir);
    bool (*pfnList)(HostEntryProc pfnEntry);
    bool (*pfnMakeDir)(const char* pszDir);
    bool (*pfnRemoveDir)(const char* pszDir);
    bool (*pfnRename)(const char* pszOldName, const char* pszNewName);
    bool (*pfnDelete)(const char* pszName);
    // The folder of this machine that a host directory stands for.
    bool (*pfnFolder)(const char* pszDir, char (&szFolder)[MAX_PATH]);
    // The current directory as the host writes it.
    const char* (*pfnPath)();
};

extern const Host FOLDER_HOST;

#endif
