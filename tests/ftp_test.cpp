// The sample caller at work with real servers, which ftp/withserver runs beside this program. The
// windows are worked as a user does; what counts is what lies on both disks then.
#include "../examples/krdemo/connect.h"
#include "../examples/krdemo/hostpanes.h"
#include "../examples/krdemo/session.h"
#include "../examples/krdemo/statuswindow.h"
#include "../examples/krdemo/work.h"
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

using demo::Protocol;
using demo::sessionWindow;

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
    if (hwndBox == sessionWindow() || hwndBox == demo::statusWindow() ||
        hwndBox == s_hwndAnswered || GetForegroundWindow() != hwndBox) {
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
        const char* folder = getenv("KRHAUL_FTP_FOLDER");
        if (folder == nullptr) {
            return;
        }
        // A directory of the server for each test.
        m_folder = folder;
        m_path = testing::UnitTest::GetInstance()->current_test_info()->name();
        m_server = windowsPath(m_folder + "/" + m_path);
        CreateDirectoryA(m_server.c_str(), nullptr);
        m_knownHosts = secret("known_hosts");
        DeleteFileA(m_knownHosts.c_str());
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

    static std::string windowsPath(std::string path)
    {
        std::replace(path.begin(), path.end(), '/', '\\');
        return "Z:" + path;
    }
    static std::string secret(const char* name)
    {
        return windowsPath(std::string(getenv("KRHAUL_FTP_SECRETS")) + "/" + name);
    }
    demo::Address addressOf(Protocol protocol, const std::string& user) const
    {
        static const char* const PORTS[] = {"", "KRHAUL_FTP_PORT", "KRHAUL_FTPES_PORT",
                                            "KRHAUL_FTPS_PORT", "KRHAUL_SFTP_PORT"};
        demo::Address address;
        address.protocol = protocol;
        bool isNamed = protocol == Protocol::FtpTls || protocol == Protocol::Ftps;
        address.server = isNamed ? "localhost" : "127.0.0.1";
        address.port = unsigned(atoi(getenv(PORTS[size_t(protocol)])));
        address.user = user;
        address.password = PASSWORD;
        address.path = m_path;
        address.knownHosts = m_knownHosts;
        address.bundle = secret("certificate.pem");
        if (protocol == Protocol::Sftp) {
            address.user = getenv("KRHAUL_SFTP_USER");
            address.keyFile = secret("openssh");
            address.password = "";
            address.path = m_folder + "/" + m_path;
        }
        return address;
    }
    void connect(const demo::Address& address)
    {
        leave();
        demo::openHost(address);
        demo::forgetDirectory();
        ASSERT_TRUE(demo::openSession(m_dir.path(), "EN", m_parent.hwnd()));
        m_hwnd = sessionWindow();
        SetForegroundWindow(m_hwnd);
        EXPECT_TRUE(waitIdle());
        callbacks().pfnConfirmFlags(0, 31, 1);
    }
    void connectAs(const std::string& user)
    {
        connect(addressOf(Protocol::Ftp, user));
    }
    // The same way to work with each protocol. The user accepts the host key once.
    void connectBy(Protocol protocol)
    {
        bool isNew = GetFileAttributesA(m_knownHosts.c_str()) == INVALID_FILE_ATTRIBUTES;
        if (protocol == Protocol::Sftp && isNew) {
            s_boxes = {{"SHA256:", 'Y'}};
        }
        connect(addressOf(protocol, "plain"));
    }
    void leave()
    {
        if (sessionWindow() != nullptr) {
            demo::closeSession();
        }
        demo::closeHost();
        m_hwnd = nullptr;
    }
    // Idle is what the user sees: the window takes orders.
    bool waitIdle() const
    {
        return waitUntil([this] {
            return !demo::isWorking() &&
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
    // Stops what doesn't end by itself, and sees that it is through at once.
    bool settle()
    {
        robot::rest();
        pumpMessages();
        if (demo::isWorking()) {
            DWORD start = GetTickCount();
            command(IDM_XFER_STOP);
            EXPECT_TRUE(waitIdle());
            EXPECT_LT(GetTickCount() - start, 2000u);
        }
        return waitIdle();
    }
    static XferFileList listOf(const char* name)
    {
        XferFileList list = nullptr;
        EXPECT_TRUE(XferFileList_fCreate(&list));
        EXPECT_TRUE(XferFileList_fSetString(list, 0, XFERLIST_HOST, name));
        return list;
    }
    void refresh()
    {
        command(IDM_XFER_REFRESH);
        EXPECT_TRUE(waitIdle());
    }

    std::string m_folder; // of the servers, as they see it
    std::string m_path;   // of the test's directory, from there on
    std::string m_server; // the same, as this program sees it
    std::string m_knownHosts;
    UINT_PTR m_nTimer = 0;
};

TEST_F(Ftp, SendsAndReceivesFilesOfAllKinds)
{
    const Strings names = {
        "plain.bin",       "with some blanks.bin",  "100%s%n.bin",
        "Sent [2012].bin", "\xE4\xF6\xFC \xC1.bin", std::string(196, 'n') + ".bin",
        "empty.bin"};
    Strings sorted = names;
    std::sort(sorted.begin(), sorted.end());
    for (Protocol protocol : {Protocol::Ftp, Protocol::FtpTls, Protocol::Ftps, Protocol::Sftp}) {
        SCOPED_TRACE(int(protocol));
        for (size_t n = 0; n < names.size(); ++n) {
            writeFile(m_dir.path(names[n]),
                      someBytes(n + 1 == names.size() ? 0 : 3 * n * 10007 + 70000));
        }
        connectBy(protocol);
        send(names);
        EXPECT_EQ(filesIn(m_server), sorted) << logged();
        Strings shown = rows(IDC_DANDD_HOSTFILES);
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), shown);
        std::vector<std::string> contents;
        for (const std::string& name : names) {
            contents.push_back(contentsOf(m_dir.path(name)));
            EXPECT_EQ(contentsOf(onServer(name)), contents.back()) << name;
            DeleteFileA(m_dir.path(name).c_str());
        }
        receive(names);
        EXPECT_EQ(filesIn(m_dir.path()), sorted) << logged();
        for (size_t n = 0; n < names.size(); ++n) {
            EXPECT_EQ(contentsOf(m_dir.path(names[n])), contents[n]) << names[n];
            DeleteFileA(onServer(names[n]).c_str());
        }
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
    std::string original = contentsOf(onServer("big.bin"));
    EXPECT_EQ(original.size(), CB_BLOCK * BLOCKS);
    for (Protocol protocol : {Protocol::Ftp, Protocol::Sftp}) {
        connectBy(protocol);
        receive({"big.bin"});
        EXPECT_TRUE(contentsOf(m_dir.path("big.bin")) == original) << logged();
        DeleteFileA(onServer("big.bin").c_str());
        send({"big.bin"});
        EXPECT_TRUE(contentsOf(onServer("big.bin")) == original) << logged();
        DeleteFileA(m_dir.path("big.bin").c_str());
    }
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
    for (Protocol protocol : {Protocol::Sftp, Protocol::Ftp}) {
        const std::string root = (protocol == Protocol::Sftp ? m_folder : "") + "/" + m_path;
        writeFile(onServer("a file.txt"), "text");
        CreateDirectoryA(onServer("old dir").c_str(), nullptr);
        connectBy(protocol);
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"a file.txt"}));
        EXPECT_EQ(text(IDC_DANDD_HOSTPATH), root);

        inDialog(IDM_XFER_MAKEDIR, [](HWND hdlg) {
            CheckRadioButton(hdlg, IDC_DIR_LOCAL, IDC_DIR_HOST, IDC_DIR_HOST);
            replaceText(hdlg, IDC_DIR_NAME, "new \xE4 dir");
        });
        EXPECT_EQ(filesIn(m_server), (Strings{"a file.txt", "new \xE4 dir", "old dir"}))
            << logged();

        selectFiles(IDC_DANDD_HOSTFILES, {"a file.txt"});
        inDialog(IDM_XFER_RENAME,
                 [](HWND hdlg) { replaceText(hdlg, IDC_RENAME_NEWNAME, "b%s.txt"); });
        EXPECT_EQ(contentsOf(onServer("b%s.txt")), "text") << logged();
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"b%s.txt"}));

        selectRow(IDC_DANDD_HOSTDIRS, "old dir");
        command(IDM_XFER_REMOVEDIR);
        EXPECT_TRUE(waitIdle());
        EXPECT_EQ(filesIn(m_server), (Strings{"b%s.txt", "new \xE4 dir"})) << logged();

        run(IDC_DANDD_HOSTFILES, {"b%s.txt"}, IDM_XFER_DETAILS);
        EXPECT_EQ(log().back(), "b%s.txt                               4");

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
        EXPECT_EQ(text(IDC_DANDD_HOSTPATH), root + "/new \xE4 dir");
        writeFile(onServer("new \xE4 dir\\inside.txt"), "");
        refresh();
        EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"inside.txt"}));

        const std::string path = text(IDC_DANDD_HOSTPATH);
        callbacks().pfnChangeHostDir(0, 0, 0, "nowhere", 0);
        EXPECT_TRUE(waitIdle());
        EXPECT_TRUE(isLogged("nowhere: ")) << logged();
        EXPECT_EQ(text(IDC_DANDD_HOSTPATH), path);
        callbacks().pfnChangeHostDir(0, 0, 0, "..", 0);
        EXPECT_TRUE(waitIdle());
        EXPECT_EQ(text(IDC_DANDD_HOSTPATH), root);
        DeleteFileA(onServer("new \xE4 dir\\inside.txt").c_str());
        RemoveDirectoryA(onServer("new \xE4 dir").c_str());
    }
    // What can't be listed isn't entered.
    CreateDirectoryA(onServer("mute").c_str(), nullptr);
    callbacks().pfnChangeHostDir(0, 0, 0, "mute", 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(isLogged("mute: 550 Not this one.")) << logged();
    writeFile(onServer("later.txt"), "");
    refresh();
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"later.txt"}));
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
    // The second and third server don't rename over a file.
    for (const char* pszUser : {"plain", "old", "sftp"}) {
        for (const auto& row : aCases) {
            for (bool fSend : {true, false}) {
                SCOPED_TRACE(std::string(pszUser) + (fSend ? " sends " : " receives ") +
                             std::to_string(row.dwFlags) + char(row.vk));
                SetFileAttributesA(m_dir.path("both.bin").c_str(), FILE_ATTRIBUTE_NORMAL);
                writeFile(m_dir.path("both.bin"), "local");
                SetFileAttributesA(m_dir.path("both.bin").c_str(), FILE_ATTRIBUTE_READONLY);
                writeFile(onServer("both.bin"), "host");
                if (strcmp(pszUser, "sftp") == 0) {
                    connectBy(Protocol::Sftp);
                } else {
                    connectAs(pszUser);
                }
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
                EXPECT_TRUE(waitUntil([this] { return filesIn(m_server).size() == 1; }))
                    << logged();
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
        {"drop", false, 1 << 20, "f.bin: The connection was cut off."},
        {"drop", true, 1 << 20, "f.bin: The connection was cut off."},
        {"full", true, 1 << 20, "f.bin: "},
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
        // What was sent goes over a connection of its own.
        EXPECT_TRUE(waitUntil([&] { return filesIn(row.fSend ? m_server : m_dir.path()).empty(); }))
            << logged();
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
    demo::Address address = addressOf(Protocol::Ftp, "plain");
    address.password = "wrong";
    connect(address);
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
    EXPECT_EQ(names.size(), 10u);
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
    EXPECT_EQ(log().back(), "file.txt                              4");
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
            return textOf(demo::statusWindow(), IDC_STAT_STATUS) == "File 1 of 1" &&
                   (strcmp(pszUser, "silent") == 0 ||
                    textOf(demo::statusWindow(), IDC_STAT_COUNT) == "8192");
        })) << textOf(demo::statusWindow(), IDC_STAT_STATUS)
            << textOf(demo::statusWindow(), IDC_STAT_COUNT);
        command(IDM_XFER_COMMANDLINE);
        EXPECT_TRUE(waitUntil([this] { return IsWindowVisible(item(IDC_DANDD_COMMANDLINE)); }));
        command(IDM_XFER_TWOPANE);
        EXPECT_TRUE(waitUntil([this] { return IsWindowVisible(item(IDC_DANDD_HOSTFILES)); }));
        EXPECT_TRUE(demo::isWorking());
        command(IDM_XFER_STOP);
        EXPECT_TRUE(waitIdle());
        EXPECT_EQ(stripText(), "Stopped.");
        EXPECT_TRUE(waitUntil([] { return demo::statusWindow() == nullptr; }));
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
    SendMessageA(demo::statusWindow(), WM_COMMAND, XFERSTAT_BUTTON, 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(waitUntil([this] { return filesIn(m_server).empty(); })) << logged();
}

TEST_F(Ftp, TheWindowCanCloseInTheMiddle)
{
    writeFile(onServer("f.bin"), someBytes(400000));
    for (const char* pszUser : {"silent", "stall"}) {
        connectAs(pszUser);
        begin(IDC_DANDD_HOSTFILES, {"f.bin"});
        EXPECT_TRUE(waitUntil(
            [] { return textOf(demo::statusWindow(), IDC_STAT_STATUS) == "File 1 of 1"; }));
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

TEST_F(Ftp, TheDialogsAskForAServerAndAPassword)
{
    demo::Address address;
    std::thread user([] {
        auto isOpen = [](const char* title) {
            return robot::waitFor(
                [=] { return FindWindowA(nullptr, title) == GetForegroundWindow(); });
        };
        isOpen("Connect to a server");
        robot::pressKey(VK_END); // SFTP
        for (const char* text : {"", "server", "2121", "me", "", "", "pub"}) {
            robot::typeText(text);
            robot::pressKey(VK_TAB);
        }
        robot::pressKey(VK_RETURN);
        isOpen("Log in");
        robot::typeText("pass");
        robot::pressKey(VK_RETURN);
    });
    EXPECT_TRUE(demo::askForServer(m_parent.hwnd(), &address));
    EXPECT_TRUE(demo::askForPassword(m_parent.hwnd(), &address));
    user.join();
    EXPECT_EQ(address.protocol, Protocol::Sftp);
    EXPECT_EQ(address.server, "server");
    EXPECT_EQ(address.port, 2121u);
    EXPECT_EQ(address.user, "me");
    EXPECT_EQ(address.password, "pass");
    EXPECT_EQ(address.path, "pub");
}

// ---- what hostile servers do

// Lines that the server was told since the last call.
class HostileServer : public Ftp {
protected:
    Strings commands()
    {
        const std::string path = windowsPath(getenv("KRHAUL_FTP_COMMANDS"));
        Strings lines = split(contentsOf(path), '\n');
        DeleteFileA(path.c_str());
        return lines;
    }
    // All that isn't asked for.
    Strings commandsOf(const char* verb)
    {
        Strings found;
        for (const std::string& line : commands()) {
            if (line.compare(0, strlen(verb), verb) == 0) {
                found.push_back(line);
            }
        }
        return found;
    }
};

// Each name that is shown leads to the very bytes of one file, and no two show alike.
TEST_F(HostileServer, NamesLeadToTheirOwnFiles)
{
    connectAs("names");
    Strings names = rows(IDC_DANDD_HOSTFILES);
    EXPECT_EQ(names.size(), 15u);
    callbacks().pfnConfirmFlags(0, 0, 1);
    const std::string root = "DELE /" + m_path + "/";
    const struct {
        const char* shown;
        const char* bytes;
    } files[] = {{"Report [2012].txt", "Report [2012].txt"},
                 {"a [65E5].txt", "a [65E5].txt"},
                 {"a <E697A5>.txt", "a \xE6\x97\xA5.txt"},
                 {"<3C>07<3E>.txt", "<07>.txt"},
                 {"<07>.txt", "\x07.txt"},
                 {"<E284AA>elvin", "\xE2\x84\xAA"
                                   "elvin"},
                 {"..<EFBCBC>x", "..\xEF\xBC\xBCx"},
                 {"<E4>.txt", "\xE4.txt"},
                 {"\xE4.txt", "\xC3\xA4.txt"},
                 {"tail<20>", "tail "}};
    for (const auto& file : files) {
        commands();
        run(IDC_DANDD_HOSTFILES, {file.shown}, IDM_XFER_DELETE);
        EXPECT_EQ(commandsOf("DELE"), (Strings{root + file.bytes})) << file.shown;
    }
}

// The directory is what the server says, with all its quotes, and nothing else is touched.
TEST_F(HostileServer, QuotesBelongToDirectories)
{
    writeFile(m_dir.path("a.bin"), "a");
    connectAs("plain");
    callbacks().pfnConfirmFlags(0, 0, 1);
    callbacks().pfnMakeHostDir(0, 0, 0, "say \"x\" twice");
    EXPECT_TRUE(waitIdle());
    callbacks().pfnMakeHostDir(0, 0, 0, "say ");
    EXPECT_TRUE(waitIdle());
    callbacks().pfnChangeHostDir(0, 0, 0, "say \"x\" twice", 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/" + m_path + "/say \"x\" twice") << logged();
    send({"a.bin"});
    commands();
    run(IDC_DANDD_HOSTFILES, {"a.bin"}, IDM_XFER_DELETE);
    EXPECT_EQ(commandsOf("DELE"), (Strings{"DELE /" + m_path + "/say \"x\" twice/a.bin"}));
}

TEST_F(HostileServer, ConnectionsThatAreElsewhereAreGivenUp)
{
    writeFile(onServer("a.bin"), "");
    connectAs("astray");
    EXPECT_TRUE(waitUntil([this] {
        refresh();
        return isLogged("The server isn't in the directory that it was told to go to.");
    })) << logged();
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "/" + m_path);
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"a.bin"}));
}

TEST_F(HostileServer, OddListsAreReadAsFarAsTheyCanBe)
{
    connectAs("people");
    EXPECT_EQ(rows(IDC_DANDD_HOSTFILES), (Strings{"<20>blank first.txt", "dos.txt", "link"}));
    EXPECT_TRUE(isLogged("not understood: what is this?")) << logged();
    EXPECT_TRUE(isLogged("not understood: lrwxrwxrwx 1 o g 1 Jan 31 12:34 a -> b -> c"));
}

TEST_F(HostileServer, DataComeFromTheServerItself)
{
    writeFile(onServer("a.bin"), "a");
    connectAs("pointer");
    receive({"a.bin"});
    EXPECT_EQ(contentsOf(m_dir.path("a.bin")), "a") << logged();
}

TEST_F(HostileServer, FloodsEndWithAClearLimit)
{
    connectAs("oneline");
    EXPECT_TRUE(isLogged("The list of the directory is too long.")) << logged();
    connectAs("talker");
    callbacks().pfnConfirmFlags(0, 0, 1);
    callbacks().pfnDeleteHostFiles(0, 0, 0, listOf("a.bin"), 0);
    EXPECT_TRUE(waitIdle());
    EXPECT_TRUE(isLogged("a.bin: The server's answer is too long.")) << logged();
}

// Wherever the server falls silent or hangs up: Stop ends the wait at once, and nothing stays.
TEST_F(HostileServer, EveryStepCanFail)
{
    writeFile(onServer("f.bin"), someBytes(1000));
    for (int step = 1; step <= 12; ++step) {
        for (const char* kind : {"cut", "stop"}) {
            SCOPED_TRACE(kind + std::to_string(step));
            demo::openHost(addressOf(Protocol::Ftp, kind + std::to_string(step)));
            demo::forgetDirectory();
            ASSERT_TRUE(demo::openSession(m_dir.path(), "EN", m_parent.hwnd()));
            m_hwnd = sessionWindow();
            EXPECT_TRUE(settle()) << logged();
            if (!rows(IDC_DANDD_HOSTFILES).empty()) {
                begin(IDC_DANDD_HOSTFILES, {"f.bin"});
                EXPECT_TRUE(settle()) << logged();
            }
            leave();
            Strings left = filesIn(m_dir.path());
            EXPECT_TRUE(left.empty() || contentsOf(m_dir.path("f.bin")) == someBytes(1000));
            DeleteFileA(m_dir.path("f.bin").c_str());
            EXPECT_EQ(filesIn(m_dir.path()), Strings{});
        }
    }
}

// ---- whom to trust

TEST_F(HostileServer, HostKeysAreAcceptedOnceAndNeverExchanged)
{
    demo::Address address = addressOf(Protocol::Sftp, "");
    s_boxes = {{"SHA256:", 'N'}};
    connect(address);
    EXPECT_TRUE(isLogged("The host key wasn't accepted.")) << logged();
    s_boxes = {{"SHA256:", 'Y'}};
    connect(address);
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), address.path) << logged();
    connect(address); // unasked
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), address.path) << logged();
    // Another key under the same name.
    std::string known = contentsOf(m_knownHosts);
    known[known.size() - 20] = known[known.size() - 20] == 'A' ? 'B' : 'A';
    writeFile(m_knownHosts, known);
    connect(address);
    EXPECT_TRUE(isLogged("is not the one that was accepted before")) << logged();
    EXPECT_EQ(contentsOf(m_knownHosts), known);
}

TEST_F(HostileServer, KeysOfBothFormsOpenTheDoor)
{
    demo::Address address = addressOf(Protocol::Sftp, "");
    s_boxes = {{"SHA256:", 'Y'}};
    address.keyFile = secret("pem");
    address.password = "open me";
    connect(address);
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), address.path) << logged();
    address.password = "wrong";
    connect(address);
    EXPECT_EQ(text(IDC_DANDD_HOSTPATH), "") << logged();
    EXPECT_FALSE(isLogged("wrong")) << "no password is ever in the log";
}

TEST_F(HostileServer, CertificatesAreChecked)
{
    for (Protocol protocol : {Protocol::FtpTls, Protocol::Ftps}) {
        demo::Address address = addressOf(protocol, "plain");
        address.bundle = "";
        commands();
        connect(address);
        EXPECT_TRUE(isLogged("The server isn't trusted: ")) << logged();
        EXPECT_EQ(commandsOf("PASS"), Strings{});
    }
    // A server without TLS gets no password either.
    demo::Address address = addressOf(Protocol::FtpTls, "plain");
    address.port = unsigned(atoi(getenv("KRHAUL_FTP_PORT")));
    connect(address);
    EXPECT_EQ(commandsOf("PASS"), Strings{}) << logged();
}

} // namespace
