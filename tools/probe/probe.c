/* Tells whether a Windows runtime can draw, and whether the dialog font is the real one.
   Prints one line and exits 0 when all is well, else 1. With the argument "hold" it stays
   then, with a window, so that the runtime's own processes stay too and the programs after
   it start quickly. */
#include <windows.h>
#include <stdio.h>
#include <string.h>

static int drawsPixels(HDC hdc)
{
    RECT rc = {0, 0, 8, 8};
    HBRUSH hbr = CreateSolidBrush(RGB(255, 0, 0));
    int drawn = FillRect(hdc, &rc, hbr) && GetPixel(hdc, 3, 3) == RGB(255, 0, 0);
    DeleteObject(hbr);
    return drawn;
}

static int hasDialogFont(HDC hdc)
{
    TEXTMETRICA metrics = {0};
    HFONT hfont = CreateFontA(-11, 0, 0, 0, FW_NORMAL, 0, 0, 0, 0, 0, 0, 0, 0, "MS Sans Serif");
    HGDIOBJ hfontOld = SelectObject(hdc, hfont);
    GetTextMetricsA(hdc, &metrics);
    SelectObject(hdc, hfontOld);
    DeleteObject(hfont);
    return metrics.tmHeight == 13 && metrics.tmAveCharWidth == 5;
}

static void hold(void)
{
    MSG msg;
    while (GetMessageA(&msg, NULL, 0, 0) > 0) {
        DispatchMessageA(&msg);
    }
}

int main(int argc, char** argv)
{
    int drawn;
    int font;
    HWND hwnd =
        CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 40, 40, NULL, NULL, NULL, NULL);
    HDC hdc;
    if (hwnd == NULL) {
        puts("no window can be made (no display?)");
        return 1;
    }
    hdc = GetDC(hwnd);
    drawn = drawsPixels(hdc);
    font = hasDialogFont(hdc);
    ReleaseDC(hwnd, hdc);
    ShowWindow(hwnd, SW_HIDE);
    puts(!drawn ? "pixels are not drawn" : !font ? "MS Sans Serif is missing" : "drawing works");
    fflush(stdout);
    if (drawn && font && argc > 1 && strcmp(argv[1], "hold") == 0) {
        hold();
    }
    return drawn && font ? 0 : 1;
}
