#include "files.h"
#include "order.h"
#include "../krdemo/safename.h"
#include "../krdemo/unfinished.h"

#include <string.h>

namespace {

// Between the beginnings of the system's time, in units of 100 nanoseconds, and the host's.
constexpr ULONGLONG UNIX_BEGIN = 116444736000000000ULL;
constexpr ULONGLONG SECOND = 10000000;

HANDLE sentFile = INVALID_HANDLE_VALUE;
Unfinished received;
bool ready;

// The system's own words for what went wrong.
const char* problemText()
{
    static char text[MODEM_STATUS];
    DWORD error = GetLastError();
    if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                           FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, error, 0, text, sizeof text, nullptr) == 0) {
        wsprintfA(text, "System error %lu", error);
    }
    return text;
}

// Hosts write names in UTF-8; a text that isn't that, or doesn't fit, stays as it is.
void convertText(const char* from, UINT fromPage, UINT toPage, char* to, int size)
{
    WCHAR wide[MAX_PATH];
    lstrcpynA(to, from, size);
    if (MultiByteToWideChar(fromPage, fromPage == CP_UTF8 ? MB_ERR_INVALID_CHARS : 0, from, -1,
                            wide, MAX_PATH) == 0) {
        return;
    }
    if (WideCharToMultiByte(toPage, 0, wide, -1, to, size, nullptr, nullptr) == 0) {
        lstrcpynA(to, from, size);
    }
}

void folderOf(const char* path, char (&folderName)[MAX_PATH])
{
    lstrcpynA(folderName, path, MAX_PATH);
    folderName[lastPart(path) - path] = '\0';
    if (folderName[0] == '\0') {
        strcpy(folderName, ".");
    }
}

DWORD unixTime(const FILETIME* time)
{
    ULONGLONG n = (ULONGLONG(time->dwHighDateTime) << 32) | time->dwLowDateTime;
    return n > UNIX_BEGIN ? DWORD((n - UNIX_BEGIN) / SECOND) : 0;
}

void setTime(HANDLE file, DWORD time)
{
    ULONGLONG n = UNIX_BEGIN + time * SECOND;
    FILETIME fileTime = {DWORD(n), DWORD(n >> 32)};
    if (time != 0) {
        SetFileTime(file, nullptr, nullptr, &fileTime);
    }
}

} // namespace

const char* openForSending(const char* path, ModemFile* file)
{
    FILETIME time = {};
    DWORD high = 0;
    closeSending();
    sentFile = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (sentFile == INVALID_HANDLE_VALUE) {
        return problemText();
    }
    file->size = GetFileSize(sentFile, &high);
    if (high != 0) {
        closeSending();
        return "The file is too large";
    }
    GetFileTime(sentFile, nullptr, nullptr, &time);
    file->time = unixTime(&time);
    file->sized = true;
    convertText(lastPart(path), CP_ACP, CP_UTF8, file->name, sizeof file->name);
    return nullptr;
}

const char* readSending(BYTE* bytes, DWORD count, DWORD* read)
{
    return ReadFile(sentFile, bytes, count, read, nullptr) ? nullptr : problemText();
}

void closeSending()
{
    if (sentFile != INVALID_HANDLE_VALUE) {
        CloseHandle(sentFile);
    }
    sentFile = INVALID_HANDLE_VALUE;
}

const char* pathFor(const char* folder, const char* hostName, char (&path)[MAX_PATH])
{
    char name[MODEM_BLOCK + 1];
    convertText(hostName, CP_UTF8, CP_ACP, name, sizeof name);
    const char* problem = nameProblem(name);
    if (problem == nullptr && strlen(folder) + strlen(name) + 2 > MAX_PATH) {
        problem = "it is too long";
    }
    if (problem == nullptr) {
        bool slash = folder[0] != '\0' && *lastPart(folder) == '\0';
        wsprintfA(path, slash ? "%s%s" : "%s\\%s", folder, name);
    }
    return problem;
}

bool isThere(const char* path)
{
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

const char* beginReceiving(const char* path)
{
    char folderName[MAX_PATH];
    if (!ready) {
        initUnfinished(&received);
        ready = true;
    }
    folderOf(path, folderName);
    return openUnfinished(&received, folderName) ? nullptr : problemText();
}

const char* writeReceiving(const BYTE* bytes, DWORD count)
{
    return writeUnfinished(&received, bytes, count) ? nullptr : problemText();
}

const char* keepReceived(const char* path, DWORD time, bool replace)
{
    setTime(received.hFile, time);
    if (nameUnfinished(&received, path, replace)) {
        return nullptr;
    }
    const char* problem = problemText();
    dropReceived();
    return problem;
}

void dropReceived()
{
    if (ready) {
        giveUpUnfinished(&received);
    }
}
