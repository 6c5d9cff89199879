// Creating and destroying transfer windows, and their title.
#include "resources/ids.h"
#include "shared/language.h"
#include "shared/module.h"
#include "shared/version.h"
#include "toolbar/toolbar.h"
#include "transfer/dialog.h"
#include "transfer/window/record.h"

#include <string.h>

namespace {

constexpr char TEMPLATE[] = "DLGDANDD";

HWND failCreation(HMODULE hLanguage, HWND hwndParent)
{
    shared::showNoResources(hLanguage, hwndParent);
    FreeLibrary(hLanguage);
    return nullptr;
}

// A short table leaves its missing slots null; of a longer one, only the known slots are read.
void copyCallbacks(HostCallbacks* pOurs, HostCallbacks* pCallers)
{
    memset(pOurs, 0, sizeof *pOurs);
    if (pCallers != nullptr) {
        DWORD cb = pCallers->cbSize;
        memcpy(pOurs, pCallers, cb < sizeof *pOurs ? cb : sizeof *pOurs);
        pCallers->cbSize = sizeof *pCallers;
    }
}

XferWindowRecord* makeRecord(HMODULE hLanguage, HWND hwndParent, DWORD dwCallerData,
                             DWORD nViewMode)
{
    XferWindowRecord* pRecord = window::allocateRecord();
    if (pRecord != nullptr) {
        pRecord->hwndParent = hwndParent;
        pRecord->dwCallerData = dwCallerData;
        pRecord->hLanguage = hLanguage;
        pRecord->nViewMode = LONG(nViewMode);
        pRecord->fBusy = 1;
    }
    return pRecord;
}

// Creates the dialog. Returns 0, with the record freed, if that fails or the window is destroyed
// during its own creation.
HWND createDialog(XferWindowRecord* pRecord)
{
    window::Ref ref = window::refOf(pRecord);
    HWND hwndParent = pRecord->hwndParent;
    HWND hwndOwner = GetParent(hwndParent) != nullptr ? hwndParent : nullptr;
    HWND hdlgDandD = CreateDialogParamA(pRecord->hLanguage, TEMPLATE, hwndOwner, fDlgXferDandDProc,
                                        reinterpret_cast<LPARAM>(pRecord));
    if (!window::exists(ref)) {
        return nullptr;
    }
    if (hdlgDandD == nullptr) {
        window::freeRecord(pRecord);
    }
    return hdlgDandD;
}

} // namespace

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
        return failCreation(hLanguage, hwndParent);
    }
    XferWindowRecord* pRecord = makeRecord(hLanguage, hwndParent, dwCallerData, nViewMode);
    if (pRecord == nullptr) {
        return failCreation(hLanguage, hwndParent);
    }
    if (shared::isVersion4() && !XferFileList_fCreate(&pRecord->viewTempFiles)) {
        window::freeRecord(pRecord);
        return nullptr;
    }
    copyCallbacks(&pRecord->callbacks, pCallbacks);
    HWND hdlgDandD = createDialog(pRecord);
    if (hdlgDandD == nullptr) {
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
    if (window::recordOf(hdlgDandD) != nullptr) {
        DestroyWindow(hdlgDandD);
    }
    return 0;
}

void KRHAULAPI vXferDandDSetTitle(HWND hdlgDandD, const char* pszTitle)
{
    if (window::recordOf(hdlgDandD) != nullptr) {
        SendMessageA(hdlgDandD, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(pszTitle));
    }
}
