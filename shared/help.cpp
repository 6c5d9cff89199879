#include "help.h"
#include "krutils.h"

namespace {

// Without a file KRUTILS has answered by itself.
void askForHelp(HWND hwndOwner, UINT uCommand, ULONG_PTR data)
{
    const char* pszFile = KrGetHelpFile();
    if (pszFile != nullptr) {
        WinHelpA(hwndOwner, pszFile, uCommand, data);
    }
}

} // namespace

void vXferShowHelp(HWND hwndOwner, XferHelpContext context)
{
    askForHelp(hwndOwner, HELP_CONTEXT, context);
}

void vXferSearchHelp(HWND hwndOwner)
{
    askForHelp(hwndOwner, HELP_PARTIALKEY, reinterpret_cast<ULONG_PTR>(""));
}
