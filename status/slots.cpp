#include "status/slots.h"

StatSlot status::g_slots[XFERSTAT_MAXWINDOWS];

namespace {

int findByWindow(HWND hdlgStat)
{
    for (int n = 0; n < XFERSTAT_MAXWINDOWS; ++n) {
        if (status::g_slots[n].hdlgStat == hdlgStat) {
            return n;
        }
    }
    return XFERSTAT_NOSLOT;
}

} // namespace

void status::freeAllSlots()
{
    for (StatSlot& slot : status::g_slots) {
        slot.hdlgStat = nullptr;
    }
}

int XferStatFindFreeSlot()
{
    return findByWindow(nullptr);
}

int XferStatFindSlot(HWND hdlgStat)
{
    return hdlgStat == nullptr ? XFERSTAT_NOSLOT : findByWindow(hdlgStat);
}

StatSlot* status::slotOf(HWND hdlgStat)
{
    int n = XferStatFindSlot(hdlgStat);
    return n == XFERSTAT_NOSLOT ? nullptr : &status::g_slots[n];
}
