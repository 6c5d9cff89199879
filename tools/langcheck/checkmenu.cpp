#include "check.h"

namespace {

const LangCommandRow* findCommand(WORD id)
{
    for (int i = 0; i < g_cLangCommands; i++) {
        if (g_langCommands[i].id == id)
            return &g_langCommands[i];
    }
    return nullptr;
}

void checkItem(LangCheck* check, const LangMenuItem& item)
{
    const LangCommandRow* row = findCommand(item.id);
    if (!row) {
        vLangFound(check, "menu: command %u is unknown", item.id);
        return;
    }
    if (row->nPopup != LANG_ANYPOPUP && row->nPopup != item.nPopup)
        vLangFound(check, "menu: command %u is not in popup %d", item.id, row->nPopup);
    const bool fGrey = (item.wFlags & (MF_GRAYED | MF_DISABLED)) != 0;
    if (fGrey != row->fStartsGrey)
        vLangFound(check, "menu: command %u must start %s", item.id,
                   row->fStartsGrey ? "grey" : "enabled");
}

void checkBar(LangCheck* check, const std::vector<LangMenuItem>& items)
{
    int cPopups = 0;
    for (const LangMenuItem& item : items) {
        if (item.fPopup && item.nDepth == 0)
            cPopups++;
        else if (item.nDepth == 0)
            vLangFound(check, "menu: the bar holds command %u", item.id);
        else if (item.fPopup)
            vLangFound(check, "menu: popup %d holds a popup, which has no hint", item.nPopup);
    }
    if (cPopups != LANG_POPUPS)
        vLangFound(check, "menu: %d popups instead of %d", cPopups, LANG_POPUPS);
}

void checkCommands(LangCheck* check, const std::vector<LangMenuItem>& items)
{
    for (const LangMenuItem& item : items) {
        if (!item.fPopup && !item.text.empty())
            checkItem(check, item);
    }
    // Enabling by command reaches only the first of two.
    for (int i = 0; i < g_cLangCommands; i++) {
        int count = 0;
        for (const LangMenuItem& item : items)
            count += !item.fPopup && item.id == g_langCommands[i].id;
        if (count == 0)
            vLangFound(check, "menu: command %u is missing", g_langCommands[i].id);
        if (count > 1)
            vLangFound(check, "menu: command %u stands twice", g_langCommands[i].id);
    }
}

// The mnemonics of the bar, or of what one popup holds.
std::string checkMnemonics(LangCheck* check, const std::vector<LangMenuItem>& items, int depth,
                           int popup)
{
    const std::string where = depth == 0 ? "menu bar" : "menu popup " + std::to_string(popup);
    std::string taken;
    for (const LangMenuItem& item : items) {
        if (item.nDepth != depth || (depth > 0 && item.nPopup != popup) || item.text.empty())
            continue;
        const char mnemonic = chLangMnemonic(item.text);
        if (!mnemonic)
            vLangFound(check, "%s: \"%s\" has no mnemonic", where.c_str(), item.text.c_str());
        vLangTakeMnemonic(check, where.c_str(), mnemonic, &taken);
    }
    return taken;
}

bool readMenu(LangCheck* check, const std::string& name, std::vector<LangMenuItem>* items)
{
    std::vector<std::string> lost;
    switch (nLangReadMenu(check->hModule, name.c_str(), items, &lost)) {
    case LANGREAD_OK:
        vLangCheckLost(check, "menu", lost);
        return true;
    case LANGREAD_MISSING:
        vLangFound(check, "menu: missing");
        return false;
    case LANGREAD_EXTENDED:
        vLangFound(check, "menu: a MENUEX menu can't be loaded below version 4");
        return false;
    case LANGREAD_BROKEN:
        break;
    }
    vLangFound(check, "menu: broken");
    return false;
}

} // namespace

std::string strLangCheckMenu(LangCheck* check, const LangDialog& dialog)
{
    std::vector<LangMenuItem> items;
    if (!readMenu(check, dialog.menuName, &items))
        return std::string();
    checkBar(check, items);
    checkCommands(check, items);
    for (int popup = 0; popup < LANG_POPUPS; popup++)
        checkMnemonics(check, items, 1, popup);
    return checkMnemonics(check, items, 0, 0);
}
