#include "check.h"

namespace langcheck {

namespace {

DWORD buttonType(const Control& control)
{
    return control.style & BUTTON_TYPES;
}

bool isButton(const Control& control)
{
    return control.className == "BUTTON";
}

bool isRadio(const Control& control)
{
    return isButton(control) &&
           (buttonType(control) == BS_AUTORADIOBUTTON || buttonType(control) == BS_RADIOBUTTON);
}

} // namespace

bool isLabelled(const Control& control)
{
    return control.className == "EDIT" || control.className == "LISTBOX" ||
           control.className == "COMBOBOX";
}

bool isGroupBox(const Control& control)
{
    return isButton(control) && buttonType(control) == BS_GROUPBOX;
}

bool isPushButton(const Control& control)
{
    return isButton(control) && buttonType(control) <= BS_DEFPUSHBUTTON;
}

const ControlRow* findControl(const TemplateRow& row, WORD id)
{
    for (const ControlRow& control : row.controls) {
        if (control.id == id)
            return &control;
    }
    return nullptr;
}

DWORD flagsOf(const TemplateRow& row, const Control& control)
{
    const ControlRow* found = findControl(row, control.id);
    return found ? found->flags : 0;
}

bool mayHaveMnemonic(const Control& control)
{
    if (isButton(control))
        return true;
    const DWORD type = control.style & STATIC_TYPES;
    return control.className == "STATIC" && !(control.style & SS_NOPREFIX) &&
           (type <= SS_RIGHT || type == SS_LEFTNOWORDWRAP);
}

char controlMnemonic(const Control& control)
{
    return mayHaveMnemonic(control) ? mnemonicOf(control.text) : '\0';
}

// Texts that the user or the code fills in have no mnemonic, and a label belongs to the control
// after them.
int labelOf(const Dialog& dialog, size_t index)
{
    while (index > 0) {
        const Control& before = dialog.controls[--index];
        if (before.className != "STATIC")
            return -1;
        if (controlMnemonic(before))
            return static_cast<int>(index);
    }
    return -1;
}

namespace {

void checkPresence(const Subject& subject)
{
    const char* name = subject.row->name;
    for (const ControlRow& row : subject.row->controls) {
        int count = 0;
        for (const Control& control : subject.dialog.controls)
            count += control.id == row.id;
        if (count == 0 && !(row.flags & CONTROL_OPTIONAL))
            found(subject.check, "%s: %s is missing", name, controlName(subject, row.id).c_str());
        if (count > 1)
            found(subject.check, "%s: %s is there twice", name,
                  controlName(subject, row.id).c_str());
    }
    for (const Control& control : subject.dialog.controls) {
        if (control.id != UNNAMED && !findControl(*subject.row, control.id))
            found(subject.check, "%s: control %u is unknown", name, control.id);
    }
}

// The place of a control among those with ids; -1 if it isn't there.
int placeOf(const Dialog& dialog, WORD id)
{
    for (size_t i = 0; i < dialog.controls.size(); i++) {
        if (dialog.controls[i].id == id)
            return static_cast<int>(i);
    }
    return -1;
}

// The order is that of the Tab key, and decides which control a label belongs to.
void checkOrder(const Subject& subject)
{
    int last = -1;
    WORD idLast = UNNAMED;
    for (const Control& control : subject.english.controls) {
        const int place = control.id == UNNAMED ? -1 : placeOf(subject.dialog, control.id);
        if (place < 0)
            continue;
        if (place < last)
            found(subject.check, "%s: %s must come after %s", subject.row->name,
                  controlName(subject, control.id).c_str(), controlName(subject, idLast).c_str());
        last = place;
        idLast = control.id;
    }
}

void checkState(const Subject& subject, const Control& control)
{
    const DWORD flags = flagsOf(*subject.row, control);
    const bool isVisible = (control.style & WS_VISIBLE) != 0;
    const std::string name = controlName(subject, control);
    if (isVisible && (flags & CONTROL_HIDDEN))
        found(subject.check, "%s: %s must not be visible", subject.row->name, name.c_str());
    if (!isVisible && !(flags & (CONTROL_HIDDEN | CONTROL_MAYHIDE)))
        found(subject.check, "%s: %s is not visible", subject.row->name, name.c_str());
    if (control.style & WS_DISABLED)
        found(subject.check, "%s: %s must not be disabled", subject.row->name, name.c_str());
}

void checkKind(const Subject& subject, const Control& control)
{
    const ControlRow* row = findControl(*subject.row, control.id);
    if (!row)
        return;
    const KindRow& kind = KIND_ROWS[row->kind];
    const std::string name = controlName(subject, control);
    if (kind.className && control.className != kind.className) {
        found(subject.check, "%s: %s has the class %s instead of %s", subject.row->name,
              name.c_str(), control.className.c_str(), kind.className);
        return;
    }
    for (const StyleRule& rule : kind.rules) {
        if ((control.style & rule.mask) != rule.value)
            found(subject.check, "%s: %s %s %s", subject.row->name, name.c_str(),
                  rule.value ? "needs" : "must not have", rule.name);
    }
}

void checkTabStop(const Subject& subject, const Control& control)
{
    const bool isInput =
        isLabelled(control) || (isButton(control) && !isGroupBox(control) && !isRadio(control));
    if (isInput && !(flagsOf(*subject.row, control) & CONTROL_HIDDEN) &&
        !(control.style & WS_TABSTOP))
        found(subject.check, "%s: %s is no tab stop", subject.row->name,
              controlName(subject, control).c_str());
}

// Radio buttons that follow each other are one group: it begins with the first one, ends
// before the next control, and has one tab stop. Returns the index after the group.
size_t checkRadioGroup(const Subject& subject, size_t first)
{
    const std::vector<Control>& controls = subject.dialog.controls;
    const auto report = [&](size_t index, const char* what) {
        found(subject.check, "%s: %s %s", subject.row->name,
              controlName(subject, controls[index]).c_str(), what);
    };
    int tabStops = 0;
    size_t end = first;
    for (; end < controls.size() && isRadio(controls[end]); end++) {
        tabStops += (controls[end].style & WS_TABSTOP) != 0;
        const bool beginsGroup = (controls[end].style & WS_GROUP) != 0;
        if (beginsGroup != (end == first))
            report(end, beginsGroup ? "must not begin a group" : "must begin a group");
    }
    if (tabStops != 1)
        report(first, "begins a group of radio buttons that must have one tab stop");
    if (end < controls.size() && !(controls[end].style & WS_GROUP))
        report(end, "must begin a group, because it follows radio buttons");
    return end;
}

void checkRadioGroups(const Subject& subject)
{
    const std::vector<Control>& controls = subject.dialog.controls;
    for (size_t i = 0; i < controls.size(); i++) {
        if (isRadio(controls[i]))
            i = checkRadioGroup(subject, i);
    }
}

void checkDefaultButton(const Subject& subject)
{
    if (!(subject.row->flags & TEMPLATE_DEFAULTOK))
        return;
    for (const Control& control : subject.dialog.controls) {
        if (!isPushButton(control))
            continue;
        const bool isDefault = buttonType(control) == BS_DEFPUSHBUTTON;
        if (isDefault != (control.id == IDOK))
            found(subject.check, "%s: %s must %sbe the default button", subject.row->name,
                  controlName(subject, control).c_str(), isDefault ? "not " : "");
    }
}

void checkText(const Subject& subject, const Control& control)
{
    const std::string name = controlName(subject, control);
    if (hasControlCharacters(control.text, ""))
        found(subject.check, "%s: the text of %s has a line end or a tab", subject.row->name,
              name.c_str());
    if (mayHaveMnemonic(control) && mnemonicsOf(control.text).size() > 1)
        found(subject.check, "%s: %s has more than one mnemonic", subject.row->name, name.c_str());
}

void checkHasMnemonic(const Subject& subject, size_t index)
{
    const Control& control = subject.dialog.controls[index];
    const bool byHabit = control.id == IDOK || control.id == IDCANCEL; // Enter and Esc
    if (isButton(control) && !isGroupBox(control) && !byHabit && !controlMnemonic(control))
        found(subject.check, "%s: %s has no mnemonic", subject.row->name,
              controlName(subject, control).c_str());
    const DWORD noLabel = CONTROL_NOLABEL | CONTROL_HIDDEN;
    if (isLabelled(control) && !(flagsOf(*subject.row, control) & noLabel) &&
        labelOf(subject.dialog, index) < 0)
        found(subject.check, "%s: %s has no label with a mnemonic before it", subject.row->name,
              controlName(subject, control).c_str());
}

// A caption that the code can put on a button may repeat that button's own mnemonic, but no
// other control's.
void checkCaptionMnemonics(const Subject& subject)
{
    for (const FitRow& fit : FITS) {
        if (lstrcmpA(fit.templateName, subject.row->name) != 0 || !fit.idString)
            continue;
        const char mnemonic = mnemonicOf(readString(subject.check->module, fit.idString, nullptr));
        for (const Control& control : subject.dialog.controls) {
            if (mnemonic && control.id != fit.idControl && controlMnemonic(control) == mnemonic)
                found(subject.check, "%s: the mnemonic %c of %s is used twice", subject.row->name,
                      mnemonic, stringName(*subject.check, fit.idString).c_str());
        }
    }
}

} // namespace

void checkControls(const Subject& subject, const std::string& barMnemonics)
{
    checkPresence(subject);
    checkOrder(subject);
    checkRadioGroups(subject);
    checkDefaultButton(subject);
    std::string taken = barMnemonics;
    for (size_t i = 0; i < subject.dialog.controls.size(); i++) {
        const Control& control = subject.dialog.controls[i];
        checkKind(subject, control);
        checkState(subject, control);
        checkTabStop(subject, control);
        checkText(subject, control);
        checkHasMnemonic(subject, i);
        takeMnemonic(subject.check, subject.row->name, controlMnemonic(control), &taken);
    }
    checkCaptionMnemonics(subject);
}

} // namespace langcheck
