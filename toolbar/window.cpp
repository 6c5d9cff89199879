// The window class of the toolbar: its registration and its procedure.
#include "toolbar/model.h"
#include "toolbar/objects.h"
#include "toolbar/paint.h"
#include "toolbar/tracking.h"

namespace {

constexpr int WINDOW_EXTRA = sizeof(LONG); // the address of the record

using CommandHandler = LRESULT (*)(HWND hwnd, XferToolbar* pToolbar, XferToolButton* pButton,
                                   BYTE fsBit, LPARAM lParam);
using RowHandler = LRESULT (*)(HWND hwnd, XferToolbar* pToolbar, WPARAM wParam, LPARAM lParam);

void changeState(HWND hwnd, const XferToolbar* pToolbar, XferToolButton* pButton, BYTE fsState)
{
    int fsChanged = pButton->fsState ^ fsState;
    pButton->fsState = fsState;
    if ((fsChanged & TOOLSTATE_HIDDEN) != 0) {
        // All rows behind it move.
        toolbar::invalidateAll(hwnd);
    } else if (fsChanged != 0) {
        vXferToolbarInvalidate(hwnd, pToolbar, pButton);
    }
}

LRESULT onSetBit(HWND hwnd, XferToolbar* pToolbar, XferToolButton* pButton, BYTE fsBit,
                 LPARAM lParam)
{
    BYTE fsState = toolbar::withBits(pButton->fsState, fsBit, LOWORD(lParam) != 0);
    if (fsState == pButton->fsState) {
        return 1;
    }
    changeState(hwnd, pToolbar, pButton, fsState);
    if (fsBit == TOOLSTATE_CHECKED) {
        vXferToolbarGroupRule(hwnd, pToolbar, pButton->idCommand);
    }
    return 1;
}

LRESULT onGetBit(HWND, XferToolbar*, XferToolButton* pButton, BYTE fsBit, LPARAM)
{
    return pButton->fsState & fsBit;
}

LRESULT onSetState(HWND hwnd, XferToolbar* pToolbar, XferToolButton* pButton, BYTE, LPARAM lParam)
{
    changeState(hwnd, pToolbar, pButton, LOBYTE(lParam));
    return 1;
}

LRESULT onGetState(HWND, XferToolbar*, XferToolButton* pButton, BYTE, LPARAM)
{
    return pButton->fsState;
}

LRESULT onCommandToIndex(HWND, XferToolbar* pToolbar, XferToolButton* pButton, BYTE, LPARAM)
{
    return pButton - pToolbar->buttons;
}

// Messages whose wParam is a command.
struct CommandMessage {
    UINT uMessage;
    CommandHandler pfnHandle;
    BYTE fsBit;
    LRESULT lMissing; // the result if no row has the command
};

constexpr CommandMessage COMMAND_MESSAGES[] = {
    {TOOLM_ENABLEBUTTON, onSetBit, TOOLSTATE_ENABLED, 0},
    {TOOLM_CHECKBUTTON, onSetBit, TOOLSTATE_CHECKED, 0},
    {TOOLM_PRESSBUTTON, onSetBit, TOOLSTATE_PRESSED, 0},
    {TOOLM_HIDEBUTTON, onSetBit, TOOLSTATE_HIDDEN, 0},
    {TOOLM_INDETERMINATE, onSetBit, TOOLSTATE_INDETERMINATE, 0},
    {TOOLM_ISENABLED, onGetBit, TOOLSTATE_ENABLED, -1},
    {TOOLM_ISCHECKED, onGetBit, TOOLSTATE_CHECKED, -1},
    {TOOLM_ISPRESSED, onGetBit, TOOLSTATE_PRESSED, -1},
    {TOOLM_ISHIDDEN, onGetBit, TOOLSTATE_HIDDEN, -1},
    {TOOLM_ISINDETERMINATE, onGetBit, TOOLSTATE_INDETERMINATE, -1},
    {TOOLM_SETSTATE, onSetState, 0, 0},
    {TOOLM_GETSTATE, onGetState, 0, -1},
    {TOOLM_COMMANDTOINDEX, onCommandToIndex, 0, TOOL_NONE},
};

LRESULT onAddBitmap(HWND, XferToolbar* pToolbar, WPARAM wParam, LPARAM lParam)
{
    auto pPictures = reinterpret_cast<const toolbar::PictureSource*>(lParam);
    return pPictures == nullptr ? TOOL_NONE
                                : nXferToolbarAddBitmap(pToolbar, LONG(wParam), pPictures->hModule,
                                                        LOWORD(pPictures->dwId));
}

LRESULT onAddButtons(HWND hwnd, XferToolbar* pToolbar, WPARAM wParam, LPARAM lParam)
{
    return fXferToolbarInsert(hwnd, pToolbar, DWORD(-1), wParam,
                              reinterpret_cast<const XferToolButton*>(lParam));
}

LRESULT onInsertButton(HWND hwnd, XferToolbar* pToolbar, WPARAM wParam, LPARAM lParam)
{
    return fXferToolbarInsert(hwnd, pToolbar, wParam, 1,
                              reinterpret_cast<const XferToolButton*>(lParam));
}

LRESULT onDeleteButton(HWND hwnd, XferToolbar* pToolbar, WPARAM wParam, LPARAM)
{
    return fXferToolbarDelete(hwnd, pToolbar, wParam);
}

LRESULT onGetButton(HWND, XferToolbar* pToolbar, WPARAM wParam, LPARAM lParam)
{
    auto pButton = reinterpret_cast<XferToolButton*>(lParam);
    if (wParam >= pToolbar->cButtons || pButton == nullptr) {
        return 0;
    }
    *pButton = pToolbar->buttons[wParam];
    return 1;
}

LRESULT onButtonCount(HWND, XferToolbar* pToolbar, WPARAM, LPARAM)
{
    return LRESULT(pToolbar->cButtons);
}

// Messages on rows by their index, and on the strips of pictures.
struct RowMessage {
    UINT uMessage;
    RowHandler pfnHandle;
    LRESULT lFailure; // the result while there is no record
};

constexpr RowMessage ROW_MESSAGES[] = {
    {TOOLM_ADDBITMAP, onAddBitmap, TOOL_NONE}, {TOOLM_ADDBUTTONS, onAddButtons, 0},
    {TOOLM_INSERTBUTTON, onInsertButton, 0},   {TOOLM_DELETEBUTTON, onDeleteButton, 0},
    {TOOLM_GETBUTTON, onGetButton, 0},         {TOOLM_BUTTONCOUNT, onButtonCount, 0},
};

// Returns the row of a table for the message, or null.
template <typename Row, size_t COUNT> const Row* findRow(const Row (&rows)[COUNT], UINT uMessage)
{
    for (const Row& row : rows) {
        if (row.uMessage == uMessage) {
            return &row;
        }
    }
    return nullptr;
}

LRESULT handleCommandMessage(HWND hwnd, const CommandMessage* pRow, WPARAM wParam, LPARAM lParam)
{
    XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    int nButton = pToolbar == nullptr ? TOOL_NONE : nXferToolbarFindCommand(pToolbar, wParam);
    return nButton == TOOL_NONE
               ? pRow->lMissing
               : pRow->pfnHandle(hwnd, pToolbar, &pToolbar->buttons[nButton], pRow->fsBit, lParam);
}

LRESULT handleRowMessage(HWND hwnd, const RowMessage* pRow, WPARAM wParam, LPARAM lParam)
{
    XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    return pToolbar == nullptr ? pRow->lFailure : pRow->pfnHandle(hwnd, pToolbar, wParam, lParam);
}

// A control with a record is a user of the shared objects. A failure releases them at once, because
// not every version sends WM_DESTROY after it.
LRESULT onCreate(HWND hwnd, LPARAM lParam)
{
    auto pCreate = reinterpret_cast<const CREATESTRUCTA*>(lParam);
    XferToolbar* pToolbar = nullptr;
    if (fXferToolbarAcquireShared()) {
        pToolbar = toolbar::createRecord(pCreate->hwndParent);
    }
    if (pToolbar == nullptr) {
        vXferToolbarReleaseShared();
        return -1;
    }
    SetWindowLongA(hwnd, 0, reinterpret_cast<LONG>(pToolbar));
    return 0;
}

LRESULT onDestroy(HWND hwnd)
{
    XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    if (pToolbar != nullptr) {
        SetWindowLongA(hwnd, 0, 0);
        toolbar::destroyRecord(pToolbar);
        vXferToolbarReleaseShared();
    }
    return 0;
}

// The parent forwards its own WM_SIZE. The control adapts to the parent's client area and reads
// nothing else from the message.
LRESULT onSize(HWND hwnd)
{
    HWND hwndParent = GetParent(hwnd);
    if (hwndParent != nullptr) {
        RECT rc;
        GetClientRect(hwndParent, &rc);
        SetWindowPos(hwnd, nullptr, 0, 0, rc.right + 2 * GetSystemMetrics(SM_CXBORDER), TOOL_HEIGHT,
                     SWP_NOZORDER);
    }
    return 0;
}

// Messages that need the record.
LRESULT handleMessage(HWND hwnd, XferToolbar* pToolbar, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_PAINT:
        vXferToolbarPaint(hwnd, pToolbar);
        return 0;
    case WM_LBUTTONDOWN:
        return toolbar::onButtonDown(hwnd, pToolbar, lParam);
    case WM_MOUSEMOVE:
        return toolbar::onMouseMove(hwnd, pToolbar, lParam);
    case WM_LBUTTONUP:
        return toolbar::onButtonUp(hwnd, pToolbar, lParam);
    case WM_COMMAND:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
        // A child of the control behaves like a child of the parent.
        SendMessageA(pToolbar->hwndNotify, uMessage, wParam, lParam);
        return 0;
    case WM_CANCELMODE:
    case WM_CAPTURECHANGED:
        toolbar::cancelPress(hwnd, pToolbar);
        break;
    }
    return DefWindowProcA(hwnd, uMessage, wParam, lParam);
}

} // namespace

LRESULT CALLBACK lXferToolbarProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (const CommandMessage* pRow = findRow(COMMAND_MESSAGES, uMessage)) {
        return handleCommandMessage(hwnd, pRow, wParam, lParam);
    }
    if (const RowMessage* pRow = findRow(ROW_MESSAGES, uMessage)) {
        return handleRowMessage(hwnd, pRow, wParam, lParam);
    }
    switch (uMessage) {
    case WM_CREATE:
        return onCreate(hwnd, lParam);
    case WM_DESTROY:
        return onDestroy(hwnd);
    case WM_SIZE:
        return onSize(hwnd);
    }
    XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    return pToolbar == nullptr ? DefWindowProcA(hwnd, uMessage, wParam, lParam)
                               : handleMessage(hwnd, pToolbar, uMessage, wParam, lParam);
}

int fXferToolbarRegister(HINSTANCE hModule)
{
    WNDCLASSA wndclass;
    if (GetClassInfoA(hModule, XFER_TOOLBARCLASS, &wndclass)) {
        return 1;
    }
    wndclass = {};
    wndclass.style = CS_GLOBALCLASS | CS_DBLCLKS;
    wndclass.lpfnWndProc = lXferToolbarProc;
    wndclass.cbWndExtra = WINDOW_EXTRA;
    wndclass.hInstance = hModule;
    wndclass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wndclass.lpszClassName = XFER_TOOLBARCLASS;
    return RegisterClassA(&wndclass) != 0;
}

void toolbar::unregisterClass(HINSTANCE hModule)
{
    UnregisterClassA(XFER_TOOLBARCLASS, hModule);
}
