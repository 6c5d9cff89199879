// What the sample caller needs of a host: one request at a time, whose end is told from the
// message loop. A host is one table of functions, so another one is one more file.
#ifndef KRDEMO_HOST_H
#define KRDEMO_HOST_H

#include <windows.h>

#include <functional>
#include <string>

namespace demo {

enum class Protocol {
    Folder,
    Ftp,
    FtpTls, // FTP that turns to TLS before anything else is said
    Ftps,   // TLS from the first byte on
    Sftp
};

// Where a host is and who comes.
struct Address {
    Protocol protocol = Protocol::Folder;
    std::string server; // name of a server, or the folder that the built-in host serves
    unsigned port = 0;
    std::string user; // empty for a guest
    std::string password;
    std::string keyFile;      // of an SSH key, whose passphrase is then the password
    std::string path;         // directory to begin in, as its user types it
    std::string bundle;       // certificates to trust; empty for those of the system
    std::string knownHosts;   // file of the SSH host keys that the user has accepted
    UINT codePage = CP_UTF8;  // the host's names
    DWORD bytesPerSecond = 0; // speed of the built-in host's line
};

struct Entry {
    std::string bytes; // the name as the host knows it
    std::string name;  // and as the windows show it
    DWORD size = 0;
    bool directory = false;
};

enum class Verb { List, MakeDir, RemoveDir, Rename, Delete, Exists, Receive, Send };

// What came of a request.
struct Answer {
    bool done = false;
    std::string words;  // why not
    bool there = false; // of Exists
    std::string path;   // of List: the directory that was listed
};

// Paths are bytes of the host, from its root on.
struct Request {
    Verb verb;
    std::string path;    // of the file or directory. List: the current one, empty at first
    std::string target;  // Rename: the new path. List: where to go from there, or empty
    bool isText = false; // Receive and Send: lines, for a host that has types
    std::function<void(Entry&&)> onEntry;                 // List
    std::function<void(const std::string&)> onOddity;     // List: a line that says nothing
    std::function<bool(const char*, size_t)> onBytes;     // Receive. False gives up
    std::function<bool(char*, size_t, size_t*)> getBytes; // Send. No bytes: the end
    std::function<void(const Answer&)> onDone;
};

struct Host {
    // Makes ready; nothing is asked of the host yet. Connections are made when they are needed.
    void (*open)(const Address& address);
    // Ends everything. Waits a moment for files that are being removed.
    void (*close)();
    // onDone is called later, from the message loop, unless the request is stopped before.
    void (*start)(Request&& request);
    void (*stop)();
    // Deletes a file that was sent in part, beside any other request.
    void (*remove)(const std::string& path, std::function<void(const Answer&)> onDone);
};

extern const Host FOLDER_HOST;
extern const Host CURL_HOST;

} // namespace demo

#endif
