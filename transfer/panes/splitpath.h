// Taking a typed path apart.
#ifndef TRANSFER_PANES_SPLITPATH_H
#define TRANSFER_PANES_SPLITPATH_H

#include "transfer/window/record.h"

struct XferPathParts {
    char szDrive[3];  // letter and colon, or empty
    char szDir[256];  // with its trailing backslash, or empty
    char szName[260]; // file name, mask, or empty
    LONG fWildcard;   // the name holds "*" or "?"
};

// Takes a path apart that _fullpath has completed. The last part has to be a short file name,
// counted in bytes as the platform does; if it names a directory, which only a search can tell, it
// becomes part of the directory. Returns 0, or -1 for a text that is no path of this kind or whose
// directory is longer than its field.
int nXferDandDSplitPath(const char* pszPath, XferPathParts* pParts);

#endif
