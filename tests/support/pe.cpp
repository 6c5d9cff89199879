#include "pe.h"

#include <algorithm>

namespace {

void readExports(const void* pImage, PeFile& pe)
{
    auto pExports = directoryOf<IMAGE_EXPORT_DIRECTORY>(pImage, IMAGE_DIRECTORY_ENTRY_EXPORT);
    if (pExports == nullptr) {
        return;
    }
    auto pNames = atImage<DWORD>(pImage, pExports->AddressOfNames);
    auto pOrdinals = atImage<WORD>(pImage, pExports->AddressOfNameOrdinals);
    for (DWORD n = 0; n < pExports->NumberOfNames; ++n) {
        pe.exports[atImage<char>(pImage, pNames[n])] = pOrdinals[n] + pExports->Base;
    }
}

void readImports(const void* pImage, PeFile& pe)
{
    auto pImport = directoryOf<IMAGE_IMPORT_DESCRIPTOR>(pImage, IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; pImport != nullptr && pImport->Name != 0; ++pImport) {
        std::string module = atImage<char>(pImage, pImport->Name);
        std::transform(module.begin(), module.end(), module.begin(), ::toupper);
        auto pThunk = atImage<DWORD>(pImage, pImport->OriginalFirstThunk);
        for (; *pThunk != 0; ++pThunk) {
            bool fOrdinal = IMAGE_SNAP_BY_ORDINAL32(*pThunk);
            pe.imports[module].insert(fOrdinal ? "#" + std::to_string(IMAGE_ORDINAL32(*pThunk))
                                               : atImage<char>(pImage, *pThunk + sizeof(WORD)));
        }
    }
}

} // namespace

PeFile readPe(const std::string& file)
{
    PeFile pe;
    HANDLE hFile = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                               0, nullptr);
    HANDLE hMapping = CreateFileMappingA(hFile, nullptr, PAGE_READONLY | SEC_IMAGE, 0, 0, nullptr);
    const void* pImage = MapViewOfFile(hMapping, FILE_MAP_READ, 0, 0, 0);
    if (pImage != nullptr) {
        const IMAGE_NT_HEADERS32* pNt = ntHeaders(pImage);
        pe.wMachine = pNt->FileHeader.Machine;
        pe.wMagic = pNt->OptionalHeader.Magic;
        pe.dwEntryPoint = pNt->OptionalHeader.AddressOfEntryPoint;
        for (int n = 0; n < pNt->FileHeader.NumberOfSections; ++n) {
            auto name = reinterpret_cast<const char*>(IMAGE_FIRST_SECTION(pNt)[n].Name);
            pe.sections.insert(std::string(name, strnlen(name, IMAGE_SIZEOF_SHORT_NAME)));
        }
        readExports(pImage, pe);
        readImports(pImage, pe);
        UnmapViewOfFile(pImage);
    }
    CloseHandle(hMapping);
    CloseHandle(hFile);
    return pe;
}
