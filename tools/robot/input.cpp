#include "input.h"

namespace robot {

namespace {

void sendMouse(DWORD flags, LONG x, LONG y)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.dx = x;
    input.mi.dy = y;
    SendInput(1, &input, sizeof input);
}

// Rounded up, because the system cuts what it computes from this.
LONG scale(LONG n, int nMetric)
{
    LONG nScreen = GetSystemMetrics(nMetric);
    return (n * 65536 + nScreen - 1) / nScreen;
}

// A virtual display has a pointer of its own, which our input doesn't move. Whenever a window
// comes to lie under it, it takes ours along: so it goes once to where no window is.
void parkDisplayPointer()
{
    static bool parked;
    if (!parked) {
        parked = true;
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    }
}

} // namespace

void sendPointer(POINT pt)
{
    parkDisplayPointer();
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, scale(pt.x, SM_CXSCREEN),
              scale(pt.y, SM_CYSCREEN));
}

void sendButton(DWORD flag)
{
    sendMouse(flag, 0, 0);
}

void sendKey(WORD vk, DWORD flag)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = vk;
    input.ki.dwFlags = flag;
    SendInput(1, &input, sizeof input);
}

POINT middleOf(HWND hwnd)
{
    RECT rc = {};
    GetWindowRect(hwnd, &rc);
    return {(rc.left + rc.right) / 2, (rc.top + rc.bottom) / 2};
}

} // namespace robot
