// What a language module has to hold, as constant tables, and the check of a module against
// them. A module is taken as a stranger's work: nothing in it can make the check read past a
// resource.
#ifndef LANGCHECK_CONTRACT_H
#define LANGCHECK_CONTRACT_H

#include <windows.h>

// Receives the violations, one line of text without a line end each. The text is the
// caller's only during the call.
struct LangCheckReport {
    void (*pfnLine)(void* pData, const char* lpszLine);
    void* pData;
};

// Checks a module that was loaded with LoadLibrary. Gives the number of violations, each of
// which was reported; 0 says that the module is whole.
int nLangCheckModule(HMODULE hModule, const LangCheckReport* report);

// What follows are the tables that the check walks.

enum LangKind {
    LANGKIND_ANY,
    LANGKIND_LABEL,
    LANGKIND_VALUE,
    LANGKIND_PUSH,
    LANGKIND_RADIO,
    LANGKIND_CHECKBOX,
    LANGKIND_EDIT,
    LANGKIND_LOG,
    LANGKIND_FILELIST,
    LANGKIND_DIRLIST,
    LANGKIND_DRIVES,
    LANGKIND_TYPES,
    LANGKIND_TOOLBAR,
    LANGKIND_HOLDER,
    LANGKIND_OLDLIST,
    LANGKIND_OLDCOMBO,
    LANGKIND_OLDDRIVES,
    LANGKINDS
};

// The bits of mask must stand as in value.
struct LangStyleRule {
    DWORD mask;
    DWORD value;
    const char* name;
};

constexpr int LANG_MAXRULES = 6;

struct LangKindRow {
    LangKind kind;
    const char* className; // null for any
    LangStyleRule rules[LANG_MAXRULES];
};

constexpr DWORD LANGCTL_OPTIONAL = 1;   // the template can do without it
constexpr DWORD LANGCTL_HIDDEN = 2;     // nobody must ever see it
constexpr DWORD LANGCTL_MAYHIDE = 4;    // the code or the platform shows and hides it
constexpr DWORD LANGCTL_NOLABEL = 8;    // follows a control that has the label
constexpr DWORD LANGCTL_FIXEDFONT = 16; // the code gives it the fixed pitch font

struct LangControlRow {
    WORD id;
    LangKind kind;
    DWORD flags;
};

constexpr DWORD LANGDLG_DEFAULTOK = 1; // OK is its default button
constexpr DWORD LANGDLG_MENU = 2;      // names the menu, whose bar shares its mnemonics
constexpr DWORD LANGDLG_STRIP = 4;     // leaves the message strip along its bottom free

struct LangTemplateRow {
    const char* name;
    LangStyleRule style;
    DWORD flags;
    const LangControlRow* controls;
    int cControls;
};

// Two controls of one template that may lie on each other: the code never shows both, or one
// stands on the other. LANG_UNNAMED stands for any control without an id of its own.
struct LangOverlapRow {
    const char* templateName;
    WORD id1;
    WORD id2;
};

// A text that the code puts into a control, which has to fit: a string, or the widest sample
// of what is formatted if the string is 0.
struct LangFitRow {
    const char* templateName;
    WORD idControl;
    UINT idString;
    const char* sample;
};

struct LangStringRow {
    UINT id;
    int limit;                // characters of the reading buffer, NUL included
    const char* placeholders; // kinds in their order: s a string, n a number of 32 bits
    DWORD flags;
};

constexpr DWORD LANGSTR_MASK = 1;     // a file mask, of a short name
constexpr DWORD LANGSTR_STRIP = 2;    // shown in the message strip
constexpr DWORD LANGSTR_MNEMONIC = 4; // a button's caption

// A command of the menu or the toolbar. Its hint is the string of the same number.
struct LangCommandRow {
    WORD id;
    bool fStartsGrey; // the window starts busy, with nothing selected in its log
    int nPopup;       // the popup that must hold it, or LANG_ANYPOPUP
};

constexpr WORD LANG_UNNAMED = 0xFFFF;
constexpr int LANG_ANYPOPUP = -1;
constexpr int LANG_POPUPS = 5;
constexpr int LANG_HINTLIMIT = 260;

extern const LangKindRow g_langKinds[LANGKINDS];
extern const LangTemplateRow g_langTemplates[];
extern const int g_cLangTemplates;
extern const LangOverlapRow g_langOverlaps[];
extern const int g_cLangOverlaps;
extern const LangFitRow g_langFits[];
extern const int g_cLangFits;
extern const LangStringRow g_langStrings[];
extern const int g_cLangStrings;
extern const LangCommandRow g_langCommands[];
extern const int g_cLangCommands;

#endif
