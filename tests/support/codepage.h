// Letters of two bytes, of which the second can look like a backslash.
#ifndef TESTS_SUPPORT_CODEPAGE_H
#define TESTS_SUPPORT_CODEPAGE_H

#include "imports.h"

// In code page 932: two letters with a backslash for their second byte, one with a capital.
#define KANJI "\x95\x5C"
#define KANA "\x83\x5C"
#define KANA_A "\x83\x41"

// A module finds the letters of that code page in its texts while the object lives, whatever code
// page the system has; files bear the names of the system's own.
class DoubleByteLetters {
public:
    explicit DoubleByteLetters(HMODULE hModule)
        : m_isLeadByte(hModule, "IsDBCSLeadByte", isLeadByte)
    {
    }

private:
    static BOOL WINAPI isLeadByte(BYTE b)
    {
        return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC);
    }
    ReplacedImport m_isLeadByte;
};

#endif
