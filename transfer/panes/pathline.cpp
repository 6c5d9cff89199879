// Enter and double clicks: what they mean to each control, and how the local side follows a
// typed text. Host directories are only asked for; the panes change when the caller fills them.
#include "transfer/panes/pathline.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "shared/text.h"
#include "transfer/panes/drives.h"
#include "transfer/panes/locallist.h"
#include "transfer/panes/splitpath.h"
#include "transfer/window/request.h"

#include <direct.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr int CCH_MASK = 10;
constexpr int CCH_CHDIR_FAILED = 20;
constexpr int MAX_FAILED_FORMAT = 80;
constexpr char ROOT[] = "\\";

void readLine(const XferWindowRecord* pRecord, int idControl, char (&szText)[XFER_NAME_SIZE])
{
    szText[0] = '\0';
    SendDlgItemMessageA(pRecord->hwndDialog, idControl, WM_GETTEXT, sizeof szText,
                        reinterpret_cast<LPARAM>(szText));
}

bool readSelectedRow(HWND hwndList, panes::Row* pRow)
{
    LRESULT nRow = SendMessageA(hwndList, LB_GETCURSEL, 0, 0);
    return nRow != LB_ERR && panes::readRow(hwndList, LONG(nRow), pRow);
}

// The pattern of the selected file type takes effect here, not when it is selected.
void activateTypes(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    LRESULT nRow = SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALTYPES, CB_GETCURSEL, 0, 0);
    if (nRow == CB_ERR) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    window::loadString(pRecord, nXferDandDTypePatternId(nRow), g_szScratch, sizeof g_szScratch);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALFILTER, WM_SETTEXT, 0,
                        reinterpret_cast<LPARAM>(g_szScratch));
    // The line reports its new text to the caller's window procedure first.
    if (window::isAlive(ref)) {
        vXferDandDApplyLocalFilter(hdlgDandD);
    }
}

void enterRoot(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    _chdir(ROOT);
    if (window::recordAction(pRecord, KRACTION_LOCALDIR_CHANGED, ROOT)) {
        vXferDandDRefreshLocalFiles(hdlgDandD);
    }
}

void enterLocalDir(HWND hdlgDandD, const XferWindowRecord* pRecord, const char* pszDir)
{
    if (_chdir(pszDir) != 0) {
        panes::reportLocalFailure(hdlgDandD, pRecord, pszDir, CCH_CHDIR_FAILED);
    } else if (window::recordAction(pRecord, KRACTION_LOCALDIR_CHANGED, pszDir)) {
        vXferDandDRefreshLocalFiles(hdlgDandD);
    }
}

// Only the path of an ancestor is whole. The other rows mean something only from the directory
// that is shown, and the process can be in another one.
void activateLocalDirs(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    panes::Row row;
    if (!readSelectedRow(GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDIRS), &row)) {
        return;
    }
    switch (row.nKind) {
    case XFERITEM_ROOT:
        if (panes::syncLocalPanes(pRecord)) {
            enterRoot(hdlgDandD, pRecord);
        }
        break;
    case XFERITEM_ANCESTOR:
        panes::ancestorPath(pRecord, &row, row.szText);
        enterLocalDir(hdlgDandD, pRecord, row.szText);
        break;
    case XFERITEM_CHILD:
        if (panes::syncLocalPanes(pRecord)) {
            enterLocalDir(hdlgDandD, pRecord, row.szText);
        }
        break;
    }
}

void activateLocalFilter(HWND hdlgDandD, XferWindowRecord*)
{
    vXferDandDApplyLocalFilter(hdlgDandD);
}

void activateHostPath(HWND, XferWindowRecord* pRecord)
{
    char szDir[XFER_NAME_SIZE];
    readLine(pRecord, IDC_DANDD_HOSTPATH, szDir);
    window::requestRecordedChangeDir(pRecord, szDir, window::NAME_TYPED);
}

void activateHostDirs(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    panes::Row row;
    if (readSelectedRow(GetDlgItem(hdlgDandD, IDC_DANDD_HOSTDIRS), &row) &&
        (row.nKind == XFERITEM_ANCESTOR || row.nKind == XFERITEM_CHILD)) {
        window::requestRecordedChangeDir(pRecord, row.szText, window::NAME_FROM_LIST);
    }
}

// The text has a buffer of its own: the calls with which the callback adds names use the scratch
// buffers.
void activateHostFilter(HWND, XferWindowRecord* pRecord)
{
    char szFilter[XFER_NAME_SIZE];
    readLine(pRecord, IDC_DANDD_HOSTFILTER, szFilter);
    window::requestFilter(pRecord, szFilter);
}

void activateCommandLine(HWND, XferWindowRecord* pRecord)
{
    char szCommand[XFER_NAME_SIZE];
    readLine(pRecord, IDC_DANDD_COMMANDLINE, szCommand);
    if (szCommand[0] != '\0') {
        window::requestCommand(pRecord, szCommand);
    }
}

struct ActivateRow {
    int idControl;
    void (*pfnActivate)(HWND, XferWindowRecord*);
};

constexpr ActivateRow ACTIVATIONS[] = {
    {IDC_DANDD_LOCALTYPES, activateTypes},        {IDC_DANDD_LOCALDIRS, activateLocalDirs},
    {IDC_DANDD_LOCALFILTER, activateLocalFilter}, {IDC_DANDD_HOSTPATH, activateHostPath},
    {IDC_DANDD_HOSTDIRS, activateHostDirs},       {IDC_DANDD_HOSTFILTER, activateHostFilter},
    {IDC_DANDD_COMMANDLINE, activateCommandLine},
};

// Follows the drive of a typed path. The process can be on another drive than the window followed
// last. The drive list only moves with the window: by a posted message, so that a drive without a
// row leaves the list without a selection.
void followDrive(HWND hdlgDandD, XferWindowRecord* pRecord, XferPathParts* pParts)
{
    shared::toLowerCase(pParts->szDrive);
    int nDrive = BYTE(pParts->szDrive[0]) - panes::LETTER_BEFORE_A;
    if (pParts->szDrive[0] == '\0' || (nDrive == pRecord->nLocalDrive && nDrive == _getdrive())) {
        return;
    }
    _chdrive(nDrive);
    if (nDrive == pRecord->nLocalDrive) {
        return;
    }
    pRecord->nLocalDrive = nDrive;
    LRESULT nRow = panes::findDriveRow(hdlgDandD, nDrive);
    PostMessageA(GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDRIVES), CB_SETCURSEL, WPARAM(nRow), 0);
}

void followTypedDir(XferWindowRecord* pRecord, XferPathParts* pParts)
{
    size_t cch = strlen(pParts->szDir);
    if (cch > 1) {
        pParts->szDir[cch - 1] = '\0';
    }
    _chdir(pParts->szDir);
    if (_getcwd(pRecord->szLocalDir, sizeof pRecord->szLocalDir) == nullptr) {
        pRecord->szLocalDir[0] = '\0';
    }
}

// Takes the text apart and goes where it says; only the mask stays in the line.
void followText(HWND hdlgDandD, XferWindowRecord* pRecord, const char* pszText,
                const char* pszDefaultMask)
{
    XferPathParts parts;
    g_szScratch[0] = '\0';
    if (_fullpath(g_szScratch, pszText, sizeof g_szScratch) == nullptr ||
        nXferDandDSplitPath(g_szScratch, &parts) != 0) {
        SetDlgItemTextA(hdlgDandD, IDC_DANDD_LOCALFILTER, pszDefaultMask);
        return;
    }
    followDrive(hdlgDandD, pRecord, &parts);
    followTypedDir(pRecord, &parts);
    SetDlgItemTextA(hdlgDandD, IDC_DANDD_LOCALFILTER,
                    parts.szName[0] != '\0' ? parts.szName : pszDefaultMask);
}

// Shows where a followed text has led. Each painting asks the caller's window procedure for the
// colours.
void showFollowedText(const window::Ref& ref)
{
    HWND hwndFilter = GetDlgItem(ref.hdlgDandD, IDC_DANDD_LOCALFILTER);
    UpdateWindow(hwndFilter);
    if (!window::isAlive(ref)) {
        return;
    }
    SendDlgItemMessageA(ref.hdlgDandD, IDC_DANDD_LOCALPATH, WM_SETTEXT, 0,
                        reinterpret_cast<LPARAM>(ref.pRecord->szLocalDir));
    if (window::isAlive(ref)) {
        vXferDandDRefreshLocalFiles(ref.hdlgDandD);
    }
    if (window::isAlive(ref)) {
        SendMessageA(hwndFilter, EM_SETSEL, WPARAM(-1), 1);
        SendMessageA(hwndFilter, EM_SCROLLCARET, 0, 0);
    }
}

} // namespace

void panes::ancestorPath(const XferWindowRecord* pRecord, const panes::Row* pRow,
                         char (&szPath)[XFER_NAME_SIZE])
{
    DWORD cch = pRow->cchPath < XFER_NAME_SIZE ? pRow->cchPath : XFER_MAX_NAME;
    shared::copyText(szPath, pRecord->szLocalDir, cch + 1);
}

void panes::reportLocalFailure(HWND hdlgDandD, const XferWindowRecord* pRecord, const char* pszName,
                               int cchFormat)
{
    char szFormat[MAX_FAILED_FORMAT];
    char szText[XFER_FORMAT_SIZE];
    window::loadString(pRecord, IDS_LOCAL_FAILED, szFormat, cchFormat);
    wsprintfA(szText, szFormat, pszName);
    vXferDandDInfoLine(hdlgDandD, szText);
}

int fXferDandDActivate(HWND hdlgDandD, XferWindowRecord* pRecord, HWND hwndControl)
{
    for (const ActivateRow& row : ACTIVATIONS) {
        if (hwndControl != nullptr && GetDlgItem(hdlgDandD, row.idControl) == hwndControl) {
            row.pfnActivate(hdlgDandD, pRecord);
            return 1;
        }
    }
    return 0;
}

void vXferDandDApplyLocalFilter(HWND hdlgDandD)
{
    char szMask[CCH_MASK];
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    LRESULT nType = SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALTYPES, CB_GETCURSEL, 0, 0);
    window::loadString(pRecord, nXferDandDTypePatternId(nType), szMask, sizeof szMask);
    readLine(pRecord, IDC_DANDD_LOCALFILTER, g_szScratch2);
    if (g_szScratch2[0] != '\0') {
        followText(hdlgDandD, pRecord, g_szScratch2, szMask);
    }
    // The line reports its new text to the caller's window procedure.
    if (window::isAlive(ref)) {
        showFollowedText(ref);
    }
}
