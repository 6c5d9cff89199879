// The connection: a socket that tells the window by messages what it has, so that it needs no
// thread and goes on while a menu or a box is open.
#ifndef KRTERM_LINE_H
#define KRTERM_LINE_H

#include <winsock.h>

// What the line tells.
struct LineEvents {
    void (*opened)();
    void (*received)(BYTE* bytes, DWORD count);
    void (*closed)(const char* why);
};

// Begins to connect to "host[:port]"; message is a free message of the window. Returns false,
// with the reason, if that can't be.
bool openLine(HWND hwnd, UINT message, const char* address, const LineEvents* events,
              const char** why);

void closeLine();
bool isLineOpen();

// Sends what the host takes and keeps the rest until it takes more.
void putLine(const BYTE* bytes, DWORD count);

// How much is kept.
DWORD waitingInLine();

// The window's message.
void onLineMessage(WPARAM wParam, LPARAM lParam);

#endif
