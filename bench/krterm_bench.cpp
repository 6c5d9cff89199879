// krterm_bench ADDRESS send|receive FILE COMMAND: one file by YMODEM, in the terminal with all its
// windows. Prints the seconds from the host's first word to the end, and the retries.
#include "../examples/krterm/terminal.h"
#include "../examples/krterm/transfer.h"

#include <stdio.h>
#include <string.h>

namespace {

constexpr DWORD LOGIN_MS = 1000;

void pump(DWORD milliseconds, bool whileTransferring)
{
    MSG msg;
    DWORD start = GetTickCount();
    while (whileTransferring ? isTransferring() : GetTickCount() - start < milliseconds) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageA(&msg);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    static TransferOrder order;
    if (argc != 5 || openTerminal(GetModuleHandleA(nullptr)) == nullptr) {
        return 2;
    }
    connectTerminal(argv[1]);
    pump(LOGIN_MS, false);
    order.sending = strcmp(argv[2], "send") == 0;
    order.protocol = YMODEM;
    lstrcpynA(order.sending ? order.files : order.local, argv[3], MAX_PATH);
    lstrcpynA(order.command, argv[4], CCH_COMMAND);
    if (!transferInTerminal(&order)) {
        return 1;
    }
    DWORD start = GetTickCount();
    pump(0, true);
    printf("%.3f %lu\n", (GetTickCount() - start) / 1000.0, lastTransfer()->retries);
    return lastTransfer()->result == RESULT_DONE ? 0 : 1;
}
