// Requests to the caller, through the callbacks of its table. A callback that is null is not
// called, and nothing is recorded for it. The window can be destroyed in every callback.
#ifndef TRANSFER_WINDOW_REQUEST_H
#define TRANSFER_WINDOW_REQUEST_H

#include "transfer/window/record.h"

enum Direction { XFERDIR_RECEIVE = 0, XFERDIR_SEND = 1 };

namespace window {

// Asks the caller for the confirmation flags. If the caller keeps none, every deletion is
// confirmed.
DWORD confirmFlags(const XferWindowRecord* pRecord);

// Whether the caller has a callback for transfers in this direction.
bool canTransfer(const XferWindowRecord* pRecord, Direction direction);

// Passes a list of names to the callback for the direction, which owns it from then on.
void requestTransfer(const XferWindowRecord* pRecord, Direction direction, XferFileList list,
                     const char* pszHostDir);

} // namespace window

#endif
