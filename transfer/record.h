// The instance record of a transfer window, and the statics that all transfer windows share.
//
// The life of a record: hdlgXferDandDLangCreate2 allocates it, zeroed, in the global heap and
// hands it to WM_INITDIALOG, which hangs it into the window's DWL_USER long. From there on it
// belongs to the window. WM_DESTROY releases the row records of the lists, WM_NCDESTROY all
// the rest and the record itself. A window can die in any nested message loop and in any
// callback: code that goes on after one asks fXferDandDIsAlive first.
#ifndef TRANSFER_RECORD_H
#define TRANSFER_RECORD_H

#include "../include/krhaul.h"
#include "../layout/layout.h"

#include <stddef.h>

constexpr int XFER_NAME_SIZE = XFER_MAX_NAME + 1;
constexpr int XFER_POPUPS = 5;

// nDialogOp: the side of the file dialog that is open, and its result.
enum XferDialogOp : LONG {
    XFEROP_CANCELLED = 0,
    XFEROP_SEND = 1,
    XFEROP_RECEIVE = 2,
    XFEROP_LOCAL = 3,
    XFEROP_HOST = 4
};

constexpr LONG XFERTHERMO_OFF = -1;

struct XferWindowRecord {
    HMODULE hLanguage; // owned
    HWND hwndParent;   // as given at creation; can be 0
    DWORD dwCallerData;
    HWND hwndDialog; // the transfer window itself
    HostCallbacks callbacks;
    char szLocalDir[XFER_NAME_SIZE];
    LONG nLocalDrive;            // 1 for A:
    WNDPROC pfnOrigHostFileList; // procedures before subclassing
    WNDPROC pfnOrigLocalFileList;
    WNDPROC pfnOrigHostDirList;
    WNDPROC pfnOrigLocalDirList;
    WNDPROC pfnOrigInfoLine;
    char szName1[XFER_NAME_SIZE]; // local name of a transfer, old name of a rename, else the name
    char szName2[XFER_NAME_SIZE]; // host name of a transfer, new name of a rename
    LONG nDialogOp;
    HFONT hfontStrip; // owned
    HFONT hfontList;  // owned
    char szStripText[XFER_NAME_SIZE];
    RECT rcStrip;
    DWORD dwLastThermoPaint; // 0 after the thermometer was switched off
    LONG nThermoPos;         // XFERTHERMO_OFF while it is off
    LONG nThermoTotal;       // 0 while the total isn't known
    LONG nViewMode;
    LONG fBusy;
    HCURSOR hcurBusy;
    XferLayout layout;
    HMENU hmenuPopup[XFER_POPUPS];
    LONG fListsChanged; // new column widths are due at the end of the busy state
    LONG fMinimized;
    LONG fFocusCommandLine;     // the end of the busy state gives it the focus
    XferFileList viewTempFiles; // owned; 0 on versions below 4
    LONG fForeignFiles;         // the local file list shows files of another directory
    DWORD fsHeldLists;          // host lists that aren't drawn for the moment
    HWND hdlgOpen;              // the innermost of the file dialogs that are open, or 0
};

static_assert(sizeof(HostCallbacks) == 56, "the table of callbacks is 14 words");
static_assert(offsetof(XferWindowRecord, callbacks) == 16, "the record has no gaps");
static_assert(offsetof(XferWindowRecord, szLocalDir) == 72, "the record has no gaps");

// Scratch buffers for names and texts between a call and its immediate use. They hold nothing
// that has to outlive the handling of one message, a nested loop or a callback.
extern char g_szScratch[XFER_NAME_SIZE];
extern char g_szScratch2[XFER_NAME_SIZE];

// What the platform's formatting can write at most. A format comes from a language module, so
// it is formatted in full and cut afterwards.
constexpr int XFER_FORMAT_SIZE = 1025;

// Height of a row of the owner-drawn lists.
extern int g_nListItemHeight;

// Icons of the lists, in the order of the table g_listIcons.
enum XferListIcon {
    XFERICON_OPENFOLDER,
    XFERICON_CLOSEDFOLDER,
    XFERICON_SELECTEDFOLDER,
    XFERICON_FLOPPYDRIVE,
    XFERICON_FIXEDDRIVE,
    XFERICON_CDROMDRIVE,
    XFERICON_NETDRIVE,
    XFERICON_RAMDRIVE,
    XFERICON_COUNT
};
extern HICON g_listIcons[XFERICON_COUNT];

// The record of a transfer window, or null for any other window.
XferWindowRecord* pXferDandDRecord(HWND hdlgDandD);

// Whether the window is still there, with this very record.
bool fXferDandDIsAlive(HWND hdlgDandD, const XferWindowRecord* pRecord);

// Tells KRUTILS of an action. That library isn't ours and can run the caller's code: gives
// whether the window has outlived it.
bool fXferDandDRecordAction(const XferWindowRecord* pRecord, int nAction, const char* pszText);

// The owner of the help calls of a window and its dialogs.
HWND XferHelpOwner(const XferWindowRecord* pRecord);

// Whether the platform's major version is 4 or more. Asked anew each time.
bool fXferIsVersion4();

// A string of the window's language module; an empty text if the module lacks it.
void vXferDandDLoadString(const XferWindowRecord* pRecord, UINT id, char* pszBuffer, int cchBuffer);

// The end of a window: WM_DESTROY, while its controls still live, then WM_NCDESTROY.
void vXferDandDReleaseRows(HWND hdlgDandD);
void vXferDandDTearDown(HWND hdlgDandD, XferWindowRecord* pRecord);

#endif
