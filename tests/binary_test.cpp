// The binary contract, read from the built files.
#include "support/pe.h"

#include <gtest/gtest.h>

extern "C" int headerTestInC(void);

namespace {

// The export table: what is built so far of it.
const std::map<std::string, unsigned> EXPORTS = {
    {"fDlgXferStatProc", 2},         {"hdlgXferStatCreate", 3},
    {"nXferStatStartTransfer", 4},   {"nXferStatEndTransfer", 5},
    {"nXferStatDestroy", 6},         {"nXferStatFileInfo", 7},
    {"nXferStatErrorInfo", 8},       {"nXferStatStatusInfo", 9},
    {"nXferStatCountInfo", 10},      {"vXferStatButtonText", 11},
    {"nXferTranslateHCS", 12},       {"fXferValidHCS", 13},
    {"vXferStatDummy", 14},          {"nXferAllocLoadLanguage", 58},
    {"nXferDoLanguageChange", 59},   {"hdlgXferStatLangCreate", 60},
    {"XferFileList_fCreate", 70},    {"XferFileList_vDestroy", 71},
    {"XferFileList_fSetSize", 72},   {"XferFileList_cGetSize", 73},
    {"XferFileList_vSetDWord", 74},  {"XferFileList_nGetDWord", 75},
    {"XferFileList_fSetString", 76}, {"XferFileList_lpszGetString", 77},
};

using Names = std::set<std::string>;

// What the library may ask of the system: the calls that its work is made of.
const std::map<std::string, Names> PLATFORM = {
    {"KERNEL32.DLL",
     {"FormatMessageA", "FreeLibrary", "GetTickCount", "GetUserDefaultLangID", "GlobalAlloc",
      "GlobalFree", "GlobalHandle", "GlobalLock", "GlobalReAlloc", "GlobalUnlock", "LoadLibraryA",
      "LocalFree", "lstrcmpiA", "lstrcpynA", "lstrlenA"}},
    {"USER32.DLL", {"BeginPaint",
                    "CloseWindow",
                    "CreateDialogParamA",
                    "DefDlgProcA",
                    "DestroyWindow",
                    "DrawIcon",
                    "EnableWindow",
                    "EndPaint",
                    "FillRect",
                    "GetClientRect",
                    "GetDC",
                    "GetDlgItem",
                    "GetSysColor",
                    "GetSystemMetrics",
                    "GetWindowRect",
                    "InflateRect",
                    "IsIconic",
                    "KillTimer",
                    "LoadIconA",
                    "LoadStringA",
                    "MessageBoxA",
                    "MoveWindow",
                    "PostMessageA",
                    "ReleaseDC",
                    "SendDlgItemMessageA",
                    "SendMessageA",
                    "SetDlgItemInt",
                    "SetDlgItemTextA",
                    "SetFocus",
                    "SetTimer",
                    "SetWindowTextA",
                    "ShowWindow",
                    "WinHelpA",
                    "wsprintfA"}},
    {"GDI32.DLL",
     {"CreateSolidBrush", "DeleteObject", "ExtTextOutA", "GetStockObject", "GetTextExtentPointA",
      "SetBkMode", "SetTextColor"}},
    {"MSVCRT.DLL",
     {"ceil", "free", "malloc", "memcpy", "memset", "strcat", "strchr", "strcpy", "strlen",
      "strncpy"}},
};

// What the compiler's start-up code can't do without.
const std::map<std::string, Names> STARTUP = {
    {"KERNEL32.DLL",
     {"DeleteCriticalSection", "EnterCriticalSection", "GetLastError", "GetModuleHandleA",
      "GetProcAddress", "InitializeCriticalSection", "LeaveCriticalSection", "Sleep", "TlsGetValue",
      "VirtualProtect", "VirtualQuery"}},
    {"MSVCRT.DLL",
     {"__mb_cur_max", "_amsg_exit", "_errno",   "_initterm",  "_iob",   "_lock",   "_onexit",
      "_unlock",      "abort",      "atoi",     "calloc",     "free",   "fputc",   "fwrite",
      "getc",         "isspace",    "isxdigit", "localeconv", "malloc", "memcpy",  "memset",
      "realloc",      "setlocale",  "strchr",   "strerror",   "strlen", "strncmp", "strtol",
      "strtoul",      "tolower",    "ungetc",   "vfprintf",   "wcslen"}},
};

bool holds(const std::map<std::string, Names>& table, const std::string& module,
           const std::string& name)
{
    auto names = table.find(module);
    return names != table.end() && names->second.count(name) != 0;
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
