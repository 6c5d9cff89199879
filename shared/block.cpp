#include "shared/block.h"

void* shared::allocateBlock(UINT fsFlags, SIZE_T cb)
{
    HGLOBAL hBlock = GlobalAlloc(GMEM_MOVEABLE | fsFlags, cb);
    void* pBlock = hBlock == nullptr ? nullptr : GlobalLock(hBlock);
    if (pBlock == nullptr && hBlock != nullptr) {
        GlobalFree(hBlock);
    }
    return pBlock;
}

void shared::freeBlock(void* pBlock)
{
    if (pBlock != nullptr) {
        HGLOBAL hBlock = GlobalHandle(pBlock);
        GlobalUnlock(hBlock);
        GlobalFree(hBlock);
    }
}
