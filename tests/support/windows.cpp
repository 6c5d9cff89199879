#include "windows.h"

#include <string.h>

#include <ostream>
#include <utility>

namespace {

constexpr DWORD WAIT_MS = 20000;
constexpr char CLASS[] = "TestParent";

LRESULT CALLBACK parentProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    auto pParent = reinterpret_cast<ParentWindow*>(GetWindowLongA(hwnd, GWL_USERDATA));
    if (pParent != nullptr && uMessage > 0x500 && uMessage < 0x600) {
        pParent->keep({uMessage, wParam, lParam});
    }
    return DefWindowProcA(hwnd, uMessage, wParam, lParam);
}

} // namespace

void pumpMessages()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

bool waitUntil(const std::function<bool()>& condition)
{
    DWORD dwStart = GetTickCount();
    for (;;) {
        pumpMessages();
        if (condition()) {
            return true;
        }
        if (GetTickCount() - dwStart > WAIT_MS) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
}

std::string textOf(HWND hwnd)
{
    char szText[512] = "";
    // Wine leaves rubbish in the buffer for what is no window.
    if (!IsWindow(hwnd)) {
        return "";
    }
    GetWindowTextA(hwnd, szText, sizeof szText);
    return szText;
}

std::string textOf(HWND hwndDialog, int idControl)
{
    return textOf(GetDlgItem(hwndDialog, idControl));
}

std::string stringOf(HMODULE hModule, UINT id)
{
    char szText[512] = "";
    LoadStringA(hModule, id, szText, sizeof szText);
    return szText;
}

DWORD runProgram(std::string command, HANDLE hOutput)
{
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    start.dwFlags = hOutput != nullptr ? STARTF_USESTDHANDLES : 0;
    start.hStdOutput = hOutput;
    PROCESS_INFORMATION process = {};
    DWORD dwExit = MAXDWORD;
    if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &process)) {
        while (MsgWaitForMultipleObjects(1, &process.hProcess, FALSE, INFINITE, QS_ALLINPUT) !=
               WAIT_OBJECT_0) {
            pumpMessages();
        }
        GetExitCodeProcess(process.hProcess, &dwExit);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    return dwExit;
}

bool isUnderWine()
{
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

DWORD runOnOldPlatform(const char* pszFilter)
{
    constexpr char KEY[] = "Software\\Wine\\AppDefaults\\OLD351.exe";
    char szSelf[MAX_PATH];
    HKEY hkey;
    GetModuleFileNameA(nullptr, szSelf, sizeof szSelf);
    const std::string copy = std::string(szSelf, strrchr(szSelf, '\\') + 1) + "OLD351.exe";
    if (!CopyFileA(szSelf, copy.c_str(), FALSE) ||
        RegCreateKeyA(HKEY_CURRENT_USER, KEY, &hkey) != ERROR_SUCCESS) {
        return MAXDWORD;
    }
    RegSetValueExA(hkey, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>("nt351"), 6);
    RegCloseKey(hkey);
    DWORD dwExit =
        runProgram("\"" + copy + "\" --gtest_also_run_disabled_tests --gtest_filter=" + pszFilter);
    RegDeleteKeyA(HKEY_CURRENT_USER, KEY);
    return waitUntil([&] { return DeleteFileA(copy.c_str()) != 0; }) ? dwExit : MAXDWORD;
}

std::ostream& operator<<(std::ostream& stream, const Message& message)
{
    return stream << std::hex << "{0x" << message.uMessage << ", " << std::dec << message.wParam
                  << ", " << message.lParam << "}";
}

ParentWindow::ParentWindow()
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = parentProc;
    wndclass.lpszClassName = CLASS;
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    RegisterClassA(&wndclass);
    m_hwnd = CreateWindowA(CLASS, "Parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 500, 300, 200,
                           nullptr, nullptr, nullptr, nullptr);
    SetWindowLongA(m_hwnd, GWL_USERDATA, reinterpret_cast<LONG>(this));
}

ParentWindow::~ParentWindow()
{
    DestroyWindow(m_hwnd);
    pumpMessages();
}

std::vector<Message> ParentWindow::messages()
{
    pumpMessages();
    return std::exchange(m_messages, {});
}

void ParentWindow::keep(const Message& message)
{
    m_messages.push_back(message);
}
