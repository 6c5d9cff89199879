#include "help.h"

#include <utility>

namespace {

std::vector<HelpCalls::Call> s_calls;
const char* s_pszFile;

const char* __stdcall fakeHelpFile()
{
    return s_pszFile;
}

BOOL WINAPI fakeWinHelp(HWND hwndOwner, LPCSTR pszFile, UINT uCommand, ULONG_PTR data)
{
    s_calls.push_back({hwndOwner, pszFile, uCommand, data});
    return TRUE;
}

} // namespace

HelpCalls::HelpCalls(const char* pszFile)
    : m_winHelp(GetModuleHandleA("KRHAUL.DLL"), "WinHelpA", fakeWinHelp),
      m_helpFile(GetModuleHandleA("KRHAUL.DLL"), "KRUTILS.DLL", 4, fakeHelpFile)
{
    s_calls.clear();
    s_pszFile = pszFile;
}

std::vector<HelpCalls::Call> HelpCalls::take()
{
    return std::exchange(s_calls, {});
}
