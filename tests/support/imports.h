// Puts functions of the platform under a test's control: replaces what a loaded module
// imports, for as long as the object lives.
#ifndef TESTS_SUPPORT_IMPORTS_H
#define TESTS_SUPPORT_IMPORTS_H

#include <windows.h>

#include <memory>
#include <utility>
#include <vector>

class ReplacedImport {
public:
    // The fake needs the calling convention and arguments of the original. An import that
    // the module doesn't have is a failure of the test.
    template <typename Function>
    ReplacedImport(HMODULE hModule, const char* pszName, Function* pfnFake)
        : ReplacedImport(hModule, {nullptr, pszName, 0}, reinterpret_cast<void*>(pfnFake))
    {
    }
    // The same for what is imported by number; pszFrom is the library that it comes from.
    template <typename Function>
    ReplacedImport(HMODULE hModule, const char* pszFrom, WORD wOrdinal, Function* pfnFake)
        : ReplacedImport(hModule, {pszFrom, nullptr, wOrdinal}, reinterpret_cast<void*>(pfnFake))
    {
    }
    ~ReplacedImport();
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;

    template <typename Function> Function original() const
    {
        return reinterpret_cast<Function>(m_pOriginal);
    }

    struct Import {
        const char* pszFrom; // null for any library
        const char* pszName; // null for an import by number
        WORD wOrdinal;
    };

private:
    ReplacedImport(HMODULE hModule, const Import& wanted, void* pFake);
    void** m_ppSlot;
    void* m_pOriginal;
};

// Any number of imports of a module; those that it doesn't have are left out.
class ReplacedImports {
public:
    explicit ReplacedImports(HMODULE hModule) : m_hModule(hModule)
    {
    }
    ~ReplacedImports()
    {
        clear();
    }
    template <typename Function> void replace(const char* pszName, Function* pfnFake)
    {
        if (isImported(pszName)) {
            m_all.push_back(std::make_unique<ReplacedImport>(m_hModule, pszName, pfnFake));
        }
    }
    void clear();

private:
    bool isImported(const char* pszName) const;
    HMODULE m_hModule;
    std::vector<std::unique_ptr<ReplacedImport>> m_all;
};

// Counts what a module calls of one import, which goes on as ever.
template <typename Function> class CountedCalls;
template <typename Result, typename... Args> class CountedCalls<Result WINAPI(Args...)> {
public:
    CountedCalls(HMODULE hModule, const char* pszName) : m_import(hModule, pszName, pass)
    {
        s_pfn = m_import.template original<Result(WINAPI*)(Args...)>();
        s_c = 0;
    }
    // The calls since the last question.
    int take() const
    {
        return std::exchange(s_c, 0);
    }

private:
    static Result WINAPI pass(Args... args)
    {
        ++s_c;
        return s_pfn(args...);
    }
    static inline Result(WINAPI* s_pfn)(Args...);
    static inline int s_c;
    ReplacedImport m_import;
};

#endif
