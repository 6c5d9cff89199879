#include "record.h"
#include "creation.h"
#include "../shared/krutils.h"

#include <stdio.h>

char g_szScratch[XFER_NAME_SIZE];
char g_szScratch2[XFER_NAME_SIZE];
int g_nListItemHeight;
HICON g_listIcons[XFERICON_COUNT];

namespace {

XferWindowRecord* userLong(HWND hdlgDandD)
{
    return reinterpret_cast<XferWindowRecord*>(GetWindowLongA(hdlgDandD, DWL_USER));
}

// Any window can come in with an export, so what hangs in its long is looked at before it is
// believed: it has to be a block of the global heap of this size that names the window.
bool isRecordOf(XferWindowRecord* pRecord, HWND hdlgDandD)
{
    HGLOBAL hBlock = pRecord == nullptr ? nullptr : GlobalHandle(pRecord);
    return hBlock != nullptr && GlobalSize(hBlock) >= sizeof *pRecord &&
           pRecord->hwndDialog == hdlgDandD;
}

// The window that was asked for last: calls come in long runs for one window.
HWND s_hwndLast;
XferWindowRecord* s_pLast;

// The temporary copies of viewed files go with the window, whatever else uses them.
void deleteViewTempFiles(XferFileList list)
{
    char szFile[XFER_NAME_SIZE];
    for (LONG n = 0; n < XferFileList_cGetSize(list); ++n) {
        XferFileList_lpszGetString(list, n, XFERLIST_LOCAL, szFile, sizeof szFile);
        if (szFile[0] != '\0') {
            _unlink(szFile);
        }
    }
}

} // namespace

XferWindowRecord* pXferDandDRecord(HWND hdlgDandD)
{
    if (hdlgDandD == nullptr) {
        return nullptr;
    }
    if (hdlgDandD != s_hwndLast) {
        XferWindowRecord* pRecord = userLong(hdlgDandD);
        if (!isRecordOf(pRecord, hdlgDandD)) {
            return nullptr;
        }
        s_hwndLast = hdlgDandD;
        s_pLast = pRecord;
    }
    return s_pLast;
}

bool fXferDandDIsAlive(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    return userLong(hdlgDandD) == pRecord;
}

bool fXferDandDRecordAction(const XferWindowRecord* pRecord, int nAction, const char* pszText)
{
    HWND hdlgDandD = pRecord->hwndDialog;
    KrRecordAction(pRecord->hwndParent, nAction, pszText);
    return fXferDandDIsAlive(hdlgDandD, pRecord);
}

HWND XferHelpOwner(const XferWindowRecord* pRecord)
{
    return pRecord->hwndParent != nullptr ? pRecord->hwndParent : pRecord->hwndDialog;
}

bool fXferIsVersion4()
{
    return LOBYTE(GetVersion()) >= 4;
}

void vXferDandDLoadString(const XferWindowRecord* pRecord, UINT id, char* pszBuffer, int cchBuffer)
{
    pszBuffer[0] = '\0';
    LoadStringA(pRecord->hLanguage, id, pszBuffer, cchBuffer);
}

void vXferDandDTearDown(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    SetWindowLongA(hdlgDandD, DWL_USER, 0);
    s_hwndLast = nullptr;
    vXferDandDForgetCreation(pRecord);
    DeleteObject(pRecord->hfontStrip);
    DeleteObject(pRecord->hfontList);
    if (pRecord->viewTempFiles != nullptr) {
        deleteViewTempFiles(pRecord->viewTempFiles);
        XferFileList_vDestroy(pRecord->viewTempFiles);
        pRecord->viewTempFiles = nullptr;
    }
    if (pRecord->hLanguage != nullptr) {
        FreeLibrary(pRecord->hLanguage);
        pRecord->hLanguage = nullptr;
    }
    HGLOBAL hBlock = GlobalHandle(pRecord);
    GlobalUnlock(hBlock);
    GlobalFree(hBlock);
}
