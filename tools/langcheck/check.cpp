#include "check.h"

#include <stdarg.h>
#include <stdio.h>

void vLangFound(LangCheck* check, const char* format, ...)
{
    char line[512];
    va_list args;
    va_start(args, format);
    _vsnprintf(line, sizeof line - 1, format, args);
    va_end(args);
    line[sizeof line - 1] = '\0';
    check->cFound++;
    check->report->pfnLine(check->report->pData, line);
}

std::string strLangString(const LangCheck* check, UINT id)
{
    char text[1024];
    const int cch = LoadStringA(check->hModule, id, text, sizeof text);
    return std::string(text, static_cast<size_t>(cch));
}

void vLangCheckLost(LangCheck* check, const char* where, const std::vector<std::string>& lost)
{
    for (const std::string& text : lost)
        vLangFound(check, "%s: \"%s\" has letters that code page %u lacks", where, text.c_str(),
                   GetACP());
}

char chLangMnemonic(const std::string& text)
{
    for (size_t i = 0; i + 1 < text.size(); i++) {
        if (text[i] != '&')
            continue;
        char letter = text[i + 1];
        if (letter != '&') {
            CharUpperBuffA(&letter, 1);
            return letter;
        }
        i++;
    }
    return 0;
}

void vLangTakeMnemonic(LangCheck* check, const char* where, char mnemonic, std::string* taken)
{
    if (!mnemonic)
        return;
    if (taken->find(mnemonic) != std::string::npos)
        vLangFound(check, "%s: mnemonic %c stands twice", where, mnemonic);
    *taken += mnemonic;
}

namespace {

bool readDialog(LangCheck* check, const char* name, LangDialog* dialog)
{
    switch (nLangReadDialog(check->hModule, name, dialog)) {
    case LANGREAD_OK:
        return true;
    case LANGREAD_MISSING:
        vLangFound(check, "%s: the template is missing", name);
        return false;
    case LANGREAD_EXTENDED:
        vLangFound(check, "%s: a DIALOGEX template can't be loaded below version 4", name);
        return false;
    case LANGREAD_BROKEN:
        break;
    }
    vLangFound(check, "%s: the template is broken", name);
    return false;
}

void checkTemplate(LangCheck* check, const LangTemplateRow& row)
{
    LangDialog dialog;
    if (!readDialog(check, row.name, &dialog))
        return;
    if ((dialog.style & row.style.mask) != row.style.value)
        vLangFound(check, "%s: %s %s", row.name, row.style.value ? "needs" : "must not have",
                   row.style.name);
    vLangCheckLost(check, row.name, dialog.lost);
    std::string barMnemonics;
    if (row.flags & LANGDLG_MENU)
        barMnemonics = strLangCheckMenu(check, dialog);
    vLangCheckControls(check, row, dialog, barMnemonics);
    vLangCheckLook(check, row, dialog);
}

} // namespace

int nLangCheckModule(HMODULE hModule, const LangCheckReport* report)
{
    LangCheck check = {hModule, report, 0};
    for (int i = 0; i < g_cLangTemplates; i++)
        checkTemplate(&check, g_langTemplates[i]);
    vLangCheckStrings(&check);
    return check.cFound;
}
