#include "slots.h"

StatSlot g_statSlots[XFERSTAT_MAXWINDOWS];

namespace {

int findByWindow(HWND hdlgStat)
{
    for (int n = 0; n < XFERSTAT_MAXWINDOWS; ++n) {
        if (g_statSlots[n].hdlgStat == hdlgStat) {
            return n;
        }
    }
    return XFERSTAT_NOSLOT;
}

} // namespace

void XferStatFreeAllSlots()
{
    for (StatSlot& slot : g_statSlots) {
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

StatSlot* XferStatGetSlot(HWND hdlgStat)
{
    int n = XferStatFindSlot(hdlgStat);
    return n == XFERSTAT_NOSLOT ? nullptr : &g_statSlots[n];
}
