// The dialog that asks for a server, and the numbers of this program's resources.
#ifndef KRDEMO_CONNECT_H
#define KRDEMO_CONNECT_H

#define IDM_CONNECT 301
#define IDM_FOLDER 302
#define IDM_EXIT 303

#define IDC_CONNECT_SERVER 101
#define IDC_CONNECT_PORT 102
#define IDC_CONNECT_USER 103
#define IDC_CONNECT_PASSWORD 104
#define IDC_CONNECT_PATH 105

#ifndef RC_INVOKED
#include "host.h"

// Shows what the address holds, and changes it if the user presses OK. Gives false if not.
bool askForServer(HWND hwndOwner, HostAddress* pAddress);
#endif

#endif
