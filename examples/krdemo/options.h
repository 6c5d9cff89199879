// What the command line says.
#ifndef KRDEMO_OPTIONS_H
#define KRDEMO_OPTIONS_H

#include "host.h"

namespace demo {

struct Options {
    std::string local;    // local folder, or the folder to copy from
    Address host;         // the folder to copy to has the built-in host
    bool copy = false;    // copy files, with a status window alone
    bool connect = false; // ask for a server
    bool usage = false;   // show what can be said here
    std::string language = "EN";
};

// Without folders the program's own is the local one, and one for temporary files the host.
Options readOptions();

// What /? shows.
extern const char USAGE[];

} // namespace demo

#endif
