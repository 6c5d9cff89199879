// The dialogs of this program, and the numbers of its resources.
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
#define IDC_CONNECT_PROTOCOL 106
#define IDC_CONNECT_KEY 107
#define IDC_PASSWORD_LABEL 108
#define IDC_MANY_QUESTION 109

#ifndef RC_INVOKED
#include "host.h"

namespace demo {

// Shows what the address holds, but for its password, and changes it if the user presses OK. False
// if not.
bool askForServer(HWND owner, Address* address);

// Asks for the password, or for the passphrase of the key, unless the address has it or comes as a
// guest. False if the user cancels.
bool askForPassword(HWND owner, Address* address);

// Returns IDYES, IDOK for "yes to all", IDNO or IDCANCEL.
int askAboutMany(HWND owner, const char* question);

} // namespace demo
#endif

#endif
