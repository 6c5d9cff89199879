// What the command line says.
#ifndef KRDEMO_OPTIONS_H
#define KRDEMO_OPTIONS_H

#include "host.h"

// For a language code of 12 characters, which is the most that KRHAUL takes.
constexpr size_t CCH_LANGUAGE = 13;

struct DemoOptions {
    char szFirst[MAX_PATH];    // local folder, or the folder to copy from
    char szSecond[MAX_PATH];   // folder served as the host, or the folder to copy to
    bool fCopy;                // copy files, with a status window alone
    bool fConnect;             // ask for a server
    bool fServer;              // the host is the server of this address
    HostAddress server;        // as the command line or the user has it
    DWORD cbPerSecond;         // speed of the line of the built-in host
    char szLanguage[CCH_LANGUAGE];
};

// Reads "[LOCAL [HOST | URL]] [/connect] [/copy] [/speed:BYTES] [/language:CODE]", where URL is "ftp://[user[:password]@]server[:port][/directory]". Without
// folders the program's own folder is the local one, and a folder for temporary files the host;
// without a language it is English.
void readOptions(DemoOptions* pOptions);

// Joins a folder and a name. Gives false, with an empty result, if they don't fit.
bool joinPath(char (&szPath)[MAX_PATH], const char* pszFolder, const char* pszName);

// The system's text for one of its errors, without a line end.
void systemWords(DWORD dwError, char (&szWords)[MAX_WORDS]);

#endif
