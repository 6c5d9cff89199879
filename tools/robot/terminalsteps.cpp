// The terminal with a shell of its own, and files over its line.
#include "looks.h"
#include "steps.h"
#include "user.h"
#include "../../examples/krterm/resource.h"

#include <fstream>
#include <iterator>
#include <stdlib.h>

namespace robot {

namespace {

HWND screen()
{
    return GetWindow(window(), GW_CHILD);
}

bool waitForScreen(const char* part)
{
    return waitFor([=] { return textOf(screen()).find(part) != std::string::npos; });
}

bool waitForNoScreen(const char* part)
{
    return waitFor([=] { return textOf(screen()).find(part) == std::string::npos; });
}

void typeCommand(const char* text)
{
    typeText(text);
    pressKey(VK_RETURN);
}

// Begins on a clean screen.
bool runCommand(const char* text, const char* shown, const char* picture)
{
    typeCommand("clear");
    bool clean = waitForNoScreen(shown);
    typeCommand(text);
    bool found = waitForScreen(shown);
    rest();
    takePictureOf(picture);
    return clean && found;
}

bool logIn()
{
    bool prompted = waitForScreen("$");
    takePictureOf("terminal-start");
    return prompted;
}

bool listInColours()
{
    return runCommand("ls -l --color", "letter.txt", "terminal-ls");
}

bool editALetter()
{
    bool shown = runCommand("vi letter.txt", "7L", "terminal-vi");
    typeCommand(":q");
    return waitForNoScreen("Dear reader") && shown;
}

bool readALetter()
{
    bool shown = runCommand("less letter.txt", "(END)", "terminal-less");
    typeText("q");
    return waitForNoScreen("(END)") && shown;
}

bool watchTheProcesses()
{
    bool shown = runCommand("top", "PID", "terminal-top");
    typeText("q");
    return waitForScreen("$") && shown;
}

std::string clipboard()
{
    std::string text;
    if (OpenClipboard(nullptr)) {
        HANDLE handle = GetClipboardData(CF_TEXT);
        text = handle != nullptr ? static_cast<const char*>(GlobalLock(handle)) : "";
        CloseClipboard();
    }
    return text;
}

// What has scrolled away is marked with the mouse and copied.
bool copyFromTheScrollback()
{
    typeCommand("clear; seq 1000 1099");
    bool counted = waitForScreen("1099");
    holdKey(VK_SHIFT);
    pressKey(VK_PRIOR);
    pressKey(VK_PRIOR);
    letKey(VK_SHIFT);
    counted = waitForScreen("1050") && counted;
    POINT from = {1, 20};
    POINT to = {300, 60};
    ClientToScreen(screen(), &from);
    ClientToScreen(screen(), &to);
    movePointer(from);
    pressButton();
    dragTo(from, to);
    releaseButton();
    takePictureOf("terminal-selection");
    holdKey(VK_CONTROL);
    pressKey(VK_INSERT);
    letKey(VK_CONTROL);
    return waitFor([] { return clipboard().find("10") == 0; }) && counted;
}

bool changeTheSize()
{
    RECT rc;
    GetWindowRect(window(), &rc);
    typeCommand("clear");
    SetWindowPos(window(), nullptr, 0, 0, rc.right - rc.left + 160, rc.bottom - rc.top + 65,
                 SWP_NOMOVE | SWP_NOZORDER);
    typeCommand("stty size");
    bool follows = waitForScreen("29 100");
    takePictureOf("terminal-size");
    SetWindowPos(window(), nullptr, 0, 0, rc.right - rc.left, rc.bottom - rc.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    typeCommand("stty size");
    return waitForScreen("24 80") && follows;
}

// ---- transfers

std::string status()
{
    HWND hdlg = findWindow(IDC_STAT_STATUS);
    return hdlg != nullptr ? textOf(GetDlgItem(hdlg, IDC_STAT_STATUS)) : "";
}

int statusNumber(int id)
{
    HWND hdlg = findWindow(IDC_STAT_STATUS);
    return hdlg != nullptr ? atoi(textOf(GetDlgItem(hdlg, id)).c_str()) : 0;
}

// As the terminal's title tells it.
int percent()
{
    std::string title = textOf(window());
    return title.find('%') != std::string::npos ? atoi(title.c_str()) : 0;
}

bool waitForStatus(const char* part)
{
    return waitFor([=] { return status().find(part) != std::string::npos; });
}

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// The host's folder lies beside ours, and what came from it is the same here.
bool hasArrived(const std::string& name)
{
    std::string here = contents(localPath(name));
    return !here.empty() && here == contents(localPath("..\\host\\" + name));
}

// Opens the dialog by its place in the menu and waits for it.
bool openDialog(WORD vk)
{
    pressWithAlt('T');
    pressKey(vk);
    return waitForBox();
}

void fillLine(WORD vk, const char* text)
{
    pressWithAlt(vk);
    typeOver(text);
}

bool refuseABadCommand()
{
    bool opened = openDialog('R');
    fillLine('H', "big.bin");
    fillLine('C', "sb @x");
    pressKey(VK_RETURN);
    // The box belongs to the dialog, not to the window.
    bool refused = waitFor([] { return FindWindowA("#32770", "KRTERM") != nullptr; });
    rest();
    takePictureOf("terminal-bad-command");
    pressKey(VK_RETURN);
    rest();
    fillLine('C', "sb -k @H");
    takePictureOf("terminal-receive");
    return opened && refused;
}

// The line of this host is a bad one.
bool receiveWithErrors()
{
    pressKey(VK_RETURN);
    bool halfway = waitFor([] {
        return percent() >= 30 && statusNumber(IDC_STAT_ERRORS1) > 2 &&
               statusNumber(IDC_STAT_ERRORS2) > 2;
    });
    takePictureOf("terminal-errors");
    bool ended = waitForStatus("1 file received.");
    takePictureOf("terminal-received");
    pressKey(VK_ESCAPE);
    return waitFor([] { return findWindow(IDC_STAT_STATUS) == nullptr; }) && halfway && ended &&
           hasArrived("big.bin");
}

bool receiveABatch()
{
    bool opened = openDialog('R');
    fillLine('H', "letter.txt notes-*.txt");
    pressKey(VK_RETURN);
    bool ended = waitForStatus("6 files received.");
    takePictureOf("terminal-batch-end");
    pressKey(VK_ESCAPE);
    return waitFor([] { return findWindow(IDC_STAT_STATUS) == nullptr; }) && opened && ended &&
           hasArrived("letter.txt") && hasArrived("notes-5.txt");
}

// By the system's own dialog, and then not after all.
bool cancelASending()
{
    bool opened = openDialog('S');
    pressWithAlt('B');
    rest();
    takePictureOf("terminal-browse");
    typeText("big.bin");
    pressKey(VK_RETURN);
    rest();
    takePictureOf("terminal-send");
    pressWithAlt('C');
    typeOver("rm -f big.bin; rb");
    pressKey(VK_RETURN);
    bool halfway = waitFor([] { return percent() >= 10; });
    pressKey(VK_ESCAPE);
    bool ended = waitForStatus("Cancelled");
    takePictureOf("terminal-cancelled");
    pressKey(VK_ESCAPE);
    return waitFor([] { return findWindow(IDC_STAT_STATUS) == nullptr; }) && opened && halfway &&
           ended;
}

bool goOnInTheShell()
{
    bool alive = runCommand("echo still here | rev", "ereh llits", "terminal-end");
    typeCommand("exit");
    return waitForScreen("The host has closed the connection.") && alive;
}

constexpr Step STEPS[] = {
    {"log in", logIn},
    {"list in colours", listInColours},
    {"edit a letter", editALetter},
    {"read a letter", readALetter},
    {"watch the processes", watchTheProcesses},
    {"copy from the scrollback", copyFromTheScrollback},
    {"change the size", changeTheSize},
    {"refuse a bad host command", refuseABadCommand},
    {"receive over a bad line", receiveWithErrors},
    {"receive a batch", receiveABatch},
    {"cancel a sending", cancelASending},
    {"go on in the shell", goOnInTheShell},
};

} // namespace

StepTable terminalSteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
