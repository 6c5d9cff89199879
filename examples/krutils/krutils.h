// What this stand-in for KRUTILS adds for the program that loads it.
#ifndef KRUTILS_KRUTILS_H
#define KRUTILS_KRUTILS_H

#include <windows.h>

// Longest text that is kept, in characters without the NUL. Older lines are dropped.
#define KR_MAX_RECORDED 65535

#ifdef __cplusplus
extern "C" {
#endif

// Copies the recorded actions and commands, a line each, oldest first, cut to the buffer.
// Returns the length of the whole text in characters, without its NUL.
int __stdcall KrGetRecordedText(char* pszBuffer, int cchBuffer);

void __stdcall KrForgetRecordedText(void);

// For a program without a help file, which calls it with 1 at its start: a request for help is then
// answered by a box that names the window it came from. With 0, as at first, the library is given
// the name of a file that is missing.
void __stdcall KrUseHelpBox(int fUse);

#ifdef __cplusplus
}
#endif

#endif
