#include "check.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

namespace langcheck {

namespace {

// A finding is one line, whatever the texts of the module hold.
std::string onOneLine(const char* text)
{
    std::string line;
    for (; *text; text++) {
        if (*text == '\n')
            line += "\\n";
        else if (*text == '\t')
            line += "\\t";
        else
            line += static_cast<BYTE>(*text) < ' ' ? '?' : *text;
    }
    return line;
}

} // namespace

void found(Check* check, const char* format, ...)
{
    char line[1024];
    va_list args;
    va_start(args, format);
    _vsnprintf(line, sizeof line - 1, format, args);
    va_end(args);
    line[sizeof line - 1] = '\0';
    check->count++;
    check->report.line(check->report.data, onOneLine(line).c_str());
}

void checkBadTexts(Check* check, const std::string& where, const BadTexts& bad)
{
    for (const std::string& text : bad.lost)
        found(check, "%s: \"%s\" has letters that code page %u lacks", where.c_str(), text.c_str(),
              GetACP());
    for (const std::string& text : bad.misread)
        found(check, "%s: \"%s\" is UTF-8 that was compiled as another code page", where.c_str(),
              text.c_str());
}

bool hasControlCharacters(const std::string& text, const char* allowed)
{
    for (const char letter : text) {
        if (static_cast<BYTE>(letter) < ' ' && (letter == '\0' || !strchr(allowed, letter)))
            return true;
    }
    return false;
}

std::string mnemonicsOf(const std::string& text)
{
    std::string letters;
    for (size_t i = 0; i + 1 < text.size(); i++) {
        if (text[i] == '&' && text[++i] != '&')
            letters += text[i];
    }
    if (!letters.empty())
        CharUpperBuffA(&letters[0], static_cast<DWORD>(letters.size()));
    return letters;
}

char mnemonicOf(const std::string& text)
{
    const std::string letters = mnemonicsOf(text);
    return letters.empty() ? '\0' : letters[0];
}

void takeMnemonic(Check* check, const char* where, char mnemonic, std::string* taken)
{
    if (!mnemonic)
        return;
    if (taken->find(mnemonic) != std::string::npos)
        found(check, "%s: the mnemonic %c is used twice", where, mnemonic);
    *taken += mnemonic;
}

namespace {

bool readTemplate(Check* check, const char* name, Dialog* dialog)
{
    switch (readDialog(check->module, name, dialog)) {
    case ReadResult::OK:
        return true;
    case ReadResult::MISSING:
        found(check, "%s: the template is missing", name);
        return false;
    case ReadResult::EXTENDED:
        found(check, "%s: a DIALOGEX template can't be loaded below version 4", name);
        return false;
    case ReadResult::BROKEN:
        break;
    }
    found(check, "%s: the template is broken", name);
    return false;
}

void checkTemplate(Check* check, const TemplateRow& row)
{
    Subject subject = {check, &row, {}, {}};
    if (!readTemplate(check, row.name, &subject.dialog))
        return;
    readDialog(check->english, row.name, &subject.english);
    const Dialog& dialog = subject.dialog;
    if ((dialog.style & row.style.mask) != row.style.value)
        found(check, "%s: %s %s", row.name, row.style.value ? "needs" : "must not have",
              row.style.name);
    checkBadTexts(check, row.name, dialog.bad);
    std::string barMnemonics;
    if (row.flags & TEMPLATE_MENU)
        barMnemonics = checkMenu(check, dialog);
    checkControls(subject, barMnemonics);
    checkLook(subject);
}

} // namespace

const char* fileNameOf(const char* path)
{
    for (const char* p = path; *p; p = CharNextA(p)) {
        if (*p == '\\' || *p == '/' || *p == ':')
            path = p + 1;
    }
    return path;
}

Verdict checkModule(const char* path, const char* englishPath, const Report& report)
{
    char line[1024];
    Check check = {{}, {}, report, 0};
    const std::string reason = openImage(path, &check.module);
    if (!reason.empty()) {
        _snprintf(line, sizeof line - 1, "can't be checked: %s", reason.c_str());
        line[sizeof line - 1] = '\0';
        report.line(report.data, line);
        return Verdict::UNREADABLE;
    }
    if (englishPath && !openImage(englishPath, &check.english).empty())
        check.english = {};
    for (const TemplateRow& row : TEMPLATES)
        checkTemplate(&check, row);
    checkStrings(&check);
    const std::string name = fileNameOf(path);
    checkFile(&check, name);
    warnOfEnglish(&check, name);
    sprintf(line, "%d found", check.count);
    report.line(report.data, line);
    return check.count == 0 ? Verdict::WHOLE : Verdict::FAULTY;
}

} // namespace langcheck
