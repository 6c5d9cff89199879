// What this stand-in for KRUTILS adds for the program that loads it.
#ifndef KRUTILS_KRUTILS_H
#define KRUTILS_KRUTILS_H

#include <windows.h>

extern "C" {

// Copies the recorded actions and commands, a line each, oldest first, cut to the buffer.
// Gives the length of the whole text in characters, without its NUL.
int __stdcall KrGetRecordedText(char* pszBuffer, int cchBuffer);

void __stdcall KrForgetRecordedText(void);
}

#endif
