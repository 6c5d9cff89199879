// Making and destroying transfer windows, and running dialogs on them.
#include "creation.h"
#include "dialog.h"
#include "../resources/ids.h"
#include "../shared/krutils.h"
#include "../shared/language.h"
#include "../shared/library.h"
#include "../toolbar/toolbar.h"

#include <string.h>

namespace {

constexpr char TEMPLATE[] = "DLGDANDD";
constexpr INT_PTR DIALOG_FAILED = -1;

// Creations can nest: the making of a window sends messages to the caller's windows.
struct Creation {
    XferWindowRecord* pRecord; // null once it has gone
    Creation* pOuter;
};
Creation* s_pInnermost;

XferWindowRecord* allocRecord()
{
    HGLOBAL hBlock =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT | GMEM_SHARE, sizeof(XferWindowRecord));
    auto pRecord = static_cast<XferWindowRecord*>(hBlock == nullptr ? nullptr : GlobalLock(hBlock));
    if (pRecord == nullptr && hBlock != nullptr) {
        GlobalFree(hBlock);
    }
    return pRecord;
}

void freeRecord(XferWindowRecord* pRecord)
{
    HGLOBAL hBlock = GlobalHandle(pRecord);
    XferFileList_vDestroy(pRecord->viewTempFiles);
    GlobalUnlock(hBlock);
    GlobalFree(hBlock);
}

HWND refuse(HMODULE hLanguage, HWND hwndParent)
{
    KrMessageBoxId(hLanguage, hwndParent, IDS_NO_RESOURCES, 0, 3, 0);
    FreeLibrary(hLanguage);
    return nullptr;
}

// A short table leaves its missing slots null; a longer one is read as far as it is known.
void shakeHands(HostCallbacks* pOurs, HostCallbacks* pCallers)
{
    memset(pOurs, 0, sizeof *pOurs);
    if (pCallers != nullptr) {
        DWORD cb = pCallers->cbSize;
        memcpy(pOurs, pCallers, cb < sizeof *pOurs ? cb : sizeof *pOurs);
        pCallers->cbSize = sizeof *pCallers;
    }
}

// The dialog and its record. Gives 0 if it can't be made or died on the way.
HWND createDialog(XferWindowRecord* pRecord, HMODULE hLanguage, HWND hwndParent, bool* pfRecordGone)
{
    Creation creation = {pRecord, s_pInnermost};
    s_pInnermost = &creation;
    HWND hwndOwner = GetParent(hwndParent) != nullptr ? hwndParent : nullptr;
    HWND hdlgDandD = CreateDialogParamA(hLanguage, TEMPLATE, hwndOwner, fDlgXferDandDProc,
                                        reinterpret_cast<LPARAM>(pRecord));
    s_pInnermost = creation.pOuter;
    *pfRecordGone = creation.pRecord == nullptr;
    return *pfRecordGone ? nullptr : hdlgDandD;
}

// A modal dialog that is about to run.
struct ModalDialog {
    HWND hdlgDandD;
    const XferWindowRecord* pRecord;
    const char* pszTemplate;
    DLGPROC pfnDialog;
    LPARAM lParam;
};

// A parent that hears of being disabled can destroy the window.
INT_PTR runDialog(const ModalDialog* pDialog)
{
    if (!fXferDandDIsAlive(pDialog->hdlgDandD, pDialog->pRecord)) {
        return DIALOG_FAILED;
    }
    return DialogBoxParamA(pDialog->pRecord->hLanguage, pDialog->pszTemplate, pDialog->hdlgDandD,
                           pDialog->pfnDialog, pDialog->lParam);
}

INT_PTR nXferDandDDialogBoxDisabling(const ModalDialog* pDialog, HWND hwnd)
{
    if (hwnd == nullptr) {
        return runDialog(pDialog);
    }
    BOOL fEnabled = IsWindowEnabled(hwnd);
    if (fEnabled) {
        EnableWindow(hwnd, FALSE);
    }
    INT_PTR nResult = nXferDandDDialogBoxDisabling(pDialog, GetParent(hwnd));
    if (fEnabled) {
        EnableWindow(hwnd, TRUE);
    }
    return nResult;
}

} // namespace

void vXferDandDForgetCreation(const XferWindowRecord* pRecord)
{
    for (Creation* pCreation = s_pInnermost; pCreation != nullptr; pCreation = pCreation->pOuter) {
        if (pCreation->pRecord == pRecord) {
            pCreation->pRecord = nullptr;
        }
    }
}

HWND KRHAULAPI hdlgXferDandDCreate2(const char* pszTitle, HWND hwndParent, HGLOBAL* phRecord,
                                    DWORD dwCallerData, HostCallbacks* pCallbacks, DWORD nViewMode)
{
    return hdlgXferDandDLangCreate2(XFER_DEFAULT_LANGUAGE, pszTitle, hwndParent, phRecord,
                                    dwCallerData, pCallbacks, nViewMode);
}

HWND KRHAULAPI hdlgXferDandDLangCreate2(const char* pszLanguage, const char* pszTitle,
                                        HWND hwndParent, HGLOBAL* phRecord, DWORD dwCallerData,
                                        HostCallbacks* pCallbacks, DWORD nViewMode)
{
    HMODULE hLanguage;
    if (nXferAllocLoadLanguage(&hLanguage, pszLanguage) != XFER_OK) {
        return nullptr;
    }
    if (!fXferToolbarRegister(g_hInstance)) {
        return refuse(hLanguage, hwndParent);
    }
    XferWindowRecord* pRecord = allocRecord();
    if (pRecord == nullptr) {
        return refuse(hLanguage, hwndParent);
    }
    pRecord->hwndParent = hwndParent;
    pRecord->dwCallerData = dwCallerData;
    pRecord->hLanguage = hLanguage;
    pRecord->nViewMode = LONG(nViewMode);
    pRecord->fBusy = 1;
    if (fXferIsVersion4() && !XferFileList_fCreate(&pRecord->viewTempFiles)) {
        freeRecord(pRecord);
        FreeLibrary(hLanguage);
        return nullptr;
    }
    shakeHands(&pRecord->callbacks, pCallbacks);
    bool fRecordGone;
    HWND hdlgDandD = createDialog(pRecord, hLanguage, hwndParent, &fRecordGone);
    if (hdlgDandD == nullptr) {
        if (!fRecordGone) {
            freeRecord(pRecord);
            FreeLibrary(hLanguage);
        }
        return nullptr;
    }
    if (phRecord != nullptr) {
        *phRecord = GlobalHandle(pRecord);
    }
    SetWindowTextA(hdlgDandD, pszTitle);
    return hdlgDandD;
}

int KRHAULAPI nXferDandDDestroy(HWND hdlgDandD)
{
    if (pXferDandDRecord(hdlgDandD) != nullptr) {
        DestroyWindow(hdlgDandD);
    }
    return 0;
}

INT_PTR KRHAULAPI nXferDandDDialogBoxParam(HWND hdlgDandD, const char* pszTemplate,
                                           DLGPROC pfnDialog, LPARAM lParam)
{
    const XferWindowRecord* pRecord = pXferDandDRecord(hdlgDandD);
    if (pRecord == nullptr || pszTemplate == nullptr || pfnDialog == nullptr) {
        return DIALOG_FAILED;
    }
    ModalDialog dialog = {hdlgDandD, pRecord, pszTemplate, pfnDialog, lParam};
    return nXferDandDDialogBoxDisabling(&dialog, pRecord->hwndParent);
}
