// Enter and Escape.
#include "resources/ids.h"
#include "transfer/commands/commands.h"
#include "transfer/panes/pathline.h"

// Enter means something else to each control. The command line keeps its text, selected so that
// the next command replaces it.
void commands::enter(const Command* pCommand)
{
    HWND hwndFocus = GetFocus();
    fXferDandDActivate(pCommand->hdlgDandD, pCommand->pRecord, hwndFocus);
    if (window::isAlive(pCommand->ref) &&
        hwndFocus == GetDlgItem(pCommand->hdlgDandD, IDC_DANDD_COMMANDLINE)) {
        SendMessageA(hwndFocus, EM_SETSEL, 0, -1);
    }
}

// Escape closes nothing; it only clears the command line.
void commands::escape(const Command* pCommand)
{
    HWND hwndCommandLine = GetDlgItem(pCommand->hdlgDandD, IDC_DANDD_COMMANDLINE);
    if (GetFocus() == hwndCommandLine) {
        SetWindowTextA(hwndCommandLine, "");
    }
}
