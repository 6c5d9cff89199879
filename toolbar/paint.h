// The painting of the toolbar, and what all toolbars of the process share for it: two memory
// device contexts, the mask, the halftone brush and the colours. The shared objects live from
// the first toolbar's WM_CREATE to the last one's WM_DESTROY.
#ifndef TOOLBAR_PAINT_H
#define TOOLBAR_PAINT_H

#include "toolbar/model.h"

extern LONG g_nToolbarUsers; // live toolbars
extern HDC g_hdcToolGlyphs;  // holds the strip of the present paint
extern HDC g_hdcToolMono;    // holds the mask
extern HBITMAP g_hbmToolMono;
extern HGDIOBJ g_hbmToolMonoOld; // what g_hdcToolMono held before the mask
extern HBRUSH g_hbrToolDither;
extern LONG g_nToolDitherUsers;
extern LONG g_iToolSelected; // the strip in g_hdcToolGlyphs, TOOL_NONE for none

// The colours of the present paint.
extern COLORREF g_clrToolFace, g_clrToolShadow, g_clrToolHighlight, g_clrToolFrame;

// Counts a toolbar in, and makes what is shared for the first one. Gives 0 if that fails;
// vXferToolbarReleaseShared has to follow in any case, and clears up what was made.
int fXferToolbarAcquireShared();
void vXferToolbarReleaseShared();

// Counts a user of the halftone brush in, or with the flag renews the brush if it has a user.
// Gives 0 if no brush can be made; an old one stays then.
int fXferToolbarDitherBrush(bool fRecreate);
void vXferToolbarFreeDither();
HBITMAP hbmXferToolbarDitherBitmap();

// Reads the system's colours. If they have changed, renews the brush and throws the toolbar's
// loaded bitmaps away.
void vXferToolbarCheckColors(XferToolbar* pToolbar);

// Loads a strip with the system's colours in the place of its own. Gives 0 if there is no such
// bitmap, if it isn't an uncompressed 4-bit bitmap with 16 colours, or if it can't be made.
HBITMAP hbmXferToolbarLoadBitmap(HINSTANCE hModule, WORD wId);

// Selects the strip of a picture, with the origin set so that x = 16 * picture hits it in any
// strip. Gives what was selected before, 1 if the strip was selected already, or 0 if there is no
// such picture or its strip can't be had.
UINT_PTR fXferToolbarSelectBitmap(HDC hdc, XferToolbar* pToolbar, LONG iPicture);

// WM_PAINT.
void vXferToolbarPaint(HWND hwnd, XferToolbar* pToolbar);

void vXferToolbarDrawButton(HDC hdc, int x, int y, int cx, int cy, XferToolbar* pToolbar,
                            const XferToolButton* pButton);
void vXferToolbarDrawFace(HDC hdc, int x, int y, int cx, int cy, BYTE fsState);

// Makes the mask of a button's picture, whose strip has to be selected: white where the picture
// has the colour of the face or of the highlight, and around it; black elsewhere.
void vXferToolbarMakeMask(const XferToolbar* pToolbar, const XferToolButton* pButton, int xPicture,
                          int yPicture, int cx, int cy);

void vXferToolbarFill(HDC hdc, int x, int y, int cx, int cy, COLORREF clr);

#endif
