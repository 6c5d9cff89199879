// What a transfer window shows: the texts of its strip, the places of its controls, and the states
// of its buttons and menu items.
#ifndef TESTS_SUPPORT_LOOKS_H
#define TESTS_SUPPORT_LOOKS_H

#include "pane_window.h"
#include "picture.h"
#include "subclassed.h"

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
