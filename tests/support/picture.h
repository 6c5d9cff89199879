// What windows show.
#ifndef TESTS_SUPPORT_PICTURE_H
#define TESTS_SUPPORT_PICTURE_H

#include <windows.h>

#include <string>
#include <vector>

// The client area as it stands on the screen, children included.
class Picture {
public:
    explicit Picture(HWND hwnd);
    COLORREF at(LONG x, LONG y) const;

    // The first point where the two differ, or nothing to say.
    std::string difference(const Picture& other) const;

    LONG cx, cy;

private:
    std::vector<DWORD> m_pixels;
};

#endif
