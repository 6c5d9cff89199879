// The sample viewer: shows a file as text, or as bytes if it isn't text. It understands the two
// command lines with which KRHAUL starts the viewer beside the executable, and deletes a temporary
// copy when it closes.
#include "content.h"
#include "control.h"

#include <stdio.h>
#include <stdlib.h>

namespace {

constexpr char CLASS[] = "KRVIEWER";
constexpr char TITLE[] = "Sample viewer";
constexpr int EXIT_FAILED = 1;
constexpr int WIDTH_IN_CHARS = 82; // a line of bytes, and the scroll bar
constexpr int HEIGHT_IN_LINES = 30;
constexpr DWORD EDIT_STYLE = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE |
                             ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_NOHIDESEL;

HWND s_hwndEdit;

void onCreate(HWND hwnd)
{
    s_hwndEdit = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", "", EDIT_STYLE, 0, 0, 0, 0, hwnd,
                                 nullptr, nullptr, nullptr);
    SendMessageA(s_hwndEdit, EM_LIMITTEXT, 0, 0);
    SendMessageA(s_hwndEdit, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)),
                 0);
}

LRESULT CALLBACK viewerProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_CREATE:
        onCreate(hwnd);
        return 0;
    case WM_SIZE:
        MoveWindow(s_hwndEdit, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        return 0;
    case WM_SETFOCUS:
        SetFocus(s_hwndEdit);
        return 0;
    case WM_CTLCOLORSTATIC:
        return LRESULT(GetSysColorBrush(COLOR_WINDOW));
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

HWND makeWindow(HINSTANCE hInstance, const char* pszTitle)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = viewerProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    wndclass.hIcon = LoadIconA(hInstance, CLASS);
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    wndclass.lpszClassName = CLASS;
    RegisterClassA(&wndclass);
    TEXTMETRICA metrics;
    HDC hdc = GetDC(nullptr);
    SelectObject(hdc, GetStockObject(ANSI_FIXED_FONT));
    GetTextMetricsA(hdc, &metrics);
    ReleaseDC(nullptr, hdc);
    return CreateWindowA(CLASS, pszTitle, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                         WIDTH_IN_CHARS * metrics.tmAveCharWidth + GetSystemMetrics(SM_CXVSCROLL),
                         HEIGHT_IN_LINES * metrics.tmHeight, nullptr, nullptr, hInstance, nullptr);
}

// Escape closes the window, as it does in others that only show something.
void runLoop(HWND hwnd)
{
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_KEYDOWN && msg.wParam == VK_ESCAPE) {
            DestroyWindow(hwnd);
        } else {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
}

bool show(HINSTANCE hInstance, const ViewedFile* pViewed)
{
    char szTitle[2 * MAX_PATH];
    Content content;
    if (!readContent(pViewed->szFile, &content)) {
        return false;
    }
    snprintf(szTitle, sizeof szTitle, "%s%s - %s", pViewed->szTitle,
             content.fCut ? " (its beginning)" : "", TITLE);
    HWND hwnd = makeWindow(hInstance, szTitle);
    SetWindowTextA(s_hwndEdit, content.pszLines);
    free(content.pszLines);
    ShowWindow(hwnd, SW_SHOWNORMAL);
    runLoop(hwnd);
    return true;
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    ViewedFile viewed;
    bool fShown = readCommandLine(&viewed) && show(hInstance, &viewed);
    if (!fShown) {
        MessageBoxA(nullptr, viewed.szFile[0] != '\0' ? viewed.szFile : "There is no file to show.",
                    "Sample viewer: the file can't be opened", MB_OK | MB_ICONEXCLAMATION);
    }
    removeTemporary(&viewed);
    return fShown ? 0 : EXIT_FAILED;
}
