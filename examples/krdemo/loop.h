// What comes later, from the message loop.
#ifndef KRDEMO_LOOP_H
#define KRDEMO_LOOP_H

#include <windows.h>

#include <functional>

namespace demo {

// Makes a window that nobody sees, for messages alone.
HWND makeMessageWindow(const char* className, WNDPROC procedure);

// Calls it once, when the message loop comes by.
void later(std::function<void()> call);

// Calls it again and again. A timer's message is the last that the platform delivers, so whatever
// the user does goes before it.
struct Ticks {
    UINT_PTR timer;
};
void startTicks(Ticks* ticks, UINT milliseconds, TIMERPROC call);
void stopTicks(Ticks* ticks);

} // namespace demo

#endif
