#include "text.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

namespace sample {

std::string format(const char* pattern, ...)
{
    char text[2048];
    va_list arguments;
    va_start(arguments, pattern);
    vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

std::string joinPath(const std::string& folder, const std::string& name)
{
    const char* start = folder.c_str();
    // Asked by character: in some code pages one ends in the byte of a backslash.
    bool hasSlash = folder.empty() || *CharPrevA(start, start + folder.size()) == '\\';
    return folder + (hasSlash ? "" : "\\") + name;
}

std::string folderOf(const std::string& path)
{
    size_t length = 0;
    for (const char* at = path.c_str(); *at != '\0'; at = CharNextA(at)) {
        length = *at == '\\' ? size_t(at - path.c_str()) + 1 : length;
    }
    return path.substr(0, length);
}

std::string lastPart(const std::string& path)
{
    return path.substr(folderOf(path).size());
}

std::string systemWords(DWORD error)
{
    char words[300];
    DWORD count = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, error, 0, words, sizeof words, nullptr);
    std::string text(words, count);
    while (!text.empty() && strchr(" \r\n", text.back()) != nullptr) {
        text.pop_back();
    }
    return text.empty() ? format("System error %lu.", error) : text;
}

std::string grouped(DWORD number)
{
    char plain[16];
    char local[32];
    char separator[8] = ",";
    snprintf(plain, sizeof plain, "%lu", number);
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, separator, sizeof separator);
    char point[] = ".";
    NUMBERFMTA style = {0, 1, 3, point, separator, 1};
    bool done = GetNumberFormatA(LOCALE_USER_DEFAULT, 0, plain, &style, local, sizeof local) != 0;
    return done ? local : plain;
}

// Only the last "*" ever needs another try: what an earlier one stands for can stay.
bool matches(const char* name, const char* pattern)
{
    const char* star = nullptr;
    const char* retry = nullptr;
    while (*name != '\0') {
        if (*pattern == '*') {
            star = pattern++;
            retry = name;
        } else if (*pattern == '?' || *pattern == *name) {
            ++pattern;
            ++name;
        } else if (star != nullptr) {
            pattern = star + 1;
            name = ++retry;
        } else {
            return false;
        }
    }
    return pattern[strspn(pattern, "*")] == '\0';
}

const char* valueOf(const char* argument, const char* option)
{
    size_t length = strlen(option);
    return strncmp(argument, option, length) == 0 ? argument + length : nullptr;
}

} // namespace sample
