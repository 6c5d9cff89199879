// The sample caller: a program that transfers files and lets KRHAUL show it.
//
//   main.cpp        the windows and the message loop
//   options.cpp     the command line; address.cpp: addresses of servers
//   connect.cpp     the dialogs that ask for a server and for a password
//   session.cpp     the transfer window; requests.cpp: its callbacks; hostpanes.cpp: its panes
//   transfer.cpp    files moved one by one; statuswindow.cpp: how it is shown
//   copy.cpp        copying with a status window alone
//   work.cpp        the host, and the one piece of work that it does at a time
//   host.h          what is needed of a host; each host is one table
//   folderhost.cpp  the host that is built in
//   curlhost.cpp    servers; curlloop.cpp: libcurl in the message loop; curltrust.cpp: whom it
//                   trusts; listing.cpp: lists of servers
//   names.cpp       names of a host as bytes and as they are shown
//   loop.cpp        what comes later, from the message loop
//   keys.cpp        keys of the keyboard, for the lists
//   language.cpp    the languages that the user can choose
//   ../common/      texts, safe names and unfinished files
#include "address.h"
#include "connect.h"
#include "copy.h"
#include "hostpanes.h"
#include "keys.h"
#include "language.h"
#include "session.h"
#include "statuswindow.h"
#include "work.h"
#include "../../include/krhaul.h"
#include "../common/help.h"

using namespace demo;

namespace {

constexpr char CLASS[] = "KRDEMO";
constexpr char TITLE[] = "Sample caller";
constexpr int LOG_HEIGHT = 130;
constexpr int EXIT_FAILED = 1;

HWND mainWindow;
HWND logWindow;
Options options;

void onCreate(HWND hwnd)
{
    logWindow = CreateWindowExA(WS_EX_CLIENTEDGE, "LISTBOX", "",
                                WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOINTEGRALHEIGHT, 0, 0, 0,
                                0, hwnd, nullptr, nullptr, nullptr);
    SendMessageA(logWindow, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                 0);
}

// ---- hosts and languages, each change of which makes a new transfer window

bool reopenSession()
{
    char folder[MAX_PATH] = "";
    if (sessionWindow() != nullptr) {
        closeSession();
    }
    GetCurrentDirectoryA(MAX_PATH, folder);
    bool opened = openSession(folder, options.language, mainWindow);
    showLanguage(GetMenu(mainWindow), options.language.c_str());
    return opened;
}

// The host keeps the password for as long as it needs it, and nobody else.
bool useHost(Address address)
{
    if (!askForPassword(mainWindow, &address)) {
        return false;
    }
    openHost(address);
    forgetDirectory();
    wipe(&address.password);
    options.host = address;
    return true;
}

void onConnect()
{
    Address address = options.host;
    if (askForServer(mainWindow, &address) && useHost(address)) {
        reopenSession();
    }
}

void useFolder()
{
    if (useHost(readOptions().host)) {
        reopenSession();
    }
}

// The transfer window has its language for life.
void changeLanguage(const char* language)
{
    std::string old = options.language;
    options.language = language;
    if (!reopenSession()) {
        options.language = old;
        reopenSession();
    }
}

void onCommand(UINT id)
{
    if (id == IDM_CONNECT) {
        onConnect();
    } else if (id == IDM_FOLDER) {
        useFolder();
    } else if (id == IDM_EXIT) {
        PostMessageA(mainWindow, WM_CLOSE, 0, 0);
    } else if (const char* language = languageOf(id)) {
        changeLanguage(language);
    }
}

void showPercent(WPARAM percent)
{
    SetWindowTextA(mainWindow, (std::to_string(percent) + "% - " + TITLE).c_str());
}

LRESULT CALLBACK mainProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        onCreate(hwnd);
        return 0;
    case WM_SIZE:
        MoveWindow(logWindow, 0, HIWORD(lParam) - LOG_HEIGHT, LOWORD(lParam), LOG_HEIGHT, TRUE);
        return 0;
    case WM_COMMAND:
        onCommand(LOWORD(wParam));
        return 0;
    case WM_XFERSTAT_PERCENT:
        showPercent(wParam);
        return 0;
    case WM_XFERSTAT_CLOSED:
        SetWindowTextA(hwnd, TITLE);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }
}

void makeWindow(HINSTANCE instance)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = mainProc;
    wndclass.hInstance = instance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    wndclass.hIcon = LoadIconA(instance, CLASS);
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1);
    wndclass.lpszClassName = CLASS;
    RegisterClassA(&wndclass);
    HMENU menu = options.copy ? nullptr : LoadMenuA(instance, CLASS);
    mainWindow = CreateWindowA(CLASS, TITLE, WS_OVERLAPPEDWINDOW, 40, 40, 520, 480, nullptr, menu,
                               instance, nullptr);
    ShowWindow(mainWindow, SW_SHOW);
}

bool isDialogMessage(HWND dialog, MSG* msg)
{
    return dialog != nullptr && IsDialogMessageA(dialog, msg);
}

// The windows of KRHAUL live in the caller's loop: what they can use goes to them first. It ends
// with the window that the user works in.
void runLoop()
{
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (!isKey(sessionWindow(), &msg) && !isDialogMessage(sessionWindow(), &msg) &&
            !isDialogMessage(statusWindow(), &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
        if (!options.copy && sessionWindow() == nullptr) {
            return;
        }
    }
}

int runCopy()
{
    if (startCopy(options, mainWindow, logWindow)) {
        runLoop();
    }
    closeHost();
    closeStatusWindow();
    return hasCopiedAll() ? 0 : EXIT_FAILED;
}

int runSession()
{
    Address address = options.host;
    if ((options.connect && !askForServer(mainWindow, &address)) || !useHost(address) ||
        !openSession(options.local, options.language, mainWindow)) {
        return EXIT_FAILED;
    }
    appendLanguageMenu(GetMenu(mainWindow));
    DrawMenuBar(mainWindow);
    showLanguage(GetMenu(mainWindow), options.language.c_str());
    runLoop();
    if (sessionWindow() != nullptr) {
        closeSession();
    }
    closeHost();
    return 0;
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    options = readOptions();
    sample::useHelpBox();
    if (options.usage) {
        MessageBoxA(nullptr, USAGE, TITLE, MB_OK);
        return 0;
    }
    makeWindow(instance);
    return options.copy ? runCopy() : runSession();
}
