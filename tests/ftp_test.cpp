// The sample caller at work with a real FTP server, which ftp/withserver runs beside this
// program. The windows are worked as a user does; what counts is what lies on both disks then.
#include "../examples/krdemo/connect.h"
#include "../examples/krdemo/job.h"
#include "../examples/krdemo/session.h"
#include "../examples/krdemo/worker.h"
#include "../resources/ids.h"
#include "../tools/robot/looks.h"
#include "../tools/robot/user.h"
#include "../transfer/window/record.h"
#include "support/imports.h"
#include "support/modal.h"
#include "support/pane_window.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string.h>
#include <thread>

namespace {

constexpr char PASSWORD[] = "secret";

// ---- a user who answers message boxes, one after another, while they hold the thread

struct Box {
    std::string part; // of its text
    WORD vk;          // key that answers it; 0 closes the transfer window under it
};
std::vector<Box> s_boxes;
HWND s_hwndAnswered;

std::string textsOf(HWND hwndBox)
{
    std::string all;
    for (HWND hwnd = GetWindow(hwndBox, GW_CHILD); hwnd != nullptr;
         hwnd = GetWindow(hwnd, GW_HWNDNEXT)) {
        all += textOf(hwnd) + " ";
    }
    return all;
}

void CALLBACK answerBox(HWND, UINT, UINT_PTR, DWORD)
{
    HWND hwndBox = GetLastActivePopup(sessionWindow());
    if (hwndBox == sessionWindow() || hwndBox == jobWindow() || hwndBox == s_hwndAnswered ||
        GetForegroundWindow() != hwndBox) {
        return;
    }
    s_hwndAnswered = hwndBox;
    if (s_boxes.empty()) {
        ADD_FAILURE() << "nobody expects the box: " << textsOf(hwndBox);
        robot::pressKey(VK_ESCAPE);
        return;
    }
    EXPECT_NE(textsOf(hwndBox).find(s_boxes.front().part), std::string::npos) << textsOf(hwndBox);
    if (s_boxes.front().vk != 0) {
        robot::pressKey(s_boxes.front().vk);
    } else {
        SendMessageA(sessionWindow(), WM_CLOSE, 0, 0);
    }
    s_boxes.erase(s_boxes.begin());
}

// ---- the disk that fills up

DWORD s_cbDisk;
decltype(&WriteFile) s_pfnWriteFile;

BOOL WINAPI writeToFullDisk(HANDLE hFile, const void* pBuffer, DWORD cb, DWORD* pcb,
                            OVERLAPPED* pOverlapped)
{
    if (cb > s_cbDisk) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    s_cbDisk -= cb;
    return s_pfnWriteFile(hFile, pBuffer, cb, pcb, pOverlapped);
}

// ---- files

void writeFile(const std::string& path, const std::string& contents)
{
    std::ofstream file(path, std::ios::binary);
    file << contents;
    file.close();
    EXPECT_TRUE(file) << path;
}

// Bytes of all values that repeat nowhere soon.
std::string someBytes(size_t cb)
{
    std::string bytes(cb, '\0');
    unsigned n = unsigned(cb);
    for (char& ch : bytes) {
        n = n * 1664525 + 1013904223;
        ch = char(n >> 24);
    }
    return bytes;
}

Strings filesIn(const std::string& dir)
{
    Strings names;
    WIN32_FIND_DATAA find;
    HANDLE hFind = FindFirstFileA((dir + "\\*").c_str(), &find);
    for (BOOL fMore = hFind != INVALID_HANDLE_VALUE; fMore; fMore = FindNextFileA(hFind, &find)) {
        if (strcmp(find.cFileName, ".") != 0 && strcmp(find.cFileName, "..") != 0) {
            names.push_back(find.cFileName);
        }
    }
    FindClose(hFind);
    std::sort(names.begin(), names.end());
    return names;
}

// ---- the viewer, which isn't started: what it would have shown

std::string s_viewed;

UINT WINAPI readViewedFile(LPCSTR pszCommand, UINT)
{
    constexpr UINT STARTED = 32;
    std::string command = pszCommand;
    size_t nFrom = command.find("-ftp1") + strlen("-ftp1");
    std::string control = command.substr(nFrom, command.rfind('"') - nFrom);
    Strings lines;
    std::ifstream file(control);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    file.close();
    s_viewed = lines[2] + ": " + contentsOf(lines[3]);
    DeleteFileA(lines[3].c_str());
    DeleteFileA(control.c_str());
    return STARTED;
}

// ---- the windows

class Ftp : public PaneWindow {
protected:
    Ftp()
    {
        const char* pszFolder = getenv("KRHAUL_FTP_FOLDER");
        if (pszFolder == nullptr) {
            return;
        }
        // A directory of the server for each test.
        m_path = testing::UnitTest::GetInstance()->current_test_info()->name();
        m_server = std::string("Z:") + pszFolder + "\\" + m_path;
        std::replace(m_server.begin(), m_server.end(), '/', '\\');
        CreateDirectoryA(m_server.c_str(), nullptr);
        s_boxes.clear();
        s_hwndAnswered = nullptr;
        m_nTimer = SetTimer(nullptr, 0, 20, answerBox);
    }
    ~Ftp() override
    {
        KillTimer(nullptr, m_nTimer);
        leave();
        EXPECT_TRUE(s_boxes.empty()) << s_boxes.front().part << " was never asked";
    }
    void SetUp() override
    {
        if (m_server.empty()) {
            FAIL() << "start this program with tests/ftp/withserver";
        }
    }

    void connectAs(const char* pszUser, const char* pszPassword = PASSWORD)
    {
        DemoOptions options = {};
        options.fServer = true;
        strcpy(options.szLanguage, "EN");
        lstrcpynA(options.szFirst, m_dir.path().c_str(), MAX_PATH);
        strcpy(options.server.szServer, "127.0.0.1");
        options.server.nPort = WORD(atoi(getenv("KRHAUL_FTP_PORT")));
        lstrcpynA(options.server.szUser, pszUser, sizeof options.server.szUser);
        lstrcpynA(options.server.szPassword, pszPassword, sizeof options.server.szPassword);
        lstrcpynA(options.server.szPath, m_path.c_str(), MAX_PATH);
        ASSERT_TRUE(openSession(&options, m_parent.hwnd()));
        m_hwnd = sessionWindow();
        SetForegroundWindow(m_hwnd);
        EXPECT_TRUE(waitIdle());
    }
    void leave()
    {
        if (sessionWindow() != nullptr) {
            closeSession();
        }
        m_hwnd = nullptr;
    }
    // Idle is what the user sees: the window takes orders.
    bool waitIdle() const
    {
        return waitUntil([this] {
            return !isTaskRunning() &&
                   (GetMenuState(GetMenu(m_hwnd), IDM_XFER_TRANSFER, MF_BYCOMMAND) & MF_GRAYED) ==
                       0;
        });
    }
    // Selects files, gives a command, and lets it come to its end.
    void run(int idFileList, const Strings& names, UINT idCommand = IDM_XFER_TRANSFER)
    {
        begin(idFileList, names, idCommand);
        EXPECT_TRUE(waitIdle()) << logged();
    }
    void begin(int idFileList, const Strings& names, UINT idCommand = IDM_XFER_TRANSFER)
    {
        SetFocus(item(idFileList));
        selectFiles(idFileList, names);
        notify(idFileList, LBN_SELCHANGE);
        command(idCommand);
    }
    // Fills in the dialog that a command opens, and accepts it.
    void inDialog(UINT idCommand, const std::function<void(HWND hdlg)>& fillIn)
    {
        KillTimer(nullptr, m_nTimer);
        runModal(m_hwnd, [&] { command(idCommand); }, {[&](HWND hdlg) {
                     fillIn(hdlg);
                     pressButton(hdlg, IDOK);
                     return true;
                 }});
        EXPECT_TRUE(waitIdle()) << logged();
        m_nTimer = SetTimer(nullptr, 0, 20, answerBox);
    }
    void send(const Strings& names)
    {
        run(IDC_DANDD_LOCALFILES, names);
    }
    void receive(const Strings& names)
    {
        run(IDC_DANDD_HOSTFILES, names);
    }
    std::string logged() const
    {
        std::string all;
        for (const std::string& entry : log()) {
            all += entry + "\n";
        }
        return all;
    }
    bool isLogged(const std::string& part) const
    {
        return logged().find(part) != std::string::npos;
    }
    // What the user does with the mouse, by a thread, while this one handles the messages.
    void drag(int idFrom, const std::string& name, int idTo)
    {
        POINT ptFrom = robot::pointOfRow(item(idFrom), rowOf(idFrom, name));
        POINT ptTo = robot::middleOf(item(idTo));
        bool fDone = false;
        std::thread user([&] {
            robot::movePointer(ptFrom);
            robot::pressButton();
            robot::dragTo(ptFrom, ptTo);
            robot::releaseButton();
            fDone = true;
        });
        EXPECT_TRUE(waitUntil([&] { return fDone; }));
        user.join();
        EXPECT_TRUE(waitIdle());
    }
    const HostCallbacks& callbacks() const
    {
        return record()->callbacks;
    }
    std::string onServer(const std::string& name) const
    {
        return m_server + "\\" + name;
    }
    void refresh()
    {
        command(IDM_XFER_REFRESH);
        EXPECT_TRUE(waitIdle());
    }

    std::string m_path;   // of the server's directory, from its root on
    std::string m_server; // the same, as this program sees it
    UINT_PTR m_nTimer = 0;
};

TEST_F(Ftp, SendsAndReceivesFilesOfAllKinds)
{
    const Strings names = {"plain.bin",
                           "with some blanks.bin",
                           "100%s%n.bin",
                           "\xE4\xF6\xFC \xC1.bin",
                           std::string(196, 'n') + ".bin",
                           "empty.bin"};
    for (size_t n = 0; n < names.size(); ++n) {
        writeFile(m_dir.path(names[n]),
                  someBytes(n + 1 == names.size() ? 0 : 3 * n * 10007 + 70000));
    }
    Strings sorted = names;
    std::sort(sorted.begin(), sorted.end());
    connectAs("plain");
    send(names);
    EXPECT_EQ(filesIn(m_server), sorted) << logged();
    Strings shown = rows(IDC_DANDD_HOSTFILES);
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), shown);
    for (const std::string& name : names) {
        EXPECT_EQ(contentsOf(onServer(name)), contentsOf(m_dir.path(name))) << name;
        DeleteFileA(m_dir.path(name).c_str());
    }
    receive(names);
    EXPECT_EQ(filesIn(m_dir.path()), sorted) << logged();
    for (const std::string& name : names) {
        EXPECT_EQ(contentsOf(m_dir.path(name)), contentsOf(onServer(name))) << name;
    }
}

TEST_F(Ftp, SendsAndReceivesByDrag)
{
    writeFile(m_dir.path("there.bin"), someBytes(50000));
    writeFile(onServer("here.bin"), someBytes(60000));
    connectAs("plain");
    drag(IDC_DANDD_LOCALFILES, "there.bin", IDC_DANDD_HOSTFILES);
    EXPECT_EQ(contentsOf(onServer("there.bin")), someBytes(50000)) << logged();
    drag(IDC_DANDD_HOSTFILES, "here.bin", IDC_DANDD_LOCALFILES);
    EXPECT_EQ(contentsOf(m_dir.path("here.bin")), someBytes(60000)) << logged();
}

TEST_F(Ftp, MovesMoreThan100Megabytes)
{
    constexpr size_t CB_BLOCK = 1 << 20;
    constexpr int BLOCKS = 101;
    std::ofstream big(onServer("big.bin"), std::ios::binary);
    for (int n = 0; n < BLOCKS; ++n) {
        big << someBytes(CB_BLOCK + size_t(n)).substr(0, CB_BLOCK);
    }
    big.close();
    connectAs("plain");
    receive({"big.bin"});
    std::string original = contentsOf(onServer("big.bin"));
    EXPECT_EQ(original.size(), CB_BLOCK * BLOCKS);
    EXPECT_TRUE(contentsOf(m_dir.path("big.bin")) == original) << logged();
    DeleteFileA(onServer("big.bin").c_str());
    send({"big.bin"});
    EXPECT_TRUE(contentsOf(onServer("big.bin")) == original) << logged();
}

TEST_F(Ftp, HonoursTheFileType)
{
    const struct {
        UINT idType;
        const char* pszName;
        const char* pszOnServer; // after "one\r\ntwo\r\n" was sent
    } aCases[] = {
        {IDM_XFER_TYPETEXT, "a.bin", "one\ntwo\n"},
        {IDM_XFER_TYPEBINARY, "b.txt", "one\r\ntwo\r\n"},
        {IDM_XFER_TYPEAUTO, "c.TXT", "one\ntwo\n"},
        {IDM_XFER_TYPEAUTO, "d.bin", "one\r\ntwo\r\n"},
        {IDM_XFER_TYPEAUTO, "e", "one\r\ntwo\r\n"},
    };
    for (const auto& row : aCases) {
        writeFile(m_dir.path(row.pszName), "one\r\ntwo\r\n");
    }
    connectAs("plain");
    for (const auto& row : aCases) {
        command(row.idType);
        send({row.pszName});
        EXPECT_EQ(contentsOf(onServer(row.pszName)), row.pszOnServer) << row.pszName;
        DeleteFileA(m_dir.path(row.pszName).c_str());
        receive({row.pszName});
        EXPECT_EQ(contentsOf(m_dir.path(row.pszName)), "one\r\ntwo\r\n") << row.pszName;
    }
}

TEST_F(Ftp, CarriesOutEveryHostCommand)
{
    writeFile(onServer("a file.txt"), "text");
    CreateDirectoryA(onServer("old dir").c_str(), nullptr);
    connectAs("plain");
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"a file.txt"}));
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/" + m_path);

    inDialog(IDM_XFER_MAKEDIR, [](HWND hdlg) {
        CheckRadioButton(hdlg, IDC_DIR_LOCAL, IDC_DIR_HOST, IDC_DIR_HOST);
        replaceText(hdlg, IDC_DIR_NAME, "new \xE4 dir");
    });
    EXPECT_EQ(filesIn(m_server), (Strings{"a file.txt", "new \xE4 dir", "old dir"})) << logged();

    selectFiles(IDC_DANDD_HOSTFILES, {"a file.txt"});
    inDialog(IDM_XFER_RENAME, [](HWND hdlg) { replaceText(hdlg, IDC_RENAME_NEWNAME, "b%s.txt"); });
    EXPECT_EQ(contentsOf(onServer("b%s.txt")), "text") << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"b%s.txt"}));

    selectRow(IDC_DANDD_HOSTDIRS, "old dir");
    command(IDM_XFER_REMOVEDIR);
    EXPECT_TRUE(waitIdle());
    EXPECT_EQ(filesIn(m_server), (Strings{"b%s.txt", "new \xE4 dir"})) << logged();

    run(IDC_DANDD_HOSTFILES, {"b%s.txt"}, IDM_XFER_DETAILS);
    EXPECT_EQ(log().back(), "b%s.txt                          4");

    {
        ReplacedImport import(library(), "WinExec", readViewedFile);
        run(IDC_DANDD_HOSTFILES, {"b%s.txt"}, IDM_XFER_VIEW);
    }
    EXPECT_EQ(s_viewed, "b%s.txt: text");

    s_boxes = {{"b%s.txt", 'N'}, {"b%s.txt", 'Y'}};
    run(IDC_DANDD_HOSTFILES, {"b%s.txt"}, IDM_XFER_DELETE);
    EXPECT_EQ(contentsOf(onServer("b%s.txt")), "text");
    run(IDC_DANDD_HOSTFILES, {"b%s.txt"}, IDM_XFER_DELETE);
    EXPECT_EQ(filesIn(m_server), (Strings{"new \xE4 dir"})) << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), Strings{});

    selectRow(IDC_DANDD_HOSTDIRS, "new \xE4 dir");
    notify(IDC_DANDD_HOSTDIRS, LBN_DBLCLK);
    EXPECT_TRUE(waitIdle());
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/" + m_path + "/new \xE4 dir");
    writeFile(onServer("new \xE4 dir\\inside.txt"), "");
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"inside.txt"}));

    callbacks().pfnChangeHostDir(0, 0, 0, "nowhere", 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(isLogged("nowhere: 550 ")) << logged();

    // What can't be listed isn't entered.
    CreateDirectoryA(onServer("mute").c_str(), nullptr);
    callbacks().pfnChangeHostDir(0, 0, 0, "../mute", 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(isLogged("../mute: 550 Not this one.")) << logged();
    writeFile(onServer("new \xE4 dir\\later.txt"), "");
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"inside.txt", "later.txt"}));
}

TEST_F(Ftp, SendsOntoADirectoryOfTheHost)
{
    CreateDirectoryA(onServer("sub").c_str(), nullptr);
    writeFile(m_dir.path("a.bin"), "a");
    connectAs("plain");
    XferFileList list;
    ASSERT_TRUE(XferFileList_fCreate(&list) &&
                XferFileList_fSetString(list, 0, XFERLIST_LOCAL, "a.bin"));
    callbacks().pfnSendFiles(0, 0, 0, list, 0, "sub");
    EXPECT_TRUE(waitIdle());
    EXPECT_EQ(contentsOf(onServer("sub\\a.bin")), "a") << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), Strings{});
    refresh();
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/" + m_path);
}

TEST_F(Ftp, AsksBeforeItOverwrites)
{
    constexpr DWORD BOTH = 1 | 16;
    const struct {
        DWORD dwFlags;
        WORD vk; // answer, 0 if nothing is asked
        bool fReplaced;
    } aCases[] = {{BOTH, 'Y', true}, {BOTH, 'N', false}, {BOTH, VK_ESCAPE, false}, {0, 0, true}};
    // The second server doesn't rename over a file.
    for (const char* pszUser : {"plain", "old"}) {
        for (const auto& row : aCases) {
            for (bool fSend : {true, false}) {
                SCOPED_TRACE(std::string(pszUser) + (fSend ? " sends " : " receives ") +
                             std::to_string(row.dwFlags) + char(row.vk));
                SetFileAttributesA(m_dir.path("both.bin").c_str(), FILE_ATTRIBUTE_NORMAL);
                writeFile(m_dir.path("both.bin"), "local");
                SetFileAttributesA(m_dir.path("both.bin").c_str(), FILE_ATTRIBUTE_READONLY);
                writeFile(onServer("both.bin"), "host");
                connectAs(pszUser);
                callbacks().pfnConfirmFlags(0, row.dwFlags, 1);
                if (row.vk != 0) {
                    s_boxes = {{fSend ? "both.bin is there already on the host"
                                      : "both.bin is there already",
                                row.vk}};
                }
                run(fSend ? IDC_DANDD_LOCALFILES : IDC_DANDD_HOSTFILES, {"both.bin"});
                EXPECT_EQ(contentsOf(m_dir.path("both.bin")),
                          !fSend && row.fReplaced ? "host" : "local");
                EXPECT_EQ(contentsOf(onServer("both.bin")),
                          fSend && row.fReplaced ? "local" : "host");
                EXPECT_EQ(filesIn(m_dir.path()), (Strings{"both.bin"}));
                EXPECT_EQ(filesIn(m_server), (Strings{"both.bin"})) << logged();
                leave();
            }
        }
    }
}

TEST_F(Ftp, OverwritesNothingOfTheHostUnasked)
{
    writeFile(m_dir.path("new.bin"), "local");
    writeFile(onServer("new.bin"), "host");
    writeFile(onServer("old.bin"), "old");
    connectAs("mum");
    send({"new.bin"});
    EXPECT_TRUE(isLogged("new.bin: 425 No way to send it.")) << logged();
    leave();
    connectAs("plain");
    for (WORD vk : {WORD('N'), WORD('Y')}) {
        EXPECT_EQ(contentsOf(onServer("new.bin")), "host");
        s_boxes = {{"new.bin is there already on the host", vk}};
        callbacks().pfnRenameHostFile(0, 0, 0, "old.bin", "new.bin");
        EXPECT_TRUE(waitIdle());
    }
    EXPECT_EQ(filesIn(m_server), (Strings{"new.bin"})) << logged();
    EXPECT_EQ(contentsOf(onServer("new.bin")), "old");
}

// A connection that can't go where the window is has begun in another directory.
TEST_F(Ftp, ReachesNoFilesOfAnotherDirectory)
{
    writeFile(onServer("a.bin"), "");
    const std::string there = m_path + "/a.bin"; // from where a connection begins
    m_path += "/gone";
    connectAs("plain");
    callbacks().pfnConfirmFlags(0, 0, 1);
    for (int n = 0; n < 2; ++n) {
        callbacks().pfnRenameHostFile(0, 0, 0, there.c_str(), "moved.bin");
        EXPECT_TRUE(waitIdle());
    }
    EXPECT_EQ(filesIn(m_server), (Strings{"a.bin"})) << logged();
}

// What goes wrong is told in the log, and nothing stays that isn't whole.
TEST_F(Ftp, LeavesNothingOfAFileThatFails)
{
    const struct {
        const char* pszUser;
        bool fSend;
        DWORD cbDisk;
        const char* pszLog;
    } aCases[] = {
        {"drop", false, 1 << 20, "f.bin: The server doesn't answer any more."},
        {"drop", true, 1 << 20, "f.bin: The server doesn't answer any more."},
        {"full", true, 1 << 20, "f.bin: 552 No room for %s left here."},
        {"plain", false, 50000, "f.bin: Disk full."},
    };
    for (const auto& row : aCases) {
        SCOPED_TRACE(std::string(row.pszUser) + (row.fSend ? " sends" : " receives"));
        DeleteFileA((row.fSend ? onServer("f.bin") : m_dir.path("f.bin")).c_str());
        writeFile(row.fSend ? m_dir.path("f.bin") : onServer("f.bin"), someBytes(400000));
        connectAs(row.pszUser);
        {
            s_cbDisk = row.cbDisk;
            ReplacedImport import(GetModuleHandleA(nullptr), "WriteFile", writeToFullDisk);
            s_pfnWriteFile = import.original<decltype(&WriteFile)>();
            run(row.fSend ? IDC_DANDD_LOCALFILES : IDC_DANDD_HOSTFILES, {"f.bin"});
        }
        EXPECT_TRUE(isLogged(row.pszLog)) << logged();
        EXPECT_EQ(filesIn(row.fSend ? m_server : m_dir.path()), Strings{}) << logged();
        leave();
        DeleteFileA(m_dir.path("f.bin").c_str());
        DeleteFileA(onServer("f.bin").c_str());
    }
}

TEST_F(Ftp, GoesOnAfterAFailureIfTheUserSaysSo)
{
    for (WORD vk : {WORD('Y'), WORD('N')}) {
        for (const char* pszName : {"1.bin", "2.bin", "3.bin"}) {
            writeFile(onServer(pszName), pszName);
        }
        connectAs("plain");
        DeleteFileA(onServer("2.bin").c_str());
        s_boxes = {{"2.bin: 550 ", vk}};
        receive({"1.bin", "2.bin", "3.bin"});
        EXPECT_EQ(filesIn(m_dir.path()),
                  vk == 'Y' ? (Strings{"1.bin", "3.bin"}) : (Strings{"1.bin"}));
        EXPECT_EQ(stripText(), vk == 'Y' ? "Done." : "Stopped.");
        leave();
        DeleteFileA(m_dir.path("1.bin").c_str());
        DeleteFileA(m_dir.path("3.bin").c_str());
    }
}

TEST_F(Ftp, SaysWhyTheServerRefuses)
{
    connectAs("plain", "wrong");
    EXPECT_TRUE(isLogged("530 ")) << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), Strings{});
    leave();

    connectAs("evil"); // its answers have control characters and percent signs
    s_boxes = {{"good %s%n.txt", 'Y'}};
    run(IDC_DANDD_HOSTFILES, {"good %s%n.txt"}, IDM_XFER_DELETE);
    EXPECT_TRUE(isLogged("good %s%n.txt: 550  [2J%s%n  never.")) << logged();
}

TEST_F(Ftp, RefusesNamesThatLeadElsewhere)
{
    connectAs("evil");
    Strings names = rows(IDC_DANDD_HOSTFILES);
    EXPECT_EQ(names.size(), 11u);
    receive(names);
    EXPECT_EQ(filesIn(m_dir.path()), (Strings{"good %s%n.txt"})) << logged();
    EXPECT_FALSE(m_dir.holds("..\\up.txt"));
    for (const std::string& name : names) {
        EXPECT_EQ(isLogged(name + ": Refused as a local name: "), name != "good %s%n.txt") << name;
    }
    EXPECT_TRUE(isLogged("bell<07>.txt: Refused")) << logged();
}

TEST_F(Ftp, ListsAServerWithoutListsForPrograms)
{
    writeFile(onServer("file.txt"), "text");
    CreateDirectoryA(onServer("dir").c_str(), nullptr);
    connectAs("old");
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"file.txt"})) << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTDIRS).back(), "dir");
    run(IDC_DANDD_HOSTFILES, {"file.txt"}, IDM_XFER_DETAILS);
    EXPECT_EQ(log().back(), "file.txt                         4");
}

TEST_F(Ftp, ListsFiveThousandFiles)
{
    m_path = "crowd";
    connectAs("crowd");
    EXPECT_EQ(tell(IDC_DANDD_HOSTFILES, LB_GETCOUNT), 5000) << logged();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES).back(), "file number 999.txt");
}

// A server that keeps silent, before a file and within it: the windows take orders all the
// time, and the stop command ends the wait though the server never answers.
TEST_F(Ftp, StopsWhileTheServerKeepsSilent)
{
    writeFile(onServer("f.bin"), someBytes(400000));
    for (const char* pszUser : {"silent", "stall"}) {
        connectAs(pszUser);
        begin(IDC_DANDD_HOSTFILES, {"f.bin"});
        // Something of the file shows where something comes of it.
        EXPECT_TRUE(waitUntil([&] {
            return textOf(jobWindow(), IDC_STAT_STATUS) == "File 1 of 1" &&
                   (strcmp(pszUser, "silent") == 0 ||
                    textOf(jobWindow(), IDC_STAT_COUNT) == "8192");
        })) << textOf(jobWindow(), IDC_STAT_STATUS)
            << textOf(jobWindow(), IDC_STAT_COUNT);
        command(IDM_XFER_COMMANDLINE);
        EXPECT_TRUE(waitUntil([this] { return IsWindowVisible(item(IDC_DANDD_COMMANDLINE)); }));
        command(IDM_XFER_TWOPANE);
        EXPECT_TRUE(waitUntil([this] { return IsWindowVisible(item(IDC_DANDD_HOSTFILES)); }));
        EXPECT_TRUE(isTaskRunning());
        command(IDM_XFER_STOP);
        EXPECT_TRUE(waitIdle());
        EXPECT_EQ(stripText(), "Stopped.");
        EXPECT_EQ(jobWindow(), nullptr);
        EXPECT_TRUE(waitUntil([this] { return filesIn(m_dir.path()).empty(); }))
            << filesIn(m_dir.path()).front();
        // A new connection serves at once.
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"f.bin"}));
        leave();
    }
}

// The status window's own button; what the server has of the file goes.
TEST_F(Ftp, StopsASendingInItsMiddle)
{
    writeFile(m_dir.path("f.bin"), someBytes(20 << 20));
    connectAs("slow");
    begin(IDC_DANDD_LOCALFILES, {"f.bin"});
    EXPECT_TRUE(waitUntil([this] { return !filesIn(m_server).empty(); }));
    SendMessageA(jobWindow(), WM_COMMAND, XFERSTAT_BUTTON, 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(waitUntil([this] { return filesIn(m_server).empty(); })) << logged();
}

TEST_F(Ftp, TheWindowCanCloseInTheMiddle)
{
    writeFile(onServer("f.bin"), someBytes(400000));
    for (const char* pszUser : {"silent", "stall"}) {
        connectAs(pszUser);
        begin(IDC_DANDD_HOSTFILES, {"f.bin"});
        EXPECT_TRUE(
            waitUntil([] { return textOf(jobWindow(), IDC_STAT_STATUS) == "File 1 of 1"; }));
        SendMessageA(m_hwnd, WM_CLOSE, 0, 0);
        EXPECT_EQ(sessionWindow(), nullptr);
        EXPECT_EQ(filesIn(m_dir.path()), Strings{});
    }
    // With a question open.
    writeFile(m_dir.path("f.bin"), "");
    connectAs("plain");
    s_boxes = {{"f.bin is there already", 0}};
    begin(IDC_DANDD_HOSTFILES, {"f.bin"});
    EXPECT_TRUE(waitUntil([] { return sessionWindow() == nullptr; }));
    EXPECT_EQ(contentsOf(m_dir.path("f.bin")), "");
}

TEST_F(Ftp, TheDialogAsksForAServer)
{
    HostAddress address = {};
    std::thread user([] {
        robot::waitFor(
            [] { return FindWindowA(nullptr, "Connect to a server") == GetForegroundWindow(); });
        for (const char* pszText : {"server", "2121", "me", "pass", "pub"}) {
            robot::typeText(pszText);
            robot::pressKey(VK_TAB);
        }
        robot::pressKey(VK_RETURN);
    });
    EXPECT_TRUE(askForServer(m_parent.hwnd(), &address));
    user.join();
    EXPECT_STREQ(address.szServer, "server");
    EXPECT_EQ(address.nPort, 2121);
    EXPECT_STREQ(address.szUser, "me");
    EXPECT_STREQ(address.szPassword, "pass");
    EXPECT_STREQ(address.szPath, "pub");
}

} // namespace
