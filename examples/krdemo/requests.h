// What the transfer window asks of the host, request by request.
#ifndef KRDEMO_REQUESTS_H
#define KRDEMO_REQUESTS_H

#include "../../include/krhaul.h"

#include <string>

namespace demo {

// The table of callbacks. Not const: the creation of a window writes into it.
HostCallbacks* requestCallbacks();

// Goes to a directory, as its user types it, and shows it; an empty one means the present one.
void enterDirectory(const std::string& way);

} // namespace demo

#endif
