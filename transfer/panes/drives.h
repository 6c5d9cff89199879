// The list of local drives and the list of file types, both filled once.
#ifndef TRANSFER_PANES_DRIVES_H
#define TRANSFER_PANES_DRIVES_H

#include "transfer/window/record.h"

void vXferDandDFillDriveList(HWND hdlgDandD);
void vXferDandDFillTypeList(HWND hdlgDandD, HMODULE hLanguage);

namespace panes {

// What a lower-case drive letter has above the number of its drive, 1 for A:.
constexpr int LETTER_BEFORE_A = 'a' - 1;

// Returns the row of a drive, 1 for A:, or CB_ERR if it has none.
LRESULT findDriveRow(HWND hdlgDandD, LONG nDrive);

} // namespace panes

#endif
