// What a DLL file says of itself, read from the file and not through the loader.
#ifndef TESTS_SUPPORT_PE_H
#define TESTS_SUPPORT_PE_H

#include <windows.h>

#include <map>
#include <set>
#include <string>

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
