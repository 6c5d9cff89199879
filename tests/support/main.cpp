// The start of every test program. Files and DLLs of the build are named without their folder,
// so the program goes there first, wherever it was started.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

int main(int argc, char** argv)
{
    char szFile[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, szFile, sizeof szFile);
    const std::string file = szFile;
    SetCurrentDirectoryA(file.substr(0, file.rfind('\\')).c_str());
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
