// The creation of a status window. Its dialog procedure, fDlgXferStatProc, is in krhaul.h.
#ifndef STATUS_DIALOG_H
#define STATUS_DIALOG_H

#include <windows.h>

#include <stddef.h>

namespace status {

// What hdlgXferStatLangCreate passes to WM_INITDIALOG. It only lives during the creation.
struct DialogInit {
    DWORD dwFlags; // corner flag in the low word, minimise flag in the high word
    HWND hwndParent;
};

static_assert(sizeof(DialogInit) == 8, "a word of flags and a window");
static_assert(offsetof(DialogInit, dwFlags) == 0, "the flags come first");
static_assert(offsetof(DialogInit, hwndParent) == 4, "the parent follows the flags");

// Watches whether a window is destroyed while it is being created. Creations can be nested,
// because creating a window sends messages to the caller's windows.
struct Creation {
    HWND hdlgStat; // known from WM_INITDIALOG on
    bool fClosed;
    Creation* pOuter;
};
void beginCreation(Creation* pCreation);
void endCreation(const Creation* pCreation);

} // namespace status

#endif
