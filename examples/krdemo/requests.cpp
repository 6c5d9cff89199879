#include "requests.h"
#include "connect.h"
#include "hostpanes.h"
#include "loop.h"
#include "names.h"
#include "session.h"
#include "transfer.h"
#include "work.h"
#include "../common/text.h"

#include <algorithm>
#include <memory>
#include <string.h>

namespace demo {

using sample::format;
using sample::grouped;

namespace {

constexpr DWORD CONFIRM_ALL = 31;
constexpr DWORD CONFIRM_LOCALREPLACE = 1; // the flags that are ours
constexpr DWORD CONFIRM_HOSTDELETE = 8;
constexpr DWORD CONFIRM_HOSTREPLACE = 16;
constexpr LONG THERMOMETER_UNIT = 1024;
constexpr unsigned MAX_ODDITIES = 10;

DWORD confirmFlags = CONFIRM_ALL;

std::string nameIn(XferFileList list, LONG row, LONG column)
{
    char name[MAX_PATH];
    return XferFileList_lpszGetString(list, row, column, name, sizeof name);
}

void sayFailure(const std::string& name, const std::string& words)
{
    say(name.empty() ? words : name + ": " + words);
}

void saySize(const Entry& entry)
{
    if (entry.directory) {
        say(format("%-24s      <DIR>", entry.name.c_str()));
    } else {
        say(format("%-24s %14s", entry.name.c_str(), grouped(entry.size).c_str()));
    }
}

// ---- one request is one piece of work

Request requestFor(Verb verb, const std::string& name)
{
    Request request;
    request.verb = verb;
    request.path = pathOf(bytesOf(name));
    return request;
}

// A name that the host can't have is refused by its name.
bool isPossible(const std::string& name)
{
    std::string bytes = bytesOf(name);
    if (bytes.empty()) {
        sayFailure(name, "The host has no such characters in its names.");
    } else if (pathOf(bytes).empty()) {
        sayFailure(name, "No directory of the host is open.");
    }
    return !bytes.empty() && !pathOf(bytes).empty();
}

// Carries out one request, and calls it if that has worked.
void carryOut(Request&& request, const std::string& name, std::function<void()> onDone)
{
    request.onDone = [=](const Answer& answer) {
        if (answer.done) {
            onDone();
        } else {
            sayFailure(name, answer.words);
        }
        endWork();
    };
    askHost(std::move(request));
}

void runCommand(Verb verb, const std::string& name, std::function<void()> onDone)
{
    if (isPossible(name) && beginSessionWork()) {
        carryOut(requestFor(verb, name), name, std::move(onDone));
    }
}

// ---- directories

struct List {
    std::vector<Entry> found;
    unsigned oddities = 0;
};

// The first ones are told, so that a list of nothing else doesn't fill the log.
void noteOddity(List* list, const std::string& line)
{
    if (++list->oddities <= MAX_ODDITIES) {
        say("Left out of the list, not understood: " + line);
    }
}

void showList(const List& list, const Answer& answer, const std::string& way)
{
    std::string shown = shownName(answer.path, hostAddress().codePage);
    if (list.oddities > MAX_ODDITIES) {
        say(format("Left out in all: %u lines.", list.oddities));
    }
    if (!answer.done || shown.size() >= MAX_PATH) {
        sayFailure(way, answer.done ? "The name of this directory is too long." : answer.words);
        showAgain(sessionWindow()); // its line still has what was typed
        return;
    }
    showDirectory(sessionWindow(), answer.path, std::vector<Entry>(list.found));
}

void KRHAULAPI onMakeHostDir(DWORD, DWORD, DWORD, const char* dir)
{
    std::string name = dir;
    runCommand(Verb::MakeDir, name, [=] {
        Entry entry;
        entry.bytes = bytesOf(name);
        entry.name = shownName(entry.bytes, hostAddress().codePage);
        entry.directory = true;
        if (name.find('/') == std::string::npos) {
            addEntry(sessionWindow(), entry);
        }
        say(format("Made %s on the host.", name.c_str()));
    });
}

void KRHAULAPI onRemoveHostDir(DWORD, DWORD, DWORD, const char* dir, DWORD)
{
    std::string name = dir;
    runCommand(Verb::RemoveDir, name, [=] {
        removeEntry(sessionWindow(), name);
        say(format("Removed %s on the host.", name.c_str()));
    });
}

void KRHAULAPI onChangeHostDir(DWORD, DWORD, DWORD, const char* dir, DWORD)
{
    enterDirectory(dir);
}

void KRHAULAPI onHostFilter(DWORD, DWORD, DWORD, const char* filter)
{
    showFiltered(sessionWindow(), filter);
}

// ---- transfers

// The user can go to another local directory while files arrive.
bool isLocalFolderShown(const std::string& folder)
{
    char shown[MAX_PATH] = "";
    GetCurrentDirectoryA(MAX_PATH, shown);
    return lstrcmpiA(shown, folder.c_str()) == 0;
}

void showArrival(const MovedFile& file, DWORD size, bool sent, const std::string& place)
{
    HWND window = sessionWindow();
    const std::string& name = sent ? file.host : file.local;
    say(format("%s %s, %s bytes.", sent ? "Sent" : "Received", name.c_str(),
               grouped(size).c_str()));
    if (sent && place == hostDirectory() && file.bytes.find('/') == std::string::npos) {
        Entry entry;
        entry.bytes = file.bytes;
        entry.name = shownName(file.bytes, hostAddress().codePage);
        entry.size = size;
        addEntry(window, entry);
    } else if (!sent && isLocalFolderShown(place)) {
        nXferDandDAddLocalFileName(window, name.c_str());
    }
}

void onArrival(const MovedFile& file, DWORD size, const std::string& failure, bool sent,
               const std::string& place)
{
    if (failure.empty()) {
        showArrival(file, size, sent, place);
    } else {
        sayFailure(sent ? file.host : file.local, failure);
    }
}

void showProgress(DWORD done, DWORD all)
{
    vXferDandDSetThermometer(sessionWindow(), LONG(all / THERMOMETER_UNIT));
    vXferDandDUpdateThermometer(sessionWindow(), LONG(done / THERMOMETER_UNIT));
}

void showTransferEnd(bool stopped)
{
    showWorkEnd(stopped);
    if (!stopped) {
        vXferDandDDisplayDILText(sessionWindow(), "Done.");
    }
}

DWORD sizeOfLocal(const std::string& name)
{
    WIN32_FIND_DATAA found = {};
    HANDLE search = FindFirstFileA(name.c_str(), &found);
    FindClose(search);
    return found.nFileSizeLow;
}

// A name that comes from a host stays as it is: whether it can be that of a local file is asked
// when the file is received.
std::vector<MovedFile> filesOf(XferFileList list, bool send)
{
    std::vector<MovedFile> files(size_t(XferFileList_cGetSize(list)));
    for (size_t n = 0; n < files.size(); ++n) {
        MovedFile& file = files[n];
        file.local = nameIn(list, LONG(n), XFERLIST_LOCAL);
        file.host = nameIn(list, LONG(n), XFERLIST_HOST);
        file.host = send && file.host.empty() ? sample::lastPart(file.local) : file.host;
        file.local = !send && file.local.empty() ? file.host : file.local;
        file.bytes = bytesOf(file.host);
        const Entry* entry = findEntry(file.host);
        file.size = send ? sizeOfLocal(file.local) : entry != nullptr ? entry->size : 0;
    }
    XferFileList_vDestroy(list);
    return files;
}

Transfer transferOf(XferFileList list, bool send)
{
    char folder[MAX_PATH] = "";
    Transfer transfer;
    GetCurrentDirectoryA(MAX_PATH, folder);
    transfer.title = send ? "Sending files" : "Receiving files";
    transfer.send = send;
    transfer.localFolder = folder;
    transfer.hostDir = hostDirectory();
    transfer.type = nXferDandDGetFileTypeSelection(sessionWindow());
    transfer.inCorner = true;
    transfer.owner = sessionWindow();
    transfer.language = sessionLanguage();
    transfer.files = filesOf(list, send);
    transfer.onProgress = showProgress;
    transfer.onEnd = showTransferEnd;
    return transfer;
}

void begin(Transfer&& transfer)
{
    if (transfer.hostDir.empty()) {
        say("No directory of the host is open.");
    } else if (startTransfer(std::move(transfer))) {
        showWorkBegin();
    } else {
        say("No transfer can be started now.");
    }
}

void KRHAULAPI onSendFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD, const char* dir)
{
    Transfer transfer = transferOf(list, true);
    if (dir != nullptr && dir[0] != '\0') {
        transfer.hostDir = pathOf(bytesOf(dir));
    }
    std::string place = transfer.hostDir;
    transfer.askBeforeReplace = (confirmFlags & CONFIRM_HOSTREPLACE) != 0;
    transfer.onFile = [=](const MovedFile& file, DWORD size, const std::string& failure) {
        onArrival(file, size, failure, true, place);
    };
    begin(std::move(transfer));
}

void KRHAULAPI onReceiveFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    Transfer transfer = transferOf(list, false);
    std::string place = transfer.localFolder;
    transfer.askBeforeReplace = (confirmFlags & CONFIRM_LOCALREPLACE) != 0;
    transfer.onFile = [=](const MovedFile& file, DWORD size, const std::string& failure) {
        onArrival(file, size, failure, false, place);
    };
    begin(std::move(transfer));
}

// ---- files looked at

bool isViewerThere()
{
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    std::string viewer = sample::folderOf(program) + "KRVIEWER.EXE";
    return GetFileAttributesA(viewer.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// The copy belongs to the viewer, which takes it away. The library doesn't tell if there is none.
void showCopy(const MovedFile& file, DWORD, const std::string& failure)
{
    if (!failure.empty()) {
        say(format("%s can't be viewed: %s", file.host.c_str(), failure.c_str()));
    } else if (!isViewerThere()) {
        say(format("%s can't be viewed: KRVIEWER.EXE is missing.", file.host.c_str()));
        DeleteFileA(file.local.c_str());
    } else {
        const Address& host = hostAddress();
        bool isServer = host.protocol != Protocol::Folder;
        vXferDandDViewFile(sessionWindow(), file.local.c_str(), file.host.c_str(),
                           isServer ? host.server.c_str() : "the host", "KRDEMO", "");
    }
}

void KRHAULAPI onViewHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    char folder[MAX_PATH] = "";
    Transfer transfer = transferOf(list, false);
    GetTempPathA(MAX_PATH, folder);
    transfer.localFolder = folder;
    transfer.isCopy = true;
    transfer.onFile = showCopy;
    transfer.onEnd = showWorkEnd;
    begin(std::move(transfer));
}

void KRHAULAPI onHostFileDetails(DWORD, DWORD, DWORD, XferFileList list)
{
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        const Entry* entry = findEntry(nameIn(list, n, XFERLIST_HOST));
        if (entry != nullptr) {
            saySize(*entry);
        }
    }
    XferFileList_vDestroy(list);
}

// ---- files deleted

struct Deleting {
    std::vector<std::string> names;
    size_t next = 0;
    bool ask = false;
};

// The host's files that a name means, in order: the one that is called so, or those that match it.
void addMatches(const std::string& name, std::vector<std::string>* names)
{
    if (findEntry(name) != nullptr || name.find_first_of("*?") == std::string::npos) {
        names->push_back(name);
        return;
    }
    size_t first = names->size();
    for (const Entry& entry : entries()) {
        if (!entry.directory && sample::matches(entry.name.c_str(), name.c_str())) {
            names->push_back(entry.name);
        }
    }
    std::sort(names->begin() + LONG(first), names->end(),
              [](const std::string& one, const std::string& other) {
                  return lstrcmpA(one.c_str(), other.c_str()) < 0;
              });
}

void deleteNext(std::shared_ptr<Deleting> deleting);

void deleteLater(std::shared_ptr<Deleting> deleting)
{
    unsigned work = workNumber();
    later([=] {
        if (isWorking(work)) {
            deleteNext(deleting);
        }
    });
}

void deleteFile(std::shared_ptr<Deleting> deleting, const std::string& name)
{
    if (!isPossible(name)) {
        deleteLater(deleting);
        return;
    }
    Request request = requestFor(Verb::Delete, name);
    request.onDone = [=](const Answer& answer) {
        if (answer.done) {
            removeEntry(sessionWindow(), name);
            say(format("Deleted %s on the host.", name.c_str()));
        } else {
            sayFailure(name, answer.words);
        }
        deleteNext(deleting);
    };
    askHost(std::move(request));
}

// Asks about one file. Returns false if nothing more is to be done now.
bool mayDelete(const std::shared_ptr<Deleting>& deleting, const std::string& name)
{
    unsigned work = workNumber();
    std::string question = format("Delete %s on the host?", name.c_str());
    bool isMore = deleting->next < deleting->names.size();
    int answer = isMore ? askAboutMany(sessionWindow(), question.c_str())
                        : ask(question, MB_YESNOCANCEL | MB_ICONQUESTION);
    if (!isWorking(work)) {
        return false;
    }
    deleting->ask = answer != IDOK;
    if (answer == IDNO) {
        deleteLater(deleting);
    } else if (answer == IDCANCEL) {
        endWork();
    }
    return answer == IDYES || answer == IDOK;
}

void deleteNext(std::shared_ptr<Deleting> deleting)
{
    if (deleting->next == deleting->names.size()) {
        endWork();
        return;
    }
    std::string name = deleting->names[deleting->next++];
    if (!deleting->ask || mayDelete(deleting, name)) {
        deleteFile(deleting, name);
    }
}

void KRHAULAPI onDeleteHostFiles(DWORD, DWORD, DWORD, XferFileList list, DWORD)
{
    auto deleting = std::make_shared<Deleting>();
    deleting->ask = (confirmFlags & CONFIRM_HOSTDELETE) != 0;
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        addMatches(nameIn(list, n, XFERLIST_HOST), &deleting->names);
    }
    XferFileList_vDestroy(list);
    if (beginSessionWork()) {
        deleteLater(deleting);
    }
}

// ---- files renamed

void renameFile(const std::string& oldName, const std::string& newName)
{
    const Entry* entry = findEntry(oldName);
    Entry renamed = entry != nullptr ? *entry : Entry();
    renamed.bytes = bytesOf(newName);
    renamed.name = shownName(renamed.bytes, hostAddress().codePage);
    Request request = requestFor(Verb::Rename, oldName);
    request.target = pathOf(renamed.bytes);
    carryOut(std::move(request), oldName, [=] {
        removeEntry(sessionWindow(), oldName);
        if (renamed.bytes.find('/') == std::string::npos) {
            addEntry(sessionWindow(), renamed);
        }
        say(format("Renamed %s to %s on the host.", oldName.c_str(), newName.c_str()));
    });
}

// Many servers rename over a file without a word.
void askToReplace(const std::string& oldName, const std::string& newName)
{
    unsigned work = workNumber();
    std::string question =
        format("%s is there already on the host. Overwrite it?", newName.c_str());
    int answer = ask(question, MB_YESNO | MB_ICONQUESTION);
    if (!isWorking(work)) {
        return;
    }
    if (answer == IDYES) {
        renameFile(oldName, newName);
    } else {
        endWork();
    }
}

void onLookedFor(const Answer& answer, const std::string& oldName, const std::string& newName)
{
    if (!answer.done) {
        sayFailure(newName, answer.words);
        endWork();
    } else if (answer.there) {
        askToReplace(oldName, newName);
    } else {
        renameFile(oldName, newName);
    }
}

void KRHAULAPI onRenameHostFile(DWORD, DWORD, DWORD, const char* oldText, const char* newText)
{
    std::string oldName = oldText;
    std::string newName = newText;
    if (!isPossible(oldName) || !isPossible(newName) || !beginSessionWork()) {
        return;
    }
    if ((confirmFlags & CONFIRM_HOSTREPLACE) == 0) {
        renameFile(oldName, newName);
        return;
    }
    Request request = requestFor(Verb::Exists, newName);
    request.onDone = [=](const Answer& answer) { onLookedFor(answer, oldName, newName); };
    askHost(std::move(request));
}

// ---- settings

DWORD KRHAULAPI onConfirmFlags(DWORD, DWORD flags, DWORD isNew)
{
    confirmFlags = isNew != 0 ? flags : confirmFlags;
    return confirmFlags;
}

void KRHAULAPI onViewModeChanged(DWORD, DWORD, DWORD, DWORD mode)
{
    vXferDandDDisplayDILText(sessionWindow(),
                             mode == XFERVIEW_TWOPANE
                                 ? "Drag files from one side to the other."
                                 : "Commands of the host: pwd, dir, cd DIRECTORY, check");
}

// ---- raw commands

struct Checking {
    std::vector<std::string> paths;
    size_t next = 0;
    DWORD bytes = 0;
    DWORD sum = 0;
};

// Reads all files of the host's directory. Nobody knows beforehand how many bytes that are.
void checkNext(std::shared_ptr<Checking> checking)
{
    if (checking->next == checking->paths.size()) {
        say(format("%s files, %s bytes, sum %08lX.", grouped(DWORD(checking->next)).c_str(),
                   grouped(checking->bytes).c_str(), checking->sum));
        endWork();
        return;
    }
    Request request;
    request.verb = Verb::Receive;
    request.path = checking->paths[checking->next++];
    request.onBytes = [=](const char* bytes, size_t count) {
        checking->bytes += DWORD(count);
        for (size_t n = 0; n < count; ++n) {
            checking->sum = checking->sum * 31 + BYTE(bytes[n]);
        }
        vXferDandDUpdateThermometer(sessionWindow(), LONG(checking->bytes / THERMOMETER_UNIT));
        return true;
    };
    request.onDone = [=](const Answer& answer) {
        if (answer.done) {
            checkNext(checking);
        } else {
            sayFailure("", answer.words);
            endWork();
        }
    };
    askHost(std::move(request));
}

void commandCheck(const char*)
{
    auto checking = std::make_shared<Checking>();
    for (const Entry& entry : entries()) {
        if (!entry.directory) {
            checking->paths.push_back(pathOf(entry.bytes));
        }
    }
    vXferDandDSetThermometer(sessionWindow(), 0);
    if (beginSessionWork()) {
        checkNext(checking);
    }
}

void commandDir(const char*)
{
    for (const Entry& entry : entries()) {
        saySize(entry);
    }
}

void commandPwd(const char*)
{
    say(shownDirectory());
}

void commandCd(const char* dir)
{
    enterDirectory(dir);
}

struct RawCommand {
    const char* name;
    void (*run)(const char* argument);
};

constexpr RawCommand RAW_COMMANDS[] = {
    {"cd", commandCd}, {"check", commandCheck}, {"dir", commandDir}, {"pwd", commandPwd}};

void KRHAULAPI onHostCommand(DWORD, DWORD, DWORD, const char* text)
{
    std::string line = text;
    size_t blank = std::min(line.find(' '), line.size());
    std::string name = line.substr(0, blank);
    std::string argument = blank < line.size() ? line.substr(blank + 1) : "";
    say("> " + line);
    for (const RawCommand& command : RAW_COMMANDS) {
        if (name == command.name) {
            command.run(argument.c_str());
            return;
        }
    }
    say(format("The host doesn't know %s.", name.c_str()));
}

HostCallbacks callbacks = {sizeof(HostCallbacks), onSendFiles,      onReceiveFiles,
                           onDeleteHostFiles,     onRenameHostFile, onMakeHostDir,
                           onChangeHostDir,       onRemoveHostDir,  onConfirmFlags,
                           onHostCommand,         onHostFilter,     onViewModeChanged,
                           onHostFileDetails,     onViewHostFiles};

} // namespace

HostCallbacks* requestCallbacks()
{
    return &callbacks;
}

void enterDirectory(const std::string& typed)
{
    bool isFirst = hostDirectory().empty() && typed.empty();
    std::string way = isFirst ? hostAddress().path : typed;
    auto list = std::make_shared<List>();
    if (!way.empty() && bytesOf(way).empty()) {
        sayFailure(way, "The host has no such characters in its names.");
        return;
    }
    if (!beginSessionWork()) {
        return;
    }
    Request request;
    request.verb = Verb::List;
    request.path = hostDirectory();
    request.target = bytesOf(way);
    request.onEntry = [=](Entry&& entry) { list->found.push_back(std::move(entry)); };
    request.onOddity = [=](const std::string& line) { noteOddity(list.get(), line); };
    request.onDone = [=](const Answer& answer) {
        showList(*list, answer, way);
        endWork();
    };
    askHost(std::move(request));
}

} // namespace demo
