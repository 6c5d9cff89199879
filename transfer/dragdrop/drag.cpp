// Dragging files from one pane to the other: a hand-made loop over the mouse, inside this
// window alone, and the window procedures that begin it.
#include "transfer/dragdrop/drag.h"
#include "resources/ids.h"
#include "shared/module.h"
#include "transfer/dragdrop/drop.h"
#include "transfer/frame/strip.h"

#include <stdlib.h>

namespace {

constexpr int THRESHOLD = 2;
constexpr LONG NO_ROW = -1;

// Statics, not fields of the record: only one window at a time has the mouse.
bool g_fHostPressArmed;
bool g_fLocalPressArmed;
POINT g_ptHostPress;
POINT g_ptLocalPress;

// A file list that a drag can begin on.
struct DragSource {
    int idSource;
    int idFileTarget;
    int idDirTarget;
    Direction direction;
    WNDPROC XferWindowRecord::*pOriginal;
    bool* pfArmed;
    POINT* pptPress;
};

constexpr DragSource HOST_SOURCE = {IDC_DANDD_HOSTFILES,
                                    IDC_DANDD_LOCALFILES,
                                    IDC_DANDD_LOCALDIRS,
                                    XFERDIR_RECEIVE,
                                    &XferWindowRecord::pfnOrigHostFileList,
                                    &g_fHostPressArmed,
                                    &g_ptHostPress};

constexpr DragSource LOCAL_SOURCE = {IDC_DANDD_LOCALFILES,
                                     IDC_DANDD_HOSTFILES,
                                     IDC_DANDD_HOSTDIRS,
                                     XFERDIR_SEND,
                                     &XferWindowRecord::pfnOrigLocalFileList,
                                     &g_fLocalPressArmed,
                                     &g_ptLocalPress};

struct Drag {
    HWND hwndSource, hwndFileTarget, hwndDirTarget;
    int idFileTarget, idDirTarget;
    HCURSOR hcurNot, hcurCount, hcurArrow;
    LONG nTopRow, cRows; // of the directory target
    LONG nMarked;        // row marked since the pointer last came into these lists
    POINT ptStart;
};

bool isAnyButtonDown()
{
    return ((GetAsyncKeyState(VK_LBUTTON) | GetAsyncKeyState(VK_MBUTTON) |
             GetAsyncKeyState(VK_RBUTTON)) &
            0x8000) != 0;
}

// The mark is the caret of the directory list, and what a drop goes by.
void markRow(Drag* pDrag, POINT pt)
{
    ScreenToClient(pDrag->hwndDirTarget, &pt);
    LONG y = pt.y > 0 ? pt.y - 1 : pt.y;
    LONG nRow = pDrag->nTopRow + y / g_nListItemHeight;
    if (nRow == pDrag->nMarked || nRow >= pDrag->cRows) {
        return;
    }
    if (GetFocus() != pDrag->hwndDirTarget) {
        SetFocus(pDrag->hwndDirTarget);
    }
    // With a selected row, a single-selection list would refuse to move its caret.
    if (SendMessageA(pDrag->hwndDirTarget, LB_GETCURSEL, 0, 0) != LB_ERR) {
        SendMessageA(pDrag->hwndDirTarget, LB_SETCURSEL, WPARAM(-1), 0);
    }
    // A row that shows in part is enough: the list must not scroll under the pointer.
    SendMessageA(pDrag->hwndDirTarget, LB_SETCARETINDEX, WPARAM(nRow), TRUE);
    pDrag->nMarked = nRow;
}

// A single-selection list can keep its caret against this, hence the marked row of our own.
void unmark(Drag* pDrag)
{
    SendMessageA(pDrag->hwndDirTarget, LB_SETCARETINDEX, WPARAM(-1), 0);
    pDrag->nMarked = NO_ROW;
}

// One pass of the loop. Gives the id of the target under the pointer, or 0.
int track(Drag* pDrag, POINT pt)
{
    HWND hwndUnder = WindowFromPoint(pt);
    if (hwndUnder == pDrag->hwndFileTarget) {
        SetCursor(pDrag->hcurCount);
        return pDrag->idFileTarget;
    }
    if (hwndUnder == pDrag->hwndDirTarget) {
        SetCursor(pDrag->hcurCount);
        markRow(pDrag, pt);
        return pDrag->nMarked != NO_ROW ? pDrag->idDirTarget : 0;
    }
    if (hwndUnder == pDrag->hwndSource) {
        bool fLeftStart = pt.x != pDrag->ptStart.x && pt.y != pDrag->ptStart.y;
        SetCursor(fLeftStart ? pDrag->hcurCount : pDrag->hcurArrow);
        return 0;
    }
    SetCursor(pDrag->hcurNot);
    unmark(pDrag);
    return 0;
}

Drag openDrag(HWND hdlgDandD, int idSource, int idFileTarget, int idDirTarget)
{
    Drag drag = {};
    drag.hwndSource = GetDlgItem(hdlgDandD, idSource);
    drag.hwndFileTarget = GetDlgItem(hdlgDandD, idFileTarget);
    drag.hwndDirTarget = GetDlgItem(hdlgDandD, idDirTarget);
    drag.idFileTarget = idFileTarget;
    drag.idDirTarget = idDirTarget;
    bool fSeveral = SendMessageA(drag.hwndSource, LB_GETSELCOUNT, 0, 0) > 1;
    drag.hcurNot = LoadCursorA(g_hInstance, "DropNot");
    drag.hcurCount = LoadCursorA(g_hInstance, fSeveral ? "DropMultiple" : "DropSingle");
    drag.hcurArrow = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    drag.nTopRow = LONG(SendMessageA(drag.hwndDirTarget, LB_GETTOPINDEX, 0, 0));
    drag.cRows = LONG(SendMessageA(drag.hwndDirTarget, LB_GETCOUNT, 0, 0));
    drag.nMarked = NO_ROW;
    GetCursorPos(&drag.ptStart);
    return drag;
}

// Runs the drag and what follows it. Gives its result.
int runDrag(HWND hdlgDandD, XferWindowRecord* pRecord, const DragSource* pSource)
{
    int idTarget = nXferDandDTrackDrag(hdlgDandD, pSource->idSource, pSource->idFileTarget,
                                       pSource->idDirTarget);
    // The marking of rows moves the focus, which tells the caller's windows.
    if (idTarget > 0 && window::isAlive(hdlgDandD, pRecord)) {
        vXferDandDDropOn(pRecord, pSource->idSource, idTarget, pSource->direction,
                         idTarget == pSource->idDirTarget);
    }
    return idTarget;
}

// Lets the list box end its press. What the strip says of a failed drop outlives the
// notification that comes with it.
void releaseButton(HWND hwnd, const XferWindowRecord* pRecord, const DragSource* pSource,
                   WPARAM wParam)
{
    CallWindowProcA(pRecord->*pSource->pOriginal, hwnd, WM_LBUTTONUP, wParam,
                    MAKELPARAM(pSource->pptPress->x, pSource->pptPress->y));
    frame::keepStripText(false);
}

// A drag runs the caller's code, and the window can die in it.
LRESULT dragAndRelease(HWND hwnd, XferWindowRecord* pRecord, const DragSource* pSource,
                       WPARAM wParam, bool fReplayPress)
{
    HWND hdlgDandD = pRecord->hwndDialog;
    int idTarget = runDrag(hdlgDandD, pRecord, pSource);
    *pSource->pfArmed = false;
    if (!window::isAlive(hdlgDandD, pRecord)) {
        return 0;
    }
    if (fReplayPress && idTarget < 1) {
        CallWindowProcA(pRecord->*pSource->pOriginal, hwnd, WM_LBUTTONDOWN, wParam,
                        MAKELPARAM(pSource->pptPress->x, pSource->pptPress->y));
        // Its notifications pass through the caller's window procedure.
        if (!window::isAlive(hdlgDandD, pRecord)) {
            return 0;
        }
    }
    releaseButton(hwnd, pRecord, pSource, wParam);
    return 0;
}

POINT pointOf(LPARAM lParam)
{
    return {short(LOWORD(lParam)), short(HIWORD(lParam))};
}

bool isFarFromPress(const DragSource* pSource, LPARAM lParam)
{
    POINT pt = pointOf(lParam);
    return abs(int(pt.x - pSource->pptPress->x)) >= THRESHOLD ||
           abs(int(pt.y - pSource->pptPress->y)) >= THRESHOLD;
}

LRESULT passOn(HWND hwnd, const XferWindowRecord* pRecord, WNDPROC XferWindowRecord::*pOriginal,
               UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcA(pRecord->*pOriginal, hwnd, uMessage, wParam, lParam);
}

LRESULT onPress(HWND hwnd, XferWindowRecord* pRecord, const DragSource* pSource, WPARAM wParam,
                LPARAM lParam)
{
    if (pRecord->fBusy) {
        return 0;
    }
    *pSource->pptPress = pointOf(lParam);
    *pSource->pfArmed = true;
    if (SendMessageA(hwnd, LB_GETSELCOUNT, 0, 0) > 1) {
        return dragAndRelease(hwnd, pRecord, pSource, wParam, true);
    }
    return passOn(hwnd, pRecord, pSource->pOriginal, WM_LBUTTONDOWN, wParam, lParam);
}

LRESULT fileListProc(HWND hwnd, const DragSource* pSource, UINT uMessage, WPARAM wParam,
                     LPARAM lParam)
{
    XferWindowRecord* pRecord = window::recordOf(GetParent(hwnd));
    if (pRecord == nullptr || pRecord->*pSource->pOriginal == nullptr) {
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
    // Also the second press of a double click, which would change the selection.
    if (uMessage == WM_LBUTTONDBLCLK && pRecord->fBusy) {
        return 0;
    }
    if (uMessage == WM_LBUTTONDOWN) {
        return onPress(hwnd, pRecord, pSource, wParam, lParam);
    }
    if (uMessage == WM_MOUSEMOVE && *pSource->pfArmed && isFarFromPress(pSource, lParam)) {
        return dragAndRelease(hwnd, pRecord, pSource, wParam, false);
    }
    if (uMessage == WM_LBUTTONUP) {
        *pSource->pfArmed = false;
    }
    return passOn(hwnd, pRecord, pSource->pOriginal, uMessage, wParam, lParam);
}

// A directory list shows a selected row only while it has the focus.
LRESULT dirListProc(HWND hwnd, WNDPROC XferWindowRecord::*pOriginal, UINT uMessage, WPARAM wParam,
                    LPARAM lParam)
{
    const XferWindowRecord* pRecord = window::recordOf(GetParent(hwnd));
    if (pRecord == nullptr || pRecord->*pOriginal == nullptr) {
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
    if (uMessage == WM_KILLFOCUS) {
        SendMessageA(hwnd, LB_SETCURSEL, WPARAM(-1), 0);
    }
    return passOn(hwnd, pRecord, pOriginal, uMessage, wParam, lParam);
}

} // namespace

int nXferDandDTrackDrag(HWND hdlgDandD, int idSource, int idFileTarget, int idDirTarget)
{
    Drag drag = openDrag(hdlgDandD, idSource, idFileTarget, idDirTarget);
    int idResult;
    POINT pt;
    SetCapture(hdlgDandD);
    do {
        GetCursorPos(&pt);
        idResult = track(&drag, pt);
    } while (isAnyButtonDown());
    ReleaseCapture();
    SetCursor(drag.hcurArrow);
    DestroyCursor(drag.hcurNot);
    DestroyCursor(drag.hcurCount);
    return idResult;
}

LRESULT CALLBACK lHFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return fileListProc(hwnd, &HOST_SOURCE, uMessage, wParam, lParam);
}

LRESULT CALLBACK lLFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return fileListProc(hwnd, &LOCAL_SOURCE, uMessage, wParam, lParam);
}

LRESULT CALLBACK lHDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dirListProc(hwnd, &XferWindowRecord::pfnOrigHostDirList, uMessage, wParam, lParam);
}

LRESULT CALLBACK lLDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dirListProc(hwnd, &XferWindowRecord::pfnOrigLocalDirList, uMessage, wParam, lParam);
}
