// Host command strings: what is sent for a template, and which templates are valid.
#include "../include/krhaul.h"
#include "support/imports.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

struct Sent {
    std::vector<std::string> pieces;
    std::vector<const char*> places;
    int nRefused = 0; // the piece that is refused, from 1; 0 for none
    DWORD* pdwScratch = nullptr;
};

int KRHAULAPI take(DWORD dwUserData, const char* pchText, LONG cchText, DWORD* pdwScratch)
{
    auto pSent = reinterpret_cast<Sent*>(dwUserData);
    EXPECT_GT(cchText, 0);
    EXPECT_TRUE(pSent->pdwScratch == nullptr || pSent->pdwScratch == pdwScratch);
    pSent->pdwScratch = pdwScratch;
    *pdwScratch = 0xDEADBEEF;
    pSent->pieces.push_back(std::string(pchText, size_t(cchText)));
    pSent->places.push_back(pchText);
    return int(pSent->pieces.size()) == pSent->nRefused ? 5 : 0;
}

int translate(const char* pszTemplate, const char* pszHost, const char* pszLocal, Sent* pSent)
{
    return nXferTranslateHCS(pszTemplate, pszHost, pszLocal, take, reinterpret_cast<DWORD>(pSent));
}

struct Case {
    const char* pszTemplate;
    const char* pszHost;
    const char* pszLocal;
    std::vector<std::string> pieces;
    int fValid;
    DWORD dwPosition;
};

const Case CASES[] = {
    {"", "h", "l", {}, 1, 0},
    {nullptr, "h", "l", {}, 1, 0},
    {"rb @H", "<automatic>", "local", {"r", "b", " ", "local"}, 1, 0},
    {"@h@L", "", "l.txt", {"l.txt", "l.txt"}, 1, 0},
    {"@H@l", "host", "local", {"host", "local"}, 1, 0},
    {"@H@L", "", "", {}, 1, 0},
    {"@L@H", nullptr, nullptr, {}, 1, 0},
    {"@H", "<Automatic> ", "l", {"<Automatic> "}, 1, 0},
    {"a@@b", "h", "l", {"a", "@", "b"}, 1, 0},
    {"@@@", "h", "l", {"@"}, 0, 3},
    {"@@@H", "h", "l", {"@", "h"}, 1, 0},
    {"a@xb", "h", "l", {"a", "b"}, 0, 2},
    {"ab@", "h", "l", {"a", "b"}, 0, 3},
    {"@", "h", "l", {}, 0, 1},
    {"@\xC4@\xFF\xE9", "h", "l", {"\xE9"}, 0, 1},
    {"\x80\xFF", "h", "l", {"\x80", "\xFF"}, 1, 0},
    {"@ @H", "h", "l", {"h"}, 0, 1},
};

TEST(HostString, SendsPieceByPieceAndTellsWhatIsInvalid)
{
    for (const Case& c : CASES) {
        SCOPED_TRACE(c.pszTemplate == nullptr ? "null" : c.pszTemplate);
        Sent sent;
        DWORD dwPosition = 99;
        EXPECT_EQ(translate(c.pszTemplate, c.pszHost, c.pszLocal, &sent), 0);
        EXPECT_EQ(sent.pieces, c.pieces);
        EXPECT_EQ(fXferValidHCS(c.pszTemplate, &dwPosition), c.fValid);
        EXPECT_EQ(dwPosition, c.dwPosition);
        EXPECT_EQ(fXferValidHCS(c.pszTemplate, nullptr), c.fValid);
    }
}

TEST(HostString, StopsAtARefusal)
{
    Sent sent;
    sent.nRefused = 3;
    EXPECT_EQ(translate("abcd", "", "", &sent), -1);
    EXPECT_EQ(sent.pieces.size(), 3u);
    EXPECT_EQ(nXferTranslateHCS("a", "", "", nullptr, 0), -1);
    EXPECT_EQ(nXferTranslateHCS("@H", "", "", nullptr, 0), 0);
}

TEST(HostString, SendsPlainCharactersFromTheirPlace)
{
    Sent sent;
    const char szTemplate[] = "ab";
    EXPECT_EQ(translate(szTemplate, "", "", &sent), 0);
    EXPECT_EQ(sent.places, (std::vector<const char*>{szTemplate, szTemplate + 1}));
}

// Every reading moves the clock on, over the end of the counter.
DWORD s_dwTicks;
int s_cReadings;
DWORD WINAPI steppingTickCount()
{
    ++s_cReadings;
    return s_dwTicks += 250;
}

TEST(HostString, PausesForASecondAlsoAcrossTheOverflow)
{
    ReplacedImport clock(GetModuleHandleA("KRHAUL.DLL"), "GetTickCount", steppingTickCount);
    for (DWORD dwStart : {1000u, 0xFFFFFFFFu - 500u}) {
        Sent sent;
        s_dwTicks = dwStart;
        s_cReadings = 0;
        EXPECT_EQ(translate("a@Db@d", "", "", &sent), 0);
        EXPECT_EQ(sent.pieces, (std::vector<std::string>{"a", "b"}));
        EXPECT_EQ(s_cReadings, 2 * (1 + 4));
    }
}

TEST(HostString, LongTemplatesMeasureTheNamesOnce)
{
    std::string name(259, 'n');
    std::string longTemplate;
    for (int n = 0; n < 50000; ++n) {
        longTemplate += n % 100 == 0 ? "@H" : "xy";
    }
    CountedCalls<decltype(lstrlenA)> lengths(GetModuleHandleA("KRHAUL.DLL"), "lstrlenA");
    Sent sent;
    EXPECT_EQ(translate(longTemplate.c_str(), name.c_str(), "l", &sent), 0);
    EXPECT_EQ(lengths.take(), 2);
    EXPECT_EQ(sent.pieces.size(), 500u + 99000u);
    EXPECT_EQ(sent.pieces[0], name);
    EXPECT_EQ(fXferValidHCS((longTemplate + "@").c_str(), nullptr), 0);
}

} // namespace
