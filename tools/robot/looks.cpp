#include "looks.h"
#include "picture.h"
#include "user.h"
#include "../../toolbar/toolbar.h"

#include <fstream>
#include <iterator>
#include <string.h>

namespace robot {

namespace {

constexpr DWORD PATIENCE_MS = 30000;
constexpr DWORD LOOK_MS = 20;
constexpr DWORD REST_MS = 300;
constexpr size_t CCH_LONGEST = 30001;
constexpr LONG STRIP_HEIGHT = 26;

PROCESS_INFORMATION process;
HWND driven;
std::string picturesFolder;
std::string localFolder;
std::string hostFolder;

struct Search {
    int idControl;
    HWND found;
};

BOOL CALLBACK checkWindow(HWND hwnd, LPARAM lParam)
{
    auto search = reinterpret_cast<Search*>(lParam);
    DWORD idProcess = 0;
    GetWindowThreadProcessId(hwnd, &idProcess);
    bool fits = idProcess == process.dwProcessId && IsWindowVisible(hwnd) &&
                (search->idControl == 0 || GetDlgItem(hwnd, search->idControl) != nullptr);
    search->found = fits ? hwnd : nullptr;
    return !fits;
}

std::string join(const std::string& folder, const std::string& name)
{
    return folder + (folder.back() == '\\' ? "" : "\\") + name;
}

std::string contentsOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : path;
}

// A menu can't be asked by another program, its twin in the toolbar can.
bool hasButtonState(UINT idCommand, UINT message)
{
    return SendMessageA(control(IDC_DANDD_TOOLBAR), message, idCommand, 0) > 0;
}

} // namespace

// ---- the program

bool startProgram(const std::string& name, const std::string& arguments)
{
    char folder[MAX_PATH] = "";
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    GetModuleFileNameA(nullptr, folder, MAX_PATH);
    *(strrchr(folder, '\\') + 1) = '\0';
    std::string command = "\"" + (folder + name) + "\" " + arguments;
    return CreateProcessA(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &process) != 0;
}

bool endProgram()
{
    DWORD exitCode = 1;
    if (window() != nullptr) {
        PostMessageA(window(), WM_CLOSE, 0, 0);
    }
    if (WaitForSingleObject(process.hProcess, PATIENCE_MS) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, exitCode);
    }
    GetExitCodeProcess(process.hProcess, &exitCode);
    return exitCode == 0;
}

HWND findWindow(int idControl)
{
    Search search = {idControl, nullptr};
    EnumWindows(checkWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool waitForWindow(int idControl)
{
    return waitFor([idControl] {
        driven = findWindow(idControl);
        return driven != nullptr;
    });
}

HWND window()
{
    return IsWindow(driven) ? driven : nullptr;
}

HWND control(int id)
{
    return GetDlgItem(window(), id);
}

bool waitFor(const std::function<bool()>& holds)
{
    DWORD start = GetTickCount();
    while (!holds()) {
        if (GetTickCount() - start > PATIENCE_MS) {
            return false;
        }
        Sleep(LOOK_MS);
    }
    return true;
}

void rest()
{
    Sleep(REST_MS);
}

// ---- rows

int rowOf(int idList, const char* name)
{
    return int(SendMessageA(control(idList), LB_FINDSTRINGEXACT, WPARAM(-1),
                            reinterpret_cast<LPARAM>(name)));
}

POINT rowPoint(int idList, const char* name)
{
    return pointOfRow(control(idList), rowOf(idList, name));
}

bool waitForRow(int idList, const char* name)
{
    return waitFor([=] { return rowOf(idList, name) != LB_ERR; });
}

bool waitForNoRow(int idList, const char* name)
{
    return waitFor([=] { return rowOf(idList, name) == LB_ERR; });
}

bool waitForRowInSight(int idList, const char* name)
{
    return waitFor([=] {
        RECT rc = {};
        RECT rcClient = {};
        int row = rowOf(idList, name);
        SendMessageA(control(idList), LB_GETITEMRECT, WPARAM(row), reinterpret_cast<LPARAM>(&rc));
        GetClientRect(control(idList), &rcClient);
        return row != LB_ERR && rc.left >= 0 && rc.top >= 0 && rc.right <= rcClient.right &&
               rc.bottom <= rcClient.bottom;
    });
}

// ---- the rest of the windows

// Asks the control itself: the platform only knows the captions of another program's windows.
std::string textOf(HWND hwnd)
{
    std::string text(CCH_LONGEST, '\0');
    text.resize(
        size_t(SendMessageA(hwnd, WM_GETTEXT, CCH_LONGEST, reinterpret_cast<LPARAM>(&text[0]))));
    return text;
}

bool waitForIdle()
{
    return waitFor([] { return hasButtonState(IDM_XFER_TRANSFER, TOOLM_ISENABLED); });
}

bool waitForBusy()
{
    return waitFor([] { return findWindow(IDC_STAT_STATUS) != nullptr; });
}

bool waitForControl(int id)
{
    return waitFor([id] { return IsWindowVisible(control(id)) != 0; });
}

bool waitForText(int id, const char* text)
{
    return waitFor([=] { return textOf(control(id)) == text; });
}

bool waitForLog(const char* text)
{
    return waitFor(
        [text] { return textOf(control(IDC_DANDD_INFOLINE)).find(text) != std::string::npos; });
}

bool waitForCheckedButton(UINT idCommand)
{
    return waitFor([idCommand] { return hasButtonState(idCommand, TOOLM_ISCHECKED); });
}

bool isBoxOpen()
{
    HWND hwnd = GetForegroundWindow();
    return hwnd != window() && GetWindow(hwnd, GW_OWNER) == window();
}

bool waitForBox()
{
    bool box = waitFor(isBoxOpen);
    rest();
    return box;
}

bool waitForQuestion(const char* text)
{
    bool asked = waitFor([text] {
        return isBoxOpen() &&
               FindWindowExA(GetForegroundWindow(), nullptr, "Static", text) != nullptr;
    });
    rest();
    return asked;
}

bool waitForNoBox()
{
    bool noBox = waitFor([] { return GetForegroundWindow() == window(); });
    rest();
    return noBox;
}

DWORD sumOfStrip()
{
    RECT rc = {};
    GetClientRect(window(), &rc);
    rc.top = rc.bottom - STRIP_HEIGHT;
    MapWindowPoints(window(), nullptr, reinterpret_cast<POINT*>(&rc), 2);
    return sumOfScreen(&rc);
}

bool waitForOtherStrip(DWORD sum)
{
    return waitFor([sum] { return sumOfStrip() != sum; });
}

bool waitForStrip(DWORD sum)
{
    return waitFor([sum] { return sumOfStrip() == sum; });
}

// ---- the disk

void setFolders(const char* pictures, const char* local, const char* host)
{
    picturesFolder = pictures;
    localFolder = local;
    hostFolder = host;
}

std::string localPath(const std::string& name)
{
    return join(localFolder, name);
}

std::string hostPath(const std::string& name)
{
    return join(hostFolder, name);
}

bool isThere(const std::string& path)
{
    WIN32_FIND_DATAA find;
    HANDLE hFind = FindFirstFileA(path.c_str(), &find);
    return hFind != INVALID_HANDLE_VALUE && FindClose(hFind);
}

bool waitForLocal(const char* name)
{
    return waitFor([name] { return isThere(localPath(name)); });
}

bool waitForHost(const char* name)
{
    return waitFor([name] { return isThere(hostPath(name)); });
}

bool waitForNoLocal(const char* name)
{
    return waitFor([name] { return !isThere(localPath(name)); });
}

bool waitForNoHost(const char* name)
{
    return waitFor([name] { return !isThere(hostPath(name)); });
}

bool areEqual(const char* localName, const char* hostName)
{
    return contentsOf(localPath(localName)) == contentsOf(hostPath(hostName));
}

void takePictureOf(const RECT& rc, const char* name)
{
    rest();
    takePicture(&rc, join(picturesFolder, name + std::string(".bmp")).c_str());
}

void takePictureOf(HWND hwnd, const char* name)
{
    RECT rc = {};
    GetWindowRect(hwnd, &rc);
    takePictureOf(rc, name);
}

void takePictureOf(const char* name)
{
    takePictureOf(window(), name);
}

} // namespace robot
