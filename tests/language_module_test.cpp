// Every language module keeps the contract, and KRLANGCHK finds what breaks it: each break is
// made in a copy of the English module, and has to be reported.
#include "../resources/ids.h"
#include "support/pe.h"

#include <contract.h>
#include <resread.h>

#include <gtest/gtest.h>
#include <algorithm>
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
        for (const std::string& file : m_files)
            DeleteFileA(file.c_str());
        RemoveDirectoryA(m_folder.c_str());
    }
    std::string newFile(const std::string& name)
    {
        m_files.push_back(m_folder + name);
        return m_files.back();
    }
    std::string copyOf(const std::string& module, const std::string& name)
    {
        const std::string file = newFile(name);
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
        const std::string file = newFile("report.txt");
        STARTUPINFOA start = {};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = CreateFileA(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                       CREATE_ALWAYS, 0, nullptr);
        PROCESS_INFORMATION process = {};
        DWORD dwExit = MAXDWORD;
        EXPECT_TRUE(CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr,
                                   nullptr, &start, &process));
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &dwExit);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        CloseHandle(start.hStdOutput);
        std::ifstream stream(file);
        *report = "\n" + std::string(std::istreambuf_iterator<char>(stream), {});
        return dwExit;
    }

    std::string m_folder;
    std::vector<std::string> m_files;
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

// Changes of a resource's bytes. Each gives false if it didn't find what to change.
using Change = std::function<bool(Bytes&)>;

constexpr WORD BUTTON = 0x80;
constexpr WORD EDIT = 0x81;
constexpr WORD STATIC = 0x82;
constexpr WORD LISTBOX = 0x83;
constexpr WORD COMBOBOX = 0x85;

// Places in the record of a control, counted from its id.
constexpr int STYLE_AT = -16;
constexpr int X_AT = -8;
constexpr int Y_AT = -6;
constexpr int CX_AT = -4;
constexpr int CY_AT = -2;
constexpr int ID_AT = 0;
constexpr int CLASS_AT = 4;

template <typename Value> void put(Bytes& bytes, size_t pos, Value value)
{
    memcpy(&bytes[pos], &value, sizeof value);
}

size_t findBytes(const Bytes& bytes, const void* what, size_t cb)
{
    const BYTE* first = static_cast<const BYTE*>(what);
    const auto found = std::search(bytes.begin(), bytes.end(), first, first + cb);
    return found == bytes.end() ? 0 : static_cast<size_t>(found - bytes.begin());
}

size_t findControl(const Bytes& bytes, WORD id, WORD wClass)
{
    const WORD pattern[] = {id, 0xFFFF, wClass};
    return findBytes(bytes, pattern, sizeof pattern);
}

Change setWord(WORD id, WORD wClass, int offset, WORD value)
{
    return [=](Bytes& bytes) {
        const size_t pos = findControl(bytes, id, wClass);
        if (pos)
            put(bytes, pos + static_cast<size_t>(offset), value);
        return pos != 0;
    };
}

Change setStyle(WORD id, WORD wClass, DWORD clear, DWORD set)
{
    return [=](Bytes& bytes) {
        const size_t pos = findControl(bytes, id, wClass) + static_cast<size_t>(STYLE_AT);
        if (pos >= bytes.size())
            return false;
        DWORD style;
        memcpy(&style, &bytes[pos], sizeof style);
        put(bytes, pos, (style & ~clear) | set);
        return true;
    };
}

Change setDword(size_t pos, DWORD value)
{
    return [=](Bytes& bytes) {
        put(bytes, pos, value);
        return true;
    };
}

// Both texts must be equally long.
Change setText(std::wstring from, std::wstring to)
{
    return [=](Bytes& bytes) {
        const size_t cb = from.size() * sizeof(wchar_t);
        const size_t pos = findBytes(bytes, from.c_str(), cb);
        if (!pos || from.size() != to.size())
            return false;
        memcpy(&bytes[pos], to.c_str(), cb);
        return true;
    };
}

Change cutInHalf()
{
    return [](Bytes& bytes) {
        bytes.resize(bytes.size() / 2);
        return true;
    };
}

// The word that stands some bytes before a text. A menu item is its flags, its id and its text;
// a popup has no id. The size of a font stands before its name.
constexpr size_t LAST = sizeof(WORD);
constexpr size_t LAST_BUT_ONE = 2 * sizeof(WORD);

Change setBefore(std::wstring text, size_t before, WORD value)
{
    return [=](Bytes& bytes) {
        const size_t pos = findBytes(bytes, text.c_str(), text.size() * sizeof(wchar_t));
        if (pos)
            put(bytes, pos - before, value);
        return pos != 0;
    };
}

Change setAll(std::vector<WORD> words)
{
    return [=](Bytes& bytes) {
        const BYTE* first = reinterpret_cast<const BYTE*>(words.data());
        bytes.assign(first, first + words.size() * sizeof(WORD));
        return true;
    };
}

// A block of 16 strings, each with its length before it.
Change setString(UINT id, std::wstring text)
{
    return [=](Bytes& bytes) {
        Bytes made;
        size_t pos = 0;
        for (UINT i = 0; i < 16; i++) {
            WORD cch;
            memcpy(&cch, &bytes[pos], sizeof cch);
            const size_t cb = sizeof cch + cch * sizeof(wchar_t);
            if (i == id % 16) {
                const size_t start = made.size();
                made.resize(start + sizeof cch + text.size() * sizeof(wchar_t));
                put(made, start, static_cast<WORD>(text.size()));
                memcpy(&made[start + sizeof cch], text.c_str(), text.size() * sizeof(wchar_t));
            } else {
                made.insert(made.end(), &bytes[pos], &bytes[pos] + cb);
            }
            pos += cb;
        }
        bytes = made;
        return true;
    };
}

struct Break {
    const char* says; // a line that the report must hold
    const char* name; // of a template, or "MENUDANDD"; null for a string
    Change change;    // none: the resource itself goes
    UINT idString;
};

const Break BREAKS[] = {
    // A copy that is rewritten with nothing changed stays whole; otherwise what follows could be
    // faults of the rewriting.
    {"0 found", "DLGCOPY", [](Bytes&) { return true; }, 0},
    // templates as a whole
    {"DLGVIEW: the template is missing", "DLGVIEW", nullptr, 0},
    {"DLGCOPY: a DIALOGEX template can't be loaded below version 4", "DLGCOPY",
     setDword(0, 0xFFFF0001), 0},
    {"DLGXFER: the template is broken", "DLGXFER", cutInHalf(), 0},
    {"DLGXFER: needs WS_VISIBLE", "DLGXFER", setDword(0, WS_POPUP | WS_CAPTION | DS_SETFONT), 0},
    {"DLGVIEW: must not have WS_CHILD", "DLGVIEW", setDword(0, WS_CHILD | DS_SETFONT), 0},
    {"DLGVIEW: no font", "DLGVIEW", setBefore(L"MS Sans Serif", LAST, 0), 0},
    // controls
    {"DLGMKDIR: control 103 is missing", "DLGMKDIR", setWord(IDC_DIR_NAME, EDIT, ID_AT, 0xFFFF), 0},
    {"DLGMKDIR: control 99 is unknown", "DLGMKDIR", setWord(IDC_DIR_NAME, EDIT, ID_AT, 99), 0},
    {"DLGCOPY: control 104 stands twice", "DLGCOPY",
     setWord(IDC_COPY_TARGET, EDIT, ID_AT, IDC_COPY_SOURCE), 0},
    {"DLGDANDD: control 223 has the class EDIT instead of LISTBOX", "DLGDANDD",
     setWord(IDC_DANDD_LOCALFILES, LISTBOX, CLASS_AT, EDIT), 0},
    {"DLGDANDD: control 223 must not have LBS_SORT", "DLGDANDD",
     setStyle(IDC_DANDD_LOCALFILES, LISTBOX, 0, LBS_SORT), 0},
    {"DLGDANDD: control 209 needs LBS_MULTICOLUMN", "DLGDANDD",
     setStyle(IDC_DANDD_HOSTFILES, LISTBOX, LBS_MULTICOLUMN, 0), 0},
    {"DLGDANDD: control 208 must not have a multiple style", "DLGDANDD",
     setStyle(IDC_DANDD_HOSTDIRS, LISTBOX, 0, LBS_EXTENDEDSEL), 0},
    {"DLGDANDD: control 224 needs LBS_NOTIFY", "DLGDANDD",
     setStyle(IDC_DANDD_LOCALDIRS, LISTBOX, LBS_NOTIFY, 0), 0},
    {"DLGDANDD: control 211 needs CBS_HASSTRINGS", "DLGDANDD",
     setStyle(IDC_DANDD_LOCALDRIVES, COMBOBOX, CBS_HASSTRINGS, 0), 0},
    {"DLGDANDD: control 201 needs ES_AUTOHSCROLL", "DLGDANDD",
     setStyle(IDC_DANDD_INFOLINE, EDIT, ES_AUTOHSCROLL, 0), 0},
    {"DLGXFER: control 201 must not have LBS_HASSTRINGS", "DLGXFER",
     setStyle(IDC_STAT_PARENT, LISTBOX, 0, LBS_HASSTRINGS), 0},
    {"DLGXFER: control 201 must not be visible", "DLGXFER",
     setStyle(IDC_STAT_PARENT, LISTBOX, 0, WS_VISIBLE), 0},
    {"DLGXFER: control 105 is not visible", "DLGXFER",
     setStyle(IDC_STAT_STATUS, STATIC, WS_VISIBLE, 0), 0},
    {"DLGDEL: control 104 is no tab stop", "DLGDEL", setStyle(IDC_DEL_NAME, EDIT, WS_TABSTOP, 0),
     0},
    {"DLGDEL: button 1 must be the default button", "DLGDEL",
     setStyle(IDOK, BUTTON, BS_DEFPUSHBUTTON, 0), 0},
    {"DLGDEL: button 2 must not be the default button", "DLGDEL",
     setStyle(IDCANCEL, BUTTON, 0, BS_DEFPUSHBUTTON), 0},
    {"DLGCONFIRM: control 107 needs BS_AUTOCHECKBOX", "DLGCONFIRM",
     setStyle(IDC_CONFIRM_LOCALDELETE, BUTTON, BS_AUTOCHECKBOX, BS_CHECKBOX), 0},
    // radio buttons
    {"DLGCOPY: control 102 needs BS_AUTORADIOBUTTON", "DLGCOPY",
     setStyle(IDC_COPY_SEND, BUTTON, BS_AUTORADIOBUTTON, BS_RADIOBUTTON), 0},
    {"DLGCOPY: radio button 102 must begin a group", "DLGCOPY",
     setStyle(IDC_COPY_SEND, BUTTON, WS_GROUP, 0), 0},
    {"DLGCOPY: radio button 103 must not begin a group", "DLGCOPY",
     setStyle(IDC_COPY_RECEIVE, BUTTON, 0, WS_GROUP), 0},
    {"DLGCOPY: the group of radio button 102 has 2 tab stops", "DLGCOPY",
     setStyle(IDC_COPY_RECEIVE, BUTTON, 0, WS_TABSTOP), 0},
    {"DLGVIEW: control 1 behind the radio buttons must begin a group", "DLGVIEW",
     setStyle(IDOK, BUTTON, WS_GROUP, 0), 0},
    // mnemonics
    {"DLGVIEW: mnemonic H stands twice", "DLGVIEW", setText(L"H&ost", L"&Host"), 0},
    {"DLGDANDD: mnemonic E stands twice", "DLGDANDD", setText(L"&Drive", L"Driv&e"), 0},
    {"DLGVIEW: button 104 has no mnemonic", "DLGVIEW", setText(L"&Help", L"Help&"), 0},
    {"DLGVIEW: control 103 has no label with a mnemonic before it", "DLGVIEW",
     setText(L"&File", L" File"), 0},
    {"DLGXFER: mnemonic H of string 1505 stands twice", nullptr,
     setString(IDS_STAT_BUTTON2, L"&Hop"), IDS_STAT_BUTTON2},
    // letters that the code page lacks
    {"DLGVIEW: \"?ocation\" has letters that code page 1252 lacks", "DLGVIEW",
     setText(L"Location", L"\x05D0ocation"), 0},
    {"menu: \"Det&ail?\" has letters that code page 1252 lacks", "MENUDANDD",
     setText(L"Det&ails", L"Det&ail\x05D0"), 0},
    {"string 1500: \"?\" has letters that code page 1252 lacks", nullptr,
     setString(IDS_STAT_LABEL, L"\x05D0"), IDS_STAT_LABEL},
    // looks
    {"DLGCOPY: \"Cancel\" doesn't fit its control", "DLGCOPY", setWord(IDCANCEL, BUTTON, CX_AT, 20),
     0},
    {"DLGXFER: \"Saved under this name:\" doesn't fit control 115", nullptr,
     setString(IDS_STAT_LABEL, L"Saved under this name:"), IDS_STAT_LABEL},
    {"DLGXFER: \"1193:02:47\" doesn't fit control 110", "DLGXFER",
     setWord(IDC_STAT_ELAPSED, STATIC, CX_AT, 20), 0},
    {"DLGDANDD: \"mmmmmmmmmmmmmmmmmmmmmmmm\" doesn't fit control 213", nullptr,
     setString(IDS_TYPE1_NAME, std::wstring(24, L'm')), IDS_TYPE1_NAME},
    {"DLGCOPY: controls 1 and 2 overlap", "DLGCOPY", setWord(IDCANCEL, BUTTON, Y_AT, 15), 0},
    {"DLGCOPY: control 2 lies outside the dialog", "DLGCOPY", setWord(IDCANCEL, BUTTON, X_AT, 190),
     0},
    {"DLGDANDD: control 201 lies on the message strip", "DLGDANDD",
     setWord(IDC_DANDD_INFOLINE, EDIT, CY_AT, 44), 0},
    {"string 247 doesn't fit the message strip", nullptr,
     setString(IDM_XFER_DETAILS, std::wstring(70, L'm')), IDM_XFER_DETAILS},
    // the menu
    {"menu: missing", "MENUDANDD", nullptr, 0},
    {"menu: a MENUEX menu can't be loaded below version 4", "MENUDANDD", setDword(0, 1), 0},
    {"menu: broken", "MENUDANDD", cutInHalf(), 0},
    {"menu: command 251 is missing", "MENUDANDD", setBefore(L"Select &All", LAST, IDM_XFER_COPY),
     0},
    {"menu: command 249 stands twice", "MENUDANDD", setBefore(L"Select &All", LAST, IDM_XFER_COPY),
     0},
    {"menu: command 253 is unknown", "MENUDANDD", setBefore(L"Select &All", LAST, 253), 0},
    {"menu: command 249 is not in popup 1", "MENUDANDD",
     setBefore(L"&Transfer", LAST, IDM_XFER_COPY), 0},
    {"menu: command 256 must start enabled", "MENUDANDD",
     setBefore(L"&Stop", LAST_BUT_ONE, MF_GRAYED | MF_END), 0},
    {"menu: command 206 must start grey", "MENUDANDD", setBefore(L"&Transfer", LAST_BUT_ONE, 0), 0},
    {"menu: 4 popups instead of 5", "MENUDANDD", setBefore(L"&Options", LAST, MF_POPUP | MF_END),
     0},
    {"menu: the bar holds command 206", "MENUDANDD",
     setAll({0, 0, MF_END, IDM_XFER_TRANSFER, 'T', 0}), 0},
    {"menu: popup 0 holds a popup, which has no hint", "MENUDANDD",
     setAll({0, 0, MF_POPUP | MF_END, 'F', 0, MF_POPUP | MF_END, 'G', 0, MF_END, IDM_XFER_TRANSFER,
             'T', 0}),
     0},
    {"menu popup 0: mnemonic T stands twice", "MENUDANDD", setText(L"Det&ails", L"De&tails"), 0},
    {"menu popup 1: \" Copy\" has no mnemonic", "MENUDANDD", setText(L"&Copy", L" Copy"), 0},
    {"menu bar: mnemonic F stands twice", "MENUDANDD", setText(L"&Edit", L"&Fdit"), 0},
    // strings
    {"string 1556 is missing", nullptr, setString(IDS_SELECTION_SUM, L""), IDS_SELECTION_SUM},
    {"string 256 is missing", nullptr, setString(IDM_XFER_STOP, L""), IDM_XFER_STOP},
    {"string 3104 is missing", nullptr, setString(IDS_POPUP5_HINT, L""), IDS_POPUP5_HINT},
    {"string 1504 has more than 9 characters", nullptr, setString(IDS_STAT_BUTTON1, L"&123456789"),
     IDS_STAT_BUTTON1},
    {"string 1507 has more than 19 characters", nullptr,
     setString(IDS_LOCAL_FAILED, L"123456789012345678%s"), IDS_LOCAL_FAILED},
    {"string 428 has the placeholders \"n\" instead of \"s\"", nullptr,
     setString(IDS_DELETE_TEXT, L"Delete %d?"), IDS_DELETE_TEXT},
    {"string 1556 has the placeholders \"n\" instead of \"nn\"", nullptr,
     setString(IDS_SELECTION_SUM, L"%lu files, 100%% of them"), IDS_SELECTION_SUM},
    {"string 1562 has the placeholders \"?\" instead of \"n\"", nullptr,
     setString(IDS_THERMO_COUNT, L"%hu"), IDS_THERMO_COUNT},
    {"string 205 has the placeholders \"s\" instead of \"\"", nullptr,
     setString(IDM_XFER_HELP, L"Help on %s"), IDM_XFER_HELP},
    {"string 1531 is not a mask of at most 8 and 3 characters", nullptr,
     setString(IDS_TYPE2_MASK, L"*.html"), IDS_TYPE2_MASK},
    {"string 1529 is not a mask of at most 8 and 3 characters", nullptr,
     setString(IDS_TYPE1_MASK, L"*.c;*.h"), IDS_TYPE1_MASK},
    {"string 1505 has no mnemonic", nullptr, setString(IDS_STAT_BUTTON2, L"Skip"),
     IDS_STAT_BUTTON2},
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
    if (!broken.change)
        return renameInFile(file, broken.name);
    const bool fMenu = broken.name && broken.name == std::string("MENUDANDD");
    const char* type = broken.idString ? RT_STRING : fMenu ? RT_MENU : RT_DIALOG;
    const char* name = broken.idString ? MAKEINTRESOURCEA(broken.idString / 16 + 1) : broken.name;
    Bytes bytes = resource(hModule, type, name);
    if (!broken.change(bytes))
        return false;
    HANDLE hUpdate = BeginUpdateResourceA(file.c_str(), FALSE);
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
