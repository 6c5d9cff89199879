// The program at the start of a command line.
#ifndef DIALOGS_PROGRAM_H
#define DIALOGS_PROGRAM_H

namespace dialogs {

// Appends the path of a program to a command line, from its directory, which ends in a backslash,
// and its name. The platform takes a path apart at its blanks: a directory with blanks is replaced
// by its short form, and the path is quoted if it has blanks even so.
void appendProgram(char* pszCommand, const char* pszDir, const char* pszName);

// The platform looks for a program without a full path in the current directory first, which is
// where received files land. If it would find one there, this replaces the program's name by its
// full path in the system's directories. Returns false if there is no such program in them.
// pszSafe has room for a path and the whole command line.
bool makeCommandSafe(char* pszSafe, const char* pszCommand);

} // namespace dialogs

#endif
