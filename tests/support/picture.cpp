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
    HDC hdc = GetWindowDC(hwnd);
    read(hdc, pt.x - rcWindow.left, pt.y - rcWindow.top);
    ReleaseDC(hwnd, hdc);
}

Picture::Picture(HBITMAP hbm)
{
    BITMAP bitmap;
    GetObjectA(hbm, sizeof bitmap, &bitmap);
    cx = bitmap.bmWidth;
    cy = bitmap.bmHeight;
    HDC hdc = CreateCompatibleDC(nullptr);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    read(hdc, 0, 0);
    SelectObject(hdc, hbmOld);
    DeleteDC(hdc);
}

Picture::Picture(LONG cxAll, LONG cyAll, COLORREF clr)
    : cx(cxAll), cy(cyAll), m_pixels(size_t(cxAll * cyAll), clr)
{
}

void Picture::read(HDC hdc, LONG xFrom, LONG yFrom)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, cx, -cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pBits = nullptr;
    HDC hdcCopy = CreateCompatibleDC(hdc);
    HBITMAP hbm = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hbmOld = SelectObject(hdcCopy, hbm);
    BitBlt(hdcCopy, 0, 0, cx, cy, hdc, xFrom, yFrom, SRCCOPY);
    GdiFlush();
    auto pPixels = static_cast<const DWORD*>(pBits);
    m_pixels.assign(pPixels, pPixels + cx * cy);
    for (COLORREF& clr : m_pixels) {
        clr = RGB(clr >> 16 & 0xFF, clr >> 8 & 0xFF, clr & 0xFF);
    }
    SelectObject(hdcCopy, hbmOld);
    DeleteObject(hbm);
    DeleteDC(hdcCopy);
}

COLORREF Picture::at(LONG x, LONG y) const
{
    return x < 0 || y < 0 || x >= cx || y >= cy ? 0 : m_pixels[size_t(y * cx + x)];
}

void Picture::set(LONG x, LONG y, COLORREF clr)
{
    m_pixels[size_t(y * cx + x)] = clr;
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
