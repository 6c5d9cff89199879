// What the terminal shows: libvterm makes it of the bytes of the host, and lines that have left
// at the top are kept. Nothing here has a window.
#ifndef KRTERM_SCREEN_H
#define KRTERM_SCREEN_H

#include <windows.h>
#include <vterm.h>

struct ScreenCell {
    DWORD ch; // Unicode; 0 behind a wide character
    COLORREF textColor, backColor;
    bool bold, underline, wide;
};

// A place in all that was shown. A line keeps its number while it is kept.
struct ScreenPlace {
    int line, column;
};

struct ScreenEvents {
    void (*put)(const BYTE* bytes, DWORD count); // to the host: answers, and what keys mean
    void (*changed)(int firstRow, int endRow);
    void (*moved)(); // lines have been kept or given back, or the cursor has moved
};

bool openScreen(int rows, int columns, const ScreenEvents* events);
void closeScreen();

void writeScreen(const BYTE* bytes, DWORD count);
void sizeScreen(int rows, int columns);
void clearKeptLines();

int screenRows();
int screenColumns();

// The oldest line that is kept, and the top line of the screen.
int firstLine();
int topLine();

// A cell of a line; blank where there is none.
ScreenCell cellAt(ScreenPlace place);
ScreenPlace cursorPlace();
bool isCursorShown();

// Whether the first place is before the second.
bool isBefore(ScreenPlace first, ScreenPlace second);

// The text from one place up to another, lines ended by CR and LF, in a block for the caller to
// free() with a NUL at its end.
WCHAR* screenText(ScreenPlace from, ScreenPlace to);

// The word around a place: its beginning, or its end.
ScreenPlace wordEdge(ScreenPlace place, bool toEnd);

// What the user types goes to the host as the host's program wants it.
void typeKey(VTermKey key, VTermModifier modifier);
void typeChar(DWORD ch);
void pasteText(const WCHAR* text);

#endif
