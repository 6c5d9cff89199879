// Whom libcurl may trust: certificates, and the host keys of SSH servers.
#ifndef KRDEMO_CURLTRUST_H
#define KRDEMO_CURLTRUST_H

#include "host.h"

#include <curl/curl.h>

namespace demo {

struct HostKey {
    std::string fingerprint; // of the key that the server has shown
    bool changed = false;    // it isn't the one that was accepted before
    std::string accepted;    // fingerprint of a new key that the user has accepted
};

// Sets what the handle trusts. The key lives as long as the handle is used.
void setTrust(CURL* easy, const Address& address, HostKey* key);

} // namespace demo

#endif
