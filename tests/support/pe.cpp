#include "pe.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

struct Image {
    std::vector<char> bytes;
    const IMAGE_NT_HEADERS32* pNt;

    template <typename T> const T* atFile(DWORD dwOffset) const
    {
        return reinterpret_cast<const T*>(bytes.data() + dwOffset);
    }

    template <typename T> const T* at(DWORD dwAddress) const
    {
        auto pSection = IMAGE_FIRST_SECTION(pNt);
        for (int n = 0; n < pNt->FileHeader.NumberOfSections; ++n, ++pSection) {
            if (dwAddress >= pSection->VirtualAddress &&
                dwAddress < pSection->VirtualAddress + pSection->SizeOfRawData) {
                return atFile<T>(dwAddress - pSection->VirtualAddress + pSection->PointerToRawData);
            }
        }
        return nullptr;
    }

    DWORD directory(int n) const
    {
        return pNt->OptionalHeader.DataDirectory[n].VirtualAddress;
    }
};

void readExports(const Image& image, PeFile& pe)
{
    auto pExports = image.at<IMAGE_EXPORT_DIRECTORY>(image.directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    if (pExports == nullptr) {
        return;
    }
    auto pNames = image.at<DWORD>(pExports->AddressOfNames);
    auto pOrdinals = image.at<WORD>(pExports->AddressOfNameOrdinals);
    for (DWORD n = 0; n < pExports->NumberOfNames; ++n) {
        pe.exports[image.at<char>(pNames[n])] = pOrdinals[n] + pExports->Base;
    }
}

void readImports(const Image& image, PeFile& pe)
{
    auto pImport = image.at<IMAGE_IMPORT_DESCRIPTOR>(image.directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
    for (; pImport != nullptr && pImport->Name != 0; ++pImport) {
        std::string module = image.at<char>(pImport->Name);
        std::transform(module.begin(), module.end(), module.begin(), ::toupper);
        auto pThunk = image.at<DWORD>(pImport->OriginalFirstThunk);
        for (; *pThunk != 0; ++pThunk) {
            bool fOrdinal = IMAGE_SNAP_BY_ORDINAL32(*pThunk);
            pe.imports[module].insert(fOrdinal ? "#" + std::to_string(IMAGE_ORDINAL32(*pThunk))
                                               : image.at<char>(*pThunk + sizeof(WORD)));
        }
    }
}

} // namespace

PeFile readPe(const std::string& file)
{
    PeFile pe;
    std::ifstream stream(file, std::ios::binary);
    Image image = {{std::istreambuf_iterator<char>(stream), {}}, nullptr};
    if (image.bytes.size() < sizeof(IMAGE_DOS_HEADER)) {
        return pe;
    }
    image.pNt =
        image.atFile<IMAGE_NT_HEADERS32>(DWORD(image.atFile<IMAGE_DOS_HEADER>(0)->e_lfanew));
    pe.wMachine = image.pNt->FileHeader.Machine;
    pe.wMagic = image.pNt->OptionalHeader.Magic;
    pe.dwEntryPoint = image.pNt->OptionalHeader.AddressOfEntryPoint;
    for (int n = 0; n < image.pNt->FileHeader.NumberOfSections; ++n) {
        auto name = reinterpret_cast<const char*>(IMAGE_FIRST_SECTION(image.pNt)[n].Name);
        pe.sections.insert(std::string(name, strnlen(name, IMAGE_SIZEOF_SHORT_NAME)));
    }
    readExports(image, pe);
    readImports(image, pe);
    return pe;
}
