// The built-in host: a folder of this machine, which it never leaves. Its files go over a line
// of limited speed, and have no types: bytes are moved as they are.
#include "host.h"
#include "loop.h"
#include "../common/text.h"

#include <algorithm>
#include <string.h>

namespace demo {

namespace {

constexpr UINT TICK_MS = 10;
constexpr size_t CHUNK_BYTES = 64 * 1024;

struct Folder {
    Address address;
    Request request;
    unsigned number = 0; // of the request
    HANDLE file = INVALID_HANDLE_VALUE;
    DWORD lineTick = 0; // the file was opened at this time
    double moved = 0;   // bytes of it since then
    Ticks ticks = {};
};

Folder folder;

// Applies a directory text to a host path, part by part. Returns false if it leads out of the host.
bool walk(const std::string& way, std::string* path)
{
    bool fromRoot = !way.empty() && (way[0] == '/' || way[0] == '\\');
    *path = fromRoot || path->empty() ? "/" : *path;
    for (size_t at = 0, end; at < way.size(); at = end + 1) {
        end = std::min(way.find_first_of("/\\", at), way.size());
        std::string part = way.substr(at, end - at);
        if (part == "..") {
            if (*path == "/") {
                return false;
            }
            path->resize(std::max<size_t>(path->rfind('/'), 1));
        } else if (!part.empty() && part != ".") {
            if (part.find_first_of(":*?\"<>|") != std::string::npos) {
                return false;
            }
            *path += (*path == "/" ? "" : "/") + part;
        }
    }
    return true;
}

// The file of this machine that a host path stands for; a name that nothing has if there is none.
std::string localPath(const std::string& path)
{
    std::string inside = "/";
    if (!walk(path, &inside)) {
        return "?";
    }
    std::replace(inside.begin(), inside.end(), '/', '\\');
    return sample::joinPath(folder.address.server, inside.substr(1));
}

bool isThere(const std::string& path, bool asFolder)
{
    DWORD attributes = GetFileAttributesA(localPath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (!asFolder || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
}

// ---- requests that are done at once; false leaves the reason as last error

bool listFolder(const Request& request, Answer* answer)
{
    WIN32_FIND_DATAA found;
    answer->path = request.path;
    if (!walk(request.target, &answer->path) || !isThere(answer->path, true)) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    std::string mask = sample::joinPath(localPath(answer->path), "*");
    HANDLE search = FindFirstFileA(mask.c_str(), &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &found)) {
        Entry entry;
        entry.bytes = entry.name = found.cFileName;
        entry.size = found.nFileSizeLow;
        entry.directory = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (entry.name != "." && entry.name != "..") {
            request.onEntry(std::move(entry));
        }
    }
    return search != INVALID_HANDLE_VALUE && FindClose(search);
}

bool makeFolder(const Request& request, Answer*)
{
    return CreateDirectoryA(localPath(request.path).c_str(), nullptr) != 0;
}

bool removeFolder(const Request& request, Answer*)
{
    return RemoveDirectoryA(localPath(request.path).c_str()) != 0;
}

bool renameFile(const Request& request, Answer*)
{
    return MoveFileA(localPath(request.path).c_str(), localPath(request.target).c_str()) != 0;
}

bool deleteFile(const Request& request, Answer*)
{
    return DeleteFileA(localPath(request.path).c_str()) != 0;
}

bool lookForFile(const Request& request, Answer* answer)
{
    answer->there = isThere(request.path, false);
    return true;
}

// ---- files, as the line lets them through

void finish(bool done)
{
    Answer answer;
    answer.done = done;
    answer.words = done ? "" : sample::systemWords(GetLastError());
    CloseHandle(folder.file);
    folder.file = INVALID_HANDLE_VALUE;
    stopTicks(&folder.ticks);
    auto onDone = std::move(folder.request.onDone);
    folder.request = {};
    onDone(answer);
}

// Moves a piece. Returns false at the end, and on a failure.
bool movePiece(size_t most, bool* failed)
{
    static char room[CHUNK_BYTES];
    DWORD count = 0;
    size_t given = 0;
    if (folder.request.verb == Verb::Receive) {
        *failed = !ReadFile(folder.file, room, DWORD(most), &count, nullptr) ||
                  (count > 0 && !folder.request.onBytes(room, count));
    } else {
        *failed = !folder.request.getBytes(room, most, &given) ||
                  (given > 0 && !WriteFile(folder.file, room, DWORD(given), &count, nullptr));
    }
    folder.moved += count;
    return !*failed && count > 0;
}

void CALLBACK moveOn(HWND, UINT, UINT_PTR, DWORD)
{
    bool failed = false;
    double due = double(GetTickCount() - folder.lineTick) * folder.address.bytesPerSecond / 1000;
    while (folder.moved < due) {
        size_t most = size_t(std::min(due - folder.moved + 1, double(CHUNK_BYTES)));
        if (!movePiece(most, &failed)) {
            finish(!failed);
            return;
        }
    }
}

void openFile()
{
    bool send = folder.request.verb == Verb::Send;
    folder.file =
        CreateFileA(localPath(folder.request.path).c_str(), send ? GENERIC_WRITE : GENERIC_READ,
                    send ? 0 : FILE_SHARE_READ, nullptr, send ? CREATE_ALWAYS : OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL, nullptr);
    folder.lineTick = GetTickCount();
    folder.moved = 0;
    if (folder.file == INVALID_HANDLE_VALUE) {
        finish(false);
    } else {
        startTicks(&folder.ticks, TICK_MS, moveOn);
    }
}

// In the order of the verbs; null for those that take their time.
constexpr bool (*PROCEDURES[])(const Request&, Answer*) = {
    listFolder, makeFolder, removeFolder, renameFile, deleteFile, lookForFile, nullptr, nullptr};

void carryOut()
{
    Answer answer;
    auto procedure = PROCEDURES[size_t(folder.request.verb)];
    if (procedure == nullptr) {
        openFile();
        return;
    }
    answer.done = procedure(folder.request, &answer);
    answer.words = answer.done ? "" : sample::systemWords(GetLastError());
    auto onDone = std::move(folder.request.onDone);
    folder.request = {};
    onDone(answer);
}

// ---- the host

void open(const Address& address)
{
    folder.address = address;
    CreateDirectoryA(address.server.c_str(), nullptr);
}

void stop()
{
    ++folder.number;
    stopTicks(&folder.ticks);
    if (folder.file != INVALID_HANDLE_VALUE) {
        CloseHandle(folder.file);
        folder.file = INVALID_HANDLE_VALUE;
    }
    folder.request = {};
}

void start(Request&& request)
{
    unsigned number = ++folder.number;
    folder.request = std::move(request);
    later([number] {
        if (number == folder.number) {
            carryOut();
        }
    });
}

void remove(const std::string& path, std::function<void(const Answer&)> onDone)
{
    Answer answer;
    answer.done = DeleteFileA(localPath(path).c_str()) != 0;
    answer.words = answer.done ? "" : sample::systemWords(GetLastError());
    onDone(answer);
}

} // namespace

const Host FOLDER_HOST = {open, stop, start, stop, remove};

} // namespace demo
