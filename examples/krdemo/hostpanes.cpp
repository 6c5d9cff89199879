#include "hostpanes.h"
#include "names.h"
#include "work.h"
#include "../../include/krhaul.h"
#include "../common/text.h"

#include <unordered_map>

namespace demo {

namespace {

struct Directory {
    std::string path;
    std::string filter = "*";
    std::vector<Entry> entries;
    std::unordered_map<std::string, size_t> places; // by name
};

Directory directory;

void showRow(HWND window, const Entry& entry)
{
    if (entry.directory) {
        nXferDandDAddHostSubDir(window, entry.name.c_str());
    } else if (sample::matches(entry.name.c_str(), directory.filter.c_str())) {
        nXferDandDAddHostFileName(window, entry.name.c_str());
    }
}

} // namespace

void showDirectory(HWND window, const std::string& path, std::vector<Entry>&& found)
{
    directory.path = path;
    directory.entries.clear();
    directory.places.clear();
    for (Entry& entry : found) {
        if (directory.places.emplace(entry.name, directory.entries.size()).second) {
            directory.entries.push_back(std::move(entry));
        }
    }
    showAgain(window);
}

void showFiltered(HWND window, const std::string& filter)
{
    directory.filter = filter.empty() ? "*" : filter;
    showAgain(window);
}

void forgetDirectory()
{
    directory = {};
}

// Inside a busy period, whose end gives the columns their width.
void showAgain(HWND window)
{
    std::string shown = shownDirectory();
    vXferDandDSetBusyState(window, TRUE);
    nXferDandDClearHostFileInfo(window, XFERCLEAR_FILES | XFERCLEAR_SUBDIRS | XFERCLEAR_WORKDIR);
    vXferDandDPrintWorkingDir(window, shown.c_str(), shown.c_str());
    for (const Entry& entry : directory.entries) {
        showRow(window, entry);
    }
    vXferDandDSetBusyState(window, isWorking());
}

const std::string& hostDirectory()
{
    return directory.path;
}

std::string shownDirectory()
{
    return shownName(directory.path, hostAddress().codePage);
}

const Entry* findEntry(const std::string& name)
{
    auto found = directory.places.find(name);
    return found != directory.places.end() ? &directory.entries[found->second] : nullptr;
}

const std::vector<Entry>& entries()
{
    return directory.entries;
}

void addEntry(HWND window, const Entry& entry)
{
    Entry copy = entry;
    removeEntry(window, entry.name);
    directory.places[copy.name] = directory.entries.size();
    directory.entries.push_back(copy);
    showRow(window, copy);
}

// The last one takes its place.
void removeEntry(HWND window, const std::string& name)
{
    auto found = directory.places.find(name);
    if (found == directory.places.end()) {
        return;
    }
    Entry& entry = directory.entries[found->second];
    if (entry.directory) {
        nXferDandDRemoveHostSubDir(window, entry.name.c_str());
    } else {
        nXferDandDRemoveHostFileName(window, entry.name.c_str());
    }
    entry = directory.entries.back();
    directory.places[entry.name] = found->second;
    directory.entries.pop_back();
    directory.places.erase(found);
}

std::string bytesOf(const std::string& name)
{
    std::string bytes;
    const Entry* entry = findEntry(name);
    if (entry != nullptr) {
        return entry->bytes;
    }
    return bytesOfName(name, hostAddress().codePage, &bytes) ? bytes : "";
}

std::string pathOf(const std::string& bytes)
{
    const std::string& path = directory.path;
    if (path.empty() || bytes.empty()) {
        return bytes.compare(0, 1, "/") == 0 ? bytes : "";
    }
    return bytes[0] == '/' ? bytes : path + (path.back() == '/' ? "" : "/") + bytes;
}

} // namespace demo
