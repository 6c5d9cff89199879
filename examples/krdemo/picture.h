// Pictures of windows, for demonstrations without a display.
#ifndef KRDEMO_PICTURE_H
#define KRDEMO_PICTURE_H

#include <windows.h>

// Writes a part of the screen, the mouse pointer in it, into a bitmap file. Gives false if it
// can't.
bool takePicture(const RECT* prc, const char* pszFile);

// A sum over what a part of the screen shows, the pointer aside.
DWORD sumOfScreen(const RECT* prc);

#endif
