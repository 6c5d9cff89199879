// Hints of menu items and toolbar buttons, shown in the message strip.
#ifndef TRANSFER_FRAME_HINTS_H
#define TRANSFER_FRAME_HINTS_H

#include "transfer/window/record.h"

namespace frame {

// Handles WM_MENUSELECT.
void showMenuHint(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam);

// Handles WM_XFER_SHOWHINT; id 0 clears the text.
void showButtonHint(HWND hdlgDandD, XferWindowRecord* pRecord, UINT idString);

} // namespace frame

#endif
