// The work with the host: one piece at a time, each made of requests, which follow one another from
// the message loop until the piece is ended or stopped.
#ifndef KRDEMO_WORK_H
#define KRDEMO_WORK_H

#include "host.h"

namespace demo {

// The host of the program. Questions are asked in front of the owner.
void openHost(const Address& address);
void closeHost();
const Address& hostAddress();
void setAsker(HWND owner);

// Begins a piece of work; false if one is going on. onEnd is called when it has ended.
bool beginWork(std::function<void(bool stopped)> onEnd);
void endWork();

// Stops the request that is running, and with it the work.
void stopWork();

bool isWorking();

// The number of the work that goes on, and whether it still does: a question lets the user do
// anything meanwhile.
unsigned workNumber();
bool isWorking(unsigned number);

// Asks the host for something, as part of the work.
void askHost(Request&& request);
void removeOnHost(const std::string& path, std::function<void(const Answer&)> onDone);

// Asks the user, in a message box. Returns the button.
int ask(const std::string& question, UINT type);

} // namespace demo

#endif
