// The button and the menu item of a command.
#ifndef TRANSFER_COMMANDS_TOOLBAR_H
#define TRANSFER_COMMANDS_TOOLBAR_H

#include <windows.h>

namespace commands {

LRESULT sendToToolbar(HWND hdlgDandD, UINT uMessage, WPARAM wParam, LPARAM lParam);

bool isButtonChecked(HWND hdlgDandD, WORD idCommand);
void enableButton(HWND hdlgDandD, WORD idCommand, bool fEnabled);
void enableItem(HWND hdlgDandD, WORD idCommand, bool fEnabled);
void checkItem(HWND hdlgDandD, WORD idCommand, bool fChecked);

} // namespace commands

#endif
