// Puts functions of the platform under a test's control: replaces what a loaded module
// imports, for as long as the object lives.
#ifndef TESTS_SUPPORT_IMPORTS_H
#define TESTS_SUPPORT_IMPORTS_H

#include <windows.h>

class ReplacedImport {
public:
    // The fake needs the calling convention and arguments of the original. An import that
    // the module doesn't have is a failure of the test.
    template <typename Function>
    ReplacedImport(HMODULE hModule, const char* pszName, Function* pfnFake)
        : ReplacedImport(hModule, pszName, reinterpret_cast<void*>(pfnFake), 0)
    {
    }
    ~ReplacedImport();
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;

    template <typename Function> Function original() const
    {
        return reinterpret_cast<Function>(m_pOriginal);
    }

private:
    ReplacedImport(HMODULE hModule, const char* pszName, void* pFake, int);
    void** m_ppSlot;
    void* m_pOriginal;
};

#endif
