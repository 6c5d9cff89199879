// Texts and paths that the sample programs make.
#ifndef SAMPLE_TEXT_H
#define SAMPLE_TEXT_H

#include <windows.h>

#include <string>

namespace sample {

// As printf.
std::string format(const char* pattern, ...);

// Joins a folder and a name with a backslash.
std::string joinPath(const std::string& folder, const std::string& name);

// The folder of a full path, with its backslash, and the name in it.
std::string folderOf(const std::string& path);
std::string lastPart(const std::string& path);

// The system's text for one of its errors, without a line end.
std::string systemWords(DWORD error);

// A number in groups of digits, as the user has them everywhere.
std::string grouped(DWORD number);

// Whether a name fits a pattern, in which "*" stands for any characters and "?" for one.
bool matches(const char* name, const char* pattern);

// The value behind an option such as "/speed:"; null if the argument is another one.
const char* valueOf(const char* argument, const char* option);

} // namespace sample

#endif
