// A file system that says what a test wants.
#ifndef TESTS_SUPPORT_FOUND_H
#define TESTS_SUPPORT_FOUND_H

#include "imports.h"

#include <string>
#include <vector>

// Serves the searches of a module for as long as the object lives. One at a time.
class FoundFiles {
public:
    struct Entry {
        std::string name;
        DWORD dwAttributes = FILE_ATTRIBUTE_ARCHIVE;
    };
    // The function tells whether a name is found by a mask.
    FoundFiles(HMODULE hModule,
               bool (*pfnMatches)(const std::string& name, const std::string& mask));
    // All searches have to be closed.
    ~FoundFiles();

    std::vector<Entry> entries;
    std::vector<std::string> masks; // of all searches

private:
    static HANDLE WINAPI findFirst(LPCSTR pszMask, WIN32_FIND_DATAA* pFind);
    static BOOL WINAPI findNext(HANDLE hFind, WIN32_FIND_DATAA* pFind);
    static BOOL WINAPI findClose(HANDLE hFind);
    bool (*m_pfnMatches)(const std::string&, const std::string&);
    size_t m_nNext = 0;
    int m_cOpen = 0;
    ReplacedImport m_first, m_next, m_close;
};

#endif
