#include "transfer/window/record.h"
#include "shared/block.h"
#include "shared/krutils.h"

#include <stdio.h>

char g_szScratch[XFER_NAME_SIZE];
char g_szScratch2[XFER_NAME_SIZE];
int g_nListItemHeight;

namespace {

// The live records, the one that was looked up last in front: calls come in long runs for one
// window.
XferWindowRecord* s_pFirstLive;
DWORD s_nLastSerial;

// Only to be compared with a live record: any window can be passed to an export.
const void* storedAddress(HWND hdlgDandD)
{
    return reinterpret_cast<const void*>(GetWindowLongA(hdlgDandD, DWL_USER));
}

// The link that points to a record, or the null link at the end of the list.
XferWindowRecord** findLink(const XferWindowRecord* pRecord)
{
    XferWindowRecord** ppLink = &s_pFirstLive;
    while (*ppLink != nullptr && *ppLink != pRecord) {
        ppLink = &(*ppLink)->pNextLive;
    }
    return ppLink;
}

XferWindowRecord** findLinkOfWindow(HWND hdlgDandD)
{
    XferWindowRecord** ppLink = &s_pFirstLive;
    while (*ppLink != nullptr && (*ppLink)->hwndDialog != hdlgDandD) {
        ppLink = &(*ppLink)->pNextLive;
    }
    return ppLink;
}

void unlinkRecord(XferWindowRecord** ppLink)
{
    if (*ppLink != nullptr) {
        *ppLink = (*ppLink)->pNextLive;
    }
}

void linkInFront(XferWindowRecord* pRecord)
{
    pRecord->pNextLive = s_pFirstLive;
    s_pFirstLive = pRecord;
}

// The temporary copies of viewed files are deleted with the window, whatever else uses them.
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

HWND XferHelpOwner(const XferWindowRecord* pRecord)
{
    return pRecord->hwndParent != nullptr ? pRecord->hwndParent : pRecord->hwndDialog;
}

window::Ref window::refOf(const XferWindowRecord* pRecord)
{
    return {pRecord->hwndDialog, pRecord, pRecord->nSerial};
}

bool window::exists(const Ref& ref)
{
    const XferWindowRecord* pFound = *findLink(ref.pRecord);
    return pFound != nullptr && pFound->nSerial == ref.nSerial;
}

bool window::isAlive(const Ref& ref)
{
    return exists(ref) && storedAddress(ref.hdlgDandD) == ref.pRecord;
}

XferWindowRecord* window::recordOf(HWND hdlgDandD)
{
    XferWindowRecord** ppLink = findLinkOfWindow(hdlgDandD);
    XferWindowRecord* pRecord = *ppLink;
    if (hdlgDandD == nullptr || pRecord == nullptr || storedAddress(hdlgDandD) != pRecord) {
        return nullptr;
    }
    unlinkRecord(ppLink);
    linkInFront(pRecord);
    return pRecord;
}

XferWindowRecord* window::allocateRecord()
{
    auto pRecord = static_cast<XferWindowRecord*>(
        shared::allocateBlock(GMEM_ZEROINIT | GMEM_SHARE, sizeof(XferWindowRecord)));
    if (pRecord != nullptr) {
        pRecord->nSerial = ++s_nLastSerial;
        linkInFront(pRecord);
    }
    return pRecord;
}

XferWindowRecord* window::liveRecord(LONG nAddress)
{
    return *findLink(reinterpret_cast<const XferWindowRecord*>(nAddress));
}

void window::attachRecord(HWND hdlgDandD, XferWindowRecord* pRecord)
{
    SetWindowLongA(hdlgDandD, DWL_USER, reinterpret_cast<LONG>(pRecord));
    pRecord->hwndDialog = hdlgDandD;
}

void window::freeRecord(XferWindowRecord* pRecord)
{
    if (pRecord->hwndDialog != nullptr) {
        SetWindowLongA(pRecord->hwndDialog, DWL_USER, 0);
    }
    unlinkRecord(findLink(pRecord));
    DeleteObject(pRecord->hfontStrip);
    DeleteObject(pRecord->hfontList);
    if (pRecord->viewTempFiles != nullptr) {
        deleteViewTempFiles(pRecord->viewTempFiles);
        XferFileList_vDestroy(pRecord->viewTempFiles);
    }
    if (pRecord->hLanguage != nullptr) {
        FreeLibrary(pRecord->hLanguage);
    }
    shared::freeBlock(pRecord);
}

bool window::recordAction(const XferWindowRecord* pRecord, int nAction, const char* pszText)
{
    Ref ref = refOf(pRecord);
    KrRecordAction(pRecord->hwndParent, nAction, pszText);
    return isAlive(ref);
}

void window::loadString(const XferWindowRecord* pRecord, UINT id, char* pszBuffer, int cchBuffer)
{
    pszBuffer[0] = '\0';
    LoadStringA(pRecord->hLanguage, id, pszBuffer, cchBuffer);
}
