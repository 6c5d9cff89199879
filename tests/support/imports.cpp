#include "imports.h"

#include <gtest/gtest.h>
#include <string.h>

namespace {

template <typename T> T* at(HMODULE hModule, DWORD dwOffset)
{
    return reinterpret_cast<T*>(reinterpret_cast<BYTE*>(hModule) + dwOffset);
}

void** findSlot(HMODULE hModule, const char* pszName)
{
    auto pDos = at<IMAGE_DOS_HEADER>(hModule, 0);
    auto pNt = at<IMAGE_NT_HEADERS32>(hModule, DWORD(pDos->e_lfanew));
    auto& dir = pNt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto pImport = at<IMAGE_IMPORT_DESCRIPTOR>(hModule, dir.VirtualAddress);
    for (; pImport->Name != 0; ++pImport) {
        auto pNames = at<IMAGE_THUNK_DATA32>(hModule, pImport->OriginalFirstThunk);
        auto ppSlots = at<void*>(hModule, pImport->FirstThunk);
        for (int n = 0; pNames[n].u1.AddressOfData != 0; ++n) {
            DWORD dwName = pNames[n].u1.AddressOfData;
            if (!IMAGE_SNAP_BY_ORDINAL32(dwName) &&
                strcmp(at<IMAGE_IMPORT_BY_NAME>(hModule, dwName)->Name, pszName) == 0) {
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

ReplacedImport::ReplacedImport(HMODULE hModule, const char* pszName, void* pFake, int)
    : m_ppSlot(findSlot(hModule, pszName)), m_pOriginal(nullptr)
{
    EXPECT_NE(m_ppSlot, nullptr) << pszName << " isn't imported";
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
