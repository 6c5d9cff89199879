// Windows that a test listens to, or answers for.
#ifndef TESTS_SUPPORT_SUBCLASSED_H
#define TESTS_SUPPORT_SUBCLASSED_H

#include <windows.h>

#include <functional>

// Replaces a window's procedure for as long as the object lives, or the window.
class Subclassed {
public:
    // Returns true for a message that the window must not get.
    using Handler = std::function<bool(UINT uMessage, WPARAM wParam, LPARAM lParam)>;
    Subclassed(HWND hwnd, Handler handler);
    ~Subclassed();
    Subclassed(const Subclassed&) = delete;
    Subclassed& operator=(const Subclassed&) = delete;

private:
    static LRESULT CALLBACK proc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
    HWND m_hwnd;
    Handler m_handler;
    WNDPROC m_pfnOld;
};

#endif
