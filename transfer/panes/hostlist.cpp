// The host panes, which show only what the caller puts there.
#include "resources/ids.h"
#include "transfer/panes/changes.h"
#include "transfer/panes/drawing.h"
#include "transfer/panes/rows.h"

namespace {

constexpr char PARENT_DIR[] = "..";

void setPathLine(const window::Ref& ref, const char* pszText)
{
    SetDlgItemTextA(ref.hdlgDandD, IDC_DANDD_HOSTPATH, pszText);
    if (window::isAlive(ref)) {
        SendDlgItemMessageA(ref.hdlgDandD, IDC_DANDD_HOSTPATH, EM_SETMODIFY, FALSE, 0);
    }
}

// The record of row 1 if that row is the working directory, else null.
HGLOBAL workingDirRecord(HWND hwndDirs)
{
    XferListItem item;
    HGLOBAL hRecord = panes::recordOfRow(hwndDirs, panes::WORKDIR_ROW);
    return panes::readRecord(hRecord, &item) && item.nIndent == panes::WORKDIR_INDENT ? hRecord
                                                                                      : nullptr;
}

// Puts the working directory row back into the list that was cleared. Without the ".." row above
// it there is no place for it. Returns whether the row has its record again.
bool putBack(const window::Ref& ref, HWND hwndDirs, const char* pszText, HGLOBAL hRecord)
{
    LRESULT nRow = panes::sendToList(hwndDirs, LB_ADDSTRING, 0, pszText);
    if (!window::isAlive(ref)) {
        return false;
    }
    if (nRow > 0) {
        panes::sendToList(hwndDirs, LB_SETITEMDATA, LONG(nRow), hRecord);
    } else {
        panes::sendToList(hwndDirs, LB_DELETESTRING, LONG(nRow));
    }
    return nRow > 0;
}

// Empties the list, which isn't drawn with each row that goes, and puts the ".." row into it.
// Returns false if the window ended meanwhile.
bool reseedDirs(XferWindowRecord* pRecord, HWND hwndDirs)
{
    window::Ref ref = window::refOf(pRecord);
    bool fHeld = panes::suspendDrawing(pRecord, IDC_DANDD_HOSTDIRS);
    if (!fHeld) {
        panes::sendToList(hwndDirs, WM_SETREDRAW, FALSE);
    }
    panes::clearRows(ref, hwndDirs);
    if (!window::isAlive(ref)) {
        return false;
    }
    panes::sendToList(hwndDirs, LB_RESETCONTENT);
    if (!fHeld) {
        panes::sendToList(hwndDirs, WM_SETREDRAW, TRUE);
        InvalidateRect(hwndDirs, nullptr, TRUE);
    }
    fXferDandDAddListItem(ref.hdlgDandD, IDC_DANDD_HOSTDIRS, PARENT_DIR, panes::ICON_OPENFOLDER, 0,
                          XFERITEM_ANCESTOR, 0);
    return window::isAlive(ref);
}

// Clears the list around the working directory row, which keeps its record. The record is held
// meanwhile: clearing the list tells others of its rows, and the window can end in that.
void clearAroundWorkingDir(XferWindowRecord* pRecord, HWND hwndDirs)
{
    char szText[XFER_NAME_SIZE];
    panes::HeldRecord held;
    window::Ref ref = window::refOf(pRecord);
    HGLOBAL hRecord = workingDirRecord(hwndDirs);
    panes::readRowText(hwndDirs, panes::WORKDIR_ROW, szText);
    panes::holdRecord(&held, hRecord);
    bool fKept = reseedDirs(pRecord, hwndDirs) && hRecord != nullptr &&
                 putBack(ref, hwndDirs, szText, hRecord);
    panes::releaseRecord(&held);
    if (hRecord != nullptr && !fKept) {
        GlobalFree(hRecord);
    }
}

void clearDirs(XferWindowRecord* pRecord, bool fSubDirs, bool fWorkingDir)
{
    HWND hwndDirs = GetDlgItem(pRecord->hwndDialog, IDC_DANDD_HOSTDIRS);
    if (fSubDirs && !fWorkingDir) {
        clearAroundWorkingDir(pRecord, hwndDirs);
    } else if (fSubDirs) {
        reseedDirs(pRecord, hwndDirs);
    } else if (fWorkingDir && workingDirRecord(hwndDirs) != nullptr) {
        panes::deleteRow(hwndDirs, panes::WORKDIR_ROW);
    }
}

void changeHostList(HWND hdlgDandD, int idControl, const char* pszName, panes::Change change)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::changeList(pRecord, idControl, pszName, change);
    }
}

} // namespace

int KRHAULAPI nXferDandDAddHostFileName(HWND hdlgDandD, const char* pszName)
{
    changeHostList(hdlgDandD, IDC_DANDD_HOSTFILES, pszName, panes::CHANGE_ADD);
    return 0;
}

int KRHAULAPI nXferDandDRemoveHostFileName(HWND hdlgDandD, const char* pszName)
{
    changeHostList(hdlgDandD, IDC_DANDD_HOSTFILES, pszName, panes::CHANGE_REMOVE);
    return 0;
}

int KRHAULAPI nXferDandDAddHostSubDir(HWND hdlgDandD, const char* pszName)
{
    changeHostList(hdlgDandD, IDC_DANDD_HOSTDIRS, pszName, panes::CHANGE_ADD);
    return 0;
}

int KRHAULAPI nXferDandDRemoveHostSubDir(HWND hdlgDandD, const char* pszName)
{
    changeHostList(hdlgDandD, IDC_DANDD_HOSTDIRS, pszName, panes::CHANGE_REMOVE);
    return 0;
}

int KRHAULAPI nXferDandDClearHostFileList(HWND hdlgDandD)
{
    return nXferDandDClearHostFileInfo(hdlgDandD, XFERCLEAR_FILES | XFERCLEAR_SUBDIRS |
                                                      XFERCLEAR_WORKDIR | XFERCLEAR_FILTER);
}

// The lists and lines report each change to other code, which can destroy the window.
int KRHAULAPI nXferDandDClearHostFileInfo(HWND hdlgDandD, DWORD dwFlags)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return 0;
    }
    window::Ref ref = window::refOf(pRecord);
    if ((dwFlags & XFERCLEAR_FILES) != 0) {
        panes::sendToList(GetDlgItem(hdlgDandD, IDC_DANDD_HOSTFILES), LB_RESETCONTENT);
    }
    if ((dwFlags & XFERCLEAR_WORKDIR) != 0 && window::isAlive(ref)) {
        setPathLine(ref, "");
    }
    if ((dwFlags & XFERCLEAR_FILTER) != 0 && window::isAlive(ref)) {
        SetDlgItemTextA(hdlgDandD, IDC_DANDD_HOSTFILTER, "");
    }
    if (window::isAlive(ref)) {
        clearDirs(pRecord, (dwFlags & XFERCLEAR_SUBDIRS) != 0, (dwFlags & XFERCLEAR_WORKDIR) != 0);
    }
    return 0;
}

void KRHAULAPI vXferDandDPrintWorkingDir(HWND hdlgDandD, const char* pszRow, const char* pszPath)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    fXferDandDAddListItem(hdlgDandD, IDC_DANDD_HOSTDIRS, pszRow, panes::ICON_SELECTEDFOLDER,
                          panes::WORKDIR_INDENT, XFERITEM_CURRENT, 0);
    if (window::isAlive(ref)) {
        setPathLine(ref, pszPath);
    }
}
