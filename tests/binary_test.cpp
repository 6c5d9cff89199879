// The binary contract, read from the built files.
#include "support/pe.h"

#include <gtest/gtest.h>

extern "C" int headerTestInC(void);

namespace {

// The export table: what is built so far of it.
const std::map<std::string, unsigned> EXPORTS = {
    {"fDlgXferStatProc", 2},
    {"hdlgXferStatCreate", 3},
    {"nXferStatStartTransfer", 4},
    {"nXferStatEndTransfer", 5},
    {"nXferStatDestroy", 6},
    {"nXferStatFileInfo", 7},
    {"nXferStatErrorInfo", 8},
    {"nXferStatStatusInfo", 9},
    {"nXferStatCountInfo", 10},
    {"vXferStatButtonText", 11},
    {"nXferTranslateHCS", 12},
    {"fXferValidHCS", 13},
    {"vXferStatDummy", 14},
    {"nXferDandDDestroy", 21},
    {"fDlgXferDandDTranProc", 22},
    {"fDlgXferDandDRenProc", 23},
    {"fDlgXferDandDDelProc", 24},
    {"fDlgXferDandDMkdirProc", 25},
    {"fDlgXferDandDRmdirProc", 26},
    {"fDlgXferDandDConfirmProc", 27},
    {"nXferDandDAddHostFileName", 28},
    {"nXferDandDClearHostFileList", 29},
    {"vXferDandDInfoLine", 30},
    {"vXferDandDPrintWorkingDir", 32},
    {"vXferDandDSetTitle", 33},
    {"vXferDandDRefreshLocalFiles", 34},
    {"nXferDandDAddHostSubDir", 35},
    {"vXferDandDSetFocus", 38},
    {"lHFileListProc", 39},
    {"lLFileListProc", 40},
    {"lHDirListProc", 41},
    {"lLDirListProc", 42},
    {"vXferDandDDisplayDILText", 43},
    {"vXferDandDUpdateThermometer", 44},
    {"fXferDandDConfirmTransfer", 45},
    {"nXferDandDAddLocalFileName", 46},
    {"nXferDandDRemoveHostFileName", 47},
    {"nXferDandDRemoveHostSubDir", 48},
    {"lInfoLineProc", 51},
    {"hdlgXferDandDCreate2", 52},
    {"nXferDandDClearHostFileInfo", 53},
    {"hdlgXferDandDLangCreate2", 54},
    {"nXferAllocLoadLanguage", 58},
    {"nXferDoLanguageChange", 59},
    {"hdlgXferStatLangCreate", 60},
    {"vXferDandDSetFileTypeSelection", 61},
    {"nXferDandDGetFileTypeSelection", 62},
    {"vXferDandDSetBusyState", 63},
    {"vXferDandDViewFile", 64},
    {"vXferDandDSetThermometer", 65},
    {"nXferDandDDialogBoxParam", 66},
    {"XferFileList_fCreate", 70},
    {"XferFileList_vDestroy", 71},
    {"XferFileList_fSetSize", 72},
    {"XferFileList_cGetSize", 73},
    {"XferFileList_vSetDWord", 74},
    {"XferFileList_nGetDWord", 75},
    {"XferFileList_fSetString", 76},
    {"XferFileList_lpszGetString", 77},
};

using Names = std::set<std::string>;

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
    {"USER32.DLL", "BeginPaint CallWindowProcA CharUpperBuffA CheckDlgButton CheckMenuItem "
                   "CheckRadioButton CloseWindow CreateDialogParamA DefDlgProcA DefWindowProcA "
                   "DestroyCursor DestroyWindow DialogBoxParamA DrawFocusRect DrawIcon DrawTextA "
                   "EnableMenuItem EnableWindow EndDialog EndPaint FillRect GetAsyncKeyState "
                   "GetCapture GetClassInfoA GetClientRect GetCursorPos GetDC GetDlgItem "
                   "GetDlgItemTextA GetFocus GetMenu GetParent GetSubMenu GetSysColor "
                   "GetSystemMetrics GetWindowLongA GetWindowRect GetWindowTextA "
                   "GetWindowTextLengthA InflateRect InvalidateRect IsCharAlphaA "
                   "IsDlgButtonChecked IsIconic IsWindow IsWindowEnabled IsWindowVisible "
                   "KillTimer LoadCursorA LoadIconA LoadStringA MessageBoxA MoveWindow "
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
    EXPECT_EQ(pe.exports, EXPORTS);
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
    const Names allowed = {"#4", "#22", "#41", "#70"};
    PeFile pe = readPe("KRHAUL.DLL");
    ASSERT_EQ(pe.imports.count("KRUTILS.DLL"), 1u);
    for (const std::string& name : pe.imports["KRUTILS.DLL"]) {
        EXPECT_EQ(allowed.count(name), 1u) << name;
    }
    std::map<std::string, unsigned> needed = {{"KrGetHelpFile", 4},
                                              {"KrRecordCommand", 22},
                                              {"KrRecordAction", 41},
                                              {"KrMessageBoxId", 70}};
    auto made = readPe("KRUTILS.DLL").exports;
    for (const auto& [name, nOrdinal] : needed) {
        EXPECT_EQ(made[name], nOrdinal) << name;
    }
}

TEST(Binary, HeaderServesC)
{
    EXPECT_EQ(headerTestInC(), 1);
}

} // namespace
