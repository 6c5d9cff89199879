// Details of local files, as lines in the style of a directory listing, and the size of a file.
#ifndef TRANSFER_PANES_DETAILS_H
#define TRANSFER_PANES_DETAILS_H

#include "transfer/window/record.h"

#include <sys/stat.h>

// Writes a line about a local file to the log; nothing if there is no such file.
void vXferDandDFileDetails(HWND hdlgDandD, const char* pszName);

// Returns 0, or another value if the file can't be opened for reading or examined.
int nXferDandDFileStat(const char* pszPath, struct _stat* pStat);

#endif
