// The local files of a transfer: those that are sent, one after the other, and the one that is
// being received. Texts that are returned say what went wrong, null means nothing.
#ifndef KRTERM_FILES_H
#define KRTERM_FILES_H

#include "modem.h"

// ---- sending

// Opens a file and tells what YMODEM says of it.
const char* openForSending(const char* pszPath, ModemFile* pFile);
const char* readSending(BYTE* pb, DWORD cb, DWORD* pcbRead);
void closeSending();

// ---- receiving

// The local path for a file of the host, or what is wrong with its name.
const char* pathFor(const char* pszFolder, const char* pszHostName, char (&szPath)[MAX_PATH]);
bool isThere(const char* pszPath);

// The file has a name of its own until it is whole; then it takes its name and the time that the
// host gave it. One that is there already is replaced if that is allowed.
const char* beginReceiving(const char* pszPath);
const char* writeReceiving(const BYTE* pb, DWORD cb);
const char* keepReceived(const char* pszPath, DWORD dwTime, bool fReplace);
void dropReceived();

#endif
