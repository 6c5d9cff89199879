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

// For a program without a help file: from now on a request for help is answered by a box that
// names the window it came from, instead of the system's message about a missing file.
void __stdcall KrUseHelpBox(int fUse);

#ifdef __cplusplus
}
#endif

#endif
