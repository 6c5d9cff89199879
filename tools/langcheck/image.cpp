#include "image.h"

#include <algorithm>
#include <stdio.h>
#include <string.h>

namespace langcheck {

namespace {

constexpr size_t MAX_FILE = 64 * 1024 * 1024;

template <typename Record> bool readRecord(Bytes bytes, size_t at, Record* record)
{
    memset(record, 0, sizeof *record);
    if (at > bytes.cb || bytes.cb - at < sizeof *record)
        return false;
    memcpy(record, bytes.p + at, sizeof *record);
    return true;
}

Bytes wholeFile(const Image& image)
{
    return {image.file.data(), image.file.size()};
}

IMAGE_NT_HEADERS32 headersOf(const Image& image)
{
    IMAGE_NT_HEADERS32 headers;
    readRecord(wholeFile(image), image.peHeader, &headers);
    return headers;
}

std::vector<IMAGE_SECTION_HEADER> sectionsOf(const Image& image)
{
    const IMAGE_NT_HEADERS32 headers = headersOf(image);
    const size_t first = image.peHeader + offsetof(IMAGE_NT_HEADERS32, OptionalHeader) +
                         headers.FileHeader.SizeOfOptionalHeader;
    std::vector<IMAGE_SECTION_HEADER> sections;
    IMAGE_SECTION_HEADER section;
    for (size_t i = 0; i < headers.FileHeader.NumberOfSections &&
                       readRecord(wholeFile(image), first + i * sizeof section, &section);
         i++)
        sections.push_back(section);
    return sections;
}

bool liesInFile(const Image& image, const IMAGE_SECTION_HEADER& section)
{
    return section.PointerToRawData <= image.file.size() &&
           section.SizeOfRawData <= image.file.size() - section.PointerToRawData;
}

Bytes bytesOf(const Image& image, const IMAGE_SECTION_HEADER& section)
{
    return {image.file.data() + section.PointerToRawData, section.SizeOfRawData};
}

// The bytes from an address of the loaded module to the end of its section.
Bytes bytesFrom(const Image& image, DWORD address)
{
    for (const IMAGE_SECTION_HEADER& section : sectionsOf(image)) {
        const DWORD offset = address - section.VirtualAddress;
        if (address >= section.VirtualAddress && offset < section.SizeOfRawData)
            return {bytesOf(image, section).p + offset, section.SizeOfRawData - offset};
    }
    return {nullptr, 0};
}

std::string systemText(DWORD error)
{
    char text[256] = "";
    DWORD cch = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                               error, 0, text, sizeof text, nullptr);
    while (cch > 0 && strchr("\r\n .", text[cch - 1]))
        text[--cch] = '\0';
    return cch > 0 ? text : "system error " + std::to_string(error);
}

} // namespace

std::string openImage(const std::string& path, Image* image)
{
    HANDLE hFile = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                               0, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return systemText(GetLastError());
    const DWORD cb = GetFileSize(hFile, nullptr);
    DWORD cbRead = 0;
    bool isRead = cb <= MAX_FILE;
    if (isRead) {
        image->file.resize(cb);
        isRead = ReadFile(hFile, image->file.data(), cb, &cbRead, nullptr) && cbRead == cb;
    }
    const DWORD error = GetLastError();
    CloseHandle(hFile);
    if (cb > MAX_FILE)
        return "the file is too large for a language module";
    return isRead ? checkImage(image) : systemText(error);
}

std::string checkImage(Image* image)
{
    IMAGE_DOS_HEADER dos;
    IMAGE_NT_HEADERS32 headers;
    if (!readRecord(wholeFile(*image), 0, &dos) || dos.e_magic != IMAGE_DOS_SIGNATURE)
        return "it is not a Windows module";
    image->peHeader = static_cast<DWORD>(dos.e_lfanew);
    if (!readRecord(wholeFile(*image), image->peHeader, &headers) ||
        headers.Signature != IMAGE_NT_SIGNATURE)
        return "it is not a 32-bit Windows module";
    if (headers.FileHeader.Machine != IMAGE_FILE_MACHINE_I386 ||
        headers.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR32_MAGIC)
        return "it is made for another processor than 32-bit x86";
    const std::vector<IMAGE_SECTION_HEADER> sections = sectionsOf(*image);
    if (sections.size() != headers.FileHeader.NumberOfSections ||
        !std::all_of(sections.begin(), sections.end(),
                     [=](const auto& section) { return liesInFile(*image, section); }))
        return "the file is cut short";
    if (!findResource(*image, nullptr, nullptr).p)
        return "it has no resources";
    return "";
}

bool isLibrary(const Image& image)
{
    return (headersOf(image).FileHeader.Characteristics & IMAGE_FILE_DLL) != 0;
}

namespace {

// A linker leaves sections for code that hold nothing but padding.
bool holdsCode(const Image& image, const IMAGE_SECTION_HEADER& section)
{
    constexpr DWORD CODE = IMAGE_SCN_CNT_CODE | IMAGE_SCN_MEM_EXECUTE;
    const Bytes bytes = bytesOf(image, section);
    const auto isPadding = [](BYTE b) { return b == 0 || b == 0xFF || b == 0x90 || b == 0xCC; };
    return (section.Characteristics & CODE) && !std::all_of(bytes.p, bytes.p + bytes.cb, isPadding);
}

bool hasImports(const Image& image, const IMAGE_DATA_DIRECTORY& directory)
{
    IMAGE_IMPORT_DESCRIPTOR first;
    return directory.Size > 0 &&
           readRecord(bytesFrom(image, directory.VirtualAddress), 0, &first) && first.Name != 0;
}

} // namespace

std::string codeIn(const Image& image)
{
    const IMAGE_OPTIONAL_HEADER32 header = headersOf(image).OptionalHeader;
    if (header.AddressOfEntryPoint != 0)
        return "an entry point";
    for (const IMAGE_SECTION_HEADER& section : sectionsOf(image)) {
        if (holdsCode(image, section)) {
            const char* name = reinterpret_cast<const char*>(section.Name);
            return "code in " + std::string(name, strnlen(name, sizeof section.Name));
        }
    }
    return hasImports(image, header.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT]) ? "imports" : "";
}

namespace {

constexpr DWORD POINTS_ON = 0x80000000; // to a name, or to a directory one level down

// The name of an entry is a number, or a text that follows its length.
bool isNamed(Bytes tree, DWORD entryName, const char* wanted)
{
    if (IS_INTRESOURCE(wanted))
        return entryName == reinterpret_cast<ULONG_PTR>(wanted);
    const size_t at = entryName & ~POINTS_ON;
    const size_t cch = strlen(wanted);
    WORD w;
    if (!(entryName & POINTS_ON) || !readRecord(tree, at, &w) || w != cch)
        return false;
    for (size_t i = 0; i < cch; i++) {
        if (!readRecord(tree, at + (i + 1) * sizeof w, &w) || w > 0x7F ||
            toupper(w) != toupper(wanted[i]))
            return false;
    }
    return true;
}

// Where the entry of that name points to, in the directory at this place; the first entry for a
// null name. 0 if there is none.
DWORD findEntry(Bytes tree, size_t directory, const char* name)
{
    IMAGE_RESOURCE_DIRECTORY header;
    if (!readRecord(tree, directory, &header))
        return 0;
    const size_t count = size_t{header.NumberOfNamedEntries} + header.NumberOfIdEntries;
    DWORD entry[2]; // name, place
    for (size_t i = 0; i < count; i++) {
        if (!readRecord(tree, directory + sizeof header + i * sizeof entry, &entry))
            return 0;
        if (!name || isNamed(tree, entry[0], name))
            return entry[1];
    }
    return 0;
}

} // namespace

Bytes findResource(const Image& image, const char* type, const char* name)
{
    const IMAGE_DATA_DIRECTORY directory =
        headersOf(image).OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE];
    const Bytes tree = bytesFrom(image, directory.VirtualAddress);
    DWORD place = POINTS_ON;
    for (const char* wanted : {type, name, static_cast<const char*>(nullptr)}) {
        if (!(place & POINTS_ON))
            return {nullptr, 0};
        place = findEntry(tree, place & ~POINTS_ON, wanted);
    }
    IMAGE_RESOURCE_DATA_ENTRY data;
    if (place == 0 || (place & POINTS_ON) || !readRecord(tree, place, &data))
        return {nullptr, 0};
    const Bytes bytes = bytesFrom(image, data.OffsetToData);
    return {bytes.p, std::min<size_t>(bytes.cb, data.Size)};
}

} // namespace langcheck
