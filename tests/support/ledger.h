// The blocks that the library has taken and not given back, and memory that runs out.
#ifndef TESTS_SUPPORT_LEDGER_H
#define TESTS_SUPPORT_LEDGER_H

#include "imports.h"

#include <stddef.h>

// Sees the global heap and the C heap, as the library uses them while the object lives. One at
// a time.
class Ledger {
public:
    Ledger();

    // Blocks taken since the object was made.
    size_t blocks() const;
    // Lets the n-th request for memory from now fail, and with fForGood all after it; 0 stops it.
    void failAt(int n, bool fForGood = false);
    // Whether a request has failed since.
    bool hasFailed() const;

private:
    ReplacedImport m_globalAlloc, m_globalReAlloc, m_globalFree, m_malloc, m_realloc, m_free;
};

#endif
