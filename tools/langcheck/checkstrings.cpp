#include "check.h"

#include <string.h>

namespace {

// The kinds of the placeholders of a format text, as in LangStringRow; ? for any other kind.
std::string placeholders(const std::string& text)
{
    std::string kinds;
    const char* p = text.c_str();
    while ((p = strchr(p, '%')) != nullptr) {
        p++;
        if (*p == '%') {
            p++;
            continue;
        }
        p += strspn(p, "-#0123456789.");
        const bool fLong = *p == 'l';
        if (fLong)
            p++;
        if (*p == 's' && !fLong)
            kinds += 's';
        else
            kinds += *p != '\0' && strchr("diuxX", *p) ? 'n' : '?';
        if (*p != '\0')
            p++;
    }
    return kinds;
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

void checkString(LangCheck* check, const LangStringRow& row)
{
    const std::string text = strLangString(check, row.id);
    if (text.empty()) {
        vLangFound(check, "string %u is missing", row.id);
        return;
    }
    if (fLangStringLost(check->hModule, row.id))
        vLangCheckLost(check, ("string " + std::to_string(row.id)).c_str(), {text});
    if (text.size() >= static_cast<size_t>(row.limit))
        vLangFound(check, "string %u has more than %d characters", row.id, row.limit - 1);
    const std::string kinds = placeholders(text);
    if (kinds != row.placeholders)
        vLangFound(check, "string %u has the placeholders \"%s\" instead of \"%s\"", row.id,
                   kinds.c_str(), row.placeholders);
    if ((row.flags & LANGSTR_MASK) && !isShortMask(text))
        vLangFound(check, "string %u is not a mask of at most 8 and 3 characters", row.id);
    if ((row.flags & LANGSTR_MNEMONIC) && !chLangMnemonic(text))
        vLangFound(check, "string %u has no mnemonic", row.id);
}

} // namespace

void vLangCheckStrings(LangCheck* check)
{
    for (int i = 0; i < g_cLangStrings; i++)
        checkString(check, g_langStrings[i]);
    for (int i = 0; i < g_cLangCommands; i++)
        checkString(check, {g_langCommands[i].id, LANG_HINTLIMIT, "", LANGSTR_STRIP});
}
