// The four functions of the closed library KRUTILS, bound by ordinal (krutils.def).
#ifndef SHARED_KRUTILS_H
#define SHARED_KRUTILS_H

#include <windows.h>

// Codes of KrRecordAction. A local operation is reported after it succeeded, a host operation
// before or after its callback.
enum {
    KRACTION_LOCALDIR_CHANGED = 1,
    KRACTION_LOCALDIR_MADE = 2,
    KRACTION_LOCALDIR_REMOVED = 3,
    KRACTION_LOCALFILE_DELETED = 4,
    KRACTION_LOCALFILE_RENAMED = 5,
    KRACTION_DRIVE_CHANGED = 6,
    KRACTION_HOSTDIR_CHANGED = 7,
    KRACTION_HOSTDIR_MADE = 8,
    KRACTION_HOSTDIR_REMOVED = 9,
    KRACTION_HOSTFILE_DELETED = 10,
    KRACTION_HOSTFILE_RENAMED = 11,
    KRACTION_FILE_SENT = 12,
    KRACTION_FILE_RECEIVED = 13
};

extern "C" {

// The help file, for WinHelpA, or null if KRUTILS has shown the help by itself. The text belongs to
// KRUTILS.
const char* __stdcall KrGetHelpFile(void);

// Records a user action and its text; the parent can be 0.
void __stdcall KrRecordAction(HWND hwndParent, int nAction, const char* pszText);

// Records a command as the user typed it.
void __stdcall KrRecordCommand(HWND hwndParent, const char* pszCommand);

// Shows a string of the module in a message box. What the last three arguments mean
// is known to KRUTILS alone; this library passes 0, 3, 0.
void __stdcall KrMessageBoxId(HMODULE hModule, HWND hwndParent, UINT idString, int n1, int n2,
                              int n3);
}

#endif
