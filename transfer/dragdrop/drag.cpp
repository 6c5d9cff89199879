// Dragging files from one pane to the other: a loop of our own that polls the mouse and never
// leaves this window, and the procedures of the lists that begin it.
#include "transfer/dragdrop/drag.h"
#include "resources/ids.h"
#include "shared/module.h"
#include "transfer/dragdrop/drop.h"
#include "transfer/dragdrop/hung.h"
#include "transfer/frame/strip.h"
#include "transfer/panes/changes.h"

#include <stdlib.h>

namespace {

constexpr int THRESHOLD = 2;
constexpr int KEY_DOWN = 0x8000; // of GetAsyncKeyState
constexpr LONG NO_ROW = -1;

// Statics, not fields of the record: only one window at a time has the mouse.
bool g_fHostPressArmed;
bool g_fLocalPressArmed;
POINT g_ptHostPress;
POINT g_ptLocalPress;

// The row of the directory target that the last drag marked, or NO_ROW. The caret of a list is no
// proof of a mark: a single-selection list can keep it against LB_SETCARETINDEX -1.
LONG s_nMarkedRow = NO_ROW;

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

constexpr DragSource HOST_SOURCE = {
    /* idSource */ IDC_DANDD_HOSTFILES,
    /* idFileTarget */ IDC_DANDD_LOCALFILES,
    /* idDirTarget */ IDC_DANDD_LOCALDIRS,
    /* direction */ XFERDIR_RECEIVE,
    /* pOriginal */ &XferWindowRecord::pfnOrigHostFileList,
    /* pfArmed */ &g_fHostPressArmed,
    /* pptPress */ &g_ptHostPress,
};

constexpr DragSource LOCAL_SOURCE = {
    /* idSource */ IDC_DANDD_LOCALFILES,
    /* idFileTarget */ IDC_DANDD_HOSTFILES,
    /* idDirTarget */ IDC_DANDD_HOSTDIRS,
    /* direction */ XFERDIR_SEND,
    /* pOriginal */ &XferWindowRecord::pfnOrigLocalFileList,
    /* pfArmed */ &g_fLocalPressArmed,
    /* pptPress */ &g_ptLocalPress,
};

// A message to one of the lists.
struct ListMessage {
    HWND hwnd;
    UINT uMessage;
    WPARAM wParam;
    LPARAM lParam;
};

struct Drag {
    window::Ref ref;
    HWND hwndSource;
    HWND hwndFileTarget;
    HWND hwndDirTarget;
    int idFileTarget;
    int idDirTarget;
    HCURSOR hcurNot;
    HCURSOR hcurCount;
    HCURSOR hcurArrow;
    LONG nTopRow; // this and the number of rows: of the directory target
    LONG cRows;
    POINT ptStart;
};

bool isAnyButtonDown()
{
    return ((GetAsyncKeyState(VK_LBUTTON) | GetAsyncKeyState(VK_MBUTTON) |
             GetAsyncKeyState(VK_RBUTTON)) &
            KEY_DOWN) != 0;
}

// Marks the row under the pointer by the caret of the directory list, which the drop reads.
void markRow(const Drag* pDrag, POINT pt)
{
    ScreenToClient(pDrag->hwndDirTarget, &pt);
    LONG y = pt.y > 0 ? pt.y - 1 : pt.y;
    LONG nRow = pDrag->nTopRow + y / g_nListItemHeight;
    if (nRow == s_nMarkedRow || nRow >= pDrag->cRows) {
        return;
    }
    if (GetFocus() != pDrag->hwndDirTarget) {
        SetFocus(pDrag->hwndDirTarget);
    }
    // The caller's windows hear of the focus, and the window can end in that.
    if (!window::isAlive(pDrag->ref)) {
        return;
    }
    // With a selected row, a single-selection list would refuse to move its caret.
    if (SendMessageA(pDrag->hwndDirTarget, LB_GETCURSEL, 0, 0) != LB_ERR) {
        SendMessageA(pDrag->hwndDirTarget, LB_SETCURSEL, WPARAM(-1), 0);
    }
    // A row may show in part: the list must not scroll under the pointer.
    SendMessageA(pDrag->hwndDirTarget, LB_SETCARETINDEX, WPARAM(nRow), TRUE);
    s_nMarkedRow = nRow;
}

// A list that accepts -1 scrolls to it, but the rows must stay where the pointer sees them.
void unmark(const Drag* pDrag)
{
    if (s_nMarkedRow == NO_ROW) {
        return;
    }
    s_nMarkedRow = NO_ROW;
    SendMessageA(pDrag->hwndDirTarget, LB_SETCARETINDEX, WPARAM(-1), 0);
    if (SendMessageA(pDrag->hwndDirTarget, LB_GETTOPINDEX, 0, 0) != pDrag->nTopRow) {
        SendMessageA(pDrag->hwndDirTarget, LB_SETTOPINDEX, WPARAM(pDrag->nTopRow), 0);
    }
}

// Handles one pass of the loop. Returns the id of the target under the pointer, or 0. On some
// screens, such as that of a locked system, the pointer has no position: it is over no window then.
int track(const Drag* pDrag)
{
    POINT pt;
    HWND hwndUnder = GetCursorPos(&pt) ? WindowFromPoint(pt) : nullptr;
    if (hwndUnder != nullptr && hwndUnder == pDrag->hwndFileTarget) {
        SetCursor(pDrag->hcurCount);
        return pDrag->idFileTarget;
    }
    if (hwndUnder != nullptr && hwndUnder == pDrag->hwndDirTarget) {
        SetCursor(pDrag->hcurCount);
        markRow(pDrag, pt);
        return pDrag->idDirTarget;
    }
    if (hwndUnder != nullptr && hwndUnder == pDrag->hwndSource) {
        bool fLeftStart = pt.x != pDrag->ptStart.x && pt.y != pDrag->ptStart.y;
        SetCursor(fLeftStart ? pDrag->hcurCount : pDrag->hcurArrow);
        return 0;
    }
    SetCursor(pDrag->hcurNot);
    unmark(pDrag);
    return 0;
}

Drag openDrag(const window::Ref& ref, int idSource, int idFileTarget, int idDirTarget)
{
    HWND hdlgDandD = ref.hdlgDandD;
    Drag drag = {};
    drag.ref = ref;
    drag.hwndSource = GetDlgItem(hdlgDandD, idSource);
    drag.hwndFileTarget = GetDlgItem(hdlgDandD, idFileTarget);
    drag.hwndDirTarget = GetDlgItem(hdlgDandD, idDirTarget);
    drag.idFileTarget = idFileTarget;
    drag.idDirTarget = idDirTarget;
    bool fSeveral = SendMessageA(drag.hwndSource, LB_GETSELCOUNT, 0, 0) > 1;
    drag.hcurNot = LoadCursorA(g_hInstance, "DropNot");
    drag.hcurCount = LoadCursorA(g_hInstance, fSeveral ? "DropMultiple" : "DropSingle");
    drag.hcurArrow = LoadCursorA(nullptr, IDC_ARROW);
    drag.nTopRow = LONG(SendMessageA(drag.hwndDirTarget, LB_GETTOPINDEX, 0, 0));
    drag.cRows = LONG(SendMessageA(drag.hwndDirTarget, LB_GETCOUNT, 0, 0));
    GetCursorPos(&drag.ptStart);
    return drag;
}

void closeDrag(const Drag* pDrag)
{
    SetCursor(pDrag->hcurArrow);
    DestroyCursor(pDrag->hcurNot);
    DestroyCursor(pDrag->hcurCount);
}

// The buttons seem to be up when the screen is locked in the middle of a drag. No drop ends it
// then.
bool hasPointer()
{
    POINT pt;
    return GetCursorPos(&pt);
}

// Runs a drag and what follows it. Returns its result. The press has ended with the tracking: a
// callback that handles messages must not begin a second drag. A directory list without a mark is
// a target on which nothing is dropped.
int runDrag(const window::Ref& ref, XferWindowRecord* pRecord, const DragSource* pSource)
{
    int idTarget = nXferDandDTrackDrag(ref.hdlgDandD, pSource->idSource, pSource->idFileTarget,
                                       pSource->idDirTarget);
    bool fOnDirList = idTarget == pSource->idDirTarget;
    *pSource->pfArmed = false;
    if (idTarget > 0 && window::isAlive(ref) && (!fOnDirList || s_nMarkedRow != NO_ROW)) {
        vXferDandDDropOn(pRecord, pSource->idSource, idTarget, pSource->direction, fOnDirList);
    }
    return idTarget;
}

LRESULT passOn(WNDPROC pfnOriginal, const ListMessage& message)
{
    return CallWindowProcA(pfnOriginal, message.hwnd, message.uMessage, message.wParam,
                           message.lParam);
}

// Runs a drag from a press or a move, and lets the list box end the press that it began with. A
// drag and a replayed press run the caller's code, and the window can die in either.
LRESULT dragAndRelease(XferWindowRecord* pRecord, const DragSource* pSource,
                       const ListMessage& message, bool fReplayPress)
{
    window::Ref ref = window::refOf(pRecord);
    const POINT ptPress = *pSource->pptPress;
    ListMessage ending = message;
    ending.lParam = MAKELPARAM(ptPress.x, ptPress.y);
    int idTarget = runDrag(ref, pRecord, pSource);
    if (window::isAlive(ref) && fReplayPress && idTarget < 1) {
        ending.uMessage = WM_LBUTTONDOWN;
        passOn(pRecord->*pSource->pOriginal, ending);
    }
    // A callback that handles messages can have let another press in.
    *pSource->pfArmed = false;
    if (window::isAlive(ref)) {
        ending.uMessage = WM_LBUTTONUP;
        passOn(pRecord->*pSource->pOriginal, ending);
    }
    // Only now may a notification change what the strip says of a failed drop.
    frame::keepStripText(false);
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

LRESULT onPress(XferWindowRecord* pRecord, const DragSource* pSource, const ListMessage& message)
{
    if (pRecord->fBusy) {
        return 0;
    }
    *pSource->pptPress = pointOf(message.lParam);
    *pSource->pfArmed = true;
    if (SendMessageA(message.hwnd, LB_GETSELCOUNT, 0, 0) > 1) {
        return dragAndRelease(pRecord, pSource, message, true);
    }
    return passOn(pRecord->*pSource->pOriginal, message);
}

LRESULT fileListProc(const DragSource* pSource, const ListMessage& message)
{
    XferWindowRecord* pRecord = window::recordOf(GetParent(message.hwnd));
    if (pRecord == nullptr || pRecord->*pSource->pOriginal == nullptr) {
        return DefWindowProcA(message.hwnd, message.uMessage, message.wParam, message.lParam);
    }
    if (!panes::prepareList(pRecord, message.hwnd, message.uMessage)) {
        return 0;
    }
    // Also the second press of a double click, which would change the selection.
    if (message.uMessage == WM_LBUTTONDBLCLK && pRecord->fBusy) {
        return 0;
    }
    if (message.uMessage == WM_LBUTTONDOWN) {
        return onPress(pRecord, pSource, message);
    }
    if (message.uMessage == WM_MOUSEMOVE && *pSource->pfArmed &&
        isFarFromPress(pSource, message.lParam)) {
        return dragAndRelease(pRecord, pSource, message, false);
    }
    if (message.uMessage == WM_LBUTTONUP) {
        *pSource->pfArmed = false;
    }
    return passOn(pRecord->*pSource->pOriginal, message);
}

// A directory list shows a selected row only while it has the focus.
LRESULT dirListProc(WNDPROC XferWindowRecord::*pOriginal, const ListMessage& message)
{
    XferWindowRecord* pRecord = window::recordOf(GetParent(message.hwnd));
    if (pRecord == nullptr || pRecord->*pOriginal == nullptr) {
        return DefWindowProcA(message.hwnd, message.uMessage, message.wParam, message.lParam);
    }
    if (!panes::prepareList(pRecord, message.hwnd, message.uMessage)) {
        return 0;
    }
    window::Ref ref = window::refOf(pRecord);
    if (message.uMessage == WM_KILLFOCUS) {
        // The row is drawn by its owner, whose procedure the caller can replace.
        SendMessageA(message.hwnd, LB_SETCURSEL, WPARAM(-1), 0);
        if (!window::isAlive(ref)) {
            return 0;
        }
    }
    return passOn(pRecord->*pOriginal, message);
}

} // namespace

int nXferDandDTrackDrag(HWND hdlgDandD, int idSource, int idFileTarget, int idDirTarget)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return 0;
    }
    Drag drag = openDrag(window::refOf(pRecord), idSource, idFileTarget, idDirTarget);
    dragdrop::Silence silence = dragdrop::beginSilence();
    int idResult;
    s_nMarkedRow = NO_ROW;
    SetCapture(hdlgDandD);
    do {
        idResult = track(&drag);
        dragdrop::keepResponsive(&silence);
    } while (window::isAlive(drag.ref) && isAnyButtonDown());
    ReleaseCapture();
    closeDrag(&drag);
    return hasPointer() ? idResult : 0;
}

LRESULT CALLBACK lHFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return fileListProc(&HOST_SOURCE, {hwnd, uMessage, wParam, lParam});
}

LRESULT CALLBACK lLFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return fileListProc(&LOCAL_SOURCE, {hwnd, uMessage, wParam, lParam});
}

LRESULT CALLBACK lHDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dirListProc(&XferWindowRecord::pfnOrigHostDirList, {hwnd, uMessage, wParam, lParam});
}

LRESULT CALLBACK lLDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    return dirListProc(&XferWindowRecord::pfnOrigLocalDirList, {hwnd, uMessage, wParam, lParam});
}
