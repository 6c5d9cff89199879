// Names of files or directories, collected and then sorted once, in the order of lstrcmpA.
#ifndef TRANSFER_NAMESORT_H
#define TRANSFER_NAMESORT_H

#include <windows.h>

struct XferSortedName {
    const char* pszName;
    const BYTE* pbKey; // null where there was no memory for it
    DWORD cbKey;
    LONG nPlace; // as it came; decides between equal names
};

struct XferNameBlock;

// Starts zeroed. Owns its texts until vXferNamesFree.
struct XferNames {
    XferSortedName* pNames;
    LONG cNames;
    LONG cRoom;
    XferNameBlock* pBlocks;
};

// Takes a copy of a name. Gives false if there is no memory for it; the list goes on without.
bool fXferNamesAdd(XferNames* pNames, const char* pszName);

// Sorts all names; equal ones stay in the order in which they came.
void vXferNamesSort(XferNames* pNames);

// Whether a name of a sorted list equals the one before it.
bool fXferNamesSameAsBefore(const XferNames* pNames, LONG n);

void vXferNamesFree(XferNames* pNames);

#endif
