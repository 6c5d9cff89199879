#include "listing.h"

#include <ctype.h>
#include <stdlib.h>
#include <string.h>

namespace demo {

namespace {

constexpr char MONTHS[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
constexpr char LINK[] = " -> ";

// The size that the windows have room for.
DWORD readSize(const char* digits)
{
    unsigned long long size = strtoull(digits, nullptr, 10);
    return size > MAXDWORD ? MAXDWORD : DWORD(size);
}

bool isName(const std::string& name)
{
    return !name.empty() && name.find('/') == std::string::npos;
}

// A piece of a line between blanks.
struct Word {
    size_t begin, end;
};

Word wordFrom(const std::string& line, size_t at)
{
    size_t begin = line.find_first_not_of(' ', at);
    begin = begin != std::string::npos ? begin : line.size();
    size_t end = line.find(' ', begin);
    return {begin, end != std::string::npos ? end : line.size()};
}

bool isMonth(const std::string& word)
{
    const char* found = word.size() == 3 ? strstr(MONTHS, word.c_str()) : nullptr;
    return found != nullptr && (found - MONTHS) % 3 == 0;
}

bool isNumber(const std::string& word, const char* others = "")
{
    return !word.empty() &&
           word.find_first_not_of(std::string("0123456789") + others) == std::string::npos;
}

// "12:34", or a year.
bool isTime(const std::string& word)
{
    return isNumber(word, ":") && (word.find(':') != std::string::npos || word.size() == 4);
}

// "-rw-r--r-- 1 owner group SIZE Jan 12 12:34 NAME": the date is looked for, since owners and
// groups can be missing. Behind it stands one blank, and all others belong to the name.
Line readUnixLine(const std::string& line, Entry* entry)
{
    std::string before;
    Word word = wordFrom(line, 0);
    while (word.begin < line.size()) {
        std::string text = line.substr(word.begin, word.end - word.begin);
        Word day = wordFrom(line, word.end);
        Word time = wordFrom(line, day.end);
        if (isMonth(text) && isNumber(before) &&
            isNumber(line.substr(day.begin, day.end - day.begin)) &&
            isTime(line.substr(time.begin, time.end - time.begin)) && time.end + 1 < line.size()) {
            entry->bytes = line.substr(time.end + 1);
            entry->size = readSize(before.c_str());
            return Line::Entry;
        }
        before = text;
        word = wordFrom(line, word.end);
    }
    return Line::Odd;
}

// Where a link leads to stands behind its name. If that can be cut in two places, it isn't.
Line readLink(Entry* entry)
{
    size_t at = entry->bytes.find(LINK);
    if (at == std::string::npos || entry->bytes.find(LINK, at + 1) != std::string::npos) {
        return Line::Odd;
    }
    entry->bytes.resize(at);
    return Line::Entry;
}

// "01-31-24  12:34PM  <DIR>  NAME", or a size in place of the word.
Line readDosLine(const std::string& line, Entry* entry)
{
    Word date = wordFrom(line, 0);
    Word time = wordFrom(line, date.end);
    Word size = wordFrom(line, time.end);
    std::string text = line.substr(size.begin, size.end - size.begin);
    entry->directory = text == "<DIR>";
    if (!isNumber(line.substr(0, date.end), "-") || (!entry->directory && !isNumber(text)) ||
        !isNumber(line.substr(time.begin, time.end - time.begin), ":APM") ||
        size.end + 1 >= line.size()) {
        return Line::Odd;
    }
    entry->bytes = line.substr(entry->directory ? wordFrom(line, size.end).begin : size.end + 1);
    entry->size = readSize(text.c_str());
    return Line::Entry;
}

bool isSelfOrParent(const std::string& bytes)
{
    return bytes == "." || bytes == "..";
}

} // namespace

Line readFactLine(const std::string& line, Entry* entry)
{
    size_t blank = line.find(' ');
    if (line.empty()) {
        return Line::Nothing;
    }
    if (blank == std::string::npos) {
        return Line::Odd;
    }
    Line kind = Line::Odd;
    for (size_t at = 0; at < blank; at = line.find(';', at) + 1) {
        const char* fact = line.c_str() + at;
        if (_strnicmp(fact, "type=file;", 10) == 0 || _strnicmp(fact, "type=OS.", 8) == 0) {
            kind = Line::Entry;
        } else if (_strnicmp(fact, "type=dir;", 9) == 0) {
            kind = Line::Entry;
            entry->directory = true;
        } else if (_strnicmp(fact, "type=", 5) == 0) {
            kind = Line::Nothing;
        } else if (_strnicmp(fact, "size=", 5) == 0) {
            entry->size = readSize(fact + 5);
        }
        if (line.find(';', at) == std::string::npos) {
            break;
        }
    }
    entry->bytes = line.substr(blank + 1);
    if (kind == Line::Entry && isSelfOrParent(entry->bytes)) {
        return Line::Nothing;
    }
    return kind != Line::Entry || isName(entry->bytes) ? kind : Line::Odd;
}

Line readPeopleLine(const std::string& line, Entry* entry)
{
    Line kind = Line::Odd;
    if (line.empty() || line.compare(0, 6, "total ") == 0) {
        return Line::Nothing;
    }
    if (strchr("-dl", line[0]) != nullptr) {
        entry->directory = line[0] == 'd';
        kind = readUnixLine(line, entry);
        kind = kind == Line::Entry && line[0] == 'l' ? readLink(entry) : kind;
    } else if (isdigit(BYTE(line[0]))) {
        kind = readDosLine(line, entry);
    }
    if (kind == Line::Entry && isSelfOrParent(entry->bytes)) {
        return Line::Nothing;
    }
    return kind != Line::Entry || isName(entry->bytes) ? kind : Line::Odd;
}

} // namespace demo
