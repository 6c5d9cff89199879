// The status window itself: its dialog procedure stands in krhaul.h, the once-a-second tick
// and the painting of the bar are declared here.
#ifndef STATUS_DIALOG_H
#define STATUS_DIALOG_H

#include "status/slots.h"

#include <stddef.h>

namespace status {

// What hdlgXferStatLangCreate hands to WM_INITDIALOG. It only lives through the creation.
struct DialogInit {
    DWORD dwFlags; // corner flag in the low word, minimise flag in the high word
    HWND hwndParent;
};

static_assert(sizeof(DialogInit) == 8, "a word of flags and a window");
static_assert(offsetof(DialogInit, dwFlags) == 0, "the flags come first");
static_assert(offsetof(DialogInit, hwndParent) == 4, "the parent follows the flags");

} // namespace status

// Turns the values of the window's slot into figures. Gives 0, or -1 if it has no slot.
int XferStatTick(HWND hdlgStat);

namespace status {

// The bar is a plain control that is painted from outside, only when its look changes.
void paintEmptyBar(HWND hdlgStat, HMODULE hLanguage);
void paintBar(HWND hdlgStat, DWORD nPercent);

} // namespace status

#endif
