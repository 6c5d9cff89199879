// The file list container: growth by its exact rules, cells, and every allocation failing.
#include "../shared/filelist.h"
#include "support/ledger.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>
#include <string>

namespace {

std::string textAt(XferFileList list, LONG nRow, LONG nColumn)
{
    char szText[64] = "untouched";
    return XferFileList_lpszGetString(list, nRow, nColumn, szText, sizeof szText);
}

class FileList : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(XferFileList_fCreate(&m_list), 1);
    }
    void TearDown() override
    {
        XferFileList_vDestroy(m_list);
    }
    XferFileList m_list = nullptr;
};

TEST_F(FileList, GrowsByItsRules)
{
    struct Step {
        LONG cRows, cGrowBy;
        int fResult;
        LONG cCapacity, cUsed, cGrowByAfter;
    };
    const Step steps[] = {
        {0, -1, 1, 4, 0, 16},          // as it starts
        {3, -1, 1, 4, 3, 16},          // within the capacity: in use at once
        {5, -1, 1, 20, 3, 16},         // growth wins
        {60, -1, 1, 60, 3, 16},        // the new size wins
        {61, 5, 1, 65, 3, 5},          // a new growth counts at once and stays
        {65, 0, 1, 65, 65, 0},         // 0 is a growth, kept without growing too
        {66, -1, 1, 66, 65, 0},        // and grows by nothing
        {67, -5, 1, 67, 65, -5},       // a negative growth can't shrink
        {2, -1, 1, 67, 2, -5},         // shrinking keeps the room
        {-1, 7, 0, 67, 2, -5},         // refused, and nothing changes
        {68, LONG_MAX, 0, 67, 2, -5},  // the sum passes 31 bits
        {LONG_MAX, 1, 0, 67, 2, -5},   // the bytes pass 32 bits
        {0x0FFFFFFF, 1, 0, 67, 2, -5}, // the header takes them past it
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.cRows);
        EXPECT_EQ(XferFileList_fSetSize(&m_list, step.cRows, step.cGrowBy), step.fResult);
        EXPECT_EQ(m_list->cCapacity, step.cCapacity);
        EXPECT_EQ(XferFileList_cGetSize(m_list), step.cUsed);
        EXPECT_EQ(m_list->cGrowBy, step.cGrowByAfter);
    }
}

TEST_F(FileList, KeepsItsRowsWhileItGrowsAndMoves)
{
    Ledger ledger(false); // moves it each time
    bool fMoved = false;
    for (LONG n = 0; n < 2000; ++n) {
        XferFileList before = m_list;
        ASSERT_EQ(XferFileList_fSetSize(&m_list, n + 1, 10), 1);
        fMoved = fMoved || before != m_list;
        ASSERT_EQ(XferFileList_fSetString(m_list, n, n % 2, std::to_string(n).c_str()), 1);
        ASSERT_EQ(reinterpret_cast<BYTE*>(m_list->pRows), reinterpret_cast<BYTE*>(m_list) + 16);
    }
    EXPECT_TRUE(fMoved);
    EXPECT_EQ(XferFileList_cGetSize(m_list), 2000);
    for (LONG n = 0; n < 2000; ++n) {
        ASSERT_EQ(textAt(m_list, n, n % 2), std::to_string(n));
        ASSERT_EQ(textAt(m_list, n, 1 - n % 2), "");
    }
}

TEST_F(FileList, CellsHoldOneTypeAtATime)
{
    EXPECT_EQ(XferFileList_fSetString(m_list, 2, XFERLIST_HOST, "two"), 1);
    EXPECT_EQ(XferFileList_cGetSize(m_list), 3);
    EXPECT_EQ(textAt(m_list, 0, 0), "");
    EXPECT_EQ(XferFileList_nGetDWord(m_list, 1, 1), 0u);
    EXPECT_EQ(XferFileList_nGetDWord(m_list, 2, XFERLIST_HOST), 0u);

    EXPECT_EQ(XferFileList_vSetDWord(m_list, 2, XFERLIST_HOST, 0xFFFFFFFF), 1);
    EXPECT_EQ(XferFileList_nGetDWord(m_list, 2, XFERLIST_HOST), 0xFFFFFFFFu);
    EXPECT_EQ(textAt(m_list, 2, XFERLIST_HOST), "");

    EXPECT_EQ(XferFileList_fSetString(m_list, 2, XFERLIST_HOST, "again"), 1);
    EXPECT_EQ(textAt(m_list, 2, XFERLIST_HOST), "again");
    EXPECT_EQ(textAt(m_list, 2, XFERLIST_LOCAL), "");
}

TEST_F(FileList, ShrinkingEmptiesTheRowsThatGo)
{
    for (LONG n = 0; n < 3; ++n) {
        XferFileList_fSetString(m_list, n, XFERLIST_LOCAL, "local");
        XferFileList_fSetString(m_list, n, XFERLIST_HOST, "host");
    }
    EXPECT_EQ(XferFileList_fSetSize(&m_list, 1, XFERLIST_KEEPGROWTH), 1);
    EXPECT_EQ(textAt(m_list, 0, XFERLIST_HOST), "host");
    EXPECT_EQ(XferFileList_fSetSize(&m_list, 3, XFERLIST_KEEPGROWTH), 1);
    EXPECT_EQ(textAt(m_list, 1, XFERLIST_LOCAL), "");
    EXPECT_EQ(textAt(m_list, 2, XFERLIST_HOST), "");
}

TEST_F(FileList, ReadsIntoBuffersOfAnySize)
{
    XferFileList_fSetString(m_list, 0, 0, "0123456789");
    for (LONG cch = 1; cch <= 14; ++cch) {
        char szBuffer[16];
        memset(szBuffer, '#', sizeof szBuffer);
        EXPECT_EQ(XferFileList_lpszGetString(m_list, 0, 0, szBuffer, cch), szBuffer);
        EXPECT_STREQ(szBuffer, std::string("0123456789").substr(0, size_t(cch - 1)).c_str());
        EXPECT_EQ(szBuffer[cch], '#');
        EXPECT_EQ(szBuffer[cch - 1], '\0');
    }
}

TEST_F(FileList, RefusesWhatIsNoCell)
{
    char szBuffer[8] = "keep";
    XferFileList none = nullptr;
    XferFileList_fSetString(m_list, 0, 0, "first");
    const LONG bad[][2] = {{-1, 0}, {LONG_MIN, 1}, {0, 2}, {0, -1}, {4, 0}, {LONG_MAX, 1}};
    for (const auto& cell : bad) {
        EXPECT_EQ(XferFileList_fSetString(m_list, cell[0], cell[1], "x"), 0);
        EXPECT_EQ(XferFileList_vSetDWord(m_list, cell[0], cell[1], 1), 0);
        EXPECT_EQ(XferFileList_nGetDWord(m_list, cell[0], cell[1]), 0u);
        EXPECT_EQ(textAt(m_list, cell[0], cell[1]), "");
    }
    EXPECT_EQ(XferFileList_fSetString(m_list, 0, 0, nullptr), 0);
    EXPECT_EQ(textAt(m_list, 0, 0), "first");
    EXPECT_EQ(XferFileList_cGetSize(m_list), 1);

    EXPECT_EQ(XferFileList_lpszGetString(m_list, 0, 0, szBuffer, 0), nullptr);
    EXPECT_EQ(XferFileList_lpszGetString(m_list, 0, 0, szBuffer, -3), nullptr);
    EXPECT_STREQ(szBuffer, "keep");
    EXPECT_EQ(XferFileList_lpszGetString(m_list, 0, 0, nullptr, 8), nullptr);

    EXPECT_EQ(XferFileList_fCreate(nullptr), 0);
    EXPECT_EQ(XferFileList_fSetSize(nullptr, 1, 1), 0);
    EXPECT_EQ(XferFileList_fSetSize(&none, 1, 1), 0);
    EXPECT_EQ(XferFileList_cGetSize(nullptr), 0);
    EXPECT_EQ(XferFileList_fSetString(nullptr, 0, 0, "x"), 0);
    EXPECT_EQ(XferFileList_vSetDWord(nullptr, 0, 0, 1), 0);
    EXPECT_EQ(XferFileList_nGetDWord(nullptr, 0, 0), 0u);
    EXPECT_EQ(textAt(nullptr, 0, 0), "");
    XferFileList_vDestroy(nullptr);
}

// Fills a list as a selection does. Returns whether all went well; the list is gone after it.
bool buildAndDestroy()
{
    XferFileList list = reinterpret_cast<XferFileList>(1);
    if (!XferFileList_fCreate(&list)) {
        EXPECT_EQ(list, nullptr);
        return false;
    }
    XferFileList_fSetString(list, 0, 1, "kept");
    XferFileList before = list;
    bool fBuilt = XferFileList_fSetSize(&list, 30, XFERLIST_KEEPGROWTH) != 0;
    if (!fBuilt) {
        EXPECT_EQ(list, before);
        EXPECT_EQ(list->cCapacity, 4);
    }
    for (LONG n = 0; fBuilt && n < 30; ++n) {
        fBuilt = XferFileList_fSetString(list, n, 0, "name") != 0;
        if (!fBuilt) {
            EXPECT_EQ(XferFileList_cGetSize(list), n + 1);
            EXPECT_EQ(textAt(list, n, 0), "");
        }
    }
    XferFileList_vDestroy(list);
    return fBuilt;
}

TEST(FileListMemory, EveryAllocationCanFailAndNothingLeaks)
{
    Ledger ledger;
    constexpr int ALLOCATIONS = 1 + 1 + 1 + 30;
    for (int n = 1; n <= ALLOCATIONS + 1; ++n) {
        SCOPED_TRACE(n);
        ledger.failAt(n);
        // The second is a text that nobody waits for.
        EXPECT_EQ(buildAndDestroy(), n == 2 || n > ALLOCATIONS);
        EXPECT_EQ(ledger.owed(), "");
    }
}

LPVOID WINAPI noLock(HGLOBAL)
{
    return nullptr;
}

// A block that has grown and can't be locked.
TEST(FileListMemory, AListThatCannotGrowStays)
{
    XferFileList list;
    ASSERT_EQ(XferFileList_fCreate(&list), 1);
    XferFileList_fSetString(list, 0, 0, "kept");
    const XferFileList before = list;
    {
        ReplacedImport lock(GetModuleHandleA("KRHAUL.DLL"), "GlobalLock", noLock);
        EXPECT_EQ(XferFileList_fSetSize(&list, 30, XFERLIST_KEEPGROWTH), 0);
    }
    ASSERT_EQ(list, before);
    EXPECT_EQ(list->cCapacity, 4);
    EXPECT_EQ(textAt(list, 0, 0), "kept");
    XferFileList_vDestroy(list);
}

} // namespace
