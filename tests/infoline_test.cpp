// The log: its entries, what is cut when it grows too long, and the messages that it treats
// in its own way.
#include "../resources/ids.h"
#include "support/looks.h"

namespace {

constexpr size_t TRIM_LIMIT = 30000;
constexpr size_t KEPT_LENGTH = 24000;

class InfoLine : public PaneWindow {
protected:
    // Makes a window that isn't shown: scroll bars are slow to draw, and long logs draw many.
    void createHidden()
    {
        create();
        ShowWindow(m_hwnd, SW_HIDE);
    }

    HWND log() const
    {
        return item(IDC_DANDD_INFOLINE);
    }

    std::string text() const
    {
        std::string all(size_t(GetWindowTextLengthA(log())) + 1, '\0');
        all.resize(size_t(GetWindowTextA(log(), all.data(), int(all.size()))));
        return all;
    }

    // The selection, as start and end.
    std::pair<DWORD, DWORD> selection() const
    {
        DWORD nStart = 1;
        DWORD nEnd = 0;
        SendMessageA(log(), EM_GETSEL, WPARAM(&nStart), LPARAM(&nEnd));
        return {nStart, nEnd};
    }

    std::pair<DWORD, DWORD> startOfLastLine() const
    {
        auto n = DWORD(text().rfind("\r\n") + 2);
        return {n, n};
    }
};

// What the log has to hold when an entry has come to a text.
std::string grown(const std::string& old, const std::string& entry)
{
    std::string all = old + entry;
    if (all.size() > TRIM_LIMIT) {
        all.erase(0, all.find("\r\n", all.size() - KEPT_LENGTH));
    }
    return all;
}

TEST_F(InfoLine, EntriesBeginWithALineEndAndHaveNoneBehindThem)
{
    const std::string x(400, 'x');
    const struct {
        std::string given, entry;
    } cases[] = {
        {"first", "first"},
        {"", ""},
        {"a\r\n", "a"},
        {"a\n\r\r\n\r\n", "a"},
        {"\n\n\n\n", ""},
        {"a\r\nb\r\n", "a\r\nb"},
        {" \t", " \t"},
        {x.substr(0, 260), x.substr(0, 260)},
        {x.substr(0, 261), x.substr(0, 260)},
        {x.substr(0, 300), x.substr(0, 260)},
        {x.substr(0, 258) + "\r\nlost", x.substr(0, 258)},
        {x.substr(0, 257) + "\r\nlost", x.substr(0, 257) + "\r\nl"},
    };
    create();
    vXferDandDInfoLine(m_hwnd, nullptr);
    std::string all = "\r\n";
    EXPECT_EQ(text(), all);
    for (const auto& c : cases) {
        vXferDandDInfoLine(m_hwnd, c.given.c_str());
        all += "\r\n" + c.entry;
        EXPECT_EQ(text(), all);
        EXPECT_EQ(selection(), startOfLastLine());
    }
    // One entry of the log is one line of the control, however long.
    EXPECT_EQ(SendMessageA(log(), EM_GETLINECOUNT, 0, 0),
              LRESULT(ARRAYSIZE(cases)) + 2 + 2); // two entries hold a line end of their own
}

TEST_F(InfoLine, ShowsTheStartOfItsNewestLine)
{
    create();
    for (const std::string& entry : {std::string(260, 'x'), std::string("short")}) {
        vXferDandDInfoLine(m_hwnd, entry.c_str());
        const LRESULT nPlace =
            SendMessageA(log(), EM_POSFROMCHAR, WPARAM(startOfLastLine().first), 0);
        EXPECT_GE(short(LOWORD(nPlace)), 0) << entry;
        EXPECT_GE(short(HIWORD(nPlace)), 0) << entry;
    }
}

TEST_F(InfoLine, IsTrimmedOnALineEndAboveItsLimit)
{
    constexpr size_t LINES = 299;
    std::string full;
    for (size_t n = 0; n < LINES; ++n) {
        full += "\r\n" + std::to_string(1000 + n) + std::string(94, '.');
    }
    ASSERT_EQ(full.size(), TRIM_LIMIT - 100);
    createHidden();
    bool fDrawing = true;
    Subclassed watched(log(), [&](UINT uMessage, WPARAM wParam, LPARAM) {
        fDrawing = uMessage == WM_SETREDRAW ? wParam != 0 : fDrawing;
        return false;
    });
    // The place of the cut wanders through a line, over its end and the two characters there.
    for (size_t cch = 96; cch <= 204; ++cch) {
        const std::string entry(cch, 'e');
        SetWindowTextA(log(), full.c_str());
        vXferDandDInfoLine(m_hwnd, entry.c_str());
        const std::string after = text();
        ASSERT_EQ(after, grown(full, "\r\n" + entry)) << cch;
        EXPECT_EQ(after.size() > KEPT_LENGTH, cch <= 98);
        EXPECT_EQ(selection(), startOfLastLine());
        EXPECT_TRUE(fDrawing);
    }
}

// The caller hears of each change of the text.
TEST_F(InfoLine, AChangeMayEndTheWindow)
{
    for (size_t cLines : {1u, 130u}) {
        createHidden();
        for (size_t n = 1; n < cLines; ++n) {
            vXferDandDInfoLine(m_hwnd, std::string(240, 'x').c_str());
        }
        Subclassed ending(m_hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM) {
            if (uMessage == WM_COMMAND && HIWORD(wParam) == EN_CHANGE) {
                DestroyWindow(m_hwnd);
            }
            return false;
        });
        for (int n = 0; n < 10 && IsWindow(m_hwnd); ++n) {
            vXferDandDInfoLine(m_hwnd, "the last one");
        }
        EXPECT_FALSE(IsWindow(m_hwnd));
    }
}

TEST_F(InfoLine, LosesItsSelectionWithTheFocusAndWithEachEntry)
{
    create();
    vXferDandDInfoLine(m_hwnd, "first");
    vXferDandDInfoLine(m_hwnd, "second");
    SetFocus(log());
    SendMessageA(log(), EM_SETSEL, 3, 6);
    EXPECT_EQ(selection(), (std::pair<DWORD, DWORD>(3, 6)));
    SetFocus(item(IDC_DANDD_LOCALFILTER));
    EXPECT_EQ(selection().first, selection().second);
    SendMessageA(log(), EM_SETSEL, 0, -1);
    vXferDandDInfoLine(m_hwnd, "third");
    EXPECT_EQ(selection(), startOfLastLine());
    EXPECT_EQ(text(), "\r\nfirst\r\nsecond\r\nthird");
}

// An edit that sees it closes the dialog that it is in.
TEST_F(InfoLine, SwallowsEscapeAndNoOtherKey)
{
    create();
    vXferDandDInfoLine(m_hwnd, "first");
    vXferDandDInfoLine(m_hwnd, "second");
    bool fClosed = false;
    Subclassed window(m_hwnd, [&](UINT uMessage, WPARAM wParam, LPARAM) {
        fClosed |= uMessage == WM_CLOSE || (uMessage == WM_COMMAND && wParam == IDCANCEL);
        return false;
    });
    SetFocus(log());
    const auto before = selection();
    for (WPARAM vk : {VK_ESCAPE, VK_UP}) {
        SendMessageA(log(), WM_KEYDOWN, vk, 1);
        SendMessageA(log(), WM_KEYUP, vk, LPARAM(0xC0000001));
        pumpMessages();
        EXPECT_EQ(selection() == before, vk == VK_ESCAPE);
    }
    EXPECT_FALSE(fClosed);
}

} // namespace
