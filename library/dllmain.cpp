// The entry point of the library.
#include "shared/module.h"
#include "status/slots.h"
#include "toolbar/toolbar.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID)
{
    if (dwReason == DLL_PROCESS_ATTACH) {
        g_hInstance = hInstance;
        status::freeAllSlots();
    } else if (dwReason == DLL_PROCESS_DETACH) {
        // Not every version of the platform unregisters a class together with the module of its
        // procedure.
        toolbar::unregisterClass(hInstance);
    }
    return TRUE;
}
