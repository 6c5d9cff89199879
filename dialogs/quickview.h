// The quick viewer of the system, which the registry names.
#ifndef DIALOGS_QUICKVIEW_H
#define DIALOGS_QUICKVIEW_H

#include <windows.h>

// Reads the quick viewer's command line into a buffer of cbCommand + 1 bytes. Returns 1 if the
// quick viewer can be used, which it can if it knows text files.
int fXferDandDFindQuickView(char* pszCommand, DWORD cbCommand);

#endif
