// Windows that are being made. A window can die inside its own creation, and its record with
// it; the creation must learn of that before it touches or frees the record again.
#ifndef TRANSFER_CREATION_H
#define TRANSFER_CREATION_H

#include "record.h"

// Called when a record goes.
void vXferDandDForgetCreation(const XferWindowRecord* pRecord);

#endif
