// The start of every test program. Files and DLLs of the build are named without their folder,
// so the program goes there first, wherever it was started.
#include <gtest/gtest.h>
#include <windows.h>

#include <stdio.h>
#include <string>

namespace {

HANDLE s_hStarted = nullptr;

// The loader calls this for each new thread, behind the entry points of all DLLs.
void NTAPI onThread(PVOID, DWORD dwReason, PVOID)
{
    if (dwReason == DLL_THREAD_ATTACH && s_hStarted != nullptr) {
        SetEvent(s_hStarted);
    }
}

// GoogleTest starts a thread of its own at the first trace or failure. Wine crashes when a process
// ends while one of its threads is starting, so that thread has to be up before a test that takes
// no time at all.
void startThreadOfGoogleTest()
{
    s_hStarted = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    SCOPED_TRACE("starts the thread");
    WaitForSingleObject(s_hStarted, INFINITE);
}

} // namespace

extern "C" {
extern const PIMAGE_TLS_CALLBACK threadCallback;
__attribute__((section(".CRT$XLY"), used)) const PIMAGE_TLS_CALLBACK threadCallback = onThread;
}

int main(int argc, char** argv)
{
    char szFile[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, szFile, sizeof szFile);
    const std::string file = szFile;
    SetCurrentDirectoryA(file.substr(0, file.rfind('\\')).c_str());
    testing::InitGoogleTest(&argc, argv);
    startThreadOfGoogleTest();
    int nResult = RUN_ALL_TESTS();
    // The end of a process that had windows now and then crashes in Wine, after all is done.
    fflush(stdout);
    TerminateProcess(GetCurrentProcess(), UINT(nResult));
    return nResult;
}
