#include "toolbar.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <utility>

namespace {

constexpr char CLASS[] = "ToolbarParent";

// What the toolbar sends on its own account or hands on from a child.
constexpr UINT KEPT[] = {WM_COMMAND,    WM_DRAWITEM,   WM_MEASUREITEM,  WM_VKEYTOITEM,
                         WM_CHARTOITEM, WM_DELETEITEM, WM_XFER_SHOWHINT};

std::string describe(const Message& message)
{
    std::string code = std::to_string(LOWORD(message.lParam));
    if (message.uMessage == WM_XFER_SHOWHINT && message.lParam == 0) {
        return "hint " + std::to_string(message.wParam);
    }
    if (message.uMessage == WM_COMMAND && message.lParam == 0) {
        return "command " + std::to_string(message.wParam);
    }
    if (message.uMessage == WM_COMMAND && message.wParam == TOOLBAR_ID) {
        switch (HIWORD(message.lParam)) {
        case 0x201:
            return "press " + code;
        case 0x203:
            return "release " + code;
        }
    }
    std::ostringstream stream;
    stream << message;
    return stream.str();
}

// The system can swallow a fault inside a window procedure, and the program goes on.
int s_cFaults;

LONG CALLBACK onFault(EXCEPTION_POINTERS* pException)
{
    s_cFaults += pException->ExceptionRecord->ExceptionCode == DWORD(EXCEPTION_ACCESS_VIOLATION);
    return EXCEPTION_CONTINUE_SEARCH;
}

void watchFaults()
{
    using AddHandler = void*(WINAPI*)(ULONG, PVECTORED_EXCEPTION_HANDLER);
    FARPROC pfn = GetProcAddress(GetModuleHandleA("KERNEL32.DLL"), "AddVectoredExceptionHandler");
    static void* pHandler = reinterpret_cast<AddHandler>(reinterpret_cast<void*>(pfn))(1, onFault);
    ASSERT_NE(pHandler, nullptr);
}

LRESULT CALLBACK parentProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    auto pToolbar = reinterpret_cast<TestToolbar*>(GetWindowLongA(hwnd, GWL_USERDATA));
    if (pToolbar != nullptr && std::count(std::begin(KEPT), std::end(KEPT), uMessage) != 0) {
        pToolbar->keep({uMessage, wParam, lParam});
        return 0;
    }
    return DefWindowProcA(hwnd, uMessage, wParam, lParam);
}

} // namespace

TestToolbar::TestToolbar(const std::vector<XferToolButton>& rows)
{
    watchFaults();
    HINSTANCE hInstance = GetModuleHandleA(nullptr);
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = parentProc;
    wndclass.lpszClassName = CLASS;
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassA(&wndclass);
    fXferToolbarRegister(hInstance);
    m_hwndParent =
        CreateWindowExA(WS_EX_TOPMOST, CLASS, "", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 100, 100,
                        600, 100, nullptr, nullptr, nullptr, nullptr);
    m_hwnd = CreateWindowA(XFER_TOOLBARCLASS, "", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, m_hwndParent,
                           reinterpret_cast<HMENU>(TOOLBAR_ID), hInstance, nullptr);
    if (!rows.empty()) {
        send(TOOLM_ADDBUTTONS, rows.size(), rows.data());
    }
    pumpMessages();
    SetWindowLongA(m_hwndParent, GWL_USERDATA, reinterpret_cast<LONG>(this));
}

TestToolbar::~TestToolbar()
{
    SetWindowLongA(m_hwndParent, GWL_USERDATA, 0);
    DestroyWindow(m_hwndParent);
    pumpMessages();
    EXPECT_EQ(std::exchange(s_cFaults, 0), 0);
}

std::string TestToolbar::states() const
{
    std::string text;
    XferToolButton button;
    for (WPARAM n = 0; send(TOOLM_GETBUTTON, n, &button) != 0; ++n) {
        text += (text.empty() ? "" : " ") + std::to_string(button.fsState);
    }
    return text;
}

std::string TestToolbar::heard()
{
    return std::exchange(m_heard, {});
}

void TestToolbar::keep(const Message& message)
{
    m_heard += (m_heard.empty() ? "" : " ") + describe(message);
    if (m_onHear) {
        m_onHear();
    }
}
