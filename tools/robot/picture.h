// Pictures of windows, for demonstrations without a display.
#ifndef ROBOT_PICTURE_H
#define ROBOT_PICTURE_H

#include <windows.h>

namespace robot {

// Writes a part of the screen, the mouse pointer in it, into a bitmap file. Returns false if it
// can't.
bool takePicture(const RECT* prc, const char* file);

// A sum over what a part of the screen shows, the pointer aside.
DWORD sumOfScreen(const RECT* prc);

} // namespace robot

#endif
