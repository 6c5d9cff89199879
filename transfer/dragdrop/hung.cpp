#include "transfer/dragdrop/hung.h"

namespace {

// The system gives up on a thread after five seconds.
constexpr DWORD MAX_SILENCE_MS = 1000;

// Nobody posts this message, the last one that applications may use, so nothing is found.
constexpr UINT NEVER_POSTED = 0xBFFF;

// Leaves sent messages to wait where the system allows it.
constexpr UINT LOOK_FOR_POSTED = PM_NOREMOVE | PM_NOYIELD | QS_POSTMESSAGE << 16;

// Matches the messages of the thread alone. Input is always for a window.
HWND noWindow()
{
    return reinterpret_cast<HWND>(INT_PTR(-1));
}

} // namespace

// Versions that know hung windows let programs ask for them. On the others there is no need to
// look for messages.
dragdrop::Silence dragdrop::beginSilence()
{
    HMODULE hUser = GetModuleHandleA("USER32.DLL");
    bool fCounted = hUser != nullptr && GetProcAddress(hUser, "IsHungAppWindow") != nullptr;
    return {fCounted, GetTickCount()};
}

void dragdrop::keepResponsive(Silence* pSilence)
{
    MSG message;
    if (pSilence->fCounted && GetTickCount() - pSilence->dwSince >= MAX_SILENCE_MS) {
        PeekMessageA(&message, noWindow(), NEVER_POSTED, NEVER_POSTED, LOOK_FOR_POSTED);
        pSilence->dwSince = GetTickCount();
    }
}
