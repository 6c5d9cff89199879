// The host panes, which show only what the caller puts there.
#include "resources/ids.h"
#include "transfer/panes/drawing.h"
#include "transfer/panes/rows.h"

#include <string.h>

namespace {

constexpr LONG WORKDIR_ROW = 1;
constexpr DWORD WORKDIR_INDENT = 1;
constexpr DWORD SUBDIR_INDENT = 2;
constexpr char PARENT_DIR[] = "..";

// A working directory row that stays while the list is cleared around it.
struct KeptRow {
    char szText[XFER_NAME_SIZE];
    HGLOBAL hItem; // 0 if none is kept
};

void setPathLine(HWND hdlgDandD, const char* pszText)
{
    SetDlgItemTextA(hdlgDandD, IDC_DANDD_HOSTPATH, pszText);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_HOSTPATH, EM_SETMODIFY, FALSE, 0);
}

// The record of row 1 if that row is the working directory, else 0.
HGLOBAL workingDirItem(HWND hwndDirs)
{
    LRESULT nData = SendMessageA(hwndDirs, LB_GETITEMDATA, WORKDIR_ROW, 0);
    auto hItem = reinterpret_cast<HGLOBAL>(nData == LB_ERR ? 0 : nData);
    auto pItem = static_cast<const XferListItem*>(hItem == nullptr ? nullptr : GlobalLock(hItem));
    if (pItem == nullptr) {
        return nullptr;
    }
    bool fWorkingDir = pItem->nIndent == WORKDIR_INDENT;
    GlobalUnlock(hItem);
    return fWorkingDir ? hItem : nullptr;
}

// Takes the record off its row, so that clearing the list doesn't free it.
void keepWorkingDir(HWND hwndDirs, KeptRow* pKept)
{
    pKept->hItem = workingDirItem(hwndDirs);
    if (pKept->hItem != nullptr) {
        panes::readRowText(hwndDirs, WORKDIR_ROW, pKept->szText);
        SendMessageA(hwndDirs, LB_SETITEMDATA, WORKDIR_ROW, 0);
    }
}

void removeWorkingDir(HWND hwndDirs)
{
    HGLOBAL hItem = workingDirItem(hwndDirs);
    if (hItem != nullptr) {
        GlobalFree(hItem);
        SendMessageA(hwndDirs, LB_DELETESTRING, WORKDIR_ROW, 0);
    }
}

// Without the ".." row above it there is no place for it.
void putBack(HWND hwndDirs, const KeptRow* pKept)
{
    if (pKept->hItem == nullptr) {
        return;
    }
    LRESULT nRow = SendMessageA(hwndDirs, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pKept->szText));
    if (nRow > 0) {
        SendMessageA(hwndDirs, LB_SETITEMDATA, WPARAM(nRow),
                     reinterpret_cast<LPARAM>(pKept->hItem));
        return;
    }
    SendMessageA(hwndDirs, LB_DELETESTRING, WPARAM(nRow), 0);
    GlobalFree(pKept->hItem);
}

void reseedDirs(HWND hdlgDandD, HWND hwndDirs)
{
    auto cRows = LONG(SendMessageA(hwndDirs, LB_GETCOUNT, 0, 0));
    for (LONG n = 0; n < cRows; ++n) {
        panes::freeRowRecord(hwndDirs, n);
    }
    SendMessageA(hwndDirs, LB_RESETCONTENT, 0, 0);
    fXferDandDAddListItem(hdlgDandD, IDC_DANDD_HOSTDIRS, PARENT_DIR, panes::ICON_OPENFOLDER, 0,
                          XFERITEM_ANCESTOR, 0);
}

void clearDirs(HWND hdlgDandD, bool fSubDirs, bool fWorkingDir)
{
    KeptRow kept = {};
    HWND hwndDirs = GetDlgItem(hdlgDandD, IDC_DANDD_HOSTDIRS);
    if (fSubDirs && !fWorkingDir) {
        keepWorkingDir(hwndDirs, &kept);
    } else if (fWorkingDir && !fSubDirs) {
        removeWorkingDir(hwndDirs);
    }
    if (fSubDirs) {
        reseedDirs(hdlgDandD, hwndDirs);
    }
    putBack(hwndDirs, &kept);
}

} // namespace

int KRHAULAPI nXferDandDAddHostFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::insertFileName(pRecord, IDC_DANDD_HOSTFILES, pszName);
    }
    return 0;
}

int KRHAULAPI nXferDandDRemoveHostFileName(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::removeFileName(pRecord, IDC_DANDD_HOSTFILES, pszName);
    }
    return 0;
}

int KRHAULAPI nXferDandDAddHostSubDir(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::suspendDrawing(pRecord, IDC_DANDD_HOSTDIRS);
        fXferDandDRemoveSubDir(hdlgDandD, IDC_DANDD_HOSTDIRS, pszName);
        fXferDandDAddListItem(hdlgDandD, IDC_DANDD_HOSTDIRS, pszName, panes::ICON_CLOSEDFOLDER,
                              SUBDIR_INDENT, XFERITEM_CHILD, 0);
    }
    return 0;
}

int KRHAULAPI nXferDandDRemoveHostSubDir(HWND hdlgDandD, const char* pszName)
{
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord != nullptr && pszName != nullptr) {
        panes::suspendDrawing(pRecord, IDC_DANDD_HOSTDIRS);
        fXferDandDRemoveSubDir(hdlgDandD, IDC_DANDD_HOSTDIRS, pszName);
    }
    return 0;
}

int KRHAULAPI nXferDandDClearHostFileList(HWND hdlgDandD)
{
    return nXferDandDClearHostFileInfo(hdlgDandD, XFERCLEAR_FILES | XFERCLEAR_SUBDIRS |
                                                      XFERCLEAR_WORKDIR | XFERCLEAR_FILTER);
}

int KRHAULAPI nXferDandDClearHostFileInfo(HWND hdlgDandD, DWORD dwFlags)
{
    if (window::recordOf(hdlgDandD) == nullptr) {
        return 0;
    }
    if ((dwFlags & XFERCLEAR_FILES) != 0) {
        SendDlgItemMessageA(hdlgDandD, IDC_DANDD_HOSTFILES, LB_RESETCONTENT, 0, 0);
    }
    if ((dwFlags & XFERCLEAR_WORKDIR) != 0) {
        setPathLine(hdlgDandD, "");
    }
    if ((dwFlags & XFERCLEAR_FILTER) != 0) {
        SetDlgItemTextA(hdlgDandD, IDC_DANDD_HOSTFILTER, "");
    }
    clearDirs(hdlgDandD, (dwFlags & XFERCLEAR_SUBDIRS) != 0, (dwFlags & XFERCLEAR_WORKDIR) != 0);
    return 0;
}

void KRHAULAPI vXferDandDPrintWorkingDir(HWND hdlgDandD, const char* pszRow, const char* pszPath)
{
    if (window::recordOf(hdlgDandD) != nullptr) {
        fXferDandDAddListItem(hdlgDandD, IDC_DANDD_HOSTDIRS, pszRow, panes::ICON_SELECTEDFOLDER,
                              WORKDIR_INDENT, XFERITEM_CURRENT, 0);
        setPathLine(hdlgDandD, pszPath);
    }
}
