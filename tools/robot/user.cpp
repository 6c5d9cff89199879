#include "user.h"

namespace robot {

namespace {

constexpr DWORD MOVE_MS = 10;
constexpr DWORD KEY_MS = 30;
constexpr int DRAG_STEPS = 8;

} // namespace

POINT pointOfRow(HWND hwndList, int row)
{
    constexpr LONG INSIDE = 30;
    RECT rc = {};
    SendMessageA(hwndList, LB_GETITEMRECT, WPARAM(row), reinterpret_cast<LPARAM>(&rc));
    POINT pt = {rc.left + INSIDE, (rc.top + rc.bottom) / 2};
    ClientToScreen(hwndList, &pt);
    return pt;
}

void movePointer(POINT pt)
{
    sendPointer(pt);
    Sleep(MOVE_MS);
}

void pressButton()
{
    sendButton(MOUSEEVENTF_LEFTDOWN);
    Sleep(MOVE_MS);
}

void releaseButton()
{
    sendButton(MOUSEEVENTF_LEFTUP);
    Sleep(MOVE_MS);
}

void clickAt(POINT pt)
{
    movePointer(pt);
    pressButton();
    releaseButton();
}

void doubleClickAt(POINT pt)
{
    clickAt(pt);
    clickAt(pt);
}

void dragTo(POINT ptFrom, POINT ptTo)
{
    for (int n = 1; n <= DRAG_STEPS; ++n) {
        movePointer({ptFrom.x + (ptTo.x - ptFrom.x) * n / DRAG_STEPS,
                     ptFrom.y + (ptTo.y - ptFrom.y) * n / DRAG_STEPS});
    }
}

// The windows get to see the key before anything else happens.
void holdKey(WORD vk)
{
    sendKey(vk, 0);
    Sleep(KEY_MS);
}

void letKey(WORD vk)
{
    sendKey(vk, KEYEVENTF_KEYUP);
    Sleep(KEY_MS);
}

void pressKey(WORD vk)
{
    sendKey(vk, 0);
    sendKey(vk, KEYEVENTF_KEYUP);
    Sleep(MOVE_MS);
}

void pressWithAlt(WORD vk)
{
    holdKey(VK_MENU);
    pressKey(vk);
    letKey(VK_MENU);
    Sleep(MOVE_MS);
}

void typeText(const char* text)
{
    for (; *text != '\0'; ++text) {
        SHORT key = VkKeyScanA(*text);
        bool shift = (HIBYTE(key) & 1) != 0;
        if (shift) {
            holdKey(VK_SHIFT);
        }
        pressKey(LOBYTE(key));
        if (shift) {
            letKey(VK_SHIFT);
        }
    }
}

void typeOver(const char* text)
{
    pressKey(VK_HOME);
    holdKey(VK_SHIFT);
    pressKey(VK_END);
    letKey(VK_SHIFT);
    typeText(text);
}

} // namespace robot
