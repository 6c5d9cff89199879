// The entry point of the library.
#include "shared/module.h"
#include "status/slots.h"
#include "toolbar/toolbar.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID pReserved)
{
    if (dwReason == DLL_PROCESS_ATTACH) {
        g_hInstance = hInstance;
        status::freeAllSlots();
    } else if (dwReason == DLL_PROCESS_DETACH && pReserved == nullptr) {
        // Freed by FreeLibrary: not every version of the platform unregisters a class together
        // with the module of its procedure. At the end of the process nothing is called, because
        // the libraries that it would run in may have ended already.
        toolbar::unregisterClass(hInstance);
    }
    return TRUE;
}
