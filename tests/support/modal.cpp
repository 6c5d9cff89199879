#include "modal.h"

#include <gtest/gtest.h>
#include <utility>

namespace {

constexpr DWORD WAIT_MS = 20000;

HWND s_hwndMain;
std::vector<ModalStep> s_steps;
size_t s_nStep;
DWORD s_dwSince;
bool s_fInStep;

BOOL CALLBACK findModal(HWND hwnd, LPARAM lParam)
{
    char szClass[16] = "";
    GetClassNameA(hwnd, szClass, sizeof szClass);
    if (hwnd == s_hwndMain || lstrcmpA(szClass, "#32770") != 0 || !IsWindowVisible(hwnd) ||
        !IsWindowEnabled(hwnd)) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(lParam) = hwnd;
    return FALSE;
}

void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD)
{
    HWND hdlg = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), findModal, LPARAM(&hdlg));
    if (hdlg == nullptr || std::exchange(s_fInStep, true)) {
        return;
    }
    if (s_nStep < s_steps.size() && s_steps[s_nStep](hdlg)) {
        ++s_nStep;
        s_dwSince = GetTickCount();
    } else if (GetTickCount() - s_dwSince > WAIT_MS) {
        PostMessageA(hdlg, WM_COMMAND, IDCANCEL, 0);
    }
    s_fInStep = false;
}

} // namespace

void runModal(HWND hwndMain, const std::function<void()>& call, std::vector<ModalStep> steps)
{
    s_hwndMain = hwndMain;
    s_steps = std::move(steps);
    s_nStep = 0;
    s_dwSince = GetTickCount();
    UINT_PTR id = SetTimer(nullptr, 0, 10, onTimer);
    call();
    KillTimer(nullptr, id);
    EXPECT_EQ(s_nStep, s_steps.size()) << "steps";
    EXPECT_LE(GetTickCount() - s_dwSince, WAIT_MS) << "a dialog stayed open";
}

void pressKey(HWND hdlg, WORD vk)
{
    // On a busy machine the display can still be about to hand the focus over.
    HWND hwndFocus = GetFocus();
    PostMessageA(IsChild(hdlg, hwndFocus) ? hwndFocus : hdlg, WM_KEYDOWN, vk, 1);
}

void pressButton(HWND hdlg, int id)
{
    PostMessageA(GetDlgItem(hdlg, id), BM_CLICK, 0, 0);
}

void replaceText(HWND hdlg, int id, const std::string& text)
{
    SendDlgItemMessageA(hdlg, id, EM_SETSEL, 0, -1);
    SendDlgItemMessageA(hdlg, id, EM_REPLACESEL, TRUE, LPARAM(text.c_str()));
}
