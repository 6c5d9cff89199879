#include "codepage.h"

#include <mbctype.h>

namespace {

BOOL WINAPI isLeadByte(BYTE b)
{
    return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC);
}

BOOL WINAPI isLeadByteOf(UINT, BYTE b)
{
    return isLeadByte(b);
}

LPSTR WINAPI nextChar(LPCSTR psz)
{
    const int cb = *psz == '\0' ? 0 : isLeadByte(BYTE(*psz)) && psz[1] != '\0' ? 2 : 1;
    return const_cast<LPSTR>(psz + cb);
}

LPSTR WINAPI previousChar(LPCSTR pszStart, LPCSTR psz)
{
    LPCSTR pszBefore = pszStart;
    while (pszStart < psz) {
        pszBefore = pszStart;
        pszStart = nextChar(pszStart);
    }
    return const_cast<LPSTR>(pszBefore);
}

LPSTR WINAPI nextCharOf(WORD, LPCSTR psz, DWORD)
{
    return nextChar(psz);
}

LPSTR WINAPI previousCharOf(WORD, LPCSTR pszStart, LPCSTR psz, DWORD)
{
    return previousChar(pszStart, psz);
}

UINT WINAPI codePage()
{
    return 932;
}

} // namespace

DoubleByteLetters::DoubleByteLetters(HMODULE hModule)
    : ReplacedImports(hModule), m_nBefore(_getmbcp())
{
    _setmbcp(932);
    replace("IsDBCSLeadByte", isLeadByte);
    replace("IsDBCSLeadByteEx", isLeadByteOf);
    replace("CharNextA", nextChar);
    replace("CharPrevA", previousChar);
    replace("CharNextExA", nextCharOf);
    replace("CharPrevExA", previousCharOf);
    replace("GetACP", codePage);
}

DoubleByteLetters::~DoubleByteLetters()
{
    _setmbcp(m_nBefore);
}
