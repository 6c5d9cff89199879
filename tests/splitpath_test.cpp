// Taking a typed path apart, in the objects that the library is made of: a function of its text
// but for one search, which the test answers.
#include "../transfer/panes/splitpath.h"
#include "support/codepage.h"
#include "support/found.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

// Paths that the search finds, in pairs with what they are. A path can be found several times.
const std::vector<FoundFiles::Entry> ENTRIES = {
    {"c:\\work\\sub", FILE_ATTRIBUTE_DIRECTORY},
    {"c:\\work\\twice", FILE_ATTRIBUTE_ARCHIVE},
    {"c:\\work\\twice", FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN},
    {"c:\\work\\readme.txt", FILE_ATTRIBUTE_ARCHIVE},
    {"sub", FILE_ATTRIBUTE_DIRECTORY},
};

bool isSame(const std::string& name, const std::string& mask)
{
    return name == mask;
}

class SplitPath : public testing::Test {
protected:
    SplitPath() : m_files(GetModuleHandleA(nullptr), isSame)
    {
        m_files.entries = ENTRIES;
    }
    FoundFiles m_files;
};

struct Case {
    const char *pszPath, *pszDrive, *pszDir, *pszName;
    bool fSearched = false;
};

const Case CASES[] = {
    {"c:\\work\\*.txt", "c:", "\\work\\", "*.txt"},
    {"c:\\work\\a?c", "c:", "\\work\\", "a?c"},
    {"c:\\work\\none", "c:", "\\work\\", "none", true},
    {"c:\\work\\readme.txt", "c:", "\\work\\", "readme.txt", true},
    {"c:\\work\\sub", "c:", "\\work\\sub\\", "", true},
    {"c:\\work\\twice", "c:", "\\work\\twice\\", "", true},
    {"c:\\work\\sub\\", "c:", "\\work\\sub\\", ""},
    {"c:\\", "c:", "\\", ""},
    {"Z:\\*", "Z:", "\\", "*"},
    {"c:a.txt", "c:", "", "a.txt", true},
    {"sub", "", "sub\\", "", true},
    {"\\a b\\x", "", "\\a b\\", "x", true},
    {"", "", "", ""},
    // Only the last part has to be short.
    {"c:\\a long directory.name\\x.y", "c:", "\\a long directory.name\\", "x.y", true},
    {"\\12345678.123", "", "\\", "12345678.123", true},
    {"\\12345678", "", "\\", "12345678", true},
    {"\\a.b.c", "", "\\", "a.b.c", true},
    {"\\a.", "", "\\", "a.", true},
    {"a.b", "", "", "a.b", true},
    // Points: each directory ends in a backslash, also where the text has none.
    {"..", "", "..\\", ""},
    {"c:\\a\\..", "c:", "\\a\\..\\", ""},
    {"c:\\a\\..\\b", "c:", "\\a\\..\\", "b", true},
    {"c:\\a\\.", "c:", "\\a\\.\\", ""},
    {"c:\\a\\.b", "c:", "\\a\\.\\", "b", true},
    {"c:\\a..b", "c:", "\\a..\\", "b", true},
};

// The second byte of a letter may look like a backslash.
const Case WITH_LETTERS[] = {
    {"c:\\" KANJI "\\*.txt", "c:", "\\" KANJI "\\", "*.txt"},
    {"c:\\a\\" KANA ".txt", "c:", "\\a\\", KANA ".txt", true},
    {KANJI, "", "", KANJI, true},
    {"\\" KANA KANJI "\\", "", "\\" KANA KANJI "\\", ""},
};

TEST_F(SplitPath, TakesDriveDirectoryAndNameApart)
{
    auto expectParts = [&](const Case& c) {
        SCOPED_TRACE(c.pszPath);
        XferPathParts parts;
        memset(&parts, 'x', sizeof parts);
        m_files.masks.clear();
        EXPECT_EQ(nXferDandDSplitPath(c.pszPath, &parts), 0);
        EXPECT_STREQ(parts.szDrive, c.pszDrive);
        EXPECT_STREQ(parts.szDir, c.pszDir);
        EXPECT_STREQ(parts.szName, c.pszName);
        EXPECT_EQ(parts.fWildcard, strpbrk(c.pszName, "*?") != nullptr);
        EXPECT_EQ(m_files.masks.size(), c.fSearched ? 1u : 0u);
    };
    std::for_each(std::begin(CASES), std::end(CASES), expectParts);
    DoubleByteLetters letters(GetModuleHandleA(nullptr));
    std::for_each(std::begin(WITH_LETTERS), std::end(WITH_LETTERS), expectParts);
}

TEST_F(SplitPath, RejectsWhatIsNoShortPath)
{
    const char* const paths[] = {
        "1:\\a",
        ":a",
        "cd:\\a",
        "a:b:c",
        "c:\\a:b",
        "\\a:b",
        "\\\\server\\share",
        "c:\\a\\\\b",
        "c:\\a\\...",
        "c:\\a...\\b",
        "c:\\...\\b",
        "\\123456789",
        "\\1234567890123",
        "\\123456789.1",
        "\\12345678.1234",
        "\\a.1234",
        "\\a.bcd.e",
        "\\*.html",
        "123456789",
    };
    for (const char* pszPath : paths) {
        XferPathParts parts;
        EXPECT_EQ(nXferDandDSplitPath(pszPath, &parts), -1) << pszPath;
    }
    EXPECT_TRUE(m_files.masks.empty());
}

TEST_F(SplitPath, RejectsADirectoryLongerThanItsField)
{
    struct Long {
        size_t cch; // of the directory
        const char* pszName;
        int nResult;
    };
    const Long cases[] = {
        {255, "", 0}, {256, "", -1}, {255, "x.txt", 0}, {259, "", -1}, {255, ".", -1}};
    for (const Long& c : cases) {
        XferPathParts parts;
        std::string dir = "\\" + std::string(c.cch - 2, 'd') + "\\";
        EXPECT_EQ(nXferDandDSplitPath((dir + c.pszName).c_str(), &parts), c.nResult) << c.cch;
        if (c.nResult == 0) {
            EXPECT_EQ(parts.szDir, dir);
            EXPECT_STREQ(parts.szName, c.pszName);
        }
    }
}

} // namespace
