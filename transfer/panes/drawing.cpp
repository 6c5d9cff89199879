// Host lists that aren't drawn while the caller fills them. A row that comes or goes in a
// visible list makes it draw its scroll bar, which costs far more than the row itself, and in a
// busy state rows come and go in long runs.
#include "transfer/panes/drawing.h"
#include "resources/ids.h"

namespace {

constexpr int HELD_LISTS[] = {IDC_DANDD_HOSTFILES, IDC_DANDD_HOSTDIRS};

DWORD flagOf(int idControl)
{
    for (DWORD n = 0; n < ARRAYSIZE(HELD_LISTS); ++n) {
        if (HELD_LISTS[n] == idControl) {
            return 1U << n;
        }
    }
    return 0;
}

} // namespace

// What is held must show again, so it is held only if the message that ends it is on its way.
bool panes::suspendDrawing(XferWindowRecord* pRecord, int idControl)
{
    DWORD fsList = flagOf(idControl);
    if ((pRecord->fsHeldLists & fsList) != 0) {
        return true;
    }
    if (fsList == 0 || pRecord->fBusy == 0 ||
        !PostMessageA(pRecord->hwndDialog, panes::WM_XFER_SHOWLISTS, 0, 0)) {
        return false;
    }
    pRecord->fsHeldLists |= fsList;
    SendDlgItemMessageA(pRecord->hwndDialog, idControl, WM_SETREDRAW, FALSE, 0);
    return true;
}

void panes::resumeDrawing(XferWindowRecord* pRecord)
{
    HWND hdlgDandD = pRecord->hwndDialog;
    DWORD fsLists = pRecord->fsHeldLists;
    pRecord->fsHeldLists = 0;
    for (int idControl : HELD_LISTS) {
        if ((fsLists & flagOf(idControl)) != 0) {
            HWND hwndList = GetDlgItem(hdlgDandD, idControl);
            SendMessageA(hwndList, WM_SETREDRAW, TRUE, 0);
            InvalidateRect(hwndList, nullptr, TRUE);
        }
    }
}
