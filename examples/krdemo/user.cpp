#include "user.h"

namespace {

constexpr DWORD PATIENCE_MS = 30000;
constexpr DWORD LOOK_MS = 20;
constexpr DWORD REST_MS = 300;
constexpr DWORD MOVE_MS = 10;
constexpr DWORD KEY_MS = 30;
constexpr int DRAG_STEPS = 8;

void sendMouse(DWORD dwFlags, LONG x, LONG y)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = dwFlags;
    input.mi.dx = x;
    input.mi.dy = y;
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

POINT middleOf(HWND hwnd)
{
    RECT rc = {};
    GetWindowRect(hwnd, &rc);
    return {(rc.left + rc.right) / 2, (rc.top + rc.bottom) / 2};
}

POINT pointOfRow(HWND hwndList, int nRow)
{
    constexpr LONG INSIDE = 30;
    RECT rc = {};
    SendMessageA(hwndList, LB_GETITEMRECT, WPARAM(nRow), reinterpret_cast<LPARAM>(&rc));
    POINT pt = {rc.left + INSIDE, (rc.top + rc.bottom) / 2};
    ClientToScreen(hwndList, &pt);
    return pt;
}

void movePointer(POINT pt)
{
    // Rounded up, so that the pixel that comes out is the one that was meant.
    LONG cx = GetSystemMetrics(SM_CXSCREEN);
    LONG cy = GetSystemMetrics(SM_CYSCREEN);
    sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, (pt.x * 65536 + cx - 1) / cx,
              (pt.y * 65536 + cy - 1) / cy);
    Sleep(MOVE_MS);
}

void pressButton()
{
    sendMouse(MOUSEEVENTF_LEFTDOWN, 0, 0);
    Sleep(MOVE_MS);
}

void releaseButton()
{
    sendMouse(MOUSEEVENTF_LEFTUP, 0, 0);
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

void typeText(const char* pszText)
{
    for (; *pszText != '\0'; ++pszText) {
        SHORT nKey = VkKeyScanA(*pszText);
        bool fShift = (HIBYTE(nKey) & 1) != 0;
        if (fShift) {
            holdKey(VK_SHIFT);
        }
        pressKey(LOBYTE(nKey));
        if (fShift) {
            letKey(VK_SHIFT);
        }
    }
}

bool waitFor(bool (*pfnHolds)(const void*), const void* pContext)
{
    DWORD dwStart = GetTickCount();
    while (!pfnHolds(pContext)) {
        if (GetTickCount() - dwStart > PATIENCE_MS) {
            return false;
        }
        Sleep(LOOK_MS);
    }
    return true;
}

void rest()
{
    Sleep(REST_MS);
}
