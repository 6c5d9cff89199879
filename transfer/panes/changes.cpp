#include "transfer/panes/changes.h"
#include "resources/ids.h"
#include "transfer/panes/drawing.h"
#include "transfer/panes/merge.h"
#include "transfer/panes/namesort.h"
#include "transfer/panes/rows.h"

#include <stdlib.h>

namespace {

constexpr int LISTS[window::PANE_LISTS] = {IDC_DANDD_HOSTFILES, IDC_DANDD_HOSTDIRS,
                                           IDC_DANDD_LOCALFILES, IDC_DANDD_LOCALDIRS};

window::PaneList* findList(XferWindowRecord* pRecord, int idControl)
{
    return &pRecord->paneLists[panes::paneListIndex(idControl)];
}

bool addsRow(UINT uMessage)
{
    return uMessage == LB_ADDSTRING || uMessage == LB_INSERTSTRING || uMessage == LB_DIR ||
           uMessage == LB_ADDFILE;
}

// What a message does to the rows that a search relies on: they stay in order as long as only the
// library puts rows in, and says what they are.
void noteMessage(window::PaneList* pList, HWND hwndList, UINT uMessage, bool fDirs)
{
    bool fReset = uMessage == LB_RESETCONTENT;
    bool fData = uMessage == LB_SETITEMDATA && fDirs;
    if (!fReset && !fData && uMessage != LB_DELETESTRING && !addsRow(uMessage)) {
        return;
    }
    pList->cRowMessages += !fData && !panes::isEndOfLastRow(hwndList, uMessage);
    bool fOwn = panes::isOwnMessage(hwndList, uMessage);
    if (fReset) {
        pList->fForeignRows = 0;
        pList->lcidOrder = 0;
    } else if (!fOwn && uMessage != LB_DELETESTRING) {
        pList->fForeignRows = 1;
    }
}

// Whether the rows are in the order in which names are compared now.
bool isInOrder(window::PaneList* pList)
{
    LCID lcid = GetThreadLocale();
    if (pList->lcidOrder == 0) {
        pList->lcidOrder = lcid;
    }
    return pList->lcidOrder == lcid && !pList->fForeignRows;
}

bool addWaiting(window::PaneList* pList, const char* pszName, panes::Change change)
{
    if (pList->pWaiting == nullptr) {
        pList->pWaiting = static_cast<panes::Names*>(calloc(1, sizeof(panes::Names)));
    }
    return pList->pWaiting != nullptr && panes::addName(pList->pWaiting, pszName, change);
}

void freeWaiting(panes::Names* pWaiting)
{
    if (pWaiting != nullptr) {
        panes::freeNames(pWaiting);
        free(pWaiting);
    }
}

// The names wait under the locale that they came under.
bool applyList(XferWindowRecord* pRecord, int idControl)
{
    window::PaneList* pList = findList(pRecord, idControl);
    panes::Names* pWaiting = pList->pWaiting;
    if (pWaiting == nullptr) {
        return true;
    }
    window::Ref ref = window::refOf(pRecord);
    LCID lcid = GetThreadLocale();
    pList->pWaiting = nullptr;
    pList->fMerging = 1;
    SetThreadLocale(pList->lcidOrder);
    panes::mergeChanges(pRecord, idControl, pWaiting);
    SetThreadLocale(lcid);
    freeWaiting(pWaiting);
    if (!window::isAlive(ref)) {
        return false;
    }
    pList->fMerging = 0;
    return true;
}

void changeFileAtOnce(XferWindowRecord* pRecord, int idControl, const char* pszName,
                      panes::Change change)
{
    LONG nRow;
    HWND hwndList = GetDlgItem(pRecord->hwndDialog, idControl);
    bool fFound = fXferDandDFindName(hwndList, pszName, &nRow) != 0;
    if (fFound != (change == panes::CHANGE_REMOVE)) {
        return;
    }
    pRecord->fListsChanged = 1;
    if (fFound) {
        panes::deleteFileRow(pRecord, hwndList, nRow);
    } else {
        panes::insertFileRow(pRecord, hwndList, nRow, pszName);
    }
}

} // namespace

int panes::paneListIndex(int idControl)
{
    int n = 0;
    while (n < window::PANE_LISTS && LISTS[n] != idControl) {
        ++n;
    }
    return n;
}

void panes::changeListAtOnce(XferWindowRecord* pRecord, int idControl, const char* pszName,
                             Change change)
{
    if (idControl != IDC_DANDD_HOSTDIRS) {
        changeFileAtOnce(pRecord, idControl, pszName, change);
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    suspendDrawing(pRecord, idControl);
    fXferDandDRemoveSubDir(ref.hdlgDandD, idControl, pszName);
    if (change == CHANGE_ADD && window::isAlive(ref)) {
        fXferDandDAddListItem(ref.hdlgDandD, idControl, pszName, ICON_CLOSEDFOLDER,
                              HOST_SUBDIR_INDENT, XFERITEM_CHILD, 0);
    }
}

// What waits shows up again, so a change waits only if the message that ends that is on its way.
// Without memory it follows those that wait at once: the search meets their rows.
void panes::changeList(XferWindowRecord* pRecord, int idControl, const char* pszName, Change change)
{
    char szName[XFER_NAME_SIZE];
    window::PaneList* pList = findList(pRecord, idControl);
    cutToRow(szName, pszName);
    bool fWaits = !pList->fMerging && isInOrder(pList) && ensureResumePosted(pRecord);
    if (!fWaits || !addWaiting(pList, szName, change)) {
        changeListAtOnce(pRecord, idControl, szName, change);
    }
}

bool panes::applyChanges(XferWindowRecord* pRecord)
{
    bool fAlive = true;
    for (int n = 0; n < window::PANE_LISTS && fAlive; ++n) {
        fAlive = applyList(pRecord, LISTS[n]);
    }
    return fAlive;
}

bool panes::prepareList(XferWindowRecord* pRecord, HWND hwndList, UINT uMessage)
{
    int idControl = GetDlgCtrlID(hwndList);
    if (paneListIndex(idControl) == window::PANE_LISTS) {
        return true;
    }
    bool fAlive = applyList(pRecord, idControl);
    if (fAlive) {
        noteMessage(findList(pRecord, idControl), hwndList, uMessage,
                    idControl == IDC_DANDD_HOSTDIRS);
    }
    return fAlive;
}

void panes::forgetChanges(XferWindowRecord* pRecord)
{
    for (window::PaneList& list : pRecord->paneLists) {
        freeWaiting(list.pWaiting);
        list.pWaiting = nullptr;
    }
}
