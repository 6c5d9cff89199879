#include "copy.h"
#include "transfer.h"
#include "work.h"
#include "../../include/krhaul.h"
#include "../common/text.h"

namespace demo {

namespace {

size_t fileCount;
size_t copiedCount;

std::vector<MovedFile> filesIn(const std::string& folder)
{
    std::vector<MovedFile> files;
    WIN32_FIND_DATAA found;
    HANDLE search = FindFirstFileA(sample::joinPath(folder, "*").c_str(), &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &found)) {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            std::string name = found.cFileName;
            files.push_back({name, name, name, found.nFileSizeLow});
        }
    }
    FindClose(search);
    return files;
}

void addLine(HWND log, const std::string& line)
{
    LRESULT row = SendMessageA(log, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    SendMessageA(log, LB_SETTOPINDEX, WPARAM(row), 0);
}

} // namespace

bool startCopy(const Options& options, HWND main, HWND log)
{
    Transfer transfer;
    openHost(options.host);
    transfer.title = "Copying files";
    transfer.send = true;
    transfer.localFolder = options.local;
    transfer.hostDir = "/";
    transfer.type = XFERTYPE_BINARY;
    transfer.keepWindow = true;
    transfer.owner = main;
    transfer.language = options.language;
    transfer.files = filesIn(options.local);
    transfer.onProgress = [](DWORD, DWORD) {};
    transfer.onFile = [=](const MovedFile& file, DWORD size, const std::string& failure) {
        copiedCount += failure.empty();
        addLine(log, failure.empty() ? file.local + ", " + sample::grouped(size) + " bytes"
                                     : file.local + ": " + failure);
    };
    transfer.onEnd = [=](bool stopped) { addLine(log, stopped ? "Stopped." : "Done."); };
    fileCount = transfer.files.size();
    return fileCount > 0 && startTransfer(std::move(transfer));
}

bool hasCopiedAll()
{
    return fileCount > 0 && copiedCount == fileCount;
}

} // namespace demo
