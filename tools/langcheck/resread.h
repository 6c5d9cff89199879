// Dialog templates and menus read from their resource bytes. Every read is bounded by the
// resource; texts come in the code page that the library itself uses.
#ifndef LANGCHECK_RESREAD_H
#define LANGCHECK_RESREAD_H

#include <windows.h>

#include <string>
#include <vector>

enum LangRead {
    LANGREAD_OK,
    LANGREAD_MISSING,
    LANGREAD_EXTENDED, // the newer format, which versions below 4 can't load
    LANGREAD_BROKEN    // ends too early or isn't what it should be
};

struct LangDlgControl {
    DWORD style;
    int x, y, cx, cy; // dialog units
    WORD id;
    std::string className; // the name also of a class that the template gives by number
    std::string text;
};

struct LangDialog {
    DWORD style;
    int cx, cy;
    std::string menuName;
    int nPointSize; // 0 if the template names no font
    std::string face;
    std::vector<LangDlgControl> controls;
    std::vector<std::string> lost; // texts with letters that the code page lacks
};

struct LangMenuItem {
    int nDepth; // 0 for an item of the bar
    int nPopup; // position of the popup in the bar that holds it, or its own
    bool fPopup;
    WORD wFlags;      // MF_ bits
    WORD id;          // 0 for a popup
    std::string text; // empty for a separator
};

LangRead nLangReadDialog(HMODULE hModule, const char* name, LangDialog* dialog);

// The items in the order of the resource, a popup before what it holds. Texts with letters that
// the code page lacks are added to lost.
LangRead nLangReadMenu(HMODULE hModule, const char* name, std::vector<LangMenuItem>* items,
                       std::vector<std::string>* lost);

// Whether a string has letters that the code page lacks.
bool fLangStringLost(HMODULE hModule, UINT id);

#endif
