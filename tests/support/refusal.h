// The box that tells the user that there is no room for a window.
#ifndef TESTS_SUPPORT_REFUSAL_H
#define TESTS_SUPPORT_REFUSAL_H

#include "../../resources/ids.h"
#include "imports.h"
#include "windows.h"

#include <gtest/gtest.h>

// Keeps the parents of the boxes that the library asks of KRUTILS while the object lives.
class Refusals {
public:
    // Those since the last call.
    static std::vector<HWND> take()
    {
        return std::exchange(s_parents, {});
    }

private:
    static void WINAPI keep(HMODULE hModule, HWND hwndParent, UINT idString, int n1, int n2, int n3)
    {
        // The module still has the text when the box is shown.
        EXPECT_EQ(stringOf(hModule, IDS_NO_RESOURCES).empty(), false);
        EXPECT_TRUE(idString == IDS_NO_RESOURCES && n1 == 0 && n2 == 3 && n3 == 0);
        s_parents.push_back(hwndParent);
    }
    static inline std::vector<HWND> s_parents;
    ReplacedImport m_box{GetModuleHandleA("KRHAUL.DLL"), "KRUTILS.DLL", 70, keep};
};

#endif
