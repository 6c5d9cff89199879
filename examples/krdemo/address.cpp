#include "address.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr char SCHEME[] = "ftp://";

int hexDigit(char ch)
{
    const char* pch = strchr("0123456789abcdef", ch >= 'A' && ch <= 'F' ? ch - 'A' + 'a' : ch);
    return ch != '\0' && pch != nullptr ? int(pch - "0123456789abcdef") : -1;
}

// Copies a part of an address and replaces its %XX. Gives false if it doesn't fit, is written
// wrongly, or holds what no text may.
bool decode(const char* pchFrom, const char* pchEnd, char* pszTo, size_t cchTo)
{
    size_t n = 0;
    for (; pchFrom < pchEnd; ++pchFrom, ++n) {
        char ch = *pchFrom;
        if (ch == '%') {
            int nHigh = pchEnd - pchFrom > 2 ? hexDigit(pchFrom[1]) : -1;
            int nLow = nHigh >= 0 ? hexDigit(pchFrom[2]) : -1;
            if (nLow < 0) {
                return false;
            }
            ch = char(nHigh * 16 + nLow);
            pchFrom += 2;
        }
        if (n + 1 >= cchTo || (ch >= 0 && ch < ' ')) {
            return false;
        }
        pszTo[n] = ch;
    }
    pszTo[n] = '\0';
    return true;
}

const char* firstOf(const char* pchFrom, const char* pchEnd, char ch)
{
    auto pch = static_cast<const char*>(memchr(pchFrom, ch, size_t(pchEnd - pchFrom)));
    return pch != nullptr ? pch : pchEnd;
}

bool readUser(const char* pchFrom, const char* pchEnd, HostAddress* pAddress)
{
    const char* pchColon = firstOf(pchFrom, pchEnd, ':');
    const char* pchPassword = pchColon < pchEnd ? pchColon + 1 : pchEnd;
    return decode(pchFrom, pchColon, pAddress->szUser, sizeof pAddress->szUser) &&
           decode(pchPassword, pchEnd, pAddress->szPassword, sizeof pAddress->szPassword);
}

bool readServer(const char* pchFrom, const char* pchEnd, HostAddress* pAddress)
{
    const char* pchColon = firstOf(pchFrom, pchEnd, ':');
    char* pchAfter = nullptr;
    unsigned long nPort = FTP_PORT;
    if (pchColon < pchEnd) {
        nPort = strtoul(pchColon + 1, &pchAfter, 10);
    }
    pAddress->nPort = WORD(nPort);
    return pchColon > pchFrom && nPort > 0 && nPort <= 0xFFFF &&
           (pchAfter == nullptr || pchAfter == pchEnd) &&
           decode(pchFrom, pchColon, pAddress->szServer, sizeof pAddress->szServer);
}

} // namespace

bool isAddress(const char* pszText)
{
    return _strnicmp(pszText, SCHEME, strlen(SCHEME)) == 0;
}

bool readAddress(const char* pszUrl, HostAddress* pAddress)
{
    *pAddress = {};
    if (!isAddress(pszUrl)) {
        return false;
    }
    const char* pchServer = pszUrl + strlen(SCHEME);
    const char* pchEnd = pchServer + strlen(pchServer);
    const char* pchSlash = firstOf(pchServer, pchEnd, '/');
    // The last one: a password may have others.
    const char* pchAt = pchSlash;
    while (pchAt > pchServer && pchAt[-1] != '@') {
        --pchAt;
    }
    if (pchAt > pchServer && !readUser(pchServer, pchAt - 1, pAddress)) {
        return false;
    }
    const char* pchPath = pchSlash < pchEnd ? pchSlash + 1 : pchEnd;
    return readServer(pchAt, pchSlash, pAddress) &&
           decode(pchPath, pchEnd, pAddress->szPath, sizeof pAddress->szPath);
}
