#include "options.h"
#include "address.h"
#include "../common/text.h"

#include <stdlib.h>

namespace demo {

const char USAGE[] = "KRDEMO [LOCAL [HOST]] [OPTIONS]\n\n"
                     "LOCAL\tthe local folder\n"
                     "HOST\ta folder that is served as the host, or the address of a server:\n"
                     "\tftp://  ftpes:// (explicit TLS)  ftps:// (implicit TLS)  sftp://\n"
                     "\t[user[:password]@]server[:port][/directory]\n\n"
                     "/connect\task for a server\n"
                     "/key:FILE\tSSH key, in the form of OpenSSH or PEM\n"
                     "/cacert:FILE\tcertificates to trust, in place of those of the system\n"
                     "/known:FILE\tfile of the SSH host keys that were accepted\n"
                     "/names:NUMBER\tcode page of the host's names (65001, UTF-8)\n"
                     "/copy\tcopy the files of LOCAL to HOST with a status window alone\n"
                     "/speed:BYTES\tbytes a second of the built-in host's line (8388608)\n"
                     "/language:CODE\tlanguage of the windows (EN)";

namespace {

constexpr DWORD DEFAULT_SPEED = 8 * 1024 * 1024;
constexpr char KNOWN_HOSTS[] = "krdemo-known_hosts";

// Where the user keeps such things, on versions that have such a place.
std::string knownHosts()
{
    const char* home = getenv("APPDATA");
    char folder[MAX_PATH] = "";
    GetWindowsDirectoryA(folder, MAX_PATH);
    return sample::joinPath(home != nullptr ? home : folder, KNOWN_HOSTS);
}

Options defaults()
{
    Options options;
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    options.local = sample::folderOf(path);
    GetTempPathA(MAX_PATH, path);
    options.host.server = sample::joinPath(path, "KRDEMO");
    options.host.codePage = CP_ACP;
    options.host.bytesPerSecond = DEFAULT_SPEED;
    options.host.knownHosts = knownHosts();
    return options;
}

struct ValueOption {
    const char* name;
    void (*take)(Options* options, const char* value);
};

constexpr ValueOption VALUE_OPTIONS[] = {
    {"/speed:",
     [](Options* o, const char* v) { o->host.bytesPerSecond = strtoul(v, nullptr, 10); }},
    {"/language:", [](Options* o, const char* v) { o->language = v; }},
    {"/key:", [](Options* o, const char* v) { o->host.keyFile = v; }},
    {"/cacert:", [](Options* o, const char* v) { o->host.bundle = v; }},
    {"/known:", [](Options* o, const char* v) { o->host.knownHosts = v; }},
    {"/names:", [](Options* o, const char* v) { o->host.codePage = strtoul(v, nullptr, 10); }},
    {"/connect", [](Options* o, const char*) { o->connect = true; }},
    {"/copy", [](Options* o, const char*) { o->copy = true; }},
    {"/?", [](Options* o, const char*) { o->usage = true; }},
};

bool readOption(const char* argument, Options* options)
{
    for (const ValueOption& option : VALUE_OPTIONS) {
        const char* value = sample::valueOf(argument, option.name);
        if (value != nullptr) {
            option.take(options, value);
            return true;
        }
    }
    return false;
}

// An address that can't be read lets the dialog ask for another.
void readHost(const char* argument, Options* options)
{
    if (isAddress(argument)) {
        options->connect = !readAddress(argument, &options->host);
    } else {
        options->host.server = argument;
    }
}

} // namespace

Options readOptions()
{
    Options options = defaults();
    unsigned folders = 0;
    for (int n = 1; n < __argc; ++n) {
        if (readOption(__argv[n], &options)) {
            continue;
        }
        if (folders == 0 && !isAddress(__argv[n])) {
            options.local = __argv[n];
        } else {
            readHost(__argv[n], &options);
        }
        ++folders;
    }
    return options;
}

} // namespace demo
