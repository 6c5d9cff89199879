#include "ledger.h"

#include <set>
#include <stdlib.h>

namespace {

std::set<void*> s_blocks;
int s_nUntilFailure;
bool s_fForGood;
bool s_fFailed;

bool isToFail()
{
    bool fFail = s_nUntilFailure > 0 && --s_nUntilFailure == 0;
    if (fFail && s_fForGood) {
        s_nUntilFailure = 1;
    }
    s_fFailed = s_fFailed || fFail;
    return fFail;
}

// Whether a block is to be kept an account of when it has moved: those from before aren't.
bool isOurs(void* pBlock)
{
    return pBlock == nullptr || s_blocks.count(pBlock) != 0;
}

void* noted(void* pBlock)
{
    if (pBlock != nullptr) {
        s_blocks.insert(pBlock);
    }
    return pBlock;
}

HGLOBAL WINAPI fakeGlobalAlloc(UINT uFlags, SIZE_T cb)
{
    return isToFail() ? nullptr : noted(GlobalAlloc(uFlags, cb));
}

HGLOBAL WINAPI fakeGlobalFree(HGLOBAL hBlock)
{
    s_blocks.erase(hBlock);
    return GlobalFree(hBlock);
}

HGLOBAL WINAPI fakeGlobalReAlloc(HGLOBAL hBlock, SIZE_T cb, UINT uFlags)
{
    if (isToFail()) {
        return nullptr;
    }
    bool fOurs = isOurs(hBlock);
    HGLOBAL hNew = GlobalReAlloc(hBlock, cb, uFlags);
    if (hNew != nullptr && fOurs) {
        s_blocks.erase(hBlock);
        s_blocks.insert(hNew);
    }
    return hNew;
}

void* fakeMalloc(size_t cb)
{
    return isToFail() ? nullptr : noted(malloc(cb));
}

void fakeFree(void* pBlock)
{
    s_blocks.erase(pBlock);
    free(pBlock);
}

void* fakeRealloc(void* pBlock, size_t cb)
{
    if (isToFail()) {
        return nullptr;
    }
    bool fOurs = isOurs(pBlock);
    s_blocks.erase(pBlock);
    void* pNew = realloc(pBlock, cb);
    return fOurs ? noted(pNew) : pNew;
}

HMODULE library()
{
    return GetModuleHandleA("KRHAUL.DLL");
}

} // namespace

Ledger::Ledger()
    : m_globalAlloc(library(), "GlobalAlloc", fakeGlobalAlloc),
      m_globalReAlloc(library(), "GlobalReAlloc", fakeGlobalReAlloc),
      m_globalFree(library(), "GlobalFree", fakeGlobalFree),
      m_malloc(library(), "malloc", fakeMalloc), m_realloc(library(), "realloc", fakeRealloc),
      m_free(library(), "free", fakeFree)
{
    s_blocks.clear();
    failAt(0);
}

size_t Ledger::blocks() const
{
    return s_blocks.size();
}

void Ledger::failAt(int n, bool fForGood)
{
    s_nUntilFailure = n;
    s_fForGood = fForGood;
    s_fFailed = false;
}

bool Ledger::hasFailed() const
{
    return s_fFailed;
}
