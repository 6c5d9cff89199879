#include "content.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr size_t BYTES_PER_LINE = 16;
constexpr size_t CCH_DUMP_LINE = 80;

bool isText(const unsigned char* pb, size_t cb)
{
    return memchr(pb, '\0', cb) == nullptr;
}

// Every kind of line end becomes the one that an edit control knows.
char* asText(const unsigned char* pb, size_t cb)
{
    auto* pszLines = static_cast<char*>(malloc(2 * cb + 1));
    if (pszLines == nullptr) {
        return nullptr;
    }
    char* pch = pszLines;
    for (size_t n = 0; n < cb; ++n) {
        bool fPair = pb[n] == '\r' && n + 1 < cb && pb[n + 1] == '\n';
        if (pb[n] == '\r' || pb[n] == '\n') {
            *pch++ = '\r';
            *pch++ = '\n';
            n += fPair;
        } else {
            *pch++ = char(pb[n]);
        }
    }
    *pch = '\0';
    return pszLines;
}

char* dumpLine(char* pch, size_t nOffset, const unsigned char* pb, size_t cb)
{
    pch += sprintf(pch, "%08lX  ", static_cast<unsigned long>(nOffset));
    for (size_t n = 0; n < BYTES_PER_LINE; ++n) {
        pch += n < cb ? sprintf(pch, "%02X ", pb[n]) : sprintf(pch, "   ");
    }
    *pch++ = ' ';
    for (size_t n = 0; n < cb; ++n) {
        *pch++ = pb[n] >= ' ' && pb[n] < 127 ? char(pb[n]) : '.';
    }
    return pch + sprintf(pch, "\r\n");
}

char* asDump(const unsigned char* pb, size_t cb)
{
    size_t cLines = (cb + BYTES_PER_LINE - 1) / BYTES_PER_LINE;
    auto* pszLines = static_cast<char*>(malloc(cLines * CCH_DUMP_LINE + 1));
    if (pszLines == nullptr) {
        return nullptr;
    }
    char* pch = pszLines;
    for (size_t n = 0; n < cb; n += BYTES_PER_LINE) {
        size_t cbLine = cb - n < BYTES_PER_LINE ? cb - n : BYTES_PER_LINE;
        pch = dumpLine(pch, n, pb + n, cbLine);
    }
    *pch = '\0';
    return pszLines;
}

} // namespace

bool readContent(const char* pszFile, Content* pContent)
{
    static unsigned char s_bytes[CB_SHOWN];
    FILE* pFile = fopen(pszFile, "rb");
    if (pFile == nullptr) {
        return false;
    }
    size_t cb = fread(s_bytes, 1, sizeof s_bytes, pFile);
    pContent->fCut = cb == sizeof s_bytes && fgetc(pFile) != EOF;
    bool fRead = ferror(pFile) == 0;
    fclose(pFile);
    if (!fRead) {
        return false;
    }
    pContent->pszLines = isText(s_bytes, cb) ? asText(s_bytes, cb) : asDump(s_bytes, cb);
    return pContent->pszLines != nullptr;
}
