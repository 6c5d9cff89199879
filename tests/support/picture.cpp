#include "picture.h"

Picture::Picture(HWND hwnd)
{
    RECT rcWindow;
    RECT rc;
    POINT pt = {0, 0};
    GetWindowRect(hwnd, &rcWindow);
    GetClientRect(hwnd, &rc);
    ClientToScreen(hwnd, &pt);
    cx = rc.right;
    cy = rc.bottom;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pBits = nullptr;
    HDC hdcWindow = GetWindowDC(hwnd);
    HDC hdc = CreateCompatibleDC(hdcWindow);
    HBITMAP hbm = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    BitBlt(hdc, 0, 0, cx, cy, hdcWindow, pt.x - rcWindow.left, pt.y - rcWindow.top, SRCCOPY);
    GdiFlush();
    auto pPixels = static_cast<const DWORD*>(pBits);
    m_pixels.assign(pPixels, pPixels + cx * cy);
    SelectObject(hdc, hbmOld);
    DeleteObject(hbm);
    DeleteDC(hdc);
    ReleaseDC(hwnd, hdcWindow);
}

COLORREF Picture::at(LONG x, LONG y) const
{
    DWORD dw = x < 0 || y < 0 || x >= cx || y >= cy ? 0 : m_pixels[size_t(y * cx + x)];
    return RGB(dw >> 16 & 0xFF, dw >> 8 & 0xFF, dw & 0xFF);
}

std::string Picture::difference(const Picture& other) const
{
    if (cx != other.cx || cy != other.cy) {
        return "another size";
    }
    for (LONG y = 0; y < cy; ++y) {
        for (LONG x = 0; x < cx; ++x) {
            if (at(x, y) != other.at(x, y)) {
                return "at " + std::to_string(x) + ", " + std::to_string(y);
            }
        }
    }
    return "";
}
