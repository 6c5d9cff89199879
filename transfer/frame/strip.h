// The message strip along the bottom of the window: a text and the thermometer.
#ifndef TRANSFER_FRAME_STRIP_H
#define TRANSFER_FRAME_STRIP_H

#include "transfer/window/record.h"

void vXferDandDInitStrip(HWND hdlgDandD, XferWindowRecord* pRecord);
void vXferDandDStripRect(HWND hdlgDandD, XferWindowRecord* pRecord);
void vXferDandDPaintStrip(HWND hdlgDandD);

namespace frame {

// While it is kept, a change of selection doesn't change the text of the strip.
void keepStripText(bool fKeep);
bool isStripTextKept();

} // namespace frame

#endif
