// The pointer can be asked for from version 5 of the platform on.
#undef WINVER
#undef _WIN32_WINNT
#define WINVER 0x0500
#define _WIN32_WINNT 0x0500
#include "picture.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace robot {

namespace {

struct Picture {
    BITMAPINFOHEADER info;
    void* pBits;
};

Picture describe(LONG cx, LONG cy)
{
    Picture picture = {};
    picture.info.biSize = sizeof picture.info;
    picture.info.biWidth = cx;
    picture.info.biHeight = cy;
    picture.info.biPlanes = 1;
    picture.info.biBitCount = 24;
    picture.info.biSizeImage = DWORD((cx * 3 + 3) / 4 * 4 * cy);
    return picture;
}

// The screen's own picture doesn't hold the pointer.
void drawPointer(HDC hdc, const RECT* prc)
{
    CURSORINFO cursor = {};
    ICONINFO icon = {};
    cursor.cbSize = sizeof cursor;
    if (!GetCursorInfo(&cursor) || cursor.flags != CURSOR_SHOWING ||
        !GetIconInfo(cursor.hCursor, &icon)) {
        return;
    }
    DrawIcon(hdc, cursor.ptScreenPos.x - int(icon.xHotspot) - prc->left,
             cursor.ptScreenPos.y - int(icon.yHotspot) - prc->top, cursor.hCursor);
    DeleteObject(icon.hbmMask);
    DeleteObject(icon.hbmColor);
}

// Copies a rectangle of the screen, so that everything that lies over the window shows too.
bool copyScreen(const RECT* prc, Picture* pPicture, bool pointer)
{
    HDC hdcScreen = GetDC(nullptr);
    HDC hdc = CreateCompatibleDC(hdcScreen);
    auto pInfo = reinterpret_cast<BITMAPINFO*>(&pPicture->info);
    HBITMAP hbm = CreateDIBSection(hdcScreen, pInfo, DIB_RGB_COLORS, &pPicture->pBits, nullptr, 0);
    bool copied = false;
    if (hbm != nullptr) {
        HGDIOBJ hbmOld = SelectObject(hdc, hbm);
        copied = BitBlt(hdc, 0, 0, pPicture->info.biWidth, pPicture->info.biHeight, hdcScreen,
                        prc->left, prc->top, SRCCOPY) != 0;
        if (pointer) {
            drawPointer(hdc, prc);
        }
        GdiFlush();
        void* pCopy = malloc(pPicture->info.biSizeImage);
        if (pCopy != nullptr) {
            memcpy(pCopy, pPicture->pBits, pPicture->info.biSizeImage);
        }
        pPicture->pBits = pCopy;
        SelectObject(hdc, hbmOld);
        DeleteObject(hbm);
    }
    DeleteDC(hdc);
    ReleaseDC(nullptr, hdcScreen);
    return copied && pPicture->pBits != nullptr;
}

bool writeBitmap(const Picture* pPicture, const char* path)
{
    BITMAPFILEHEADER header = {};
    header.bfType = 0x4D42;
    header.bfOffBits = sizeof header + sizeof pPicture->info;
    header.bfSize = header.bfOffBits + pPicture->info.biSizeImage;
    FILE* file = fopen(path, "wb");
    if (file == nullptr) {
        return false;
    }
    bool written = fwrite(&header, sizeof header, 1, file) == 1 &&
                   fwrite(&pPicture->info, sizeof pPicture->info, 1, file) == 1 &&
                   fwrite(pPicture->pBits, pPicture->info.biSizeImage, 1, file) == 1;
    return fclose(file) == 0 && written;
}

} // namespace

DWORD sumOfScreen(const RECT* prc)
{
    DWORD sum = 0;
    Picture picture = describe(prc->right - prc->left, prc->bottom - prc->top);
    if (copyScreen(prc, &picture, false)) {
        for (DWORD n = 0; n < picture.info.biSizeImage; ++n) {
            sum = sum * 31 + static_cast<const BYTE*>(picture.pBits)[n];
        }
    }
    free(picture.pBits);
    return sum;
}

bool takePicture(const RECT* prc, const char* file)
{
    Picture picture = describe(prc->right - prc->left, prc->bottom - prc->top);
    bool done = copyScreen(prc, &picture, true) && writeBitmap(&picture, file);
    free(picture.pBits);
    return done;
}

} // namespace robot
