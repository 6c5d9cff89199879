// Copying all files of a folder with a status window alone, as a protocol does that has no
// transfer window.
#ifndef KRDEMO_COPY_H
#define KRDEMO_COPY_H

#include "options.h"

namespace demo {

// Starts copying; what comes of it goes into the log, a list box. False if there is nothing to copy
// or no window.
bool startCopy(const Options& options, HWND main, HWND log);

bool hasCopiedAll();

} // namespace demo

#endif
