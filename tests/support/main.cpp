// The start of every test program. Files and DLLs of the build are named without their folder,
// so the program goes there first, wherever it was started.
#include <gtest/gtest.h>
#include <windows.h>

#include <stdio.h>
#include <string>

int main(int argc, char** argv)
{
    char szFile[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, szFile, sizeof szFile);
    const std::string file = szFile;
    SetCurrentDirectoryA(file.substr(0, file.rfind('\\')).c_str());
    testing::InitGoogleTest(&argc, argv);
    int nResult = RUN_ALL_TESTS();
    // The end of a process that had windows now and then crashes in Wine, after all is done.
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), UINT(nResult));
    return nResult;
}
