// The terminal at work: with a shell and the usual programs of a host behind a TELNET server,
// which krterm/withshell runs beside this program, and with hosts that mean harm.
#include "../examples/krterm/files.h"
#include "../examples/krterm/screen.h"
#include "../examples/krterm/terminal.h"
#include "../examples/krterm/transfer.h"
#include "../include/krhaul.h"
#include "../resources/ids.h"
#include "support/imports.h"
#include "support/windows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <stdlib.h>

namespace {

using std::string;
using Files = std::map<string, string>;

// ---- files

string folder(const char* name)
{
    return string(getenv("KRHAUL_SHELL_FOLDER")) + "/" + name;
}

string localPath(const string& name)
{
    string path = "Z:" + folder("local") + "/" + name;
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

string contents(const string& path)
{
    std::ifstream file(path, std::ios::binary);
    return string(std::istreambuf_iterator<char>(file), {});
}

Files filesIn(const char* name)
{
    Files files;
    WIN32_FIND_DATAA find;
    HANDLE handle = FindFirstFileA((folder(name) + "/*").c_str(), &find);
    do {
        if ((find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            files[find.cFileName] = contents(folder(name) + "/" + find.cFileName);
        }
    } while (FindNextFileA(handle, &find));
    FindClose(handle);
    return files;
}

void makeFolder(const char* name, const Files& files)
{
    for (const auto& old : filesIn(name)) {
        DeleteFileA((folder(name) + "/" + old.first).c_str());
    }
    for (const auto& file : files) {
        std::ofstream(folder(name) + "/" + file.first, std::ios::binary) << file.second;
    }
}

string bytes(size_t count)
{
    static std::mt19937 s_random(1);
    string text(count, '\0');
    for (size_t n = 0; n < count; ++n) {
        text[n] = n < 256 ? char(n) : char(s_random());
    }
    return text;
}

Files filesOf(std::initializer_list<size_t> sizes)
{
    Files files;
    for (size_t size : sizes) {
        files["file" + std::to_string(size)] = bytes(size);
    }
    return files;
}

// ---- the terminal

HWND view()
{
    return GetWindow(terminalWindow(), GW_CHILD);
}

bool waitForText(const string& text)
{
    return waitUntil([&] { return textOf(view()).find(text) != string::npos; });
}

void type(const string& text)
{
    for (char ch : text) {
        if (ch == '\r') {
            PostMessageA(view(), WM_KEYDOWN, VK_RETURN, 0);
        } else {
            PostMessageA(view(), WM_CHAR, WPARAM(BYTE(ch)), 0);
        }
    }
    pumpMessages();
}

class KrtermTest : public testing::Test {
protected:
    void SetUp() override
    {
        makeFolder("local", {});
        makeFolder("host", {});
        ASSERT_NE(nullptr, openTerminal(GetModuleHandleA(nullptr)));
        ShowWindow(terminalWindow(), SW_SHOW);
    }
    void TearDown() override
    {
        DestroyWindow(terminalWindow());
        pumpMessages();
        MSG msg;
        PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    }
    void connect(const char* line = "KRHAUL_SHELL_PLAIN")
    {
        connectTerminal(("127.0.0.1:" + string(getenv(line))).c_str());
        ASSERT_TRUE(waitForText("$"));
    }
    // The shell is there and clean: what is typed now means what it says.
    void expectShell()
    {
        type("\recho ali''ve\r");
        EXPECT_TRUE(waitForText("\nalive")) << textOf(view());
        type("clear\r");
        EXPECT_TRUE(waitUntil([] { return textOf(view()).find("alive") == string::npos; }));
    }
};

TransferOrder receiving(ModemProtocol protocol, const string& command, const string& hostName,
                        const string& local)
{
    TransferOrder order = {};
    order.protocol = protocol;
    lstrcpynA(order.command, command.c_str(), CCH_COMMAND);
    lstrcpynA(order.hostName, hostName.c_str(), MAX_PATH);
    lstrcpynA(order.local, localPath(local).c_str(), MAX_PATH);
    return order;
}

TransferOrder sending(ModemProtocol protocol, const string& command, const string& hostName,
                      const Files& files)
{
    TransferOrder order = receiving(protocol, command, hostName, "");
    char* at = order.files;
    order.sending = true;
    for (const auto& file : files) {
        at += lstrlenA(lstrcpyA(at, localPath(file.first).c_str())) + 1;
    }
    return order;
}

bool waitForEnd()
{
    bool ended = false;
    for (int n = 0; n < 6 && !ended; ++n) {
        ended = waitUntil([] { return !isTransferring(); });
    }
    return ended;
}

void closeStatus()
{
    SendMessageA(transferWindow(), WM_COMMAND, XFERSTAT_BUTTON, 0);
    EXPECT_TRUE(waitUntil([] { return transferWindow() == nullptr; }));
}

void run(const TransferOrder& order, ModemResult result = RESULT_DONE)
{
    ASSERT_TRUE(transferInTerminal(&order));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(result, lastTransfer()->result) << lastTransfer()->status;
    closeStatus();
}

void transferBatch(const char* command, bool sends, const Files& files)
{
    makeFolder(sends ? "local" : "host", files);
    makeFolder(sends ? "host" : "local", {});
    run(sends ? sending(YMODEM, command, "", files) : receiving(YMODEM, command, "*", ""));
    EXPECT_TRUE(filesIn("local") == filesIn("host"));
    EXPECT_EQ(files.size(), lastTransfer()->fileCount);
}

// What XMODEM fills a last block up with.
string padded(const string& text, const string& whole)
{
    return text + string(whole.size() - std::min(whole.size(), text.size()), '\x1A');
}

// The machine's own tests have all the sizes against each other: the programs of a host take
// seconds over the end of each file that they receive.
TEST_F(KrtermTest, FilesComeAndGoByXmodem)
{
    struct Case {
        ModemProtocol protocol;
        const char *receive, *send;
        size_t size;
    };
    const Case CASES[] = {
        {XMODEM_CHECKSUM, "sx @H", "rx @H", 0},
        {XMODEM_CRC, "sx @H", "rx -c @H", 300},
        {XMODEM_1K, "sx -k @H", "rx -c @H", 40000},
    };
    connect();
    for (const Case& test : CASES) {
        SCOPED_TRACE(test.protocol);
        const string file = bytes(test.size);
        makeFolder("host", {{"file", file}});
        makeFolder("local", {});
        run(receiving(test.protocol, test.receive, "file", "received"));
        string received = filesIn("local")["received"];
        EXPECT_TRUE(received == padded(file, received) && received.size() >= file.size());
        makeFolder("local", {{"file", file}});
        run(sending(test.protocol, test.send, "sent", {{"file", file}}));
        string sent = filesIn("host")["sent"];
        EXPECT_TRUE(sent == padded(file, sent) && sent.size() >= file.size());
    }
    expectShell();
}

Files fifty()
{
    Files files;
    for (int n = 0; n < 50; ++n) {
        files["number" + std::to_string(n) + ".dat"] = bytes(size_t(n) * 37);
    }
    return files;
}

TEST_F(KrtermTest, BatchesComeAndGoByYmodem)
{
    struct Case {
        const char* command;
        bool sends;
        Files files;
    };
    const Case CASES[] = {
        {"sb -k @H", false, filesOf({0, 1, 127, 128, 1023, 1024, 1025, 1000000})},
        {"sb @H", false, fifty()},
        {"rb", true, filesOf({0, 128, 200000})},
    };
    connect();
    for (const Case& test : CASES) {
        SCOPED_TRACE(test.command);
        transferBatch(test.command, test.sends, test.files);
    }
    expectShell();
}

// Only received: each spoilt byte of what is sent costs the host's program many seconds.
TEST_F(KrtermTest, FilesSurviveABadLine)
{
    connect("KRHAUL_SHELL_BAD");
    transferBatch("sb -k @H", false, filesOf({0, 1000, 25000}));
    EXPECT_GT(lastTransfer()->errors, 0u);
    EXPECT_GT(lastTransfer()->retries, 0u);
}

// ---- ends before the end

void pressCancel()
{
    SendMessageA(transferWindow(), WM_COMMAND, XFERSTAT_CANCEL, 0);
}

void closeStatusWindow()
{
    SendMessageA(transferWindow(), WM_CLOSE, 0, 0);
}

TEST_F(KrtermTest, ACancelledTransferLeavesACleanShellAndNoFile)
{
    const Files big = {{"big", bytes(3000000)}};
    struct Case {
        void (*stop)();
        bool sends;
    };
    for (auto [stop, sends] :
         {Case{pressCancel, false}, Case{pressCancel, true}, Case{closeStatusWindow, false}}) {
        SCOPED_TRACE(sends);
        makeFolder("local", sends ? big : Files());
        makeFolder("host", sends ? Files() : big);
        connect();
        TransferOrder order =
            sends ? sending(YMODEM, "rb", "", big) : receiving(YMODEM, "sb @H", "big", "");
        ASSERT_TRUE(transferInTerminal(&order));
        ASSERT_TRUE(waitUntil([] { return lastTransfer()->done > 100000; }));
        stop();
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(RESULT_CANCELLED, lastTransfer()->result);
        if (stop == pressCancel) {
            EXPECT_EQ("0 files " + string(sends ? "sent" : "received") + ". Cancelled",
                      textOf(transferWindow(), IDC_STAT_STATUS));
            closeStatus();
        }
        EXPECT_TRUE(waitUntil([] { return transferWindow() == nullptr; }));
        EXPECT_EQ(sends ? 1u : 0u, filesIn("local").size());
        expectShell();
    }
}

TEST_F(KrtermTest, TheTerminalsEndEndsItsTransfer)
{
    makeFolder("host", {{"big", bytes(3000000)}});
    connect();
    TransferOrder order = receiving(YMODEM, "sb @H", "big", "");
    ASSERT_TRUE(transferInTerminal(&order));
    ASSERT_TRUE(waitUntil([] { return lastTransfer()->done > 100000; }));
    DestroyWindow(terminalWindow());
    EXPECT_EQ(RESULT_CANCELLED, lastTransfer()->result);
    EXPECT_EQ(nullptr, transferWindow());
    EXPECT_TRUE(filesIn("local").empty());
}

TEST_F(KrtermTest, SkipGoesOnWithTheNextFile)
{
    const Files files = {{"a", bytes(3000000)}, {"b", "the next one"}};
    for (bool sends : {false, true}) {
        makeFolder("local", sends ? files : Files());
        makeFolder("host", sends ? Files() : files);
        connect();
        TransferOrder order =
            sends ? sending(YMODEM, "rb", "", files) : receiving(YMODEM, "sb @H", "a b", "");
        ASSERT_TRUE(transferInTerminal(&order));
        ASSERT_TRUE(waitUntil([] { return lastTransfer()->done > 100000; }));
        SendMessageA(transferWindow(), WM_COMMAND, XFERSTAT_BUTTON, 0);
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(RESULT_DONE, lastTransfer()->result);
        EXPECT_EQ(1u, lastTransfer()->fileCount);
        EXPECT_EQ(files.at("b"), filesIn(sends ? "host" : "local")["b"]);
        EXPECT_EQ(sends ? 2u : 1u, filesIn("local").size());
        closeStatus();
    }
}

// ---- hosts that mean harm, without a line

const TransferEvents NOWHERE = {[](const BYTE*, DWORD) {}, [](const BYTE*, DWORD) {}};

string ymodemBlock(int number, string data)
{
    data.resize(data.size() > 128 ? 1024 : 128, '\0');
    WORD crc = 0;
    for (char ch : data) {
        crc = WORD(crc ^ (BYTE(ch) << 8));
        for (int n = 0; n < 8; ++n) {
            crc = WORD((crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021 : 0));
        }
    }
    return string{char(data.size() > 128 ? 2 : 1), char(number), char(~number)} + data +
           string{char(HIBYTE(crc)), char(LOBYTE(crc))};
}

void hostSays(const string& text)
{
    feedTransfer(reinterpret_cast<const BYTE*>(text.data()), DWORD(text.size()));
}

void hostSendsFile(const string& name)
{
    hostSays(ymodemBlock(0, name + string(1, '\0') + "4 7156700000"));
    pumpMessages();
    hostSays(ymodemBlock(1, "gift"));
    hostSays("\x04");
    hostSays("\x04");
}

class KrtermHost : public KrtermTest {
protected:
    void receiveFrom()
    {
        TransferOrder order = receiving(YMODEM, "", "", "");
        ASSERT_TRUE(startTransfer(&order, terminalWindow(), WM_APP + 1, &NOWHERE));
    }
};

TEST_F(KrtermHost, NamesOfTheHostStayInTheFolder)
{
    const string NAMES[] = {"../x", "..\\x",  "C:x",   "NUL", "com1.txt",       "a:b",
                            "x.",   "/etc/x", "a\x1b", "*",   string(1000, 'n')};
    receiveFrom();
    for (const string& name : NAMES) {
        hostSendsFile(name);
        EXPECT_TRUE(filesIn("local").empty()) << name;
    }
    EXPECT_EQ(std::size(NAMES), lastTransfer()->errors);
    hostSendsFile("\xC3\xBC.txt"); // UTF-8
    hostSays(ymodemBlock(0, ""));
    EXPECT_EQ(RESULT_DONE, lastTransfer()->result);
    EXPECT_EQ((Files{{"\xFC.txt", "gift"}}), filesIn("local"));
    EXPECT_EQ("1 file received. " + string(24, 'n') + ": it is too long or no text",
              textOf(transferWindow(), IDC_STAT_STATUS));
    EXPECT_EQ("11", textOf(transferWindow(), IDC_STAT_ERRORS1));
    closeStatus();
}

TEST_F(KrtermHost, AReceivedFileHasTheTimeOfTheHostsOne)
{
    WIN32_FIND_DATAA find;
    receiveFrom();
    hostSendsFile("dated");
    HANDLE handle = FindFirstFileA(localPath("dated").c_str(), &find);
    ASSERT_NE(INVALID_HANDLE_VALUE, handle);
    FindClose(handle);
    ULONGLONG time =
        (ULONGLONG(find.ftLastWriteTime.dwHighDateTime) << 32) | find.ftLastWriteTime.dwLowDateTime;
    EXPECT_EQ(07156700000ULL, time / 10000000 - 11644473600ULL);
    closeTransfer();
}

UINT answer;

int WINAPI answerBox(HWND, const char* text, const char*, UINT)
{
    EXPECT_STREQ("there is there already. Overwrite it?", text);
    return int(answer);
}

TEST_F(KrtermHost, AFileThatIsThereIsAskedAbout)
{
    ReplacedImport box(GetModuleHandleA(nullptr), "MessageBoxA", answerBox);
    for (UINT button : {IDYES, IDNO, IDCANCEL}) {
        makeFolder("local", {{"there", "old"}});
        answer = button;
        receiveFrom();
        hostSendsFile("there");
        EXPECT_EQ(button != IDCANCEL, isTransferring());
        EXPECT_EQ((Files{{"there", button == IDYES ? "gift" : "old"}}), filesIn("local"));
        closeTransfer();
    }
}

BOOL WINAPI writeToFullDisk(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*)
{
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

TEST_F(KrtermHost, AFullDiskEndsTheTransferAndLeavesNothing)
{
    receiveFrom();
    {
        ReplacedImport disk(GetModuleHandleA(nullptr), "WriteFile", writeToFullDisk);
        hostSendsFile("a");
    }
    EXPECT_EQ(RESULT_FAILED, lastTransfer()->result);
    EXPECT_TRUE(filesIn("local").empty());
    EXPECT_NE(string::npos, textOf(transferWindow(), IDC_STAT_STATUS).find("isk"))
        << textOf(transferWindow(), IDC_STAT_STATUS);
    closeStatus();
}

} // namespace
