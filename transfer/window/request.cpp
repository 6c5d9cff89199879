#include "transfer/window/request.h"
#include "shared/filelist.h"
#include "shared/krutils.h"
#include "shared/text.h"

namespace {

void sendFiles(const XferWindowRecord* pRecord, XferFileList list, const char* pszHostDir)
{
    pRecord->callbacks.pfnSendFiles(pRecord->dwCallerData, 0, 0, list, 0, pszHostDir);
}

void receiveFiles(const XferWindowRecord* pRecord, XferFileList list, const char*)
{
    pRecord->callbacks.pfnReceiveFiles(pRecord->dwCallerData, 0, 0, list, 0);
}

void deleteFiles(const XferWindowRecord* pRecord, XferFileList list, const char*)
{
    pRecord->callbacks.pfnDeleteHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
}

void detailFiles(const XferWindowRecord* pRecord, XferFileList list, const char*)
{
    pRecord->callbacks.pfnHostFileDetails(pRecord->dwCallerData, 0, 0, list);
}

void viewFiles(const XferWindowRecord* pRecord, XferFileList list, const char*)
{
    pRecord->callbacks.pfnViewHostFiles(pRecord->dwCallerData, 0, 0, list, 0);
}

// In the order of FileRequest.
struct FileRequestRow {
    LONG nColumn;
    int nAction;
    bool (*pfnCan)(const HostCallbacks* pCallbacks);
    void (*pfnCall)(const XferWindowRecord* pRecord, XferFileList list, const char* pszHostDir);
};

constexpr FileRequestRow FILE_REQUESTS[] = {
    {XFERLIST_HOST, KRACTION_FILE_RECEIVED,
     [](const HostCallbacks* p) { return p->pfnReceiveFiles != nullptr; }, receiveFiles},
    {XFERLIST_LOCAL, KRACTION_FILE_SENT,
     [](const HostCallbacks* p) { return p->pfnSendFiles != nullptr; }, sendFiles},
    {XFERLIST_HOST, KRACTION_HOSTFILE_DELETED,
     [](const HostCallbacks* p) { return p->pfnDeleteHostFiles != nullptr; }, deleteFiles},
    {XFERLIST_HOST, 0, [](const HostCallbacks* p) { return p->pfnHostFileDetails != nullptr; },
     detailFiles},
    {XFERLIST_HOST, 0, [](const HostCallbacks* p) { return p->pfnViewHostFiles != nullptr; },
     viewFiles},
};

} // namespace

DWORD window::confirmFlags(const XferWindowRecord* pRecord)
{
    if (pRecord->callbacks.pfnConfirmFlags == nullptr) {
        return XFERCONFIRM_LOCALDELETE | XFERCONFIRM_LOCALRMDIR;
    }
    return pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, 0, 0);
}

void window::setConfirmFlags(const XferWindowRecord* pRecord, DWORD dwFlags)
{
    if (pRecord->callbacks.pfnConfirmFlags != nullptr) {
        pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, dwFlags, 1);
    }
}

bool window::canRequest(const XferWindowRecord* pRecord, FileRequest request)
{
    return FILE_REQUESTS[request].pfnCan(&pRecord->callbacks);
}

LONG window::columnOf(FileRequest request)
{
    return FILE_REQUESTS[request].nColumn;
}

int window::actionOf(FileRequest request)
{
    return FILE_REQUESTS[request].nAction;
}

void window::requestFiles(const XferWindowRecord* pRecord, FileRequest request, XferFileList list,
                          const char* pszHostDir)
{
    FILE_REQUESTS[request].pfnCall(pRecord, list, pszHostDir);
}

void window::requestFile(const XferWindowRecord* pRecord, FileRequest request, const char* pszName)
{
    XferFileList list;
    int nAction = actionOf(request);
    if (!canRequest(pRecord, request) ||
        !XferFileListCreateOne(&list, columnOf(request), pszName)) {
        return;
    }
    if (nAction == 0 || recordAction(pRecord, nAction, pszName)) {
        requestFiles(pRecord, request, list);
    } else {
        XferFileList_vDestroy(list);
    }
}

void window::requestRename(const XferWindowRecord* pRecord, const char* pszOld, const char* pszNew,
                           const char* pszReport)
{
    if (pRecord->callbacks.pfnRenameHostFile != nullptr &&
        recordAction(pRecord, KRACTION_HOSTFILE_RENAMED, pszReport)) {
        pRecord->callbacks.pfnRenameHostFile(pRecord->dwCallerData, 0, 0, pszOld, pszNew);
    }
}

// The parent is read before the callback, in which the record can go.
void window::requestMakeDir(const XferWindowRecord* pRecord, const char* pszDir)
{
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnMakeHostDir != nullptr) {
        pRecord->callbacks.pfnMakeHostDir(pRecord->dwCallerData, 0, 0, pszDir);
        KrRecordAction(hwndParent, KRACTION_HOSTDIR_MADE, pszDir);
    }
}

void window::requestRemoveDir(const XferWindowRecord* pRecord, const char* pszDir,
                              NameSource source)
{
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnRemoveHostDir != nullptr) {
        pRecord->callbacks.pfnRemoveHostDir(pRecord->dwCallerData, 0, 0, pszDir, source);
        KrRecordAction(hwndParent, KRACTION_HOSTDIR_REMOVED, pszDir);
    }
}

void window::requestChangeDir(const XferWindowRecord* pRecord, const char* pszDir,
                              NameSource source)
{
    if (pRecord->callbacks.pfnChangeHostDir != nullptr) {
        pRecord->callbacks.pfnChangeHostDir(pRecord->dwCallerData, 0, 0, pszDir, source);
    }
}

// The callback gets the scratch buffer, which the calls that it makes can overwrite. What is
// recorded afterwards comes from a copy.
void window::requestRecordedChangeDir(const XferWindowRecord* pRecord, const char* pszDir,
                                      NameSource source)
{
    char szDir[XFER_NAME_SIZE];
    HWND hwndParent = pRecord->hwndParent;
    if (pRecord->callbacks.pfnChangeHostDir == nullptr) {
        return;
    }
    shared::copyText(szDir, pszDir, sizeof szDir);
    shared::copyText(g_szScratch, pszDir, sizeof g_szScratch);
    requestChangeDir(pRecord, g_szScratch, source);
    KrRecordAction(hwndParent, KRACTION_HOSTDIR_CHANGED, szDir);
}

void window::requestFilter(const XferWindowRecord* pRecord, const char* pszFilter)
{
    if (pRecord->callbacks.pfnHostFilter != nullptr) {
        pRecord->callbacks.pfnHostFilter(pRecord->dwCallerData, 0, 0, pszFilter);
    }
}

void window::requestCommand(const XferWindowRecord* pRecord, const char* pszCommand)
{
    Ref ref = refOf(pRecord);
    if (pRecord->callbacks.pfnHostCommand == nullptr) {
        return;
    }
    KrRecordCommand(pRecord->hwndParent, pszCommand);
    if (isAlive(ref)) {
        pRecord->callbacks.pfnHostCommand(pRecord->dwCallerData, 0, 0, pszCommand);
    }
}

bool window::reportViewMode(const XferWindowRecord* pRecord, LONG nViewMode)
{
    Ref ref = refOf(pRecord);
    if (pRecord->callbacks.pfnViewModeChanged != nullptr) {
        pRecord->callbacks.pfnViewModeChanged(pRecord->dwCallerData, 0, 0, DWORD(nViewMode));
    }
    return isAlive(ref);
}
