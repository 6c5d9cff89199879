// A transfer window as a test needs it: the caller's side, the window with its first mode
// delivered, and what can be seen of it.
#ifndef TESTS_SUPPORT_TRANSFER_WINDOW_H
#define TESTS_SUPPORT_TRANSFER_WINDOW_H

#include "../../include/krhaul.h"
#include "imports.h"
#include "picture.h"
#include "strict.h"
#include "subclassed.h"
#include "windows.h"

#include <gtest/gtest.h>

HMODULE krhaul();

// The caller of a window: its table of callbacks, and what they were told.
class Caller {
public:
    Caller();
    Caller(const Caller&) = delete;
    Caller& operator=(const Caller&) = delete;

    DWORD data()
    {
        return reinterpret_cast<DWORD>(this);
    }

    HostCallbacks callbacks;
    std::vector<DWORD> modes;              // of pfnViewModeChanged
    std::function<void()> whenModeChanges; // runs inside it
};

// A test with a parent window, a caller and an empty current directory. The window that
// create() makes goes with the test, if it is still there.
class TransferTest : public testing::Test {
protected:
    TransferTest();
    ~TransferTest() override;

    // Makes m_hwnd, and handles messages until its first mode has come.
    void create(DWORD nViewMode = XFERVIEW_TWOPANE);
    void destroy();

    // Makes a window of this test's caller, with nothing handled yet.
    HWND createOnly(HWND hwndParent, DWORD nViewMode = XFERVIEW_TWOPANE);

    HWND item(int idControl) const;
    void command(UINT idCommand) const;
    void setMode(DWORD nViewMode) const;

    // Sizes the client area.
    void setClientSize(LONG cx, LONG cy) const;

    // What the dialog procedure itself gives for a message.
    INT_PTR ask(UINT uMessage, WPARAM wParam = 0, LPARAM lParam = 0) const;

    ParentWindow m_parent;
    StrictPlatform m_strict;
    Caller m_caller;
    HWND m_hwnd = nullptr;
    HMODULE m_hEnglish;

private:
    std::string m_oldDirectory, m_directory;
};

// Texts that a test's window draws by ExtTextOutA, for as long as the object lives.
class DrawnTexts {
public:
    struct Text {
        std::string text;
        int x, y;
        RECT rc;
    };
    DrawnTexts();

    // Repaints the window and gives what it drew: the text of the strip, then, if the
    // thermometer shows one, its number.
    std::vector<Text> of(HWND hwnd);

    // The text of the strip.
    std::string strip(HWND hwnd);

private:
    ReplacedImport m_extTextOut;
};

// A control's place in its window's client coordinates.
RECT placeOf(HWND hwnd, int idControl);
bool operator==(const RECT& rc, const RECT& rcOther);
std::ostream& operator<<(std::ostream& stream, const RECT& rc);

// All state bits of a toolbar button, and grey, disabled and checked of a menu item.
LRESULT buttonState(HWND hwnd, UINT idCommand);
UINT itemState(HWND hwnd, UINT idCommand);

#endif
