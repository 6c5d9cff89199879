// The terminal's window: screen and menu, a connection, and a transfer now and then.
#ifndef KRTERM_TERMINAL_H
#define KRTERM_TERMINAL_H

#include "order.h"
#include "resource.h"

// Makes the window, not yet shown; null if it can't be made.
HWND openTerminal(HINSTANCE hInstance);
HWND terminalWindow();

// Connects to "host[:port]".
void connectTerminal(const char* address);

// Returns false if there is no connection, or a transfer runs already.
bool transferInTerminal(const TransferOrder* order);

#endif
