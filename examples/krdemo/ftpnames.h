// Names and texts of a server, as they go over the line and as the windows show them.
//
// Servers write UTF-8, unless they have shown a name that is none; then they are taken to write
// this system's code page. The windows show that code page. A character that it doesn't have
// shows as its number, [65E5], and a control character as <07>: both lead back to the very
// name on the server, and what has "<" in it is no name for a local file.
#ifndef KRDEMO_FTPNAMES_H
#define KRDEMO_FTPNAMES_H

#include <windows.h>

constexpr DWORD MAX_WIRE = 1024;

// Gives false if the name doesn't fit. *pfUtf8 becomes false if it is no UTF-8.
bool shownName(const char* pszWire, bool* pfUtf8, char (&szShown)[MAX_PATH]);

// Gives false if the name can't be put into a command: too long, or with a line end in it.
bool wireName(const char* pszShown, bool fUtf8, char (&szWire)[MAX_WIRE]);

// A text to be read: what can't be shown is replaced.
void shownText(const char* pszWire, char* pszText, DWORD cchText);

// A line of a machine-readable listing. Gives false, with nothing set, for lines that tell of
// nothing inside the directory. The name points into the line.
struct ListedEntry {
    const char* pszWireName;
    DWORD cbSize;
    bool fDirectory;
};
bool readListLine(const char* pszLine, ListedEntry* pEntry);

#endif
