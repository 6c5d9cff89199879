// host_bench FTP|SFTP DIRECTORY LOCAL send|receive: moves all files of a directory with the sample
// caller's windows in sight. Prints the seconds, and the milliseconds of the longest time in which
// the windows didn't answer. bench/sidebyside runs it beside servers.
#include "../examples/krdemo/hostpanes.h"
#include "../examples/krdemo/session.h"
#include "../examples/krdemo/statuswindow.h"
#include "../examples/krdemo/work.h"
#include "../include/krhaul.h"
#include "../resources/ids.h"

#include <algorithm>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr UINT BEAT_MS = 10;

DWORD lastBeat;
DWORD longestPause;

// A timer's message is the last that the platform delivers: when it comes, all that a user had done
// before has been answered.
void CALLBACK onBeat(HWND, UINT, UINT_PTR, DWORD)
{
    DWORD now = GetTickCount();
    longestPause = std::max(longestPause, now - lastBeat);
    lastBeat = now;
}

void runUntilIdle()
{
    MSG msg;
    while (demo::isWorking() && GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (!IsDialogMessageA(demo::sessionWindow(), &msg)) {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
        }
    }
}

demo::Address addressOf(const std::string& protocol, const char* directory)
{
    demo::Address address;
    bool isSftp = protocol == "SFTP";
    std::string secrets = std::string("Z:") + getenv("KRHAUL_FTP_SECRETS");
    address.protocol = isSftp ? demo::Protocol::Sftp : demo::Protocol::Ftp;
    address.server = "127.0.0.1";
    address.port = unsigned(atoi(getenv(isSftp ? "KRHAUL_SFTP_PORT" : "KRHAUL_FTP_PORT")));
    address.user = isSftp ? getenv("KRHAUL_SFTP_USER") : "plain";
    address.password = isSftp ? "" : "secret";
    address.keyFile = isSftp ? secrets + "/openssh" : "";
    address.knownHosts = secrets + "/known";
    address.path = (isSftp ? getenv("KRHAUL_FTP_FOLDER") : std::string()) + "/" + directory;
    return address;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        return 2;
    }
    demo::openHost(addressOf(argv[1], argv[2]));
    if (!demo::openSession(argv[3], "EN", nullptr)) {
        return 1;
    }
    runUntilIdle();
    HWND window = demo::sessionWindow();
    bool send = strcmp(argv[4], "send") == 0;
    HWND list = GetDlgItem(window, send ? IDC_DANDD_LOCALFILES : IDC_DANDD_HOSTFILES);
    SetForegroundWindow(window);
    SetFocus(list);
    SendMessageA(list, LB_SETSEL, TRUE, -1);
    lastBeat = GetTickCount();
    SetTimer(nullptr, 0, BEAT_MS, onBeat);
    DWORD start = GetTickCount();
    SendMessageA(window, WM_COMMAND, IDM_XFER_TRANSFER, 0);
    runUntilIdle();
    printf("%.3f %lu\n", (GetTickCount() - start) / 1000.0, longestPause);
    demo::closeSession();
    demo::closeHost();
    return 0;
}
