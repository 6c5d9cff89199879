// A toolbar on the screen, and the parent that hears of it.
#ifndef TESTS_SUPPORT_TOOLBAR_H
#define TESTS_SUPPORT_TOOLBAR_H

#include "../../toolbar/toolbar.h"
#include "windows.h"

constexpr int TOOLBAR_ID = 240;

// Registers the class and has a visible parent of its own, 600 wide. The parent keeps what the
// toolbar sends it. A fault that the system has swallowed fails the test.
class TestToolbar {
public:
    explicit TestToolbar(const std::vector<XferToolButton>& rows = {});
    ~TestToolbar();
    TestToolbar(const TestToolbar&) = delete;
    TestToolbar& operator=(const TestToolbar&) = delete;

    HWND hwnd() const
    {
        return m_hwnd;
    }
    HWND parent() const
    {
        return m_hwndParent;
    }
    LRESULT send(UINT uMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageA(m_hwnd, uMessage, wParam, lParam);
    }
    LRESULT send(UINT uMessage, WPARAM wParam, const void* pParam) const
    {
        return send(uMessage, wParam, reinterpret_cast<LPARAM>(pParam));
    }
    // The state bits of all rows, such as "4 5 4".
    std::string states() const;

    // What the parent has heard since the last call, such as "hint 10 press 10", with the
    // commands. Other messages are shown by their numbers.
    std::string heard();

    // Runs inside each notification, after it was kept.
    std::function<void()> m_onHear;

    void keep(const Message& message);

private:
    HWND m_hwndParent;
    HWND m_hwnd;
    std::string m_heard;
};

#endif
