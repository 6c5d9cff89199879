#include "help.h"

#include <utility>

namespace {

std::vector<HelpCalls::Call> s_calls;

BOOL WINAPI fakeWinHelp(HWND hwndOwner, LPCSTR pszFile, UINT uCommand, ULONG_PTR data)
{
    s_calls.push_back({hwndOwner, pszFile, uCommand, data});
    return TRUE;
}

} // namespace

HelpCalls::HelpCalls() : m_winHelp(GetModuleHandleA("KRHAUL.DLL"), "WinHelpA", fakeWinHelp)
{
    s_calls.clear();
}

std::vector<HelpCalls::Call> HelpCalls::take()
{
    return std::exchange(s_calls, {});
}
