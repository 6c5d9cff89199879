// A system whose letters can have two bytes: the second may look like a backslash.
#include "support/codepage.h"
#include "../resources/ids.h"
#include "support/modal.h"
#include "support/pane_window.h"

#include <direct.h>

namespace {

class CodePage : public PaneWindow {};

// Texts that are cut keep whole letters.
TEST_F(CodePage, TextsAreCutBetweenLetters)
{
    open();
    nXferDandDClearHostFileList(m_hwnd);
    DoubleByteLetters letters(library());
    const std::string head(300, 'x');
    for (size_t cch : {257u, 258u, 259u}) {
        const std::string text = head.substr(0, cch) + KANA;
        const std::string cut = cch == 257 ? text : text.substr(0, cch);
        vXferDandDDisplayDILText(m_hwnd, (text + "xx").c_str());
        EXPECT_EQ(stripText(), cch == 257 ? cut : cut.substr(0, 259));
        nXferDandDAddHostFileName(m_hwnd, (text + "xx").c_str());
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), Strings{cch == 257 ? cut : cut.substr(0, 259)});
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_FILES);
    }
    nXferDandDAddLocalFileName(m_hwnd, "c:\\x\\" KANA "a.txt");
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{KANA "a.txt"});
    HWND hwndStat = hdlgXferStatCreate("", 1, m_parent.hwnd(), 0, 0);
    nXferStatStatusInfo(hwndStat, (head.substr(0, 78) + KANA).c_str());
    SendMessageA(hwndStat, WM_TIMER, 0, 0);
    EXPECT_EQ(textOf(hwndStat, IDC_STAT_STATUS), head.substr(0, 78));
    nXferStatDestroy(hwndStat);
}

int KRHAULAPI collect(DWORD dwText, const char* pch, LONG cch, DWORD*)
{
    reinterpret_cast<std::string*>(dwText)->append(pch, size_t(cch));
    return 0;
}

// A letter whose second byte is 40 starts no escape.
TEST_F(CodePage, LettersOfACommandAreSentWhole)
{
    DoubleByteLetters letters(library());
    std::string sent;
    DWORD dwPosition;
    EXPECT_EQ(fXferValidHCS("\x83@x", &dwPosition), 1);
    EXPECT_EQ(fXferValidHCS("\x83@@x", &dwPosition), 0);
    EXPECT_EQ(dwPosition, 3u);
    EXPECT_EQ(nXferTranslateHCS("\x83@H@H", "n", "l", collect, DWORD(&sent)), 0);
    EXPECT_EQ(sent, "\x83@Hn");
}

// What follows needs the code page for real. Where the tests are built Wine is started with a
// locale of that code page; elsewhere it is the system's, or not there.
class CodePage932 : public PaneWindow {
protected:
    void SetUp() override
    {
        if (getenv("LOCPATH") != nullptr) {
            ASSERT_EQ(GetACP(), 932u);
        } else if (GetACP() != 932) {
            GTEST_SKIP() << "this system has another code page than 932";
        }
    }
};

constexpr char DIR[] = "dir" KANJI;

TEST_F(CodePage932, PathsAreTakenApart)
{
    m_dir.makeDirs({DIR, std::string(DIR) + "\\" KANA_A KANA});
    m_dir.makeFiles({KANA ".txt", std::string(DIR) + "\\a.txt"});
    const struct {
        std::string text, dir, line;
        Strings files;
    } cases[] = {
        {KANA ".txt", m_dir.path(), KANA ".txt", {KANA ".txt"}},
        {std::string(DIR) + "\\*.txt", m_dir.path(DIR), "*.txt", {"a.txt"}},
        {DIR, m_dir.path(DIR), "*.*", {"a.txt"}},
        {std::string(DIR) + "\\" KANA_A KANA,
         m_dir.path(std::string(DIR) + "\\" KANA_A KANA),
         "*.*",
         {}},
    };
    open();
    for (const auto& c : cases) {
        goHome();
        type(IDC_DANDD_LOCALFILTER, c.text);
        enter(IDC_DANDD_LOCALFILTER);
        EXPECT_EQ(currentDir(), c.dir);
        EXPECT_EQ(text(IDC_DANDD_LOCALPATH), c.dir);
        EXPECT_EQ(text(IDC_DANDD_LOCALFILTER), c.line);
        EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), c.files);
    }
    // Up again, by the rows of the chain.
    const Strings chain = rows(IDC_DANDD_LOCALDIRS);
    ASSERT_GE(chain.size(), 3u);
    EXPECT_EQ(chain[chain.size() - 2], DIR);
    EXPECT_EQ(chain.back(), KANA_A KANA);
    selectRow(IDC_DANDD_LOCALDIRS, chain[chain.size() - 2]);
    enter(IDC_DANDD_LOCALDIRS);
    EXPECT_EQ(currentDir(), m_dir.path(DIR));
    m_dir.enter();
}

TEST_F(CodePage932, NamesMeanTheShownDirectory)
{
    const std::string namesake = std::string(DIR) + "a.txt";
    m_dir.makeDirs({DIR});
    m_dir.makeFiles({namesake, std::string(DIR) + "\\a.txt", std::string(DIR) + "\\" KANA "b.txt",
                     std::string(DIR) + "\\" KANJI});
    open();
    _chdir(DIR);
    type(IDC_DANDD_LOCALFILTER, KANA "*.txt");
    vXferDandDRefreshLocalFiles(m_hwnd);
    selectFiles(IDC_DANDD_LOCALFILES, {KANA "b.txt"});
    command(IDM_XFER_TRANSFER);
    EXPECT_EQ(requests(), Strings{"send " KANA "b.txt"});
    type(IDC_DANDD_LOCALFILTER, "*.*");
    vXferDandDRefreshLocalFiles(m_hwnd);
    selectFiles(IDC_DANDD_LOCALFILES, {"a.txt"});
    StartedPrograms programs;
    command(IDM_XFER_VIEW);
    vXferDandDViewFile(m_hwnd, KANJI, nullptr, nullptr, nullptr, nullptr);
    Strings viewed;
    for (const std::string& started : StartedPrograms::take()) {
        viewed.push_back(StartedPrograms::argumentOf(started));
    }
    EXPECT_EQ(viewed, (Strings{m_dir.path(std::string(DIR) + "\\a.txt"), KANJI}));
    for (const char* pszPattern : {KANA "*.txt", "*.txt"}) {
        selectFiles(IDC_DANDD_LOCALFILES, {});
        runModal(m_hwnd, [&] { command(IDM_XFER_DELETE); }, {[=](HWND hdlg) {
                     replaceText(hdlg, IDC_DEL_NAME, pszPattern);
                     pressKey(hdlg, VK_RETURN);
                     return true;
                 }});
    }
    EXPECT_EQ(rows(IDC_DANDD_LOCALFILES), Strings{KANJI});
    m_dir.enter();
    EXPECT_TRUE(m_dir.holds(namesake));
    EXPECT_FALSE(m_dir.holds(std::string(DIR) + "\\a.txt"));
}

} // namespace
