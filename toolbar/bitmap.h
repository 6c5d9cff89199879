// The strips of pictures: loading them in the system's colours, and selecting them.
#ifndef TOOLBAR_BITMAP_H
#define TOOLBAR_BITMAP_H

#include "toolbar/model.h"

// Loads a strip with its own colours replaced by the system's. Returns 0 if there is no such
// bitmap, if it isn't an uncompressed 4-bit bitmap with 16 colours, or if it can't be made.
HBITMAP hbmXferToolbarLoadBitmap(HINSTANCE hModule, WORD wId);

// Selects the strip of a picture, with the origin set so that x = 16 * picture is its left edge in
// any strip. Returns what was selected before, 1 if the strip was selected already, or 0 if there
// is no such picture or its strip can't be loaded.
UINT_PTR fXferToolbarSelectBitmap(HDC hdc, XferToolbar* pToolbar, LONG iPicture);

#endif
