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

// Returns the directory that a drop on a row means, or null for the row of the current directory.
// The row's text is replaced where it isn't that directory.
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

// Whether a transfer can go by the local panes: files are sent from the shown directory, and
// received into it or into one that a row names from there. The process can be elsewhere by now.
bool syncForTransfer(XferWindowRecord* pRecord, Direction direction)
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
    window::Ref ref = window::refOf(pRecord);
    vXferDandDRefreshLocalFiles(pRecord->hwndDialog);
    return window::isAlive(ref) && window::recordAction(pRecord, KRACTION_LOCALDIR_CHANGED, pszDir);
}

// What becomes of the names of a selection while they are put into a list.
enum NamesResult {
    NAMES_ALL,
    NAMES_SOME,      // no memory for one; the list holds those before it
    NAMES_UNREADABLE // a row's name can't be read, or the rows don't match their count
};

// Counts the names that the list, which has room for cSelected, then holds.
NamesResult listNames(HWND hwndSource, LONG nColumn, XferFileList list, LONG cSelected,
                      LONG* pcNames)
{
    char szName[XFER_NAME_SIZE];
    auto cRows = LONG(SendMessageA(hwndSource, LB_GETCOUNT, 0, 0));
    *pcNames = 0;
    for (LONG n = 0; n < cRows; ++n) {
        if (SendMessageA(hwndSource, LB_GETSEL, WPARAM(n), 0) <= 0) {
            continue;
        }
        if (*pcNames == cSelected || panes::readRowText(hwndSource, n, szName) == LB_ERR) {
            return NAMES_UNREADABLE;
        }
        if (!XferFileList_fSetString(list, *pcNames, nColumn, szName)) {
            return NAMES_SOME;
        }
        ++*pcNames;
    }
    return *pcNames == cSelected ? NAMES_ALL : NAMES_UNREADABLE;
}

// Records the first names of a list. Returns whether the window still exists afterwards.
bool recordNames(const XferWindowRecord* pRecord, XferFileList list, LONG cNames, LONG nColumn,
                 int nAction)
{
    char szName[XFER_NAME_SIZE];
    bool fAlive = true;
    for (LONG n = 0; fAlive && n < cNames; ++n) {
        XferFileList_lpszGetString(list, n, nColumn, szName, sizeof szName);
        fAlive = window::recordAction(pRecord, nAction, szName);
    }
    return fAlive;
}

} // namespace

// Recording can run code that changes the rows, so all names are taken first. Those before one for
// which there is no memory are recorded although the list goes.
bool dragdrop::listSelection(const XferWindowRecord* pRecord, int idSource, LONG nColumn,
                             int nAction, XferFileList* pList)
{
    HWND hwndSource = GetDlgItem(pRecord->hwndDialog, idSource);
    auto cSelected = LONG(SendMessageA(hwndSource, LB_GETSELCOUNT, 0, 0));
    LONG cNames = 0;
    NamesResult result = NAMES_UNREADABLE;
    if (!XferFileList_fCreate(pList)) {
        return false;
    }
    if (XferFileList_fSetSize(pList, cSelected, XFERLIST_KEEPGROWTH)) {
        result = listNames(hwndSource, nColumn, *pList, cSelected, &cNames);
    }
    bool fAlive = result != NAMES_UNREADABLE &&
                  (nAction == 0 || recordNames(pRecord, *pList, cNames, nColumn, nAction));
    if (!fAlive || result != NAMES_ALL) {
        XferFileList_vDestroy(*pList);
        *pList = nullptr;
        return false;
    }
    return true;
}

int fXferDandDTransferSelection(XferWindowRecord* pRecord, int idSource, Direction direction,
                                XferFileList* pList, const char* pszDir)
{
    auto request = window::FileRequest(direction);
    *pList = nullptr;
    if (!window::canRequest(pRecord, request) || !syncForTransfer(pRecord, direction)) {
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
    if (!dragdrop::listSelection(pRecord, idSource, window::columnOf(request),
                                 window::actionOf(request), pList)) {
        return 0;
    }
    window::requestFiles(pRecord, request, *pList, pszDir);
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
