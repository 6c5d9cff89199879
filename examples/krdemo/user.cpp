#include "user.h"

namespace {

constexpr DWORD PATIENCE_MS = 30000;
constexpr DWORD LOOK_MS = 20;
constexpr DWORD REST_MS = 300;
constexpr DWORD MOVE_MS = 10;
constexpr DWORD KEY_MS = 30;
constexpr int DRAG_STEPS = 8;

} // namespace

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
