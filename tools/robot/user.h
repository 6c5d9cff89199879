// What the robot's hands do: real input, at places of the windows.
#ifndef ROBOT_USER_H
#define ROBOT_USER_H

#include "input.h"

namespace robot {

// The middle of a list row's visible part, in screen coordinates.
POINT pointOfRow(HWND hwndList, int row);

void movePointer(POINT pt);
void pressButton();
void releaseButton();
void clickAt(POINT pt);
void doubleClickAt(POINT pt);

// Moves in steps that a drag can follow.
void dragTo(POINT ptFrom, POINT ptTo);

void holdKey(WORD vk);
void letKey(WORD vk);
void pressKey(WORD vk);
void pressWithAlt(WORD vk);

// Types letters, digits, blanks, dots and backslashes.
void typeText(const char* text);

// The same over what the line with the focus holds.
void typeOver(const char* text);

} // namespace robot

#endif
