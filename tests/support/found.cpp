#include "found.h"

#include <gtest/gtest.h>

namespace {

FoundFiles* s_pFound;

} // namespace

FoundFiles::FoundFiles(HMODULE hModule,
                       bool (*pfnMatches)(const std::string& name, const std::string& mask))
    : m_pfnMatches(pfnMatches), m_first(hModule, "FindFirstFileA", findFirst),
      m_next(hModule, "FindNextFileA", findNext), m_close(hModule, "FindClose", findClose)
{
    s_pFound = this;
}

FoundFiles::~FoundFiles()
{
    EXPECT_EQ(m_cOpen, 0);
}

BOOL WINAPI FoundFiles::findNext(HANDLE, WIN32_FIND_DATAA* pFind)
{
    while (s_pFound->m_nNext < s_pFound->entries.size()) {
        const Entry& entry = s_pFound->entries[s_pFound->m_nNext++];
        if (s_pFound->m_pfnMatches(entry.name, s_pFound->masks.back())) {
            *pFind = {};
            pFind->dwFileAttributes = entry.dwAttributes;
            lstrcpynA(pFind->cFileName, entry.name.c_str(), sizeof pFind->cFileName);
            return TRUE;
        }
    }
    return FALSE;
}

HANDLE WINAPI FoundFiles::findFirst(LPCSTR pszMask, WIN32_FIND_DATAA* pFind)
{
    s_pFound->masks.push_back(pszMask);
    s_pFound->m_nNext = 0;
    bool fFound = findNext(nullptr, pFind) != 0;
    s_pFound->m_cOpen += fFound;
    return fFound ? HANDLE(1) : INVALID_HANDLE_VALUE;
}

BOOL WINAPI FoundFiles::findClose(HANDLE)
{
    --s_pFound->m_cOpen;
    return TRUE;
}
