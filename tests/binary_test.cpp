// The binary contract, read from the built files.
#include "support/pe.h"

#include <gtest/gtest.h>
#include <sstream>

extern "C" int headerTestInC(void);

namespace {

// The export table: the names with the numbers that follow on from the first.
const std::map<unsigned, std::string> EXPORTS = {
    {2, "fDlgXferStatProc hdlgXferStatCreate nXferStatStartTransfer "
        "nXferStatEndTransfer nXferStatDestroy nXferStatFileInfo nXferStatErrorInfo "
        "nXferStatStatusInfo nXferStatCountInfo vXferStatButtonText nXferTranslateHCS "
        "fXferValidHCS vXferStatDummy"},
    {21, "nXferDandDDestroy fDlgXferDandDTranProc fDlgXferDandDRenProc "
         "fDlgXferDandDDelProc fDlgXferDandDMkdirProc fDlgXferDandDRmdirProc "
         "fDlgXferDandDConfirmProc nXferDandDAddHostFileName "
         "nXferDandDClearHostFileList vXferDandDInfoLine"},
    {32, "vXferDandDPrintWorkingDir vXferDandDSetTitle vXferDandDRefreshLocalFiles "
         "nXferDandDAddHostSubDir"},
    {38, "vXferDandDSetFocus lHFileListProc lLFileListProc lHDirListProc lLDirListProc "
         "vXferDandDDisplayDILText vXferDandDUpdateThermometer "
         "fXferDandDConfirmTransfer nXferDandDAddLocalFileName "
         "nXferDandDRemoveHostFileName nXferDandDRemoveHostSubDir"},
    {51, "lInfoLineProc hdlgXferDandDCreate2 nXferDandDClearHostFileInfo "
         "hdlgXferDandDLangCreate2"},
    {58, "nXferAllocLoadLanguage nXferDoLanguageChange hdlgXferStatLangCreate "
         "vXferDandDSetFileTypeSelection nXferDandDGetFileTypeSelection "
         "vXferDandDSetBusyState vXferDandDViewFile vXferDandDSetThermometer "
         "nXferDandDDialogBoxParam"},
    {70, "XferFileList_fCreate XferFileList_vDestroy XferFileList_fSetSize "
         "XferFileList_cGetSize XferFileList_vSetDWord XferFileList_nGetDWord "
         "XferFileList_fSetString XferFileList_lpszGetString"},
};

// Names of a module, separated by blanks.
using Table = std::map<std::string, std::string>;

// What the library may ask of the system: the calls that its work is made of.
const Table PLATFORM = {
    {"ADVAPI32.DLL", "RegCloseKey RegEnumKeyA RegOpenKeyExA RegQueryValueExA"},
    {"COMDLG32.DLL", "GetSaveFileNameA"},
    {"GDI32.DLL",
     "BitBlt CreateBitmap CreateCompatibleDC CreateDIBitmap CreateDiscardableBitmap "
     "CreateFontA CreatePatternBrush CreatePen CreateSolidBrush DPtoLP DeleteDC "
     "DeleteObject ExtTextOutA GetCharWidthA GetStockObject GetTextExtentPointA "
     "GetTextMetricsA LineTo MoveToEx PatBlt RectVisible SelectObject SetBkColor SetBkMode "
     "SetTextColor SetWindowOrgEx StretchDIBits"},
    {"KERNEL32.DLL",
     "CreateDirectoryA DeleteFileA FileTimeToSystemTime FindClose FindFirstFileA "
     "FindNextFileA FindResourceA FormatMessageA FreeLibrary FreeResource "
     "GetDriveTypeA GetFileAttributesA GetLastError GetLogicalDrives "
     "GetModuleFileNameA GetTempFileNameA GetTempPathA GetThreadLocale GetTickCount "
     "GetUserDefaultLangID GetVersion GetVolumeInformationA GlobalAlloc GlobalFree "
     "GlobalHandle GlobalLock GlobalReAlloc GlobalSize GlobalUnlock LCMapStringA "
     "LoadLibraryA LoadResource LocalFree LockResource MoveFileA RemoveDirectoryA "
     "SetCurrentDirectoryA SizeofResource WinExec lstrcmpA lstrcmpiA lstrcpynA "
     "lstrlenA"},
    {"MSVCRT.DLL", "_chdir _chdrive _close _fstat _fullpath _getcwd _getdrive _open _rmdir "
                   "_splitpath _stricmp _strlwr _unlink fclose fopen fputc fputs free malloc "
                   "memcmp memcpy memmove memset qsort realloc remove strcat strchr strcmp strcpy "
                   "strlen strncat strncmp strncpy strpbrk strrchr strspn strstr"},
    {"USER32.DLL",
     "BeginPaint CallWindowProcA CharUpperBuffA CheckDlgButton CheckMenuItem "
     "CheckRadioButton CloseWindow CreateDialogParamA DefDlgProcA DefWindowProcA "
     "DestroyCursor DestroyWindow DialogBoxParamA DrawFocusRect DrawIcon DrawTextA "
     "EnableMenuItem EnableWindow EndDialog EndPaint FillRect GetAsyncKeyState "
     "GetCapture GetClassInfoA GetClientRect GetCursorPos GetDC GetDlgItem "
     "GetDlgItemTextA GetFocus GetMenu GetParent GetSubMenu GetSysColor "
     "GetSystemMetrics GetWindowLongA GetWindowRect GetWindowTextA "
     "GetWindowTextLengthA InflateRect InvalidateRect IsCharAlphaA "
     "IsDlgButtonChecked IsIconic IsWindow IsWindowEnabled IsWindowVisible "
     "KillTimer LoadCursorA LoadIconA LoadStringA MapDialogRect MessageBoxA MoveWindow "
     "PostMessageA RedrawWindow RegisterClassA ReleaseCapture ReleaseDC "
     "ScreenToClient SendDlgItemMessageA SendMessageA SetCapture SetCursor "
     "SetDlgItemInt SetDlgItemTextA SetFocus SetRect SetTimer SetWindowLongA "
     "SetWindowPos SetWindowTextA ShowWindow UnregisterClassA UpdateWindow WinHelpA "
     "WindowFromPoint "
     "wsprintfA"},
};

// What the compiler's start-up code can't do without.
const Table STARTUP = {
    {"KERNEL32.DLL",
     "DeleteCriticalSection EnterCriticalSection GetLastError GetModuleHandleA "
     "GetProcAddress InitializeCriticalSection LeaveCriticalSection Sleep TlsGetValue "
     "VirtualProtect VirtualQuery"},
    {"MSVCRT.DLL", "_amsg_exit _errno _initterm _iob _lock _unlock abort calloc free fwrite malloc "
                   "realloc strlen strncmp vfprintf"},
};

bool holds(const Table& table, const std::string& module, const std::string& name)
{
    auto names = table.find(module);
    return names != table.end() &&
           (" " + names->second + " ").find(" " + name + " ") != std::string::npos;
}

TEST(Binary, IsA32BitLibraryWithTheExportTable)
{
    PeFile pe = readPe("KRHAUL.DLL");
    EXPECT_EQ(pe.wMachine, IMAGE_FILE_MACHINE_I386);
    EXPECT_EQ(pe.wMagic, IMAGE_NT_OPTIONAL_HDR32_MAGIC);
    std::map<std::string, unsigned> expected;
    for (const auto& [nFirst, names] : EXPORTS) {
        std::istringstream stream(names);
        unsigned n = nFirst;
        for (std::string name; stream >> name; ++n) {
            expected[name] = n;
        }
    }
    EXPECT_EQ(pe.exports, expected);
}

TEST(Binary, ImportsOnlyThePlatformAndItsStartUp)
{
    PeFile pe = readPe("KRHAUL.DLL");
    ASSERT_FALSE(pe.imports.empty());
    for (const auto& [module, names] : pe.imports) {
        for (const std::string& name : names) {
            EXPECT_TRUE(module == "KRUTILS.DLL" || holds(PLATFORM, module, name) ||
                        holds(STARTUP, module, name))
                << module << " " << name;
        }
    }
}

TEST(Binary, BindsKrutilsByOrdinalAlone)
{
    const std::map<std::string, unsigned> allowed = {{"KrGetHelpFile", 4},
                                                     {"KrRecordCommand", 22},
                                                     {"KrRecordAction", 41},
                                                     {"KrMessageBoxId", 70}};
    auto made = readPe("KRUTILS.DLL").exports;
    std::set<std::string> numbers;
    for (const auto& [name, nOrdinal] : allowed) {
        EXPECT_EQ(made[name], nOrdinal) << name;
        numbers.insert("#" + std::to_string(nOrdinal));
    }
    PeFile pe = readPe("KRHAUL.DLL");
    ASSERT_EQ(pe.imports.count("KRUTILS.DLL"), 1u);
    for (const std::string& name : pe.imports["KRUTILS.DLL"]) {
        EXPECT_EQ(numbers.count(name), 1u) << name;
    }
}

TEST(Binary, HeaderServesC)
{
    EXPECT_EQ(headerTestInC(), 1);
}

} // namespace
