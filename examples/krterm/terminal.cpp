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
        connectTerminal(s_szAddress);
    }
}

void transferFiles(bool fSend)
{
    static TransferOrder s_order;
    if (askForOrder(s_hwndMain, fSend, &s_order)) {
        transferInTerminal(&s_order);
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
    RECT rc = {0, 0, size.cx, size.cy};
    AdjustWindowRect(&rc, WS_OVERLAPPEDWINDOW, TRUE);
    return CreateWindowA(CLASS, CLASS, WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, 0, rc.right - rc.left,
                         rc.bottom - rc.top, nullptr, nullptr, hInstance, nullptr);
}

HWND terminalWindow()
{
    return s_hwndMain;
}

void connectTerminal(const char* pszAddress)
{
    const char* pszWhy;
    char szAddress[CCH_ADDRESS];
    lstrcpynA(szAddress, pszAddress, CCH_ADDRESS);
    disconnect();
    strcpy(s_szAddress, szAddress);
    openTelnet(&s_telnet, putLine, screenColumns(), screenRows());
    if (!openLine(s_hwndMain, WM_LINE, s_szAddress, &LINE_EVENTS, &pszWhy)) {
        showNote(pszWhy);
    }
}

bool transferInTerminal(const TransferOrder* pOrder)
{
    return isLineOpen() && startTransfer(pOrder, s_hwndMain, WM_QUESTION, &TRANSFER_EVENTS);
}
