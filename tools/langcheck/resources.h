// Dialog templates, menus, strings and the version read from the bytes of their resources. Every
// read is bounded by the resource; texts come in the code page that the library itself uses.
#ifndef LANGCHECK_RESOURCES_H
#define LANGCHECK_RESOURCES_H

#include "image.h"

#include <map>

namespace langcheck {

enum class ReadResult {
    OK,
    MISSING,
    EXTENDED, // the newer format, which versions below 4 can't load
    BROKEN    // ends too early or isn't what it should be
};

// Texts that won't show as they were meant.
struct BadTexts {
    std::vector<std::string> lost;    // have letters that the code page lacks
    std::vector<std::string> misread; // are UTF-8 that was compiled as another code page
};

struct Control {
    DWORD style;
    int x, y, cx, cy; // dialog units
    WORD id;
    std::string className; // the name also of a class that the template gives by number
    std::string text;
};

struct Dialog {
    DWORD style;
    int x, y, cx, cy;
    std::string menuName;
    std::string caption;
    int pointSize; // 0 if the template names no font
    std::string face;
    std::vector<Control> controls;
    BadTexts bad;
};

struct MenuItem {
    int depth; // 0 for an item of the bar
    int popup; // position of the popup in the bar that holds it, or its own
    bool isPopup;
    WORD flags;       // MF_ bits
    WORD id;          // 0 for a popup or a separator
    std::string text; // empty for a separator
};

ReadResult readDialog(const Image& image, const char* name, Dialog* dialog);

// The items in the order of the resource, a popup before what it holds.
ReadResult readMenu(const Image& image, const char* name, std::vector<MenuItem>* items,
                    BadTexts* bad);

// Empty if the module lacks the string. Adds to bad unless it is null.
std::string readString(const Image& image, UINT id, BadTexts* bad);

// The texts of the version resource by their names, such as "OriginalFilename"; none if the module
// has no such resource.
std::map<std::string, std::string> readVersion(const Image& image);

} // namespace langcheck

#endif
