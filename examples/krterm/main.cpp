// KRTERM, a small terminal that transfers files and lets KRHAUL show it. Everything runs on one
// thread, driven by messages.
//
//   main.cpp      the window, its menu and the message loop
//   line.cpp      the connection
//   telnet.cpp    TELNET: takes its commands out of what the host sends, and answers them
//   screen.cpp    what the terminal shows, by libvterm, and the lines that have scrolled away
//   view.cpp      draws that; keys, mouse, selection and clipboard
//   order.cpp     asks what is to be transferred, and tells it the host
//   transfer.cpp  a transfer with its status window
//   modem.h       XMODEM and YMODEM, a state machine: modem.cpp, receiver.cpp, sender.cpp
//   files.cpp     the local files
//
// From KRDEMO come safename.cpp, which names of a host can become local files, and
// unfinished.cpp, a file that is being received.
#include "line.h"
#include "resource.h"
#include "screen.h"
#include "telnet.h"
#include "transfer.h"
#include "view.h"
#include "../../include/krhaul.h"

#include <stdio.h>
#include <string.h>

namespace {

constexpr char CLASS[] = "KRTERM";
constexpr UINT WM_LINE = WM_APP;
constexpr UINT WM_QUESTION = WM_APP + 1;
constexpr UINT TICK_MS = 100;
constexpr int CCH_ADDRESS = 256;

HWND s_hwndMain;
HWND s_hwndView;
Telnet s_telnet;
char s_szAddress[CCH_ADDRESS];

// ---- from the program's parts to each other

void putToProgram(const BYTE* pb, DWORD cb)
{
    sendTelnet(&s_telnet, pb, cb);
}

void showText(const char* pszText)
{
    writeScreen(reinterpret_cast<const BYTE*>(pszText), DWORD(strlen(pszText)));
}

void showNote(const char* pszText)
{
    showText("\r\n[");
    showText(pszText);
    showText("]\r\n");
}

void showTitle(const char* pszPercent)
{
    char szTitle[CCH_ADDRESS + 32];
    snprintf(szTitle, sizeof szTitle, "%s%s%sKRTERM", pszPercent, isLineOpen() ? s_szAddress : "",
             isLineOpen() ? " - " : "");
    SetWindowTextA(s_hwndMain, szTitle);
}

void onOpened()
{
    showTitle("");
}

void onReceived(BYTE* pb, DWORD cb)
{
    DWORD cbData = receiveTelnet(&s_telnet, pb, cb);
    DWORD cbUsed = feedTransfer(pb, cbData);
    if (cbUsed < cbData) {
        writeScreen(pb + cbUsed, cbData - cbUsed);
    }
}

void onClosed(const char* pszWhy)
{
    closeTransfer();
    showNote(pszWhy);
    showTitle("");
}

constexpr LineEvents LINE_EVENTS = {onOpened, onReceived, onClosed};

void onSized(int cRows, int cColumns)
{
    resizeTelnet(&s_telnet, cColumns, cRows);
}

constexpr ViewEvents VIEW_EVENTS = {putToProgram, onSized, isTransferring};
constexpr TransferEvents TRANSFER_EVENTS = {putToProgram, writeScreen};

// ---- commands

void connectTo(const char* pszAddress)
{
    const char* pszWhy;
    lstrcpynA(s_szAddress, pszAddress, CCH_ADDRESS);
    openTelnet(&s_telnet, putLine, screenColumns(), screenRows());
    if (!openLine(s_hwndMain, WM_LINE, s_szAddress, &LINE_EVENTS, &pszWhy)) {
        showNote(pszWhy);
    }
}

void disconnect()
{
    closeTransfer();
    closeLine();
    showTitle("");
}

INT_PTR CALLBACK connectProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM)
{
    if (uMessage == WM_INITDIALOG) {
        SetDlgItemTextA(hdlg, IDC_ADDRESS, s_szAddress);
        return TRUE;
    }
    if (uMessage == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        if (LOWORD(wParam) == IDOK) {
            GetDlgItemTextA(hdlg, IDC_ADDRESS, s_szAddress, CCH_ADDRESS);
        }
        EndDialog(hdlg, LOWORD(wParam));
        return TRUE;
    }
    return FALSE;
}

void askForHost()
{
    if (DialogBoxParamA(GetModuleHandleA(nullptr), "CONNECT", s_hwndMain, connectProc, 0) == IDOK &&
        s_szAddress[0] != '\0') {
        char szAddress[CCH_ADDRESS];
        strcpy(szAddress, s_szAddress);
        disconnect();
        connectTo(szAddress);
    }
}

void transferFiles(bool fSend)
{
    static TransferOrder s_order;
    if (askForOrder(s_hwndMain, fSend, &s_order) && isLineOpen()) {
        startTransfer(&s_order, s_hwndMain, WM_QUESTION, &TRANSFER_EVENTS);
    }
}

void sendFiles()
{
    transferFiles(true);
}

void receiveFiles()
{
    transferFiles(false);
}

void leave()
{
    PostMessageA(s_hwndMain, WM_CLOSE, 0, 0);
}

struct Command {
    UINT id;
    void (*pfnRun)();
};

constexpr Command COMMANDS[] = {
    {IDM_CONNECT, askForHost},       {IDM_DISCONNECT, disconnect}, {IDM_EXIT, leave},
    {IDM_COPY, copySelection},       {IDM_PASTE, paste},           {IDM_SELECTALL, selectAll},
    {IDM_CLEARKEPT, clearKeptLines}, {IDM_SEND, sendFiles},        {IDM_RECEIVE, receiveFiles},
};

void onCommand(UINT id)
{
    for (const Command& command : COMMANDS) {
        if (command.id == id) {
            command.pfnRun();
        }
    }
}

void onMenu(HMENU hmenu)
{
    bool fIdle = isLineOpen() && !isTransferring();
    auto enable = [hmenu](UINT id, bool fEnable) {
        EnableMenuItem(hmenu, id, fEnable ? MF_ENABLED : MF_GRAYED);
    };
    enable(IDM_CONNECT, !isTransferring());
    enable(IDM_DISCONNECT, isLineOpen());
    enable(IDM_COPY, hasSelection());
    enable(IDM_PASTE, fIdle);
    enable(IDM_SEND, fIdle);
    enable(IDM_RECEIVE, fIdle);
}

// ---- the window

LRESULT onCreate(HWND hwnd)
{
    s_hwndMain = hwnd;
    s_hwndView = openView(hwnd, &VIEW_EVENTS);
    SetTimer(hwnd, 1, TICK_MS, nullptr);
    return s_hwndView != nullptr ? 0 : -1;
}

void onPercent(WPARAM nPercent)
{
    char szPercent[16];
    wsprintfA(szPercent, "%u%% - ", UINT(nPercent));
    showTitle(szPercent);
}

void onDestroy()
{
    closeTransfer();
    closeLine();
    closeScreen();
    PostQuitMessage(0);
}

LRESULT CALLBACK mainProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_CREATE:
        return onCreate(hwnd);
    case WM_SIZE:
        MoveWindow(s_hwndView, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        return 0;
    case WM_SETFOCUS:
        SetFocus(s_hwndView);
        return 0;
    case WM_COMMAND:
        onCommand(LOWORD(wParam));
        return 0;
    case WM_INITMENUPOPUP:
        onMenu(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_TIMER:
        tickTransfer();
        return 0;
    case WM_LINE:
        onLineMessage(wParam, lParam);
        return 0;
    case WM_QUESTION:
        askUser();
        return 0;
    case WM_XFERSTAT_PERCENT:
        onPercent(wParam);
        return 0;
    case WM_XFERSTAT_CLOSED:
        showTitle("");
        return 0;
    case WM_DESTROY:
        onDestroy();
        return 0;
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

bool openWindow(HINSTANCE hInstance)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = mainProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    wndclass.hIcon = LoadIconA(hInstance, CLASS);
    wndclass.lpszMenuName = CLASS;
    wndclass.lpszClassName = CLASS;
    if (!registerView(hInstance) || RegisterClassA(&wndclass) == 0) {
        return false;
    }
    SIZE size = sizeOfView(24, 80);
    RECT rc = {0, 0, size.cx, size.cy};
    AdjustWindowRect(&rc, WS_OVERLAPPEDWINDOW, TRUE);
    CreateWindowA(CLASS, CLASS, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, 0, rc.right - rc.left,
                  rc.bottom - rc.top, nullptr, nullptr, hInstance, nullptr);
    return s_hwndMain != nullptr;
}

// The status window lives in the same loop: what it can use goes to it first.
void runLoop()
{
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        HWND hdlg = transferWindow();
        if (hdlg == nullptr || !IsDialogMessageA(hdlg, &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int nShow)
{
    if (!openWindow(hInstance)) {
        return 1;
    }
    ShowWindow(s_hwndMain, nShow);
    if (__argc > 1) {
        connectTo(__argv[1]);
    } else {
        askForHost();
    }
    runLoop();
    return 0;
}
