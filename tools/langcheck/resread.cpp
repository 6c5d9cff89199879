#include "resread.h"

namespace {

// What is left of a resource. A read past the end gives 0 and leaves fShort set.
struct Bytes {
    const BYTE* pb;
    size_t cb;
    size_t pos;
    bool fShort;
    std::vector<std::string>* lost; // receives texts that lost letters in the conversion
};

// The size in a resource directory may be a lie: no more is read than lies mapped.
size_t mappedBytes(const void* p, size_t cb)
{
    MEMORY_BASIC_INFORMATION region;
    if (VirtualQuery(p, &region, sizeof region) == 0 || region.State != MEM_COMMIT)
        return 0;
    const size_t offset =
        static_cast<size_t>(static_cast<const BYTE*>(p) - static_cast<BYTE*>(region.BaseAddress));
    const size_t left = region.RegionSize - offset;
    return cb < left ? cb : left;
}

bool openResource(HMODULE hModule, const char* name, const char* type,
                  std::vector<std::string>* lost, Bytes* bytes)
{
    HRSRC resource = FindResourceA(hModule, name, type);
    HGLOBAL loaded = resource ? LoadResource(hModule, resource) : nullptr;
    const void* p = loaded ? LockResource(loaded) : nullptr;
    if (!p)
        return false;
    const size_t cb = mappedBytes(p, SizeofResource(hModule, resource));
    *bytes = {static_cast<const BYTE*>(p), cb, 0, false, lost};
    return true;
}

WORD readWord(Bytes* bytes)
{
    if (bytes->cb - bytes->pos < sizeof(WORD)) {
        bytes->fShort = true;
        return 0;
    }
    const BYTE* p = bytes->pb + bytes->pos;
    bytes->pos += sizeof(WORD);
    return static_cast<WORD>(p[0] | p[1] << 8);
}

int readShort(Bytes* bytes)
{
    return static_cast<SHORT>(readWord(bytes));
}

DWORD readDword(Bytes* bytes)
{
    const DWORD low = readWord(bytes);
    return low | static_cast<DWORD>(readWord(bytes)) << 16;
}

std::string narrow(const std::wstring& wide)
{
    const int cchWide = static_cast<int>(wide.size());
    const int cch =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), cchWide, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(cch), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), cchWide, &text[0], cch, nullptr, nullptr);
    return text;
}

// What the platform can't convert becomes another letter or a question mark.
bool losesLetters(const std::wstring& wide)
{
    const std::string text = narrow(wide);
    std::wstring back(wide.size() + 1, L'\0');
    const int cch = MultiByteToWideChar(CP_ACP, 0, text.c_str(), static_cast<int>(text.size()),
                                        &back[0], static_cast<int>(back.size()));
    return back.compare(0, static_cast<size_t>(cch), wide) != 0;
}

std::string readText(Bytes* bytes)
{
    std::wstring wide;
    for (WORD w = readWord(bytes); w != 0; w = readWord(bytes))
        wide += static_cast<wchar_t>(w);
    if (losesLetters(wide))
        bytes->lost->push_back(narrow(wide));
    return narrow(wide);
}

// A name, or the number 0xFFFF with a number behind it, which is given as "#number".
std::string readName(Bytes* bytes)
{
    const size_t start = bytes->pos;
    if (readWord(bytes) == 0xFFFF)
        return "#" + std::to_string(readWord(bytes));
    bytes->pos = start;
    return readText(bytes);
}

std::string readClass(Bytes* bytes)
{
    static const char* const SYSTEM_CLASSES[] = {"BUTTON",  "EDIT",      "STATIC",
                                                 "LISTBOX", "SCROLLBAR", "COMBOBOX"};
    constexpr int FIRST_ATOM = 0x80;
    std::string name = readName(bytes);
    for (int i = 0; i < 6; i++) {
        if (name == "#" + std::to_string(FIRST_ATOM + i))
            return SYSTEM_CLASSES[i];
    }
    if (!name.empty())
        CharUpperBuffA(&name[0], static_cast<DWORD>(name.size()));
    return name;
}

LangDlgControl readControl(Bytes* bytes)
{
    LangDlgControl control = {};
    bytes->pos = (bytes->pos + 3) & ~static_cast<size_t>(3);
    if (bytes->pos > bytes->cb)
        bytes->pos = bytes->cb;
    control.style = readDword(bytes);
    readDword(bytes); // extended style
    control.x = readShort(bytes);
    control.y = readShort(bytes);
    control.cx = readShort(bytes);
    control.cy = readShort(bytes);
    control.id = readWord(bytes);
    control.className = readClass(bytes);
    control.text = readName(bytes);
    const size_t cbData = readWord(bytes);
    if (cbData > bytes->cb - bytes->pos)
        bytes->fShort = true;
    else
        bytes->pos += cbData;
    return control;
}

} // namespace

LangRead nLangReadDialog(HMODULE hModule, const char* name, LangDialog* dialog)
{
    Bytes bytes;
    *dialog = {};
    if (!openResource(hModule, name, RT_DIALOG, &dialog->lost, &bytes))
        return LANGREAD_MISSING;
    dialog->style = readDword(&bytes);
    if (dialog->style == 0xFFFF0001) // a version and a signature stand there instead
        return LANGREAD_EXTENDED;
    readDword(&bytes); // extended style
    const int cControls = readWord(&bytes);
    readDword(&bytes); // position
    dialog->cx = readShort(&bytes);
    dialog->cy = readShort(&bytes);
    dialog->menuName = readName(&bytes);
    readName(&bytes); // window class
    readText(&bytes); // caption
    if (dialog->style & DS_SETFONT) {
        dialog->nPointSize = readWord(&bytes);
        dialog->face = readText(&bytes);
    }
    for (int i = 0; i < cControls && !bytes.fShort; i++)
        dialog->controls.push_back(readControl(&bytes));
    return bytes.fShort ? LANGREAD_BROKEN : LANGREAD_OK;
}

namespace {

// One level of a menu; the last item of each carries MF_END. The depth is limited because a
// broken resource could nest without end.
void readMenuLevel(Bytes* bytes, int depth, int popup, std::vector<LangMenuItem>* items)
{
    constexpr int MAX_DEPTH = 8;
    if (depth > MAX_DEPTH)
        bytes->fShort = true;
    for (int position = 0; !bytes->fShort; position++) {
        LangMenuItem item = {};
        item.nDepth = depth;
        item.nPopup = depth == 0 ? position : popup;
        item.wFlags = readWord(bytes);
        item.fPopup = (item.wFlags & MF_POPUP) != 0;
        if (!item.fPopup)
            item.id = readWord(bytes);
        item.text = readText(bytes);
        items->push_back(item);
        if (item.fPopup)
            readMenuLevel(bytes, depth + 1, item.nPopup, items);
        if (item.wFlags & MF_END)
            return;
    }
}

} // namespace

LangRead nLangReadMenu(HMODULE hModule, const char* name, std::vector<LangMenuItem>* items,
                       std::vector<std::string>* lost)
{
    Bytes bytes;
    items->clear();
    if (!openResource(hModule, name, RT_MENU, lost, &bytes))
        return LANGREAD_MISSING;
    const WORD wVersion = readWord(&bytes);
    const size_t cbHeader = readWord(&bytes);
    if (wVersion != 0)
        return LANGREAD_EXTENDED;
    if (cbHeader > bytes.cb - bytes.pos)
        return LANGREAD_BROKEN;
    bytes.pos += cbHeader;
    readMenuLevel(&bytes, 0, 0, items);
    return bytes.fShort ? LANGREAD_BROKEN : LANGREAD_OK;
}

bool fLangStringLost(HMODULE hModule, UINT id)
{
    wchar_t text[1024];
    const int cch = LoadStringW(hModule, id, text, sizeof text / sizeof text[0]);
    return losesLetters(std::wstring(text, static_cast<size_t>(cch)));
}
