// What the library doesn't export, in the objects that it is made of.
#include "../shared/filelist.h"
#include "../shared/language.h"
#include "../status/slots.h"
#include "support/imports.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>
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
    int cShown = 0;
};

Box s_box;
int s_cFreed;

// The fakes stand in this very program, so they reach the originals by these.
decltype(&LocalFree) s_pfnLocalFree;
decltype(&GlobalAlloc) s_pfnGlobalAlloc;
decltype(&GlobalFree) s_pfnGlobalFree;

int WINAPI fakeMessageBox(HWND hwndOwner, LPCSTR pszText, LPCSTR pszCaption, UINT uStyle)
{
    s_box = {hwndOwner, pszText, pszCaption, uStyle, s_box.cShown + 1};
    return IDRETRY;
}

HLOCAL WINAPI countingLocalFree(HLOCAL hBlock)
{
    ++s_cFreed;
    return s_pfnLocalFree(hBlock);
}

TEST(SystemErrorBox, ShowsTheSystemsText)
{
    ReplacedImport box(self(), "MessageBoxA", fakeMessageBox);
    ReplacedImport free(self(), "LocalFree", countingLocalFree);
    s_pfnLocalFree = free.original<decltype(&LocalFree)>();
    HWND hwndOwner = GetDesktopWindow();
    s_box = {};
    s_cFreed = 0;
    EXPECT_EQ(XferSystemErrorBox(hwndOwner, ERROR_FILE_NOT_FOUND, MB_RETRYCANCEL), IDRETRY);
    EXPECT_EQ(s_box.hwndOwner, hwndOwner);
    EXPECT_EQ(s_box.caption, "Korvalen");
    EXPECT_EQ(s_box.uStyle, UINT(MB_RETRYCANCEL));
    EXPECT_FALSE(s_box.text.empty());
    EXPECT_EQ(s_cFreed, 1);

    EXPECT_EQ(XferSystemErrorBox(hwndOwner, 0x2FFFFFFF, MB_OK), 1);
    EXPECT_EQ(s_box.cShown, 1);
    EXPECT_EQ(s_cFreed, 1);
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
        s_languages.clear();
        EXPECT_EQ(XferSystemErrorBox(nullptr, ERROR_FILE_NOT_FOUND, 0), c.fAsksAgain ? IDRETRY : 1);
        EXPECT_EQ(s_box.text, c.fAsksAgain ? "text" : "");
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

// What a window has left behind in its slot, but for the status text, is nothing to the next.
TEST(StatusSlot, ANewWindowStartsAfresh)
{
    StatSlot* pSlot = &status::g_slots[0];
    memset(pSlot, 0xCC, sizeof *pSlot);
    lstrcpyA(pSlot->szStatus, "old");
    pSlot->hdlgStat = nullptr;
    HWND hwndParent = GetDesktopWindow();
    HWND hwnd = hdlgXferStatCreate("", 0, hwndParent, 0, 0);
    ASSERT_NE(hwnd, nullptr);
    EXPECT_EQ(pSlot->hdlgStat, hwnd);
    EXPECT_EQ(pSlot->hwndParent, hwndParent);
    EXPECT_EQ(pSlot->hLanguage, GetModuleHandleA("XFREN.DLL"));
    EXPECT_EQ(pSlot->ulTotalSize, 0u);
    EXPECT_STREQ(pSlot->szStatus, "old");
    EXPECT_EQ(pSlot->ulCount, 0u);
    EXPECT_EQ(pSlot->dwStartTick, 0u);
    EXPECT_EQ(pSlot->uTimer, 0u);
    EXPECT_EQ(pSlot->nLastPercent, XFERSTAT_NOPERCENT);
    EXPECT_EQ(nXferStatDestroy(hwnd), XFER_OK);
}

int s_nUntilFailure;
int s_cBlocks;

HGLOBAL WINAPI fakeGlobalAlloc(UINT uFlags, SIZE_T cb)
{
    HGLOBAL hBlock = --s_nUntilFailure == 0 ? nullptr : s_pfnGlobalAlloc(uFlags, cb);
    s_cBlocks += hBlock != nullptr;
    return hBlock;
}

HGLOBAL WINAPI fakeGlobalFree(HGLOBAL hBlock)
{
    --s_cBlocks;
    return s_pfnGlobalFree(hBlock);
}

TEST(FileListOfOne, HoldsTheNameOrIsNotMade)
{
    ReplacedImport alloc(self(), "GlobalAlloc", fakeGlobalAlloc);
    ReplacedImport free(self(), "GlobalFree", fakeGlobalFree);
    s_pfnGlobalAlloc = alloc.original<decltype(&GlobalAlloc)>();
    s_pfnGlobalFree = free.original<decltype(&GlobalFree)>();
    XferFileList list = nullptr;
    char szName[16];
    ASSERT_EQ(XferFileListCreateOne(&list, XFERLIST_HOST, "name"), 1);
    EXPECT_EQ(XferFileList_cGetSize(list), 1);
    EXPECT_STREQ(XferFileList_lpszGetString(list, 0, XFERLIST_HOST, szName, sizeof szName), "name");
    EXPECT_STREQ(XferFileList_lpszGetString(list, 0, XFERLIST_LOCAL, szName, sizeof szName), "");
    XferFileList_vDestroy(list);

    // No block; then a column that the list doesn't have.
    s_nUntilFailure = 1;
    EXPECT_EQ(XferFileListCreateOne(&list, XFERLIST_HOST, "name"), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(XferFileListCreateOne(&list, 2, "name"), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(s_cBlocks, 0);
}

} // namespace
