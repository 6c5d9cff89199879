// Real mouse and keyboard input, event by event.
#ifndef ROBOT_INPUT_H
#define ROBOT_INPUT_H

#include <windows.h>

namespace robot {

// Moves the pointer exactly to this point of the screen.
void sendPointer(POINT pt);

// One of the MOUSEEVENTF_ flags of a button, and of those of a key, 0 for a press.
void sendButton(DWORD flag);
void sendKey(WORD vk, DWORD flag);

POINT middleOf(HWND hwnd);

} // namespace robot

#endif
