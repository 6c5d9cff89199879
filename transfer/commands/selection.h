// What the commands on selected rows share. A selection counts in two-pane mode only.
#ifndef TRANSFER_COMMANDS_SELECTION_H
#define TRANSFER_COMMANDS_SELECTION_H

#include "transfer/commands/commands.h"
#include "transfer/panes/rows.h"
#include "transfer/window/request.h"

namespace commands {

// Returns 0 in command line mode.
LONG countSelected(const Command* pCommand, int idList);

// The row of a directory list that a command acts on.
enum RowState { ROW_NONE, ROW_BROKEN, ROW_FOUND };
RowState selectedDir(const Command* pCommand, int idList, panes::Row* pRow);

// Passes the selected host files to the caller.
void requestSelection(const Command* pCommand, window::FileRequest request);

// Calls for the name of each selected local file, for as long as the window exists and the process
// is in the directory that was shown at first. Nothing is called if the names mean files of another
// directory.
void forSelectedLocalFiles(const Command* pCommand,
                           void (*pfnFile)(const Command* pCommand, const char* pszName));

// Shows a string of the language module in the strip.
void showString(const Command* pCommand, UINT idString);

} // namespace commands

#endif
