#include "shared/help.h"
#include "shared/krutils.h"

namespace {

void callHelp(HWND hwndOwner, UINT uCommand, ULONG_PTR data)
{
    const char* pszFile = KrGetHelpFile();
    if (pszFile != nullptr) {
        WinHelpA(hwndOwner, pszFile, uCommand, data);
    }
}

} // namespace

void shared::showHelp(HWND hwndOwner, HelpContext context)
{
    callHelp(hwndOwner, HELP_CONTEXT, context);
}

void shared::searchHelp(HWND hwndOwner)
{
    callHelp(hwndOwner, HELP_PARTIALKEY, reinterpret_cast<ULONG_PTR>(""));
}
