// What the sample caller needs of a host. The functions of one host stand in one table, so
// that another host is one more file with its table.
//
// All but pfnMake and pfnAbort run on the worker's thread and may take as long as the host
// likes. A host connects by itself when it has to, also after it has lost its connection.
#ifndef KRDEMO_HOST_H
#define KRDEMO_HOST_H

#include <windows.h>

constexpr DWORD MAX_WORDS = 300;

// Where a host is and where to begin on it.
struct HostAddress {
    char szServer[MAX_PATH]; // name of a server, or the folder that the built-in host serves
    WORD nPort;
    char szUser[128]; // empty for a guest
    char szPassword[128];
    char szPath[MAX_PATH]; // directory of the host; empty for the one that it begins in
    DWORD cbPerSecond;     // speed of the built-in host's line
};

// The beginning of every host's own record.
struct HostLink {
    char szPath[MAX_PATH];   // the current directory as the host writes it
    char szWords[MAX_WORDS]; // why the last call failed, in the host's words if it had any
};

// Called for each entry of a directory.
typedef void (*HostEntryProc)(void* pContext, const char* pszName, DWORD cbSize, bool fDirectory);

// Names are relative to the host's current directory. All with the result bool give false on
// failure, with the reason in szWords.
struct Host {
    // Makes the record, with nothing asked of the host yet. Gives 0 if there is no memory.
    HostLink* (*pfnMake)(const HostAddress* pAddress);
    void (*pfnFree)(HostLink* pLink);
    // Called by another thread: a call that waits for the host should end now.
    void (*pfnAbort)(HostLink* pLink);
    bool (*pfnChangeDir)(HostLink* pLink, const char* pszDir);
    bool (*pfnList)(HostLink* pLink, HostEntryProc pfnEntry, void* pContext);
    bool (*pfnMakeDir)(HostLink* pLink, const char* pszDir);
    bool (*pfnRemoveDir)(HostLink* pLink, const char* pszDir);
    bool (*pfnRename)(HostLink* pLink, const char* pszOldName, const char* pszNewName);
    bool (*pfnDelete)(HostLink* pLink, const char* pszName);
    bool (*pfnExists)(HostLink* pLink, const char* pszName, bool* pfThere);
    // One file at a time is open. It is whole only if pfnCloseFile says so. nType is one of
    // XFERTYPE_TEXT and XFERTYPE_BINARY. 0 bytes read are the end of the file.
    bool (*pfnOpenFile)(HostLink* pLink, const char* pszName, bool fWrite, int nType);
    bool (*pfnRead)(HostLink* pLink, void* pBuffer, DWORD cb, DWORD* pcbRead);
    bool (*pfnWrite)(HostLink* pLink, const void* pBuffer, DWORD cb);
    bool (*pfnCloseFile)(HostLink* pLink);
};

extern const Host FOLDER_HOST;
extern const Host FTP_HOST;

#endif
