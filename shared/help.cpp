#include "help.h"
#include "krutils.h"

void vXferShowHelp(HWND hwndOwner, XferHelpContext context)
{
    WinHelpA(hwndOwner, KrGetHelpFile(), HELP_CONTEXT, context);
}
