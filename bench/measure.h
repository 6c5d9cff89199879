// How the benchmark measures and prints. Only ratios mean something beyond one machine.
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#include <windows.h>

#include <algorithm>
#include <stdio.h>

inline double seconds()
{
    LARGE_INTEGER now, frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    return double(now.QuadPart) / double(frequency.QuadPart);
}

// The best of some rounds: everything that disturbs a round makes it slower.
template <typename Work> double best(Work work, int cRounds = 7)
{
    double dBest = 1e9;
    for (int n = 0; n < cRounds; ++n) {
        double dStart = seconds();
        work();
        dBest = std::min(dBest, seconds() - dStart);
    }
    return dBest;
}

// Handles the messages that are waiting now.
inline void pump()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageA(&msg);
    }
}

inline void print(const char* pszWhat, double dValue, const char* pszUnit, double dYardstick,
                  const char* pszYardstick, double dRatio)
{
    printf("%-36s %10.2f %-5s %-36s %10.2f %-5s ratio %5.2f\n", pszWhat, dValue, pszUnit,
           pszYardstick, dYardstick, pszUnit, dRatio);
    fflush(stdout);
}

#endif
