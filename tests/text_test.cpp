// Texts and paths by characters, where the second byte of one can look like a backslash.
#include "../shared/text.h"
#include "support/imports.h"

#include <gtest/gtest.h>
#include <string.h>
#include <string>

// Of code page 932: characters whose second byte is a backslash or a capital letter.
#define KANJI "\x95\x5C"
#define KANA_A "\x83\x41"

namespace {

BOOL WINAPI isLeadByte(BYTE b)
{
    return (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC);
}

class Text : public testing::Test {
private:
    ReplacedImport m_lead{GetModuleHandleA(nullptr), "IsDBCSLeadByte", isLeadByte};
};

TEST_F(Text, PathsAreTakenApartByCharacters)
{
    const struct {
        const char *pszPath, *pszBehindLast;
        size_t cbDir;
        bool fEndsInBackslash;
    } cases[] = {
        {"", "", 0, false},
        {"a.txt", "a.txt", 0, false},
        {"c:\\a\\b", "b", 5, false},
        {"c:a", "c:a", 2, false},
        {"a/b", "a/b", 2, false},
        {"a\\", "", 2, true},
        {KANJI, KANJI, 0, false},
        {KANJI "\\", "", 3, true},
        {"c:\\" KANJI "\\" KANJI ".txt", KANJI ".txt", 6, false},
        {"a\x95", "a\x95", 0, false},
        {"\\\x95", "\x95", 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszPath);
        EXPECT_STREQ(shared::behindLastBackslash(c.pszPath), c.pszBehindLast);
        EXPECT_EQ(shared::dirLength(c.pszPath), c.cbDir);
        EXPECT_EQ(shared::endsInBackslash(c.pszPath), c.fEndsInBackslash);
    }
    EXPECT_EQ(shared::behindLastBackslash(nullptr), nullptr);
    EXPECT_EQ(shared::findFirstOf(KANJI "a", "\\"), nullptr);
    EXPECT_STREQ(shared::findFirstOf(KANJI "\\a\\b", "\\?"), "\\a\\b");
}

TEST_F(Text, NamesAreAppendedWhole)
{
    const struct {
        const char *pszDir, *pszName, *pszPath; // null where it doesn't fit
    } cases[] = {
        {"c:\\", "abc", "c:\\abc"},
        {"c:\\a", "abcd", "c:\\a\\abcd"},
        {"c:\\a", "abcde", nullptr},
        {"c:\\abc\\", "ab", "c:\\abc\\ab"},
        {"c:\\" KANJI, "abc", "c:\\" KANJI "\\abc"},
        {"", "a", "a"},
    };
    for (const auto& c : cases) {
        char szPath[10];
        strcpy(szPath, c.pszDir);
        EXPECT_EQ(shared::appendName(szPath, c.pszName, sizeof szPath), c.pszPath != nullptr);
        EXPECT_STREQ(szPath, c.pszPath != nullptr ? c.pszPath : c.pszDir);
    }
}

TEST_F(Text, NoCharacterIsSplit)
{
    const struct {
        const char *pszText, *pszCopy, *pszLower;
    } cases[] = {
        {nullptr, "", ""},         {"ABC", "ABC", "abc"},
        {"ABCD", "ABC", "abc"},    {"A" KANA_A "B", "A" KANA_A, "a" KANA_A},
        {"AB" KANA_A, "AB", "ab"}, {"AB\x83", "AB\x83", "ab\x83"},
    };
    for (const auto& c : cases) {
        char szText[4];
        shared::copyText(szText, c.pszText, sizeof szText);
        EXPECT_STREQ(szText, c.pszCopy);
        shared::toLowerCase(szText);
        EXPECT_STREQ(szText, c.pszLower);
    }
}

TEST_F(Text, DirectoriesAreTheSameInAnyCase)
{
    EXPECT_TRUE(shared::isSameDir("c:\\Work\\", "C:\\work"));
    EXPECT_TRUE(shared::isSameDir("C:\\", "c:\\"));
    EXPECT_FALSE(shared::isSameDir("c:\\work", "c:\\works"));
    EXPECT_FALSE(shared::isSameDir("c:\\" KANJI, "c:\\\x95"));
}

} // namespace
