// Suspended drawing of the lists. A row that is added to or removed from a visible list makes the
// list draw its scroll bar, which costs far more than the row itself, and in the busy state rows
// come and go in long runs.
#ifndef TRANSFER_PANES_DRAWING_H
#define TRANSFER_PANES_DRAWING_H

#include "transfer/window/record.h"

namespace panes {

// The window posts this message to itself to resume drawing.
constexpr UINT WM_XFER_SHOWLISTS = 0x0519;

// Whether the message that resumes drawing is on its way: in the busy state, if it can be posted.
bool ensureResumePosted(XferWindowRecord* pRecord);

// Called before a change of a list. In the busy state a list isn't drawn from the first change
// until the message loop runs again, or the busy state ends. Returns whether drawing is suspended.
bool suspendDrawing(XferWindowRecord* pRecord, int idControl);

// Makes the changes that wait, and lets all lists draw. Returns false if the window ended
// meanwhile.
bool resumeDrawing(XferWindowRecord* pRecord);

} // namespace panes

#endif
