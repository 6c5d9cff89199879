#include "check.h"

namespace langcheck {

namespace {

std::string quoted(const std::string& name, const std::string& text)
{
    return text.empty() ? name : name + " (\"" + text + "\")";
}

// The text that a control shows, or that of its label.
std::string englishText(const Dialog& english, WORD id)
{
    for (size_t i = 0; i < english.controls.size(); i++) {
        if (english.controls[i].id != id)
            continue;
        const int label = english.controls[i].text.empty() ? labelOf(english, i) : int(i);
        return label < 0 ? "" : english.controls[static_cast<size_t>(label)].text;
    }
    return "";
}

} // namespace

std::string controlName(const Subject& subject, WORD id)
{
    const ControlRow* row = findControl(*subject.row, id);
    return row ? quoted(row->name, englishText(subject.english, id))
               : "control " + std::to_string(id);
}

std::string controlName(const Subject& subject, const Control& control)
{
    if (control.id == UNNAMED)
        return control.text.empty() ? "a control without a name" : '"' + control.text + '"';
    return controlName(subject, control.id);
}

std::string stringName(const Check& check, const StringRow& row)
{
    return "string " + quoted(row.name, readString(check.english, row.id, nullptr));
}

std::string stringName(const Check& check, const CommandRow& row)
{
    return "hint " + quoted(row.name, readString(check.english, row.id, nullptr));
}

std::string stringName(const Check& check, UINT id)
{
    for (const StringRow& row : STRINGS) {
        if (row.id == id)
            return stringName(check, row);
    }
    return "string " + std::to_string(id);
}

} // namespace langcheck
