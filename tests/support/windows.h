// Windows as a test needs them: a parent that keeps what it gets, and waiting for conditions.
#ifndef TESTS_SUPPORT_WINDOWS_H
#define TESTS_SUPPORT_WINDOWS_H

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Handles the messages that are waiting now.
void pumpMessages();

// Handles messages until the condition holds. Returns false if it doesn't for 20 seconds.
bool waitUntil(const std::function<bool()>& condition);

std::string textOf(HWND hwnd);
std::string textOf(HWND hwndDialog, int idControl);

// A string of a module; empty if it has none.
std::string stringOf(HMODULE hModule, UINT id);

// Runs a program, which writes into the given file, to its end. Returns its exit code; messages are
// handled meanwhile.
DWORD runProgram(std::string command, HANDLE hOutput = nullptr);

// What only Wine can do is skipped where this is false.
bool isUnderWine();

// Runs the disabled tests of this program that a filter names, in a copy of it that Wine tells
// that the platform is an old one (3.51). Returns its exit code.
DWORD runOnOldPlatform(const char* pszFilter);

struct Message {
    UINT uMessage;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Message& other) const
    {
        return uMessage == other.uMessage && wParam == other.wParam && lParam == other.lParam;
    }
};

std::ostream& operator<<(std::ostream& stream, const Message& message);

// A visible top-level window that keeps the private messages (0x501 to 0x5FF) it gets.
class ParentWindow {
public:
    ParentWindow();
    ~ParentWindow();
    ParentWindow(const ParentWindow&) = delete;
    ParentWindow& operator=(const ParentWindow&) = delete;

    HWND hwnd() const
    {
        return m_hwnd;
    }
    // What has come since the last call.
    std::vector<Message> messages();

    void keep(const Message& message);

private:
    HWND m_hwnd;
    std::vector<Message> m_messages;
};

#endif
