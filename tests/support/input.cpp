#include "input.h"
#include "../../tools/robot/input.h"

using robot::middleOf;
using robot::sendButton;
using robot::sendKey;
using robot::sendPointer;

void clickWindow(HWND hwnd)
{
    sendPointer(middleOf(hwnd));
    pressMouse(MOUSE_LEFT);
    releaseMouse(MOUSE_LEFT);
}

void movePointer(POINT pt)
{
    sendPointer(pt);
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
    sendButton(DOWN[button]);
}

void releaseMouse(MouseButton button)
{
    constexpr DWORD UP[] = {MOUSEEVENTF_LEFTUP, MOUSEEVENTF_MIDDLEUP, MOUSEEVENTF_RIGHTUP};
    sendButton(UP[button]);
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
