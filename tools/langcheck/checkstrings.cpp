#include "check.h"

#include <string.h>

namespace langcheck {

namespace {

// The placeholders of a format text, joined, as they are written.
std::string placeholdersIn(const std::string& text)
{
    std::string all;
    for (size_t i = text.find('%'); i != std::string::npos; i = text.find('%', i)) {
        if (text.compare(i, 2, "%%") == 0) {
            i += 2;
            continue;
        }
        size_t end = text.find_first_not_of("-+ #0123456789.*hlwI", i + 1);
        end = end == std::string::npos ? text.size() : end + 1;
        all += text.substr(i, end - i);
        i = end;
    }
    return all;
}

// The numbers are unsigned, and a placeholder has no width that could pass a buffer.
bool sameKinds(std::string placeholders, const char* expected)
{
    for (const char* plain : {"%u", "%d", "%ld"}) {
        for (size_t i = placeholders.find(plain); i != std::string::npos;
             i = placeholders.find(plain))
            placeholders.replace(i, strlen(plain), "%lu");
    }
    return placeholders == expected;
}

// The local filter line takes a mask only if it has the form of a short name.
bool isShortMask(const std::string& mask)
{
    constexpr size_t MAX_NAME = 8;
    constexpr size_t MAX_EXTENSION = 4; // the dot included
    if (mask.find_first_of("\\/:;, ") != std::string::npos)
        return false;
    const size_t dot = mask.find('.');
    if (dot == std::string::npos)
        return mask.size() <= MAX_NAME;
    return dot <= MAX_NAME && mask.size() - dot <= MAX_EXTENSION;
}

void checkMnemonic(Check* check, const std::string& name, const std::string& text)
{
    const size_t count = mnemonicsOf(text).size();
    if (count == 0)
        found(check, "%s has no mnemonic", name.c_str());
    if (count > 1)
        found(check, "%s has more than one mnemonic", name.c_str());
}

void checkText(Check* check, const std::string& name, const StringRow& row, const std::string& text)
{
    if (text.size() >= static_cast<size_t>(row.limit))
        found(check, "%s has more than %d characters", name.c_str(), row.limit - 1);
    const std::string placeholders = placeholdersIn(text);
    if (!sameKinds(placeholders, row.placeholders))
        found(check, "%s has the placeholders \"%s\" instead of \"%s\"", name.c_str(),
              placeholders.c_str(), row.placeholders);
    if (hasControlCharacters(text, (row.flags & STRING_LINES) ? "\r\n" : ""))
        found(check, "%s has a line end or a tab", name.c_str());
    if ((row.flags & STRING_MASK) && !isShortMask(text))
        found(check, "%s is not a mask of at most 8 and 3 characters", name.c_str());
    if (row.flags & STRING_MNEMONIC)
        checkMnemonic(check, name, text);
}

void checkString(Check* check, const std::string& name, const StringRow& row)
{
    BadTexts bad;
    const std::string text = readString(check->module, row.id, &bad);
    checkBadTexts(check, name, bad);
    if (text.empty())
        found(check, "%s is missing", name.c_str());
    else
        checkText(check, name, row, text);
}

} // namespace

void checkStrings(Check* check)
{
    for (const StringRow& row : STRINGS)
        checkString(check, stringName(*check, row), row);
    for (const CommandRow& row : COMMANDS)
        checkString(check, stringName(*check, row),
                    {row.id, row.name, HINT_LIMIT, "", STRING_STRIP});
}

} // namespace langcheck
