#include "library.h"
#include "../status/slots.h"
#include "../toolbar/toolbar.h"

HINSTANCE g_hInstance;

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID)
{
    if (dwReason == DLL_PROCESS_ATTACH) {
        g_hInstance = hInstance;
        XferStatFreeAllSlots();
    } else if (dwReason == DLL_PROCESS_DETACH) {
        // Not every version of the platform takes a class away with the module of its procedure.
        XferToolbarUnregister(hInstance);
    }
    return TRUE;
}
