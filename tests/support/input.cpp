#include "input.h"

namespace {

void sendMouse(DWORD dwFlags, LONG x = 0, LONG y = 0)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = dwFlags;
    input.mi.dx = x * 65535 / (GetSystemMetrics(SM_CXSCREEN) - 1);
    input.mi.dy = y * 65535 / (GetSystemMetrics(SM_CYSCREEN) - 1);
    SendInput(1, &input, sizeof input);
}

void sendKey(WORD vk, DWORD dwFlags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = vk;
    input.ki.dwFlags = dwFlags;
    SendInput(1, &input, sizeof input);
}

} // namespace

void clickWindow(HWND hwnd)
{
    RECT rc;
    GetWindowRect(hwnd, &rc);
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, (rc.left + rc.right) / 2,
              (rc.top + rc.bottom) / 2);
    sendMouse(MOUSEEVENTF_LEFTDOWN);
    sendMouse(MOUSEEVENTF_LEFTUP);
}

void movePointer(POINT pt)
{
    // Rounded up, because the system cuts what it computes from this.
    auto scale = [](LONG n, int cScreen) { return (n * 65536 + cScreen - 1) / cScreen; };
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input.mi.dx = scale(pt.x, GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = scale(pt.y, GetSystemMetrics(SM_CYSCREEN));
    SendInput(1, &input, sizeof input);
}

void movePointer(HWND hwnd, int x, int y)
{
    POINT point = {x, y};
    ClientToScreen(hwnd, &point);
    movePointer(point);
}

void pressMouse(MouseButton button)
{
    constexpr DWORD DOWN[] = {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_RIGHTDOWN};
    sendMouse(DOWN[button]);
}

void releaseMouse(MouseButton button)
{
    constexpr DWORD UP[] = {MOUSEEVENTF_LEFTUP, MOUSEEVENTF_MIDDLEUP, MOUSEEVENTF_RIGHTUP};
    sendMouse(UP[button]);
}

void typeKey(WORD vk, bool fAlt)
{
    if (fAlt) {
        sendKey(VK_MENU, 0);
    }
    sendKey(vk, 0);
    sendKey(vk, KEYEVENTF_KEYUP);
    if (fAlt) {
        sendKey(VK_MENU, KEYEVENTF_KEYUP);
    }
}
