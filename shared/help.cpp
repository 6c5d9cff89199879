#include "shared/help.h"
#include "shared/krutils.h"

void shared::showHelp(HWND hwndOwner, HelpContext context)
{
    WinHelpA(hwndOwner, KrGetHelpFile(), HELP_CONTEXT, context);
}

void shared::searchHelp(HWND hwndOwner)
{
    WinHelpA(hwndOwner, KrGetHelpFile(), HELP_PARTIALKEY, reinterpret_cast<ULONG_PTR>(""));
}
