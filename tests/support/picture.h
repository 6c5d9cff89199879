// What windows show.
#ifndef TESTS_SUPPORT_PICTURE_H
#define TESTS_SUPPORT_PICTURE_H

#include <windows.h>

#include <string>
#include <vector>

// Pixels by column and row.
class Picture {
public:
    // The client area as it stands on the screen, children included.
    explicit Picture(HWND hwnd);
    explicit Picture(HBITMAP hbm);
    // One colour all over, to be drawn on.
    Picture(LONG cxAll, LONG cyAll, COLORREF clr);

    COLORREF at(LONG x, LONG y) const;
    void set(LONG x, LONG y, COLORREF clr);

    // The first point where the two differ, or nothing to say.
    std::string difference(const Picture& other) const;

    LONG cx, cy;

private:
    void read(HDC hdc, LONG xFrom, LONG yFrom);
    std::vector<COLORREF> m_pixels;
};

#endif
