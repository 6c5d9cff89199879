#include "resources.h"

namespace langcheck {

namespace {

// A resource and how far it was read. A read past the end returns 0 and leaves isShort set.
struct Reader {
    const BYTE* p;
    size_t cb;
    size_t pos;
    bool isShort;
    BadTexts* bad; // can be null
};

bool openReader(const Image& image, const char* type, const char* name, BadTexts* bad,
                Reader* reader)
{
    const Bytes bytes = findResource(image, type, name);
    *reader = {bytes.p, bytes.cb, 0, false, bad};
    return bytes.p != nullptr;
}

WORD readWord(Reader* reader)
{
    if (reader->cb - reader->pos < sizeof(WORD)) {
        reader->isShort = true;
        return 0;
    }
    const BYTE* p = reader->p + reader->pos;
    reader->pos += sizeof(WORD);
    return static_cast<WORD>(p[0] | p[1] << 8);
}

int readShort(Reader* reader)
{
    return static_cast<SHORT>(readWord(reader));
}

DWORD readDword(Reader* reader)
{
    const DWORD low = readWord(reader);
    return low | static_cast<DWORD>(readWord(reader)) << 16;
}

void skip(Reader* reader, size_t cb)
{
    if (cb > reader->cb - reader->pos)
        reader->isShort = true;
    else
        reader->pos += cb;
}

// Resources are aligned to double words, counted from their beginning.
void alignReader(Reader* reader)
{
    reader->pos = (reader->pos + 3) & ~size_t{3};
    if (reader->pos > reader->cb)
        reader->pos = reader->cb;
}

std::string narrow(const std::wstring& wide, UINT codePage)
{
    const int cchWide = static_cast<int>(wide.size());
    const int cch =
        WideCharToMultiByte(codePage, 0, wide.c_str(), cchWide, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(cch), '\0');
    WideCharToMultiByte(codePage, 0, wide.c_str(), cchWide, &text[0], cch, nullptr, nullptr);
    return text;
}

std::wstring widen(const std::string& text, UINT codePage)
{
    std::wstring wide(text.size(), L'\0');
    const int cch = MultiByteToWideChar(codePage, 0, text.c_str(), static_cast<int>(text.size()),
                                        &wide[0], static_cast<int>(wide.size()));
    wide.resize(static_cast<size_t>(cch));
    return wide;
}

// What a code page lacks becomes another letter or a question mark.
bool fitsCodePage(const std::wstring& wide, UINT codePage)
{
    return widen(narrow(wide, codePage), codePage) == wide;
}

bool fitsAnyCodePage(const std::wstring& wide)
{
    for (UINT codePage = 1250; codePage <= 1258; codePage++) {
        if (fitsCodePage(wide, codePage))
            return true;
    }
    return false;
}

// Strictly well formed, with at least one letter of several bytes.
bool isUtf8(const std::string& bytes)
{
    bool hasLong = false;
    for (size_t i = 0; i < bytes.size();) {
        const BYTE lead = static_cast<BYTE>(bytes[i++]);
        const int following = lead < 0x80   ? 0
                              : lead < 0xC2 ? -1
                              : lead < 0xE0 ? 1
                              : lead < 0xF0 ? 2
                                            : -1;
        if (following < 0 || bytes.size() - i < static_cast<size_t>(following))
            return false;
        for (int k = 0; k < following; k++) {
            if ((static_cast<BYTE>(bytes[i++]) & 0xC0) != 0x80)
                return false;
        }
        hasLong = hasLong || following > 0;
    }
    return hasLong;
}

// A text that is meant as it is hardly ever happens to be valid UTF-8. Where it does, it decodes to
// letters that no code page has.
bool isMisreadUtf8(const std::wstring& wide)
{
    static const UINT COMPILERS_CODE_PAGES[] = {1252, 1250, 1251, 1253, 1254,
                                                1257, 437,  850,  28591};
    for (const UINT codePage : COMPILERS_CODE_PAGES) {
        const std::string bytes = narrow(wide, codePage);
        if (isUtf8(bytes) && fitsCodePage(wide, codePage) && fitsAnyCodePage(widen(bytes, CP_UTF8)))
            return true;
    }
    return false;
}

std::string convert(const std::wstring& wide, BadTexts* bad)
{
    const std::string text = narrow(wide, CP_ACP);
    if (bad && isMisreadUtf8(wide))
        bad->misread.push_back(text);
    else if (bad && !fitsCodePage(wide, CP_ACP))
        bad->lost.push_back(text);
    return text;
}

std::string readText(Reader* reader)
{
    std::wstring wide;
    for (WORD w = readWord(reader); w != 0; w = readWord(reader))
        wide += static_cast<wchar_t>(w);
    return convert(wide, reader->bad);
}

// A name, or the number 0xFFFF followed by a number, which becomes "#number".
std::string readName(Reader* reader)
{
    const size_t start = reader->pos;
    if (readWord(reader) == 0xFFFF)
        return "#" + std::to_string(readWord(reader));
    reader->pos = start;
    return readText(reader);
}

std::string readClass(Reader* reader)
{
    static const char* const SYSTEM_CLASSES[] = {"BUTTON",  "EDIT",      "STATIC",
                                                 "LISTBOX", "SCROLLBAR", "COMBOBOX"};
    constexpr int FIRST_ATOM = 0x80;
    std::string name = readName(reader);
    for (int i = 0; i < 6; i++) {
        if (name == "#" + std::to_string(FIRST_ATOM + i))
            return SYSTEM_CLASSES[i];
    }
    if (!name.empty())
        CharUpperBuffA(&name[0], static_cast<DWORD>(name.size()));
    return name;
}

Control readControl(Reader* reader)
{
    Control control = {};
    alignReader(reader);
    control.style = readDword(reader);
    readDword(reader); // extended style
    control.x = readShort(reader);
    control.y = readShort(reader);
    control.cx = readShort(reader);
    control.cy = readShort(reader);
    control.id = readWord(reader);
    control.className = readClass(reader);
    control.text = readName(reader);
    skip(reader, readWord(reader)); // creation data
    return control;
}

} // namespace

ReadResult readDialog(const Image& image, const char* name, Dialog* dialog)
{
    Reader reader;
    *dialog = {};
    if (!openReader(image, RT_DIALOG, name, &dialog->bad, &reader))
        return ReadResult::MISSING;
    dialog->style = readDword(&reader);
    if (dialog->style == 0xFFFF0001) // a version and a signature stand there instead
        return ReadResult::EXTENDED;
    readDword(&reader); // extended style
    const int count = readWord(&reader);
    dialog->x = readShort(&reader);
    dialog->y = readShort(&reader);
    dialog->cx = readShort(&reader);
    dialog->cy = readShort(&reader);
    dialog->menuName = readName(&reader);
    readName(&reader); // window class
    dialog->caption = readText(&reader);
    if (dialog->style & DS_SETFONT) {
        dialog->pointSize = readWord(&reader);
        dialog->face = readText(&reader);
    }
    for (int i = 0; i < count && !reader.isShort; i++)
        dialog->controls.push_back(readControl(&reader));
    return reader.isShort ? ReadResult::BROKEN : ReadResult::OK;
}

namespace {

// One level of a menu; the last item of each carries MF_END. The depth is limited because a
// broken resource could nest without end.
void readMenuLevel(Reader* reader, int depth, int popup, std::vector<MenuItem>* items)
{
    constexpr int MAX_DEPTH = 8;
    if (depth > MAX_DEPTH)
        reader->isShort = true;
    for (int position = 0; !reader->isShort; position++) {
        MenuItem item = {};
        item.depth = depth;
        item.popup = depth == 0 ? position : popup;
        item.flags = readWord(reader);
        item.isPopup = (item.flags & MF_POPUP) != 0;
        if (!item.isPopup)
            item.id = readWord(reader);
        item.text = readText(reader);
        items->push_back(item);
        if (item.isPopup)
            readMenuLevel(reader, depth + 1, item.popup, items);
        if (item.flags & MF_END)
            return;
    }
}

} // namespace

ReadResult readMenu(const Image& image, const char* name, std::vector<MenuItem>* items,
                    BadTexts* bad)
{
    Reader reader;
    items->clear();
    if (!openReader(image, RT_MENU, name, bad, &reader))
        return ReadResult::MISSING;
    const WORD version = readWord(&reader);
    const size_t cbHeader = readWord(&reader);
    if (version != 0)
        return ReadResult::EXTENDED;
    skip(&reader, cbHeader);
    readMenuLevel(&reader, 0, 0, items);
    return reader.isShort ? ReadResult::BROKEN : ReadResult::OK;
}

// A block has sixteen strings, each of which follows its length.
std::string readString(const Image& image, UINT id, BadTexts* bad)
{
    Reader reader;
    const char* block = MAKEINTRESOURCEA(id / 16 + 1);
    if (!openReader(image, RT_STRING, block, bad, &reader))
        return "";
    for (UINT i = 0; i < id % 16; i++)
        skip(&reader, readWord(&reader) * sizeof(WORD));
    std::wstring wide(readWord(&reader), L'\0');
    for (wchar_t& letter : wide)
        letter = static_cast<wchar_t>(readWord(&reader));
    return reader.isShort ? "" : convert(wide, bad);
}

namespace {

constexpr int TEXT_DEPTH = 3; // root, kind of information, language, text

// A block of the version resource: its length, that of its value, a type, its name, its value and
// the blocks that it holds.
void readVersionBlock(Reader* reader, int depth, std::map<std::string, std::string>* texts)
{
    const size_t start = reader->pos;
    const size_t cb = readWord(reader);
    const size_t cbValue = readWord(reader);
    const bool isText = readWord(reader) == 1;
    const std::string name = readText(reader);
    const size_t end = start + cb;
    alignReader(reader);
    if (cb == 0 || end > reader->cb)
        reader->isShort = true;
    else if (depth == TEXT_DEPTH && isText)
        (*texts)[name] = cbValue > 0 ? readText(reader) : "";
    else if (depth < TEXT_DEPTH) {
        skip(reader, isText ? cbValue * sizeof(WORD) : cbValue);
        alignReader(reader);
        while (!reader->isShort && reader->pos < end) {
            readVersionBlock(reader, depth + 1, texts);
            alignReader(reader);
        }
    }
    if (!reader->isShort && end >= reader->pos)
        reader->pos = end;
}

} // namespace

std::map<std::string, std::string> readVersion(const Image& image)
{
    Reader reader;
    std::map<std::string, std::string> texts;
    if (openReader(image, MAKEINTRESOURCEA(16), MAKEINTRESOURCEA(1), nullptr,
                   &reader)) // RT_VERSION
        readVersionBlock(&reader, 0, &texts);
    return texts;
}

} // namespace langcheck
