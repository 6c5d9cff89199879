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
    WORD wCrc = 0;
    for (char ch : text) {
        wCrc = WORD(wCrc ^ (BYTE(ch) << 8));
        for (int n = 0; n < 8; ++n) {
            wCrc = WORD((wCrc << 1) ^ ((wCrc & 0x8000) != 0 ? 0x1021 : 0));
        }
    }
    return wCrc;
}

string block(int nNumber, string data, bool fCrc = true, char chFill = '\x1A')
{
    data.resize(data.size() > 128 ? 1024 : 128, chFill);
    string head = {data.size() > 128 ? '\x02' : '\x01', char(nNumber), char(~nNumber)};
    BYTE bSum = 0;
    for (char ch : data) {
        bSum = BYTE(bSum + BYTE(ch));
    }
    WORD wCrc = plainCrc(data);
    return head + data +
           (fCrc ? string{char(HIBYTE(wCrc)), char(LOBYTE(wCrc))} : string{char(bSum)});
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
    size_t nNext = 0, nRead = 0;
    std::map<string, string> inbox; // files received whole
    std::map<string, DWORD> times;
    string part;
    std::vector<ModemEnd> ends;
    ModemAnswer nAnswer = ANSWER_TAKE;
    const char* pszWriteProblem = nullptr;
    DWORD dwNow = 1000;

    void feed(const string& text)
    {
        feedModem(&modem, reinterpret_cast<const BYTE*>(text.data()), DWORD(text.size()), dwNow);
    }
    void pass(DWORD dwMs)
    {
        for (DWORD n = 0; n < dwMs; n += 100) {
            dwNow += 100;
            tickModem(&modem, dwNow);
        }
    }
    string said()
    {
        string text;
        text.swap(out);
        return text;
    }
};

Side* side(void* pContext)
{
    return static_cast<Side*>(pContext);
}

const ModemWork WORK = {
    [](void* p, const BYTE* pb, DWORD cb) { side(p)->out.append(pb, pb + cb); },
    [](void* p, BYTE b) { side(p)->stray += char(b); },
    [](void* p, ModemFile* pFile) {
        if (side(p)->nNext == side(p)->outbox.size()) {
            return false;
        }
        const auto& file = side(p)->outbox[side(p)->nNext++];
        lstrcpynA(pFile->szName, file.first.c_str(), sizeof pFile->szName);
        pFile->cbSize = DWORD(file.second.size());
        pFile->dwTime = 0755;
        side(p)->nRead = 0;
        return true;
    },
    [](void* p, BYTE* pb, DWORD cb, DWORD* pcbRead) -> const char* {
        const string& text = side(p)->outbox[side(p)->nNext - 1].second;
        *pcbRead = DWORD(text.copy(reinterpret_cast<char*>(pb), cb, side(p)->nRead));
        side(p)->nRead += *pcbRead;
        return nullptr;
    },
    [](void* p, const ModemFile*) {
        side(p)->part.clear();
        return side(p)->nAnswer;
    },
    [](void* p, const BYTE* pb, DWORD cb) {
        side(p)->part.append(pb, pb + cb);
        return side(p)->pszWriteProblem;
    },
    [](void* p, const ModemFile* pFile, ModemEnd nEnd) -> const char* {
        side(p)->ends.push_back(nEnd);
        if (nEnd == END_WHOLE) {
            side(p)->inbox[pFile->szName] = side(p)->part;
            side(p)->times[pFile->szName] = pFile->dwTime;
        }
        return nullptr;
    },
};

// What the host says, or how long it is silent, and what it gets to hear.
struct Step {
    string host;
    DWORD dwSilence;
    string heard;
};

struct Conversation {
    const char* pszName;
    bool fSend;
    ModemProtocol nProtocol;
    std::vector<Step> steps;
    ModemResult nResult;
    DWORD cErrors, cRetries;
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
     {{"some text\r\n", 0, "C"},
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
     {{"", 0, "C"}, {block(1, "x"), 0, ACKNOWLEDGED}, {END, 0, REFUSED}, {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     "x" + string(127, '\x1A')},
    {"XMODEM of a host that knows checksums only",
     false,
     XMODEM_CRC,
     {{"", 0, "C"},
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
     {{"", 0, REFUSED}, {END, 0, REFUSED}, {END, 0, ACKNOWLEDGED}},
     RESULT_DONE,
     0,
     0,
     ""},
    {"a damaged block",
     false,
     XMODEM_CRC,
     {{"", 0, "C"},
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
     {{"", 0, "C"},
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
     {{"", 0, "C"},
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
     {{"", 0, "C"},
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
     {{"", 0, "C"}, {block(1, "x"), 0, ACKNOWLEDGED}, {block(3, "z"), 0, SAID_CANCEL}},
     RESULT_FAILED,
     0,
     0,
     ""},
    {"an end that was noise",
     false,
     XMODEM_CRC,
     {{"", 0, "C"},
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
      {"C", 0, block(1, K + "l")},
      {ACKNOWLEDGED, 0, END},
      {REFUSED, 0, END},
      {GO, 0, info("", "")},
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
    {"a letter that isn't the host's word",
     true,
     XMODEM_CRC,
     {{"Command not found", 60000, SAID_CANCEL}},
     RESULT_FAILED,
     0,
     0,
     "x"},
};

void start(Side* pSide, const Conversation& talk)
{
    pSide->outbox = {{"a", talk.file}};
    auto pfnStart = talk.fSend ? sendByModem : receiveByModem;
    pfnStart(&pSide->modem, talk.nProtocol, &WORK, pSide, pSide->dwNow);
}

void take(Side* pSide, const Step& step)
{
    pSide->feed(step.host);
    pSide->pass(step.dwSilence);
}

TEST(KrtermModem, ConversationsGoAsTheProtocolsSay)
{
    EXPECT_EQ(0x31C3, plainCrc("123456789"));
    for (const Conversation& talk : CONVERSATIONS) {
        SCOPED_TRACE(talk.pszName);
        Side us;
        start(&us, talk);
        for (size_t n = 0; n < talk.steps.size(); ++n) {
            take(&us, talk.steps[n]);
            EXPECT_EQ(talk.steps[n].heard, us.said()) << "step " << n;
        }
        if (talk.nResult == RESULT_DONE) {
            EXPECT_EQ(END_WHOLE, us.ends.at(0));
            EXPECT_EQ(1u, us.modem.cFiles);
            EXPECT_TRUE(talk.fSend || us.inbox.begin()->second == talk.file);
        }
        EXPECT_EQ(talk.nResult, us.modem.nResult) << us.modem.szStatus;
        EXPECT_EQ(talk.cErrors, us.modem.cErrors);
        EXPECT_EQ(talk.cRetries, us.modem.cRetries);
    }
}

// Brings each conversation to each of its steps, and does something there.
void atEveryStage(const std::function<void(Side*, const Conversation&)>& check)
{
    for (const Conversation& talk : CONVERSATIONS) {
        for (size_t nStage = 0; nStage < talk.steps.size(); ++nStage) {
            SCOPED_TRACE(string(talk.pszName) + ", stage " + std::to_string(nStage));
            Side us;
            start(&us, talk);
            for (size_t n = 0; n < nStage; ++n) {
                take(&us, talk.steps[n]);
            }
            us.said();
            if (us.modem.nResult == RESULT_RUNNING) {
                check(&us, talk);
                EXPECT_TRUE(us.ends.size() == us.modem.cFiles ||
                            (us.ends.size() == us.modem.cFiles + 1 && us.ends.back() != END_WHOLE));
                EXPECT_FALSE(us.modem.fFile);
            }
        }
    }
}

TEST(KrtermModem, TheHostCancelsAtEveryStage)
{
    atEveryStage([](Side* pSide, const Conversation&) {
        pSide->feed(SAID_CANCEL);
        pSide->pass(1500); // in a block it is seen when nothing more comes
        EXPECT_EQ(RESULT_CANCELLED, pSide->modem.nResult);
        EXPECT_STREQ("Cancelled by the host", pSide->modem.szStatus);
        EXPECT_EQ("", pSide->said());
    });
}

TEST(KrtermModem, TheHostFallsSilentAtEveryStage)
{
    atEveryStage([](Side* pSide, const Conversation&) {
        bool fLast = pSide->modem.cFiles == 1 && pSide->modem.fStarted && pSide->nNext == 1 &&
                     !pSide->modem.fFile && !pSide->outbox.empty();
        pSide->pass(200000);
        EXPECT_NE(RESULT_RUNNING, pSide->modem.nResult);
        EXPECT_NE(RESULT_CANCELLED, pSide->modem.nResult);
        string said = pSide->said();
        bool fTold = said.size() >= SAID_CANCEL.size() &&
                     said.substr(said.size() - SAID_CANCEL.size()) == SAID_CANCEL;
        EXPECT_TRUE(fTold || fLast);
    });
}

TEST(KrtermModem, TheUserCancelsAtEveryStage)
{
    atEveryStage([](Side* pSide, const Conversation&) {
        cancelModem(&pSide->modem, pSide->dwNow);
        pSide->pass(2000);
        EXPECT_EQ(RESULT_CANCELLED, pSide->modem.nResult);
        EXPECT_EQ(SAID_CANCEL, pSide->said());
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
    cancelModem(&us.modem, us.dwNow);
    EXPECT_EQ("", us.said());
    us.feed(block(2, "y").substr(100));
    EXPECT_EQ(SAID_CANCEL, us.said());
    EXPECT_EQ(RESULT_CANCELLED, us.modem.nResult);
    EXPECT_EQ(0u, feedModem(&us.modem, reinterpret_cast<const BYTE*>("$ "), 2, us.dwNow));
}

// Two machines on a line that does things to single bytes.
struct Line {
    std::mt19937 random;
    int cFlips = 0, cDrops = 0, cDoubles = 0, cDelays = 0;
    bool fDouble = true;
    std::deque<std::pair<DWORD, string>> waiting;

    string spoil(const string& text)
    {
        string out;
        for (char ch : text) {
            unsigned n = random() % 6000;
            bool fTwice = n == 2 && fDouble;
            cFlips += n == 0;
            cDrops += n == 1;
            cDoubles += fTwice;
            out +=
                n == 1 ? "" : string(fTwice ? 2 : 1, n == 0 ? char(ch ^ (1 << random() % 8)) : ch);
        }
        return out;
    }
    void put(const string& text, DWORD dwNow)
    {
        bool fDelay = random() % 60 == 0;
        cDelays += fDelay;
        if (!text.empty()) {
            waiting.push_back({dwNow + (fDelay ? 700 : 0), spoil(text)});
        }
    }
    void deliver(Side* pTo)
    {
        while (!waiting.empty() && waiting.front().first <= pTo->dwNow) {
            pTo->feed(waiting.front().second);
            waiting.pop_front();
        }
    }
};

TEST(KrtermModem, FilesSurviveABadLine)
{
    int cErrors = 0, cRetries = 0, cFlips = 0, cDrops = 0, cDoubles = 0, cDelays = 0;
    for (unsigned uSeed = 1; uSeed <= 60; ++uSeed) {
        SCOPED_TRACE(uSeed);
        Side from, to;
        Line there, back;
        there.random.seed(uSeed);
        back.random.seed(uSeed + 1000);
        for (size_t cb : {0u, 1u, 5000u, 20000u}) {
            string text(cb, '\0');
            for (char& ch : text) {
                ch = char(there.random());
            }
            from.outbox.push_back({"file" + std::to_string(cb), text});
        }
        receiveByModem(&to.modem, YMODEM, &WORK, &to, to.dwNow);
        sendByModem(&from.modem, YMODEM, &WORK, &from, from.dwNow);
        for (int n = 0; n < 40000 && from.modem.nResult == RESULT_RUNNING; ++n) {
            there.put(from.said(), from.dwNow);
            back.put(to.said(), to.dwNow);
            there.deliver(&to);
            back.deliver(&from);
            from.pass(n % 10 == 0 ? 100 : 0);
            to.pass(n % 10 == 0 ? 100 : 0);
        }
        EXPECT_EQ(RESULT_DONE, from.modem.nResult)
            << from.modem.szStatus << ", " << to.modem.szStatus;
        for (const auto& file : from.outbox) {
            EXPECT_TRUE(to.inbox[file.first] == file.second) << file.first;
        }
        cErrors += int(from.modem.cErrors + to.modem.cErrors);
        cRetries += int(from.modem.cRetries + to.modem.cRetries);
        cFlips += there.cFlips + back.cFlips;
        cDrops += there.cDrops + back.cDrops;
        cDoubles += there.cDoubles + back.cDoubles;
        cDelays += there.cDelays + back.cDelays;
    }
    EXPECT_GT(cErrors, cFlips);
    EXPECT_GT(cRetries, 60);
    EXPECT_TRUE(cFlips > 60 && cDrops > 60 && cDoubles > 60 && cDelays > 60);
}

TEST(KrtermModem, SkippedFilesEndEarlyOrArentKept)
{
    Side us;
    start(&us, {"", true, YMODEM, {}, RESULT_DONE, 0, 0, string(5000, 'x')});
    us.outbox.push_back({"b", "bb"});
    us.feed("C");
    us.pass(300);
    us.feed(GO);
    us.said();
    skipFile(&us.modem);
    us.feed(ACKNOWLEDGED);
    EXPECT_EQ(END, us.said());
    us.feed(GO);
    EXPECT_EQ(info("b", "2 755 100644"), us.said());
    EXPECT_EQ(END_DROPPED, us.ends.at(0));

    Side other;
    receiveByModem(&other.modem, YMODEM, &WORK, &other, other.dwNow);
    other.feed(info("a", "200 0"));
    other.feed(block(1, string(128, 'a')));
    skipFile(&other.modem);
    for (const string& text : {block(2, string(72, 'a')), END, END, info("b", "2 0"),
                               block(1, "bb"), END, END, info("", "")}) {
        other.feed(text);
    }
    EXPECT_EQ(RESULT_DONE, other.modem.nResult);
    EXPECT_EQ((std::map<string, string>{{"b", "bb"}}), other.inbox);
}

TEST(KrtermModem, TheUserIsWaitedForWhileTheHostRepeatsItself)
{
    Side us;
    us.nAnswer = ANSWER_LATER;
    receiveByModem(&us.modem, YMODEM, &WORK, &us, us.dwNow);
    us.feed(info("a", "2 0"));
    us.said();
    us.pass(300000);
    us.feed(info("a", "2 0"));
    EXPECT_EQ("", us.said());
    answerModem(&us.modem, ANSWER_TAKE, us.dwNow);
    EXPECT_EQ(GO, us.said());
    us.feed(block(1, "aa") + END);
    us.feed(END + info("", ""));
    EXPECT_EQ("aa", us.inbox["a"]);
}

TEST(KrtermModem, WhatCantBeKeptEndsTheTransfer)
{
    for (bool fWrite : {false, true}) {
        Side us;
        us.nAnswer = fWrite ? ANSWER_TAKE : ANSWER_STOP;
        us.pszWriteProblem = "100% full";
        receiveByModem(&us.modem, YMODEM, &WORK, &us, us.dwNow);
        us.feed(info("a", "2 0"));
        us.feed(block(1, "aa"));
        EXPECT_EQ(RESULT_FAILED, us.modem.nResult);
        EXPECT_STREQ(fWrite ? "100% full" : "The file can't be kept", us.modem.szStatus);
        EXPECT_EQ(END_BROKEN, us.ends.at(0));
    }
}

// A name without an end, numbers that are none, and nothing but noise.
TEST(KrtermModem, AnyBlock0IsReadWithinItsBounds)
{
    struct Case {
        string data;
        size_t cchName;
        DWORD cbSize;
        bool fSized;
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
        receiveByModem(&us.modem, YMODEM, &WORK, &us, us.dwNow);
        us.feed(block(0, test.data, true, '\0'));
        EXPECT_EQ(test.cchName, strlen(us.modem.file.szName));
        EXPECT_EQ(test.cbSize, us.modem.file.cbSize);
        EXPECT_EQ(test.fSized, us.modem.file.fSized);
    }
    std::mt19937 random(7);
    Side us;
    receiveByModem(&us.modem, YMODEM, &WORK, &us, us.dwNow);
    for (int n = 0; n < 3000; ++n) {
        string noise(1 + random() % 300, '\0');
        for (char& ch : noise) {
            ch = char(random());
        }
        us.feed(noise);
        us.pass(n % 7 == 0 ? 2000 : 0);
    }
    EXPECT_NE(RESULT_DONE, us.modem.nResult);
    EXPECT_TRUE(us.inbox.empty());
}

} // namespace
