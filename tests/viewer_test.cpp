// Looking at files: which viewer starts, what it is told, and what becomes of the copies.
#include "../resources/ids.h"
#include "../transfer/window/record.h"
#include "support/imports.h"
#include "support/ledger.h"
#include "support/pane_window.h"

#include <algorithm>
#include <direct.h>
#include <shlwapi.h>
#include <stdio.h>

namespace {

constexpr char QUICKVIEW[] = "SOFTWARE\\Classes\\QuickView";
constexpr char COMMAND[] = "SOFTWARE\\Classes\\QuickView\\shell\\open\\command";
constexpr char TEXT[] = "SOFTWARE\\Classes\\QuickView\\.TXT";
constexpr char TEXT_SUBKEY[] = "SOFTWARE\\Classes\\QuickView\\.TXT\\{1}";

HKEY makeKey(const char* pszKey)
{
    HKEY hKey = nullptr;
    EXPECT_EQ(RegCreateKeyA(HKEY_LOCAL_MACHINE, pszKey, &hKey), ERROR_SUCCESS);
    return hKey;
}

void removeKeys(const char* pszKey)
{
    SHDeleteKeyA(HKEY_LOCAL_MACHINE, pszKey);
}

class Viewer : public PaneWindow {
protected:
    Viewer()
    {
        HKEY hKey;
        EXPECT_NE(RegOpenKeyExA(HKEY_LOCAL_MACHINE, QUICKVIEW, 0, KEY_READ, &hKey), ERROR_SUCCESS)
            << "this system has a quick viewer of its own";
        char szPath[MAX_PATH];
        GetModuleFileNameA(nullptr, szPath, sizeof szPath);
        m_viewer = szPath;
        m_viewer = m_viewer.substr(0, m_viewer.rfind('\\') + 1) + "KRVIEWER ";
        GetTempPathA(sizeof szPath, szPath);
        m_temp = szPath;
        controlFile();
    }
    ~Viewer() override
    {
        removeKeys(QUICKVIEW);
    }

    void registerQuickView(const std::string& command = "qv.exe /x") const
    {
        HKEY hKey = makeKey(COMMAND);
        // A NUL behind the bytes would be stored with them.
        const std::string bytes = command + "#";
        RegSetValueExA(hKey, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(bytes.data()),
                       DWORD(command.size()));
        RegCloseKey(hKey);
        RegCloseKey(makeKey(TEXT_SUBKEY));
    }

    // Returns the command lines that it started, and checks what every call does.
    Strings view(const char* pszFile, const char* pszHost = nullptr, const char* psz3 = "three",
                 const char* psz4 = "four", const char* psz5 = "five")
    {
        StartedPrograms::take();
        record()->fFocusCommandLine = 1;
        vXferDandDDisplayDILText(m_hwnd, "");
        vXferDandDViewFile(m_hwnd, pszFile, pszHost, psz3, psz4, psz5);
        EXPECT_EQ(record()->fFocusCommandLine, 0);
        return StartedPrograms::take();
    }

    // The path of the one control file there is; empty for none.
    std::string controlPath() const
    {
        WIN32_FIND_DATAA find;
        HANDLE hFind = FindFirstFileA((m_temp + "ftp*.tmp").c_str(), &find);
        if (hFind == INVALID_HANDLE_VALUE) {
            return "";
        }
        EXPECT_FALSE(FindNextFileA(hFind, &find));
        FindClose(hFind);
        return m_temp + find.cFileName;
    }

    // What stands in the control file, which goes.
    std::string controlFile() const
    {
        std::string path = controlPath();
        if (path.empty()) {
            return "none";
        }
        std::string bytes = contentsOf(path);
        DeleteFileA(path.c_str());
        return bytes;
    }

    std::string cannotAccess(const std::string& name) const
    {
        return ("Cannot access " + name).substr(0, 259);
    }

    std::string m_viewer, m_temp;

private:
    StartedPrograms m_programs;
};

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

struct Registered {
    const char* pszWhat;
    int cbCommand;       // of the default value; -1 for none
    const char* pszText; // the deepest key for texts
    char ch;             // what fills the command
    UINT uResult;        // of the first launch
    int cQuick;          // launches of the quick viewer
    bool fFallsBack;
};
const Registered REGISTERED[] = {
    {"not at all", -1, nullptr, 'q', 32, 0, true},
    {"with texts", 9, TEXT_SUBKEY, 'q', 32, 1, false},
    {"the longest", 260, TEXT_SUBKEY, 'q', 32, 1, false},
    {"too long", 261, TEXT_SUBKEY, 'q', 32, 0, true},
    {"blank", 9, TEXT_SUBKEY, ' ', 32, 0, true},
    {"empty", 0, TEXT_SUBKEY, 'q', 32, 0, true},
    {"without a command", -1, TEXT_SUBKEY, 'q', 32, 0, true},
    {"text key alone", 9, TEXT, 'q', 32, 0, true},
    {"no text key", 9, nullptr, 'q', 32, 0, true},
    {"doesn't start", 9, TEXT_SUBKEY, 'q', 31, 1, true},
};

TEST_F(Viewer, TheQuickViewerIsUsedIfItKnowsTexts)
{
    open();
    m_dir.makeFile("a file");
    const std::string longest = m_dir.path(std::string(259 - m_dir.path().size() - 1, 'n'));
    for (const Registered& c : REGISTERED) {
        SCOPED_TRACE(c.pszWhat);
        removeKeys(QUICKVIEW);
        std::string command;
        if (c.cbCommand >= 0) {
            command = std::string(size_t(c.cbCommand), c.ch);
            registerQuickView(command);
            removeKeys(TEXT);
        }
        if (c.pszText != nullptr) {
            RegCloseKey(makeKey(c.pszText));
        }
        StartedPrograms::s_results = {c.uResult};
        for (const std::string& file : {m_dir.path("a file"), longest}) {
            Strings expected;
            if (c.cQuick > 0) {
                expected.push_back(command + " " + quoted(file));
            }
            if (c.fFallsBack) {
                expected.push_back(m_viewer + quoted(file));
            }
            EXPECT_EQ(view(file.c_str()), expected);
            EXPECT_EQ(stripText(), "");
            // The same for a copy, which the viewer program finds in a control file.
            Strings launched = view(file.c_str(), "host");
            if (c.fFallsBack) {
                expected.back() = m_viewer + quoted("-ftp1" + controlPath());
            }
            EXPECT_EQ(launched, expected);
            EXPECT_EQ(controlFile(),
                      c.fFallsBack ? "four\r\nthree\r\nhost\r\n" + file + "\r\nfive\r\n" : "none");
        }
    }
}

TEST_F(Viewer, ControlFilesHoldTheirTextsWhole)
{
    open();
    const std::string text(900, 't');
    view("f", text.c_str(), text.c_str(), nullptr, text.c_str());
    EXPECT_EQ(controlFile(), "\r\n" + text + "\r\n" + text + "\r\nf\r\n" + text + "\r\n");
    view("f", "", nullptr, nullptr, nullptr);
    EXPECT_EQ(controlFile(), "\r\n\r\n\r\nf\r\n\r\n");
}

TEST_F(Viewer, ANameThatNoCommandLineCanCarryStartsNothing)
{
    const std::string long259(259, 'n'), long260(260, 'n'), long2000(2000, 'n');
    open();
    for (bool fQuick : {false, true}) {
        if (fQuick) {
            registerQuickView();
        }
        EXPECT_EQ(view(long259.c_str()).size(), 1u);
        for (const char* psz : {"", "a\"b", "\"", long260.c_str(), long2000.c_str()}) {
            EXPECT_EQ(view(psz), Strings{});
            EXPECT_EQ(stripText(), cannotAccess(psz));
            EXPECT_EQ(view(psz, "host"), Strings{});
        }
        EXPECT_EQ(view(nullptr), Strings{});
    }
    vXferDandDViewFile(nullptr, "f", nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(StartedPrograms::take(), Strings{});
    // A row whose path gets too long.
    removeKeys(QUICKVIEW);
    nXferDandDAddLocalFileName(m_hwnd, long259.c_str());
    selectFiles(IDC_DANDD_LOCALFILES, {long259});
    command(IDM_XFER_VIEW);
    EXPECT_EQ(StartedPrograms::take(), Strings{});
    EXPECT_EQ(stripText(), cannotAccess(m_dir.path(long259)));
}

TEST_F(Viewer, EverySelectedFileIsStartedByItself)
{
    m_dir.makeFiles({"a b", "c", "d"});
    open();
    selectFiles(IDC_DANDD_LOCALFILES, {"a b", "d"});
    command(IDM_XFER_VIEW);
    EXPECT_EQ(StartedPrograms::take(),
              (Strings{m_viewer + quoted(m_dir.path("a b")), m_viewer + quoted(m_dir.path("d"))}));
}

// A name that a viewer would take for its option, or that breaks its quotes, reaches it in another
// spelling; all others as they were typed.
TEST_F(Viewer, EveryNameReachesItAsAFile)
{
    const struct {
        const char* pszFile;
        bool fAsTyped[2]; // by the viewer program, by the quick viewer
    } names[] = {
        {"-ftp1notes.txt", {false, true}},
        {".\\-ftp1x", {true, true}},
        {"-notes.txt", {true, true}},
        {"docs\\", {false, false}},
        {"a b", {true, true}},
    };
    auto fullPath = [](const std::string& name) {
        char szPath[MAX_PATH] = "";
        GetFullPathNameA(name.c_str(), sizeof szPath, szPath, nullptr);
        const std::string path = szPath;
        return path.substr(0, path.find_last_not_of('\\') + 1);
    };
    open();
    for (bool fQuick : {false, true}) {
        if (fQuick) {
            registerQuickView("c:\\qv.exe /x");
        }
        for (const auto& c : names) {
            const Strings launched = view(c.pszFile);
            ASSERT_EQ(launched.size(), 1u) << c.pszFile;
            const std::string argument = StartedPrograms::argumentOf(launched[0]);
            EXPECT_TRUE(argument == c.pszFile || !c.fAsTyped[fQuick]) << argument;
            EXPECT_TRUE(fQuick || argument.substr(0, 5) != "-ftp1") << argument;
            EXPECT_NE(argument.back(), '\\');
            EXPECT_EQ(fullPath(argument), fullPath(c.pszFile));
        }
    }
}

// The path of the executable.
std::string s_module;

DWORD WINAPI fakeModuleFileName(HMODULE, LPSTR pszFile, DWORD cch)
{
    lstrcpynA(pszFile, s_module.c_str(), int(cch));
    return std::min(DWORD(s_module.size()), cch);
}

// Not what the platform finds first: a program with the start of its path for a name, or one of its
// name in the directory that downloads land in.
TEST_F(Viewer, OnlyTheViewerItselfStarts)
{
    m_dir.makeDirs({"Program Files", "Program Files\\Emu"});
    m_dir.makeFiles({"Program.exe", "Program Files\\Emu\\KRVIEWER.EXE", "qv.exe"});
    open();
    s_module = m_dir.path("Program Files\\Emu\\APP.EXE");
    ReplacedImport name(library(), "GetModuleFileNameA", fakeModuleFileName);
    for (const char* pszHost : {static_cast<const char*>(nullptr), "host"}) {
        const Strings launched = view("file", pszHost);
        ASSERT_EQ(launched.size(), 1u);
        EXPECT_EQ(StartedPrograms::programOf(launched[0]),
                  m_dir.path("program files\\emu\\krviewer.exe"));
    }
    controlFile();
    registerQuickView("qv.exe /x");
    for (const std::string& command : view("file")) {
        EXPECT_NE(StartedPrograms::programOf(command), m_dir.path("qv.exe")) << command;
    }
}

// The start of a program dispatches what is sent meanwhile.
TEST_F(Viewer, TheWindowCanGoWhileAViewerStarts)
{
    for (bool fQuick : {false, true}) {
        if (fQuick) {
            registerQuickView();
        }
        Ledger ledger; // which shows a late touch
        open();
        StartedPrograms::s_whileStarting = [this] { close(); };
        vXferDandDViewFile(m_hwnd, "copy", "host", "3", "4", "5");
        EXPECT_EQ(m_hwnd, nullptr);
        EXPECT_EQ(Ledger::owed(), "");
        controlFile();
    }
}

// The worst case, and beyond it.
TEST_F(Viewer, ALongFolderIsNeverCut)
{
    const std::string file(259, 'f');
    open();
    ReplacedImport name(library(), "GetModuleFileNameA", fakeModuleFileName);
    const std::string folder = "c:\\" + std::string(250, 'd');
    s_module = folder + "\\app";
    EXPECT_EQ(view(file.c_str()), Strings{folder + "\\KRVIEWER " + quoted(file)});
    const Strings launched = view("f", "host");
    EXPECT_EQ(launched, Strings{folder + "\\KRVIEWER " + quoted("-ftp1" + controlPath())});
    controlFile();
    for (DWORD cch : {260u, 300u}) {
        s_module = "c:\\" + std::string(cch - 7, 'd') + "\\app";
        EXPECT_EQ(view("f"), Strings{});
        EXPECT_EQ(view("f", "host"), Strings{});
        EXPECT_EQ(stripText(), cannotAccess("KRVIEWER "));
    }
    EXPECT_EQ(controlFile(), "none");
}

DWORD s_cchTemp;
std::string s_tempDir;

DWORD WINAPI fakeTempPath(DWORD cch, LPSTR pszPath)
{
    lstrcpynA(pszPath, s_tempDir.c_str(), int(cch));
    return s_cchTemp;
}

UINT WINAPI noTempFile(LPCSTR, LPCSTR, UINT, LPSTR)
{
    return 0;
}

FILE* noFile(const char*, const char*)
{
    return nullptr;
}

// The n-th line, or line end, from now.
int s_nUntilFailure;

int fakePuts(const char* psz, FILE* pFile)
{
    return --s_nUntilFailure == 0 ? EOF : fputs(psz, pFile);
}

int fakePutc(int ch, FILE* pFile)
{
    return --s_nUntilFailure == 0 ? EOF : fputc(ch, pFile);
}

int badClose(FILE* pFile)
{
    fclose(pFile);
    return EOF;
}

// Half a control file would name another copy, or none.
TEST_F(Viewer, WithoutItsControlFileNoViewerStarts)
{
    open();
    auto refused = [&](const char* pszHost = "host") {
        EXPECT_EQ(view("file", pszHost), Strings{});
        EXPECT_EQ(controlFile(), "none");
        return stripText().substr(0, stripText().find_last_of("\\ ") + 1);
    };
    const std::string file = "Cannot access ", folder = cannotAccess(m_temp);
    const struct {
        DWORD cch;
        std::string dir, said;
    } folders[] = {{0, m_temp, file}, {260, m_temp, file}, {9, "c:\\none\\", file + "c:\\none\\"}};
    for (const auto& c : folders) {
        ReplacedImport path(library(), "GetTempPathA", fakeTempPath);
        s_cchTemp = c.cch;
        s_tempDir = c.dir;
        EXPECT_EQ(refused(), c.said);
    }
    EXPECT_EQ((ReplacedImport(library(), "GetTempFileNameA", noTempFile), refused()), folder);
    // One that can't be opened is the one case without a word; it stays, empty as it is.
    EXPECT_EQ((ReplacedImport(library(), "fopen", noFile), view("file", "host")), Strings{});
    EXPECT_EQ(stripText(), "");
    EXPECT_EQ(controlFile(), "");
    EXPECT_EQ((ReplacedImport(library(), "fclose", badClose), refused()), folder);
    for (int n = 1; n <= 5; ++n) {
        s_nUntilFailure = n;
        EXPECT_EQ((ReplacedImport(library(), "fputs", fakePuts), refused()), folder);
        s_nUntilFailure = n;
        EXPECT_EQ((ReplacedImport(library(), "fputc", fakePutc), refused()), folder);
    }
    for (const char* psz : {"a\nb", "a\r", "\x1A"}) {
        EXPECT_EQ(refused(psz), folder);
        EXPECT_EQ(view("file", "host", psz), Strings{});
        EXPECT_EQ(view("file", "host", "", psz), Strings{});
        EXPECT_EQ(view("file", "host", "", "", psz), Strings{});
        EXPECT_EQ(controlFile(), "none");
    }
    // A plain file needs none.
    EXPECT_EQ((ReplacedImport(library(), "fopen", noFile), view("file")),
              Strings{m_viewer + quoted("file")});
}

class Copies : public Viewer {
protected:
    void viewAndClose(bool fOld);
};

// Looks at copies of all kinds, closes the window, and sees what is left.
void Copies::viewAndClose(bool fOld)
{
    registerQuickView();
    open();
    m_dir.makeDirs({"sub"});
    Strings copies;
    for (int n = 0; n < 12; ++n) {
        copies.push_back("copy" + std::to_string(n));
    }
    m_dir.makeFiles(copies);
    m_dir.makeFiles({"twice", "relative", "local", "sub\\relative", "open", "fallback"});
    auto viewCopy = [&](const std::string& name) {
        EXPECT_EQ(view(m_dir.path(name).c_str(), "host").size(), name == "fallback" ? 2u : 1u);
    };
    StartedPrograms::s_results = {};
    for (const std::string& name : copies) {
        viewCopy(name);
    }
    viewCopy("twice");
    viewCopy("twice");
    viewCopy("open");
    view("relative", "host");
    view(m_dir.path("local").c_str());
    StartedPrograms::s_results = {31};
    viewCopy("fallback");
    controlFile();
    _chdir("sub");
    DeleteFileA(m_dir.path("copy7").c_str());
    HANDLE hOpen = CreateFileA(m_dir.path("open").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                               OPEN_EXISTING, 0, nullptr);
    close();
    Strings left = {"fallback", "local", "open", "sub", "sub\\relative"};
    if (fOld) {
        copies.erase(copies.begin() + 7);
        left.insert(left.end(), copies.begin(), copies.end());
        left.insert(left.end(), {"relative", "twice"});
        std::sort(left.begin(), left.end());
    }
    EXPECT_EQ(m_dir.names(), left);
    CloseHandle(hOpen);
    m_dir.enter();
    DeleteFileA("sub\\relative");
    RemoveDirectoryA("sub");
}

TEST_F(Copies, GoWithTheWindow)
{
    viewAndClose(false);
    removeKeys(QUICKVIEW);
    if (!isUnderWine()) {
        GTEST_SKIP() << "Only Wine can pass for an old version.";
    }
    EXPECT_EQ(runOnOldPlatform("Copies.DISABLED_StayOnOldPlatform"), 0u);
}

// Run by the case above, in a program of which the platform says that it is an old one.
TEST_F(Copies, DISABLED_StayOnOldPlatform)
{
    ASSERT_LT(LOBYTE(GetVersion()), 4);
    viewAndClose(true);
}

} // namespace
