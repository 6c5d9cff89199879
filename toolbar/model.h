// The toolbar's record: its rows and strips of pictures, where the rows lie, and the press that
// is under way. One record belongs to each control, from WM_CREATE to WM_DESTROY; it moves when
// rows are added. Code that sends a message to another window looks the record up again afterwards.
#ifndef TOOLBAR_MODEL_H
#define TOOLBAR_MODEL_H

#include "toolbar/toolbar.h"

// Sizes and places in pixels. A button is one pixel wider than the step to the next one, so that
// neighbours share a line of their frames.
constexpr int TOOL_HEIGHT = 27; // of the control
constexpr int TOOL_LEFT = 8;
constexpr int TOOL_TOP = 2;
constexpr int TOOL_BUTTON_CX = 24;
constexpr int TOOL_BUTTON_CY = 22;
constexpr int TOOL_STEP = 23;
constexpr int TOOL_PICTURE_CX = 16;
constexpr int TOOL_PICTURE_CY = 15;

struct XferToolBitmap {
    LONG cPictures;
    HINSTANCE hModule; // 0: wId is a bitmap handle, which stays its owner's
    WORD wId;
    HBITMAP hbm; // 0 until it is needed, and after it was thrown away
};

struct XferToolbar {
    XferToolButton* pTracked; // the row under a press, in buttons below; null without one
    HWND hwndNotify;
    LONG cBitmaps;
    XferToolBitmap* pBitmaps; // a block of its own; the sum of cPictures fits into 31 bits
    DWORD cButtons;
    XferToolButton buttons[1]; // as many as cButtons says
};

constexpr int TOOL_NONE = -1;

namespace toolbar {

// The record of a control, or null if it has none or the window no longer exists.
XferToolbar* recordOf(HWND hwnd);

// Makes an empty record. Returns null if there is no memory.
XferToolbar* createRecord(HWND hwndNotify);

// Frees the record, its strips and the bitmaps that were loaded for them.
void destroyRecord(XferToolbar* pToolbar);

// x of the row that follows one which begins at x. It stops growing far outside of any window,
// so that no sum of widths overflows.
int nextX(int x, const XferToolButton* pButton);

// x of a picture, counted over all strips. It wraps, as the origin that is set for a strip does.
inline int pictureX(LONG iPicture)
{
    return int(DWORD(iPicture) * DWORD(TOOL_PICTURE_CX));
}

// Invalidates the whole control, with erasing.
void invalidateAll(HWND hwnd);

inline bool hasState(const XferToolButton* pButton, BYTE fsState)
{
    return (pButton->fsState & fsState) != 0;
}

inline bool hasStyle(const XferToolButton* pButton, BYTE fsStyle)
{
    return (pButton->fsStyle & fsStyle) != 0;
}

// A state with some of its bits set or cleared.
inline BYTE withBits(BYTE fsState, BYTE fsBits, bool fSet)
{
    return BYTE(fSet ? fsState | fsBits : fsState & ~fsBits);
}

inline void setState(XferToolButton* pButton, BYTE fsBits, bool fSet)
{
    pButton->fsState = withBits(pButton->fsState, fsBits, fSet);
}

} // namespace toolbar

// Returns 1 and the rectangle, or 0 for an index past the end or a hidden row.
int fXferToolbarItemRect(const XferToolbar* pToolbar, DWORD nRow, RECT* prc);

// Invalidates a row, without erasing.
void vXferToolbarInvalidate(HWND hwnd, const XferToolbar* pToolbar, const XferToolButton* pButton);

// The index of the button at a point, or TOOL_NONE; a separator is none.
int nXferToolbarHitTest(const XferToolbar* pToolbar, int x, int y);

// The index of the first row with this command, or TOOL_NONE.
int nXferToolbarFindCommand(const XferToolbar* pToolbar, DWORD idCommand);

// If the row of the command is checked, unchecks the other one of its group.
void vXferToolbarGroupRule(HWND hwnd, XferToolbar* pToolbar, DWORD idCommand);

// Returns the number of the first picture, or -1; see TOOLM_ADDBITMAP.
int nXferToolbarAddBitmap(XferToolbar* pToolbar, LONG cPictures, HINSTANCE hModule, WORD wId);

// Both return 1, or 0 with nothing changed, and end a press. The record may move. An index past
// the end inserts at the end.
int fXferToolbarInsert(HWND hwnd, XferToolbar* pToolbar, DWORD nRow, DWORD cRows,
                       const XferToolButton* pRows);
int fXferToolbarDelete(HWND hwnd, XferToolbar* pToolbar, DWORD nRow);

#endif
