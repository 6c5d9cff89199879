// What follows a drag, or the transfer command: the directory of the drop, the list of names,
// and the callback.
#include "panes.h"
#include "../resources/ids.h"
#include "../shared/krutils.h"

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
const char* directoryOfRow(const XferWindowRecord* pRecord, XferRow* pRow, XferDirection direction)
{
    switch (pRow->nKind) {
    case XFERITEM_ROOT:
        return ROOT;
    case XFERITEM_ANCESTOR:
        if (direction == XFERDIR_RECEIVE) {
            vXferDandDAncestorPath(pRecord, pRow, pRow->szText);
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
bool meansShownDir(XferWindowRecord* pRecord, XferDirection direction)
{
    return direction == XFERDIR_SEND ? fXferDandDShowsFilesHere(pRecord)
                                     : fXferDandDShowsHere(pRecord);
}

// Received files land in the current directory, so the drop changes it for good.
bool enterForReceive(XferWindowRecord* pRecord, const char* pszDir)
{
    if (_chdir(pszDir) != 0) {
        vXferDandDLoadString(pRecord, IDS_DROP_FAILED, g_szScratch, sizeof g_szScratch);
        vXferDandDDisplayDILText(pRecord->hwndDialog, g_szScratch);
        vXferDandDKeepStripText(true);
        return false;
    }
    vXferDandDRefreshLocalFiles(pRecord->hwndDialog);
    return fXferDandDRecordAction(pRecord, KRACTION_LOCALDIR_CHANGED, pszDir);
}

} // namespace

bool fXferDandDIsServed(const XferWindowRecord* pRecord, XferDirection direction)
{
    return direction == XFERDIR_SEND ? pRecord->callbacks.pfnSendFiles != nullptr
                                     : pRecord->callbacks.pfnReceiveFiles != nullptr;
}

void vXferDandDHandOver(const XferWindowRecord* pRecord, XferDirection direction, XferFileList list,
                        const char* pszHostDir)
{
    const HostCallbacks* pCallbacks = &pRecord->callbacks;
    if (direction == XFERDIR_SEND) {
        pCallbacks->pfnSendFiles(pRecord->dwCallerData, 0, 0, list, 0, pszHostDir);
    } else {
        pCallbacks->pfnReceiveFiles(pRecord->dwCallerData, 0, 0, list, 0);
    }
}

int fXferDandDListSelection(const XferWindowRecord* pRecord, int idSource, LONG nColumn,
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
        nXferDandDRowText(hwndSource, n, g_szScratch);
        fMade = XferFileList_fSetString(*pList, nEntry++, nColumn, g_szScratch) != 0;
        if (fMade && nAction != 0) {
            fMade = fXferDandDRecordAction(pRecord, nAction, g_szScratch);
        }
    }
    if (!fMade) {
        XferFileList_vDestroy(*pList);
        *pList = nullptr;
    }
    return fMade;
}

int fXferDandDTransferSelection(XferWindowRecord* pRecord, int idSource, XferDirection direction,
                                XferFileList* pList, const char* pszDir)
{
    const DirectionRow* pRow = &DIRECTIONS[direction];
    *pList = nullptr;
    if (!fXferDandDIsServed(pRecord, direction) || !meansShownDir(pRecord, direction)) {
        return 0;
    }
    if (pszDir != nullptr && direction == XFERDIR_RECEIVE && !enterForReceive(pRecord, pszDir)) {
        return 0;
    }
    if (pszDir != nullptr && direction == XFERDIR_SEND &&
        !fXferDandDRecordAction(pRecord, KRACTION_HOSTDIR_CHANGED, pszDir)) {
        return 0;
    }
    if (SendDlgItemMessageA(pRecord->hwndDialog, idSource, LB_GETSELCOUNT, 0, 0) <= 0) {
        return 1;
    }
    if (!fXferDandDListSelection(pRecord, idSource, pRow->nColumn, pRow->nAction, pList)) {
        return 0;
    }
    vXferDandDHandOver(pRecord, direction, *pList, pszDir);
    return 1;
}

void vXferDandDDropOn(XferWindowRecord* pRecord, int idSource, int idTarget,
                      XferDirection direction, bool fOnDirList)
{
    XferRow row;
    XferFileList list;
    const char* pszDir = nullptr;
    if (fOnDirList) {
        HWND hwndTarget = GetDlgItem(pRecord->hwndDialog, idTarget);
        auto nRow = LONG(SendMessageA(hwndTarget, LB_GETCARETINDEX, 0, 0));
        if (!fXferDandDReadRow(hwndTarget, nRow, &row) || row.szText[0] == '\0') {
            return;
        }
        pszDir = directoryOfRow(pRecord, &row, direction);
    }
    fXferDandDTransferSelection(pRecord, idSource, direction, &list, pszDir);
}
