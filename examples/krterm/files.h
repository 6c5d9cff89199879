// The local files of a transfer: those that are sent, one after the other, and the one that is
// being received. Texts that are returned say what went wrong, null means nothing.
#ifndef KRTERM_FILES_H
#define KRTERM_FILES_H

#include "modem.h"

// ---- sending

// Opens a file and tells what YMODEM says of it.
const char* openForSending(const char* path, ModemFile* file);
const char* readSending(BYTE* bytes, DWORD count, DWORD* read);
void closeSending();

// ---- receiving

// The local path for a file of the host, or what is wrong with its name.
const char* pathFor(const char* folder, const char* hostName, char (&path)[MAX_PATH]);
bool isThere(const char* path);

// The file has a name of its own until it is whole; then it takes its name and the time that the
// host gave it. One that is there already is replaced if that is allowed.
const char* beginReceiving(const char* path);
const char* writeReceiving(const BYTE* bytes, DWORD count);
const char* keepReceived(const char* path, DWORD time, bool replace);
void dropReceived();

#endif
