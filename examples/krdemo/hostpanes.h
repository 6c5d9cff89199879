// The host panes of the transfer window, and what is known of the files in them.
#ifndef KRDEMO_HOSTPANES_H
#define KRDEMO_HOSTPANES_H

#include "host.h"

#include <vector>

namespace demo {

// Shows a directory of the host in the panes of this window.
void showDirectory(HWND window, const std::string& path, std::vector<Entry>&& entries);

// Before another host is shown.
void forgetDirectory();

// The same one again, as far as it passes a filter.
void showFiltered(HWND window, const std::string& filter);
void showAgain(HWND window);

// In bytes, and as it is shown.
const std::string& hostDirectory();
std::string shownDirectory();

// Null if no entry is shown by this name.
const Entry* findEntry(const std::string& name);
const std::vector<Entry>& entries();

// Takes the place of one of the same name.
void addEntry(HWND window, const Entry& entry);
void removeEntry(HWND window, const std::string& name);

// The bytes of a name that is in the panes or was typed; empty if the host has no such characters.
std::string bytesOf(const std::string& name);

// The path of such a name, which can be a path itself; empty if no directory is shown yet.
std::string pathOf(const std::string& bytes);

} // namespace demo

#endif
