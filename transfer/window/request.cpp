#include "transfer/window/request.h"

DWORD window::confirmFlags(const XferWindowRecord* pRecord)
{
    if (pRecord->callbacks.pfnConfirmFlags == nullptr) {
        return XFERCONFIRM_LOCALDELETE | XFERCONFIRM_LOCALRMDIR;
    }
    return pRecord->callbacks.pfnConfirmFlags(pRecord->dwCallerData, 0, 0);
}

bool window::canTransfer(const XferWindowRecord* pRecord, Direction direction)
{
    return direction == XFERDIR_SEND ? pRecord->callbacks.pfnSendFiles != nullptr
                                     : pRecord->callbacks.pfnReceiveFiles != nullptr;
}

void window::requestTransfer(const XferWindowRecord* pRecord, Direction direction,
                             XferFileList list, const char* pszHostDir)
{
    const HostCallbacks* pCallbacks = &pRecord->callbacks;
    if (direction == XFERDIR_SEND) {
        pCallbacks->pfnSendFiles(pRecord->dwCallerData, 0, 0, list, 0, pszHostDir);
    } else {
        pCallbacks->pfnReceiveFiles(pRecord->dwCallerData, 0, 0, list, 0);
    }
}
