// The sample caller: a program that transfers files and lets KRHAUL show it.
//
//   main.cpp      the window and the message loop
//   transfer.cpp  the transfer, a chunk for each turn of the loop
//   options.cpp   the command line
//   picture.cpp   pictures of a run that nobody watches
#include "picture.h"
#include "transfer.h"
#include "../../include/krhaul.h"

#include <stdio.h>

namespace {

constexpr char CLASS[] = "KRDEMO";
constexpr char TITLE[] = "Sample caller";
constexpr DWORD TURN_MS = 10;
constexpr int ID_LOG = 1;

HWND s_hwndMain;
HWND s_hwndLog;
DemoOptions s_options;

// The log fills the lower end of the window; the status window stands above it.
constexpr int LOG_HEIGHT = 130;

// Pictures of a run: one near its start, one in its middle, one when all is done.
struct PictureMoment {
    const char* pszFile;
    DWORD nFile;          // the file in hand; 0 when all is done
    WPARAM nFirst, nLast; // percentages of that file
    bool fTaken;
};

PictureMoment s_moments[] = {
    {"start.bmp", 1, 1, 50, false},
    {"middle.bmp", 3, 51, 80, false},
    {"end.bmp", 0, 0, 0, false},
};

// A picture waits some turns of the loop, until all that was drawn has come to the screen.
constexpr int PICTURE_TURNS = 20;
PictureMoment* s_pDue;
int s_cTurnsToPicture;

void log(const char* pszLine)
{
    LRESULT nRow = SendMessageA(s_hwndLog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pszLine));
    SendMessageA(s_hwndLog, LB_SETTOPINDEX, WPARAM(nRow), 0);
}

void logFile(const char* pszName, DWORD cbSize)
{
    char szLine[MAX_PATH + 40];
    sprintf(szLine, "%s, %lu bytes", pszName, cbSize);
    log(szLine);
}

void noticeMoment(DWORD nFile, WPARAM nPercent)
{
    for (PictureMoment& moment : s_moments) {
        if (s_options.szPictures[0] != '\0' && s_pDue == nullptr && !moment.fTaken &&
            moment.nFile == nFile && nPercent >= moment.nFirst && nPercent <= moment.nLast) {
            s_pDue = &moment;
            s_cTurnsToPicture = PICTURE_TURNS;
        }
    }
}

void takeDuePicture()
{
    char szPath[MAX_PATH];
    RECT rcMain, rcStat, rc;
    if (s_pDue == nullptr || --s_cTurnsToPicture > 0) {
        return;
    }
    GetWindowRect(s_hwndMain, &rcMain);
    GetWindowRect(transferWindow(), &rcStat);
    UnionRect(&rc, &rcMain, &rcStat);
    joinPath(szPath, s_options.szPictures, s_pDue->pszFile);
    takePicture(&rc, szPath);
    s_pDue->fTaken = true;
    s_pDue = nullptr;
}

void onCreate(HWND hwnd)
{
    s_hwndLog = CreateWindowExA(WS_EX_CLIENTEDGE, "LISTBOX", "",
                                WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOINTEGRALHEIGHT, 0, 0, 0,
                                0, hwnd, reinterpret_cast<HMENU>(ID_LOG), nullptr, nullptr);
    SendMessageA(s_hwndLog, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                 0);
}

// The whole percentage of the file in hand has changed.
void onPercent(HWND hwnd, WPARAM nPercent)
{
    char szTitle[80];
    sprintf(szTitle, "%u%% of file %lu - %s", unsigned(nPercent), transferFileNumber(), TITLE);
    SetWindowTextA(hwnd, szTitle);
    noticeMoment(transferFileNumber(), nPercent);
}

void onStatClosed(HWND hwnd)
{
    SetWindowTextA(hwnd, TITLE);
    log("The status window is closed.");
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
    case WM_XFERSTAT_PERCENT:
        onPercent(hwnd, wParam);
        return 0;
    case WM_XFERSTAT_CLOSED:
        onStatClosed(hwnd);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

bool makeWindow(HINSTANCE hInstance)
{
    WNDCLASSA wndclass = {};
    wndclass.lpfnWndProc = mainProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    wndclass.hIcon = LoadIconA(hInstance, CLASS);
    wndclass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1);
    wndclass.lpszClassName = CLASS;
    RegisterClassA(&wndclass);
    s_hwndMain = CreateWindowA(CLASS, TITLE, WS_OVERLAPPEDWINDOW, 40, 40, 520, 480, nullptr,
                               nullptr, hInstance, nullptr);
    ShowWindow(s_hwndMain, SW_SHOW);
    return s_hwndMain != nullptr;
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
        if (transferWindow() == nullptr || !IsDialogMessageA(transferWindow(), &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
    return true;
}

// Messages and chunks by turns, so that the windows stay alive during a transfer.
TransferResult runLoop(bool fRunning)
{
    TransferResult result = fRunning ? TRANSFER_MORE : TRANSFER_FAILED;
    while (handleMessages()) {
        if (result == TRANSFER_MORE) {
            result = continueTransfer();
        } else if (s_options.szPictures[0] != '\0') {
            noticeMoment(0, 0);
            if (s_pDue == nullptr) {
                break;
            }
        } else if (transferWindowIsDismissed()) {
            closeTransferWindow();
        }
        takeDuePicture();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, TURN_MS, QS_ALLINPUT);
    }
    closeTransferWindow();
    return result;
}

} // namespace

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    readOptions(&s_options);
    if (!makeWindow(hInstance)) {
        return 2;
    }
    tellFilesDone(logFile);
    bool fRunning = startTransfer(&s_options, s_hwndMain);
    if (!fRunning) {
        log("There is nothing to copy, or no status window to be had.");
    }
    return runLoop(fRunning) == TRANSFER_DONE ? 0 : 1;
}
