// The table of status windows. A slot belongs to a window from the end of its creation until
// nXferStatDestroy, also while the window itself is already gone: its user may close it.
#ifndef STATUS_SLOTS_H
#define STATUS_SLOTS_H

#include "include/krhaul.h"

struct StatSlot {
    HWND hdlgStat;   // the window; 0 says that the slot is free
    HWND hwndParent; // receives the private messages
    HMODULE hLanguage;
    DWORD ulTotalSize; // bytes of the current file; 0 says that they aren't known
    char szStatus[XFERSTAT_MAXSTATUS + 1];
    DWORD ulCount;     // bytes so far
    DWORD dwStartTick; // GetTickCount at the last start; 0 before the first
    UINT_PTR uTimer;   // not 0 while the tick timer runs
    LONG nLastPercent; // last shown; -1 says that none was
};

constexpr int XFERSTAT_NOSLOT = -1;
constexpr LONG XFERSTAT_NOPERCENT = -1;

namespace status {

// The index of a slot is also the id of its timer.
extern StatSlot g_slots[XFERSTAT_MAXWINDOWS];

void freeAllSlots();

// The slot of a window, or null.
StatSlot* slotOf(HWND hdlgStat);

} // namespace status

// Both give the lowest index that fits, or XFERSTAT_NOSLOT. A null window fits none.
int XferStatFindFreeSlot();
int XferStatFindSlot(HWND hdlgStat);

#endif
