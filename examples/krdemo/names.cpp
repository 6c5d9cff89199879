#include "names.h"

#include <stdlib.h>
#include <string.h>

namespace demo {

namespace {

constexpr size_t LONGEST_CHARACTER = 4;
constexpr WCHAR NO_BREAK_SPACE = 0xA0; // these two look like others
constexpr WCHAR SOFT_HYPHEN = 0xAD;

std::wstring toWide(const std::string& text, UINT codePage)
{
    std::wstring wide(text.size() + 1, L'\0');
    int count = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), int(text.size()),
                                    &wide[0], int(wide.size()));
    wide.resize(size_t(count));
    return wide;
}

std::string fromWide(const std::wstring& wide, UINT codePage)
{
    std::string text(wide.size() * LONGEST_CHARACTER + 1, '\0');
    int count = WideCharToMultiByte(codePage, 0, wide.data(), int(wide.size()), &text[0],
                                    int(text.size()), nullptr, nullptr);
    text.resize(size_t(count));
    return text;
}

// The same character in another code page. Empty if it isn't there, or if the way back would
// lead to another one: nothing goes by best fit.
std::string convert(const std::string& character, UINT from, UINT to)
{
    std::wstring wide = toWide(character, from);
    std::string converted = fromWide(wide, to);
    bool same = !wide.empty() && toWide(converted, to) == wide && fromWide(wide, from) == character;
    return same ? converted : "";
}

bool isControl(WCHAR ch)
{
    return ch < L' ' || (ch >= 0x7F && ch < NO_BREAK_SPACE);
}

// What every code page has, and no name can hide behind.
bool isPlain(char ch)
{
    return ch > ' ' && ch <= '~' && ch != '<' && ch != '>';
}

bool isMisleading(const std::string& character, UINT codePage)
{
    WCHAR ch = toWide(character, codePage)[0];
    return ch == L'<' || ch == L'>' || isControl(ch) || ch == NO_BREAK_SPACE || ch == SOFT_HYPHEN;
}

// The length of the character that a text begins with; 1 if it begins with none.
size_t characterLength(const std::string& text, size_t at, UINT codePage)
{
    for (size_t length = 1; length <= LONGEST_CHARACTER && at + length <= text.size(); ++length) {
        if (!toWide(text.substr(at, length), codePage).empty()) {
            return length;
        }
    }
    return 1;
}

// An escape that the text ends in goes on. No other ">" is ever shown.
void appendEscape(const std::string& bytes, std::string* shown)
{
    char digits[3];
    if (shown->empty() || shown->back() != '>') {
        *shown += "<>";
    }
    for (char byte : bytes) {
        wsprintfA(digits, "%02X", BYTE(byte));
        shown->insert(shown->size() - 1, digits);
    }
}

// The bytes that a piece in "<>" stands for. Returns its length, 0 if it is none.
size_t readEscape(const char* text, std::string* bytes)
{
    size_t digits = *text == '<' ? strspn(text + 1, "0123456789ABCDEFabcdef") : 0;
    if (digits == 0 || digits % 2 != 0 || text[1 + digits] != '>') {
        return 0;
    }
    for (size_t n = 0; n < digits; n += 2) {
        *bytes += char(strtoul(std::string(text + 1 + n, 2).c_str(), nullptr, 16));
    }
    return digits + 2;
}

} // namespace

std::string shownName(const std::string& bytes, UINT codePage)
{
    std::string shown;
    size_t length;
    for (size_t at = 0; at < bytes.size(); at += length) {
        length = isPlain(bytes[at]) ? 1 : characterLength(bytes, at, codePage);
        if (isPlain(bytes[at])) {
            shown += bytes[at];
            continue;
        }
        std::string character = bytes.substr(at, length);
        std::string ansi = convert(character, codePage, CP_ACP);
        bool atEnd = character == " " && (at == 0 || at + length == bytes.size());
        if (ansi.empty() || atEnd || isMisleading(ansi, CP_ACP)) {
            appendEscape(character, &shown);
        } else {
            shown += ansi;
        }
    }
    return shown;
}

bool bytesOfName(const std::string& shown, UINT codePage, std::string* bytes)
{
    size_t length;
    bytes->clear();
    for (size_t at = 0; at < shown.size(); at += length) {
        length = readEscape(shown.c_str() + at, bytes);
        if (length == 0) {
            length = characterLength(shown, at, CP_ACP);
            std::string character = convert(shown.substr(at, length), CP_ACP, codePage);
            if (character.empty()) {
                return false;
            }
            *bytes += character;
        }
    }
    return !bytes->empty() && bytes->find_first_of(std::string("\r\n\0", 3)) == std::string::npos;
}

std::string shownWords(const std::string& bytes)
{
    std::wstring wide = toWide(bytes, CP_UTF8);
    wide = wide.empty() ? toWide(bytes, CP_ACP) : wide;
    for (WCHAR& ch : wide) {
        ch = isControl(ch) ? L' ' : ch;
    }
    return fromWide(wide, CP_ACP);
}

} // namespace demo
