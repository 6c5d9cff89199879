#include "check.h"

#include <string.h>

namespace langcheck {

namespace {

// The library finds a module by the language code in its name.
bool isModuleName(const std::string& name)
{
    constexpr size_t CCH_FIXED = 7;
    constexpr size_t CCH_CODE = 12;
    return name.size() > CCH_FIXED && name.size() <= CCH_FIXED + CCH_CODE &&
           _strnicmp(name.c_str(), "XFR", 3) == 0 &&
           _stricmp(name.c_str() + name.size() - 4, ".DLL") == 0;
}

void checkVersion(Check* check, const std::string& name)
{
    const std::map<std::string, std::string> texts = readVersion(check->module);
    if (texts.empty()) {
        found(check, "version: missing");
        return;
    }
    const std::string bare = name.substr(0, name.find('.'));
    const std::pair<const char*, const std::string*> expected[] = {{"InternalName", &bare},
                                                                   {"OriginalFilename", &name}};
    for (const auto& [field, value] : expected) {
        const auto text = texts.find(field);
        const std::string is = text == texts.end() ? "" : text->second;
        if (_stricmp(is.c_str(), value->c_str()) != 0)
            found(check, "version: %s is \"%s\" instead of \"%s\"", field, is.c_str(),
                  value->c_str());
    }
}

} // namespace

void checkFile(Check* check, const std::string& name)
{
    if (!isModuleName(name))
        found(check, "the name is not XFR, a code of 1 to 12 characters and .DLL");
    else
        checkVersion(check, name);
    if (!isLibrary(check->module))
        found(check, "the file is a program, not a DLL");
    const std::string code = codeIn(check->module);
    if (!code.empty())
        found(check, "a module holds resources alone; this one has %s", code.c_str());
}

} // namespace langcheck
