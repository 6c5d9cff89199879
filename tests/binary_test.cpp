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

// What is there from version 3.51 on, but for some calls that came later and that compilers and
// libraries like to use.
const char PLATFORM[] = " ADVAPI32.DLL COMDLG32.DLL GDI32.DLL KERNEL32.DLL KRUTILS.DLL MSVCRT.DLL "
                        "USER32.DLL ";
const char LATER[] =
    " AddVectoredExceptionHandler AnimateWindow AttachConsole CreateActCtxA "
    "DisableProcessWindowsGhosting EncodePointer FindFirstFileExA GetFileAttributesExA "
    "GetFileSizeEx GetLongPathNameA GetMonitorInfoA GetTickCount64 "
    "InitializeCriticalSectionAndSpinCount InterlockedCompareExchange IsDebuggerPresent "
    "IsHungAppWindow MonitorFromRect MonitorFromWindow SetProcessDPIAware TrackMouseEvent "
    "TryEnterCriticalSection _aligned_malloc _get_errno _localtime64 _stat64 _time64 strcpy_s "
    "strcat_s strnlen ";

bool holds(const std::string& names, const std::string& name)
{
    return names.find(" " + name + " ") != std::string::npos;
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

TEST(Binary, ImportsOnlyWhatEveryVersionHas)
{
    PeFile pe = readPe("KRHAUL.DLL");
    ASSERT_FALSE(pe.imports.empty());
    for (const auto& [module, names] : pe.imports) {
        EXPECT_TRUE(holds(PLATFORM, module)) << module;
        for (const std::string& name : names) {
            const bool fWide = module != "MSVCRT.DLL" && name.back() == 'W';
            EXPECT_FALSE(fWide || holds(LATER, name)) << module << " " << name;
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

// The stand-in for KRUTILS keeps the youngest lines of what is recorded.
TEST(Binary, StandInForKrutilsForgetsItsOldestLines)
{
    HMODULE hModule = LoadLibraryA("KRUTILS.DLL");
    const auto record = reinterpret_cast<void(__stdcall*)(HWND, const char*)>(
        reinterpret_cast<void*>(GetProcAddress(hModule, MAKEINTRESOURCEA(22))));
    const auto read = reinterpret_cast<int(__stdcall*)(char*, int)>(
        reinterpret_cast<void*>(GetProcAddress(hModule, "KrGetRecordedText")));
    ASSERT_TRUE(record && read);
    const std::string longText(3000, 'x');
    record(nullptr, longText.c_str());
    for (int n = 0; n <= 9000; ++n) {
        record(nullptr, std::to_string(n).c_str());
    }
    std::string text(size_t(read(nullptr, 0)) + 1, '\0');
    EXPECT_LE(text.size(), size_t{65536});
    EXPECT_GT(text.size(), size_t{65000});
    read(&text[0], int(text.size()));
    EXPECT_EQ(text.substr(text.size() - 16), std::string("command: 9000\r\n") + '\0');
    EXPECT_EQ(text.substr(0, 9), "command: ");
    FreeLibrary(hModule);
}

TEST(Binary, HeaderServesC)
{
    EXPECT_EQ(headerTestInC(), 1);
}

} // namespace
