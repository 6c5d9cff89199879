#include "help.h"
#include "krutils.h"

void vXferShowHelp(HWND hwndOwner, XferHelpContext context)
{
    WinHelpA(hwndOwner, KrGetHelpFile(), HELP_CONTEXT, context);
}

void vXferSearchHelp(HWND hwndOwner)
{
    WinHelpA(hwndOwner, KrGetHelpFile(), HELP_PARTIALKEY, reinterpret_cast<ULONG_PTR>(""));
}
