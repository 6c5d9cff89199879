// The window of the screen: it draws the grid, and has keys, mouse, selection and scroll bar.
// Its window text is the text that it shows.
#ifndef KRTERM_VIEW_H
#define KRTERM_VIEW_H

#include <windows.h>

bool registerView(HINSTANCE hInstance);

// pfnSized is told how many characters fit; pfnPut takes what goes to the host.
struct ViewEvents {
    void (*pfnPut)(const BYTE* pb, DWORD cb);
    void (*pfnSized)(int cRows, int cColumns);
    bool (*pfnLocked)(); // what is typed now isn't for the host
};

HWND openView(HWND hwndParent, const ViewEvents* pEvents);

// The size of the view for so many characters.
SIZE sizeOfView(int cRows, int cColumns);

bool hasSelection();
void copySelection();
void selectAll();
void paste();

#endif
