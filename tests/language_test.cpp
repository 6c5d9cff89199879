// Language modules: which file is asked for, and what happens to the handles.
#include "../include/krhaul.h"
#include "support/imports.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

const HMODULE OLD_MODULE = reinterpret_cast<HMODULE>(0x1000);
const HMODULE NEW_MODULE = reinterpret_cast<HMODULE>(0x2000);

std::vector<std::string> s_loaded;
std::vector<HMODULE> s_freed;

HMODULE WINAPI fakeLoadLibrary(LPCSTR pszFile)
{
    s_loaded.push_back(pszFile);
    return s_loaded.back() == "XFRNO.DLL" ? nullptr : NEW_MODULE;
}

BOOL WINAPI fakeFreeLibrary(HMODULE hModule)
{
    s_freed.push_back(hModule);
    return TRUE;
}

struct Case {
    const char* pszLanguage;
    const char* pszFile; // null where nothing may be loaded
    int nResult;
};

const Case CASES[] = {
    {"EN", "XFREN.DLL", XFER_OK},
    {"", "XFR.DLL", XFER_OK},
    {"ABCDEFGHIJKL", "XFRABCDEFGHIJKL.DLL", XFER_OK},
    {"ABCDEFGHIJKLM", nullptr, XFER_NOLANGUAGE},
    {"NO", "XFRNO.DLL", XFER_NOLANGUAGE},
    {nullptr, nullptr, XFER_NOLANGUAGE},
};

TEST(Language, LoadsAndChangesByCode)
{
    HMODULE hLibrary = GetModuleHandleA("KRHAUL.DLL");
    ReplacedImport load(hLibrary, "LoadLibraryA", fakeLoadLibrary);
    ReplacedImport free(hLibrary, "FreeLibrary", fakeFreeLibrary);
    const std::string longCode(5000, 'x');
    std::vector<Case> cases(std::begin(CASES), std::end(CASES));
    cases.push_back({longCode.c_str(), nullptr, XFER_NOLANGUAGE});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pszLanguage == nullptr ? "null" : c.pszLanguage);
        std::vector<std::string> loaded;
        if (c.pszFile != nullptr) {
            loaded.push_back(c.pszFile);
        }
        HMODULE hExpected = c.nResult == XFER_OK ? NEW_MODULE : nullptr;

        HMODULE hModule = OLD_MODULE;
        EXPECT_EQ(nXferAllocLoadLanguage(&hModule, c.pszLanguage), c.nResult);
        EXPECT_EQ(hModule, hExpected);
        EXPECT_EQ(std::exchange(s_loaded, {}), loaded);
        EXPECT_TRUE(s_freed.empty());

        hModule = OLD_MODULE;
        EXPECT_EQ(nXferDoLanguageChange(&hModule, c.pszLanguage), c.nResult);
        EXPECT_EQ(hModule, hExpected);
        EXPECT_EQ(std::exchange(s_freed, {}), std::vector<HMODULE>{OLD_MODULE});

        hModule = nullptr;
        EXPECT_EQ(nXferDoLanguageChange(&hModule, c.pszLanguage), c.nResult);
        EXPECT_EQ(hModule, hExpected);
        EXPECT_TRUE(s_freed.empty());
        s_loaded.clear();
    }
    EXPECT_EQ(nXferAllocLoadLanguage(nullptr, "EN"), XFER_NOLANGUAGE);
    EXPECT_EQ(nXferDoLanguageChange(nullptr, "EN"), XFER_NOLANGUAGE);
}

} // namespace
