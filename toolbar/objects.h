// What all toolbars of the process share for painting: two memory device contexts, the mask, the
// halftone brush and the colours. The shared objects exist from the first toolbar's WM_CREATE to
// the last one's WM_DESTROY.
#ifndef TOOLBAR_OBJECTS_H
#define TOOLBAR_OBJECTS_H

#include "toolbar/model.h"

extern LONG g_nToolbarUsers; // existing toolbars
extern HDC g_hdcToolGlyphs;  // holds the strip of the current painting
extern HDC g_hdcToolMono;    // holds the mask
extern HBITMAP g_hbmToolMono;
extern HGDIOBJ g_hbmToolMonoOld; // what g_hdcToolMono held before the mask
extern HBRUSH g_hbrToolDither;
extern LONG g_nToolDitherUsers;
extern LONG g_iToolSelected; // the strip in g_hdcToolGlyphs, TOOL_NONE for none

// The colours of the current painting.
extern COLORREF g_clrToolFace, g_clrToolShadow, g_clrToolHighlight, g_clrToolFrame;

// Adds a user of the shared objects, and makes them for the first one. Returns 0 if that fails;
// vXferToolbarReleaseShared has to follow in any case, and deletes what was made.
int fXferToolbarAcquireShared();
void vXferToolbarReleaseShared();

// Adds a user of the halftone brush or, with the flag, makes the brush again if it has a user.
// Returns 0 if no brush can be made; an old one then stays.
int fXferToolbarDitherBrush(bool fRecreate);
void vXferToolbarFreeDither();
HBITMAP hbmXferToolbarDitherBitmap();

// Reads the system's colours. If they have changed, makes the brush again and deletes the
// toolbar's loaded bitmaps.
void vXferToolbarCheckColors(XferToolbar* pToolbar);

#endif
