// Every language module keeps the contract, and KRLANGCHK finds what breaks it: each break is
// made in a copy of the English module, and has to be reported.
#include "../resources/ids.h"
#include "support/pe.h"
#include "support/windows.h"

#include <contract.h>
#include <resread.h>

#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<BYTE>;

constexpr WORD LANGUAGE_EN = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
const char MODULE_FILE[] = "XFREN.DLL";

// The modules that were built, told by the build.
std::vector<std::string> modules()
{
    std::istringstream names(LANGUAGE_MODULES);
    return {std::istream_iterator<std::string>(names), {}};
}

// A folder for files that a test makes; other tests run at the same time.
class LanguageModule : public testing::Test {
protected:
    void SetUp() override
    {
        char temp[MAX_PATH];
        GetTempPathA(sizeof temp, temp);
        m_folder = temp + std::to_string(GetCurrentProcessId()) + "\\";
        CreateDirectoryA(m_folder.c_str(), nullptr);
    }
    void TearDown() override
    {
        std::filesystem::remove_all(m_folder);
    }
    std::string copyOf(const std::string& module, const std::string& name)
    {
        const std::string file = m_folder + name;
        EXPECT_TRUE(CopyFileA(module.c_str(), file.c_str(), FALSE)) << module;
        return file;
    }

    // Runs KRLANGCHK and gives its exit code. The report begins with a line end.
    DWORD check(const std::vector<std::string>& files, std::string* report)
    {
        std::string command = "KRLANGCHK.EXE";
        for (const std::string& file : files)
            command += " \"" + file + "\"";
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        const std::string file = m_folder + "report.txt";
        HANDLE hOutput = CreateFileA(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                     CREATE_ALWAYS, 0, nullptr);
        const DWORD dwExit = runProgram(command, hOutput);
        CloseHandle(hOutput);
        std::ifstream stream(file);
        *report = "\n" + std::string(std::istreambuf_iterator<char>(stream), {});
        return dwExit;
    }

    std::string m_folder;
};

TEST_F(LanguageModule, AllAreWhole)
{
    std::string expected = "\n";
    std::string report;
    for (const std::string& module : modules())
        expected += module + ": 0 found\n";
    EXPECT_EQ(check(modules(), &report), 0u);
    EXPECT_EQ(report, expected);
}

// Two modules that want one address must both load; without a relocation table the second
// couldn't.
TEST_F(LanguageModule, AllHoldResourcesAloneAndLoadTwice)
{
    for (const std::string& module : modules()) {
        SCOPED_TRACE(module);
        const PeFile file = readPe(module.c_str());
        EXPECT_EQ(file.dwEntryPoint, 0u);
        EXPECT_TRUE(file.imports.empty());
        EXPECT_TRUE(file.exports.empty());
        EXPECT_EQ(file.sections, (std::set<std::string>{".rsrc", ".reloc"}));
        HMODULE hFirst = LoadLibraryA(module.c_str());
        HMODULE hSecond = LoadLibraryA(copyOf(module, module).c_str());
        EXPECT_TRUE(hFirst && hSecond && hFirst != hSecond);
        FreeLibrary(hFirst);
        FreeLibrary(hSecond);
    }
}

// A change of a resource's bytes. It gives false if it didn't find what to change.
struct Change {
    std::function<bool(Bytes&)> run; // none: the resource itself goes
    UINT idString = 0;               // 0 for a template or the menu
};

constexpr WORD EDIT = 0x81; // a class of controls

// Places in the record of a control, counted from its id.
constexpr int STYLE_AT = -16;
constexpr int X_AT = -8;
constexpr int Y_AT = -6;
constexpr int CX_AT = -4;
constexpr int CY_AT = -2;
constexpr int ID_AT = 0;
constexpr int CLASS_AT = 4;

template <typename Value> Value get(const Bytes& bytes, size_t pos)
{
    Value value;
    memcpy(&value, &bytes[pos], sizeof value);
    return value;
}

template <typename Value> void put(Bytes& bytes, size_t pos, Value value)
{
    memcpy(&bytes[pos], &value, sizeof value);
}

size_t findText(const Bytes& bytes, const std::wstring& text)
{
    const BYTE* first = reinterpret_cast<const BYTE*>(text.data());
    const auto found =
        std::search(bytes.begin(), bytes.end(), first, first + text.size() * sizeof(wchar_t));
    return found == bytes.end() ? 0 : static_cast<size_t>(found - bytes.begin());
}

// A control's id stands before the number of its class.
size_t findControl(const Bytes& bytes, WORD id)
{
    for (size_t pos = 18; pos + 6 <= bytes.size(); pos += sizeof(WORD))
        if (get<WORD>(bytes, pos) == id && get<WORD>(bytes, pos + 2) == 0xFFFF &&
            get<WORD>(bytes, pos + 4) >= 0x80 && get<WORD>(bytes, pos + 4) <= 0x85)
            return pos;
    return 0;
}

// Puts a value some bytes from a place that is found; 0 is none.
template <typename Find, typename Value> Change putAt(Find find, int offset, Value value)
{
    return {[=](Bytes& bytes) {
        const size_t pos = find(bytes);
        if (pos)
            put(bytes, pos + static_cast<size_t>(offset), value);
        return pos != 0;
    }};
}

Change setWord(WORD id, int offset, WORD value)
{
    return putAt([=](const Bytes& bytes) { return findControl(bytes, id); }, offset, value);
}

Change setStyle(WORD id, DWORD clear, DWORD set)
{
    return {[=](Bytes& bytes) {
        const size_t pos = findControl(bytes, id) + static_cast<size_t>(STYLE_AT);
        if (pos < bytes.size())
            put(bytes, pos, (get<DWORD>(bytes, pos) & ~clear) | set);
        return pos < bytes.size();
    }};
}

// The first bytes: the style of a template, or what kind of template or menu it is.
Change setStart(DWORD value)
{
    return {[=](Bytes& bytes) {
        put(bytes, 0, value);
        return true;
    }};
}

// Both texts must be equally long.
Change setText(std::wstring from, std::wstring to)
{
    return {[=](Bytes& bytes) {
        const size_t pos = findText(bytes, from);
        if (pos && from.size() == to.size())
            memcpy(&bytes[pos], to.c_str(), to.size() * sizeof(wchar_t));
        return pos && from.size() == to.size();
    }};
}

// The word that stands some bytes before a text. A menu item is its flags, its id and its text;
// a popup has no id. The size of a font stands before its name.
constexpr int LAST = -2;
constexpr int LAST_BUT_ONE = -4;

Change setBefore(std::wstring text, int before, WORD value)
{
    return putAt([=](const Bytes& bytes) { return findText(bytes, text); }, before, value);
}

Change cutInHalf()
{
    return {[](Bytes& bytes) {
        bytes.resize(bytes.size() / 2);
        return true;
    }};
}

Change setAll(std::vector<WORD> words)
{
    return {[=](Bytes& bytes) {
        const BYTE* first = reinterpret_cast<const BYTE*>(words.data());
        bytes.assign(first, first + words.size() * sizeof(WORD));
        return true;
    }};
}

// In a block of 16 strings, each with its length before it.
Change setString(UINT id, std::wstring text)
{
    auto change = [=](Bytes& bytes) {
        size_t pos = 0;
        for (UINT i = 0; i < id % 16; i++)
            pos += sizeof(WORD) + get<WORD>(bytes, pos) * sizeof(wchar_t);
        const std::wstring made = static_cast<wchar_t>(text.size()) + text;
        const BYTE* first = reinterpret_cast<const BYTE*>(made.data());
        const size_t cbOld = sizeof(WORD) + get<WORD>(bytes, pos) * sizeof(wchar_t);
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(pos);
        bytes.insert(bytes.erase(at, at + static_cast<std::ptrdiff_t>(cbOld)), first,
                     first + made.size() * sizeof(wchar_t));
        return true;
    };
    return {change, id};
}

struct Break {
    // A line that the report must hold. A change that isn't one of a string belongs to what it
    // begins with: the menu, or the name of a template; any will do for none.
    std::string says;
    Change change;
};

const Break BREAKS[] = {
    // A copy that is rewritten with nothing changed stays whole; otherwise what follows could be
    // faults of the rewriting.
    {"0 found", {[](Bytes&) { return true; }}},
    // templates as a whole
    {"DLGVIEW: the template is missing", {}},
    {"DLGCOPY: a DIALOGEX template can't be loaded below version 4", setStart(0xFFFF0001)},
    {"DLGXFER: the template is broken", cutInHalf()},
    {"DLGXFER: needs WS_VISIBLE", setStart(WS_POPUP | WS_CAPTION | DS_SETFONT)},
    {"DLGVIEW: must not have WS_CHILD", setStart(WS_CHILD | DS_SETFONT)},
    {"DLGVIEW: no font", setBefore(L"MS Sans Serif", LAST, 0)},
    // controls
    {"DLGMKDIR: control 103 is missing", setWord(IDC_DIR_NAME, ID_AT, 0xFFFF)},
    {"DLGMKDIR: control 99 is unknown", setWord(IDC_DIR_NAME, ID_AT, 99)},
    {"DLGCOPY: control 104 stands twice", setWord(IDC_COPY_TARGET, ID_AT, IDC_COPY_SOURCE)},
    {"DLGDANDD: control 223 has the class EDIT instead of LISTBOX",
     setWord(IDC_DANDD_LOCALFILES, CLASS_AT, EDIT)},
    {"DLGDANDD: control 223 must not have LBS_SORT", setStyle(IDC_DANDD_LOCALFILES, 0, LBS_SORT)},
    {"DLGDANDD: control 209 needs LBS_MULTICOLUMN",
     setStyle(IDC_DANDD_HOSTFILES, LBS_MULTICOLUMN, 0)},
    {"DLGDANDD: control 208 must not have a multiple style",
     setStyle(IDC_DANDD_HOSTDIRS, 0, LBS_EXTENDEDSEL)},
    {"DLGDANDD: control 224 needs LBS_NOTIFY", setStyle(IDC_DANDD_LOCALDIRS, LBS_NOTIFY, 0)},
    {"DLGDANDD: control 211 needs CBS_HASSTRINGS",
     setStyle(IDC_DANDD_LOCALDRIVES, CBS_HASSTRINGS, 0)},
    {"DLGDANDD: control 201 needs ES_AUTOHSCROLL", setStyle(IDC_DANDD_INFOLINE, ES_AUTOHSCROLL, 0)},
    {"DLGXFER: control 201 must not have LBS_HASSTRINGS",
     setStyle(IDC_STAT_PARENT, 0, LBS_HASSTRINGS)},
    {"DLGXFER: control 201 must not be visible", setStyle(IDC_STAT_PARENT, 0, WS_VISIBLE)},
    {"DLGXFER: control 105 is not visible", setStyle(IDC_STAT_STATUS, WS_VISIBLE, 0)},
    {"DLGDEL: control 104 is no tab stop", setStyle(IDC_DEL_NAME, WS_TABSTOP, 0)},
    {"DLGDEL: button 1 must be the default button", setStyle(IDOK, BS_DEFPUSHBUTTON, 0)},
    {"DLGDEL: button 2 must not be the default button", setStyle(IDCANCEL, 0, BS_DEFPUSHBUTTON)},
    {"DLGCONFIRM: control 107 needs BS_AUTOCHECKBOX",
     setStyle(IDC_CONFIRM_LOCALDELETE, BS_AUTOCHECKBOX, BS_CHECKBOX)},
    // radio buttons
    {"DLGCOPY: control 102 needs BS_AUTORADIOBUTTON",
     setStyle(IDC_COPY_SEND, BS_AUTORADIOBUTTON, BS_RADIOBUTTON)},
    {"DLGCOPY: radio button 102 must begin a group", setStyle(IDC_COPY_SEND, WS_GROUP, 0)},
    {"DLGCOPY: radio button 103 must not begin a group", setStyle(IDC_COPY_RECEIVE, 0, WS_GROUP)},
    {"DLGCOPY: the group of radio button 102 has 2 tab stops",
     setStyle(IDC_COPY_RECEIVE, 0, WS_TABSTOP)},
    {"DLGVIEW: control 1 behind the radio buttons must begin a group", setStyle(IDOK, WS_GROUP, 0)},
    // mnemonics
    {"DLGVIEW: mnemonic H stands twice", setText(L"H&ost", L"&Host")},
    {"DLGDANDD: mnemonic E stands twice", setText(L"&Drive", L"Driv&e")},
    {"DLGVIEW: button 104 has no mnemonic", setText(L"&Help", L"Help&")},
    {"DLGVIEW: control 103 has no label with a mnemonic before it", setText(L"&File", L" File")},
    {"DLGXFER: mnemonic H of string 1505 stands twice", setString(IDS_STAT_BUTTON2, L"&Hop")},
    // letters that the code page lacks
    {"DLGVIEW: \"?ocation\" has letters that code page 1252 lacks",
     setText(L"Location", L"\x05D0ocation")},
    {"menu: \"Det&ail?\" has letters that code page 1252 lacks",
     setText(L"Det&ails", L"Det&ail\x05D0")},
    {"string 1500: \"?\" has letters that code page 1252 lacks",
     setString(IDS_STAT_LABEL, L"\x05D0")},
    // looks
    {"DLGCOPY: \"Cancel\" doesn't fit its control", setWord(IDCANCEL, CX_AT, 20)},
    {"DLGXFER: \"Saved under this name:\" doesn't fit control 115",
     setString(IDS_STAT_LABEL, L"Saved under this name:")},
    {"DLGXFER: \"1193:02:47\" doesn't fit control 110", setWord(IDC_STAT_ELAPSED, CX_AT, 20)},
    {"DLGDANDD: \"mmmmmmmmmmmmmmmmmmmmmmmm\" doesn't fit control 213",
     setString(IDS_TYPE1_NAME, std::wstring(24, L'm'))},
    {"DLGCOPY: controls 1 and 2 overlap", setWord(IDCANCEL, Y_AT, 15)},
    {"DLGCOPY: control 2 lies outside the dialog", setWord(IDCANCEL, X_AT, 190)},
    {"DLGDANDD: control 201 lies on the message strip", setWord(IDC_DANDD_INFOLINE, CY_AT, 44)},
    {"string 247 doesn't fit the message strip",
     setString(IDM_XFER_DETAILS, std::wstring(70, L'm'))},
    // the menu
    {"menu: missing", {}},
    {"menu: a MENUEX menu can't be loaded below version 4", setStart(1)},
    {"menu: broken", cutInHalf()},
    {"menu: command 251 is missing", setBefore(L"Select &All", LAST, IDM_XFER_COPY)},
    {"menu: command 249 stands twice", setBefore(L"Select &All", LAST, IDM_XFER_COPY)},
    {"menu: command 253 is unknown", setBefore(L"Select &All", LAST, 253)},
    {"menu: command 249 is not in popup 1", setBefore(L"&Transfer", LAST, IDM_XFER_COPY)},
    {"menu: command 256 must start enabled", setBefore(L"&Stop", LAST_BUT_ONE, MF_GRAYED | MF_END)},
    {"menu: command 206 must start grey", setBefore(L"&Transfer", LAST_BUT_ONE, 0)},
    {"menu: 4 popups instead of 5", setBefore(L"&Options", LAST, MF_POPUP | MF_END)},
    {"menu: the bar holds command 206", setAll({0, 0, MF_END, IDM_XFER_TRANSFER, 'T', 0})},
    {"menu: popup 0 holds a popup, which has no hint",
     setAll({0, 0, MF_POPUP | MF_END, 'F', 0, MF_POPUP | MF_END, 'G', 0, MF_END, IDM_XFER_TRANSFER,
             'T', 0})},
    {"menu popup 0: mnemonic T stands twice", setText(L"Det&ails", L"De&tails")},
    {"menu popup 1: \" Copy\" has no mnemonic", setText(L"&Copy", L" Copy")},
    {"menu bar: mnemonic F stands twice", setText(L"&Edit", L"&Fdit")},
    // strings
    {"string 1556 is missing", setString(IDS_SELECTION_SUM, L"")},
    {"string 256 is missing", setString(IDM_XFER_STOP, L"")},
    {"string 3104 is missing", setString(IDS_POPUP5_HINT, L"")},
    {"string 1504 has more than 9 characters", setString(IDS_STAT_BUTTON1, L"&123456789")},
    {"string 1507 has more than 19 characters",
     setString(IDS_LOCAL_FAILED, L"123456789012345678%s")},
    {"string 428 has the placeholders \"n\" instead of \"s\"",
     setString(IDS_DELETE_TEXT, L"Delete %d?")},
    {"string 1556 has the placeholders \"n\" instead of \"nn\"",
     setString(IDS_SELECTION_SUM, L"%lu files, 100%% of them")},
    {"string 1562 has the placeholders \"?\" instead of \"n\"",
     setString(IDS_THERMO_COUNT, L"%hu")},
    {"string 205 has the placeholders \"s\" instead of \"\"",
     setString(IDM_XFER_HELP, L"Help on %s")},
    {"string 1531 is not a mask of at most 8 and 3 characters",
     setString(IDS_TYPE2_MASK, L"*.html")},
    {"string 1529 is not a mask of at most 8 and 3 characters",
     setString(IDS_TYPE1_MASK, L"*.c;*.h")},
    {"string 1505 has no mnemonic", setString(IDS_STAT_BUTTON2, L"Skip")},
};

// The directory of resources has the name behind its length. A last letter that is one higher
// keeps the order of the names. (Wine's UpdateResource can't take a resource out.)
bool renameInFile(const std::string& file, const std::string& name)
{
    std::wstring entry(1, static_cast<wchar_t>(name.size()));
    entry.append(name.begin(), name.end());
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::string_view wanted(reinterpret_cast<const char*>(entry.data()),
                                  entry.size() * sizeof(wchar_t));
    const size_t pos = text.find(wanted);
    if (pos == std::string::npos)
        return false;
    stream.clear();
    stream.seekp(static_cast<std::streamoff>(pos + wanted.size() - sizeof(wchar_t)));
    stream.put(static_cast<char>(name.back() + 1));
    return stream.good();
}

Bytes resource(HMODULE hModule, const char* type, const char* name)
{
    HRSRC found = FindResourceA(hModule, name, type);
    const BYTE* p = static_cast<const BYTE*>(LockResource(LoadResource(hModule, found)));
    return Bytes(p, p + SizeofResource(hModule, found));
}

// Changes one resource of the file, or takes it out. It still is as in the module.
bool breakFile(HMODULE hModule, const std::string& file, const Break& broken)
{
    const auto& [run, idString] = broken.change;
    const bool fMenu = broken.says.compare(0, 4, "menu") == 0;
    const bool fDialog = broken.says.compare(0, 3, "DLG") == 0;
    const std::string owner = fMenu     ? "MENUDANDD"
                              : fDialog ? broken.says.substr(0, broken.says.find(':'))
                                        : "DLGCOPY";
    if (!run)
        return renameInFile(file, owner);
    const char* type = idString ? RT_STRING : fMenu ? RT_MENU : RT_DIALOG;
    const char* name = idString ? MAKEINTRESOURCEA(idString / 16 + 1) : owner.c_str();
    Bytes bytes = resource(hModule, type, name);
    HANDLE hUpdate = run(bytes) ? BeginUpdateResourceA(file.c_str(), FALSE) : nullptr;
    return hUpdate &&
           UpdateResourceA(hUpdate, type, name, LANGUAGE_EN, bytes.data(),
                           static_cast<DWORD>(bytes.size())) &&
           EndUpdateResourceA(hUpdate, FALSE);
}

TEST_F(LanguageModule, EveryBreakIsReported)
{
    HMODULE hModule = LoadLibraryA(MODULE_FILE);
    std::vector<std::string> files;
    std::string report;
    for (const Break& broken : BREAKS) {
        files.push_back(copyOf(MODULE_FILE, "XFR" + std::to_string(files.size()) + ".DLL"));
        EXPECT_TRUE(breakFile(hModule, files.back(), broken)) << broken.says;
    }
    FreeLibrary(hModule);
    files.push_back(copyOf(MODULE_FILE, "EN.DLL"));
    EXPECT_EQ(check(files, &report), 1u);
    for (size_t i = 0; i < std::size(BREAKS); i++) {
        const std::string start = "\nXFR" + std::to_string(i) + ".DLL: ";
        EXPECT_NE(report.find(start + BREAKS[i].says + "\n"), std::string::npos) << BREAKS[i].says;
    }
    EXPECT_NE(report.find("\nEN.DLL: the name is not XFR, "), std::string::npos);
}

// What can't be loaded decides the exit code, whatever comes after it.
TEST_F(LanguageModule, OneThatCannotBeLoadedIsReported)
{
    std::string report;
    EXPECT_EQ(check({"XFRNONE.DLL", MODULE_FILE}, &report), 2u);
    EXPECT_EQ(report, "\nXFRNONE.DLL: can't be loaded\nXFREN.DLL: 0 found\n");
    EXPECT_EQ(check({}, &report), 2u);
}

// A resource handle is the address of the resource's entry in the module, whose size is set
// to every smaller one: none may be taken for a whole template or menu.
template <typename Read>
void cutEverywhere(HMODULE hModule, const char* type, const char* name, Read read)
{
    SCOPED_TRACE(name);
    HRSRC resource = FindResourceA(hModule, name, type);
    ASSERT_NE(resource, nullptr);
    auto* entry = reinterpret_cast<IMAGE_RESOURCE_DATA_ENTRY*>(resource);
    DWORD protection;
    ASSERT_TRUE(VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection));
    const DWORD whole = entry->Size;
    EXPECT_EQ(read(), LANGREAD_OK);
    int cWhole = 0;
    for (entry->Size = 0; entry->Size < whole; entry->Size++)
        cWhole += read() == LANGREAD_OK;
    EXPECT_LE(cWhole, 3) << "only the padding at the end may be missing";
    entry->Size = whole;
}

TEST_F(LanguageModule, NoCutTemplateOrMenuPasses)
{
    LangDialog dialog;
    std::vector<LangMenuItem> items;
    std::vector<std::string> lost;
    HMODULE hModule = LoadLibraryA(MODULE_FILE);
    for (int i = 0; i < g_cLangTemplates; i++) {
        const char* name = g_langTemplates[i].name;
        cutEverywhere(hModule, RT_DIALOG, name,
                      [&] { return nLangReadDialog(hModule, name, &dialog); });
    }
    cutEverywhere(hModule, RT_MENU, "MENUDANDD",
                  [&] { return nLangReadMenu(hModule, "MENUDANDD", &items, &lost); });
    FreeLibrary(hModule);
}

} // namespace
