#include "check.h"

#include <algorithm>
#include <string.h>

namespace langcheck {

namespace {

std::vector<std::string> allTexts(const Image& image)
{
    std::vector<std::string> texts;
    std::string menuName;
    for (const TemplateRow& row : TEMPLATES) {
        Dialog dialog;
        readDialog(image, row.name, &dialog);
        texts.push_back(dialog.caption);
        for (const Control& control : dialog.controls)
            texts.push_back(control.text);
        if (row.flags & TEMPLATE_MENU)
            menuName = dialog.menuName;
    }
    std::vector<MenuItem> items;
    readMenu(image, menuName.c_str(), &items, nullptr);
    for (const MenuItem& item : items)
        texts.push_back(item.text);
    for (const StringRow& row : STRINGS)
        texts.push_back(readString(image, row.id, nullptr));
    for (const CommandRow& row : COMMANDS)
        texts.push_back(readString(image, row.id, nullptr));
    return texts;
}

// OK is the same in many languages, and so are file masks.
bool isToTranslate(const std::string& text)
{
    constexpr int FEWEST_LETTERS = 3;
    const auto isLetter = [](char c) { return IsCharAlphaA(c) != 0; };
    return std::count_if(text.begin(), text.end(), isLetter) >= FEWEST_LETTERS &&
           text.find("*.") != 0;
}

} // namespace

void warnOfEnglish(Check* check, const std::string& name)
{
    const bool isEnglish = _strnicmp(name.c_str(), "XFREN", 5) == 0;
    const std::vector<std::string> english = allTexts(check->english);
    std::vector<std::string> warned;
    for (const std::string& text :
         isEnglish ? std::vector<std::string>() : allTexts(check->module)) {
        const auto isIn = [&](const auto& texts) {
            return std::find(texts.begin(), texts.end(), text) != texts.end();
        };
        if (!isToTranslate(text) || !isIn(english) || isIn(warned))
            continue;
        warned.push_back(text);
        check->report.line(check->report.data,
                           ("warning: \"" + text + "\" is the same in English").c_str());
    }
}

} // namespace langcheck
