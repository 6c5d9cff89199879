#include "help.h"

#include <windows.h>

void sample::useHelpBox()
{
    FARPROC found = GetProcAddress(GetModuleHandleA("KRUTILS.DLL"), "KrUseHelpBox");
    if (found != nullptr) {
        reinterpret_cast<void(WINAPI*)(int)>(reinterpret_cast<void*>(found))(TRUE);
    }
}
