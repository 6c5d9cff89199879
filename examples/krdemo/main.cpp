// The sample caller: a program that transfers files and lets KRHAUL show it.
//
//   main.cpp        the windows and the message loop
//   options.cpp     the command line; address.cpp: addresses of servers
//   connect.cpp     the dialog that asks for a server
//   session.cpp     the transfer window and its callbacks
//   job.cpp         a transfer as the windows show it, with its status window
//   copy.cpp        copying with a status window alone
//   worker.cpp      the thread that works with the host
//   move.cpp        its transfers; tasks.cpp: what else it does
//   safename.cpp    which names of a host can become local files
//   host.h          what is needed of a host; each host is one table
//   folderhost.cpp  the host that is built in
//   ftphost.cpp     a server, with names and texts by ftpnames.cpp
//   language.cpp    the languages that the user can choose
#include "connect.h"
#include "copy.h"
#include "job.h"
#include "language.h"
#include "session.h"
#include "worker.h"

namespace {

constexpr char CLASS[] = "KRDEMO";
constexpr char TITLE[] = "Sample caller";
constexpr DWORD TURN_MS = 10;
constexpr int LOG_HEIGHT = 130;
constexpr int EXIT_FAILED = 1;

HWND s_hwndMain;
HWND s_hwndLog;
DemoOptions s_options;

void onCreate(HWND hwnd)
{
    s_hwndLog = CreateWindowExA(WS_EX_CLIENTEDGE, "LISTBOX", "",
                                WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOINTEGRALHEIGHT, 0, 0, 0,
                                0, hwnd, nullptr, nullptr, nullptr);
    SendMessageA(s_hwndLog, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                 0);
}

// The session goes on in a new transfer window. If there is none to be had that way, all stays
// as it was before, which the old options say.
void reopenSession(const DemoOptions* pOld)
{
    if (sessionWindow() != nullptr) {
        closeSession();
    }
    GetCurrentDirectoryA(MAX_PATH, s_options.szFirst);
    if (!openSession(&s_options, s_hwndMain)) {
        s_options = *pOld;
        openSession(&s_options, s_hwndMain);
    }
    showLanguage(GetMenu(s_hwndMain), s_options.szLanguage);
}

void onConnect()
{
    DemoOptions old = s_options;
    if (askForServer(s_hwndMain, &s_options.server)) {
        s_options.fServer = true;
        reopenSession(&old);
    }
}

void useFolder()
{
    DemoOptions old = s_options;
    s_options.fServer = false;
    reopenSession(&old);
}

// The transfer window has its language for life.
void changeLanguage(const char* pszLanguage)
{
    DemoOptions old = s_options;
    lstrcpynA(s_options.szLanguage, pszLanguage, CCH_LANGUAGE);
    reopenSession(&old);
}

void onCommand(UINT idCommand)
{
    if (idCommand == IDM_CONNECT) {
        onConnect();
    } else if (idCommand == IDM_FOLDER) {
        useFolder();
    } else if (idCommand == IDM_EXIT) {
        PostMessageA(s_hwndMain, WM_CLOSE, 0, 0);
    } else if (const char* pszLanguage = languageOf(idCommand)) {
        changeLanguage(pszLanguage);
    }
}

LRESULT CALLBACK mainProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_CREATE:
        onCreate(hwnd);
        return 0;
    case WM_SIZE:
        MoveWindow(s_hwndLog, 0, HIWORD(lParam) - LOG_HEIGHT, LOWORD(lParam), LOG_HEIGHT, TRUE);
        return 0;
    case WM_COMMAND:
        onCommand(LOWORD(wParam));
        return 0;
    case WM_XFERSTAT_PERCENT:
        copyPercent(hwnd, wParam);
        return 0;
    case WM_XFERSTAT_CLOSED:
        SetWindowTextA(hwnd, TITLE);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

HWND makeWindow(HINSTANCE hInstance)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = mainProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    wndclass.hIcon = LoadIconA(hInstance, CLASS);
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1);
    wndclass.lpszClassName = CLASS;
    RegisterClassA(&wndclass);
    HMENU hmenu = s_options.fCopy ? nullptr : LoadMenuA(hInstance, CLASS);
    s_hwndMain = CreateWindowA(CLASS, TITLE, WS_OVERLAPPEDWINDOW, 40, 40, 520, 480, nullptr, hmenu,
                               hInstance, nullptr);
    ShowWindow(s_hwndMain, SW_SHOW);
    return s_hwndMain;
}

bool isDialogMessage(HWND hdlg, MSG* pMsg)
{
    return hdlg != nullptr && IsDialogMessageA(hdlg, pMsg);
}

// The windows of KRHAUL live in the caller's loop: what they can use goes to them first.
// Gives false when the program is to end.
bool handleMessages()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        if (msg.message == WM_QUIT) {
            return false;
        }
        if (!isDialogMessage(sessionWindow(), &msg) && !isDialogMessage(jobWindow(), &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
    return true;
}

// Ends with the window that the user works in.
void runLoop()
{
    while (handleMessages()) {
        if (s_options.fCopy) {
            continueCopy();
        } else if (sessionWindow() == nullptr) {
            return;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, TURN_MS, QS_ALLINPUT);
    }
}

int runCopy(HINSTANCE hInstance)
{
    HWND hwnd = makeWindow(hInstance);
    if (startCopy(&s_options, hwnd, s_hwndLog)) {
        runLoop();
    }
    endCopy();
    return hasCopiedAll() ? 0 : EXIT_FAILED;
}

int runSession(HINSTANCE hInstance)
{
    HWND hwnd = makeWindow(hInstance);
    if (s_options.fConnect) {
        s_options.fServer = askForServer(hwnd, &s_options.server);
    }
    if ((s_options.fConnect && !s_options.fServer) || !openSession(&s_options, hwnd)) {
        return EXIT_FAILED;
    }
    appendLanguageMenu(GetMenu(hwnd));
    DrawMenuBar(hwnd);
    showLanguage(GetMenu(hwnd), s_options.szLanguage);
    runLoop();
    if (sessionWindow() != nullptr) {
        closeSession();
    }
    return 0;
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    readOptions(&s_options);
    return s_options.fCopy ? runCopy(hInstance) : runSession(hInstance);
}
