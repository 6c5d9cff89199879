// Every language module keeps the contract, and KRLANGCHK finds what breaks it: each break is
// made in a copy of the English module, and has to be reported.
#include "../resources/ids.h"
#include "support/pe.h"
#include "support/windows.h"

#include <contract.h>
#include <resources.h>

#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <iterator>
#include <sstream>
#include <string.h>
#include <string>
#include <vector>

namespace {

using langcheck::ReadResult;
using Bytes = std::vector<BYTE>;

constexpr WORD LANGUAGE_EN = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
const char MODULE_FILE[] = "XFREN.DLL";

// The modules that were built, told by the build.
std::vector<std::string> modules()
{
    std::istringstream names(LANGUAGE_MODULES);
    return {std::istream_iterator<std::string>(names), {}};
}

using Lines = std::vector<std::string>;

// A text is as the pattern, in which one * can be anything.
bool matches(const std::string& text, const std::string& pattern)
{
    const size_t star = pattern.find('*');
    if (star == std::string::npos)
        return text == pattern;
    const std::string end = pattern.substr(star + 1);
    return text.size() + 1 >= pattern.size() && text.compare(0, star, pattern, 0, star) == 0 &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool holds(const Lines& lines, const std::string& pattern)
{
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return matches(line, pattern); });
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
    // In a folder of its own, because a module keeps its name.
    std::string copyOf(const std::string& module, const std::string& name = MODULE_FILE)
    {
        const std::string folder = m_folder + std::to_string(m_copies++) + "\\";
        CreateDirectoryA(folder.c_str(), nullptr);
        EXPECT_TRUE(CopyFileA(module.c_str(), (folder + name).c_str(), FALSE)) << module;
        return folder + name;
    }

    // Runs KRLANGCHK and returns its exit code; what it says of each file, without the name of the
    // file, goes to reports.
    DWORD check(const std::vector<std::string>& files, std::vector<Lines>* reports)
    {
        std::string command = "KRLANGCHK.EXE";
        for (const std::string& file : files)
            command += " \"" + file + "\"";
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        const std::string output = m_folder + "report.txt";
        HANDLE hOutput = CreateFileA(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                     CREATE_ALWAYS, 0, nullptr);
        const DWORD dwExit = runProgram(command, hOutput);
        CloseHandle(hOutput);
        std::ifstream stream(output);
        reports->assign(1, {});
        for (std::string line; std::getline(stream, line);) {
            reports->back().push_back(line.substr(line.find(": ") + 2));
            if (holds(reports->back(), "can't be checked: *") || holds(reports->back(), "* found"))
                reports->emplace_back();
        }
        reports->pop_back();
        EXPECT_EQ(reports->size(), files.size());
        reports->resize(files.size());
        return dwExit;
    }

    int m_copies = 0;
    std::string m_folder;
};

// Their texts are translated, but for some words.
TEST_F(LanguageModule, AllAreWhole)
{
    std::vector<Lines> reports;
    EXPECT_EQ(check(modules(), &reports), 0u);
    for (const Lines& lines : reports) {
        EXPECT_EQ(lines.back(), "0 found");
        EXPECT_LE(lines.size(), 10u);
    }
    check({copyOf(MODULE_FILE, "XFRIT.DLL"), MODULE_FILE}, &reports);
    EXPECT_TRUE(holds(reports[0], "warning: \"&File name:\" is the same in English"));
    EXPECT_TRUE(
        holds(reports[0], "warning: \"Deletes the selected files\" is the same in English"));
    EXPECT_FALSE(holds(reports[0], "warning: \"*.txt\" is the same in English"));
    EXPECT_EQ(reports[1], Lines{"0 found"});
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

// What is changed: the resource that a finding is about, the string with a number, or the file.
enum class Part { OWNER, STRING, FILE };

// A change of the bytes of a part. It returns false if it didn't find what to change.
struct Change {
    std::function<bool(Bytes&)> run; // none: the resource itself goes
    Part part = Part::OWNER;
    UINT idString = 0;
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

// A control's id precedes the number of its class.
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

template <typename Value> Change setAt(size_t pos, Value value)
{
    return {[=](Bytes& bytes) {
        put(bytes, pos, value);
        return true;
    }};
}

// The first bytes: the style of a template, or what kind of template or menu it is.
Change setStart(DWORD value)
{
    return setAt(0, value);
}

Change both(Change first, Change second)
{
    return {[=](Bytes& bytes) { return first.run(bytes) && second.run(bytes); }};
}

Change swapIds(WORD id1, WORD id2)
{
    return {[=](Bytes& bytes) {
        const size_t pos1 = findControl(bytes, id1);
        const size_t pos2 = findControl(bytes, id2);
        put(bytes, pos1, id2);
        put(bytes, pos2, id1);
        return pos1 && pos2;
    }};
}

constexpr size_t DIALOG_X = 10;
constexpr size_t DIALOG_CX = 14;

// Fields of the header of a 32-bit module, counted from its signature.
constexpr size_t MACHINE = 4;
constexpr size_t CHARACTERISTICS = 22;
constexpr size_t ENTRY_POINT = 40;

Change setHeader(size_t field, WORD value)
{
    return {[=](Bytes& bytes) {
                put(bytes, get<DWORD>(bytes, offsetof(IMAGE_DOS_HEADER, e_lfanew)) + field, value);
                return true;
            },
            Part::FILE};
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

// The word some bytes before a text. A menu item consists of its flags, its id and its text; a
// popup has no id. The size of a font precedes its name.
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
    return {change, Part::STRING, id};
}

struct Break {
    // A line that the report must hold, with one * for anything. A change of a resource belongs to
    // the one whose name begins it: a template, the menu or the version; DLGCOPY for none.
    std::string says;
    Change change;
};

const Break BREAKS[] = {
    // A copy that is rewritten with nothing changed stays whole; otherwise what follows could be
    // faults of the rewriting.
    {"0 found", {[](Bytes&) { return true; }}},
    // the file
    {"the file is a program, not a DLL", setHeader(CHARACTERISTICS, IMAGE_FILE_EXECUTABLE_IMAGE)},
    {"a module holds resources alone; this one has an entry point", setHeader(ENTRY_POINT, 0x1000)},
    {"can't be checked: it is made for another processor than 32-bit x86",
     setHeader(MACHINE, IMAGE_FILE_MACHINE_AMD64)},
    {"can't be checked: it is not a Windows module", {setStart(0).run, Part::FILE}},
    {"can't be checked: the file is cut short", {cutInHalf().run, Part::FILE}},
    {"version: missing", {[](Bytes& bytes) { return bytes.assign(64, 0), true; }}},
    {"version: OriginalFilename is \"XFRDE.DLL\" instead of \"XFREN.DLL\"",
     setText(L"XFREN.DLL", L"XFRDE.DLL")},
    {"version: InternalName is \"XFRDE\" instead of \"XFREN\"", setText(L"XFREN", L"XFRDE")},
    // templates as a whole
    {"DLGVIEW: the template is missing", {}},
    {"DLGCOPY: a DIALOGEX template can't be loaded below version 4", setStart(0xFFFF0001)},
    {"DLGXFER: the template is broken", cutInHalf()},
    {"DLGXFER: needs WS_VISIBLE", setStart(WS_POPUP | WS_CAPTION | DS_SETFONT)},
    {"DLGVIEW: must not have WS_CHILD", setStart(WS_CHILD | DS_SETFONT)},
    {"DLGVIEW: no font", setBefore(L"MS Sans Serif", LAST, 0)},
    {"DLGVIEW: the caption \"View File\" doesn't fit the dialog", setAt<WORD>(DIALOG_CX, 40)},
    {"DLGVIEW: the caption has a line end or a tab", setText(L"View File", L"View\tFile")},
    {"DLGXFER: the dialog lies outside a screen of 800 by 600 pixels", setAt<WORD>(DIALOG_X, 400)},
    // controls
    {"DLGMKDIR: IDC_DIR_NAME (\"&Directory name:\") is missing",
     setWord(IDC_DIR_NAME, ID_AT, 0xFFFF)},
    {"DLGMKDIR: control 99 is unknown", setWord(IDC_DIR_NAME, ID_AT, 99)},
    {"DLGCOPY: IDC_COPY_SOURCE (\"&From:\") is there twice",
     setWord(IDC_COPY_TARGET, ID_AT, IDC_COPY_SOURCE)},
    {"DLGCOPY: IDC_COPY_TARGET (\"&To:\") must come after IDC_COPY_SOURCE (\"&From:\")",
     swapIds(IDC_COPY_SOURCE, IDC_COPY_TARGET)},
    {"DLGCOPY: the label \"&To:\" of IDC_COPY_TARGET (\"&To:\") lies beside IDC_COPY_SOURCE *",
     both(setWord(IDC_COPY_SOURCE, Y_AT, 58), setWord(IDC_COPY_TARGET, Y_AT, 42))},
    {"DLGDANDD: IDC_DANDD_LOCALFILES has the class EDIT instead of LISTBOX",
     setWord(IDC_DANDD_LOCALFILES, CLASS_AT, EDIT)},
    {"DLGDANDD: IDC_DANDD_LOCALFILES must not have LBS_SORT",
     setStyle(IDC_DANDD_LOCALFILES, 0, LBS_SORT)},
    {"DLGDANDD: IDC_DANDD_HOSTFILES needs LBS_MULTICOLUMN",
     setStyle(IDC_DANDD_HOSTFILES, LBS_MULTICOLUMN, 0)},
    {"DLGDANDD: IDC_DANDD_HOSTDIRS must not have a multiple style",
     setStyle(IDC_DANDD_HOSTDIRS, 0, LBS_EXTENDEDSEL)},
    {"DLGDANDD: IDC_DANDD_LOCALDIRS * needs LBS_NOTIFY",
     setStyle(IDC_DANDD_LOCALDIRS, LBS_NOTIFY, 0)},
    {"DLGDANDD: IDC_DANDD_LOCALDRIVES * needs CBS_HASSTRINGS",
     setStyle(IDC_DANDD_LOCALDRIVES, CBS_HASSTRINGS, 0)},
    {"DLGDANDD: IDC_DANDD_INFOLINE needs ES_AUTOHSCROLL",
     setStyle(IDC_DANDD_INFOLINE, ES_AUTOHSCROLL, 0)},
    {"DLGXFER: IDC_STAT_PARENT must not have LBS_HASSTRINGS",
     setStyle(IDC_STAT_PARENT, 0, LBS_HASSTRINGS)},
    {"DLGXFER: IDC_STAT_PARENT must not be visible", setStyle(IDC_STAT_PARENT, 0, WS_VISIBLE)},
    {"DLGXFER: IDC_STAT_STATUS is not visible", setStyle(IDC_STAT_STATUS, WS_VISIBLE, 0)},
    {"DLGCOPY: IDOK (\"OK\") must not be disabled", setStyle(IDOK, 0, WS_DISABLED)},
    {"DLGMKDIR: IDC_DIR_NAME * must not have ES_PASSWORD", setStyle(IDC_DIR_NAME, 0, ES_PASSWORD)},
    {"DLGMKDIR: IDC_DIR_NAME * must not have ES_NUMBER", setStyle(IDC_DIR_NAME, 0, ES_NUMBER)},
    {"DLGMKDIR: IDC_DIR_NAME * must not have ES_UPPERCASE or ES_LOWERCASE",
     setStyle(IDC_DIR_NAME, 0, ES_LOWERCASE)},
    {"DLGDEL: IDC_DEL_NAME * is no tab stop", setStyle(IDC_DEL_NAME, WS_TABSTOP, 0)},
    {"DLGDEL: IDOK * must be the default button", setStyle(IDOK, BS_DEFPUSHBUTTON, 0)},
    {"DLGDEL: IDCANCEL * must not be the default button", setStyle(IDCANCEL, 0, BS_DEFPUSHBUTTON)},
    {"DLGCONFIRM: IDC_CONFIRM_LOCALDELETE * needs BS_AUTOCHECKBOX",
     setStyle(IDC_CONFIRM_LOCALDELETE, BS_AUTOCHECKBOX, BS_CHECKBOX)},
    // radio buttons
    {"DLGCOPY: IDC_COPY_SEND * needs BS_AUTORADIOBUTTON",
     setStyle(IDC_COPY_SEND, BS_AUTORADIOBUTTON, BS_RADIOBUTTON)},
    {"DLGCOPY: IDC_COPY_SEND * must begin a group", setStyle(IDC_COPY_SEND, WS_GROUP, 0)},
    {"DLGCOPY: IDC_COPY_RECEIVE * must not begin a group", setStyle(IDC_COPY_RECEIVE, 0, WS_GROUP)},
    {"DLGCOPY: IDC_COPY_SEND * begins a group of radio buttons that must have one tab stop",
     setStyle(IDC_COPY_RECEIVE, 0, WS_TABSTOP)},
    {"DLGVIEW: IDOK (\"OK\") must begin a group, because it follows radio buttons",
     setStyle(IDOK, WS_GROUP, 0)},
    // mnemonics
    {"DLGVIEW: the mnemonic H is used twice", setText(L"H&ost", L"&Host")},
    {"DLGDANDD: the mnemonic E is used twice", setText(L"&Drive", L"Driv&e")},
    {"DLGVIEW: IDC_VIEW_HELP (\"&Help\") has no mnemonic", setText(L"&Help", L"Help&")},
    {"DLGVIEW: IDC_VIEW_NAME * has no label with a mnemonic before it",
     setText(L"&File", L" File")},
    {"DLGXFER: the mnemonic H of string IDS_STAT_BUTTON2 (\"S&kip\") is used twice",
     setString(IDS_STAT_BUTTON2, L"&Hop")},
    {"DLGVIEW: \"&F&le name:\" has more than one mnemonic", setText(L"&File", L"&F&le")},
    {"menu popup 0: \"D&t&ails\" has more than one mnemonic", setText(L"Det&ails", L"D&t&ails")},
    {"string IDS_STAT_BUTTON1 * has more than one mnemonic", setString(IDS_STAT_BUTTON1, L"&St&p")},
    // letters that the code page lacks, or that are two of UTF-8
    {"DLGVIEW: \"?ocation\" has letters that code page 1252 lacks",
     setText(L"Location", L"\x05D0ocation")},
    {"menu: \"Det&ail?\" has letters that code page 1252 lacks",
     setText(L"Det&ails", L"Det&ail\x05D0")},
    {"string IDS_STAT_LABEL (\"Saved as:\"): \"?\" has letters that code page 1252 lacks",
     setString(IDS_STAT_LABEL, L"\x05D0")},
    {"DLGVIEW: \"Loc\xC3\xA0ion\" is UTF-8 that was compiled as another code page",
     setText(L"Location", L"Loc\xC3\xA0ion")},
    {"menu: \"Det&ai\xC3\xA0\" is UTF-8 that was compiled as another code page",
     setText(L"Det&ails", L"Det&ai\xC3\xA0")},
    {"hint IDM_XFER_STOP *: \"unit\xC3\xA0\" is UTF-8 that was compiled as another code page",
     setString(IDM_XFER_STOP, L"unit\xC3\xA0")},
    // looks
    {"DLGCOPY: \"Cancel\" doesn't fit its control", setWord(IDCANCEL, CX_AT, 20)},
    {"DLGXFER: \"Saved under this name:\" doesn't fit IDC_STAT_LABEL (\"Host file:\")",
     setString(IDS_STAT_LABEL, L"Saved under this name:")},
    {"DLGXFER: \"1193:02:47\" doesn't fit IDC_STAT_ELAPSED", setWord(IDC_STAT_ELAPSED, CX_AT, 20)},
    {"DLGDANDD: \"mmmmmmmmmmmmmmmmmmmmmmmm\" doesn't fit IDC_DANDD_LOCALTYPES *",
     setString(IDS_TYPE1_NAME, std::wstring(24, L'm'))},
    {"DLGXFER: IDC_STAT_BAR is 31 pixels high within its border instead of 20 to 22",
     setWord(IDC_STAT_BAR, CY_AT, 20)},
    {"DLGCOPY: IDOK (\"OK\") and IDCANCEL (\"Cancel\") overlap", setWord(IDCANCEL, Y_AT, 15)},
    {"DLGCOPY: IDCANCEL (\"Cancel\") lies outside the dialog", setWord(IDCANCEL, X_AT, 190)},
    {"DLGDANDD: IDC_DANDD_INFOLINE lies on the message strip",
     setWord(IDC_DANDD_INFOLINE, CY_AT, 44)},
    {"hint IDM_XFER_DETAILS * doesn't fit the message strip",
     setString(IDM_XFER_DETAILS, std::wstring(70, L'm'))},
    // the menu
    {"menu: missing", {}},
    {"menu: a MENUEX menu can't be loaded below version 4", setStart(1)},
    {"menu: broken", cutInHalf()},
    {"menu: IDM_XFER_SELECTALL is missing", setBefore(L"Select &All", LAST, IDM_XFER_COPY)},
    {"menu: IDM_XFER_COPY is there twice", setBefore(L"Select &All", LAST, IDM_XFER_COPY)},
    {"menu: command 253 (\"Select &All\") is unknown", setBefore(L"Select &All", LAST, 253)},
    {"menu: IDM_XFER_COPY * is not in popup 1", setBefore(L"&Transfer", LAST, IDM_XFER_COPY)},
    {"menu: IDM_XFER_STOP (\"&Stop\") must start enabled",
     setBefore(L"&Stop", LAST_BUT_ONE, MF_GRAYED | MF_END)},
    {"menu: IDM_XFER_TRANSFER * must start grey", setBefore(L"&Transfer", LAST_BUT_ONE, 0)},
    {"menu: 4 popups instead of 5", setBefore(L"&Options", LAST, MF_POPUP | MF_END)},
    {"menu: the bar holds IDM_XFER_TRANSFER (\"T\")",
     setAll({0, 0, MF_END, IDM_XFER_TRANSFER, 'T', 0})},
    {"menu: popup 0 holds a popup, which has no hint",
     setAll({0, 0, MF_POPUP | MF_END, 'F', 0, MF_POPUP | MF_END, 'G', 0, MF_END, IDM_XFER_TRANSFER,
             'T', 0})},
    {"menu popup 0: IDM_XFER_TRANSFER has no text",
     setAll({0, 0, MF_POPUP | MF_END, 'F', 0, MF_END, IDM_XFER_TRANSFER, 0})},
    {"menu popup 0: a separator has no command on both sides",
     setAll({0, 0, MF_POPUP | MF_END, 'F', 0, 0, IDM_XFER_TRANSFER, 'T', 0, 0, 0, 0, 0, 0, 0,
             MF_END, IDM_XFER_HELP, 'H', 0})},
    {"menu popup 0: the mnemonic T is used twice", setText(L"Det&ails", L"De&tails")},
    {"menu popup 1: \" Copy\" has no mnemonic", setText(L"&Copy", L" Copy")},
    {"menu popup 1: \"&Co\\ny\" has a line end", setText(L"&Copy", L"&Co\ny")},
    {"menu bar: the mnemonic F is used twice", setText(L"&Edit", L"&Fdit")},
    // strings
    {"string IDS_SELECTION_SUM (\"Files selected: %lu (%lu bytes)\") is missing",
     setString(IDS_SELECTION_SUM, L"")},
    {"hint IDM_XFER_STOP (\"Stops the current operation\") is missing",
     setString(IDM_XFER_STOP, L"")},
    {"string IDS_POPUP5_HINT * is missing", setString(IDS_POPUP5_HINT, L"")},
    {"string IDS_STAT_BUTTON1 * has more than 9 characters",
     setString(IDS_STAT_BUTTON1, L"&123456789")},
    {"string IDS_LOCAL_FAILED * has more than 19 characters",
     setString(IDS_LOCAL_FAILED, L"123456789012345678%s")},
    {"string IDS_DELETE_TEXT * has the placeholders \"%d\" instead of \"%s\"",
     setString(IDS_DELETE_TEXT, L"Delete %d?")},
    {"string IDS_DELETE_TEXT * has the placeholders \"%999s\" instead of \"%s\"",
     setString(IDS_DELETE_TEXT, L"Delete %999s?")},
    {"string IDS_SELECTION_SUM * has the placeholders \"%lu% o\" instead of \"%lu%lu\"",
     setString(IDS_SELECTION_SUM, L"%lu files, 100%% and 100% of them")},
    {"string IDS_THERMO_COUNT * has the placeholders \"%hu\" instead of \"%lu\"",
     setString(IDS_THERMO_COUNT, L"%hu")},
    {"hint IDM_XFER_HELP * has the placeholders \"%s\" instead of \"\"",
     setString(IDM_XFER_HELP, L"Help on %s")},
    {"hint IDM_XFER_HELP * has a line end or a tab", setString(IDM_XFER_HELP, L"Shows\thelp")},
    {"string IDS_TYPE2_MASK * is not a mask of at most 8 and 3 characters",
     setString(IDS_TYPE2_MASK, L"*.html")},
    {"string IDS_TYPE1_MASK * is not a mask of at most 8 and 3 characters",
     setString(IDS_TYPE1_MASK, L"*.c;*.h")},
    {"string IDS_STAT_BUTTON2 * has no mnemonic", setString(IDS_STAT_BUTTON2, L"Skip")},
};

Bytes readFile(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), {});
}

void writeFile(const std::string& file, const Bytes& bytes)
{
    std::ofstream stream(file, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
}

// In the directory of resources a name follows its length. A last letter that is one higher
// keeps the order of the names. (Wine's UpdateResource can't take a resource out.)
Change renameResource(const std::string& name)
{
    std::wstring from(1, static_cast<wchar_t>(name.size()));
    from.append(name.begin(), name.end());
    std::wstring to = from;
    to.back()++;
    return setText(from, to);
}

// The type and the name of the resource that a break changes.
std::pair<const char*, std::string> ownerOf(const Break& broken)
{
    const std::string start = broken.says.substr(0, broken.says.find_first_of(": "));
    if (start == "menu")
        return {RT_MENU, "MENUDANDD"};
    if (start == "version")
        return {MAKEINTRESOURCEA(16), ""}; // RT_VERSION
    return {RT_DIALOG, start.compare(0, 3, "DLG") == 0 ? start : "DLGCOPY"};
}

// Changes the file, or one resource of it as it is in the module.
bool breakFile(const langcheck::Image& module, const std::string& file, const Break& broken)
{
    const auto& [run, part, idString] = broken.change;
    const auto [ownerType, owner] = ownerOf(broken);
    if (!run || part == Part::FILE) {
        Bytes bytes = readFile(file);
        const bool isChanged = (run ? run : renameResource(owner).run)(bytes);
        writeFile(file, bytes);
        return isChanged;
    }
    const char* type = part == Part::STRING ? RT_STRING : ownerType;
    const char* name = part == Part::STRING ? MAKEINTRESOURCEA(idString / 16 + 1)
                       : owner.empty()      ? MAKEINTRESOURCEA(1)
                                            : owner.c_str();
    const langcheck::Bytes found = findResource(module, type, name);
    Bytes bytes(found.p, found.p + found.cb);
    HANDLE hUpdate = run(bytes) ? BeginUpdateResourceA(file.c_str(), FALSE) : nullptr;
    return hUpdate &&
           UpdateResourceA(hUpdate, type, name, LANGUAGE_EN, bytes.data(),
                           static_cast<DWORD>(bytes.size())) &&
           EndUpdateResourceA(hUpdate, FALSE);
}

TEST_F(LanguageModule, EveryBreakIsReported)
{
    langcheck::Image module;
    ASSERT_EQ(openImage(MODULE_FILE, &module), "");
    std::vector<std::string> files;
    std::vector<Lines> reports;
    for (const Break& broken : BREAKS) {
        files.push_back(copyOf(MODULE_FILE));
        EXPECT_TRUE(breakFile(module, files.back(), broken)) << broken.says;
    }
    EXPECT_EQ(check(files, &reports), 2u);
    for (size_t i = 0; i < std::size(BREAKS); i++) {
        EXPECT_TRUE(holds(reports[i], BREAKS[i].says))
            << BREAKS[i].says << testing::PrintToString(reports[i]);
    }
}

// What can't be checked decides the exit code, whatever comes after it.
TEST_F(LanguageModule, OneThatCannotBeCheckedIsReported)
{
    std::vector<Lines> reports;
    EXPECT_EQ(check({"XFRNONE.DLL", MODULE_FILE}, &reports), 2u);
    EXPECT_TRUE(holds(reports[0], "can't be checked: *"));
    EXPECT_EQ(reports[1], Lines{"0 found"});
    EXPECT_EQ(check({copyOf(MODULE_FILE, "EN.DLL")}, &reports), 1u);
    EXPECT_TRUE(holds(reports[0], "the name is not XFR, *"));
    EXPECT_EQ(check({"KRUTILS.DLL"}, &reports), 2u);
    EXPECT_EQ(reports[0], Lines{"can't be checked: it has no resources"});
    EXPECT_EQ(check({}, &reports), 2u);
}

// Whatever the section of resources holds, the check finishes.
TEST_F(LanguageModule, GarbledResourcesAreSurvived)
{
    constexpr int FILES = 100;
    const Bytes whole = readFile(MODULE_FILE);
    const size_t start = findText(whole, L"DLGCHDIR"); // among the names, after the directory
    std::vector<std::string> files;
    std::vector<Lines> reports;
    std::mt19937 random(FILES);
    ASSERT_NE(start, 0u);
    for (int i = 0; i < FILES; i++) {
        Bytes bytes = whole;
        const size_t first = i % 2 ? 0x200 : start; // the whole section, or all after that
        for (int changes = 0; changes < 1 << i % 12; changes++)
            bytes[first + random() % (bytes.size() - first)] = static_cast<BYTE>(random());
        files.push_back(copyOf(MODULE_FILE));
        writeFile(files.back(), bytes);
    }
    EXPECT_LE(check(files, &reports), 2u);
}

// The size in the entry of a resource is set to every smaller one: none may be taken for a whole
// template or menu.
template <typename Read>
void cutEverywhere(langcheck::Image* module, const char* type, const char* name, Read read)
{
    SCOPED_TRACE(name);
    const langcheck::Bytes found = findResource(*module, type, name);
    ASSERT_NE(found.p, nullptr);
    // The entry is an address in memory and the size.
    constexpr DWORD RESOURCES_AT = 0x1000 - 0x200;
    size_t size = 4;
    for (; size + 4 <= module->file.size(); size += 4) {
        if (get<DWORD>(module->file, size) == found.cb &&
            get<DWORD>(module->file, size - 4) - RESOURCES_AT ==
                static_cast<size_t>(found.p - module->file.data()))
            break;
    }
    EXPECT_EQ(read(), ReadResult::OK);
    int wholes = 0;
    for (size_t cb = 0; cb < found.cb; cb++) {
        put(module->file, size, static_cast<DWORD>(cb));
        wholes += read() == ReadResult::OK;
    }
    EXPECT_LE(wholes, 3) << "only the padding at the end may be missing";
}

TEST_F(LanguageModule, NoCutTemplateOrMenuPasses)
{
    langcheck::Dialog dialog;
    std::vector<langcheck::MenuItem> items;
    langcheck::Image module;
    ASSERT_EQ(openImage(MODULE_FILE, &module), "");
    for (const langcheck::TemplateRow& row : langcheck::TEMPLATES) {
        cutEverywhere(&module, RT_DIALOG, row.name,
                      [&] { return readDialog(module, row.name, &dialog); });
    }
    cutEverywhere(&module, RT_MENU, "MENUDANDD",
                  [&] { return readMenu(module, "MENUDANDD", &items, nullptr); });
}

} // namespace
