#include "terminal.h"
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

HWND mainWindow;
HWND viewWindow;
Telnet telnet;
char address[CCH_ADDRESS];

// ---- from the program's parts to each other

void putToProgram(const BYTE* bytes, DWORD count)
{
    sendTelnet(&telnet, bytes, count);
}

void showText(const char* text)
{
    writeScreen(reinterpret_cast<const BYTE*>(text), DWORD(strlen(text)));
}

void showNote(const char* text)
{
    showText("\r\n[");
    showText(text);
    showText("]\r\n");
}

void showTitle(const char* percent)
{
    char title[CCH_ADDRESS + 32];
    snprintf(title, sizeof title, "%s%s%sKRTERM", percent, isLineOpen() ? address : "",
             isLineOpen() ? " - " : "");
    SetWindowTextA(mainWindow, title);
}

void onOpened()
{
    showTitle("");
}

void onReceived(BYTE* bytes, DWORD count)
{
    DWORD dataSize = receiveTelnet(&telnet, bytes, count);
    DWORD used = feedTransfer(bytes, dataSize);
    if (used < dataSize) {
        writeScreen(bytes + used, dataSize - used);
    }
}

void onClosed(const char* why)
{
    closeTransfer();
    showNote(why);
    showTitle("");
}

constexpr LineEvents LINE_EVENTS = {onOpened, onReceived, onClosed};

void onSized(int rows, int columns)
{
    resizeTelnet(&telnet, columns, rows);
}

constexpr ViewEvents VIEW_EVENTS = {putToProgram, onSized, isTransferring};
constexpr TransferEvents TRANSFER_EVENTS = {putToProgram, writeScreen};

// ---- commands

void disconnect()
{
    closeTransfer();
    closeLine();
    showTitle("");
}

INT_PTR CALLBACK connectProc(HWND hdlg, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG) {
        SetDlgItemTextA(hdlg, IDC_ADDRESS, address);
        return TRUE;
    }
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        if (LOWORD(wParam) == IDOK) {
            GetDlgItemTextA(hdlg, IDC_ADDRESS, address, CCH_ADDRESS);
        }
        EndDialog(hdlg, LOWORD(wParam));
        return TRUE;
    }
    return FALSE;
}

void askForHost()
{
    if (DialogBoxParamA(GetModuleHandleA(nullptr), "CONNECT", mainWindow, connectProc, 0) == IDOK &&
        address[0] != '\0') {
        connectTerminal(address);
    }
}

void transferFiles(bool sending)
{
    static TransferOrder order;
    if (askForOrder(mainWindow, sending, &order)) {
        transferInTerminal(&order);
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
    PostMessageA(mainWindow, WM_CLOSE, 0, 0);
}

struct Command {
    UINT id;
    void (*run)();
};

constexpr Command COMMANDS[] = {
    {IDM_CONNECT, askForHost},       {IDM_DISCONNECT, disconnect}, {IDM_EXIT, leave},
    {IDM_COPY, copySelection},       {IDM_PASTE, paste},           {IDM_SELECTALL, selectAll},
    {IDM_CLEARKEPT, clearKeptLines}, {IDM_SEND, sendFiles},        {IDM_RECEIVE, receiveFiles},
};

void onCommand(WPARAM wParam, LPARAM)
{
    for (const Command& command : COMMANDS) {
        if (command.id == LOWORD(wParam)) {
            command.run();
        }
    }
}

void onMenu(WPARAM wParam, LPARAM)
{
    auto hmenu = reinterpret_cast<HMENU>(wParam);
    bool idle = isLineOpen() && !isTransferring();
    auto enable = [hmenu](UINT id, bool on) {
        EnableMenuItem(hmenu, id, on ? MF_ENABLED : MF_GRAYED);
    };
    enable(IDM_CONNECT, !isTransferring());
    enable(IDM_DISCONNECT, isLineOpen());
    enable(IDM_COPY, hasSelection());
    enable(IDM_PASTE, idle);
    enable(IDM_SEND, idle);
    enable(IDM_RECEIVE, idle);
}

// ---- the window

LRESULT onCreate(HWND hwnd)
{
    mainWindow = hwnd;
    viewWindow = openView(hwnd, &VIEW_EVENTS);
    SetTimer(hwnd, 1, TICK_MS, nullptr);
    return viewWindow != nullptr ? 0 : -1;
}

void onPercent(WPARAM percent, LPARAM)
{
    char text[16];
    wsprintfA(text, "%u%% - ", UINT(percent));
    showTitle(text);
}

void onEndOfPercent(WPARAM, LPARAM)
{
    showTitle("");
}

void onSize(WPARAM, LPARAM lParam)
{
    MoveWindow(viewWindow, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
}

void onFocus(WPARAM, LPARAM)
{
    SetFocus(viewWindow);
}

void onTimer(WPARAM, LPARAM)
{
    tickTransfer();
}

void onQuestion(WPARAM, LPARAM)
{
    askUser();
}

void onDestroy(WPARAM, LPARAM)
{
    closeTransfer();
    closeLine();
    closeScreen();
    PostQuitMessage(0);
}

struct Handler {
    UINT message;
    void (*handle)(WPARAM wParam, LPARAM lParam);
};

constexpr Handler HANDLERS[] = {
    {WM_SIZE, onSize},
    {WM_SETFOCUS, onFocus},
    {WM_COMMAND, onCommand},
    {WM_INITMENUPOPUP, onMenu},
    {WM_TIMER, onTimer},
    {WM_LINE, onLineMessage},
    {WM_QUESTION, onQuestion},
    {WM_XFERSTAT_PERCENT, onPercent},
    {WM_XFERSTAT_CLOSED, onEndOfPercent},
    {WM_DESTROY, onDestroy},
};

LRESULT CALLBACK mainProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CREATE) {
        return onCreate(hwnd);
    }
    for (const Handler& handler : HANDLERS) {
        if (handler.message == message) {
            handler.handle(wParam, lParam);
            return 0;
        }
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

} // namespace

HWND openTerminal(HINSTANCE hInstance)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = mainProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)); // IDC_ARROW
    wndclass.hIcon = LoadIconA(hInstance, CLASS);
    wndclass.lpszMenuName = CLASS;
    wndclass.lpszClassName = CLASS;
    registerView(hInstance);
    RegisterClassA(&wndclass);
    SIZE size = sizeOfView(24, 80);
    RECT rect = {0, 0, size.cx, size.cy};
    AdjustWindowRect(&rect, WS_OVERLAPPEDWINDOW, TRUE);
    return CreateWindowA(CLASS, CLASS, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, 0,
                         rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr,
                         hInstance, nullptr);
}

HWND terminalWindow()
{
    return mainWindow;
}

void connectTerminal(const char* hostAddress)
{
    const char* why;
    disconnect();
    if (hostAddress != address) {
        lstrcpynA(address, hostAddress, CCH_ADDRESS);
    }
    openTelnet(&telnet, putLine, screenColumns(), screenRows());
    if (!openLine(mainWindow, WM_LINE, address, &LINE_EVENTS, &why)) {
        showNote(why);
    }
}

bool transferInTerminal(const TransferOrder* order)
{
    return isLineOpen() && startTransfer(order, mainWindow, WM_QUESTION, &TRANSFER_EVENTS);
}
