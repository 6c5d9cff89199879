// What the library doesn't export, in the objects that it is made of.
#include "../shared/language.h"
#include "support/imports.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID pReserved);

namespace {

HMODULE self()
{
    return GetModuleHandleA(nullptr);
}

struct Box {
    HWND hwndOwner = nullptr;
    std::string text, caption;
    UINT uStyle = 0;
};

Box s_box;
int s_cFreed;

// The fake stands in this very program, so it reaches the original by this.
decltype(&LocalFree) s_pfnLocalFree;

int WINAPI fakeMessageBox(HWND hwndOwner, LPCSTR pszText, LPCSTR pszCaption, UINT uStyle)
{
    s_box = {hwndOwner, pszText, pszCaption, uStyle};
    return IDRETRY;
}

HLOCAL WINAPI countingLocalFree(HLOCAL hBlock)
{
    ++s_cFreed;
    return s_pfnLocalFree(hBlock);
}

// What the system answers for the user's language, and what is asked then.
DWORD s_dwTextError;
std::vector<DWORD> s_languages;

DWORD WINAPI fakeFormatMessage(DWORD, LPCVOID, DWORD, DWORD dwLanguage, LPSTR pszBuffer, DWORD,
                               va_list*)
{
    s_languages.push_back(dwLanguage);
    if (dwLanguage != 0) {
        SetLastError(s_dwTextError);
        return 0;
    }
    *reinterpret_cast<char**>(pszBuffer) = static_cast<char*>(LocalAlloc(LPTR, 5));
    lstrcpyA(*reinterpret_cast<char**>(pszBuffer), "text");
    return 4;
}

TEST(SystemErrorBox, ASystemOfAnotherLanguageHasATextToo)
{
    ReplacedImport box(self(), "MessageBoxA", fakeMessageBox);
    ReplacedImport free(self(), "LocalFree", countingLocalFree);
    s_pfnLocalFree = free.original<decltype(&LocalFree)>();
    ReplacedImport format(self(), "FormatMessageA", fakeFormatMessage);
    const struct {
        DWORD dwError;
        bool fAsksAgain;
    } cases[] = {{ERROR_RESOURCE_LANG_NOT_FOUND, true},
                 {15100, true},
                 {15106, true},
                 {15099, false},
                 {15107, false},
                 {ERROR_MR_MID_NOT_FOUND, false},
                 {ERROR_NOT_ENOUGH_MEMORY, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dwError);
        s_dwTextError = c.dwError;
        s_box = {};
        s_cFreed = 0;
        s_languages.clear();
        EXPECT_EQ(XferSystemErrorBox(GetDesktopWindow(), ERROR_FILE_NOT_FOUND, MB_RETRYCANCEL),
                  c.fAsksAgain ? IDRETRY : 1);
        EXPECT_EQ(s_box.text, c.fAsksAgain ? "text" : "");
        EXPECT_EQ(s_box.caption, c.fAsksAgain ? "Korvalen" : "");
        EXPECT_EQ(s_box.hwndOwner, c.fAsksAgain ? GetDesktopWindow() : nullptr);
        EXPECT_EQ(s_box.uStyle, c.fAsksAgain ? UINT(MB_RETRYCANCEL) : 0u);
        EXPECT_EQ(s_cFreed, c.fAsksAgain);
        EXPECT_EQ(s_languages.size(), c.fAsksAgain ? 2u : 1u);
        EXPECT_EQ(s_languages[0], GetUserDefaultLangID());
    }
}

int s_cUnregistered;

BOOL WINAPI countingUnregister(LPCSTR, HINSTANCE)
{
    ++s_cUnregistered;
    return TRUE;
}

// At the end of a process other libraries may have gone before.
TEST(Library, UnregistersItsClassOnlyWhenItIsFreed)
{
    ReplacedImport unregister(self(), "UnregisterClassA", countingUnregister);
    for (bool fProcessEnds : {true, false}) {
        s_cUnregistered = 0;
        EXPECT_TRUE(DllMain(self(), DLL_PROCESS_DETACH, reinterpret_cast<LPVOID>(fProcessEnds)));
        EXPECT_EQ(s_cUnregistered, fProcessEnds ? 0 : 1);
    }
}

} // namespace
