// The commands that act on selected rows. A selection counts in two-pane mode only; without
// one, a command asks for the names in its dialog.
#include "dialogs/open.h"
#include "resources/ids.h"
#include "shared/filelist.h"
#include "shared/krutils.h"
#include "transfer/commands/table.h"
#include "transfer/dragdrop/drop.h"
#include "transfer/panes/details.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/pathline.h"
#include "transfer/panes/rows.h"
#include "transfer/window/request.h"

#include <direct.h>
#include <stdio.h>
#include <string.h>

namespace {

constexpr int CCH_QUESTION = 80;
constexpr DWORD FROM_LIST = 1;

bool isTwoPane(const commands::Command* pCommand)
{
    return pCommand->pRecord->nViewMode == XFERVIEW_TWOPANE;
}

bool isAlive(const commands::Command* pCommand)
{
    return window::isAlive(pCommand->hdlgDandD, pCommand->pRecord);
}

LONG countSelected(const commands::Command* pCommand, int idList)
{
    return isTwoPane(pCommand)
               ? LONG(SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_GETSELCOUNT, 0, 0))
               : 0;
}

// The row of a directory list that a command acts on.
enum RowState { ROW_NONE, ROW_BROKEN, ROW_FOUND };

RowState selectedDir(const commands::Command* pCommand, int idList, panes::Row* pRow)
{
    HWND hwndList = GetDlgItem(pCommand->hdlgDandD, idList);
    LRESULT nRow = isTwoPane(pCommand) ? SendMessageA(hwndList, LB_GETCURSEL, 0, 0) : LB_ERR;
    if (nRow == LB_ERR) {
        return ROW_NONE;
    }
    return panes::readRow(hwndList, LONG(nRow), pRow) ? ROW_FOUND : ROW_BROKEN;
}

// Asks about a name. Gives true only for a yes, and only if the window has outlived the box.
bool userConfirms(const commands::Command* pCommand, UINT idText, UINT idCaption,
                  const char* pszName)
{
    char szFormat[CCH_QUESTION];
    char szCaption[CCH_QUESTION];
    char szText[XFER_FORMAT_SIZE];
    window::loadString(pCommand->pRecord, idText, szFormat, sizeof szFormat);
    window::loadString(pCommand->pRecord, idCaption, szCaption, sizeof szCaption);
    wsprintfA(szText, szFormat, pszName);
    int nAnswer = MessageBoxA(pCommand->hdlgDandD, szText, szCaption, MB_YESNO | MB_ICONQUESTION);
    return nAnswer == IDYES && isAlive(pCommand);
}

// The directory in which the names of a command mean what was selected.
struct NamesDir {
    char szDir[XFER_NAME_SIZE];
};

NamesDir shownDir(const XferWindowRecord* pRecord)
{
    NamesDir dir = {};
    strcpy(dir.szDir, pRecord->szLocalDir);
    return dir;
}

// Callbacks and boxes can run other code that changes the directory of the process.
bool isStillIn(const NamesDir* pDir)
{
    char szDir[XFER_NAME_SIZE] = "";
    _getcwd(szDir, sizeof szDir);
    return strcmp(_strlwr(szDir), pDir->szDir) == 0;
}

bool mayGoOn(const commands::Command* pCommand, const NamesDir* pDir, DWORD dwFlag, UINT idText,
             UINT idCaption, const char* pszName)
{
    bool fAsk = (window::confirmFlags(pCommand->pRecord) & dwFlag) != 0;
    return isAlive(pCommand) && (!fAsk || userConfirms(pCommand, idText, idCaption, pszName)) &&
           isStillIn(pDir);
}

void reportFailure(const commands::Command* pCommand, const char* pszName)
{
    panes::reportLocalFailure(pCommand->hdlgDandD, pCommand->pRecord, pszName, CCH_QUESTION);
}

void showString(const commands::Command* pCommand, UINT idString)
{
    char szText[XFER_NAME_SIZE];
    window::loadString(pCommand->pRecord, idString, szText, sizeof szText);
    vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
}

void removeHostDir(const commands::Command* pCommand, const panes::Row* pRow)
{
    const XferWindowRecord* pRecord = pCommand->pRecord;
    if (pRow->nKind != XFERITEM_CHILD) {
        showString(pCommand, IDS_HOSTDIR_FIXED);
        return;
    }
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnRemoveHostDir != nullptr) {
        pRecord->callbacks.pfnRemoveHostDir(pRecord->dwCallerData, 0, 0, pRow->szText, FROM_LIST);
        KrRecordAction(hwndParent, KRACTION_HOSTDIR_REMOVED, pRow->szText);
    }
}

void removeLocalDir(const commands::Command* pCommand, const panes::Row* pRow)
{
    if (pRow->nKind != XFERITEM_CHILD) {
        showString(pCommand, IDS_HOSTDIR_FIXED);
        return;
    }
    NamesDir dir = shownDir(pCommand->pRecord);
    if (!panes::syncLocalPanes(pCommand->pRecord) ||
        !mayGoOn(pCommand, &dir, XFERCONFIRM_LOCALRMDIR, IDS_RMDIR_TEXT, IDS_RMDIR_CAPTION,
                 pRow->szText)) {
        return;
    }
    if (_rmdir(pRow->szText) != 0) {
        reportFailure(pCommand, pRow->szText);
        return;
    }
    KrRecordAction(pCommand->pRecord->hwndParent, KRACTION_LOCALDIR_REMOVED, pRow->szText);
    fXferDandDRemoveSubDir(pCommand->hdlgDandD, IDC_DANDD_LOCALDIRS, pRow->szText);
}

void deleteHostFiles(const commands::Command* pCommand)
{
    const XferWindowRecord* pRecord = pCommand->pRecord;
    XferFileList list;
    // Without anybody to delete them nothing is recorded.
    if (pRecord->callbacks.pfnDeleteHostFiles != nullptr &&
        dragdrop::listSelection(pRecord, IDC_DANDD_HOSTFILES, XFERLIST_HOST,
                                KRACTION_HOSTFILE_DELETED, &list)) {
        pRecord->callbacks.pfnDeleteHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
    }
}

// Asks for one file if need be, and deletes it.
void deleteLocalFile(const commands::Command* pCommand, const NamesDir* pDir, const char* pszName)
{
    if (!mayGoOn(pCommand, pDir, XFERCONFIRM_LOCALDELETE, IDS_DELETE_TEXT, IDS_DELETE_CAPTION,
                 pszName)) {
        return;
    }
    if (remove(pszName) != 0) {
        reportFailure(pCommand, pszName);
        return;
    }
    KrRecordAction(pCommand->pRecord->hwndParent, KRACTION_LOCALFILE_DELETED, pszName);
    nXferDandDRemoveLocalFileName(pCommand->hdlgDandD, pszName);
}

// The rows in hand, ascending, in a block of the global heap.
struct SelectedRows {
    HGLOBAL hRows;
    LONG* pRows;
    LONG cRows;
};

bool takeSelection(HWND hwndList, SelectedRows* pSelected)
{
    auto cSelected = LONG(SendMessageA(hwndList, LB_GETSELCOUNT, 0, 0));
    if (cSelected <= 0) {
        return false;
    }
    pSelected->hRows = GlobalAlloc(GMEM_MOVEABLE, SIZE_T(cSelected) * sizeof(LONG));
    pSelected->pRows =
        static_cast<LONG*>(pSelected->hRows == nullptr ? nullptr : GlobalLock(pSelected->hRows));
    if (pSelected->pRows == nullptr) {
        if (pSelected->hRows != nullptr) {
            GlobalFree(pSelected->hRows);
        }
        return false;
    }
    pSelected->cRows = LONG(SendMessageA(hwndList, LB_GETSELITEMS, WPARAM(cSelected),
                                         reinterpret_cast<LPARAM>(pSelected->pRows)));
    return true;
}

void giveBackSelection(SelectedRows* pSelected)
{
    GlobalUnlock(pSelected->hRows);
    GlobalFree(pSelected->hRows);
}

// The names are read before the first box opens: while one is open, the list can be filled
// anew, and what stood in a row must not be taken for what stands there then.
void deleteLocalFiles(const commands::Command* pCommand)
{
    XferFileList names;
    char szName[XFER_NAME_SIZE];
    NamesDir dir = shownDir(pCommand->pRecord);
    if (!panes::syncLocalFiles(pCommand->pRecord) ||
        !dragdrop::listSelection(pCommand->pRecord, IDC_DANDD_LOCALFILES, XFERLIST_LOCAL, 0,
                                 &names)) {
        return;
    }
    LONG cNames = XferFileList_cGetSize(names);
    for (LONG n = 0; n < cNames && isAlive(pCommand) && isStillIn(&dir); ++n) {
        XferFileList_lpszGetString(names, n, XFERLIST_LOCAL, szName, sizeof szName);
        deleteLocalFile(pCommand, &dir, szName);
    }
    XferFileList_vDestroy(names);
}

void viewHostFiles(const XferWindowRecord* pRecord, XferFileList list)
{
    if (pRecord->callbacks.pfnViewHostFiles != nullptr) {
        pRecord->callbacks.pfnViewHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
    } else {
        XferFileList_vDestroy(list);
    }
}

void detailHostFiles(const XferWindowRecord* pRecord, XferFileList list)
{
    if (pRecord->callbacks.pfnHostFileDetails != nullptr) {
        pRecord->callbacks.pfnHostFileDetails(pRecord->dwCallerData, 0, 0, list);
    } else {
        XferFileList_vDestroy(list);
    }
}

// A path that doesn't fit names no file: it is handed on whole and refused there.
void viewLocalFile(const commands::Command* pCommand, const char* pszName)
{
    char szPath[2 * XFER_NAME_SIZE] = "";
    _getcwd(szPath, XFER_NAME_SIZE);
    size_t cch = strlen(szPath);
    if (cch > 0 && szPath[cch - 1] != '\\') {
        strcpy(szPath + cch, "\\");
    }
    strcat(szPath, pszName);
    vXferDandDViewFile(pCommand->hdlgDandD, szPath, nullptr, nullptr, nullptr, nullptr);
}

void detailLocalFile(const commands::Command* pCommand, const char* pszName)
{
    vXferDandDFileDetails(pCommand->hdlgDandD, pszName);
}

// What is done with a file can end the window: the record is not touched in the loop.
void forSelectedLocalFiles(const commands::Command* pCommand,
                           void (*pfnFile)(const commands::Command* pCommand, const char* pszName))
{
    char szName[XFER_NAME_SIZE];
    HWND hwndList = GetDlgItem(pCommand->hdlgDandD, IDC_DANDD_LOCALFILES);
    auto cRows = LONG(SendMessageA(hwndList, LB_GETCOUNT, 0, 0));
    if (!panes::syncLocalFiles(pCommand->pRecord)) {
        return;
    }
    for (LONG n = 0; n < cRows; ++n) {
        if (SendMessageA(hwndList, LB_GETSEL, WPARAM(n), 0) > 0 &&
            panes::readRowText(hwndList, n, szName) != LB_ERR) {
            pfnFile(pCommand, szName);
        }
    }
}

// The names are read from the record at once: the first callback can run another dialog.
struct TypedTransfer {
    Direction direction;
    char szLocal[XFER_NAME_SIZE];
    char szHost[XFER_NAME_SIZE];
};

bool askForTransfer(XferWindowRecord* pRecord, TypedTransfer* pTyped)
{
    pRecord->szName1[0] = '\0';
    pRecord->szName2[0] = '\0';
    pRecord->nDialogOp = XFEROP_SEND;
    if (!dialogs::run(pRecord, dialogs::DLG_TRANSFER) ||
        (pRecord->nDialogOp != XFEROP_SEND && pRecord->nDialogOp != XFEROP_RECEIVE)) {
        return false;
    }
    pTyped->direction = pRecord->nDialogOp == XFEROP_SEND ? XFERDIR_SEND : XFERDIR_RECEIVE;
    strcpy(pTyped->szLocal, pRecord->szName1);
    strcpy(pTyped->szHost, pRecord->szName2);
    return true;
}

void transferByName(const commands::Command* pCommand)
{
    TypedTransfer typed;
    XferFileList list;
    XferWindowRecord* pRecord = pCommand->pRecord;
    if (!askForTransfer(pRecord, &typed) || !window::canTransfer(pRecord, typed.direction) ||
        !XferFileListCreateOne(&list, XFERLIST_LOCAL, typed.szLocal)) {
        return;
    }
    int nAction = typed.direction == XFERDIR_SEND ? KRACTION_FILE_SENT : KRACTION_FILE_RECEIVED;
    if (XferFileList_fSetString(list, 0, XFERLIST_HOST, typed.szHost) &&
        window::recordAction(pRecord, nAction, typed.szLocal)) {
        window::requestTransfer(pRecord, typed.direction, list, nullptr);
    } else {
        XferFileList_vDestroy(list);
    }
}

// Reads the name of the one selected row, if there is exactly one.
bool onlySelected(const commands::Command* pCommand, int idList, char (&szName)[XFER_NAME_SIZE])
{
    int nRow;
    return countSelected(pCommand, idList) == 1 &&
           SendDlgItemMessageA(pCommand->hdlgDandD, idList, LB_GETSELITEMS, 1,
                               reinterpret_cast<LPARAM>(&nRow)) == 1 &&
           panes::readRowText(GetDlgItem(pCommand->hdlgDandD, idList), nRow, szName) != LB_ERR;
}

// Sizes of the selected files, from the last to the first; 0 if one can't be had.
DWORD sumSizes(HWND hwndList, const SelectedRows* pSelected)
{
    char szName[XFER_NAME_SIZE];
    struct _stat stat;
    DWORD cbTotal = 0;
    for (LONG n = pSelected->cRows - 1; n >= 0; --n) {
        panes::readRowText(hwndList, pSelected->pRows[n], szName);
        if (nXferDandDFileStat(szName, &stat) != 0) {
            return 0;
        }
        cbTotal += DWORD(stat.st_size);
    }
    return cbTotal;
}

} // namespace

void commands::removeDir(const commands::Command* pCommand)
{
    panes::Row row;
    RowState state = selectedDir(pCommand, IDC_DANDD_HOSTDIRS, &row);
    if (state != ROW_NONE) {
        if (state == ROW_FOUND) {
            removeHostDir(pCommand, &row);
        }
        return;
    }
    state = selectedDir(pCommand, IDC_DANDD_LOCALDIRS, &row);
    if (state == ROW_FOUND) {
        removeLocalDir(pCommand, &row);
    } else if (state == ROW_NONE) {
        dialogs::askForNames(pCommand->hdlgDandD, pCommand->pRecord, dialogs::DLG_REMOVEDIR);
    }
}

void commands::transferSelection(const commands::Command* pCommand)
{
    if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        vXferDandDDropOn(pCommand->pRecord, IDC_DANDD_LOCALFILES, IDC_DANDD_HOSTFILES, XFERDIR_SEND,
                         false);
    } else if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        vXferDandDDropOn(pCommand->pRecord, IDC_DANDD_HOSTFILES, IDC_DANDD_LOCALFILES,
                         XFERDIR_RECEIVE, false);
    } else {
        transferByName(pCommand);
    }
}

void commands::deleteSelection(const commands::Command* pCommand)
{
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        deleteHostFiles(pCommand);
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        deleteLocalFiles(pCommand);
    } else {
        dialogs::askForNames(pCommand->hdlgDandD, pCommand->pRecord, dialogs::DLG_DELETE);
    }
}

// A selection gives the dialog its side and its old name.
void commands::renameFile(const commands::Command* pCommand)
{
    XferWindowRecord* pRecord = pCommand->pRecord;
    bool fHere = panes::syncLocalPanes(pRecord);
    if (!isAlive(pCommand)) {
        return;
    }
    fHere = fHere && !pRecord->fForeignFiles;
    pRecord->nDialogOp = XFEROP_HOST;
    if (!onlySelected(pCommand, IDC_DANDD_HOSTFILES, pRecord->szName1)) {
        pRecord->nDialogOp = XFEROP_LOCAL;
        if (!fHere || !onlySelected(pCommand, IDC_DANDD_LOCALFILES, pRecord->szName1)) {
            pRecord->szName1[0] = '\0';
        }
    }
    dialogs::run(pRecord, dialogs::DLG_RENAME);
}

void commands::viewSelection(const commands::Command* pCommand)
{
    XferFileList list;
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        if (dragdrop::listSelection(pCommand->pRecord, IDC_DANDD_HOSTFILES, XFERLIST_HOST, 0,
                                    &list)) {
            viewHostFiles(pCommand->pRecord, list);
        }
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        forSelectedLocalFiles(pCommand, viewLocalFile);
    } else {
        dialogs::askForNames(pCommand->hdlgDandD, pCommand->pRecord, dialogs::DLG_VIEW);
    }
}

void commands::showDetails(const commands::Command* pCommand)
{
    XferFileList list;
    if (countSelected(pCommand, IDC_DANDD_HOSTFILES) > 0) {
        if (dragdrop::listSelection(pCommand->pRecord, IDC_DANDD_HOSTFILES, XFERLIST_HOST, 0,
                                    &list)) {
            detailHostFiles(pCommand->pRecord, list);
        }
    } else if (countSelected(pCommand, IDC_DANDD_LOCALFILES) > 0) {
        forSelectedLocalFiles(pCommand, detailLocalFile);
    }
}

void commands::showSelectionSum(const commands::Command* pCommand)
{
    char szFormat[XFER_NAME_SIZE];
    char szText[XFER_FORMAT_SIZE];
    SelectedRows selected = {};
    if (!takeSelection(pCommand->hwndControl, &selected)) {
        return;
    }
    DWORD cbTotal = sumSizes(pCommand->hwndControl, &selected);
    window::loadString(pCommand->pRecord, IDS_SELECTION_SUM, szFormat, sizeof szFormat);
    wsprintfA(szText, szFormat, DWORD(selected.cRows), cbTotal);
    giveBackSelection(&selected);
    vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
}
