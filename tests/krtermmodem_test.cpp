// The protocols of KRTERM as a machine: fed with bytes and with a clock of the test's own.
#include "../examples/krterm/modem.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using std::string;

const string ACKNOWLEDGED = "\x06", REFUSED = "\x15", END = "\x04", CANCELS = string(2, '\x18');
const string SAID_CANCEL = string(8, '\x18') + string(8, '\x08');

// As slow and plain as it can be, unlike that of the machine.
WORD plainCrc(const string& text)
{
    WORD crc = 0;
    for (char ch : text) {
        crc = WORD(crc ^ (BYTE(ch) << 8));
        for (int n = 0; n < 8; ++n) {
            crc = WORD((crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021 : 0));
        }
    }
    return crc;
}

string block(int number, string data, bool withCrc = true, char fill = '\x1A')
{
    data.resize(data.size() > 128 ? 1024 : 128, fill);
    string head = {data.size() > 128 ? '\x02' : '\x01', char(number), char(~number)};
    BYTE sum = 0;
    for (char ch : data) {
        sum = BYTE(sum + BYTE(ch));
    }
    WORD crc = plainCrc(data);
    return head + data +
           (withCrc ? string{char(HIBYTE(crc)), char(LOBYTE(crc))} : string{char(sum)});
}

string info(const string& name, const string& rest)
{
    return block(0, name + '\0' + rest, true, '\0');
}

// One side of a line, with its files.
struct Side {
    Modem modem = {};
    string out;
    string stray;
    std::vector<std::pair<string, string>> outbox; // files to send
    size_t next = 0, read = 0;
    std::map<string, string> inbox; // files received whole
    std::map<string, DWORD> times;
    string part;
    std::vector<ModemEnd> ends;
    ModemAnswer answer = ANSWER_TAKE;
    const char* writeProblem = nullptr;
    DWORD now = 1000;

    void feed(const string& text)
    {
        feedModem(&modem, reinterpret_cast<const BYTE*>(text.data()), DWORD(text.size()), now);
    }
    void pass(DWORD ms)
    {
        for (DWORD n = 0; n < ms; n += 100) {
            now += 100;
            tickModem(&modem, now);
        }
    }
    string said()
    {
        string text;
        text.swap(out);
        return text;
    }
};

Side* side(void* context)
{
    return static_cast<Side*>(context);
}

const ModemWork WORK = {
    [](void* p, const BYTE* bytes, DWORD count) { side(p)->out.append(bytes, bytes + count); },
    [](void* p, BYTE byte) { side(p)->stray += char(byte); },
    [](void* p, ModemFile* file) {
        if (side(p)->next == side(p)->outbox.size()) {
            return false;
        }
        const auto& next = side(p)->outbox[side(p)->next++];
        lstrcpynA(file->name, next.first.c_str(), sizeof file->name);
        file->size = DWORD(next.second.size());
        file->time = 0755;
        side(p)->read = 0;
        return true;
    },
    [](void* p, BYTE* bytes, DWORD count, DWORD* read) -> const char* {
        const string& text = side(p)->outbox[side(p)->next - 1].second;
        *read = DWORD(text.copy(reinterpret_cast<char*>(bytes), count, side(p)->read));
        side(p)->read += *read;
        return nullptr;
    },
    [](void* p, const ModemFile*) {
        side(p)->part.clear();
        return side(p)->answer;
    },
    [](void* p, const BYTE* bytes, DWORD count) {
        side(p)->part.append(bytes, bytes + count);
        return side(p)->writeProblem;
    },
    [](void* p, const ModemFile* file, ModemEnd how) -> const char* {
        side(p)->ends.push_back(how);
        if (how == END_WHOLE) {
            side(p)->inbox[file->name] = side(p)->part;
            side(p)->times[file->name] = file->time;
        }
        return nullptr;
    },
};

// What the host says, or how long it is silent, and what it gets to hear.
struct Step {
    string host;
    DWORD silence;
    string heard;
};

struct Conversation {
    const char* name;
    bool sending;
    ModemProtocol protocol;
    std::vector<Step> steps;
    ModemResult result;
    DWORD errors, retries;
    string file; // what arrived, or is to be sent
};

string damaged(string text)
{
    text[10] = char(text[10] ^ 4);
    return text;
}

const string K = string(1000, 'k');
const string GO = ACKNOWLEDGED + "C";
const std::vector<Conversation> CONVERSATIONS = {
    {"YMODEM received",
     false,
     YMODEM,
     {{"some text\r\n", 600, "C"},
      {info("a", "1000 755"), 0, GO},
      {block(1, K), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, GO},
      {info("", ""), 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     K},
    {"XMODEM received with CRC",
     false,
     XMODEM_CRC,
     {{"", 600, "C"}, {block(1, "x"), 0, ACKNOWLEDGED}, {END, 0, REFUSED}, {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     "x" + string(127, '\x1A')},
    {"XMODEM of a host that knows checksums only",
     false,
     XMODEM_CRC,
     {{"", 600, "C"},
      {"", 9000, "CC" + REFUSED},
      {block(1, "x", false), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     "x" + string(127, '\x1A')},
    {"an empty file by XMODEM",
     false,
     XMODEM_CHECKSUM,
     {{"", 600, REFUSED}, {END, 0, REFUSED}, {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     ""},
    {"a damaged block",
     false,
     XMODEM_CRC,
     {{"", 600, "C"},
      {damaged(block(1, "x")), 0, ""},
      {"", 1000, REFUSED},
      {block(1, "y"), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     1,
     1,
     "y" + string(127, '\x1A')},
    {"a block with bytes missing",
     false,
     XMODEM_CRC,
     {{"", 600, "C"},
      {block(1, "x").substr(0, 50), 0, ""},
      {"", 1500, REFUSED},
      {block(1, "y"), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     1,
     1,
     "y" + string(127, '\x1A')},
    {"a block twice, because its answer was lost",
     false,
     XMODEM_CRC,
     {{"", 600, "C"},
      {block(1, "x"), 0, ACKNOWLEDGED},
      {block(1, "x"), 0, ACKNOWLEDGED},
      {block(2, "y"), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     1,
     0,
     "x" + string(127, '\x1A') + "y" + string(127, '\x1A')},
    {"block 0 twice, and the end of a file once more",
     false,
     YMODEM,
     {{"", 600, "C"},
      {info("a", "1 0"), 0, GO},
      {info("a", "1 0"), 0, GO},
      {block(1, "x"), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, GO},
      {END, 0, GO},
      {info("", ""), 0, ACKNOWLEDGED}},
     RESULT_DONE,
     1,
     0,
     "x"},
    {"a block out of order",
     false,
     XMODEM_CRC,
     {{"", 600, "C"}, {block(1, "x"), 0, ACKNOWLEDGED}, {block(3, "z"), 0, SAID_CANCEL}},
     RESULT_FAILED,
     0,
     0,
     ""},
    {"an end that was noise",
     false,
     XMODEM_CRC,
     {{"", 600, "C"},
      {END, 0, REFUSED},
      {block(1, "x"), 0, ACKNOWLEDGED},
      {END, 0, REFUSED},
      {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     "x" + string(127, '\x1A')},
    {"YMODEM sent",
     true,
     YMODEM,
     {{"rb waiting C", 500, info("a", "1001 755 100644")},
      {ACKNOWLEDGED, 0, ""},
      {"C", 100, block(1, K + "l")},
      {ACKNOWLEDGED, 0, END},
      {REFUSED, 0, END},
      {GO, 100, info("", "")},
      {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     1,
     1,
     K + "l"},
    {"XMODEM sent with a checksum",
     true,
     XMODEM_CRC,
     {{REFUSED, 500, block(1, "x", false)}, {ACKNOWLEDGED, 0, END}, {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     0,
     0,
     "x"},
    {"XMODEM-1K sent, its end in a small block",
     true,
     XMODEM_1K,
     {{"C", 500, block(1, string(1024, 'a'))},
      {ACKNOWLEDGED, 0, block(2, "b")},
      {ACKNOWLEDGED, 0, END},
      {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     0,
     0,
     string(1024, 'a') + "b"},
    {"an empty file by XMODEM, sent",
     true,
     XMODEM_CRC,
     {{"C", 500, END}, {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     0,
     0,
     ""},
    {"a block that is wanted again, by word and by silence",
     true,
     XMODEM_CRC,
     {{"C", 500, block(1, "x")},
      {REFUSED, 0, block(1, "x")},
      {"", 15500, block(1, "x")},
      {ACKNOWLEDGED, 0, END},
      {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     2,
     2,
     "x"},
    {"a first block that is refused as it was asked for",
     true,
     XMODEM_CRC,
     {{"C", 500, block(1, "x")},
      {"C", 900, ""},
      {"", 200, ""},
      {"C", 0, block(1, "x")},
      {ACKNOWLEDGED, 0, END},
      {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     1,
     1,
     "x"},
    {"answers that came twice",
     true,
     XMODEM_CRC,
     {{"C", 500, block(1, string(128, 'x'))},
      {ACKNOWLEDGED + ACKNOWLEDGED, 0, block(2, "y")},
      {ACKNOWLEDGED, 0, END},
      {ACKNOWLEDGED, 0, ""}},
     RESULT_DONE,
     0,
     0,
     string(128, 'x') + "y"},
    {"an answer and a cancel in one",
     true,
     XMODEM_CRC,
     {{"C", 500, block(1, string(128, 'x'))}, {ACKNOWLEDGED + CANCELS, 0, block(2, "y")}},
     RESULT_CANCELLED,
     0,
     0,
     string(128, 'x') + "y"},
    {"an end that a shell answers",
     true,
     XMODEM_CRC,
     {{"C", 500, block(1, "x")}, {ACKNOWLEDGED, 0, END}, {"$ ", 1000, ""}},
     RESULT_DONE,
     0,
     0,
     "x"},
    {"a letter that isn't the host's word",
     true,
     XMODEM_CRC,
     {{"Command not found", 60000, SAID_CANCEL}},
     RESULT_FAILED,
     0,
     0,
     "x"},
};

void start(Side* side, const Conversation& talk)
{
    side->outbox = {{"a", talk.file}};
    auto start = talk.sending ? sendByModem : receiveByModem;
    start(&side->modem, talk.protocol, &WORK, side, side->now);
}

void take(Side* side, const Step& step)
{
    side->feed(step.host);
    side->pass(step.silence);
}

TEST(KrtermModem, ConversationsGoAsTheProtocolsSay)
{
    EXPECT_EQ(0x31C3, plainCrc("123456789"));
    for (const Conversation& talk : CONVERSATIONS) {
        SCOPED_TRACE(talk.name);
        Side us;
        start(&us, talk);
        for (size_t n = 0; n < talk.steps.size(); ++n) {
            take(&us, talk.steps[n]);
            EXPECT_EQ(talk.steps[n].heard, us.said()) << "step " << n;
        }
        if (talk.result == RESULT_DONE) {
            EXPECT_EQ(END_WHOLE, us.ends.at(0));
            EXPECT_EQ(1u, us.modem.fileCount);
            EXPECT_TRUE(talk.sending || us.inbox.begin()->second == talk.file);
        }
        EXPECT_EQ(talk.result, us.modem.result) << us.modem.status;
        EXPECT_EQ(talk.errors, us.modem.errors);
        EXPECT_EQ(talk.retries, us.modem.retries);
    }
}

// Brings each conversation to each of its steps, and does something there.
void atEveryStage(const std::function<void(Side*, const Conversation&)>& check)
{
    for (const Conversation& talk : CONVERSATIONS) {
        for (size_t stage = 0; stage < talk.steps.size(); ++stage) {
            SCOPED_TRACE(string(talk.name) + ", stage " + std::to_string(stage));
            Side us;
            start(&us, talk);
            for (size_t n = 0; n < stage; ++n) {
                take(&us, talk.steps[n]);
            }
            us.said();
            if (us.modem.result == RESULT_RUNNING) {
                check(&us, talk);
                EXPECT_TRUE(
                    us.ends.size() == us.modem.fileCount ||
                    (us.ends.size() == us.modem.fileCount + 1 && us.ends.back() != END_WHOLE));
                EXPECT_FALSE(us.modem.fileOpen);
            }
        }
    }
}

TEST(KrtermModem, TheHostCancelsAtEveryStage)
{
    atEveryStage([](Side* side, const Conversation&) {
        side->feed(SAID_CANCEL);
        side->pass(1500); // in a block it is seen when nothing more comes
        EXPECT_EQ(RESULT_CANCELLED, side->modem.result);
        EXPECT_STREQ("Cancelled by the host", side->modem.status);
        EXPECT_EQ("", side->said());
    });
}

TEST(KrtermModem, TheHostFallsSilentAtEveryStage)
{
    atEveryStage([](Side* side, const Conversation&) {
        bool last = side->modem.fileCount == 1 && side->modem.started && side->next == 1 &&
                    !side->modem.fileOpen && !side->outbox.empty();
        side->pass(200000);
        EXPECT_NE(RESULT_RUNNING, side->modem.result);
        EXPECT_NE(RESULT_CANCELLED, side->modem.result);
        string said = side->said();
        bool told = said.size() >= SAID_CANCEL.size() &&
                    said.substr(said.size() - SAID_CANCEL.size()) == SAID_CANCEL;
        EXPECT_TRUE(told || last);
    });
}

TEST(KrtermModem, TheUserCancelsAtEveryStage)
{
    atEveryStage([](Side* side, const Conversation&) {
        cancelModem(&side->modem, side->now);
        side->pass(2000);
        EXPECT_EQ(RESULT_CANCELLED, side->modem.result);
        EXPECT_EQ(SAID_CANCEL, side->said());
    });
}

// In the middle of a block the host doesn't listen, so the cancel waits for the end of it.
TEST(KrtermModem, ACancelWaitsForTheEndOfABlock)
{
    Side us;
    start(&us, CONVERSATIONS[2]);
    us.feed(block(1, "x"));
    us.feed(block(2, "y").substr(0, 100));
    us.said();
    cancelModem(&us.modem, us.now);
    EXPECT_EQ("", us.said());
    us.feed(block(2, "y").substr(100));
    EXPECT_EQ(SAID_CANCEL, us.said());
    EXPECT_EQ(RESULT_CANCELLED, us.modem.result);
    EXPECT_EQ(0u, feedModem(&us.modem, reinterpret_cast<const BYTE*>("$ "), 2, us.now));
}

// Two machines on a line that does things to single bytes.
struct Line {
    std::mt19937 random;
    int flips = 0, drops = 0, doubles = 0, delays = 0;
    std::deque<std::pair<DWORD, string>> waiting;

    string spoil(const string& text)
    {
        string out;
        for (char ch : text) {
            unsigned n = random() % 6000;
            bool twice = n == 2;
            flips += n == 0;
            drops += n == 1;
            doubles += twice;
            out +=
                n == 1 ? "" : string(twice ? 2 : 1, n == 0 ? char(ch ^ (1 << random() % 8)) : ch);
        }
        return out;
    }
    void put(const string& text, DWORD now)
    {
        bool delay = random() % 60 == 0;
        delays += delay;
        if (!text.empty()) {
            waiting.push_back({now + (delay ? 700 : 0), spoil(text)});
        }
    }
    void deliver(Side* to)
    {
        while (!waiting.empty() && waiting.front().first <= to->now) {
            to->feed(waiting.front().second);
            waiting.pop_front();
        }
    }
};

TEST(KrtermModem, FilesSurviveABadLine)
{
    int errors = 0, retries = 0, flips = 0, drops = 0, doubles = 0, delays = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        Side from, to;
        Line there, back;
        there.random.seed(seed);
        back.random.seed(seed + 1000);
        for (size_t count : {0u, 1u, 5000u, 20000u}) {
            string text(count, '\0');
            for (char& ch : text) {
                ch = char(there.random());
            }
            from.outbox.push_back({"file" + std::to_string(count), text});
        }
        receiveByModem(&to.modem, YMODEM, &WORK, &to, to.now);
        sendByModem(&from.modem, YMODEM, &WORK, &from, from.now);
        for (int n = 0; n < 40000 && from.modem.result == RESULT_RUNNING; ++n) {
            there.put(from.said(), from.now);
            back.put(to.said(), to.now);
            there.deliver(&to);
            back.deliver(&from);
            from.pass(n % 10 == 0 ? 100 : 0);
            to.pass(n % 10 == 0 ? 100 : 0);
        }
        EXPECT_EQ(RESULT_DONE, from.modem.result) << from.modem.status << ", " << to.modem.status;
        for (const auto& file : from.outbox) {
            EXPECT_TRUE(to.inbox[file.first] == file.second) << file.first;
        }
        errors += int(from.modem.errors + to.modem.errors);
        retries += int(from.modem.retries + to.modem.retries);
        flips += there.flips + back.flips;
        drops += there.drops + back.drops;
        doubles += there.doubles + back.doubles;
        delays += there.delays + back.delays;
    }
    EXPECT_GT(errors, flips);
    EXPECT_GT(retries, 60);
    EXPECT_TRUE(flips > 60 && drops > 60 && doubles > 60 && delays > 60);
}

TEST(KrtermModem, SkippedFilesEndEarlyOrArentKept)
{
    Side us;
    start(&us, {"", true, YMODEM, {}, RESULT_DONE, 0, 0, string(5000, 'x')});
    us.outbox.push_back({"b", "bb"});
    us.feed("C");
    us.pass(300);
    us.feed(GO);
    us.pass(100);
    us.said();
    skipFile(&us.modem);
    us.feed(ACKNOWLEDGED);
    EXPECT_EQ(END, us.said());
    us.feed(GO);
    us.pass(100);
    EXPECT_EQ(info("b", "2 755 100644"), us.said());
    EXPECT_EQ(END_DROPPED, us.ends.at(0));

    Side other;
    receiveByModem(&other.modem, YMODEM, &WORK, &other, other.now);
    other.feed(info("a", "200 0"));
    other.feed(block(1, string(128, 'a')));
    skipFile(&other.modem);
    for (const string& text : {block(2, string(72, 'a')), END, END, info("b", "2 0"),
                               block(1, "bb"), END, END, info("", "")}) {
        other.feed(text);
    }
    EXPECT_EQ(RESULT_DONE, other.modem.result);
    EXPECT_EQ((std::map<string, string>{{"b", "bb"}}), other.inbox);
}

TEST(KrtermModem, TheUserIsWaitedForWhileTheHostRepeatsItself)
{
    Side us;
    us.answer = ANSWER_LATER;
    receiveByModem(&us.modem, YMODEM, &WORK, &us, us.now);
    us.feed(info("a", "2 0"));
    us.said();
    us.pass(300000);
    us.feed(info("a", "2 0"));
    EXPECT_EQ("", us.said());
    answerModem(&us.modem, ANSWER_TAKE, us.now);
    EXPECT_EQ(GO, us.said());
    us.feed(block(1, "aa") + END);
    us.feed(END + info("", ""));
    EXPECT_EQ("aa", us.inbox["a"]);
}

TEST(KrtermModem, WhatCantBeKeptEndsTheTransfer)
{
    for (bool write : {false, true}) {
        Side us;
        us.answer = write ? ANSWER_TAKE : ANSWER_STOP;
        us.writeProblem = "100% full";
        receiveByModem(&us.modem, YMODEM, &WORK, &us, us.now);
        us.feed(info("a", "2 0"));
        us.feed(block(1, "aa"));
        EXPECT_EQ(RESULT_FAILED, us.modem.result);
        EXPECT_STREQ(write ? "100% full" : "The file can't be kept", us.modem.status);
        EXPECT_EQ(END_BROKEN, us.ends.at(0));
    }
}

// A name without an end, numbers that are none, and nothing but noise.
TEST(KrtermModem, AnyBlock0IsReadWithinItsBounds)
{
    struct Case {
        string data;
        size_t nameLength;
        DWORD size;
        bool sized;
    };
    const Case CASES[] = {
        {string(1024, 'n'), 1024, 0, false},
        {string(128, 'n'), 128, 0, false},
        {"a" + string(1, '\0') + "x", 1, 0, false},
        {"a" + string(1, '\0') + "99999999999999", 1, 0xFFFFFFFF, true},
        {string("a") + '\0' + string(1022, '1'), 1, 0xFFFFFFFF, true},
    };
    for (const Case& test : CASES) {
        Side us;
        receiveByModem(&us.modem, YMODEM, &WORK, &us, us.now);
        us.feed(block(0, test.data, true, '\0'));
        EXPECT_EQ(test.nameLength, strlen(us.modem.file.name));
        EXPECT_EQ(test.size, us.modem.file.size);
        EXPECT_EQ(test.sized, us.modem.file.sized);
    }
    std::mt19937 random(7);
    Side us;
    receiveByModem(&us.modem, YMODEM, &WORK, &us, us.now);
    for (int n = 0; n < 3000; ++n) {
        string noise(1 + random() % 300, '\0');
        for (char& ch : noise) {
            ch = char(random());
        }
        us.feed(noise);
        us.pass(n % 7 == 0 ? 2000 : 0);
    }
    EXPECT_NE(RESULT_DONE, us.modem.result);
    EXPECT_TRUE(us.inbox.empty());
}

} // namespace
