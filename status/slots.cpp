#include "status/slots.h"

StatSlot status::g_slots[XFERSTAT_MAXWINDOWS];

namespace {

DWORD s_nLastSerial;

int findWindow(HWND hdlgStat, LONG fClosed)
{
    for (int n = 0; n < XFERSTAT_MAXWINDOWS; ++n) {
        const StatSlot* pSlot = &status::g_slots[n];
        if (pSlot->hdlgStat == hdlgStat && pSlot->fClosed == fClosed) {
            return n;
        }
    }
    return XFERSTAT_NOSLOT;
}

} // namespace

void status::freeAllSlots()
{
    for (StatSlot& slot : g_slots) {
        slot.hdlgStat = nullptr;
    }
}

int XferStatFindFreeSlot()
{
    for (int n = 0; n < XFERSTAT_MAXWINDOWS; ++n) {
        if (status::g_slots[n].hdlgStat == nullptr) {
            return n;
        }
    }
    return XFERSTAT_NOSLOT;
}

int XferStatFindSlot(HWND hdlgStat)
{
    if (hdlgStat == nullptr) {
        return XFERSTAT_NOSLOT;
    }
    int n = findWindow(hdlgStat, 0);
    return n != XFERSTAT_NOSLOT ? n : findWindow(hdlgStat, 1);
}

StatSlot* status::slotOf(HWND hdlgStat)
{
    int n = XferStatFindSlot(hdlgStat);
    return n == XFERSTAT_NOSLOT ? nullptr : &g_slots[n];
}

int status::indexOf(const StatSlot* pSlot)
{
    return int(pSlot - g_slots);
}

// szStatus is left alone: the text of the previous window stays until a new one is set.
void status::takeSlot(StatSlot* pSlot, HWND hdlgStat, HWND hwndParent, HMODULE hLanguage)
{
    pSlot->hdlgStat = hdlgStat;
    pSlot->hwndParent = hwndParent;
    pSlot->hLanguage = hLanguage;
    pSlot->ulTotalSize = 0;
    pSlot->ulCount = 0;
    pSlot->dwStartTick = 0;
    pSlot->uTimer = 0;
    pSlot->nLastPercent = XFERSTAT_NOPERCENT;
    pSlot->fClosed = 0;
    pSlot->nSerial = ++s_nLastSerial;
}

void status::noteClosed(HWND hdlgStat)
{
    int n = findWindow(hdlgStat, 0);
    if (hdlgStat != nullptr && n != XFERSTAT_NOSLOT) {
        KillTimer(hdlgStat, UINT_PTR(n));
        g_slots[n].uTimer = 0;
        g_slots[n].fClosed = 1;
    }
}

status::Ref status::refOf(StatSlot* pSlot)
{
    return {pSlot, pSlot->nSerial};
}

bool status::holdsSlot(const Ref& ref)
{
    return ref.pSlot->hdlgStat != nullptr && ref.pSlot->nSerial == ref.nSerial;
}

bool status::isAlive(const Ref& ref)
{
    return holdsSlot(ref) && ref.pSlot->fClosed == 0;
}

void status::setText(const Ref& ref, int idControl, const char* pszText)
{
    if (isAlive(ref)) {
        SetDlgItemTextA(ref.pSlot->hdlgStat, idControl, pszText);
    }
}

void status::setNumber(const Ref& ref, int idControl, DWORD dwValue)
{
    if (isAlive(ref)) {
        SetDlgItemInt(ref.pSlot->hdlgStat, idControl, dwValue, FALSE);
    }
}
