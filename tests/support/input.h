// Real mouse and keyboard input, as a user gives it.
#ifndef TESTS_SUPPORT_INPUT_H
#define TESTS_SUPPORT_INPUT_H

#include <windows.h>

// Moves the pointer to the middle of a window and clicks the left button.
void clickWindow(HWND hwnd);

// Moves the pointer, exactly to this point of the screen, or of the client area of a window.
void movePointer(POINT pt);
void movePointer(HWND hwnd, int x, int y);

enum MouseButton { MOUSE_LEFT, MOUSE_MIDDLE, MOUSE_RIGHT };

// Holds a button down, and lets it go.
void pressMouse(MouseButton button);
void releaseMouse(MouseButton button);

// Presses and releases a key, with Alt held if asked for.
void typeKey(WORD vk, bool fAlt = false);

#endif
