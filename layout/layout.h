// The anchored layout: keeps the transfer window's controls in place when it is sized or
// changes its view mode. Every edge of a control keeps its distance to an edge of the client area
// or of a small box at its centre; the distances are measured once, at the size of the template.
#ifndef LAYOUT_LAYOUT_H
#define LAYOUT_LAYOUT_H

#include <windows.h>

constexpr int XFERLAYOUT_ROWS = 19;
constexpr int XFERLAYOUT_MODES = 2;

// The reference edges of a control in one view mode. An anchor byte has two bits.
constexpr BYTE XFERANCHOR_SAME = 0x80;   // the same edge of the reference, else the opposite one
constexpr BYTE XFERANCHOR_CENTRE = 0x01; // the reference is the centre box, else the client area

struct XferAnchorSet {
    WORD fInMode; // bit 0: the control belongs to this mode
    BYTE bTop;
    BYTE bBottom;
    BYTE bLeft;
    BYTE bRight;
};

struct XferLayoutRow {
    LONG nControlId;
    XferAnchorSet modes[XFERLAYOUT_MODES];
};

static_assert(sizeof(XferAnchorSet) == 6 && sizeof(XferLayoutRow) == 16, "rows have no gaps");

extern const XferLayoutRow g_xferLayoutRows[XFERLAYOUT_ROWS];

namespace layout {

// The measured distances, edge of the control minus edge of the reference, in pixels.
struct Distances {
    RECT distances[XFERLAYOUT_ROWS][XFERLAYOUT_MODES];
};

} // namespace layout

// Measures the distances for both modes. Called once, while the controls are where the template
// puts them.
void vXferDandDCaptureLayout(HWND hdlgDandD, layout::Distances* pLayout);

namespace layout {

// Says whether a window with these distances still exists. Every move of a control sends messages,
// on which the caller's code can destroy the window. Without it a window always exists.
using AliveProc = bool (*)(HWND hdlgDandD, const layout::Distances* pLayout);
void setAliveProc(AliveProc pfnIsAlive);

} // namespace layout

// Moves and shows the controls of a mode, 0 or 1, and hides the others, with one repaint.
void vXferDandDApplyLayout(HWND hdlgDandD, const layout::Distances* pLayout, int nMode);

#endif
