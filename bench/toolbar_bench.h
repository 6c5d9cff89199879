// Two toolbars of the same 22 rows and 15 pictures for the benchmark: ours, and that of the
// common control library.
#ifndef BENCH_TOOLBAR_BENCH_H
#define BENCH_TOOLBAR_BENCH_H

#include <windows.h>

enum BenchToolbarLook { BENCH_BUSY, BENCH_IDLE };

struct BenchToolbars {
    HWND hwndParent, hwndOurs, hwndLibrary;
};

// Makes both, visible and one below the other. hModule holds the strip.
BenchToolbars makeBenchToolbars(HINSTANCE hModule);
void destroyBenchToolbars(const BenchToolbars* pToolbars);

// Gives all buttons of both the states that they have while the window is busy or idle.
void setBenchToolbarLook(const BenchToolbars* pToolbars, BenchToolbarLook look);

// Paints the whole of a toolbar, background included, a number of times.
void repaintBenchToolbar(HWND hwnd, int cTimes);

#endif
