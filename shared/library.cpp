#include "library.h"
#include "../status/slots.h"

HINSTANCE g_hInstance;

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID)
{
    if (dwReason == DLL_PROCESS_ATTACH) {
        g_hInstance = hInstance;
        XferStatFreeAllSlots();
    }
    return TRUE;
}
