// The list of local drives: a row that is chosen changes the drive.
#include "resources/ids.h"
#include "shared/krutils.h"
#include "shared/text.h"
#include "transfer/commands/commands.h"
#include "transfer/panes/drives.h"

#include <direct.h>

void commands::driveListNotified(const Command* pCommand)
{
    char szText[XFER_NAME_SIZE] = "";
    XferWindowRecord* pRecord = pCommand->pRecord;
    if (pCommand->nNotification != CBN_SELCHANGE && pCommand->nNotification != CBN_SELENDOK) {
        return;
    }
    SendDlgItemMessageA(pCommand->hdlgDandD, IDC_DANDD_LOCALDRIVES, WM_GETTEXT, sizeof szText,
                        reinterpret_cast<LPARAM>(szText));
    shared::toLowerCase(szText);
    LONG nDrive = szText[0] - panes::LETTER_BEFORE_A;
    if (_chdrive(nDrive) != 0) {
        window::loadString(pRecord, IDS_DRIVE_FAILED, szText, sizeof szText);
        vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
    } else if (window::recordAction(pRecord, KRACTION_DRIVE_CHANGED, szText)) {
        pRecord->nLocalDrive = nDrive;
        vXferDandDRefreshLocalFiles(pCommand->hdlgDandD);
    }
}
