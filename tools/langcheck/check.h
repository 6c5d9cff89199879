// The parts of the check. Each reports what it finds and needs no other part.
#ifndef LANGCHECK_CHECK_H
#define LANGCHECK_CHECK_H

#include "contract.h"
#include "resources.h"

namespace langcheck {

struct Check {
    Image module;
    Image english; // empty if there is none
    Report report;
    int count; // of findings
};

// A template that is checked, and the one that it translates.
struct Subject {
    Check* check;
    const TemplateRow* row;
    Dialog dialog;
    Dialog english; // without controls if there is none
};

void found(Check* check, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Reports texts that won't show as they were meant.
void checkBadTexts(Check* check, const std::string& where, const BadTexts& bad);

// Line ends and tabs show as boxes, but for those of a menu's accelerators and of message boxes.
bool hasControlCharacters(const std::string& text, const char* allowed);

// How a finding names what it is about: as ids.h does, with its English text.
std::string controlName(const Subject& subject, WORD id);
std::string controlName(const Subject& subject, const Control& control);
std::string stringName(const Check& check, const StringRow& row);
std::string stringName(const Check& check, const CommandRow& row);
std::string stringName(const Check& check, UINT id);

// The letters after each single "&" of a text, in upper case.
std::string mnemonicsOf(const std::string& text);

// The first of them; 0 if the text has none.
char mnemonicOf(const std::string& text);

// Notes a mnemonic in taken and reports it if it is there already.
void takeMnemonic(Check* check, const char* where, char mnemonic, std::string* taken);

// A static's label or a button's caption; other texts have no mnemonic.
bool mayHaveMnemonic(const Control& control);
char controlMnemonic(const Control& control);

// The bits of a control's style that tell its type apart from others of its class.
constexpr DWORD BUTTON_TYPES = 0xF;
constexpr DWORD STATIC_TYPES = 0x1F;

bool isPushButton(const Control& control);
bool isGroupBox(const Control& control);

// What takes its mnemonic from the label before it.
bool isLabelled(const Control& control);

// The label of such a control; -1 if it has none.
int labelOf(const Dialog& dialog, size_t index);

const ControlRow* findControl(const TemplateRow& row, WORD id);
DWORD flagsOf(const TemplateRow& row, const Control& control);

// Ids, classes, styles, order and mnemonics of a dialog's controls. barMnemonics are those of
// the menu bar.
void checkControls(const Subject& subject, const std::string& barMnemonics);

// What a user sees of a dialog: texts that don't fit, controls on each other or outside.
void checkLook(const Subject& subject);

// In dialog units. A combo box counts as closed.
RECT rectOf(const Control& control);

// The menu of the transfer window. Returns the mnemonics of its bar.
std::string checkMenu(Check* check, const Dialog& dialog);

void checkStrings(Check* check);

// What the module is besides its texts: no code, and a version resource with the module's name.
void checkFile(Check* check, const std::string& name);

// Lists the texts that are still those of the English module.
void warnOfEnglish(Check* check, const std::string& name);

} // namespace langcheck

#endif
