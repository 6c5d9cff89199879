// Servers, by libcurl: FTP with and without TLS, and SFTP. Every command names its file from the
// root on, by the very bytes of the host, so it doesn't matter where a connection has begun.
#include "curlloop.h"
#include "address.h"
#include "curltrust.h"
#include "listing.h"
#include "names.h"
#include "work.h"
#include "../common/text.h"

#include <memory>
#include <stdlib.h>
#include <string.h>
#include <vector>

namespace demo {

namespace {

constexpr long CONNECT_SECONDS = 30;
constexpr long ANSWER_SECONDS = 60;
constexpr long IDLE_SECONDS = 60; // so old a connection isn't used again
constexpr long BUFFER_BYTES = 256 * 1024;
constexpr DWORD REMOVE_MS = 400; // for files that are being removed when all ends
constexpr size_t MAX_ANSWERS = 1024 * 1024;
constexpr size_t MAX_LIST = 256 * 1024 * 1024;
constexpr size_t MAX_LINE = 8192;
constexpr char NO_ANSWER[] = "The server doesn't answer any more.";
constexpr char CUT_OFF[] = "The connection was cut off.";

struct Server {
    Address address;
    HostKey key;
    CURL* easy = nullptr;
    Request request;
    std::string words;    // of the server, or why it was left
    std::string answers;  // lines of its answers to the request
    std::string line;     // of a list, as far as it has come
    size_t listed = 0;    // bytes of the list
    bool isFresh = false; // the connection must be a new one
    bool isLineTooLong = false;
    bool isBaseAsked = false; // the server was told where to start from
    bool hasFacts = true;     // the server knows the list that is made for programs
    std::string home;         // where the first connection began
    char trouble[CURL_ERROR_SIZE] = "";
};

Server server;

// What one request sets on its handle, for as long as it runs.
curl_slist* commands;

bool isSftp()
{
    return server.address.protocol == Protocol::Sftp;
}

// ---- what the server says

size_t onAnswer(char* bytes, size_t, size_t count, void*)
{
    server.answers.append(bytes, count);
    if (server.answers.size() > MAX_ANSWERS) {
        server.words = "The server's answer is too long.";
        return 0;
    }
    return count;
}

int codeOf(const std::string& line)
{
    bool isAnswer = line.size() > 3 && line[3] == ' ';
    return isAnswer ? atoi(line.c_str()) : 0;
}

// Calls it for each line of the answers.
void forAnswers(const std::function<void(const std::string&)>& call)
{
    for (size_t at = 0; at < server.answers.size();) {
        size_t end = server.answers.find('\n', at);
        end = end != std::string::npos ? end : server.answers.size();
        std::string line = server.answers.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        call(line);
        at = end + 1;
    }
}

// The directories that the server has named, each in quotes, which are doubled within.
std::vector<std::string> namedDirectories()
{
    std::vector<std::string> found;
    forAnswers([&](const std::string& line) {
        size_t at = codeOf(line) == 257 ? line.find('"') : std::string::npos;
        if (at == std::string::npos) {
            return;
        }
        std::string path;
        for (++at; at < line.size() && (line[at] != '"' || line[at + 1] == '"'); ++at) {
            at += line[at] == '"';
            path += line[at];
        }
        found.push_back(path);
    });
    return found;
}

std::string refusal()
{
    std::string last;
    forAnswers([&](const std::string& line) { last = codeOf(line) >= 400 ? line : last; });
    return shownWords(last);
}

std::string reasonOf(CURLcode code)
{
    std::string refused = refusal();
    if (!server.words.empty()) {
        return server.words;
    }
    if (server.key.changed) {
        return sample::format("The host key of %s is not the one that was accepted before: %s. "
                              "Nothing was sent. The accepted one is in %s.",
                              server.address.server.c_str(), server.key.fingerprint.c_str(),
                              server.address.knownHosts.c_str());
    }
    switch (code) {
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
        return !refused.empty() ? refused : CUT_OFF;
    case CURLE_OPERATION_TIMEDOUT:
        return NO_ANSWER;
    case CURLE_URL_MALFORMAT:
        return "The server can't be asked for this name.";
    case CURLE_LOGIN_DENIED:
        if (!server.address.keyFile.empty()) {
            return sample::format("The login by the key %s failed: %s. It needs its public key "
                                  "beside it (.pub), and an RSA key the form PEM (ssh-keygen -p "
                                  "-m PEM -f FILE).",
                                  server.address.keyFile.c_str(), server.trouble);
        }
        break;
    case CURLE_PEER_FAILED_VERIFICATION:
        return std::string("The server isn't trusted: ") + server.trouble;
    default:
        break;
    }
    std::string trouble =
        shownWords(server.trouble[0] != '\0' ? server.trouble : curl_easy_strerror(code));
    return !refused.empty() ? refused : trouble;
}

// ---- how it is asked

void setLogin(CURL* easy)
{
    const Address& address = server.address;
    if (!address.user.empty()) {
        curl_easy_setopt(easy, CURLOPT_USERNAME, address.user.c_str());
    }
    if (!address.keyFile.empty()) {
        curl_easy_setopt(easy, CURLOPT_SSH_AUTH_TYPES, CURLSSH_AUTH_PUBLICKEY);
        curl_easy_setopt(easy, CURLOPT_SSH_PRIVATE_KEYFILE, address.keyFile.c_str());
        curl_easy_setopt(easy, CURLOPT_SSH_PUBLIC_KEYFILE, (address.keyFile + ".pub").c_str());
        curl_easy_setopt(easy, CURLOPT_KEYPASSWD, address.password.c_str());
        return;
    }
    curl_easy_setopt(easy, CURLOPT_SSH_AUTH_TYPES, CURLSSH_AUTH_PASSWORD | CURLSSH_AUTH_KEYBOARD);
    if (!address.user.empty()) {
        curl_easy_setopt(easy, CURLOPT_PASSWORD, address.password.c_str());
    }
}

// FTP takes off one slash, and SFTP means a home by "/~".
std::string urlPath(const std::string& path)
{
    char* escaped = curl_easy_escape(nullptr, path.data(), int(path.size()));
    std::string url = "/";
    for (const char* at = escaped; *at != '\0';) {
        bool isSlash = isSftp() && strncmp(at, "%2F", 3) == 0;
        url += isSlash ? '/' : *at;
        at += isSlash ? 3 : 1;
    }
    curl_free(escaped);
    bool isHome = path.compare(0, 2, "/~") == 0;
    return isSftp() && !isHome ? url.substr(1) : url;
}

void setUrl(CURL* easy, const std::string& path)
{
    CURLU* url = curl_url();
    bool isFtps = server.address.protocol == Protocol::Ftps;
    curl_url_set(url, CURLUPART_SCHEME, isSftp() ? "sftp" : isFtps ? "ftps" : "ftp", 0);
    curl_url_set(url, CURLUPART_HOST, server.address.server.c_str(), 0);
    curl_url_set(url, CURLUPART_PORT, std::to_string(server.address.port).c_str(), 0);
    curl_url_set(url, CURLUPART_PATH, path.c_str(), 0);
    char* text = nullptr;
    curl_url_get(url, CURLUPART_URL, &text, 0);
    curl_easy_setopt(easy, CURLOPT_URL, text != nullptr ? text : "");
    curl_free(text);
    curl_url_cleanup(url);
}

void setCommon(CURL* easy)
{
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "ftp,ftps,sftp");
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_FTP_FILEMETHOD, long(CURLFTPMETHOD_NOCWD));
    curl_easy_setopt(
        easy, CURLOPT_USE_SSL,
        long(server.address.protocol == Protocol::FtpTls ? CURLUSESSL_ALL : CURLUSESSL_NONE));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, CONNECT_SECONDS);
    curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, ANSWER_SECONDS);
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, IDLE_SECONDS);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, 1L);
    curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, server.isFresh ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, BUFFER_BYTES);
    curl_easy_setopt(easy, CURLOPT_UPLOAD_BUFFERSIZE, BUFFER_BYTES);
    setLogin(easy);
    setTrust(easy, server.address, &server.key);
    setUrl(easy, "/");
}

// A name within a command of SFTP.
std::string quoted(const std::string& path)
{
    std::string text = "\"";
    for (char ch : path) {
        text += strchr("\"\\", ch) != nullptr ? "\\" : "";
        text += ch;
    }
    return text + "\"";
}

void addCommand(const std::string& command)
{
    commands = curl_slist_append(commands, command.c_str());
}

void setCommands(CURL* easy)
{
    curl_easy_setopt(easy, CURLOPT_QUOTE, commands);
}

// ---- requests

void finish(Answer answer)
{
    std::function<void(const Answer&)> onDone = std::move(server.request.onDone);
    server.request = {};
    onDone(answer);
}

void fail(const std::string& words)
{
    Answer answer;
    answer.words = words;
    finish(answer);
}

struct CommandName {
    Verb verb;
    const char* ftp;
    const char* sftp;
};

constexpr CommandName COMMANDS[] = {{Verb::MakeDir, "MKD ", "mkdir "},
                                    {Verb::RemoveDir, "RMD ", "rmdir "},
                                    {Verb::Delete, "DELE ", "rm "}};

void addCommandFor(Verb verb, const std::string& path)
{
    for (const CommandName& command : COMMANDS) {
        if (command.verb == verb) {
            addCommand(isSftp() ? command.sftp + quoted(path) : command.ftp + path);
        }
    }
}

void prepareCommand(CURL* easy)
{
    const Request& request = server.request;
    if (request.verb != Verb::Rename) {
        addCommandFor(request.verb, request.path);
    } else if (isSftp()) {
        addCommand("rename " + quoted(request.path) + " " + quoted(request.target));
    } else {
        addCommand("RNFR " + request.path);
        addCommand("RNTO " + request.target);
    }
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
}

// ---- lists

void takeLine()
{
    Entry entry;
    std::string line = std::move(server.line);
    server.line.clear();
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    bool isForPrograms = server.hasFacts && !isSftp();
    Line kind = server.isLineTooLong ? Line::Odd
                : isForPrograms      ? readFactLine(line, &entry)
                                     : readPeopleLine(line, &entry);
    server.isLineTooLong = false;
    if (kind == Line::Entry) {
        entry.name = shownName(entry.bytes, server.address.codePage);
        kind = entry.name.size() < MAX_PATH ? kind : Line::Odd;
    }
    if (kind == Line::Entry) {
        server.request.onEntry(std::move(entry));
    } else if (kind == Line::Odd) {
        server.request.onOddity(shownWords(line.substr(0, MAX_PATH)));
    }
}

size_t onList(char* bytes, size_t, size_t count, void*)
{
    server.listed += count;
    if (server.listed > MAX_LIST) {
        server.words = "The list of the directory is too long.";
        return 0;
    }
    for (const char* at = bytes; at < bytes + count; ++at) {
        if (*at == '\n') {
            takeLine();
        } else if (server.line.size() < MAX_LINE) {
            server.line += *at;
        } else {
            server.isLineTooLong = true;
        }
    }
    return count;
}

// A way from a directory, as its user types it, along the names alone.
std::string walk(std::string path, const std::string& way)
{
    path = way.compare(0, 1, "/") == 0 ? "" : path;
    for (size_t at = 0; at < way.size();) {
        size_t end = way.find('/', at);
        end = end != std::string::npos ? end : way.size();
        std::string part = way.substr(at, end - at);
        if (part == "..") {
            path.resize(path.find('/') != std::string::npos ? path.rfind('/') : 0);
        } else if (!part.empty() && part != ".") {
            path += (path.empty() || path.back() != '/' ? "/" : "") + part;
        }
        at = end + 1;
    }
    return path.empty() ? "/" : path;
}

// A connection that is used again can be anywhere.
const std::string& listBase()
{
    return server.request.path.empty() ? server.home : server.request.path;
}

// An FTP server goes there, and says where it is then.
void prepareList(CURL* easy)
{
    const Request& request = server.request;
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, onList);
    if (isSftp()) {
        std::string path = request.path.empty() && request.target.compare(0, 1, "/") != 0
                               ? "/~" + walk("", request.target)
                               : walk(request.path, request.target);
        bool isHome = path.compare(0, 2, "/~") == 0 && request.path.empty();
        setUrl(easy, (isHome ? "/~" + urlPath(path.substr(2)) : urlPath(path)) +
                         (path.back() == '/' ? "" : "/"));
        return;
    }
    server.isBaseAsked = !listBase().empty();
    if (server.isBaseAsked) {
        addCommand("CWD " + listBase());
        addCommand("PWD");
    }
    if (!request.target.empty()) {
        addCommand("CWD " + request.target);
    }
    addCommand("PWD");
    curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, server.hasFacts ? "MLSD" : "LIST");
}

void startRequest();

// Returns false if the server doesn't know the list that it was asked for, and is asked again.
bool isListKnown(CURLcode code)
{
    int refused = atoi(refusal().c_str());
    bool isUnknown = code != CURLE_OK && server.hasFacts && refused >= 500 && refused <= 504;
    if (isUnknown) {
        server.hasFacts = false;
        startRequest();
    }
    return !isUnknown;
}

std::string sftpPath()
{
    return walk(listBase(), server.request.target);
}

void finishList(CURLcode code)
{
    Answer answer;
    if (!isSftp() && !isListKnown(code)) {
        return;
    }
    if (code != CURLE_OK) {
        fail(reasonOf(code));
        return;
    }
    if (!server.line.empty()) {
        takeLine();
    }
    std::vector<std::string> named = namedDirectories(); // a new connection begins with one more
    std::string from = server.isBaseAsked ? listBase() : "";
    answer.path = isSftp() ? sftpPath() : named.empty() ? "" : named.back();
    answer.done =
        answer.path.compare(0, 1, "/") == 0 &&
        (isSftp() || from.empty() || (named.size() > 1 && named[named.size() - 2] == from));
    answer.words = "The server isn't in the directory that it was told to go to.";
    finish(answer);
}

// ---- whether a file is there

size_t dropBytes(char*, size_t, size_t count, void*)
{
    return count;
}

// The time of a file is asked for, or its first byte.
void prepareExists(CURL* easy)
{
    if (!isSftp()) {
        addCommand("*MDTM " + server.request.path);
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
        return;
    }
    setUrl(easy, urlPath(server.request.path));
    curl_easy_setopt(easy, CURLOPT_RANGE, "0-0");
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, dropBytes);
}

// A server that doesn't know the command is asked for its list.
void lookInList()
{
    Request list;
    size_t slash = server.request.path.rfind('/');
    std::string name = server.request.path.substr(slash + 1);
    auto onDone = std::move(server.request.onDone);
    auto there = std::make_shared<bool>(false);
    list.verb = Verb::List;
    list.path = slash > 0 ? server.request.path.substr(0, slash) : "/";
    list.onEntry = [=](Entry&& entry) { *there = *there || entry.bytes == name; };
    list.onOddity = [](const std::string&) {};
    list.onDone = [=](const Answer& listed) {
        Answer answer = listed;
        answer.there = *there;
        onDone(answer);
    };
    server.request = std::move(list);
    startRequest();
}

void finishExists(CURLcode code)
{
    Answer answer;
    int refused = atoi(refusal().c_str());
    if (!isSftp() && code == CURLE_OK && refused >= 400 && refused != 550) {
        lookInList();
        return;
    }
    answer.there = code == CURLE_OK && refused != 550;
    answer.done = code == CURLE_OK || code == CURLE_REMOTE_FILE_NOT_FOUND;
    answer.words = reasonOf(code);
    finish(answer);
}

// ---- files

size_t onBytes(char* bytes, size_t, size_t count, void*)
{
    return server.request.onBytes(bytes, count) ? count : CURL_WRITEFUNC_ERROR;
}

size_t onRoom(char* room, size_t, size_t count, void*)
{
    size_t used = 0;
    return server.request.getBytes(room, count, &used) ? used : CURL_READFUNC_ABORT;
}

// Lines have another length on the way, which no server tells.
void prepareFile(CURL* easy)
{
    setUrl(easy, urlPath(server.request.path));
    if (server.request.isText) {
        curl_easy_setopt(easy, CURLOPT_TRANSFERTEXT, 1L);
        curl_easy_setopt(easy, CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
    }
    if (server.request.verb == Verb::Receive) {
        curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, onBytes);
        return;
    }
    curl_easy_setopt(easy, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(easy, CURLOPT_READFUNCTION, onRoom);
}

void finishPlain(CURLcode code)
{
    Answer answer;
    answer.done = code == CURLE_OK;
    answer.words = answer.done ? "" : reasonOf(code);
    finish(answer);
}

// ---- from the start of a request to its end

struct Procedure {
    void (*prepare)(CURL* easy);
    void (*finish)(CURLcode code);
};

// In the order of the verbs.
constexpr Procedure PROCEDURES[] = {
    {prepareList, finishList},     {prepareCommand, finishPlain}, {prepareCommand, finishPlain},
    {prepareCommand, finishPlain}, {prepareCommand, finishPlain}, {prepareExists, finishExists},
    {prepareFile, finishPlain},    {prepareFile, finishPlain},
};

// A new key is shown to the user, once, before anything is sent.
void askForKey()
{
    std::string question = sample::format(
        "%s is not known yet. Its host key has the fingerprint\n\n%s\n\nIs this the right one? It "
        "will be remembered.",
        server.address.server.c_str(), server.key.fingerprint.c_str());
    std::string shown = server.key.fingerprint;
    unsigned work = workNumber();
    int choice = ask(question, MB_YESNO | MB_DEFBUTTON2 | MB_ICONQUESTION);
    if (!isWorking(work)) {
        return;
    }
    if (choice == IDYES) {
        server.key.accepted = shown;
        startRequest();
    } else {
        fail("The host key wasn't accepted.");
    }
}

void onEnd(CURLcode code)
{
    char* home = nullptr;
    bool isNewKey = code == CURLE_PEER_FAILED_VERIFICATION && isSftp() && !server.key.changed &&
                    !server.key.fingerprint.empty() &&
                    server.key.fingerprint != server.key.accepted;
    if (curl_easy_getinfo(server.easy, CURLINFO_FTP_ENTRY_PATH, &home) == CURLE_OK &&
        home != nullptr && server.home.empty()) {
        server.home = home;
    }
    // An empty answer over a connection that was used before is taken for a lost connection, and
    // SFTP is asked again and again.
    bool isEmpty = isSftp() && code == CURLE_TOO_MANY_REDIRECTS && !server.isFresh;
    if (isNewKey) {
        askForKey();
    } else if (isEmpty) {
        server.isFresh = true;
        startRequest();
    } else {
        PROCEDURES[size_t(server.request.verb)].finish(code);
    }
}

void startRequest()
{
    curl_slist_free_all(commands);
    commands = nullptr;
    server.words.clear();
    server.answers.clear();
    server.line.clear();
    server.listed = 0;
    server.trouble[0] = '\0';
    curl_easy_reset(server.easy);
    setCommon(server.easy);
    curl_easy_setopt(server.easy, CURLOPT_ERRORBUFFER, server.trouble);
    curl_easy_setopt(server.easy, CURLOPT_HEADERFUNCTION, onAnswer);
    PROCEDURES[size_t(server.request.verb)].prepare(server.easy);
    setCommands(server.easy);
    runHandle(server.easy, onEnd);
}

// ---- the host

void open(const Address& address)
{
    openCurlLoop();
    server = {};
    server.address = address;
    server.easy = curl_easy_init();
}

void close()
{
    dropHandle(server.easy);
    closeCurlLoop(REMOVE_MS);
    curl_easy_cleanup(server.easy);
    curl_slist_free_all(commands);
    commands = nullptr;
    wipe(&server.address.password);
    server = {};
}

void start(Request&& request)
{
    server.request = std::move(request);
    server.isFresh = false;
    startRequest();
}

void stop()
{
    dropHandle(server.easy);
    server.request = {};
}

// A handle of its own, and so a connection of its own.
void remove(const std::string& path, std::function<void(const Answer&)> onDone)
{
    CURL* easy = curl_easy_init();
    curl_slist* kept = commands;
    commands = nullptr;
    setCommon(easy);
    addCommandFor(Verb::Delete, path);
    setCommands(easy);
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    std::swap(kept, commands);
    runHandle(easy, [=](CURLcode code) {
        Answer answer;
        answer.done = code == CURLE_OK;
        answer.words = curl_easy_strerror(code);
        curl_slist_free_all(kept);
        curl_easy_cleanup(easy);
        onDone(answer);
    });
}

} // namespace

const Host CURL_HOST = {open, close, start, stop, remove};

} // namespace demo
