// The exported calls of the status window.
#include "status/dialog.h"
#include "resources/ids.h"
#include "shared/krutils.h"
#include "shared/language.h"
#include "shared/module.h"

#include <string.h>

namespace {

constexpr UINT TICK_MS = 1000;
constexpr char TEMPLATE[] = "DLGXFER";

// A module that can't be used any more, and the one result of all failures after its load.
HWND giveUp(HMODULE hLanguage)
{
    FreeLibrary(hLanguage);
    return nullptr;
}

HWND refuseNinthWindow(HMODULE hLanguage, HWND hwndParent)
{
    KrMessageBoxId(hLanguage, hwndParent, IDS_NO_RESOURCES, 0, 3, 0);
    return giveUp(hLanguage);
}

void replaceLabel(HWND hdlgStat, HMODULE hLanguage)
{
    char szLabel[50] = "";
    LoadStringA(hLanguage, IDS_STAT_LABEL, szLabel, sizeof szLabel);
    SetDlgItemTextA(hdlgStat, IDC_STAT_LABEL, szLabel);
}

// szStatus is left alone: the text of the window before stays until it is set anew.
void fillSlot(StatSlot* pSlot, HWND hdlgStat, HWND hwndParent, HMODULE hLanguage)
{
    pSlot->hdlgStat = hdlgStat;
    pSlot->hwndParent = hwndParent;
    pSlot->hLanguage = hLanguage;
    pSlot->ulTotalSize = 0;
    pSlot->ulCount = 0;
    pSlot->dwStartTick = 0;
    pSlot->uTimer = 0;
    pSlot->nLastPercent = XFERSTAT_NOPERCENT;
}

void freeSlot(StatSlot* pSlot)
{
    pSlot->hdlgStat = nullptr;
    if (pSlot->hLanguage != nullptr) {
        FreeLibrary(pSlot->hLanguage);
        pSlot->hLanguage = nullptr;
    }
}

} // namespace

HWND KRHAULAPI hdlgXferStatCreate(const char* pszTitle, DWORD dwLabel, HWND hwndParent,
                                  DWORD fCorner, DWORD fMinimize)
{
    return hdlgXferStatLangCreate(XFER_DEFAULT_LANGUAGE, pszTitle, dwLabel, hwndParent, fCorner,
                                  fMinimize);
}

HWND KRHAULAPI hdlgXferStatLangCreate(const char* pszLanguage, const char* pszTitle, DWORD dwLabel,
                                      HWND hwndParent, DWORD fCorner, DWORD fMinimize)
{
    HMODULE hLanguage;
    if (nXferAllocLoadLanguage(&hLanguage, pszLanguage) != XFER_OK) {
        return nullptr;
    }
    if (XferStatFindFreeSlot() == XFERSTAT_NOSLOT) {
        return refuseNinthWindow(hLanguage, hwndParent);
    }
    status::DialogInit init = {DWORD(MAKELONG(fCorner, fMinimize)), hwndParent};
    HWND hdlgStat = CreateDialogParamA(hLanguage, TEMPLATE, hwndParent, fDlgXferStatProc,
                                       reinterpret_cast<LPARAM>(&init));
    if (hdlgStat == nullptr) {
        return giveUp(hLanguage);
    }
    SetWindowTextA(hdlgStat, pszTitle);
    if (dwLabel == 0) {
        replaceLabel(hdlgStat, hLanguage);
    }
    // Asked again: showing the window sends messages to the caller's windows, which may have
    // taken the last slot meanwhile.
    int nSlot = XferStatFindFreeSlot();
    if (nSlot == XFERSTAT_NOSLOT) {
        DestroyWindow(hdlgStat);
        return refuseNinthWindow(hLanguage, hwndParent);
    }
    fillSlot(&status::g_slots[nSlot], hdlgStat, hwndParent, hLanguage);
    return hdlgStat;
}

int KRHAULAPI nXferStatStartTransfer(HWND hdlgStat)
{
    int nSlot = XferStatFindSlot(hdlgStat);
    if (nSlot == XFERSTAT_NOSLOT) {
        return XFER_NOWINDOW;
    }
    StatSlot* pSlot = &status::g_slots[nSlot];
    status::paintEmptyBar(hdlgStat, pSlot->hLanguage);
    if (pSlot->uTimer == 0) {
        pSlot->uTimer = SetTimer(hdlgStat, UINT_PTR(nSlot), TICK_MS, nullptr);
    }
    pSlot->dwStartTick = GetTickCount();
    return XFER_OK;
}

int KRHAULAPI nXferStatEndTransfer(HWND hdlgStat)
{
    int nSlot = XferStatFindSlot(hdlgStat);
    if (nSlot == XFERSTAT_NOSLOT) {
        return XFER_NOWINDOW;
    }
    StatSlot* pSlot = &status::g_slots[nSlot];
    SendMessageA(hdlgStat, WM_TIMER, pSlot->uTimer, 0);
    // A caller that sees this tick first may have destroyed the window on it, and the slot may
    // already be another window's.
    if (pSlot->hdlgStat == hdlgStat) {
        KillTimer(hdlgStat, UINT_PTR(nSlot));
        pSlot->uTimer = 0;
    }
    return XFER_OK;
}

int KRHAULAPI nXferStatDestroy(HWND hdlgStat)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_NOWINDOW;
    }
    nXferStatEndTransfer(hdlgStat);
    // The last tick and the end of a window send messages to the caller's windows. One of them
    // may have come back here first, and the slot may already be another window's.
    if (pSlot->hdlgStat != hdlgStat) {
        return XFER_OK;
    }
    PostMessageA(pSlot->hwndParent, WM_XFERSTAT_CLOSED, 0, 0);
    DestroyWindow(hdlgStat);
    if (pSlot->hdlgStat == hdlgStat) {
        freeSlot(pSlot);
    }
    return XFER_OK;
}

int KRHAULAPI nXferStatFileInfo(HWND hdlgStat, const char* pszName1, const char* pszName2,
                                DWORD cbSize)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_OK;
    }
    char szSize[20] = "";
    pSlot->ulTotalSize = cbSize;
    SetDlgItemTextA(hdlgStat, IDC_STAT_NAME1, pszName1);
    SetDlgItemTextA(hdlgStat, IDC_STAT_NAME2, pszName2);
    if (cbSize == 0) {
        EnableWindow(GetDlgItem(hdlgStat, IDC_STAT_BAR), FALSE);
        LoadStringA(pSlot->hLanguage, IDS_NOT_KNOWN, szSize, sizeof szSize);
    } else {
        wsprintfA(szSize, "%lu", cbSize);
    }
    SetDlgItemTextA(hdlgStat, IDC_STAT_SIZE, szSize);
    return XFER_OK;
}

int KRHAULAPI nXferStatErrorInfo(HWND hdlgStat, DWORD cErrors1, DWORD cErrors2)
{
    if (XferStatFindSlot(hdlgStat) != XFERSTAT_NOSLOT) {
        SetDlgItemInt(hdlgStat, IDC_STAT_ERRORS1, cErrors1, FALSE);
        SetDlgItemInt(hdlgStat, IDC_STAT_ERRORS2, cErrors2, FALSE);
    }
    return XFER_OK;
}

int KRHAULAPI nXferStatStatusInfo(HWND hdlgStat, const char* pszStatus)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot != nullptr && pszStatus != nullptr) {
        lstrcpynA(pSlot->szStatus, pszStatus, sizeof pSlot->szStatus);
    }
    return XFER_OK;
}

int KRHAULAPI nXferStatCountInfo(HWND hdlgStat, DWORD cbCount)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot != nullptr) {
        pSlot->ulCount = cbCount;
    }
    return XFER_OK;
}

void KRHAULAPI vXferStatButtonText(HWND hdlgStat, DWORD dwCaption)
{
    static constexpr UINT CAPTIONS[] = {0, IDS_STAT_BUTTON1, IDS_STAT_BUTTON2, IDS_STAT_BUTTON3};
    StatSlot* pSlot = status::slotOf(hdlgStat);
    char szCaption[10];
    if (pSlot == nullptr || dwCaption >= ARRAYSIZE(CAPTIONS)) {
        return;
    }
    HWND hwndButton = GetDlgItem(hdlgStat, IDC_STAT_BUTTON);
    if (dwCaption == XFERSTAT_CAPTION_NONE) {
        ShowWindow(hwndButton, SW_HIDE);
    } else if (LoadStringA(pSlot->hLanguage, CAPTIONS[dwCaption], szCaption, sizeof szCaption) >
               0) {
        SetWindowTextA(hwndButton, szCaption);
    }
}

void KRHAULAPI vXferStatDummy(void)
{
}
