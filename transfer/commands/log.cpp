// The log: copying its selection, and selecting all of it.
#include "resources/ids.h"
#include "transfer/commands/commands.h"

void commands::copyLog(const Command* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, WM_COPY, 0, 0);
}

void commands::selectLog(const Command* pCommand)
{
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_INFOLINE, EM_SETSEL, 0, -1);
}
