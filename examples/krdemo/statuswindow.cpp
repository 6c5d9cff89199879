#include "statuswindow.h"
#include "../../include/krhaul.h"

namespace demo {

namespace {

HWND window;
WNDPROC windowProc; // the window's procedure before ours
void (*pressed)();

// The window tells nobody of its buttons, so its commands are looked at first.
LRESULT CALLBACK statusProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    WORD id = LOWORD(wParam);
    LRESULT result = CallWindowProcA(windowProc, hwnd, message, wParam, lParam);
    if (message == WM_COMMAND && (id == XFERSTAT_BUTTON || id == XFERSTAT_CANCEL)) {
        pressed();
    }
    return result;
}

} // namespace

bool openStatusWindow(const StatusLook& look, void (*onButton)())
{
    closeStatusWindow();
    pressed = onButton;
    window = hdlgXferStatLangCreate(look.language.c_str(), look.title.c_str(), look.send ? 1 : 0,
                                    look.owner, look.corner ? 1 : 0, 0);
    if (window == nullptr) {
        return false;
    }
    windowProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(window, GWL_WNDPROC, reinterpret_cast<LONG>(statusProc)));
    vXferStatButtonText(window, XFERSTAT_CAPTION_STOP);
    SendMessageA(window, WM_SETICON, ICON_SMALL, LONG(GetClassLongA(look.owner, GCL_HICON)));
    return true;
}

void showFile(const char* from, const char* to, DWORD size, const std::string& status)
{
    nXferStatFileInfo(window, from, to, size);
    nXferStatStatusInfo(window, status.c_str());
    nXferStatCountInfo(window, 0);
    nXferStatStartTransfer(window);
}

void showCount(DWORD bytes, DWORD failed)
{
    nXferStatErrorInfo(window, failed, 0);
    nXferStatCountInfo(window, bytes);
}

void showFileEnd(const char* status)
{
    nXferStatStatusInfo(window, status);
    nXferStatEndTransfer(window);
}

void keepStatusWindow()
{
    vXferStatButtonText(window, XFERSTAT_CAPTION_CLOSE);
}

void closeStatusWindow()
{
    if (window != nullptr) {
        nXferStatDestroy(window);
        window = nullptr;
    }
}

HWND statusWindow()
{
    return window;
}

} // namespace demo
