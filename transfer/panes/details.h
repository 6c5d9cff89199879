// Details of local files, as lines in the style of a directory listing, and the size of a file.
#ifndef TRANSFER_PANES_DETAILS_H
#define TRANSFER_PANES_DETAILS_H

#include "transfer/window/record.h"

#include <sys/stat.h>

void vXferDandDFileDetails(HWND hdlgDandD, const char* pszName);
int nXferDandDFileStat(const char* pszPath, struct _stat* pStat);

#endif
