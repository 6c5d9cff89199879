// The sample caller: a program that transfers files and lets KRHAUL show it.
//
//   main.cpp        the windows and the message loop
//   session.cpp     the transfer window and its callbacks
//   job.cpp         a transfer, with its status window, a chunk for each turn of the loop
//   copy.cpp        copying with a status window alone
//   check.cpp       reading files, for a thermometer without a total
//   folderhost.cpp  the host that is built in, behind the table of host.h
//   driver.cpp      a user who works the transfer window by himself; the files of steps.h have
//                   what he does, hands.cpp how, looks.cpp what he looks at
//   language.cpp    the languages that the user can choose
//   options.cpp     the command line
//   picture.cpp     pictures of a run that nobody watches
#include "copy.h"
#include "driver.h"
#include "job.h"
#include "language.h"
#include "session.h"

namespace {

constexpr char CLASS[] = "KRDEMO";
constexpr char TITLE[] = "Sample caller";
constexpr DWORD TURN_MS = 10;
constexpr int LOG_HEIGHT = 130;
constexpr int EXIT_FAILED = 1;

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

// The transfer window has its language for life, so another one takes its place.
void changeLanguage(HWND hwnd, const char* pszLanguage)
{
    DemoOptions options = s_options;
    closeSession();
    GetCurrentDirectoryA(MAX_PATH, s_options.szFirst);
    lstrcpynA(s_options.szLanguage, pszLanguage, CCH_LANGUAGE);
    if (!openSession(&s_options, &FOLDER_HOST, hwnd)) {
        s_options = options;
        openSession(&s_options, &FOLDER_HOST, hwnd);
    }
    showLanguage(GetMenu(hwnd), s_options.szLanguage);
}

void onCommand(HWND hwnd, UINT idCommand)
{
    if (const char* pszLanguage = languageOf(idCommand)) {
        changeLanguage(hwnd, pszLanguage);
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
        onCommand(hwnd, LOWORD(wParam));
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
    HWND hwnd = CreateWindowA(CLASS, TITLE, WS_OVERLAPPEDWINDOW, 40, 40, 520, 480, nullptr, nullptr,
                              hInstance, nullptr);
    ShowWindow(hwnd, SW_SHOW);
    return hwnd;
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

// Messages and chunks of work by turns, so that the windows stay alive during a transfer.
// Ends with the window that the user works in.
void runLoop()
{
    while (handleMessages()) {
        if (s_options.fCopy ? !continueCopy() : sessionWindow() == nullptr) {
            return;
        }
        if (!s_options.fCopy) {
            continueSession();
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
    if (!openSession(&s_options, &FOLDER_HOST, hwnd)) {
        return EXIT_FAILED;
    }
    SetMenu(hwnd, makeLanguageMenu());
    showLanguage(GetMenu(hwnd), s_options.szLanguage);
    if (s_options.fDrive) {
        startDriver(&s_options);
    }
    runLoop();
    if (sessionWindow() != nullptr) {
        closeSession();
    }
    return s_options.fDrive ? endDriver() : 0;
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    readOptions(&s_options);
    return s_options.fCopy ? runCopy(hInstance) : runSession(hInstance);
}
