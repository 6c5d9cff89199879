#include "transfer.h"
#include "loop.h"
#include "names.h"
#include "statuswindow.h"
#include "work.h"
#include "../../include/krhaul.h"
#include "../common/safename.h"
#include "../common/text.h"
#include "../common/unfinished.h"

#include <algorithm>
#include <string.h>

namespace demo {

using sample::format;

namespace {

constexpr UINT SHOW_MS = 100;

// What goes as text when the type is to be chosen automatically; everything else goes as it is.
constexpr const char* TEXT_EXTENSIONS[] = {".asc", ".bat", ".c",   ".cfg",  ".cpp", ".css",
                                           ".csv", ".h",   ".htm", ".html", ".ini", ".js",
                                           ".log", ".md",  ".sh",  ".txt",  ".xml"};

struct Moving {
    Transfer transfer;
    size_t number = 0; // of the current file, from 0
    size_t shown = 0;  // of the one that the status window shows, from 1
    DWORD count = 0;   // bytes of the current file
    DWORD before = 0;  // bytes of the files before it
    DWORD all = 0;     // bytes of all files
    DWORD failed = 0;
    std::string path;     // of the local file
    bool replace = false; // the user gives up a file that is there already, or isn't asked
    std::string part;     // path on the host of what is being sent
    std::string aside;    // and of the file that it replaces
    HANDLE source = INVALID_HANDLE_VALUE;
    sample::Unfinished unfinished;
    std::string words; // why this side has given up
    Ticks ticks = {};
};

Moving moving;

const MovedFile& file()
{
    return moving.transfer.files[moving.number];
}

std::string hostPath(const std::string& name)
{
    const std::string& dir = moving.transfer.hostDir;
    return name[0] == '/' ? name : dir + (dir.back() == '/' ? "" : "/") + name;
}

bool isText()
{
    const char* extension = strrchr(file().host.c_str(), '.');
    if (moving.transfer.type != XFERTYPE_AUTOMATIC || extension == nullptr) {
        return moving.transfer.type == XFERTYPE_TEXT;
    }
    return std::any_of(std::begin(TEXT_EXTENSIONS), std::end(TEXT_EXTENSIONS),
                       [=](const char* text) { return lstrcmpiA(extension, text) == 0; });
}

// ---- what the windows show, some times a second, however many files go by

void showNow()
{
    // A text can grow on its way, and a file since it was listed.
    DWORD count = file().size > 0 ? std::min(moving.count, file().size) : moving.count;
    if (moving.shown != moving.number + 1) {
        moving.shown = moving.number + 1;
        const MovedFile& one = file();
        bool send = moving.transfer.send;
        showFile(send ? one.local.c_str() : one.host.c_str(),
                 send ? one.host.c_str() : one.local.c_str(), one.size,
                 format("File %u of %u", unsigned(moving.shown),
                        unsigned(moving.transfer.files.size())));
    }
    showCount(count, moving.failed);
    moving.transfer.onProgress(moving.before + count, moving.all);
}

void CALLBACK onShow(HWND, UINT, UINT_PTR, DWORD)
{
    if (moving.number < moving.transfer.files.size()) {
        showNow();
    }
}

// A window is better not destroyed while one of its buttons calls.
void closeLater()
{
    HWND window = statusWindow();
    later([window] {
        if (window == statusWindow()) {
            closeStatusWindow();
        }
    });
}

void onButton()
{
    if (isWorking()) {
        stopWork();
    } else {
        closeLater();
    }
}

// ---- from one file to the next

void nextFile();

// The next one begins from the message loop: thousands may be refused in a row.
void goOn()
{
    unsigned work = workNumber();
    later([work] {
        if (isWorking(work)) {
            nextFile();
        }
    });
}

void giveUpFile()
{
    sample::giveUpUnfinished(&moving.unfinished);
    if (moving.transfer.isCopy && !moving.path.empty()) {
        DeleteFileA(moving.path.c_str());
    }
}

void endFile(const std::string& failure)
{
    if (!failure.empty()) {
        giveUpFile();
    }
    const MovedFile& one = file();
    bool isLast = moving.number + 1 == moving.transfer.files.size();
    moving.failed += !failure.empty();
    if (moving.shown == moving.number + 1 || isLast) {
        showNow();
        bool isWhole = isLast && moving.failed == 0;
        showFileEnd(isWhole ? "All files are copied" : nullptr);
    }
    moving.transfer.onFile(one, moving.count, failure);
    moving.before += one.size;
    ++moving.number;
    goOn();
}

void failFile(const std::string& words)
{
    std::string why = moving.words.empty() ? words : moving.words;
    unsigned work = workNumber();
    if (moving.number + 1 < moving.transfer.files.size()) {
        std::string question =
            format("%s: %s\n\nGo on with the other files?", file().host.c_str(), why.c_str());
        int answer = ask(question, MB_YESNO | MB_ICONEXCLAMATION);
        if (!isWorking(work)) {
            return;
        }
        if (answer != IDYES) {
            moving.transfer.onFile(file(), 0, why);
            stopWork();
            return;
        }
    }
    endFile(why);
}

void failBySystem()
{
    failFile(sample::systemWords(GetLastError()));
}

// Asks about a file that is there already. Returns false if it stays, or if all is over.
bool maySee(bool there, const std::string& name, const char* where)
{
    moving.replace = !moving.transfer.askBeforeReplace;
    if (!there || moving.replace) {
        return true;
    }
    unsigned work = workNumber();
    std::string question = format("%s is there already%s. Overwrite it?", name.c_str(), where);
    int answer = ask(question, MB_YESNOCANCEL | MB_ICONQUESTION);
    if (!isWorking(work)) {
        return false;
    }
    moving.replace = answer == IDYES;
    if (answer == IDNO) {
        endFile("Kept as it is.");
    } else if (answer != IDYES) {
        stopWork();
    }
    return moving.replace;
}

// ---- receiving

void onReceived(const Answer& answer)
{
    if (!answer.done) {
        failFile(answer.words);
    } else if (!sample::nameUnfinished(&moving.unfinished, moving.path, moving.replace)) {
        failBySystem();
    } else {
        endFile("");
    }
}

bool takeBytes(const char* bytes, size_t count)
{
    if (!sample::writeUnfinished(&moving.unfinished, bytes, count)) {
        moving.words = sample::systemWords(GetLastError());
        return false;
    }
    moving.count += DWORD(count);
    return true;
}

void receiveUnfinished()
{
    if (!sample::openUnfinished(&moving.unfinished, sample::folderOf(moving.path))) {
        failBySystem();
        return;
    }
    Request request;
    request.verb = Verb::Receive;
    request.path = hostPath(file().bytes);
    request.isText = isText();
    request.onBytes = takeBytes;
    request.onDone = onReceived;
    askHost(std::move(request));
}

// Only the name that was asked for is used, and only after this last look at it.
void receiveFile()
{
    const std::string& name = file().local;
    const char* problem = sample::nameProblem(name.c_str());
    if (problem != nullptr) {
        endFile(format("Refused as a local name: %s.", problem));
        return;
    }
    moving.path = sample::joinPath(moving.transfer.localFolder, name);
    if (moving.path.size() >= MAX_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        failBySystem();
        return;
    }
    DWORD attributes = GetFileAttributesA(moving.path.c_str());
    bool there = attributes != INVALID_FILE_ATTRIBUTES;
    if (there && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        failFile("A directory has this name.");
    } else if (maySee(there, name, "")) {
        receiveUnfinished();
    }
}

// A name that is nobody else's takes the place of the host's.
void receiveCopy()
{
    char path[MAX_PATH];
    if (GetTempFileNameA(moving.transfer.localFolder.c_str(), "krv", 0, path) == 0) {
        failBySystem();
        return;
    }
    moving.path = moving.transfer.files[moving.number].local = path;
    moving.replace = true;
    receiveUnfinished();
}

// ---- sending

std::string newHostName(const char* extension)
{
    static unsigned number;
    return hostPath(format("krd%08lx%04x.%s", GetTickCount(), ++number & 0xFFFF, extension));
}

void askToRename(const std::string& from, const std::string& to,
                 std::function<void(const Answer&)> onDone)
{
    Request request;
    request.verb = Verb::Rename;
    request.path = from;
    request.target = to;
    request.onDone = std::move(onDone);
    askHost(std::move(request));
}

void giveUpPart(const std::string& words)
{
    std::string part = std::move(moving.part);
    moving.part.clear();
    MovedFile left = file();
    auto onFile = moving.transfer.onFile;
    removeOnHost(part, [=](const Answer& answer) {
        if (!answer.done) {
            onFile(left, 0, shownWords(part) + " may still be on the host: " + answer.words);
        }
    });
    if (!words.empty()) {
        failFile(words);
    }
}

// Some hosts don't rename over a file that is there. There it steps aside until the new one has its
// name.
void onNamedAgain(const Answer& answer)
{
    std::string aside = moving.aside;
    if (answer.done) {
        moving.part.clear();
        removeOnHost(aside, [](const Answer&) {});
        endFile("");
        return;
    }
    std::string words = answer.words;
    askToRename(aside, hostPath(file().bytes), [=](const Answer&) { giveUpPart(words); });
}

void onNamed(const Answer& answer)
{
    if (answer.done) {
        moving.part.clear();
        endFile("");
        return;
    }
    if (!moving.replace) {
        giveUpPart(answer.words);
        return;
    }
    moving.aside = newHostName("old");
    std::string words = answer.words;
    askToRename(hostPath(file().bytes), moving.aside, [=](const Answer& stepped) {
        if (stepped.done) {
            askToRename(moving.part, hostPath(file().bytes), onNamedAgain);
        } else {
            giveUpPart(words);
        }
    });
}

void closeSource()
{
    if (moving.source != INVALID_HANDLE_VALUE) {
        CloseHandle(moving.source);
        moving.source = INVALID_HANDLE_VALUE;
    }
}

bool giveBytes(char* room, size_t most, size_t* count)
{
    DWORD read = 0;
    if (!ReadFile(moving.source, room, DWORD(most), &read, nullptr)) {
        moving.words = sample::systemWords(GetLastError());
        return false;
    }
    *count = read;
    moving.count += read;
    return true;
}

void onSent(const Answer& answer)
{
    closeSource();
    if (answer.done) {
        askToRename(moving.part, hostPath(file().bytes), onNamed);
    } else {
        giveUpPart(answer.words);
    }
}

void sendPart()
{
    moving.source = CreateFileA(moving.path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (moving.source == INVALID_HANDLE_VALUE) {
        failBySystem();
        return;
    }
    Request request;
    request.verb = Verb::Send;
    request.path = moving.part = newHostName("part");
    request.isText = isText();
    request.getBytes = giveBytes;
    request.onDone = onSent;
    askHost(std::move(request));
}

void sendFile()
{
    const std::string& name = file().local;
    if (file().bytes.empty()) {
        failFile("The host has no such characters in its names.");
        return;
    }
    bool isFull = name.find(':') != std::string::npos || name[0] == '\\';
    moving.path = isFull ? name : sample::joinPath(moving.transfer.localFolder, name);
    if (!moving.transfer.askBeforeReplace) {
        moving.replace = true;
        sendPart();
        return;
    }
    Request request;
    request.verb = Verb::Exists;
    request.path = hostPath(file().bytes);
    request.onDone = [](const Answer& answer) {
        if (!answer.done) {
            failFile(answer.words);
        } else if (maySee(answer.there, file().host, " on the host")) {
            sendPart();
        }
    };
    askHost(std::move(request));
}

// ---- the whole

void nextFile()
{
    if (moving.number == moving.transfer.files.size()) {
        endWork();
        return;
    }
    moving.count = 0;
    moving.words.clear();
    moving.path.clear();
    if (moving.shown == 0) {
        showNow();
    }
    if (moving.transfer.isCopy) {
        receiveCopy();
    } else if (moving.transfer.send) {
        sendFile();
    } else {
        receiveFile();
    }
}

void onWorkEnd(bool stopped)
{
    stopTicks(&moving.ticks);
    closeSource();
    if (stopped) {
        giveUpFile();
    }
    if (!moving.part.empty()) {
        giveUpPart("");
    }
    if (stopped || !moving.transfer.keepWindow) {
        closeLater();
    } else {
        keepStatusWindow();
    }
    moving.transfer.onEnd(stopped);
}

} // namespace

bool startTransfer(Transfer&& transfer)
{
    if (isWorking()) {
        return false;
    }
    StatusLook look = {transfer.title, transfer.language, transfer.owner, transfer.inCorner,
                       transfer.send};
    closeStatusWindow();
    if ((!transfer.isCopy && !openStatusWindow(look, onButton)) || !beginWork(onWorkEnd)) {
        closeStatusWindow();
        return false;
    }
    moving = {};
    moving.transfer = std::move(transfer);
    for (const MovedFile& one : moving.transfer.files) {
        moving.all += one.size;
    }
    startTicks(&moving.ticks, SHOW_MS, onShow);
    goOn();
    return true;
}

} // namespace demo
