// Requests to the caller, through the callbacks of its table. A callback that is null is not
// called, and nothing is recorded for it. File names are recorded before the callback, directories
// after it. The window can be destroyed in every callback and whenever something is recorded.
#ifndef TRANSFER_WINDOW_REQUEST_H
#define TRANSFER_WINDOW_REQUEST_H

#include "transfer/window/record.h"

enum Direction { XFERDIR_RECEIVE = 0, XFERDIR_SEND = 1 };

namespace window {

// What the caller is to do with a list of files. A direction is a request.
enum FileRequest {
    FILES_RECEIVE = XFERDIR_RECEIVE,
    FILES_SEND = XFERDIR_SEND,
    FILES_DELETE,
    FILES_DETAILS,
    FILES_VIEW
};

// Where the name of a directory comes from.
enum NameSource : DWORD { NAME_TYPED = 0, NAME_FROM_LIST = 1 };

// Asks the caller for the confirmation flags. If the caller keeps none, every deletion is
// confirmed.
DWORD confirmFlags(const XferWindowRecord* pRecord);
void setConfirmFlags(const XferWindowRecord* pRecord, DWORD dwFlags);

// Whether the caller has a callback for a request.
bool canRequest(const XferWindowRecord* pRecord, FileRequest request);

// The column of a list that holds the names of a request, and the action that is recorded for each
// of them, 0 for none.
LONG columnOf(FileRequest request);
int actionOf(FileRequest request);

// Passes a list of names to the callback, which owns it from then on. Only for a request that the
// caller has a callback for. Only a request to send knows a host directory; null is the current
// one.
void requestFiles(const XferWindowRecord* pRecord, FileRequest request, XferFileList list,
                  const char* pszHostDir = nullptr);

// The same for a single typed name: makes the list, records the name and calls.
void requestFile(const XferWindowRecord* pRecord, FileRequest request, const char* pszName);

// Records pszReport, and calls if the window still exists.
void requestRename(const XferWindowRecord* pRecord, const char* pszOld, const char* pszNew,
                   const char* pszReport);

void requestMakeDir(const XferWindowRecord* pRecord, const char* pszDir);
void requestRemoveDir(const XferWindowRecord* pRecord, const char* pszDir, NameSource source);

// Whether a change of directory is recorded depends on where it was asked for.
void requestChangeDir(const XferWindowRecord* pRecord, const char* pszDir, NameSource source);
void requestRecordedChangeDir(const XferWindowRecord* pRecord, const char* pszDir,
                              NameSource source);

void requestFilter(const XferWindowRecord* pRecord, const char* pszFilter);

// Records the command, and calls if the window still exists. pszCommand isn't a scratch buffer.
void requestCommand(const XferWindowRecord* pRecord, const char* pszCommand);

// Returns whether the window still exists afterwards.
bool reportViewMode(const XferWindowRecord* pRecord, LONG nViewMode);

} // namespace window

#endif
