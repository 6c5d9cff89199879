// The exported calls of the status window.
#include "resources/ids.h"
#include "shared/language.h"
#include "shared/text.h"
#include "status/bar.h"
#include "status/dialog.h"
#include "status/slots.h"

namespace {

constexpr UINT TICK_MS = 1000;
constexpr char TEMPLATE[] = "DLGXFER";

// The result of every failure after the language module was loaded.
HWND failCreation(HMODULE hLanguage)
{
    FreeLibrary(hLanguage);
    return nullptr;
}

HWND failWithoutSlot(HMODULE hLanguage, HWND hwndParent)
{
    shared::showNoResources(hLanguage, hwndParent);
    return failCreation(hLanguage);
}

void replaceLabel(HWND hdlgStat, HMODULE hLanguage)
{
    char szLabel[50] = "";
    LoadStringA(hLanguage, IDS_STAT_LABEL, szLabel, sizeof szLabel);
    SetDlgItemTextA(hdlgStat, IDC_STAT_LABEL, szLabel);
}

// Creating a window sends messages to the caller's windows, which may destroy it at once.
// Returns 0 then, as for a window that can't be created.
HWND createDialog(HMODULE hLanguage, HWND hwndParent, DWORD dwFlags)
{
    status::DialogInit init = {dwFlags, hwndParent};
    status::Creation creation;
    status::beginCreation(&creation);
    HWND hdlgStat = CreateDialogParamA(hLanguage, TEMPLATE, hwndParent, fDlgXferStatProc,
                                       reinterpret_cast<LPARAM>(&init));
    status::endCreation(&creation);
    return creation.fClosed ? nullptr : hdlgStat;
}

// Returns false if the window was destroyed by one of the messages.
bool labelDialog(HWND hdlgStat, HMODULE hLanguage, const char* pszTitle, DWORD dwLabel)
{
    status::Creation creation;
    status::beginCreation(&creation);
    creation.hdlgStat = hdlgStat;
    SetWindowTextA(hdlgStat, pszTitle);
    if (dwLabel == 0 && !creation.fClosed) {
        replaceLabel(hdlgStat, hLanguage);
    }
    status::endCreation(&creation);
    return !creation.fClosed;
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
        return failWithoutSlot(hLanguage, hwndParent);
    }
    HWND hdlgStat = createDialog(hLanguage, hwndParent, DWORD(MAKELONG(fCorner, fMinimize)));
    if (hdlgStat == nullptr || !labelDialog(hdlgStat, hLanguage, pszTitle, dwLabel)) {
        return failCreation(hLanguage);
    }
    // Asked again: the caller's windows may have taken the last slot on one of the messages.
    int nSlot = XferStatFindFreeSlot();
    if (nSlot == XFERSTAT_NOSLOT) {
        DestroyWindow(hdlgStat);
        return failWithoutSlot(hLanguage, hwndParent);
    }
    status::takeSlot(&status::g_slots[nSlot], hdlgStat, hwndParent, hLanguage);
    return hdlgStat;
}

int KRHAULAPI nXferStatStartTransfer(HWND hdlgStat)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_NOWINDOW;
    }
    status::Ref ref = status::refOf(pSlot);
    status::paintEmptyBar(ref);
    if (!status::holdsSlot(ref)) {
        return XFER_OK;
    }
    if (pSlot->uTimer == 0 && status::isAlive(ref)) {
        pSlot->uTimer = SetTimer(hdlgStat, UINT_PTR(status::indexOf(pSlot)), TICK_MS, nullptr);
    }
    pSlot->dwStartTick = GetTickCount();
    return XFER_OK;
}

int KRHAULAPI nXferStatEndTransfer(HWND hdlgStat)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_NOWINDOW;
    }
    status::Ref ref = status::refOf(pSlot);
    if (status::isAlive(ref)) {
        SendMessageA(hdlgStat, WM_TIMER, pSlot->uTimer, 0);
    }
    if (status::isAlive(ref)) {
        KillTimer(hdlgStat, UINT_PTR(status::indexOf(pSlot)));
    }
    if (status::holdsSlot(ref)) {
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
    status::Ref ref = status::refOf(pSlot);
    nXferStatEndTransfer(hdlgStat);
    // The last tick and the end of a window send messages to the caller's windows. One of them
    // may have called this function first.
    if (!status::holdsSlot(ref)) {
        return XFER_OK;
    }
    PostMessageA(pSlot->hwndParent, WM_XFERSTAT_CLOSED, 0, 0);
    if (status::isAlive(ref)) {
        DestroyWindow(hdlgStat);
    }
    if (status::holdsSlot(ref)) {
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
    status::Ref ref = status::refOf(pSlot);
    pSlot->ulTotalSize = cbSize;
    status::setText(ref, IDC_STAT_NAME1, pszName1);
    status::setText(ref, IDC_STAT_NAME2, pszName2);
    if (cbSize != 0) {
        wsprintfA(szSize, "%lu", cbSize);
    } else if (status::isAlive(ref)) {
        EnableWindow(GetDlgItem(hdlgStat, IDC_STAT_BAR), FALSE);
        LoadStringA(pSlot->hLanguage, IDS_NOT_KNOWN, szSize, sizeof szSize);
    }
    status::setText(ref, IDC_STAT_SIZE, szSize);
    return XFER_OK;
}

int KRHAULAPI nXferStatErrorInfo(HWND hdlgStat, DWORD cErrors, DWORD cRetries)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot != nullptr) {
        status::Ref ref = status::refOf(pSlot);
        status::setNumber(ref, IDC_STAT_ERRORS1, cErrors);
        status::setNumber(ref, IDC_STAT_ERRORS2, cRetries);
    }
    return XFER_OK;
}

int KRHAULAPI nXferStatStatusInfo(HWND hdlgStat, const char* pszStatus)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot != nullptr && pszStatus != nullptr) {
        shared::copyText(pSlot->szStatus, pszStatus, sizeof pSlot->szStatus);
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
    if (pSlot == nullptr || pSlot->fClosed != 0 || dwCaption >= ARRAYSIZE(CAPTIONS)) {
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
