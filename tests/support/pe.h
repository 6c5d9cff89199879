// What a DLL file says of itself, read from its mapped image and not through the loader.
#ifndef TESTS_SUPPORT_PE_H
#define TESTS_SUPPORT_PE_H

#include <windows.h>

#include <map>
#include <set>
#include <string>

template <typename T> const T* atImage(const void* pImage, DWORD dwOffset)
{
    return reinterpret_cast<const T*>(static_cast<const BYTE*>(pImage) + dwOffset);
}

inline const IMAGE_NT_HEADERS32* ntHeaders(const void* pImage)
{
    return atImage<IMAGE_NT_HEADERS32>(pImage,
                                       DWORD(atImage<IMAGE_DOS_HEADER>(pImage, 0)->e_lfanew));
}

// A directory of the image, or null if it has none.
template <typename T> const T* directoryOf(const void* pImage, int n)
{
    const DWORD dwOffset = ntHeaders(pImage)->OptionalHeader.DataDirectory[n].VirtualAddress;
    return dwOffset == 0 ? nullptr : atImage<T>(pImage, dwOffset);
}

struct PeFile {
    WORD wMachine = 0;
    WORD wMagic = 0;
    DWORD dwEntryPoint = 0;
    std::set<std::string> sections;
    std::map<std::string, unsigned> exports;              // name to ordinal
    std::map<std::string, std::set<std::string>> imports; // module, upper case, to names
};

// An import by ordinal has the name "#" and its number. A file that can't be read gives an
// empty answer.
PeFile readPe(const std::string& file);

#endif
