// The parent is notified of every step of a press, and may do anything on a notification. No
// pointer into the record is kept from before a notification to after it.
#include "toolbar/tracking.h"

namespace {

int hitTest(const XferToolbar* pToolbar, LPARAM lParam)
{
    POINTS point = MAKEPOINTS(lParam);
    return nXferToolbarHitTest(pToolbar, point.x, point.y);
}

bool isOverTracked(const XferToolbar* pToolbar, LPARAM lParam)
{
    int nHit = hitTest(pToolbar, lParam);
    return nHit != TOOL_NONE && &pToolbar->buttons[nHit] == pToolbar->pTracked;
}

void setPressed(HWND hwnd, const XferToolbar* pToolbar, XferToolButton* pButton, bool fPressed)
{
    if (toolbar::hasState(pButton, TOOLSTATE_PRESSED) != fPressed) {
        toolbar::setState(pButton, TOOLSTATE_PRESSED, fPressed);
        vXferToolbarInvalidate(hwnd, pToolbar, pButton);
    }
}

// The control may have been destroyed on the previous notification; then this one isn't sent.
void notify(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    const XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    if (pToolbar != nullptr) {
        SendMessageA(pToolbar->hwndNotify, uMessage, wParam, lParam);
    }
}

void sendHint(HWND hwnd, DWORD idCommand)
{
    notify(hwnd, WM_XFER_SHOWHINT, idCommand, 0);
}

void sendPress(HWND hwnd, WORD wCode, DWORD idCommand)
{
    notify(hwnd, WM_COMMAND, WPARAM(GetWindowLongA(hwnd, GWL_ID)), MAKELPARAM(idCommand, wCode));
}

// Whether there is a press. Versions below 4 don't notify a window that it has lost the capture;
// a press without the capture is ended here.
bool cancelPressWithoutCapture(HWND hwnd, XferToolbar* pToolbar)
{
    if (GetCapture() != hwnd) {
        toolbar::cancelPress(hwnd, pToolbar);
    }
    return pToolbar->pTracked != nullptr;
}

// Draws the pressed look before the parent is notified of the press.
void showPressed(HWND hwnd)
{
    XferToolbar* pToolbar = toolbar::recordOf(hwnd);
    if (pToolbar != nullptr && pToolbar->pTracked != nullptr &&
        toolbar::hasState(pToolbar->pTracked, TOOLSTATE_ENABLED)) {
        setPressed(hwnd, pToolbar, pToolbar->pTracked, true);
        UpdateWindow(hwnd);
    }
}

// Releases the capture at the end of a press. The press itself lasts until the parent has been
// notified of the release, so the message about the lost capture must not find it.
void freeCaptureInPress(HWND hwnd, XferToolbar* pToolbar)
{
    DWORD nRow = DWORD(pToolbar->pTracked - pToolbar->buttons);
    pToolbar->pTracked = nullptr;
    ReleaseCapture();
    pToolbar = toolbar::recordOf(hwnd);
    if (pToolbar != nullptr && nRow < pToolbar->cButtons) {
        pToolbar->pTracked = &pToolbar->buttons[nRow];
    }
}

// Updates the check of a clicked button. Returns false if the click has no effect: a group can't
// be emptied by clicking.
bool toggleCheck(HWND hwnd, XferToolbar* pToolbar, XferToolButton* pButton)
{
    if (!toolbar::hasStyle(pButton, TOOLSTYLE_CHECK)) {
        return true;
    }
    bool fGroup = toolbar::hasStyle(pButton, TOOLSTYLE_GROUP);
    bool fWasChecked = toolbar::hasState(pButton, TOOLSTATE_CHECKED);
    if (fGroup && fWasChecked) {
        return false;
    }
    toolbar::setState(pButton, TOOLSTATE_CHECKED, !fWasChecked);
    if (fGroup) {
        vXferToolbarGroupRule(hwnd, pToolbar, pButton->idCommand);
    }
    return true;
}

// The end of a press, after the parent was notified of the release. The command comes last, since
// it may change everything.
void finishPress(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam)
{
    XferToolButton* pButton = pToolbar->pTracked;
    bool fClick = toolbar::hasState(pButton, TOOLSTATE_ENABLED) && isOverTracked(pToolbar, lParam);
    pToolbar->pTracked = nullptr;
    setPressed(hwnd, pToolbar, pButton, false);
    if (!fClick) {
        return;
    }
    fClick = toggleCheck(hwnd, pToolbar, pButton);
    vXferToolbarInvalidate(hwnd, pToolbar, pButton);
    if (fClick) {
        notify(hwnd, WM_COMMAND, pButton->idCommand, 0);
    }
}

} // namespace

LRESULT toolbar::onButtonDown(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam)
{
    // A press that still exists has missed its release.
    toolbar::cancelPress(hwnd, pToolbar);
    pToolbar = toolbar::recordOf(hwnd);
    int nHit = pToolbar == nullptr ? TOOL_NONE : hitTest(pToolbar, lParam);
    if (nHit == TOOL_NONE) {
        return 0;
    }
    DWORD idCommand = pToolbar->buttons[nHit].idCommand;
    pToolbar->pTracked = &pToolbar->buttons[nHit];
    SetCapture(hwnd);
    showPressed(hwnd);
    sendHint(hwnd, idCommand);
    sendPress(hwnd, TOOLN_PRESS, idCommand);
    return 0;
}

LRESULT toolbar::onMouseMove(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam)
{
    if (!cancelPressWithoutCapture(hwnd, pToolbar) ||
        !toolbar::hasState(pToolbar->pTracked, TOOLSTATE_ENABLED)) {
        return 0;
    }
    bool fOver = isOverTracked(pToolbar, lParam);
    bool fBack = fOver && !toolbar::hasState(pToolbar->pTracked, TOOLSTATE_PRESSED);
    setPressed(hwnd, pToolbar, pToolbar->pTracked, fOver);
    if (fBack) {
        sendHint(hwnd, pToolbar->pTracked->idCommand);
    }
    return 0;
}

LRESULT toolbar::onButtonUp(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam)
{
    sendHint(hwnd, 0);
    pToolbar = toolbar::recordOf(hwnd);
    if (pToolbar == nullptr || !cancelPressWithoutCapture(hwnd, pToolbar)) {
        return 0;
    }
    DWORD idCommand = pToolbar->pTracked->idCommand;
    freeCaptureInPress(hwnd, pToolbar);
    sendPress(hwnd, TOOLN_RELEASE, idCommand);
    pToolbar = toolbar::recordOf(hwnd);
    // If the control has the capture again, the press is a new one, which began in a message loop
    // of the parent.
    if (pToolbar != nullptr && pToolbar->pTracked != nullptr && GetCapture() != hwnd) {
        finishPress(hwnd, pToolbar, lParam);
    }
    return 0;
}

void toolbar::cancelPress(HWND hwnd, XferToolbar* pToolbar)
{
    XferToolButton* pButton = pToolbar->pTracked;
    if (pButton != nullptr) {
        pToolbar->pTracked = nullptr;
        setPressed(hwnd, pToolbar, pButton, false);
        toolbar::releaseCapture(hwnd);
    }
}

bool toolbar::clearPress(XferToolbar* pToolbar)
{
    XferToolButton* pButton = pToolbar->pTracked;
    if (pButton == nullptr) {
        return false;
    }
    pToolbar->pTracked = nullptr;
    toolbar::setState(pButton, TOOLSTATE_PRESSED, false);
    return true;
}

void toolbar::releaseCapture(HWND hwnd)
{
    if (GetCapture() == hwnd) {
        ReleaseCapture();
    }
}
