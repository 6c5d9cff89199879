#include "check.h"

namespace {

DWORD buttonType(const LangDlgControl& control)
{
    return control.style & LANG_BUTTONTYPE;
}

bool isButton(const LangDlgControl& control)
{
    return control.className == "BUTTON";
}

bool isRadio(const LangDlgControl& control)
{
    return isButton(control) &&
           (buttonType(control) == BS_AUTORADIOBUTTON || buttonType(control) == BS_RADIOBUTTON);
}

// What takes its mnemonic from the label before it.
bool isLabelled(const LangDlgControl& control)
{
    return control.className == "EDIT" || control.className == "LISTBOX" ||
           control.className == "COMBOBOX";
}

} // namespace

bool fLangIsGroupBox(const LangDlgControl& control)
{
    return isButton(control) && buttonType(control) == BS_GROUPBOX;
}

bool fLangIsPushButton(const LangDlgControl& control)
{
    return isButton(control) && buttonType(control) <= BS_DEFPUSHBUTTON;
}

const LangControlRow* pLangControlRow(const LangTemplateRow& row, WORD id)
{
    for (int i = 0; i < row.cControls; i++) {
        if (row.controls[i].id == id)
            return &row.controls[i];
    }
    return nullptr;
}

char chLangControlMnemonic(const LangDlgControl& control)
{
    if (isButton(control))
        return chLangMnemonic(control.text);
    if (control.className != "STATIC" || (control.style & SS_NOPREFIX))
        return 0;
    const DWORD type = control.style & LANG_STATICTYPE;
    const bool fText = type <= SS_RIGHT || type == SS_LEFTNOWORDWRAP;
    return fText ? chLangMnemonic(control.text) : static_cast<char>(0);
}

namespace {

DWORD flagsOf(const LangTemplateRow& row, const LangDlgControl& control)
{
    const LangControlRow* found = pLangControlRow(row, control.id);
    return found ? found->flags : 0;
}

void checkPresence(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    for (int i = 0; i < row.cControls; i++) {
        int count = 0;
        for (const LangDlgControl& control : dialog.controls)
            count += control.id == row.controls[i].id;
        if (count == 0 && !(row.controls[i].flags & LANGCTL_OPTIONAL))
            vLangFound(check, "%s: control %u is missing", row.name, row.controls[i].id);
        if (count > 1)
            vLangFound(check, "%s: control %u stands twice", row.name, row.controls[i].id);
    }
    for (const LangDlgControl& control : dialog.controls) {
        if (control.id != LANG_UNNAMED && !pLangControlRow(row, control.id))
            vLangFound(check, "%s: control %u is unknown", row.name, control.id);
    }
}

void checkVisible(LangCheck* check, const LangTemplateRow& row, const LangDlgControl& control)
{
    const DWORD flags = flagsOf(row, control);
    const bool fVisible = (control.style & WS_VISIBLE) != 0;
    if (fVisible && (flags & LANGCTL_HIDDEN))
        vLangFound(check, "%s: control %u must not be visible", row.name, control.id);
    if (!fVisible && !(flags & (LANGCTL_HIDDEN | LANGCTL_MAYHIDE)))
        vLangFound(check, "%s: control %u is not visible", row.name, control.id);
}

void checkKind(LangCheck* check, const LangTemplateRow& row, const LangDlgControl& control)
{
    const LangControlRow* found = pLangControlRow(row, control.id);
    if (!found)
        return;
    const LangKindRow& kind = g_langKinds[found->kind];
    if (kind.className && control.className != kind.className) {
        vLangFound(check, "%s: control %u has the class %s instead of %s", row.name, control.id,
                   control.className.c_str(), kind.className);
        return;
    }
    for (const LangStyleRule& rule : kind.rules) {
        if ((control.style & rule.mask) != rule.value)
            vLangFound(check, "%s: control %u %s %s", row.name, control.id,
                       rule.value ? "needs" : "must not have", rule.name);
    }
}

void checkTabStop(LangCheck* check, const LangTemplateRow& row, const LangDlgControl& control)
{
    const bool fInput = isLabelled(control) ||
                        (isButton(control) && !fLangIsGroupBox(control) && !isRadio(control));
    if (fInput && !(flagsOf(row, control) & LANGCTL_HIDDEN) && !(control.style & WS_TABSTOP))
        vLangFound(check, "%s: control %u is no tab stop", row.name, control.id);
}

// Radio buttons that follow each other are one group: it begins with the first one, ends
// before the next control, and has one tab stop.
void checkRadioGroups(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    const std::vector<LangDlgControl>& controls = dialog.controls;
    for (size_t i = 0; i < controls.size(); i++) {
        if (!isRadio(controls[i]))
            continue;
        const WORD id = controls[i].id;
        if (!(controls[i].style & WS_GROUP))
            vLangFound(check, "%s: radio button %u must begin a group", row.name, id);
        int cTabStops = 0;
        for (size_t first = i; i < controls.size() && isRadio(controls[i]); i++) {
            cTabStops += (controls[i].style & WS_TABSTOP) != 0;
            if (i > first && (controls[i].style & WS_GROUP))
                vLangFound(check, "%s: radio button %u must not begin a group", row.name,
                           controls[i].id);
        }
        if (cTabStops != 1)
            vLangFound(check, "%s: the group of radio button %u has %d tab stops", row.name, id,
                       cTabStops);
        if (i < controls.size() && !(controls[i].style & WS_GROUP))
            vLangFound(check, "%s: control %u behind the radio buttons must begin a group",
                       row.name, controls[i].id);
    }
}

void checkDefaultButton(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    if (!(row.flags & LANGDLG_DEFAULTOK))
        return;
    for (const LangDlgControl& control : dialog.controls) {
        if (!fLangIsPushButton(control))
            continue;
        const bool fDefault = buttonType(control) == BS_DEFPUSHBUTTON;
        if (fDefault != (control.id == IDOK))
            vLangFound(check, "%s: button %u must %sbe the default button", row.name, control.id,
                       fDefault ? "not " : "");
    }
}

// Texts that show what the user or the code fills in have no mnemonic, and a label reaches
// over them to the control behind.
bool hasLabel(const LangDialog& dialog, size_t index)
{
    while (index > 0) {
        const LangDlgControl& before = dialog.controls[--index];
        if (chLangControlMnemonic(before))
            return before.className == "STATIC";
        if (before.className != "STATIC")
            return false;
    }
    return false;
}

void checkHasMnemonic(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog,
                      size_t index)
{
    const LangDlgControl& control = dialog.controls[index];
    const bool fByHabit = control.id == IDOK || control.id == IDCANCEL; // Enter and Esc
    if (isButton(control) && !fLangIsGroupBox(control) && !fByHabit &&
        !chLangControlMnemonic(control))
        vLangFound(check, "%s: button %u has no mnemonic", row.name, control.id);
    const DWORD noLabel = LANGCTL_NOLABEL | LANGCTL_HIDDEN;
    if (isLabelled(control) && !(flagsOf(row, control) & noLabel) && !hasLabel(dialog, index))
        vLangFound(check, "%s: control %u has no label with a mnemonic before it", row.name,
                   control.id);
}

// A caption that the code can put on a button may repeat that button's own mnemonic, but no
// other control's.
void checkCaptionMnemonics(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog)
{
    for (int i = 0; i < g_cLangFits; i++) {
        const LangFitRow& fit = g_langFits[i];
        if (lstrcmpA(fit.templateName, row.name) != 0 || !fit.idString)
            continue;
        const char mnemonic = chLangMnemonic(strLangString(check, fit.idString));
        for (const LangDlgControl& control : dialog.controls) {
            if (mnemonic && control.id != fit.idControl &&
                chLangControlMnemonic(control) == mnemonic)
                vLangFound(check, "%s: mnemonic %c of string %u stands twice", row.name, mnemonic,
                           fit.idString);
        }
    }
}

} // namespace

void vLangCheckControls(LangCheck* check, const LangTemplateRow& row, const LangDialog& dialog,
                        const std::string& barMnemonics)
{
    checkPresence(check, row, dialog);
    checkRadioGroups(check, row, dialog);
    checkDefaultButton(check, row, dialog);
    std::string taken = barMnemonics;
    for (size_t i = 0; i < dialog.controls.size(); i++) {
        const LangDlgControl& control = dialog.controls[i];
        checkKind(check, row, control);
        checkVisible(check, row, control);
        checkTabStop(check, row, control);
        checkHasMnemonic(check, row, dialog, i);
        vLangTakeMnemonic(check, row.name, chLangControlMnemonic(control), &taken);
    }
    checkCaptionMnemonics(check, row, dialog);
}
