// The press of a toolbar button, from WM_LBUTTONDOWN to WM_LBUTTONUP. The capture is held
// throughout.
#ifndef TOOLBAR_TRACKING_H
#define TOOLBAR_TRACKING_H

#include "toolbar/model.h"

namespace toolbar {

LRESULT onButtonDown(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam);
LRESULT onMouseMove(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam);
LRESULT onButtonUp(HWND hwnd, XferToolbar* pToolbar, LPARAM lParam);

// Ends a press, if there is one, without a notification: the button comes up and the capture is
// released.
void cancelPress(HWND hwnd, XferToolbar* pToolbar);

// The same without any drawing, before rows are moved. Returns whether there was a press; if so,
// releaseCapture has to follow.
bool clearPress(XferToolbar* pToolbar);
void releaseCapture(HWND hwnd);

} // namespace toolbar

#endif
