// gallery PICTURES FILES CODE...: a picture of each template of these language modules, in its
// own size, goes into the first folder; the second one is what the transfer window shows. The
// two windows are those that the library makes, the status window with a transfer under way and
// the transfer window in both views; the dialogs are the bare templates. The two windows are taken
// once more on displays of 96, 120 and 144 dots an inch, and with visual styles.
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
constexpr char STYLES_MANIFEST[] =
    "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>"
    "<assembly xmlns='urn:schemas-microsoft-com:asm.v1' manifestVersion='1.0'>"
    "<assemblyIdentity type='win32' name='KRHAUL.Gallery' version='1.0.0.0'"
    " processorArchitecture='x86'/>"
    "<dependency><dependentAssembly>"
    "<assemblyIdentity type='win32' name='Microsoft.Windows.Common-Controls' version='6.0.0.0'"
    " processorArchitecture='x86' publicKeyToken='6595b64144ccf1df' language='*'/>"
    "</dependentAssembly></dependency></assembly>";

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

// What pfnFill adds is lost when the window is repainted.
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

bool takeTemplate(HMODULE hModule, const char* pszCode, const std::string& name,
                  const std::string& file)
{
    HWND hwnd = makeWindow(hModule, pszCode, name);
    return hwnd && takeWindow(hwnd, file, name == "DLGXFER" ? showTransfer : nullptr);
}

bool takeLanguage(const std::string& folder, const char* pszCode)
{
    HMODULE hModule;
    const std::string start = folder + "\\" + pszCode + "-";
    bool fAll = nXferAllocLoadLanguage(&hModule, pszCode) == XFER_OK;
    for (const langcheck::TemplateRow& row : langcheck::TEMPLATES)
        fAll = fAll && takeTemplate(hModule, pszCode, row.name, start + row.name + ".bmp");
    fAll = fAll && takeWindow(makeTransferWindow(pszCode, XFERVIEW_COMMANDLINE),
                              start + "DLGDANDD-commands.bmp", nullptr);
    if (!fAll)
        printf("%s: the pictures were not made\n", pszCode);
    FreeLibrary(hModule);
    return fAll;
}

// The two windows on a display of other settings; what they are ends the names of the pictures.
bool takeWindows(const std::string& folder, const std::string& settings)
{
    bool fAll = true;
    for (const char* name : {"DLGXFER", "DLGDANDD"})
        fAll = fAll && takeTemplate(nullptr, "EN", name, folder + "\\" + name + settings + ".bmp");
    return fAll;
}

// Settings hold for programs that are started after them.
bool runAgain(const std::string& program, char** argv, const std::string& settings)
{
    std::string command = "\"" + program + "\" \"" + argv[1] + "\" \"" + argv[2] + "\" " + settings;
    STARTUPINFOA start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process;
    DWORD dwExit = 1;
    if (!CreateProcessA(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &process))
        return false;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &dwExit);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return dwExit == 0;
}

bool takeScaled(const std::string& self, char** argv)
{
    constexpr DWORD USUAL_DPI = 96;
    const auto setDpi = [](HKEY hkey, DWORD dwDpi) {
        RegSetValueExA(hkey, "LogPixels", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&dwDpi),
                       sizeof dwDpi);
    };
    HKEY hkey;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_SET_VALUE, &hkey) != 0)
        return false;
    bool fAll = true;
    for (DWORD dwDpi : {96, 120, 144}) {
        setDpi(hkey, dwDpi);
        fAll = runAgain(self, argv, "-" + std::to_string(dwDpi)) && fAll;
    }
    setDpi(hkey, USUAL_DPI);
    RegCloseKey(hkey);
    return fAll;
}

// A manifest beside the program asks for the controls with visual styles.
bool takeStyled(const std::string& self, char** argv)
{
    const std::string copy = self.substr(0, self.rfind('\\') + 1) + "styled.exe";
    const std::string manifest = copy + ".manifest";
    FILE* pFile = fopen(manifest.c_str(), "w");
    bool fAll = pFile && fputs(STYLES_MANIFEST, pFile) >= 0;
    fAll = pFile && fclose(pFile) == 0 && fAll && CopyFileA(self.c_str(), copy.c_str(), FALSE) &&
           runAgain(copy, argv, "-styled");
    DeleteFileA(copy.c_str());
    DeleteFileA(manifest.c_str());
    return fAll;
}

} // namespace

int main(int argc, char** argv)
{
    char self[MAX_PATH];
    GetModuleFileNameA(nullptr, self, sizeof self);
    bool fAll = argc > 3 && SetCurrentDirectoryA(argv[2]);
    // Keeps the pointer out of the pictures.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    if (fAll && argv[3][0] == '-')
        return takeWindows(argv[1], argv[3]) ? 0 : 1;
    for (int i = 3; fAll && i < argc; i++)
        fAll = takeLanguage(argv[1], argv[i]);
    return fAll && takeScaled(self, argv) && takeStyled(self, argv) ? 0 : 1;
}
