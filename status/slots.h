// The table of status windows. A slot belongs to a window from the end of its creation until
// nXferStatDestroy, even if the window itself has been closed by its user meanwhile.
#ifndef STATUS_SLOTS_H
#define STATUS_SLOTS_H

#include "include/krhaul.h"

struct StatSlot {
    HWND hdlgStat;   // the window; 0 means that the slot is free
    HWND hwndParent; // receives the private messages
    HMODULE hLanguage;
    DWORD ulTotalSize; // bytes of the current file; 0 means unknown
    char szStatus[XFERSTAT_MAXSTATUS + 1];
    DWORD ulCount;     // bytes so far
    DWORD dwStartTick; // GetTickCount at the last start; 0 before the first
    UINT_PTR uTimer;   // not 0 while the tick timer runs
    LONG nLastPercent; // last shown; -1 means none yet
    LONG fClosed;      // the window has been destroyed, so its handle may be another window's
    DWORD nSerial;     // distinguishes the window from any other in this slot
};

constexpr int XFERSTAT_NOSLOT = -1;
constexpr LONG XFERSTAT_NOPERCENT = -1;

// Both return the lowest index that fits, or XFERSTAT_NOSLOT. A null window fits none, and a
// window that still exists is preferred to one that had the same handle before.
int XferStatFindFreeSlot();
int XferStatFindSlot(HWND hdlgStat);

namespace status {

// The index of a slot is also the id of its timer.
extern StatSlot g_slots[XFERSTAT_MAXWINDOWS];

void freeAllSlots();

// The slot of a window, or null.
StatSlot* slotOf(HWND hdlgStat);
int indexOf(const StatSlot* pSlot);

// Assigns a free slot to a new window.
void takeSlot(StatSlot* pSlot, HWND hdlgStat, HWND hwndParent, HMODULE hLanguage);

// Handles WM_NCDESTROY: from here on nothing is written to the window.
void noteClosed(HWND hdlgStat);

// A slot, remembered over messages that the caller's code can receive: it may close the window,
// destroy it, or create another one in the same slot.
struct Ref {
    StatSlot* pSlot;
    DWORD nSerial;
};
Ref refOf(StatSlot* pSlot);

// Whether the slot still belongs to the same window, and whether that window still exists.
bool holdsSlot(const Ref& ref);
bool isAlive(const Ref& ref);

// Both change the text of a control if the window still exists.
void setText(const Ref& ref, int idControl, const char* pszText);
void setNumber(const Ref& ref, int idControl, DWORD dwValue);

} // namespace status

#endif
