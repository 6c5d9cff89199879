// The table of all commands: what runs, what the busy state does to it, and its toolbar button.
#ifndef TRANSFER_COMMANDS_TABLE_H
#define TRANSFER_COMMANDS_TABLE_H

#include "transfer/commands/commands.h"

namespace commands {

// What the busy state does to a command; the values can be combined.
enum BusyRule : DWORD {
    BUSY_LEAVES = 0,
    BUSY_OFF = 1,       // off while busy, button and menu item
    BUSY_OFF_TYPE = 2,  // off while busy; the button of the current type comes back checked
    BUSY_OFF_MODE = 4,  // off while busy; the button of the current mode comes back checked
    BUSY_OFF_PANES = 8, // on only when idle in two-pane mode
    BUSY_ON = 16,       // on only while busy
    BUSY_OFF_ITEM = 32  // off while busy, without a button
};

// Where a button stands among the others.
enum ButtonGap : bool { BUTTON_FOLLOWS, BUTTON_STARTS_GROUP };

constexpr int NO_PICTURE = -1;

struct CommandRow {
    WORD idCommand;
    void (*pfnRun)(const Command* pCommand); // null for a command that only the caller handles
    DWORD fsBusy;
    int iPicture; // of the toolbar, whose buttons stand in the order of their pictures
    ButtonGap gap;
};

constexpr int COMMAND_COUNT = 30;
extern const CommandRow COMMANDS[COMMAND_COUNT];

} // namespace commands

#endif
