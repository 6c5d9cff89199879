#include "transfer/commands/selection.h"
#include "resources/ids.h"
#include "transfer/dragdrop/drop.h"
#include "transfer/panes/locallist.h"

#include <string.h>

LONG commands::countSelected(const Command* pCommand, int idList)
{
    return pCommand->pRecord->nViewMode == XFERVIEW_TWOPANE
               ? LONG(SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_GETSELCOUNT, 0, 0))
               : 0;
}

commands::RowState commands::selectedDir(const Command* pCommand, int idList, panes::Row* pRow)
{
    HWND hwndList = GetDlgItem(pCommand->hdlgDandD, idList);
    LRESULT nRow = pCommand->pRecord->nViewMode == XFERVIEW_TWOPANE
                       ? SendMessageA(hwndList, LB_GETCURSEL, 0, 0)
                       : LB_ERR;
    if (nRow == LB_ERR) {
        return ROW_NONE;
    }
    return panes::readRow(hwndList, LONG(nRow), pRow) ? ROW_FOUND : ROW_BROKEN;
}

void commands::requestSelection(const Command* pCommand, window::FileRequest request)
{
    XferFileList list;
    if (window::canRequest(pCommand->pRecord, request) &&
        dragdrop::listSelection(pCommand->pRecord, IDC_DANDD_HOSTFILES, window::columnOf(request),
                                window::actionOf(request), &list)) {
        window::requestFiles(pCommand->pRecord, request, list);
    }
}

// The names are read before the first of them is used: a box, a viewer that starts and whatever is
// recorded can refill the list, and then other names stand in its rows.
void commands::forSelectedLocalFiles(const Command* pCommand,
                                     void (*pfnFile)(const Command* pCommand, const char* pszName))
{
    XferFileList names;
    char szName[XFER_NAME_SIZE];
    char szDir[XFER_NAME_SIZE];
    strcpy(szDir, pCommand->pRecord->szLocalDir);
    if (!panes::syncLocalFiles(pCommand->pRecord) ||
        !dragdrop::listSelection(pCommand->pRecord, IDC_DANDD_LOCALFILES, XFERLIST_LOCAL, 0,
                                 &names)) {
        return;
    }
    LONG cNames = XferFileList_cGetSize(names);
    for (LONG n = 0; n < cNames && window::isAlive(pCommand->ref) && panes::isCurrentDir(szDir);
         ++n) {
        XferFileList_lpszGetString(names, n, XFERLIST_LOCAL, szName, sizeof szName);
        pfnFile(pCommand, szName);
    }
    XferFileList_vDestroy(names);
}

void commands::showString(const Command* pCommand, UINT idString)
{
    char szText[XFER_NAME_SIZE];
    window::loadString(pCommand->pRecord, idString, szText, sizeof szText);
    vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
}
