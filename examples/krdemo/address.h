// Addresses of servers, as users write them.
#ifndef KRDEMO_ADDRESS_H
#define KRDEMO_ADDRESS_H

#include "host.h"

constexpr WORD FTP_PORT = 21;

// Reads "ftp://[user[:password]@]server[:port][/directory]", in which %XX stands for a
// character. Gives false if the text is no such address or doesn't fit.
bool readAddress(const char* pszUrl, HostAddress* pAddress);

bool isAddress(const char* pszText);

#endif
