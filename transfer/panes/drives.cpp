// The local drive list and the list of file types, both filled once.
#include "transfer/panes/drives.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "shared/version.h"
#include "transfer/panes/rows.h"

#include <string.h>

namespace {

constexpr int DRIVES = 26;
constexpr int CCH_TYPE_NAME = 80;

struct DriveType {
    UINT uType;
    bool fLabel; // removable media are never touched for their label
    panes::ListIcon nIcon;
};

constexpr DriveType DRIVE_TYPES[] = {
    {DRIVE_REMOVABLE, false, panes::ICON_FLOPPYDRIVE}, {DRIVE_FIXED, true, panes::ICON_FIXEDDRIVE},
    {DRIVE_REMOTE, true, panes::ICON_NETDRIVE},        {DRIVE_CDROM, false, panes::ICON_CDROMDRIVE},
    {DRIVE_RAMDISK, true, panes::ICON_RAMDRIVE},
};

const DriveType* typeOfDrive(int nDrive)
{
    char szRoot[8];
    // Older versions expect a blank behind the path.
    wsprintfA(szRoot, shared::isVersion4() ? "%c:\\" : "%c:\\ ", 'A' + nDrive);
    UINT uType = GetDriveTypeA(szRoot);
    for (const DriveType& type : DRIVE_TYPES) {
        if (type.uType == uType) {
            return &type;
        }
    }
    return nullptr;
}

// Reads the label of a drive, 0 for A:. Returns what GetVolumeInformationA does.
int fXferDandDVolumeLabel(int nDrive, char (&szLabel)[XFER_NAME_SIZE])
{
    const char szRoot[] = {char('A' + nDrive), ':', '\\', '\0'};
    DWORD cchComponent;
    DWORD dwFlags;
    szLabel[0] = '\0';
    return GetVolumeInformationA(szRoot, szLabel, sizeof szLabel, nullptr, &cchComponent, &dwFlags,
                                 nullptr, 0);
}

// A drive whose label can't be read, though its kind has one, gets no row.
void addDrive(HWND hdlgDandD, int nDrive)
{
    char szRow[XFER_NAME_SIZE + 4];
    const DriveType* pType = typeOfDrive(nDrive);
    if (pType == nullptr) {
        return;
    }
    wsprintfA(szRow, "%c: ", 'A' + nDrive);
    if (pType->fLabel) {
        if (!fXferDandDVolumeLabel(nDrive, g_szScratch2)) {
            return;
        }
        strcat(szRow, g_szScratch2);
    }
    shared::toLowerCase(szRow);
    fXferDandDAddListItem(hdlgDandD, IDC_DANDD_LOCALDRIVES, szRow, pType->nIcon, 0, 0, 0);
}

} // namespace

void vXferDandDFillDriveList(HWND hdlgDandD)
{
    DWORD dwDrives = GetLogicalDrives();
    for (int nDrive = 0; nDrive < DRIVES; ++nDrive) {
        if ((dwDrives >> nDrive & 1) != 0) {
            addDrive(hdlgDandD, nDrive);
        }
    }
}

LRESULT panes::findDriveRow(HWND hdlgDandD, LONG nDrive)
{
    char szDrive[4];
    wsprintfA(szDrive, "%c:", int(nDrive + panes::LETTER_BEFORE_A));
    return SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALDRIVES, CB_FINDSTRING, WPARAM(-1),
                               reinterpret_cast<LPARAM>(szDrive));
}

void vXferDandDFillTypeList(HWND hdlgDandD, HMODULE hLanguage)
{
    constexpr UINT NAMES[] = {IDS_TYPE1_NAME, IDS_TYPE2_NAME};
    for (UINT id : NAMES) {
        char szName[CCH_TYPE_NAME] = "";
        LoadStringA(hLanguage, id, szName, sizeof szName);
        SendDlgItemMessageA(hdlgDandD, IDC_DANDD_LOCALTYPES, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(szName));
    }
}
