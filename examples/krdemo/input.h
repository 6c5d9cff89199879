// Real mouse and keyboard input, event by event.
#ifndef KRDEMO_INPUT_H
#define KRDEMO_INPUT_H

#include <windows.h>

// Moves the pointer exactly to this point of the screen.
void sendPointer(POINT pt);

// One of the MOUSEEVENTF_ flags of a button, and of those of a key, 0 for a press.
void sendButton(DWORD dwFlag);
void sendKey(WORD vk, DWORD dwFlag);

POINT middleOf(HWND hwnd);

#endif
