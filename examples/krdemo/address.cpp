#include "address.h"

#include <stdlib.h>
#include <string.h>

namespace demo {

const ProtocolName PROTOCOLS[4] = {
    {Protocol::Ftp, "ftp", "FTP", 21},
    {Protocol::FtpTls, "ftpes", "FTP with TLS (explicit)", 21},
    {Protocol::Ftps, "ftps", "FTP over TLS (implicit)", 990},
    {Protocol::Sftp, "sftp", "SFTP", 22},
};

namespace {

constexpr unsigned LAST_PORT = 0xFFFF;

const ProtocolName* protocolOf(const std::string& text)
{
    for (const ProtocolName& protocol : PROTOCOLS) {
        std::string start = std::string(protocol.scheme) + "://";
        if (_strnicmp(text.c_str(), start.c_str(), start.size()) == 0) {
            return &protocol;
        }
    }
    return nullptr;
}

// Replaces the %XX of a part. Returns false if it is written wrongly or holds what no text may.
bool decode(const std::string& part, std::string* text)
{
    text->clear();
    for (size_t n = 0; n < part.size(); ++n) {
        char ch = part[n];
        if (ch == '%') {
            std::string digits = part.substr(n + 1, 2);
            if (digits.size() != 2 ||
                digits.find_first_not_of("0123456789ABCDEFabcdef") != std::string::npos) {
                return false;
            }
            ch = char(strtoul(digits.c_str(), nullptr, 16));
            n += 2;
        }
        if (BYTE(ch) < ' ') {
            return false;
        }
        *text += ch;
    }
    return true;
}

// Cuts the text at a character, which belongs to neither part. Without it all stays in front.
std::string takeBehind(char ch, std::string* text)
{
    size_t at = text->find(ch);
    std::string behind = at != std::string::npos ? text->substr(at + 1) : "";
    text->resize(at != std::string::npos ? at : text->size());
    return behind;
}

bool readServer(std::string server, Address* address)
{
    bool hasPort = server.find(':') != std::string::npos;
    std::string digits = takeBehind(':', &server);
    unsigned long port = hasPort ? strtoul(digits.c_str(), nullptr, 10) : address->port;
    address->port = unsigned(port);
    return port > 0 && port <= LAST_PORT &&
           digits.find_first_not_of("0123456789") == std::string::npos && !server.empty() &&
           decode(server, &address->server);
}

} // namespace

const ProtocolName& nameOf(Protocol protocol)
{
    for (const ProtocolName& row : PROTOCOLS) {
        if (row.protocol == protocol) {
            return row;
        }
    }
    return PROTOCOLS[0];
}

bool isAddress(const std::string& text)
{
    return protocolOf(text) != nullptr;
}

bool readAddress(const std::string& text, Address* address)
{
    const ProtocolName* protocol = protocolOf(text);
    if (protocol == nullptr) {
        return false;
    }
    Address read = *address;
    std::string server = text.substr(strlen(protocol->scheme) + strlen("://"));
    std::string path = takeBehind('/', &server);
    // The last one: a password may have others.
    size_t at = server.rfind('@');
    std::string user = at != std::string::npos ? server.substr(0, at) : "";
    server = at != std::string::npos ? server.substr(at + 1) : server;
    std::string password = takeBehind(':', &user);
    read.protocol = protocol->protocol;
    read.port = protocol->port;
    if (!decode(user, &read.user) || !decode(password, &read.password) ||
        !readServer(server, &read) || !decode(path, &read.path)) {
        return false;
    }
    *address = read;
    return true;
}

void wipe(std::string* secret)
{
    if (!secret->empty()) {
        SecureZeroMemory(&(*secret)[0], secret->size());
    }
    secret->clear();
}

} // namespace demo
