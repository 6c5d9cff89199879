// libcurl in a message loop: the multi interface, told of sockets by window messages and of time by
// a timer. Nothing of it blocks, so everything runs on the thread of the windows.
#ifndef KRDEMO_CURLLOOP_H
#define KRDEMO_CURLLOOP_H

#include <winsock2.h>

#include <curl/curl.h>

#include <functional>

namespace demo {

void openCurlLoop();

// Gives running transfers some time to come to their end, then ends everything at once.
void closeCurlLoop(DWORD patience);

// Runs a transfer. onEnd is called from the message loop, after the handle has been taken out.
void runHandle(CURL* easy, std::function<void(CURLcode)> onEnd);

// Ends a transfer at once, together with its connection. onEnd isn't called.
void dropHandle(CURL* easy);

} // namespace demo

#endif
