// Painting of the rows of the owner-drawn lists.
#ifndef TRANSFER_PANES_DRAWITEM_H
#define TRANSFER_PANES_DRAWITEM_H

#include "transfer/window/record.h"

// Handles WM_DRAWITEM.
void vXferDandDDrawListItem(HWND hdlgDandD, XferWindowRecord* pRecord, const DRAWITEMSTRUCT* pDraw);

#endif
