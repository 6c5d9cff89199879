// Addresses of servers:
//     SCHEME://[user[:password]@]server[:port][/directory]
// with the schemes ftp, ftpes (explicit TLS), ftps and sftp.
#ifndef KRDEMO_ADDRESS_H
#define KRDEMO_ADDRESS_H

#include "host.h"

namespace demo {

struct ProtocolName {
    Protocol protocol;
    const char* scheme;
    const char* title; // for people
    unsigned port;
};

extern const ProtocolName PROTOCOLS[4];

const ProtocolName& nameOf(Protocol protocol);

bool isAddress(const std::string& text);

// Changes what the text names and leaves the rest. Returns false, with nothing changed, if it is
// no address.
bool readAddress(const std::string& text, Address* address);

// Overwrites a text that nobody is to find in memory.
void wipe(std::string* secret);

} // namespace demo

#endif
