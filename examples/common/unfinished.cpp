#include "unfinished.h"
#include "text.h"

namespace sample {

namespace {

constexpr char PREFIX[] = "krd";

bool closeHandle(Unfinished* unfinished)
{
    HANDLE handle = unfinished->handle;
    unfinished->handle = INVALID_HANDLE_VALUE;
    return handle == INVALID_HANDLE_VALUE || CloseHandle(handle);
}

// A name that nothing in the folder has. Empty if there can't be one.
std::string newName(const std::string& folder)
{
    char path[MAX_PATH];
    return GetTempFileNameA(folder.c_str(), PREFIX, 0, path) != 0 ? path : "";
}

// A file that has the name steps aside until the new one has it.
bool replaceFile(const std::string& from, const std::string& to)
{
    std::string aside = newName(folderOf(to));
    if (aside.empty() || !DeleteFileA(aside.c_str()) || !MoveFileA(to.c_str(), aside.c_str())) {
        return false;
    }
    if (!MoveFileA(from.c_str(), to.c_str())) {
        DWORD error = GetLastError();
        MoveFileA(aside.c_str(), to.c_str());
        SetLastError(error);
        return false;
    }
    SetFileAttributesA(aside.c_str(), FILE_ATTRIBUTE_NORMAL); // it may be read-only
    DeleteFileA(aside.c_str());
    return true;
}

} // namespace

bool openUnfinished(Unfinished* unfinished, const std::string& folder)
{
    unfinished->path = newName(folder);
    if (unfinished->path.empty()) {
        return false;
    }
    unfinished->handle = CreateFileA(unfinished->path.c_str(), GENERIC_WRITE, 0, nullptr,
                                     CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return unfinished->handle != INVALID_HANDLE_VALUE;
}

bool writeUnfinished(const Unfinished* unfinished, const void* bytes, size_t count)
{
    DWORD written = 0;
    if (!WriteFile(unfinished->handle, bytes, DWORD(count), &written, nullptr)) {
        return false;
    }
    SetLastError(ERROR_DISK_FULL);
    return written == count;
}

bool nameUnfinished(Unfinished* unfinished, const std::string& path, bool replace)
{
    if (!closeHandle(unfinished) || (!MoveFileA(unfinished->path.c_str(), path.c_str()) &&
                                     !(replace && replaceFile(unfinished->path, path)))) {
        return false;
    }
    unfinished->path.clear();
    return true;
}

void giveUpUnfinished(Unfinished* unfinished)
{
    closeHandle(unfinished);
    if (!unfinished->path.empty()) {
        DeleteFileA(unfinished->path.c_str());
        unfinished->path.clear();
    }
}

} // namespace sample
