// The interface of the toolbar control: its window class, its messages, the notifications that it
// sends to its parent, and the rows of buttons that go with them.
//
// The control is a row of picture buttons and gaps and doesn't know what the buttons are for: it
// keeps rows and strips of pictures, tracks the mouse, and notifies the parent that it was created
// with, by SendMessageA.
#ifndef TOOLBAR_TOOLBAR_H
#define TOOLBAR_TOOLBAR_H

#include "include/krhaul.h"

#include <stddef.h>

constexpr char XFER_TOOLBARCLASS[] = "KRTOOLBR";

// Registers the class unless it exists already. Returns 1, or 0 if it can't be registered.
int fXferToolbarRegister(HINSTANCE hModule);

namespace toolbar {

// Unregisters the class, if no control of it is left.
void unregisterClass(HINSTANCE hModule);

} // namespace toolbar

// State of a button.
constexpr BYTE TOOLSTATE_CHECKED = 1;        // shown as checked
constexpr BYTE TOOLSTATE_PRESSED = 2;        // held down, by the mouse or a message
constexpr BYTE TOOLSTATE_ENABLED = 4;        // without it greyed, and a click sends no command
constexpr BYTE TOOLSTATE_HIDDEN = 8;         // takes no room, isn't painted and can't be hit
constexpr BYTE TOOLSTATE_INDETERMINATE = 16; // shown neither checked nor unchecked

// Style of a button; it never changes.
constexpr BYTE TOOLSTYLE_SEPARATOR = 1; // a gap and no button
constexpr BYTE TOOLSTYLE_CHECK = 2;     // a click toggles the check
constexpr BYTE TOOLSTYLE_GROUP = 4;     // with the check style: one of neighbours, of which at
                                        // most one is checked

// A row. Pictures are numbered through all strips, in the order in which these were added. Of
// rows that share a command, messages refer to the first.
struct XferToolButton {
    LONG iPicture; // picture; or width of a separator in pixels, where 0 or less means 8
    DWORD idCommand;
    BYTE fsState;
    BYTE fsStyle;
};

static_assert(sizeof(XferToolButton) == 12, "rows in messages are 12 bytes apart");
static_assert(offsetof(XferToolButton, fsState) == 8 && offsetof(XferToolButton, fsStyle) == 9,
              "state and style follow the command");

namespace toolbar {

// What TOOLM_ADDBITMAP points to.
struct PictureSource {
    HINSTANCE hModule; // holds the bitmap; 0: the id is a bitmap handle and stays its owner's
    DWORD dwId;        // only the low 16 bits count
};

} // namespace toolbar

// State bits by command: wParam the command, low word of lParam 0 to clear the bit, anything
// else to set it. Result 1, or 0 if no row has the command. Checking a button of a group
// unchecks the one that was checked.
constexpr UINT TOOLM_ENABLEBUTTON = 0x0501;
constexpr UINT TOOLM_CHECKBUTTON = 0x0502;
constexpr UINT TOOLM_PRESSBUTTON = 0x0503;
constexpr UINT TOOLM_HIDEBUTTON = 0x0504;
constexpr UINT TOOLM_INDETERMINATE = 0x0505;

// The same bits: wParam the command. Result 0, the bit itself (its TOOLSTATE_ value), or -1 if
// no row has the command.
constexpr UINT TOOLM_ISENABLED = 0x0509;
constexpr UINT TOOLM_ISCHECKED = 0x050A;
constexpr UINT TOOLM_ISPRESSED = 0x050B;
constexpr UINT TOOLM_ISHIDDEN = 0x050C;
constexpr UINT TOOLM_ISINDETERMINATE = 0x050D;

// Replaces all state bits, with no regard to groups: wParam the command, low byte of lParam
// the bits. Result 1, or 0 if no row has the command.
constexpr UINT TOOLM_SETSTATE = 0x0511;

// wParam the command. Result all state bits, or -1 if no row has the command.
constexpr UINT TOOLM_GETSTATE = 0x0512;

// Adds a strip of pictures, side by side, 16 wide and 15 high: wParam their number, lParam a
// toolbar::PictureSource. A strip that exists already is used again; if it is the last one it can
// grow. Result the number of its first picture, or -1: no memory, a null pointer, a negative
// number, or more pictures than 31 bits can count. The bitmap itself is loaded when it is first
// painted. Only 4-bit bitmaps with 16 colours can be; with others the buttons have no pictures.
constexpr UINT TOOLM_ADDBITMAP = 0x0513;

// Adds rows at the end: wParam their number, lParam the XferToolButton rows. Result 1, or 0 with
// nothing changed: no memory, or a null pointer.
constexpr UINT TOOLM_ADDBUTTONS = 0x0514;

// Puts one row in front of the row wParam, or at the end if there is no such row. Otherwise as
// TOOLM_ADDBUTTONS.
constexpr UINT TOOLM_INSERTBUTTON = 0x0515;

// Removes the row wParam. Result 1, or 0 if there is none.
constexpr UINT TOOLM_DELETEBUTTON = 0x0516;

// Copies the row wParam to the XferToolButton at lParam. Result 1, or 0 with nothing written if
// there is no such row or the pointer is null.
constexpr UINT TOOLM_GETBUTTON = 0x0517;

// Result the number of rows.
constexpr UINT TOOLM_BUTTONCOUNT = 0x0518;

// wParam the command. Result the index of its row, or -1.
constexpr UINT TOOLM_COMMANDTOINDEX = 0x0519;

// Notifications. The parent may do anything while it handles one: change, add and remove rows,
// or destroy the control. A press that doesn't end by the release of the button (because
// rows are added or removed, or the capture is lost) ends without a notification.
//
// The hint is WM_XFER_SHOWHINT: wParam is the command when a button is pressed or the pointer
// comes back to the pressed one, and 0 at every release of the mouse button; lParam is 0.

// High word of the lParam of a WM_COMMAND whose wParam is the id of the control; the low word
// is the command. They come for disabled buttons as well. The click itself is a WM_COMMAND
// with the command as wParam and 0 as lParam, and comes last.
constexpr WORD TOOLN_PRESS = 0x0201;
constexpr WORD TOOLN_RELEASE = 0x0203; // wherever the pointer is

#endif
