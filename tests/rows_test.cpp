// The rows of the panes: order, search, removal, records, widths, and the local listing.
#include "../transfer/panes/rows.h"
#include "../resources/ids.h"
#include "support/found.h"
#include "support/imports.h"
#include "support/ledger.h"
#include "support/pane_window.h"

#include <algorithm>

namespace {

// Names that orders part on: case, accents, digits, punctuation, signs that sort as nothing,
// the shortest and the longest.
const Strings DIFFICULT = split(
    "b|a|A|B|ab|aB|Ab|\xE1|\xC1|a\xE9|a\xC9|ae|ad|af|\xE4|z|\xDF|ss|10|9|09|1|1.0|co-op|coop|co_op|"
    "co.op|co op|cons|con|~a|_a|-a|'a|!a|a.txt|A.TXT|b.txt|a-b.txt|ab.txt|a "
    "b.txt|\xFE|th|x\xADy|xy|"
    "x-y|xz|\xD7|\xF7|we're|were|wer'e|zz.txt|Zz.txt|zZ.txt||" +
        std::string(259, 'w') + "|" + std::string(259, 'i') + "|" + std::string(258, 'w') + "W",
    '|');

// Child rows keep equal names, in the order in which they came.
Strings sortedStable(Strings names)
{
    std::stable_sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return lstrcmpA(a.c_str(), b.c_str()) < 0;
    });
    return names;
}

// Of equal names a file list keeps the one that came first.
Strings inserted(const Strings& names)
{
    Strings list = sortedStable(names);
    auto areEqual = [](const std::string& a, const std::string& b) {
        return lstrcmpA(a.c_str(), b.c_str()) == 0;
    };
    list.erase(std::unique(list.begin(), list.end(), areEqual), list.end());
    return list;
}

XferListItem recordOf(LRESULT nData)
{
    XferListItem item = {};
    auto hItem = reinterpret_cast<HGLOBAL>(nData);
    if (auto pItem = static_cast<const XferListItem*>(GlobalLock(hItem))) {
        item = *pItem;
        GlobalUnlock(hItem);
    }
    return item;
}

// Names hold no wildcards, and a mask has one star at most.
bool matches(const std::string& name, const std::string& mask)
{
    size_t nStar = mask.find('*');
    if (mask == "*.*" || nStar == std::string::npos) {
        return mask == "*.*" || mask == name;
    }
    std::string tail = lower(mask.substr(nStar + 1));
    return name.size() + 1 >= mask.size() && name.compare(0, nStar, mask, 0, nStar) == 0 &&
           lower(name.substr(name.size() - tail.size())) == tail;
}

std::string s_currentDir;

char* fakeGetCwd(char* pszBuffer, int cch)
{
    return s_currentDir.empty() ? nullptr : lstrcpynA(pszBuffer, s_currentDir.c_str(), cch);
}

class Rows : public PaneWindow {
protected:
    Rows()
    {
        s_currentDir = "C:\\Work";
        open();
        nXferDandDClearHostFileList(m_hwnd);
    }
    void refresh()
    {
        m_files.masks.clear();
        vXferDandDRefreshLocalFiles(m_hwnd);
    }

    // Rows of a directory list below its top ones.
    Strings children(int idControl, size_t cTop) const
    {
        Strings all = rows(idControl);
        return all.size() < cTop ? Strings{"too few"}
                                 : Strings(all.begin() + LONG(cTop), all.end());
    }

    // Every row of the owner-drawn lists has a record, and no other row does.
    size_t records() const
    {
        size_t cRecords = 0;
        for (int id : {IDC_DANDD_LOCALDIRS, IDC_DANDD_HOSTDIRS}) {
            for (LRESULT n = tell(id, LB_GETCOUNT) - 1; n >= 0; --n) {
                EXPECT_NE(recordOf(tell(id, LB_GETITEMDATA, WPARAM(n))).hIcon, nullptr);
                ++cRecords;
            }
        }
        return cRecords;
    }

    FoundFiles m_files{library(), matches};

private:
    ReplacedImport m_cwd{library(), "_getcwd", fakeGetCwd};
};

TEST_F(Rows, FileNamesStandInOrderAndOnce)
{
    hide();
    // Forwards, backwards, and by a step that visits all of them in disorder.
    for (size_t nStep : {size_t(1), DIFFICULT.size() - 1, size_t(23)}) {
        Strings given;
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_FILES);
        for (size_t n = 0; n < 2 * DIFFICULT.size(); ++n) {
            given.push_back(DIFFICULT[n * nStep % DIFFICULT.size()]);
            nXferDandDAddHostFileName(m_hwnd, given.back().c_str());
        }
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), inserted(given));
    }
    // Every one of them is found again, wherever it stands; one that has gone isn't.
    Strings left = rows(IDC_DANDD_HOSTFILES);
    for (size_t n = 0; !left.empty(); n = n * 7 + 3) {
        std::string name = left[n % left.size()];
        left.erase(left.begin() + LONG(n % left.size()));
        nXferDandDRemoveHostFileName(m_hwnd, name.c_str());
        nXferDandDRemoveHostFileName(m_hwnd, name.c_str());
        ASSERT_EQ(rows(IDC_DANDD_HOSTFILES), left) << name;
    }
}

TEST_F(Rows, ChildRowsStandInOrderBelowTheTopRows)
{
    hide();
    vXferDandDPrintWorkingDir(m_hwnd, "m", "/m");
    Strings given;
    for (size_t n = 0; n < 2 * DIFFICULT.size(); ++n) {
        given.push_back(DIFFICULT[n * 23 % DIFFICULT.size()]);
        nXferDandDAddHostSubDir(m_hwnd, given.back().c_str());
    }
    // A name replaces the first that is equal to it, so the last text of all equal ones stays.
    std::reverse(given.begin(), given.end());
    Strings expected = inserted(given);
    EXPECT_EQ(children(IDC_DANDD_HOSTDIRS, 2), expected);
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS)[1], "m");
    for (size_t n = 0; !expected.empty(); n = n * 7 + 3) {
        std::string name = expected[n % expected.size()];
        expected.erase(expected.begin() + LONG(n % expected.size()));
        nXferDandDRemoveHostSubDir(m_hwnd, name.c_str());
        ASSERT_EQ(children(IDC_DANDD_HOSTDIRS, 2), expected) << name;
    }
}

// Calls in an order that the caller shouldn't use: "+x" adds and "-x" removes a subdirectory,
// "wX" prints a working directory, and a number clears.
struct Misuse {
    const char *pszCalls, *pszRows;
};
const Misuse MISUSES[] = {
    {"+b +a +c +b", "a b c"},
    {"wX", ""},
    {"+b wX +a +c +x", "a b X c x"},
    {"+b wX +a +c -b -c -X", "a X"},
    {"+b +c +d wX +a", "a b X c d"},
    {"+b wX 4 +a", "a b"},
    {"+b wX 2", ".. X"},
    {"+b +c 2", ".."},
    {"2 +b wX +a +c", ".. X a b c"},
    {"2 wX wY +a", ".. Y X a"},
    {"2 wX wY +a 4", ".. X a"},
    {"2 wX +.. +X", ".. X .. X"},
    {"2 wX +.. +X -.. -X -.. -X", ".. X"},
    {"wX 4 2 4 4 +a", ".. a"},
};

TEST_F(Rows, CallsInTheWrongOrderKeepRowsInOrder)
{
    for (const Misuse& misuse : MISUSES) {
        nXferDandDClearHostFileList(m_hwnd);
        tell(IDC_DANDD_HOSTDIRS, LB_SETITEMDATA, 0, 0); // its record stays behind
        tell(IDC_DANDD_HOSTDIRS, LB_RESETCONTENT);
        for (const std::string& call : split(misuse.pszCalls)) {
            std::string name = call.substr(1);
            switch (call[0]) {
            case '+':
                nXferDandDAddHostSubDir(m_hwnd, name.c_str());
                break;
            case '-':
                nXferDandDRemoveHostSubDir(m_hwnd, name.c_str());
                break;
            case 'w':
                vXferDandDPrintWorkingDir(m_hwnd, name.c_str(), "");
                break;
            default:
                nXferDandDClearHostFileInfo(m_hwnd, DWORD(call[0] - '0'));
            }
        }
        EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), split(misuse.pszRows)) << misuse.pszCalls;
    }
}

TEST_F(Rows, ARowWithoutMemoryForItsRecordGoesAgain)
{
    m_files.entries = {
        {"one", FILE_ATTRIBUTE_DIRECTORY}, {"two", FILE_ATTRIBUTE_DIRECTORY}, {"a.txt"}};
    Ledger ledger(false);
    size_t cBefore = records();
    nXferDandDAddHostSubDir(m_hwnd, "b");
    EXPECT_EQ(ledger.count(), 1u);
    ledger.failAt(1);
    nXferDandDAddHostSubDir(m_hwnd, "a");
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), (Strings{"..", "b"}));
    // The old row has gone by the time that the new one fails.
    ledger.failAt(1);
    nXferDandDAddHostSubDir(m_hwnd, "b");
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS), Strings{".."});
    EXPECT_EQ(ledger.owed(), "");
    EXPECT_EQ(records(), cBefore);

    // A refresh and its many requests: rows without a record are left out, all others stay.
    refresh();
    const Strings all = rows(IDC_DANDD_LOCALDIRS);
    int n = 0;
    do {
        ledger.failAt(++n);
        refresh();
        for (const std::string& row : rows(IDC_DANDD_LOCALDIRS)) {
            EXPECT_NE(std::find(all.begin(), all.end(), row), all.end());
        }
        EXPECT_EQ(ledger.count() + 1, records());
    } while (ledger.hasFailed());
    EXPECT_EQ(rows(IDC_DANDD_LOCALDIRS), all);
    EXPECT_GT(n, 6);
    ledger.failAt(1, true);
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_LOCALDIRS), Strings{});
    ledger.failAt(0);
}

// The plain way to the width of a column: every name is measured.
LONG plainWidth(HWND hwndList, const Strings& names)
{
    HDC hdc = GetDC(hwndList);
    HGDIOBJ hfontOld =
        SelectObject(hdc, reinterpret_cast<HFONT>(SendMessageA(hwndList, WM_GETFONT, 0, 0)));
    auto measure = [hdc](const std::string& text) {
        SIZE size;
        GetTextExtentPointA(hdc, text.c_str(), int(text.size()), &size);
        return size.cx;
    };
    LONG cxWidest = measure("eeeeeeeee.eee");
    for (const std::string& name : names) {
        cxWidest = std::max(cxWidest, measure(name) + measure("  "));
    }
    SelectObject(hdc, hfontOld);
    ReleaseDC(hwndList, hdc);
    return cxWidest / 4 * 4 + 4;
}

TEST_F(Rows, ColumnsAreAsWideAsTheWidestName)
{
    hide();
    std::vector<Strings> cases = {{},
                                  {"a"},
                                  {"eeeeeeeee.eee"},
                                  {"eeeeeeeee.eeee"},
                                  DIFFICULT,
                                  {"W", std::string(25, '\x01'), "\x7F\x80\xFF"},
                                  {"\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t"}};
    // Widths on both sides of a multiple of 4, and on it: those give 4 more.
    for (int n = 14; n < 30; ++n) {
        cases.push_back({std::string(size_t(n), 'i') + "eeeeeeeeee"});
    }
    for (const std::string& name : DIFFICULT) {
        cases.push_back({name, name.substr(0, 258) + "\xE9", std::string(13, 'e')});
    }
    bool fExact = false;
    for (const Strings& names : cases) {
        LONG cxPlain = plainWidth(item(IDC_DANDD_HOSTFILES), names);
        feedHost(names);
        // Nothing has changed where no name came in.
        if (!names.empty()) {
            EXPECT_EQ(columnWidth(IDC_DANDD_HOSTFILES), cxPlain) << names[0];
        }
        m_files.entries.clear();
        for (const std::string& name : names) {
            m_files.entries.push_back({name});
        }
        refresh();
        EXPECT_EQ(columnWidth(IDC_DANDD_LOCALFILES), cxPlain);
        fExact = fExact || (names.size() == 1 && cxPlain == 104);
    }
    EXPECT_TRUE(fExact);
}

TEST_F(Rows, RefreshGivesTheRowsOfThePlainWay)
{
    const DWORD kinds[] = {FILE_ATTRIBUTE_ARCHIVE, FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_ARCHIVE,
                           FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_SYSTEM};
    for (size_t n = 0; n < 4 * DIFFICULT.size(); ++n) {
        m_files.entries.push_back(
            {DIFFICULT[n * 23 % DIFFICULT.size()], kinds[n % ARRAYSIZE(kinds)]});
    }
    for (DWORD dw : {FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_ARCHIVE}) {
        m_files.entries.push_back({"hidden", dw | FILE_ATTRIBUTE_HIDDEN});
        m_files.entries.push_back({".dot", dw});
        m_files.entries.push_back({"." + std::string(dw == FILE_ATTRIBUTE_DIRECTORY, '.'), dw});
    }
    const struct {
        const char* pszText;
        size_t cSearches; // one where directories and files come out of the same
    } masks[] = {{"*.*", 1}, {"*", 1}, {"*.TXT", 2}, {"a*", 2}, {"coop", 2}, {"none", 2}};
    for (const auto& mask : masks) {
        Strings files, dirs;
        for (const FoundFiles::Entry& found : m_files.entries) {
            bool fDir = (found.dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            bool fHidden = (found.dwAttributes & FILE_ATTRIBUTE_HIDDEN) != 0;
            if (fDir && !fHidden && found.name[0] != '.') {
                dirs.push_back(found.name);
            } else if (!fDir && !fHidden && matches(found.name, mask.pszText)) {
                files.push_back(found.name);
            }
        }
        type(IDC_DANDD_LOCALFILTER, mask.pszText);
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), inserted(files)) << mask.pszText;
        EXPECT_EQ(children(IDC_DANDD_LOCALDIRS, 2), sortedStable(dirs)) << mask.pszText;
        EXPECT_EQ(m_files.masks.size(), mask.cSearches) << mask.pszText;
        EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), mask.pszText);
        EXPECT_EQ(records(), rows(IDC_DANDD_LOCALDIRS).size() + 1);
    }
}

// Orders change with the locale of the thread, and its code page with that.
TEST_F(Rows, RefreshFollowsTheLocaleOfTheThread)
{
    const LCID lcidBefore = GetThreadLocale();
    Strings names;
    for (int ch = 0xA0; ch < 0x100; ++ch) {
        m_files.entries.push_back({"a" + std::string(1, char(ch)) + "b"});
        names.push_back(m_files.entries.back().name);
    }
    for (int nLanguage : {LANG_ENGLISH, LANG_RUSSIAN, LANG_GREEK, LANG_SWEDISH, LANG_JAPANESE}) {
        SetThreadLocale(LCID(MAKELANGID(nLanguage, SUBLANG_DEFAULT)));
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), inserted(names)) << nLanguage;
    }
    SetThreadLocale(lcidBefore);
}

TEST_F(Rows, EmptyFilterLineFollowsTheFileType)
{
    m_files.entries = {{"a.txt"}, {"a.bin"}};
    for (int nRow : {1, -1, 0}) {
        tell(IDC_DANDD_LOCALTYPES, CB_SETCURSEL, WPARAM(nRow));
        type(IDC_DANDD_LOCALFILTER, "");
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), split(nRow == 1 ? "a.txt" : "a.bin a.txt"));
        EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), "");
    }
    type(IDC_DANDD_LOCALFILTER, std::string(300, 'f'));
    refresh();
    EXPECT_EQ(m_files.masks.back(), std::string(259, 'f'));
}

TEST_F(Rows, TheChainLeadsFromTheRootToTheCurrentDirectory)
{
    const std::string deep = "c:\\" + std::string(120, 'P') + "\\" + std::string(135, 'Q');
    const struct {
        std::string dir, shown;
        Strings rows;
    } cases[] = {
        {"C:\\", "c:\\", {"c:\\"}},
        {"C:\\A", "c:\\a", {"c:\\", "a"}},
        {"C:\\Alpha Beta\\b.C\\Gamma",
         "c:\\alpha beta\\b.c\\gamma",
         {"c:\\", "alpha beta", "b.c", "gamma"}},
        {deep, lower(deep), {"c:\\", std::string(120, 'p'), std::string(135, 'q')}},
    };
    m_files.entries = {{"Sub", FILE_ATTRIBUTE_DIRECTORY}};
    for (const auto& c : cases) {
        s_currentDir = c.dir;
        refresh();
        Strings expected = c.rows;
        expected.push_back("Sub");
        EXPECT_EQ(rows(IDC_DANDD_LOCALDIRS), expected);
        EXPECT_EQ(text(IDC_DANDD_LOCALPATH), c.shown);
        // The first characters of the shown path name the directory of a row above it.
        std::string path;
        for (size_t n = 0; n + 1 < c.rows.size(); ++n) {
            path += (n > 1 ? "\\" : "") + c.rows[n];
            EXPECT_EQ(recordOf(tell(IDC_DANDD_LOCALDIRS, LB_GETITEMDATA, n)).cchPath, path.size());
        }
    }
    s_currentDir.clear();
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_LOCALDIRS), Strings{});
    EXPECT_EQ(text(IDC_DANDD_LOCALPATH), "");
}

// The caller's names, one by one, without a refresh.
TEST_F(Rows, ALocalNameIsWhatFollowsTheLastBackslash)
{
    for (const char* psz : {"c:\\x\\y.txt", "\\b", "a", "d:c", "x/z", "c:\\x\\", "a"}) {
        EXPECT_EQ(nXferDandDAddLocalFileName(m_hwnd, psz), 0);
    }
    EXPECT_EQ(nXferDandDAddLocalFileName(m_hwnd, nullptr), 0);
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), inserted({"y.txt", "b", "a", "d:c", "x/z", ""}));
}

} // namespace
