// Lines of a server's list of a directory.
#ifndef KRDEMO_LISTING_H
#define KRDEMO_LISTING_H

#include "host.h"

namespace demo {

enum class Line {
    Entry,
    Nothing, // tells of nothing inside the directory
    Odd      // says nothing that is understood
};

// A line of a list that is made for programs (MLSD), and one made for people (LIST), as servers of
// two families write it. Both fill in the bytes of the entry, its size and its kind.
Line readFactLine(const std::string& line, Entry* entry);
Line readPeopleLine(const std::string& line, Entry* entry);

} // namespace demo

#endif
