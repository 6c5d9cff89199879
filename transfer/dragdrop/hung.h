// A loop that handles no messages, on a platform that takes such a thread for hung.
#ifndef TRANSFER_DRAGDROP_HUNG_H
#define TRANSFER_DRAGDROP_HUNG_H

#include <windows.h>

namespace dragdrop {

// Since when the system has not seen the thread look for messages, in milliseconds of its clock.
// fCounted is false where the system doesn't count.
struct Silence {
    bool fCounted;
    DWORD dwSince;
};
Silence beginSilence();

// Called on each pass: looks for messages often enough, and takes none. Posted messages and input
// wait for the end of the loop, but one that another thread sends can be handled in here.
void keepResponsive(Silence* pSilence);

} // namespace dragdrop

#endif
