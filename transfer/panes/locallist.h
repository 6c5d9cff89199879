// The local panes. They are rebuilt whole by vXferDandDRefreshLocalFiles (krhaul.h).
#ifndef TRANSFER_PANES_LOCALLIST_H
#define TRANSFER_PANES_LOCALLIST_H

#include "transfer/window/record.h"

// The string of the mask that belongs to a row of the list of file types.
UINT nXferDandDTypePatternId(LRESULT nTypeRow);

int nXferDandDRemoveLocalFileName(HWND hdlgDandD, const char* pszName);

namespace panes {

// Reads the current directory of the process in the spelling of szLocalDir. Returns false, with an
// empty text, if it is unavailable.
bool readCurrentDir(char (&szDir)[XFER_NAME_SIZE]);

// Whether the process is in a directory, which is spelled like szLocalDir.
bool isCurrentDir(const char* pszDir);

// Names in the local panes are relative to the directory that is shown. Returns whether that is
// still the current directory of the process; if it isn't, the panes are refilled.
bool syncLocalPanes(XferWindowRecord* pRecord);

// The same for the names of files: a path in the filter line that Enter hasn't followed yet can
// fill the list with the files of another directory. In that case it writes to the log and returns
// false.
bool syncLocalFiles(XferWindowRecord* pRecord);

// Whether the names in the local file list mean files of the current directory. Only looks.
bool showsCurrentFiles(const XferWindowRecord* pRecord);

// Whether the local file list shows files of a directory, which is a full path in any spelling.
bool showsFilesOf(const XferWindowRecord* pRecord, const char* pszDir);

// The directory that the local panes show, remembered over what can run foreign code: a row is
// removed by its name only while the panes still show the directory of the file.
struct ShownDir {
    char szDir[XFER_NAME_SIZE];
};
ShownDir shownDir(const XferWindowRecord* pRecord);
bool stillShows(const XferWindowRecord* pRecord, const ShownDir* pDir);

} // namespace panes

#endif
