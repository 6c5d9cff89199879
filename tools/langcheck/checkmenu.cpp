#include "check.h"

namespace langcheck {

namespace {

const CommandRow* findCommand(WORD id)
{
    for (const CommandRow& row : COMMANDS) {
        if (row.id == id)
            return &row;
    }
    return nullptr;
}

std::string itemName(const MenuItem& item)
{
    const CommandRow* row = findCommand(item.id);
    const std::string name = row ? row->name : "command " + std::to_string(item.id);
    return item.text.empty() ? name : name + " (\"" + item.text + "\")";
}

bool isSeparator(const MenuItem& item)
{
    return !item.isPopup && item.id == 0 && item.text.empty();
}

void checkItem(Check* check, const MenuItem& item)
{
    const std::string name = itemName(item);
    const CommandRow* row = findCommand(item.id);
    if (!row) {
        found(check, "menu: %s is unknown", name.c_str());
        return;
    }
    if (row->popup != ANY_POPUP && row->popup != item.popup)
        found(check, "menu: %s is not in popup %d", name.c_str(), row->popup);
    const bool isGrey = (item.flags & (MF_GRAYED | MF_DISABLED)) != 0;
    if (isGrey != row->startsGrey)
        found(check, "menu: %s must start %s", name.c_str(), row->startsGrey ? "grey" : "enabled");
}

void checkBar(Check* check, const std::vector<MenuItem>& items)
{
    int popups = 0;
    for (const MenuItem& item : items) {
        if (item.isPopup && item.depth == 0)
            popups++;
        else if (item.depth == 0)
            found(check, "menu: the bar holds %s", itemName(item).c_str());
        else if (item.isPopup)
            found(check, "menu: popup %d holds a popup, which has no hint", item.popup);
    }
    if (popups != POPUP_COUNT)
        found(check, "menu: %d popups instead of %d", popups, POPUP_COUNT);
}

void checkCommands(Check* check, const std::vector<MenuItem>& items)
{
    for (const MenuItem& item : items) {
        if (!item.isPopup && !isSeparator(item))
            checkItem(check, item);
    }
    // Enabling by command reaches only the first of two.
    for (const CommandRow& row : COMMANDS) {
        int count = 0;
        for (const MenuItem& item : items)
            count += !item.isPopup && item.id == row.id;
        if (count == 0)
            found(check, "menu: %s is missing", row.name);
        if (count > 1)
            found(check, "menu: %s is there twice", row.name);
    }
}

std::string placeName(int depth, int popup)
{
    return depth == 0 ? "menu bar" : "menu popup " + std::to_string(popup);
}

void checkItemText(Check* check, const std::string& where, const MenuItem& item)
{
    const size_t mnemonics = mnemonicsOf(item.text).size();
    if (item.text.empty())
        found(check, "%s: %s has no text", where.c_str(), itemName(item).c_str());
    else if (mnemonics == 0)
        found(check, "%s: \"%s\" has no mnemonic", where.c_str(), item.text.c_str());
    else if (mnemonics > 1)
        found(check, "%s: \"%s\" has more than one mnemonic", where.c_str(), item.text.c_str());
    if (hasControlCharacters(item.text, "\t"))
        found(check, "%s: \"%s\" has a line end", where.c_str(), item.text.c_str());
}

// A separator has a command before and after it.
void checkSeparators(Check* check, const std::string& where, const std::vector<MenuItem>& level)
{
    for (size_t i = 0; i < level.size(); i++) {
        if (isSeparator(level[i]) && (i == 0 || i + 1 == level.size() || isSeparator(level[i + 1])))
            found(check, "%s: a separator has no command on both sides", where.c_str());
    }
}

// The items of the bar, or of one popup. Returns their mnemonics.
std::string checkLevel(Check* check, const std::vector<MenuItem>& items, int depth, int popup)
{
    const std::string where = placeName(depth, popup);
    std::vector<MenuItem> level;
    std::string taken;
    for (const MenuItem& item : items) {
        if (item.depth != depth || (depth > 0 && item.popup != popup))
            continue;
        level.push_back(item);
        if (isSeparator(item))
            continue;
        checkItemText(check, where, item);
        takeMnemonic(check, where.c_str(), mnemonicOf(item.text), &taken);
    }
    checkSeparators(check, where, level);
    return taken;
}

bool readMenuOf(Check* check, const std::string& name, std::vector<MenuItem>* items)
{
    BadTexts bad;
    switch (readMenu(check->module, name.c_str(), items, &bad)) {
    case ReadResult::OK:
        checkBadTexts(check, "menu", bad);
        return true;
    case ReadResult::MISSING:
        found(check, "menu: missing");
        return false;
    case ReadResult::EXTENDED:
        found(check, "menu: a MENUEX menu can't be loaded below version 4");
        return false;
    case ReadResult::BROKEN:
        break;
    }
    found(check, "menu: broken");
    return false;
}

} // namespace

std::string checkMenu(Check* check, const Dialog& dialog)
{
    std::vector<MenuItem> items;
    if (!readMenuOf(check, dialog.menuName, &items))
        return std::string();
    checkBar(check, items);
    checkCommands(check, items);
    for (int popup = 0; popup < POPUP_COUNT; popup++)
        checkLevel(check, items, 1, popup);
    return checkLevel(check, items, 0, 0);
}

} // namespace langcheck
