// A list box finds no row and sorts none: each search costs a few dozen messages. So the names of
// a run are sorted here, and their rows are found in one pass over the list. After that the list
// gets its insertions and deletions in the order in which they came, at rows that are known
// without asking it: this is all that the same changes would have sent it one by one.
#include "transfer/panes/merge.h"
#include "resources/ids.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/drawing.h"
#include "transfer/panes/rows.h"

#include <stdlib.h>

namespace {

constexpr LONG BULK = 1000; // names
constexpr LONG NO_ROW = -1;

// Names that are equal to one another: the list has one row for them at most.
struct Group {
    LONG nRow; // its row before the merge, or the one that it would have stood before
    bool fWasPresent;
    bool fPresent;
};

struct Plan {
    window::Ref ref;
    XferWindowRecord* pRecord;
    window::PaneList* pList;
    int idControl;
    HWND hwndList;
    panes::Names* pNames;
    LONG cRows;  // before the merge
    LONG nFirst; // row that the search begins with
    LONG cGroups;
    Group* pGroups;
    LONG* pnShift;  // by how much groups have moved those behind them, as a tree of partial sums
    LONG* pnSteps;  // the names, in the order in which the list gets them
    LONG* pnCarets; // of each step: the row that gets the caret before it is deleted, or NO_ROW
    bool fQuiet;    // drawing is off
    DWORD cRowMessages;
    bool fByName; // the steps are in the order of the names
    bool fRefused;
};

bool isDirs(const Plan* pPlan)
{
    return pPlan->idControl == IDC_DANDD_HOSTDIRS;
}

// Whether the window is still there, and nobody else has put rows in or taken them out.
bool isValid(const Plan* pPlan)
{
    return window::isAlive(pPlan->ref) && pPlan->pList->cRowMessages == pPlan->cRowMessages;
}

void shiftRows(Plan* pPlan, LONG nGroup, LONG nBy)
{
    for (LONG n = nGroup + 1; n <= pPlan->cGroups; n += n & -n) {
        pPlan->pnShift[n] += nBy;
    }
}

LONG rowNow(const Plan* pPlan, LONG nGroup)
{
    LONG nRow = pPlan->pGroups[nGroup].nRow;
    for (LONG n = nGroup; n > 0; n -= n & -n) {
        nRow += pPlan->pnShift[n];
    }
    return nRow;
}

// Nothing waits for a list with rows of the caller's own, so no row is too long for the buffer.
int compareRow(const Plan* pPlan, LONG nRow, const char* pszName)
{
    char szText[XFER_NAME_SIZE] = "";
    panes::sendToList(pPlan->hwndList, LB_GETTEXT, nRow, szText);
    return lstrcmpA(szText, pszName);
}

// Finds the row of a group, from a row on that sorts behind the group before it. The names lie
// spread over the list, so the row is some nStep rows away.
void findRow(const Plan* pPlan, Group* pGroup, LONG nLow, LONG nStep, const char* pszName)
{
    LONG nHigh = pPlan->cRows;
    LONG nProbe = nLow + nStep;
    while (nLow < nHigh) {
        if (nProbe >= nHigh) {
            nProbe = nLow + (nHigh - nLow) / 2;
        }
        int nOrder = compareRow(pPlan, nProbe, pszName);
        if (nOrder == 0) {
            *pGroup = {nProbe, true, true};
            return;
        }
        if (nOrder > 0) {
            nHigh = nProbe;
            nProbe = nLow + (nHigh - nLow) / 2;
        } else {
            nLow = nProbe + 1;
            nStep = 2 * nStep + 1;
            nProbe = nHigh == pPlan->cRows ? nLow + nStep : nLow + (nHigh - nLow) / 2;
        }
    }
    *pGroup = {nLow, false, false};
}

// Puts equal names together.
void makeGroups(Plan* pPlan)
{
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        pPlan->cGroups += !panes::equalsPrevious(pPlan->pNames, n);
        pPlan->pNames->pNames[n].nGroup = pPlan->cGroups - 1;
    }
}

void findRows(Plan* pPlan)
{
    LONG nLow = pPlan->nFirst;
    LONG nFound = 0;
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        const panes::SortedName* pName = &pPlan->pNames->pNames[n];
        if (pName->nGroup < nFound) {
            continue;
        }
        Group* pGroup = &pPlan->pGroups[nFound];
        LONG nGap = (pPlan->cRows - nLow) / (pPlan->cGroups - nFound);
        findRow(pPlan, pGroup, nLow, nGap > 0 ? nGap - 1 : 0, pName->pszName);
        nLow = pGroup->nRow + pGroup->fWasPresent;
        ++nFound;
    }
}

void orderByArrival(Plan* pPlan)
{
    pPlan->fByName = false;
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        pPlan->pnSteps[pPlan->pNames->pNames[n].nPlace] = n;
    }
}

// An empty list gives its first row the caret, so the name that came first stays the first.
void orderByName(Plan* pPlan)
{
    LONG cSteps = 0;
    pPlan->fByName = true;
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        if (pPlan->pNames->pNames[n].nPlace == 0) {
            pPlan->pnSteps[cSteps++] = n;
        }
    }
    LONG nFirst = pPlan->pnSteps[0];
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        if (n != nFirst) {
            pPlan->pnSteps[cSteps++] = n;
        }
    }
}

// A list takes rows more quickly at its end than in its middle. Where nothing is deleted, and no
// selected row decides how the caret moves, the order makes no difference to the list.
bool canOrderByName(const Plan* pPlan)
{
    LONG cNames = pPlan->pNames->cNames;
    if (cNames < BULK || (isDirs(pPlan) && pPlan->cGroups < cNames)) {
        return false;
    }
    for (LONG n = 0; n < cNames; ++n) {
        const panes::SortedName* pName = &pPlan->pNames->pNames[n];
        if (pName->nTag != panes::CHANGE_ADD ||
            (isDirs(pPlan) && pPlan->pGroups[pName->nGroup].fWasPresent)) {
            return false;
        }
    }
    return !isDirs(pPlan) || panes::sendToList(pPlan->hwndList, LB_GETCURSEL) == LB_ERR;
}

// Goes through the steps without the list, for the rows that they delete.
void foreseeDeletions(Plan* pPlan)
{
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        const panes::SortedName* pName = &pPlan->pNames->pNames[pPlan->pnSteps[n]];
        Group* pGroup = &pPlan->pGroups[pName->nGroup];
        bool fAdd = pName->nTag == panes::CHANGE_ADD;
        pPlan->pnCarets[n] = pGroup->fPresent && !fAdd ? rowNow(pPlan, pName->nGroup) : NO_ROW;
        if (pGroup->fPresent != fAdd) {
            shiftRows(pPlan, pName->nGroup, fAdd ? 1 : -1);
            pGroup->fPresent = fAdd;
        }
    }
    for (LONG n = 0; n < pPlan->cGroups; ++n) {
        pPlan->pGroups[n].fPresent = pPlan->pGroups[n].fWasPresent;
        pPlan->pnShift[n + 1] = 0;
    }
}

// Rows that a list shows at most, with those that show in part.
LONG rowsInSight(HWND hwndList)
{
    RECT rc = {};
    RECT rcRow = {};
    GetClientRect(hwndList, &rc);
    SendMessageA(hwndList, LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&rcRow));
    LONG cx = rcRow.right - rcRow.left;
    LONG cy = rcRow.bottom - rcRow.top;
    return cx <= 0 || cy <= 0 ? MAXLONG : (rc.right / cx + 2) * (rc.bottom / cy + 2);
}

// A list scrolls to its caret, no further than it has to, and in a list that shows this takes far
// longer than the row. Where it ends up depends on the last deletions alone: on those that reach
// further up or down than all behind them, until they lie further apart than it has rows in sight.
void chooseCarets(Plan* pPlan, LONG cInSight)
{
    LONG nLowest = MAXLONG;
    LONG nHighest = NO_ROW;
    for (LONG n = pPlan->pNames->cNames - 1; n >= 0; --n) {
        LONG nRow = pPlan->pnCarets[n];
        bool fDecided = nHighest != NO_ROW && nHighest - nLowest > cInSight;
        if (fDecided || (nRow >= nLowest && nRow <= nHighest)) {
            pPlan->pnCarets[n] = NO_ROW;
        } else if (nRow != NO_ROW) {
            nLowest = nRow < nLowest ? nRow : nLowest;
            nHighest = nRow > nHighest ? nRow : nHighest;
        }
    }
}

// Deletions that don't move the caret can be made in any order. Taken from the end, they leave the
// list the fewest rows to move.
void orderDeletions(Plan* pPlan)
{
    LONG cFree = 0;
    LONG cNames = pPlan->pNames->cNames;
    while (cFree < cNames && pPlan->pnCarets[cFree] == NO_ROW) {
        ++cFree;
    }
    LONG nStep = 0;
    for (LONG n = cNames - 1; n >= 0; --n) {
        if (pPlan->pNames->pNames[n].nPlace < cFree) {
            pPlan->pnSteps[nStep++] = n;
        }
    }
}

bool allAre(const Plan* pPlan, panes::Change change)
{
    LONG n = 0;
    while (n < pPlan->pNames->cNames && pPlan->pNames->pNames[n].nTag == change) {
        ++n;
    }
    return n == pPlan->pNames->cNames;
}

bool allocatePlan(Plan* pPlan)
{
    auto c = size_t(pPlan->pNames->cNames) + 1;
    pPlan->pGroups = static_cast<Group*>(calloc(c, sizeof(Group)));
    pPlan->pnShift = static_cast<LONG*>(calloc(c, sizeof(LONG)));
    pPlan->pnSteps = static_cast<LONG*>(calloc(c, sizeof(LONG)));
    pPlan->pnCarets = static_cast<LONG*>(calloc(c, sizeof(LONG)));
    return pPlan->pGroups != nullptr && pPlan->pnShift != nullptr && pPlan->pnSteps != nullptr &&
           pPlan->pnCarets != nullptr;
}

void freePlan(Plan* pPlan)
{
    free(pPlan->pGroups);
    free(pPlan->pnShift);
    free(pPlan->pnSteps);
    free(pPlan->pnCarets);
}

// Returns false, with the names as they came, where no plan can be made: without memory, or in a
// directory list that begins with subdirectories, among which other rows may stand.
bool makePlan(Plan* pPlan)
{
    pPlan->cRows = LONG(panes::sendToList(pPlan->hwndList, LB_GETCOUNT));
    if (isDirs(pPlan)) {
        pPlan->nFirst = panes::firstChildRow(pPlan->hwndList, pPlan->cRows);
    }
    if (pPlan->cRows < 0 || (isDirs(pPlan) && pPlan->cRows > 0 && pPlan->nFirst == 0) ||
        !window::isAlive(pPlan->ref) || !allocatePlan(pPlan)) {
        return false;
    }
    pPlan->cRowMessages = pPlan->pList->cRowMessages;
    panes::sortNames(pPlan->pNames);
    makeGroups(pPlan);
    findRows(pPlan);
    if (canOrderByName(pPlan)) {
        orderByName(pPlan);
    } else {
        orderByArrival(pPlan);
        foreseeDeletions(pPlan);
        chooseCarets(pPlan, rowsInSight(pPlan->hwndList));
        if (pPlan->pNames->cNames >= BULK && !isDirs(pPlan) &&
            allAre(pPlan, panes::CHANGE_REMOVE)) {
            orderDeletions(pPlan);
        }
    }
    return true;
}

void deleteFilePlanned(Plan* pPlan, LONG nRow, bool fCaret)
{
    pPlan->pRecord->fListsChanged = 1;
    if (!pPlan->fQuiet) {
        pPlan->fQuiet = true;
        panes::suspendDrawing(pPlan->pRecord, pPlan->idControl);
        panes::sendToList(pPlan->hwndList, WM_SETREDRAW, FALSE);
    }
    if (fCaret) {
        panes::sendToList(pPlan->hwndList, LB_SETCARETINDEX, nRow);
    }
    panes::sendToList(pPlan->hwndList, LB_DELETESTRING, nRow);
}

void deletePlanned(Plan* pPlan, LONG nGroup, bool fCaret)
{
    LONG nRow = rowNow(pPlan, nGroup);
    pPlan->pGroups[nGroup].fPresent = false;
    shiftRows(pPlan, nGroup, -1);
    ++pPlan->cRowMessages;
    if (isDirs(pPlan)) {
        panes::deleteRow(pPlan->hwndList, nRow);
    } else {
        deleteFilePlanned(pPlan, nRow, fCaret);
    }
}

bool insertDirPlanned(Plan* pPlan, LONG nRow, const char* pszName)
{
    HGLOBAL hRecord =
        panes::makeRecord(panes::ICON_CLOSEDFOLDER, panes::HOST_SUBDIR_INDENT, XFERITEM_CHILD, 0);
    pPlan->cRowMessages += hRecord != nullptr;
    return panes::insertSubDir(pPlan->ref, pPlan->hwndList, nRow, pszName, hRecord);
}

bool insertFilePlanned(Plan* pPlan, LONG nRow, const char* pszName)
{
    pPlan->pRecord->fListsChanged = 1;
    ++pPlan->cRowMessages;
    return panes::insertFileRow(pPlan->pRecord, pPlan->hwndList, nRow, pszName);
}

void insertPlanned(Plan* pPlan, LONG nGroup, const char* pszName)
{
    LONG nRow = rowNow(pPlan, nGroup);
    bool fInserted = isDirs(pPlan) ? insertDirPlanned(pPlan, nRow, pszName)
                                   : insertFilePlanned(pPlan, nRow, pszName);
    pPlan->fRefused = !fInserted;
    if (fInserted) {
        pPlan->pGroups[nGroup].fPresent = true;
        shiftRows(pPlan, nGroup, 1);
    }
}

// One change. Returns false if it isn't complete because the plan is no longer valid.
bool runStep(Plan* pPlan, LONG nStep)
{
    const panes::SortedName* pName = &pPlan->pNames->pNames[pPlan->pnSteps[nStep]];
    bool fAdd = pName->nTag == panes::CHANGE_ADD;
    bool fPresent = pPlan->pGroups[pName->nGroup].fPresent;
    if (fPresent && (!fAdd || isDirs(pPlan))) {
        deletePlanned(pPlan, pName->nGroup, pPlan->pnCarets[nStep] != NO_ROW);
        fPresent = false;
    }
    if (!isValid(pPlan)) {
        return !fAdd;
    }
    if (fAdd && !fPresent) {
        insertPlanned(pPlan, pName->nGroup, pName->pszName);
    }
    return true;
}

// A list that is full has to hold the names that came first.
void undoInsertions(Plan* pPlan)
{
    for (LONG n = pPlan->cGroups - 1; n >= 0 && isValid(pPlan); --n) {
        if (pPlan->pGroups[n].fPresent && !pPlan->pGroups[n].fWasPresent) {
            deletePlanned(pPlan, n, false);
        }
    }
    orderByArrival(pPlan);
}

// Returns the number of steps that were made before the plan became invalid.
LONG runPlan(Plan* pPlan)
{
    for (LONG n = 0; n < pPlan->pNames->cNames; ++n) {
        if (!isValid(pPlan) || !runStep(pPlan, n)) {
            return n;
        }
        if (pPlan->fByName && pPlan->fRefused && isValid(pPlan)) {
            undoInsertions(pPlan);
            return runPlan(pPlan);
        }
    }
    return pPlan->pNames->cNames;
}

} // namespace

void panes::mergeChanges(XferWindowRecord* pRecord, int idControl, Names* pChanges)
{
    Plan plan = {};
    plan.ref = window::refOf(pRecord);
    plan.pRecord = pRecord;
    plan.pList = &pRecord->paneLists[paneListIndex(idControl)];
    plan.idControl = idControl;
    plan.hwndList = GetDlgItem(pRecord->hwndDialog, idControl);
    plan.pNames = pChanges;
    if (isDirs(&plan)) {
        suspendDrawing(pRecord, idControl);
    }
    bool fPlanned = window::isAlive(plan.ref) && makePlan(&plan);
    for (LONG n = fPlanned ? runPlan(&plan) : 0; n < pChanges->cNames && window::isAlive(plan.ref);
         ++n) {
        const SortedName* pName = &pChanges->pNames[fPlanned ? plan.pnSteps[n] : n];
        changeListAtOnce(pRecord, idControl, pName->pszName, Change(pName->nTag));
    }
    freePlan(&plan);
}
