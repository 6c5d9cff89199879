// The languages that the user can choose.
#ifndef KRDEMO_LANGUAGE_H
#define KRDEMO_LANGUAGE_H

#include <windows.h>

namespace demo {

// Adds a menu of the languages whose modules lie in the program's folder.
void appendLanguageMenu(HMENU hBar);

// The code of the language behind a command of that menu; null for other commands.
const char* languageOf(UINT idCommand);

// Marks a language in that menu.
void showLanguage(HMENU hMenu, const char* language);

} // namespace demo

#endif
