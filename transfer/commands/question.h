// The question before something local is deleted.
#ifndef TRANSFER_COMMANDS_QUESTION_H
#define TRANSFER_COMMANDS_QUESTION_H

#include "transfer/commands/commands.h"

namespace commands {

// The formats of the question, and of the report that a deletion failed, are cut to this size.
constexpr int CCH_QUESTION = 80;

struct Question {
    DWORD dwFlag; // the confirmation flag that asks for it
    UINT idText;
    UINT idCaption;
};

// Asks about a name, if the confirmation flags say so. Returns whether it may be deleted: false
// also if the window is gone, or the process isn't in the directory any more in which the name was
// selected.
bool mayDelete(const Command* pCommand, const Question* pQuestion, const char* pszName);

} // namespace commands

#endif
