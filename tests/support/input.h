// Real mouse and keyboard input, as a user gives it.
#ifndef TESTS_SUPPORT_INPUT_H
#define TESTS_SUPPORT_INPUT_H

#include <windows.h>

// Moves the pointer to the middle of a window and clicks the left button.
void clickWindow(HWND hwnd);

// Moves the pointer to a point in the client area of a window.
void movePointer(HWND hwnd, int x, int y);

void pressLeft();
void releaseLeft();

// Presses and releases a key, with Alt held if asked for.
void typeKey(WORD vk, bool fAlt = false);

#endif
