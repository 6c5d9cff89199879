// The initialisation of a transfer window.
#ifndef TRANSFER_INIT_H
#define TRANSFER_INIT_H

#include "transfer/window/record.h"

// Handles WM_INITDIALOG. Returns 1.
int fXferDandDInitDialog(HWND hdlgDandD, XferWindowRecord* pRecord);

#endif
