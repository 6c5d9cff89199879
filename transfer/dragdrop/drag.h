// Dragging files from one pane to the other. The procedures of the lists are in krhaul.h.
#ifndef TRANSFER_DRAGDROP_DRAG_H
#define TRANSFER_DRAGDROP_DRAG_H

#include "transfer/window/record.h"

// Tracks the mouse until its buttons are up. Returns the id of the list under the pointer at the
// end, or 0.
int nXferDandDTrackDrag(HWND hdlgDandD, int idSource, int idFileTarget, int idDirTarget);

#endif
