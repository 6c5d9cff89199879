// Names of a host: the bytes that it knows a file by, and the text that the windows show.
//
// Whatever can't be shown just as it is stands in "<>" by its bytes, "<E697A5>.txt": characters
// that this system's code page lacks, bytes that are no text in the host's encoding, control
// characters, blanks at the ends, and "<" and ">" themselves. So two names never show alike, each
// shown name leads back to the very bytes, and none with such a piece in it can become a local
// file.
#ifndef KRDEMO_NAMES_H
#define KRDEMO_NAMES_H

#include <windows.h>

#include <string>

namespace demo {

std::string shownName(const std::string& bytes, UINT codePage);

// The bytes of a name that was shown or typed. Returns false if the host's encoding lacks a
// character of it, or if it can't be part of a command.
bool bytesOfName(const std::string& shown, UINT codePage, std::string* bytes);

// A text of the host to be read: what can't be shown is replaced.
std::string shownWords(const std::string& bytes);

} // namespace demo

#endif
