#include "transfer/panes/drawing.h"
#include "resources/ids.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/rows.h"

namespace {

constexpr int HELD_LISTS[] = {IDC_DANDD_HOSTFILES, IDC_DANDD_HOSTDIRS, IDC_DANDD_LOCALFILES};
constexpr DWORD RESUME_POSTED = 1U << 31;

DWORD flagOf(int idControl)
{
    return 1U << panes::paneListIndex(idControl);
}

} // namespace

bool panes::ensureResumePosted(XferWindowRecord* pRecord)
{
    if ((pRecord->fsHeldLists & RESUME_POSTED) == 0 && pRecord->fBusy != 0 &&
        PostMessageA(pRecord->hwndDialog, WM_XFER_SHOWLISTS, 0, 0)) {
        pRecord->fsHeldLists |= RESUME_POSTED;
    }
    return (pRecord->fsHeldLists & RESUME_POSTED) != 0;
}

// What is held must show again, so it is held only if the message that ends it is on its way.
bool panes::suspendDrawing(XferWindowRecord* pRecord, int idControl)
{
    DWORD fsList = flagOf(idControl);
    if ((pRecord->fsHeldLists & fsList) != 0) {
        return true;
    }
    if (!ensureResumePosted(pRecord)) {
        return false;
    }
    pRecord->fsHeldLists |= fsList;
    sendToList(GetDlgItem(pRecord->hwndDialog, idControl), WM_SETREDRAW, FALSE);
    return true;
}

bool panes::resumeDrawing(XferWindowRecord* pRecord)
{
    window::Ref ref = window::refOf(pRecord);
    if (!applyChanges(pRecord)) {
        return false;
    }
    DWORD fsLists = pRecord->fsHeldLists;
    pRecord->fsHeldLists = 0;
    for (int idControl : HELD_LISTS) {
        if ((fsLists & flagOf(idControl)) != 0) {
            HWND hwndList = GetDlgItem(ref.hdlgDandD, idControl);
            sendToList(hwndList, WM_SETREDRAW, TRUE);
            // The message passes through procedures that the caller can replace.
            if (!window::isAlive(ref)) {
                return false;
            }
            InvalidateRect(hwndList, nullptr, TRUE);
        }
    }
    return true;
}
