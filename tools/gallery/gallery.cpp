// gallery PICTURES FILES CODE...: a picture of each template of these language modules, in its
// own size, goes into the first folder; the second one is what the transfer window shows. The
// two windows are those that the library makes, the status window with a transfer under way and
// the transfer window in both views; the dialogs are the bare templates.
#include "../robot/picture.h"
#include "../../include/krhaul.h"
#include "../../resources/ids.h"

#include <contract.h>

#include <stdio.h>
#include <string>

namespace {

constexpr char TITLE[] = "KRHAUL"; // the captions of the two windows are the caller's
constexpr DWORD CB_FILE = 5000000;
constexpr DWORD CB_DONE = 2200000;

void handleMessages()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

INT_PTR CALLBACK bareProc(HWND, UINT uMessage, WPARAM, LPARAM)
{
    return uMessage == WM_INITDIALOG;
}

HWND makeStatusWindow(const char* pszCode)
{
    HWND hwnd = hdlgXferStatLangCreate(pszCode, TITLE, 1, nullptr, 0, 0);
    SendMessageA(hwnd, WM_SETICON, ICON_SMALL,
                 LPARAM(LoadIconA(GetModuleHandleA("KRHAUL.DLL"), "FileXferIcon")));
    nXferStatFileInfo(hwnd, "c:\\in\\report.txt", "report.txt", CB_FILE);
    nXferStatErrorInfo(hwnd, 0, 0);
    nXferStatStatusInfo(hwnd, "Block 2148");
    return hwnd;
}

// The figures and the bar come once a second.
void showTransfer(HWND hwnd)
{
    nXferStatStartTransfer(hwnd);
    nXferStatCountInfo(hwnd, CB_DONE);
    while (GetWindowTextLengthA(GetDlgItem(hwnd, IDC_STAT_TIMELEFT)) == 0) {
        WaitMessage();
        handleMessages();
    }
}

HWND makeTransferWindow(const char* pszCode, DWORD nViewMode)
{
    return hdlgXferDandDLangCreate2(pszCode, TITLE, nullptr, nullptr, 0, nullptr, nViewMode);
}

HWND makeWindow(HMODULE hModule, const char* pszCode, const std::string& name)
{
    if (name == "DLGXFER")
        return makeStatusWindow(pszCode);
    if (name == "DLGDANDD")
        return makeTransferWindow(pszCode, XFERVIEW_TWOPANE);
    return CreateDialogParamA(hModule, name.c_str(), nullptr, bareProc, 0);
}

// What pfnFill adds is lost when the window is painted anew.
bool takeWindow(HWND hwnd, const std::string& file, void (*pfnFill)(HWND))
{
    RECT rc;
    ShowWindow(hwnd, SW_SHOW);
    SetForegroundWindow(hwnd);
    handleMessages();
    RedrawWindow(hwnd, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    handleMessages();
    if (pfnFill != nullptr)
        pfnFill(hwnd);
    // The first window of a program may have come up behind another one.
    SendMessageA(hwnd, WM_NCACTIVATE, TRUE, 0);
    GetWindowRect(hwnd, &rc);
    const bool fTaken = robot::takePicture(&rc, file.c_str());
    DestroyWindow(hwnd);
    handleMessages();
    return fTaken;
}

bool takeLanguage(const std::string& folder, const char* pszCode)
{
    HMODULE hModule;
    const std::string start = folder + "\\" + pszCode + "-";
    bool fAll = nXferAllocLoadLanguage(&hModule, pszCode) == XFER_OK;
    for (const langcheck::TemplateRow& row : langcheck::TEMPLATES) {
        const std::string name = row.name;
        HWND hwnd = fAll ? makeWindow(hModule, pszCode, name) : nullptr;
        fAll = hwnd &&
               takeWindow(hwnd, start + name + ".bmp", name == "DLGXFER" ? showTransfer : nullptr);
    }
    fAll = fAll && takeWindow(makeTransferWindow(pszCode, XFERVIEW_COMMANDLINE),
                              start + "DLGDANDD-commands.bmp", nullptr);
    if (!fAll)
        printf("%s: the pictures were not made\n", pszCode);
    FreeLibrary(hModule);
    return fAll;
}

} // namespace

int main(int argc, char** argv)
{
    bool fAll = argc > 3 && SetCurrentDirectoryA(argv[2]);
    // The pointer stands in no picture.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    for (int i = 3; fAll && i < argc; i++)
        fAll = takeLanguage(argv[1], argv[i]);
    return fAll ? 0 : 1;
}
