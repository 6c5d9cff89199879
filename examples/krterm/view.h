// The window of the screen: it draws the grid, and has keys, mouse, selection and scroll bar.
// Its window text is the text that it shows.
#ifndef KRTERM_VIEW_H
#define KRTERM_VIEW_H

#include <windows.h>

bool registerView(HINSTANCE hInstance);

// sized is told how many characters fit; put takes what goes to the host.
struct ViewEvents {
    void (*put)(const BYTE* bytes, DWORD count);
    void (*sized)(int rows, int columns);
    bool (*locked)(); // what is typed now isn't for the host
};

HWND openView(HWND parent, const ViewEvents* events);

// The size of the view for so many characters.
SIZE sizeOfView(int rows, int columns);

bool hasSelection();
void copySelection();
void selectAll();
void paste();

#endif
