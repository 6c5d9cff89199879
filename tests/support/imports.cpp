#include "imports.h"
#include "pe.h"

#include <gtest/gtest.h>
#include <string.h>

namespace {

bool isWanted(HMODULE hModule, const ReplacedImport::Import& wanted, DWORD dwName)
{
    if (wanted.pszName == nullptr) {
        return IMAGE_SNAP_BY_ORDINAL32(dwName) && IMAGE_ORDINAL32(dwName) == wanted.wOrdinal;
    }
    return !IMAGE_SNAP_BY_ORDINAL32(dwName) &&
           strcmp(atImage<IMAGE_IMPORT_BY_NAME>(hModule, dwName)->Name, wanted.pszName) == 0;
}

void** findSlot(HMODULE hModule, const ReplacedImport::Import& wanted)
{
    auto pImport = directoryOf<IMAGE_IMPORT_DESCRIPTOR>(hModule, IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; pImport->Name != 0; ++pImport) {
        if (wanted.pszFrom != nullptr &&
            lstrcmpiA(atImage<char>(hModule, pImport->Name), wanted.pszFrom) != 0) {
            continue;
        }
        auto pNames = atImage<IMAGE_THUNK_DATA32>(hModule, pImport->OriginalFirstThunk);
        auto ppSlots = const_cast<void**>(atImage<void*>(hModule, pImport->FirstThunk));
        for (int n = 0; pNames[n].u1.AddressOfData != 0; ++n) {
            if (isWanted(hModule, wanted, pNames[n].u1.AddressOfData)) {
                return &ppSlots[n];
            }
        }
    }
    return nullptr;
}

void write(void** ppSlot, void* pValue)
{
    DWORD dwOld;
    VirtualProtect(ppSlot, sizeof *ppSlot, PAGE_EXECUTE_READWRITE, &dwOld);
    *ppSlot = pValue;
    VirtualProtect(ppSlot, sizeof *ppSlot, dwOld, &dwOld);
}

} // namespace

ReplacedImport::ReplacedImport(HMODULE hModule, const Import& wanted, void* pFake)
    : m_ppSlot(findSlot(hModule, wanted)), m_pOriginal(nullptr)
{
    EXPECT_NE(m_ppSlot, nullptr) << (wanted.pszName != nullptr ? wanted.pszName : wanted.pszFrom)
                                 << " " << wanted.wOrdinal << " isn't imported";
    if (m_ppSlot != nullptr) {
        m_pOriginal = *m_ppSlot;
        write(m_ppSlot, pFake);
    }
}

ReplacedImport::~ReplacedImport()
{
    if (m_ppSlot != nullptr) {
        write(m_ppSlot, m_pOriginal);
    }
}

bool ReplacedImports::isImported(const char* pszName) const
{
    return findSlot(m_hModule, {nullptr, pszName, 0}) != nullptr;
}

void ReplacedImports::clear()
{
    // A later one may stand over an earlier one.
    while (!m_all.empty()) {
        m_all.pop_back();
    }
}
