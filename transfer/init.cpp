// The initialisation of a transfer window.
#include "transfer/init.h"
#include "resources/ids.h"
#include "shared/module.h"
#include "shared/version.h"
#include "transfer/commands/commands.h"
#include "transfer/frame/strip.h"
#include "transfer/panes/drives.h"
#include "transfer/panes/rows.h"

#include <direct.h>

namespace {

constexpr char WINDOW_ICON[] = "XferDandDIcon";
constexpr int LIST_FONT_HEIGHT = -8;
constexpr char LIST_FONT_FACE[] = "MS Sans Serif";
constexpr DWORD FIRST_TYPE = XFERTYPE_AUTOMATIC;

constexpr const char* LIST_ICONS[panes::ICON_COUNT] = {
    "OpenFolder", "ClosedFolder", "SelectedFolder", "FloppyDrive",
    "FixedDrive", "CDRomDrive",   "NetDrive",       "RamDrive",
};

// A control whose procedure is replaced, and where the old one is kept.
struct SubclassRow {
    int idControl;
    WNDPROC pfnNew;
    WNDPROC XferWindowRecord::*pOriginal;
};

constexpr SubclassRow SUBCLASSED[] = {
    {IDC_DANDD_LOCALFILES, lLFileListProc, &XferWindowRecord::pfnOrigLocalFileList},
    {IDC_DANDD_HOSTFILES, lHFileListProc, &XferWindowRecord::pfnOrigHostFileList},
    {IDC_DANDD_HOSTDIRS, lHDirListProc, &XferWindowRecord::pfnOrigHostDirList},
    {IDC_DANDD_LOCALDIRS, lLDirListProc, &XferWindowRecord::pfnOrigLocalDirList},
    {IDC_DANDD_INFOLINE, lInfoLineProc, &XferWindowRecord::pfnOrigInfoLine},
};

void loadPopups(XferWindowRecord* pRecord)
{
    HMENU hmenu = GetMenu(pRecord->hwndDialog);
    for (int n = 0; n < XFER_POPUPS; ++n) {
        pRecord->hmenuPopup[n] = GetSubMenu(hmenu, n);
    }
}

void loadIcons(HWND hdlgDandD)
{
    for (int n = 0; n < panes::ICON_COUNT; ++n) {
        panes::g_listIcons[n] = LoadIconA(g_hInstance, LIST_ICONS[n]);
    }
    if (shared::isVersion4()) {
        SendMessageA(hdlgDandD, WM_SETICON, ICON_BIG,
                     reinterpret_cast<LPARAM>(LoadIconA(g_hInstance, WINDOW_ICON)));
    }
}

void setFont(HWND hdlgDandD, int idControl, HGDIOBJ hfont)
{
    SendDlgItemMessageA(hdlgDandD, idControl, WM_SETFONT, reinterpret_cast<WPARAM>(hfont), FALSE);
}

// File names have a font of their own. The log and the command line have a fixed pitch, so that
// columns line up.
void setFonts(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    pRecord->hfontList =
        CreateFontA(LIST_FONT_HEIGHT, 0, 0, 0, FW_NORMAL, 0, 0, 0, 0, 0, 0, 0, 0, LIST_FONT_FACE);
    if (pRecord->hfontList != nullptr) {
        setFont(hdlgDandD, IDC_DANDD_LOCALFILES, pRecord->hfontList);
        setFont(hdlgDandD, IDC_DANDD_HOSTFILES, pRecord->hfontList);
    }
    HGDIOBJ hfontFixed = GetStockObject(ANSI_FIXED_FONT);
    setFont(hdlgDandD, IDC_DANDD_COMMANDLABEL, hfontFixed);
    setFont(hdlgDandD, IDC_DANDD_COMMANDLINE, hfontFixed);
    setFont(hdlgDandD, IDC_DANDD_INFOLINE, hfontFixed);
}

// The mode that the caller asked for is set by the ordinary command, when the caller's message loop
// runs. The command acts only on a change, so the record holds the other mode until then. Returns
// the command if it could not be posted, because the queue is full, or 0.
WORD postFirstMode(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    pRecord->nViewMode = pRecord->nViewMode == 0;
    WORD idMode = commands::commandOfMode(pRecord->nViewMode == 0);
    return PostMessageA(hdlgDandD, WM_COMMAND, idMode, 0) ? 0 : idMode;
}

void fillTypes(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    char szMask[XFER_NAME_SIZE];
    vXferDandDFillTypeList(hdlgDandD, pRecord->hLanguage);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALTYPES, CB_SETCURSEL, 0, 0);
    window::loadString(pRecord, IDS_TYPE1_MASK, szMask, sizeof szMask);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALFILTER, WM_SETTEXT, 0,
                        reinterpret_cast<LPARAM>(szMask));
}

void fillDrives(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    pRecord->nLocalDrive = _getdrive();
    vXferDandDFillDriveList(hdlgDandD);
    LRESULT nRow = panes::findDriveRow(hdlgDandD, pRecord->nLocalDrive);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, WPARAM(nRow), 0);
}

void limitLines(HWND hdlgDandD)
{
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_HOSTPATH, EM_LIMITTEXT, XFER_NAME_SIZE, 0);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_HOSTPATH, EM_SETMODIFY, FALSE, 0);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALFILTER, EM_LIMITTEXT, XFER_NAME_SIZE, 0);
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_HOSTFILTER, EM_LIMITTEXT, XFER_NAME_SIZE, 0);
    // A command that is cut when it is read would name another file.
    SendDlgItemMessageA(hdlgDandD, IDC_DANDD_COMMANDLINE, EM_LIMITTEXT, XFER_MAX_NAME, 0);
}

void subclassControls(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    for (const SubclassRow& row : SUBCLASSED) {
        HWND hwndControl = GetDlgItem(hdlgDandD, row.idControl);
        pRecord->*row.pOriginal =
            reinterpret_cast<WNDPROC>(GetWindowLongA(hwndControl, GWL_WNDPROC));
        SetWindowLongA(hwndControl, GWL_WNDPROC, reinterpret_cast<LONG>(row.pfnNew));
    }
}

bool isLaidOutWindowAlive(HWND hdlgDandD, const layout::Distances* pLayout)
{
    const XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    return pRecord != nullptr && &pRecord->layout == pLayout;
}

} // namespace

int fXferDandDInitDialog(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    window::attachRecord(hdlgDandD, pRecord);
    loadPopups(pRecord);
    loadIcons(hdlgDandD);
    pRecord->hcurBusy = LoadCursorA(nullptr, IDC_APPSTARTING);
    setFonts(hdlgDandD, pRecord);
    vXferDandDInitStrip(hdlgDandD, pRecord);
    vXferDandDInitToolbar(hdlgDandD, pRecord->nViewMode, FIRST_TYPE);
    layout::setAliveProc(isLaidOutWindowAlive);
    vXferDandDCaptureLayout(hdlgDandD, &pRecord->layout);
    WORD idMode = postFirstMode(hdlgDandD, pRecord);
    fillTypes(hdlgDandD, pRecord);
    fillDrives(hdlgDandD, pRecord);
    limitLines(hdlgDandD);
    subclassControls(hdlgDandD, pRecord);
    if (idMode != 0) {
        fXferDandDCommand(hdlgDandD, idMode, nullptr, 0);
    }
    return 1;
}
