// Names of files or directories, collected and then sorted once, in the order of lstrcmpA.
#ifndef TRANSFER_PANES_NAMESORT_H
#define TRANSFER_PANES_NAMESORT_H

#include <windows.h>

namespace panes {

struct SortedName {
    const char* pszName;
    const BYTE* pbKey; // null if there was no memory for it
    DWORD cbKey;
    LONG nPlace; // order of arrival, which decides between equal names
    LONG nTag;   // for the caller's use, as is nGroup
    LONG nGroup;
};

struct NameBlock;

// Starts zeroed. Owns its texts until freeNames.
struct Names {
    SortedName* pNames;
    LONG cNames;
    LONG cRoom;
    NameBlock* pBlocks;
};

// Adds a copy of a name. Returns false if there is no memory for it; the others stay.
bool addName(Names* pNames, const char* pszName, LONG nTag = 0);

// Sorts all names; equal ones keep the order in which they were added.
void sortNames(Names* pNames);

// Whether a name of a sorted list equals the one before it.
bool equalsPrevious(const Names* pNames, LONG n);

void freeNames(Names* pNames);

} // namespace panes

#endif
