#include "pane_window.h"
#include "../../examples/krutils/krutils.h"
#include "../../resources/ids.h"
#include "../../transfer/window/record.h"

#include <algorithm>
#include <direct.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

HMODULE library()
{
    return GetModuleHandleA("KRHAUL.DLL");
}

std::string lower(std::string text)
{
    CharLowerBuffA(&text[0], DWORD(text.size()));
    return text;
}

Strings split(const std::string& text, char chAt)
{
    Strings parts;
    for (size_t nFrom = 0; nFrom < text.size();) {
        size_t nTo = std::min(text.find(chAt, nFrom), text.size());
        parts.push_back(text.substr(nFrom, nTo - nFrom));
        nFrom = nTo + 1;
    }
    return parts;
}

Strings recorded()
{
    std::string text(size_t(KrGetRecordedText(nullptr, 0)) + 1, '\0');
    KrGetRecordedText(&text[0], int(text.size()));
    KrForgetRecordedText();
    Strings lines = split(text.c_str(), '\n');
    for (std::string& line : lines) {
        line.pop_back(); // its carriage return
    }
    return lines;
}

namespace {

std::function<void()> s_inRecord;

void WINAPI fakeRecordAction(HWND, int, const char*)
{
    s_inRecord();
}

void WINAPI fakeRecordCommand(HWND, const char*)
{
    s_inRecord();
}

} // namespace

InRecord::InRecord(std::function<void()> act)
    : m_action(library(), "KRUTILS.DLL", 41, fakeRecordAction),
      m_command(library(), "KRUTILS.DLL", 22, fakeRecordCommand)
{
    s_inRecord = std::move(act);
}

std::string currentDir()
{
    char szDir[MAX_PATH] = "";
    _getcwd(szDir, sizeof szDir);
    return lower(szDir);
}

std::string contentsOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TempDir::TempDir()
{
    static int s_nMade;
    char szTemp[MAX_PATH];
    m_before = currentDir();
    GetTempPathA(sizeof szTemp, szTemp);
    // A name that a typed path can end in, and that nobody else has.
    do {
        m_path = lower(szTemp) + "kr" + std::to_string(s_nMade++);
    } while (!CreateDirectoryA(m_path.c_str(), nullptr) && GetLastError() == ERROR_ALREADY_EXISTS &&
             s_nMade < 100000);
    enter();
}

TempDir::~TempDir()
{
    EXPECT_EQ(_chdir(m_before.c_str()), 0);
    for (const std::string& name : names()) {
        SetFileAttributesA(path(name).c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    std::filesystem::remove_all(m_path);
}

void TempDir::makeFile(const std::string& name, size_t cb) const
{
    std::ofstream file(path(name), std::ios::binary);
    EXPECT_TRUE(file << std::string(cb, 'x')) << name;
}

void TempDir::makeFiles(const Strings& names) const
{
    for (const std::string& name : names) {
        makeFile(name);
    }
}

void TempDir::makeDirs(const Strings& names) const
{
    for (const std::string& name : names) {
        EXPECT_TRUE(CreateDirectoryA(path(name).c_str(), nullptr)) << name;
    }
}

void TempDir::enter() const
{
    EXPECT_EQ(_chdir(m_path.c_str()), 0) << m_path;
}

bool TempDir::holds(const std::string& name) const
{
    return GetFileAttributesA(path(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

Strings TempDir::names() const
{
    Strings names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_path)) {
        names.push_back(entry.path().string().substr(m_path.size() + 1));
    }
    std::sort(names.begin(), names.end());
    return names;
}

namespace {

std::string cell(XferFileList list, LONG nRow, LONG nColumn)
{
    char szName[300];
    return XferFileList_lpszGetString(list, nRow, nColumn, szName, sizeof szName);
}

// The names of one column, each with what the other one holds behind a "=".
std::string take(XferFileList list, LONG nColumn)
{
    std::string names;
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        const std::string other = cell(list, n, 1 - nColumn);
        names += " " + cell(list, n, nColumn) + (other.empty() ? "" : "=" + other);
    }
    XferFileList_vDestroy(list);
    return names;
}

constexpr char RECEIVE[] = "receive";
constexpr char REMOVE[] = "delete";
constexpr char DETAILS[] = "details";
constexpr char VIEW[] = "view";
constexpr char MAKE_DIR[] = "mkdir ";
constexpr char CHANGE_DIR[] = "chdir ";
constexpr char REMOVE_DIR[] = "rmdir ";
constexpr char COMMAND[] = "command ";
constexpr char FILTER[] = "filter ";

} // namespace

// The functions of the table; those with the same arguments differ in the name of the request.
struct PaneWindow::Caller {
    static void ask(DWORD dw, const std::string& request)
    {
        reinterpret_cast<PaneWindow*>(dw)->hear(request);
    }
    static void KRHAULAPI send(DWORD dw, DWORD, DWORD, XferFileList list, DWORD, const char* pszDir)
    {
        ask(dw, "send" + take(list, XFERLIST_LOCAL) +
                    (pszDir == nullptr ? "" : " > " + std::string(pszDir)));
    }
    template <const char* NAME, typename... Args>
    static void KRHAULAPI files(DWORD dw, DWORD, DWORD, XferFileList list, Args...)
    {
        ask(dw, NAME + take(list, XFERLIST_HOST));
    }
    static void KRHAULAPI rename(DWORD dw, DWORD, DWORD, const char* pszOld, const char* pszNew)
    {
        ask(dw, "rename " + std::string(pszOld) + " " + pszNew);
    }
    template <const char* NAME> static void KRHAULAPI text(DWORD dw, DWORD, DWORD, const char* psz)
    {
        ask(dw, NAME + std::string(psz));
    }
    template <const char* NAME>
    static void KRHAULAPI dir(DWORD dw, DWORD, DWORD, const char* pszDir, DWORD fFromList)
    {
        ask(dw, NAME + std::string(pszDir) + " " + std::to_string(fFromList));
    }
    static DWORD KRHAULAPI confirm(DWORD dw, DWORD dwFlags, DWORD fSet)
    {
        EXPECT_TRUE(fSet != 0 || dwFlags == 0);
        ask(dw, fSet != 0 ? "flags " + std::to_string(dwFlags) : "flags");
        return reinterpret_cast<PaneWindow*>(dw)->m_dwConfirm;
    }
    static void KRHAULAPI mode(DWORD dw, DWORD dw1, DWORD dw2, DWORD nMode)
    {
        auto pThis = reinterpret_cast<PaneWindow*>(dw);
        EXPECT_TRUE(dw1 == 0 && dw2 == 0);
        pThis->m_modes.push_back(nMode);
        if (pThis->m_whenModeChanges) {
            pThis->m_whenModeChanges();
        }
    }
};

PaneWindow::PaneWindow()
    : m_callbacks{sizeof(HostCallbacks),   Caller::send,
                  Caller::files<RECEIVE>,  Caller::files<REMOVE>,
                  Caller::rename,          Caller::text<MAKE_DIR>,
                  Caller::dir<CHANGE_DIR>, Caller::dir<REMOVE_DIR>,
                  Caller::confirm,         Caller::text<COMMAND>,
                  Caller::text<FILTER>,    Caller::mode,
                  Caller::files<DETAILS>,  Caller::files<VIEW>}
{
}

PaneWindow::~PaneWindow()
{
    close();
    FreeLibrary(m_hEnglish);
}

void PaneWindow::hear(const std::string& request)
{
    m_requests.push_back(request);
    if (m_inRequest) {
        m_inRequest();
    }
}

HWND PaneWindow::createOnly(HWND hwndParent, DWORD nViewMode)
{
    return hdlgXferDandDCreate2("Title", hwndParent, nullptr, DWORD(this), &m_callbacks, nViewMode);
}

void PaneWindow::create(DWORD nViewMode)
{
    m_modes.clear();
    m_hwnd = createOnly(m_parent.hwnd(), nViewMode);
    ASSERT_NE(m_hwnd, nullptr);
    ASSERT_TRUE(waitUntil([&] { return !m_modes.empty(); }));
    pumpMessages();
}

void PaneWindow::open(DWORD nViewMode)
{
    create(nViewMode);
    vXferDandDSetBusyState(m_hwnd, 0);
    heard();
}

void PaneWindow::close()
{
    EXPECT_EQ(nXferDandDDestroy(m_hwnd), 0);
    EXPECT_FALSE(IsWindow(m_hwnd));
    m_hwnd = nullptr;
}

void PaneWindow::setMode(DWORD nViewMode) const
{
    command(nViewMode != 0 ? IDM_XFER_COMMANDLINE : IDM_XFER_TWOPANE);
}

void PaneWindow::setClientSize(LONG cx, LONG cy) const
{
    // Twice, as in a narrow window the menu breaks into two lines.
    for (int n = 0; n < 2; ++n) {
        RECT rcWindow, rcClient;
        GetWindowRect(m_hwnd, &rcWindow);
        GetClientRect(m_hwnd, &rcClient);
        SetWindowPos(m_hwnd, nullptr, 0, 0, rcWindow.right - rcWindow.left - rcClient.right + cx,
                     rcWindow.bottom - rcWindow.top - rcClient.bottom + cy,
                     SWP_NOMOVE | SWP_NOZORDER);
    }
}

INT_PTR PaneWindow::ask(UINT uMessage, WPARAM wParam, LPARAM lParam) const
{
    return CallWindowProcA(reinterpret_cast<WNDPROC>(GetWindowLongA(m_hwnd, DWL_DLGPROC)), m_hwnd,
                           uMessage, wParam, lParam);
}

void PaneWindow::notify(int idControl, UINT nNotification) const
{
    SendMessageA(m_hwnd, WM_COMMAND, MAKEWPARAM(idControl, nNotification), LPARAM(item(idControl)));
}

void PaneWindow::enter(int idControl) const
{
    SetFocus(item(idControl));
    command(IDOK);
}

void PaneWindow::type(int idControl, const std::string& text) const
{
    SetDlgItemTextA(m_hwnd, idControl, text.c_str());
}

Strings PaneWindow::rows(int idControl) const
{
    bool fCombo = idControl == IDC_DANDD_LOCALDRIVES || idControl == IDC_DANDD_LOCALTYPES;
    Strings texts;
    char szText[1024];
    LRESULT cRows = tell(idControl, fCombo ? CB_GETCOUNT : LB_GETCOUNT);
    for (LRESULT n = 0; n < cRows; ++n) {
        tell(idControl, fCombo ? CB_GETLBTEXT : LB_GETTEXT, WPARAM(n), LPARAM(szText));
        texts.push_back(szText);
    }
    return texts;
}

LONG PaneWindow::rowOf(int idControl, const std::string& text) const
{
    Strings all = rows(idControl);
    auto it = std::find(all.begin(), all.end(), text);
    EXPECT_NE(it, all.end()) << text;
    return LONG(it - all.begin());
}

void PaneWindow::selectRow(int idDirList, const std::string& text) const
{
    SetFocus(item(idDirList));
    tell(idDirList, LB_SETCURSEL, WPARAM(rowOf(idDirList, text)));
}

void PaneWindow::selectFiles(int idFileList, const Strings& names) const
{
    tell(idFileList, LB_SETSEL, FALSE, -1);
    for (const std::string& name : names) {
        tell(idFileList, LB_SETSEL, TRUE, rowOf(idFileList, name));
    }
}

void PaneWindow::selectOnly(int idFileList, const Strings& names) const
{
    selectFiles(IDC_DANDD_LOCALFILES, {});
    selectFiles(IDC_DANDD_HOSTFILES, {});
    selectFiles(idFileList, names);
}

Strings PaneWindow::selected(int idFileList) const
{
    Strings all = rows(idFileList);
    Strings names;
    for (size_t n = 0; n < all.size(); ++n) {
        if (tell(idFileList, LB_GETSEL, n) > 0) {
            names.push_back(all[n]);
        }
    }
    return names;
}

LONG PaneWindow::columnWidth(int idFileList) const
{
    RECT rc = {};
    tell(idFileList, LB_GETITEMRECT, 0, LPARAM(&rc));
    return rc.right - rc.left;
}

void PaneWindow::goHome() const
{
    m_dir.enter();
    vXferDandDRefreshLocalFiles(m_hwnd);
}

void PaneWindow::feedHost(const Strings& files) const
{
    vXferDandDSetBusyState(m_hwnd, 1);
    nXferDandDClearHostFileList(m_hwnd);
    vXferDandDPrintWorkingDir(m_hwnd, "work", "/work");
    nXferDandDAddHostSubDir(m_hwnd, "two");
    nXferDandDAddHostSubDir(m_hwnd, "one");
    for (const std::string& file : files) {
        nXferDandDAddHostFileName(m_hwnd, file.c_str());
    }
    vXferDandDSetBusyState(m_hwnd, 0);
}

std::string PaneWindow::stripText() const
{
    return record()->szStripText;
}

Strings PaneWindow::log() const
{
    std::string all(40000, '\0');
    all.resize(size_t(GetDlgItemTextA(m_hwnd, IDC_DANDD_INFOLINE, &all[0], int(all.size()))));
    Strings entries = split(all, '\n');
    for (std::string& entry : entries) {
        entry.erase(std::remove(entry.begin(), entry.end(), '\r'), entry.end());
    }
    // Every entry begins with a line end, so the first line is empty.
    entries.erase(entries.begin(), entries.begin() + !entries.empty());
    return entries;
}

Strings PaneWindow::requests()
{
    return std::exchange(m_requests, {});
}

std::string PaneWindow::heard()
{
    std::string all;
    for (const Strings& lines : {requests(), recorded()}) {
        for (const std::string& line : lines) {
            all += (all.empty() ? "" : "|") + line;
        }
    }
    return all;
}
