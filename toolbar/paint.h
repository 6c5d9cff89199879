// The painting of the toolbar: the faces and looks of the buttons.
#ifndef TOOLBAR_PAINT_H
#define TOOLBAR_PAINT_H

#include "toolbar/model.h"

// Handles WM_PAINT.
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
