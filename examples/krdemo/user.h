// What the driver's hands do: real input, at places of the windows.
#ifndef KRDEMO_USER_H
#define KRDEMO_USER_H

#include "input.h"

// The middle of a list row's visible part, in screen coordinates.
POINT pointOfRow(HWND hwndList, int nRow);

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
void typeText(const char* pszText);

// Looks again and again until the condition holds. Gives false if it doesn't for long.
bool waitFor(bool (*pfnHolds)(const void*), const void* pContext);

// Lets the windows come to rest, so that a picture shows them finished.
void rest();

#endif
