// What the command line says.
#ifndef KRDEMO_OPTIONS_H
#define KRDEMO_OPTIONS_H

#include <windows.h>

struct DemoOptions {
    char szFrom[MAX_PATH];     // folder whose files are copied
    char szTo[MAX_PATH];       // folder that they are copied to
    char szPictures[MAX_PATH]; // folder for pictures of the run, or empty for none
    DWORD cbPerSecond;         // speed of the line that the copies go over
};

// Reads "[FROM TO] [/pictures:FOLDER] [/speed:BYTES]". Without folders, the files beside the
// program are copied into the folder for temporary files.
void readOptions(DemoOptions* pOptions);

// Joins a folder and a name. Gives false, with an empty result, if they don't fit.
bool joinPath(char (&szPath)[MAX_PATH], const char* pszFolder, const char* pszName);

#endif
