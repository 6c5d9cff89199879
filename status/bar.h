// The progress bar: a plain control that is painted from outside, only when its look changes.
#ifndef STATUS_BAR_H
#define STATUS_BAR_H

#include "status/slots.h"

namespace status {

// Both let a pending WM_PAINT happen first, which would erase the bar and can run the caller's
// code.
void paintEmptyBar(const Ref& ref);
void paintBar(const Ref& ref, DWORD nPercent);

} // namespace status

#endif
