// The width of the columns of the file lists.
#ifndef TRANSFER_PANES_COLUMNS_H
#define TRANSFER_PANES_COLUMNS_H

#include "transfer/window/record.h"

// Makes the columns of a file list as wide as its widest name.
void vXferDandDSetColumnWidth(XferWindowRecord* pRecord, int idControl);

#endif
