#include "loop.h"

#include <memory>

namespace demo {

namespace {

constexpr char CLASS[] = "KRDEMO.Later";
constexpr UINT WM_LATER = WM_APP;

LRESULT CALLBACK laterProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_LATER) {
        std::unique_ptr<std::function<void()>> call(
            reinterpret_cast<std::function<void()>*>(lParam));
        (*call)();
        return 0;
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

} // namespace

HWND makeMessageWindow(const char* className, WNDPROC procedure)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = procedure;
    wndclass.hInstance = GetModuleHandleA(nullptr);
    wndclass.lpszClassName = className;
    RegisterClassA(&wndclass);
    return CreateWindowA(className, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, wndclass.hInstance,
                         nullptr);
}

void later(std::function<void()> call)
{
    static HWND hwnd = makeMessageWindow(CLASS, laterProc);
    auto copy = new std::function<void()>(std::move(call));
    if (!PostMessageA(hwnd, WM_LATER, 0, reinterpret_cast<LPARAM>(copy))) {
        delete copy;
    }
}

void startTicks(Ticks* ticks, UINT milliseconds, TIMERPROC call)
{
    if (ticks->timer == 0) {
        ticks->timer = SetTimer(nullptr, 0, milliseconds, call);
    }
}

void stopTicks(Ticks* ticks)
{
    if (ticks->timer != 0) {
        KillTimer(nullptr, ticks->timer);
        ticks->timer = 0;
    }
}

} // namespace demo
