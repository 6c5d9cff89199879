// What of KRTERM needs no window: TELNET, and the screen behind the view.
#include "../examples/krterm/screen.h"
#include "../examples/krterm/telnet.h"

#include <gtest/gtest.h>

#include <stdlib.h>
#include <string>
#include <utility>

namespace {

using std::string;
using namespace std::string_literals;

string sent;

void put(const BYTE* bytes, DWORD count)
{
    sent.append(bytes, bytes + count);
}

string takeSent()
{
    return std::exchange(sent, "");
}

string receive(Telnet* telnet, string text)
{
    text.resize(receiveTelnet(telnet, reinterpret_cast<BYTE*>(&text[0]), DWORD(text.size())));
    return text;
}

void send(Telnet* telnet, const string& text)
{
    sendTelnet(telnet, reinterpret_cast<const BYTE*>(text.data()), DWORD(text.size()));
}

// With the two options that we ask for as soon as a command comes.
const string GREETING = "\xFF\xFD\x00\xFF\xFB\x00"s;

TEST(KrtermTelnet, CommandsAreTakenOutAndAnswered)
{
    struct Case {
        string host, data, answer; // the answer behind the greeting
    };
    const Case CASES[] = {
        {"plain text", "plain text", ""},
        {"a\xFF\xFB\x01"
         "b",
         "ab", "\xFF\xFD\x01"},                                       // echo is let be
        {"\xFF\xFB\x01\xFF\xFB\x01", "", "\xFF\xFD\x01"},             // and confirmed once
        {"\xFF\xFB\x05\xFF\xFD\x05", "", "\xFF\xFE\x05\xFF\xFC\x05"}, // what isn't known
        {"\xFF\xFC\x05\xFF\xFE\x05", "", ""},                         // is no loss
        {"\xFF\xFB\x00\xFF\xFD\x00"s, "", ""},                        // what we have asked for
        {"\xFF\xFD\x1F", "", "\xFF\xFB\x1F\xFF\xFA\x1F\x00\x50\x00\x18\xFF\xF0"s},
        {"\xFF\xFD\x18\xFF\xFA\x18\x01\xFF\xF0", "",
         "\xFF\xFB\x18\xFF\xFA\x18"
         "\0xterm-256color\xFF\xF0"s},
        {"\xFF\xFA\x18\x01\xFF\xF0", "", ""}, // nobody agreed on that
        {"\xFF\xFF\xFF\xF1", "\xFF", ""},
        {"\xFF\xFA\x63" + string(5000, 'x') +
             "\xFF\xFF\xFF\xF0"
             "end",
         "end", ""},
        {"\xFF\xF1"
         "a\r\0b\r\nc"s,
         "a\rb\r\nc", ""},
    };
    for (const Case& test : CASES) {
        for (size_t piece : {size_t(1), test.host.size()}) {
            Telnet telnet;
            string data;
            openTelnet(&telnet, put, 80, 24);
            for (size_t n = 0; n < test.host.size(); n += piece) {
                data += receive(&telnet, test.host.substr(n, piece));
            }
            bool commands = test.host != "plain text";
            EXPECT_EQ(test.data, data);
            EXPECT_EQ(commands ? GREETING + test.answer : "", takeSent());
        }
    }
}

TEST(KrtermTelnet, WhatIsSentArrivesAsItIs)
{
    Telnet telnet;
    openTelnet(&telnet, put, 80, 24);
    send(&telnet, "\xFF\r");
    EXPECT_EQ("\xFF\r", takeSent()); // to a host that doesn't speak TELNET
    receive(&telnet, "\xFF\xF1");
    takeSent();
    send(&telnet, "a\xFF"
                  "b\rc");
    EXPECT_EQ("a\xFF\xFF"
              "b\r\0c"s,
              takeSent());
    receive(&telnet, "\xFF\xFD\x00\xFF\xFB\x00\xFF\xFD\x1F"s);
    takeSent();
    send(&telnet, "a\xFF\rb");
    EXPECT_EQ("a\xFF\xFF\rb", takeSent());
    EXPECT_EQ("\r\0"s, receive(&telnet, "\r\0"s));
    resizeTelnet(&telnet, 80, 24);
    EXPECT_EQ("", takeSent());
    resizeTelnet(&telnet, 255, 24); // in which an IAC is doubled
    EXPECT_EQ("\xFF\xFA\x1F\x00\xFF\xFF\x00\x18\xFF\xF0"s, takeSent());
}

const ScreenEvents EVENTS = {put, [](int, int) {}, [] {}};

class KrtermScreen : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(openScreen(4, 10, &EVENTS));
    }
    void TearDown() override
    {
        closeScreen();
        takeSent();
    }
    static void write(const string& text)
    {
        writeScreen(reinterpret_cast<const BYTE*>(text.data()), DWORD(text.size()));
    }
    static std::wstring text(ScreenPlace from, ScreenPlace to)
    {
        WCHAR* pointer = screenText(from, to);
        std::wstring copy = pointer;
        free(pointer);
        return copy;
    }
    static std::wstring all()
    {
        return text({firstLine(), 0}, {topLine() + screenRows() - 1, screenColumns()});
    }
};

TEST_F(KrtermScreen, LinesThatLeaveAtTheTopAreKeptAndComeBack)
{
    for (int n = 0; n < 3000; ++n) {
        write("\r\nline" + std::to_string(n));
    }
    EXPECT_EQ(2000, topLine() - firstLine());
    EXPECT_EQ(L"line996", text({firstLine(), 0}, {firstLine(), 10}));
    EXPECT_EQ(L"line996", text({-5, 0}, {firstLine(), 10})); // from what is no longer kept
    int first = firstLine();
    sizeScreen(6, 10);
    EXPECT_EQ(first, firstLine());
    EXPECT_EQ(1998, topLine() - firstLine());
    EXPECT_EQ(L"line2994", text({topLine(), 0}, {topLine(), 10}));
    sizeScreen(2, 5);
    EXPECT_EQ(L"line2", text({topLine(), 0}, {topLine(), 5}));
    clearKeptLines();
    EXPECT_EQ(topLine(), firstLine());
}

TEST_F(KrtermScreen, TextIsCopiedAsItIsRead)
{
    write("ab cd  \r\n\r\n\xE4\xB8\xAD\xC3\xBC\xF0\x9F\x99\x82.");
    EXPECT_EQ(L"ab cd\r\n\r\n\x4E2D\xFC\xD83D\xDE42.\r\n", all());
    EXPECT_EQ(L"b", text({0, 1}, {0, 2}));
    EXPECT_EQ(L"", text({0, 2}, {0, 1}));
    EXPECT_EQ(3, wordEdge({0, 4}, false).column);
    EXPECT_EQ(5, wordEdge({0, 4}, true).column);
    EXPECT_EQ(10, wordEdge({0, 7}, true).column);
}

TEST_F(KrtermScreen, CellsShowTheirAttributes)
{
    write("\x1B[31;44ma\x1B[7mb\x1B[0;1;4mc\x1B[0;8;32md");
    ScreenCell cells[] = {cellAt({0, 0}), cellAt({0, 1}), cellAt({0, 2}), cellAt({0, 3})};
    EXPECT_EQ(cells[0].textColor, cells[1].backColor);
    EXPECT_EQ(cells[0].backColor, cells[1].textColor);
    EXPECT_NE(cells[0].textColor, cells[0].backColor);
    EXPECT_TRUE(cells[2].bold && cells[2].underline && !cells[0].bold && !cells[0].underline);
    EXPECT_EQ(cells[3].backColor, cells[3].textColor);
    EXPECT_EQ(DWORD(' '), cellAt({50, 50}).ch);
}

TEST_F(KrtermScreen, KeysGoOutAsTheProgramOnTheHostWantsThem)
{
    typeKey(VTERM_KEY_UP, VTERM_MOD_NONE);
    typeChar(0xE9);
    EXPECT_EQ("\x1B[A\xC3\xA9", takeSent());
    write("\x1B[?1h\x1B[?2004h");
    typeKey(VTERM_KEY_UP, VTERM_MOD_NONE);
    pasteText(L"a\r\nb\x1B[201~");
    EXPECT_EQ("\x1BOA\x1B[200~a\rb[201~\x1B[201~", takeSent());
}

} // namespace
