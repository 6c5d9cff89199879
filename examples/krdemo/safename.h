// Whether a name that came from a host can become a file of the local directory.
#ifndef KRDEMO_SAFENAME_H
#define KRDEMO_SAFENAME_H

// Gives null if the name is that of a plain file in the directory itself, else what is wrong
// with it. Asked for the name as it will be used, after the last change to it.
const char* nameProblem(const char* pszName);

#endif
