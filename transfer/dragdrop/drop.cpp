// What follows a drag, or the transfer command: the directory of the drop, the list of names,
// and the callback.
#include "transfer/dragdrop/drop.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "transfer/frame/strip.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/pathline.h"
#include "transfer/panes/rows.h"

#include <direct.h>
#include <string.h>

namespace {

constexpr char ROOT[] = "\\";

// What differs between sending and receiving.
struct DirectionRow {
    LONG nColumn;
    int nAction;
};

constexpr DirectionRow DIRECTIONS[] = {
    {XFERLIST_HOST, KRACTION_FILE_RECEIVED},
    {XFERLIST_LOCAL, KRACTION_FILE_SENT},
};

// Makes the row's text the directory that a drop on the row means. Gives null for the row of
// the present directory.
const char* directoryOfRow(const XferWindowRecord* pRecord, panes::Row* pRow, Direction direction)
{
    switch (pRow->nKind) {
    case XFERITEM_ROOT:
        return ROOT;
    case XFERITEM_ANCESTOR:
        if (direction == XFERDIR_RECEIVE) {
            panes::ancestorPath(pRecord, pRow, pRow->szText);
        }
        return pRow->szText;
    case XFERITEM_CHILD:
        return pRow->szText;
    default:
        return nullptr;
    }
}

// What is sent stands in the shown directory, and what is received lands in it, or in one that
// a row names from there. The directory of the process can be another one by now.
bool meansShownDir(XferWindowRecord* pRecord, Direction direction)
{
    return direction == XFERDIR_SEND ? panes::syncLocalFiles(pRecord)
                                     : panes::syncLocalPanes(pRecord);
}

// Received files land in the current directory, so the drop changes it for good.
bool enterForReceive(XferWindowRecord* pRecord, const char* pszDir)
{
    if (_chdir(pszDir) != 0) {
        window::loadString(pRecord, IDS_DROP_FAILED, g_szScratch, sizeof g_szScratch);
        vXferDandDDisplayDILText(pRecord->hwndDialog, g_szScratch);
        frame::keepStripText(true);
        return false;
    }
    vXferDandDRefreshLocalFiles(pRecord->hwndDialog);
    return window::recordAction(pRecord, KRACTION_LOCALDIR_CHANGED, pszDir);
}

} // namespace

int dragdrop::listSelection(const XferWindowRecord* pRecord, int idSource, LONG nColumn,
                            int nAction, XferFileList* pList)
{
    HWND hwndSource = GetDlgItem(pRecord->hwndDialog, idSource);
    auto cSelected = LONG(SendMessageA(hwndSource, LB_GETSELCOUNT, 0, 0));
    auto cRows = LONG(SendMessageA(hwndSource, LB_GETCOUNT, 0, 0));
    if (!XferFileList_fCreate(pList)) {
        return 0;
    }
    LONG nEntry = 0;
    bool fMade = XferFileList_fSetSize(pList, cSelected, XFERLIST_KEEPGROWTH) != 0;
    for (LONG n = 0; fMade && n < cRows; ++n) {
        if (SendMessageA(hwndSource, LB_GETSEL, WPARAM(n), 0) <= 0) {
            continue;
        }
        panes::readRowText(hwndSource, n, g_szScratch);
        fMade = XferFileList_fSetString(*pList, nEntry++, nColumn, g_szScratch) != 0;
        if (fMade && nAction != 0) {
            fMade = window::recordAction(pRecord, nAction, g_szScratch);
        }
    }
    if (!fMade) {
        XferFileList_vDestroy(*pList);
        *pList = nullptr;
    }
    return fMade;
}

int fXferDandDTransferSelection(XferWindowRecord* pRecord, int idSource, Direction direction,
                                XferFileList* pList, const char* pszDir)
{
    const DirectionRow* pRow = &DIRECTIONS[direction];
    *pList = nullptr;
    if (!window::canTransfer(pRecord, direction) || !meansShownDir(pRecord, direction)) {
        return 0;
    }
    if (pszDir != nullptr && direction == XFERDIR_RECEIVE && !enterForReceive(pRecord, pszDir)) {
        return 0;
    }
    if (pszDir != nullptr && direction == XFERDIR_SEND &&
        !window::recordAction(pRecord, KRACTION_HOSTDIR_CHANGED, pszDir)) {
        return 0;
    }
    if (SendDlgItemMessageA(pRecord->hwndDialog, idSource, LB_GETSELCOUNT, 0, 0) <= 0) {
        return 1;
    }
    if (!dragdrop::listSelection(pRecord, idSource, pRow->nColumn, pRow->nAction, pList)) {
        return 0;
    }
    window::requestTransfer(pRecord, direction, *pList, pszDir);
    return 1;
}

void vXferDandDDropOn(XferWindowRecord* pRecord, int idSource, int idTarget, Direction direction,
                      bool fOnDirList)
{
    panes::Row row;
    XferFileList list;
    const char* pszDir = nullptr;
    if (fOnDirList) {
        HWND hwndTarget = GetDlgItem(pRecord->hwndDialog, idTarget);
        auto nRow = LONG(SendMessageA(hwndTarget, LB_GETCARETINDEX, 0, 0));
        if (!panes::readRow(hwndTarget, nRow, &row) || row.szText[0] == '\0') {
            return;
        }
        pszDir = directoryOfRow(pRecord, &row, direction);
    }
    fXferDandDTransferSelection(pRecord, idSource, direction, &list, pszDir);
}
