// Modal dialogs on a transfer window. nXferDandDDialogBoxParam (krhaul.h) is the only way to run
// one: it disables the chain of parent windows around the dialog.
#ifndef TRANSFER_WINDOW_MODAL_H
#define TRANSFER_WINDOW_MODAL_H

#include "include/krhaul.h"

namespace window {

// What nXferDandDDialogBoxParam returns if the dialog could not be run.
constexpr INT_PTR DIALOG_FAILED = -1;

} // namespace window

#endif
