#include "driver.h"
#include "looks.h"
#include "session.h"
#include "steps.h"

#include <stdio.h>

namespace {

HANDLE s_hThread;
int s_cFailed;
bool s_fServer;

void runSteps(StepTable table)
{
    for (int n = 0; n < table.cSteps; ++n) {
        bool fDone = table.pSteps[n].pfnRun();
        s_cFailed += !fDone;
        printf("%s: %s\n", table.pSteps[n].pszName, fDone ? "done" : "FAILED");
        fflush(stdout);
    }
}

DWORD WINAPI drive(void*)
{
    if (s_fServer) {
        runSteps(serverSteps());
    } else {
        runSteps(transferSteps());
        runSteps(paneSteps());
        runSteps(dialogSteps());
        runSteps(windowSteps());
    }
    // The program ends with the window, whatever became of the last step.
    PostMessageA(sessionWindow(), WM_CLOSE, 0, 0);
    return 0;
}

} // namespace

void startDriver(const DemoOptions* pOptions)
{
    setLooks(pOptions);
    s_fServer = pOptions->fServer;
    s_hThread = CreateThread(nullptr, 0, drive, nullptr, 0, nullptr);
}

int endDriver()
{
    WaitForSingleObject(s_hThread, INFINITE);
    CloseHandle(s_hThread);
    return s_cFailed;
}
