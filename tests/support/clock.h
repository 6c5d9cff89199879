// The time, as a test sets it.
#ifndef TESTS_SUPPORT_CLOCK_H
#define TESTS_SUPPORT_CLOCK_H

#include "imports.h"

// What the library takes for the time while the object lives.
class FakeClock {
public:
    explicit FakeClock(DWORD dwNow)
        : m_tickCount(GetModuleHandleA("KRHAUL.DLL"), "GetTickCount", now)
    {
        s_dwNow = dwNow;
    }
    static inline DWORD s_dwNow;

private:
    static DWORD WINAPI now()
    {
        return s_dwNow;
    }
    ReplacedImport m_tickCount;
};

#endif
