// The parts of the check. Each reports what it finds and needs no other part.
#ifndef LANGCHECK_CHECK_H
#define LANGCHECK_CHECK_H

#include "contract.h"
#include "resread.h"

struct LangCheck {
    HMODULE hModule;
    const LangCheckReport* report;
    int cFound;
};

void vLangFound(LangCheck* check, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Empty if the module lacks the string.
std::string strLangString(const LangCheck* check, UINT id);

// Reports texts with letters that the code page of this system lacks.
void vLangCheckLost(LangCheck* check, const char* where, const std::vector<std::string>& lost);

// The letter after the single "&" of a text, in upper case; 0 if it has none.
char chLangMnemonic(const std::string& text);

// Notes a mnemonic in taken and reports it if it stands there already.
void vLangTakeMnemonic(LangCheck* check, const char* where, char mnemonic, std::string* taken);

// A static's label or a button's caption; other texts have no mnemonic.
char chLangControlMnemonic(const LangDlgControl& control);

// The bits of a control's style that tell its type apart from others of its class.
constexpr DWORD LANG_BUTTONTYPE = 0xF;
constexpr DWORD LANG_STATICTYPE = 0x1F;

bool fLangIsPushButton(const LangDlgControl& control);
bool fLangIsGroupBox(const LangDlgControl& control);
const LangControlRow* pLangControlRow(const LangTemplateRow& row, WORD id);

// Ids, classes, styles, order and mnemonics of a dialog's controls. barMnemonics are those of
// the menu bar.
void vLangCheckControls(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog,
                        const std::string& barMnemonics);

// What a user sees of a dialog: texts that don't fit, controls on each other or outside.
void vLangCheckLook(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog);

// The menu of the transfer window. Gives the mnemonics of its bar.
std::string strLangCheckMenu(LangCheck* check, const LangDialog& dialog);

void vLangCheckStrings(LangCheck* check);

#endif
