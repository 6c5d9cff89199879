// What a language module has to hold, as constant tables, and the check of a module against them.
#ifndef LANGCHECK_CONTRACT_H
#define LANGCHECK_CONTRACT_H

#include <windows.h>

namespace langcheck {

// Receives the findings, one line of text without a line end each. The text is the receiver's
// only during the call.
struct Report {
    void (*line)(void* data, const char* text);
    void* data;
};

enum class Verdict { WHOLE, FAULTY, UNREADABLE }; // from the best to the worst

// Checks a file against the tables below, and its texts against those of another module, that in
// English, whose path may be null. Reports what it finds, how much that is, and texts that are
// still English, which don't count.
Verdict checkModule(const char* path, const char* englishPath, const Report& report);

// What follows the last separator of a path.
const char* fileNameOf(const char* path);

// What follows are the tables that the check walks.

template <typename Row> struct Table {
    const Row* first;
    int count;
    const Row* begin() const
    {
        return first;
    }
    const Row* end() const
    {
        return first + count;
    }
};

enum Kind {
    KIND_ANY,
    KIND_LABEL,
    KIND_VALUE,
    KIND_PUSH,
    KIND_RADIO,
    KIND_CHECKBOX,
    KIND_EDIT,
    KIND_LOG,
    KIND_FILELIST,
    KIND_DIRLIST,
    KIND_DRIVES,
    KIND_TYPES,
    KIND_TOOLBAR,
    KIND_HOLDER,
    KIND_OLDLIST,
    KIND_OLDCOMBO,
    KIND_OLDDRIVES,
    KINDS
};

// The bits in mask must be as in value.
struct StyleRule {
    DWORD mask;
    DWORD value;
    const char* name;
};

constexpr int MAX_RULES = 6;

struct KindRow {
    Kind kind;
    const char* className; // null for any
    StyleRule rules[MAX_RULES];
};

constexpr DWORD CONTROL_OPTIONAL = 1;   // the template can do without it
constexpr DWORD CONTROL_HIDDEN = 2;     // nobody must ever see it
constexpr DWORD CONTROL_MAYHIDE = 4;    // the code or the platform shows and hides it
constexpr DWORD CONTROL_NOLABEL = 8;    // follows a control that has the label
constexpr DWORD CONTROL_FIXEDFONT = 16; // the code gives it the fixed pitch font
constexpr DWORD CONTROL_BAR = 32;       // the code paints a line of text into it

struct ControlRow {
    WORD id;
    const char* name;
    Kind kind;
    DWORD flags;
};

constexpr DWORD TEMPLATE_DEFAULTOK = 1; // OK is its default button
constexpr DWORD TEMPLATE_MENU = 2;      // names the menu, whose bar shares its mnemonics
constexpr DWORD TEMPLATE_STRIP = 4;     // leaves the message strip along its bottom free

struct TemplateRow {
    const char* name;
    StyleRule style;
    DWORD flags;
    Table<ControlRow> controls;
};

// Two controls of one template that may overlap: the code never shows both, or one is on top of
// the other. UNNAMED is any control without an id of its own.
struct OverlapRow {
    const char* templateName;
    WORD id1;
    WORD id2;
};

// A text that the code puts into a control, which has to fit: a string, or the widest sample
// of what is formatted if the string is 0.
struct FitRow {
    const char* templateName;
    WORD idControl;
    UINT idString;
    const char* sample;
};

struct StringRow {
    UINT id;
    const char* name;
    int limit;                // characters of the reading buffer, NUL included
    const char* placeholders; // in their order: %s a text, %lu a number of 32 bits
    DWORD flags;
};

constexpr DWORD STRING_MASK = 1;     // a file mask, of a short name
constexpr DWORD STRING_STRIP = 2;    // shown in the message strip
constexpr DWORD STRING_MNEMONIC = 4; // a button's caption
constexpr DWORD STRING_LINES = 8;    // shown in a message box, so that it may have line ends

// A command of the menu or the toolbar. Its hint is the string of the same number.
struct CommandRow {
    WORD id;
    const char* name;
    bool startsGrey; // the window starts busy, with nothing selected in its log
    int popup;       // the popup that must hold it, or ANY_POPUP
};

constexpr WORD UNNAMED = 0xFFFF;
constexpr int ANY_POPUP = -1;
constexpr int POPUP_COUNT = 5;
constexpr int HINT_LIMIT = 260;

extern const KindRow KIND_ROWS[KINDS];
extern const Table<TemplateRow> TEMPLATES;
extern const Table<OverlapRow> OVERLAPS;
extern const Table<FitRow> FITS;
extern const Table<StringRow> STRINGS;
extern const Table<CommandRow> COMMANDS;

} // namespace langcheck

#endif
