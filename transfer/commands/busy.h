// The buttons of the toolbar, the busy state and the file type. The exported calls are in
// krhaul.h.
#ifndef TRANSFER_COMMANDS_BUSY_H
#define TRANSFER_COMMANDS_BUSY_H

#include "transfer/window/record.h"

void vXferDandDInitToolbar(HWND hdlgDandD, LONG nViewMode, DWORD nType);

namespace commands {

// Enables or disables the commands that are available only when idle and in two-pane mode.
void enablePaneCommands(HWND hdlgDandD, bool fEnabled);

} // namespace commands

#endif
