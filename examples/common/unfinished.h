// A local file that is being received. It has a name that nothing else has until it is whole,
// and it goes if it is given up.
#ifndef SAMPLE_UNFINISHED_H
#define SAMPLE_UNFINISHED_H

#include <windows.h>

#include <string>

namespace sample {

struct Unfinished {
    HANDLE handle = INVALID_HANDLE_VALUE;
    std::string path; // empty if there is none
};

// All of these return false, with the reason as last error, if it can't be done.
bool openUnfinished(Unfinished* unfinished, const std::string& folder);
bool writeUnfinished(const Unfinished* unfinished, const void* bytes, size_t count);

// The file is whole: it takes its name, a full path. One that is there already is replaced if
// that is allowed. If it can't be done, the unfinished file is still there to be given up.
bool nameUnfinished(Unfinished* unfinished, const std::string& path, bool replace);

// Closes and deletes the file, if there is one.
void giveUpUnfinished(Unfinished* unfinished);

} // namespace sample

#endif
