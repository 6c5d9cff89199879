// The instance record of a transfer window, and the statics that all transfer windows share.
//
// The life of a record: hdlgXferDandDLangCreate2 allocates it, zeroed, in the global heap and
// passes it to WM_INITDIALOG, which stores it in DWL_USER of the window. From then on it belongs
// to the window. WM_DESTROY frees the row records of the lists, WM_NCDESTROY everything else and
// the record itself. A window can be destroyed in any nested message loop and in any callback:
// code that continues after one calls window::isAlive first.
#ifndef TRANSFER_WINDOW_RECORD_H
#define TRANSFER_WINDOW_RECORD_H

#include "include/krhaul.h"
#include "layout/layout.h"

#include <stddef.h>

constexpr int XFER_NAME_SIZE = XFER_MAX_NAME + 1;
constexpr int XFER_POPUPS = 5;

// nDialogOp: the side that the open file dialog is about, and its result.
enum DialogOp : LONG {
    XFEROP_CANCELLED = 0,
    XFEROP_SEND = 1,
    XFEROP_RECEIVE = 2,
    XFEROP_LOCAL = 3,
    XFEROP_HOST = 4
};

constexpr LONG XFERTHERMO_OFF = -1;

namespace window {
struct ModalDialog;
}

namespace panes {
struct Names;
}

namespace window {

// What a list of the panes keeps beside its rows (transfer/panes/changes.h).
struct PaneList {
    panes::Names* pWaiting; // changes that the list doesn't show yet; owned, null if there are none
    LCID lcidOrder;         // locale that its rows are sorted by; 0 until the first name comes
    DWORD cRowMessages;     // messages so far that put rows in or took them out
    LONG fForeignRows;      // the caller put rows in by messages of its own
    LONG fMerging;
};
constexpr int PANE_LISTS = 4;

} // namespace window

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
    layout::Distances layout;
    HMENU hmenuPopup[XFER_POPUPS];
    LONG fListsChanged; // new column widths are due at the end of the busy state
    LONG fMinimized;
    LONG fFocusCommandLine;           // the end of the busy state gives it the focus
    XferFileList viewTempFiles;       // owned; 0 on versions below 4
    LONG fForeignFiles;               // the local file list shows files of another directory
    char szLocalMask[XFER_NAME_SIZE]; // the mask that filled the local file list
    DWORD cchLogTrimmed;              // characters that were cut from the start of the log so far
    DWORD fsHeldLists;                // what isn't drawn for the moment
    window::PaneList paneLists[window::PANE_LISTS];
    window::ModalDialog* pInnermost; // the modal dialog on top of the others, or null
    DWORD nSerial;                   // distinguishes this record from any other at the same address
    XferWindowRecord* pNextLive;
};

static_assert(sizeof(HostCallbacks) == 56, "the table of callbacks is 14 words");
static_assert(offsetof(XferWindowRecord, callbacks) == 16, "the record has no gaps");
static_assert(offsetof(XferWindowRecord, szLocalDir) == 72, "the record has no gaps");

// Scratch buffers for names and texts between a call and their immediate use. They hold nothing
// that has to outlive the handling of one message, a nested loop or a callback.
extern char g_szScratch[XFER_NAME_SIZE];
extern char g_szScratch2[XFER_NAME_SIZE];

// The platform's formatting never writes more than this. A format comes from a language module,
// so texts are formatted in full and cut afterwards.
constexpr int XFER_FORMAT_SIZE = 1025;

// Height of a row of the owner-drawn lists.
extern int g_nListItemHeight;

// The owner window of the help calls of a window and its dialogs.
HWND XferHelpOwner(const XferWindowRecord* pRecord);

namespace window {

// A transfer window and its record, remembered over anything that runs foreign code: a message
// box, a dialog, a callback, KRUTILS, or a message that the caller's windows receive.
struct Ref {
    HWND hdlgDandD;
    const XferWindowRecord* pRecord;
    DWORD nSerial;
};
Ref refOf(const XferWindowRecord* pRecord);

// Whether the window still exists, with this very record.
bool isAlive(const Ref& ref);

// The record of a transfer window, or null for any other window. Only the library's own list of
// live records is searched: what a foreign window stores is never dereferenced.
XferWindowRecord* recordOf(HWND hdlgDandD);

// The live record at an address that came from outside, or null if no record lives there.
XferWindowRecord* liveRecord(LONG nAddress);

// Allocates a zeroed record in the global heap and enters it in the list of live records. Returns
// null if there is no memory.
XferWindowRecord* allocateRecord();

// Whether a record hasn't been freed. A window can be destroyed during its own creation.
bool exists(const Ref& ref);

// Stores the record in its window. Called once, at WM_INITDIALOG.
void attachRecord(HWND hdlgDandD, XferWindowRecord* pRecord);

// Handles WM_NCDESTROY: frees the record and everything that it owns. Also for a record whose
// window was never created.
void freeRecord(XferWindowRecord* pRecord);

// Reports an action to KRUTILS, which can run the caller's code. Returns whether the window still
// exists afterwards.
bool recordAction(const XferWindowRecord* pRecord, int nAction, const char* pszText);

// Loads a string of the window's language module; the text is empty if the module lacks it.
void loadString(const XferWindowRecord* pRecord, UINT id, char* pszBuffer, int cchBuffer);

} // namespace window

#endif
