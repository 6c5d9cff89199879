// What the viewer is to show: the file of its command line, or that of a control file.
#ifndef KRVIEWER_CONTROL_H
#define KRVIEWER_CONTROL_H

#include <windows.h>

struct ViewedFile {
    char szFile[MAX_PATH];
    char szTitle[MAX_PATH];   // name on the host, or of the file
    char szControl[MAX_PATH]; // empty unless the file is a temporary copy
};

// Understands "FILE" and "-ftp1CONTROLFILE". Returns false if there is nothing to show.
bool readCommandLine(ViewedFile* pViewed);

// Deletes a temporary copy and its control file.
void removeTemporary(const ViewedFile* pViewed);

#endif
