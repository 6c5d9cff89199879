#include "transfer/panes/namesort.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr LONG FIRST_ROOM = 256;
constexpr size_t BLOCK_BYTES = 64 * 1024;
constexpr int KEY_BYTES = 2048; // more than a name of 259 characters needs

} // namespace

// Texts and keys lie in large blocks: a hundred thousand names are a few dozen allocations.
struct panes::NameBlock {
    panes::NameBlock* pNext;
    size_t cbUsed;
    char bytes[BLOCK_BYTES];
};

namespace {

char* takeBytes(panes::Names* pNames, const void* pFrom, size_t cb)
{
    panes::NameBlock* pBlock = pNames->pBlocks;
    if (pBlock == nullptr || pBlock->cbUsed + cb > BLOCK_BYTES) {
        pBlock = static_cast<panes::NameBlock*>(malloc(sizeof *pBlock));
        if (pBlock == nullptr) {
            return nullptr;
        }
        pBlock->pNext = pNames->pBlocks;
        pBlock->cbUsed = 0;
        pNames->pBlocks = pBlock;
    }
    char* pBytes = pBlock->bytes + pBlock->cbUsed;
    memcpy(pBytes, pFrom, cb);
    pBlock->cbUsed += cb;
    return pBytes;
}

bool makeRoom(panes::Names* pNames)
{
    if (pNames->cNames < pNames->cRoom) {
        return true;
    }
    LONG cRoom = pNames->cRoom == 0 ? FIRST_ROOM : pNames->cRoom * 2;
    void* pNew = realloc(pNames->pNames, size_t(cRoom) * sizeof(panes::SortedName));
    if (pNew == nullptr) {
        return false;
    }
    pNames->pNames = static_cast<panes::SortedName*>(pNew);
    pNames->cRoom = cRoom;
    return true;
}

// Sort keys compare byte by byte as lstrcmpA compares the texts, and far more quickly. Like
// lstrcmpA they have to read the texts in the code page of the system, which needn't be that of
// the locale.
void addKey(panes::Names* pNames, panes::SortedName* pName)
{
    BYTE key[KEY_BYTES];
    int cb = LCMapStringA(GetThreadLocale(), LCMAP_SORTKEY | LOCALE_USE_CP_ACP, pName->pszName, -1,
                          reinterpret_cast<char*>(key), sizeof key);
    pName->pbKey = cb <= 0 ? nullptr : reinterpret_cast<BYTE*>(takeBytes(pNames, key, size_t(cb)));
    pName->cbKey = pName->pbKey == nullptr ? 0 : DWORD(cb);
}

// Where the keys are equal, or one is missing, the texts decide.
int compareTexts(const panes::SortedName* pName1, const panes::SortedName* pName2)
{
    if (pName1->pbKey != nullptr && pName2->pbKey != nullptr) {
        DWORD cb = pName1->cbKey < pName2->cbKey ? pName1->cbKey : pName2->cbKey;
        int nOrder = memcmp(pName1->pbKey, pName2->pbKey, cb);
        if (nOrder != 0) {
            return nOrder;
        }
    }
    return lstrcmpA(pName1->pszName, pName2->pszName);
}

int compareNames(const void* p1, const void* p2)
{
    auto pName1 = static_cast<const panes::SortedName*>(p1);
    auto pName2 = static_cast<const panes::SortedName*>(p2);
    int nOrder = compareTexts(pName1, pName2);
    return nOrder != 0 ? nOrder : pName1->nPlace - pName2->nPlace;
}

bool isSorted(const panes::Names* pNames)
{
    for (LONG n = 1; n < pNames->cNames; ++n) {
        if (compareNames(&pNames->pNames[n - 1], &pNames->pNames[n]) > 0) {
            return false;
        }
    }
    return true;
}

} // namespace

bool panes::addName(panes::Names* pNames, const char* pszName, LONG nTag)
{
    if (!makeRoom(pNames)) {
        return false;
    }
    panes::SortedName name = {
        takeBytes(pNames, pszName, strlen(pszName) + 1), nullptr, 0, pNames->cNames, nTag, 0};
    if (name.pszName == nullptr) {
        return false;
    }
    pNames->pNames[pNames->cNames++] = name;
    return true;
}

void panes::sortNames(panes::Names* pNames)
{
    for (LONG n = 0; n < pNames->cNames; ++n) {
        addKey(pNames, &pNames->pNames[n]);
    }
    if (isSorted(pNames)) {
        return; // most servers send names in order
    }
    qsort(pNames->pNames, size_t(pNames->cNames), sizeof(panes::SortedName), compareNames);
}

bool panes::equalsPrevious(const panes::Names* pNames, LONG n)
{
    return n > 0 && compareTexts(&pNames->pNames[n], &pNames->pNames[n - 1]) == 0;
}

void panes::freeNames(panes::Names* pNames)
{
    while (pNames->pBlocks != nullptr) {
        panes::NameBlock* pNext = pNames->pBlocks->pNext;
        free(pNames->pBlocks);
        pNames->pBlocks = pNext;
    }
    free(pNames->pNames);
    *pNames = {};
}
