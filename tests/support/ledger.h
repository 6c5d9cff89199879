// What the library has taken and not given back, and memory that runs out.
#ifndef TESTS_SUPPORT_LEDGER_H
#define TESTS_SUPPORT_LEDGER_H

#include "imports.h"

#include <stddef.h>
#include <string>

// Sees both heaps, modules, and objects and contexts of the screen, as the library uses them
// while the object lives. Blocks of the global heap move when they grow, and stay when freed, until
// the object's end, which tells if one was written to. One at a time.
class Ledger : private ReplacedImports {
public:
    // Without fAll there are windows already: what they give back isn't asked for.
    explicit Ledger(bool fAll = true);
    // Of a program that holds the library's code: sees the objects and contexts alone, those that
    // the test makes too. They are what failAt counts.
    explicit Ledger(HMODULE hProgram);
    ~Ledger();
    Ledger(const Ledger&) = delete;
    Ledger& operator=(const Ledger&) = delete;

    // Things taken since the object was made, and the calls that gave them.
    static size_t count();
    static std::string owed();

    // Lets the n-th request for memory from now fail, and with fForGood all after it; 0 stops it.
    void failAt(int n, bool fForGood = false);
    // Whether a request has failed since.
    bool hasFailed() const;

private:
    void begin(bool fAll);
    void watchObjects();
    template <int NUMBER, typename Result, typename... Args>
    void makes(const char* pszName, Result(WINAPI* pfn)(Args...));
    template <int NUMBER, int ARGUMENT, typename Result, typename... Args>
    void gives(const char* pszName, Result(WINAPI* pfn)(Args...));
};

#endif
