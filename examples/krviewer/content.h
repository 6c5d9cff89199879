// The contents of a file as lines to read: its text, or its bytes if it isn't text.
#ifndef KRVIEWER_CONTENT_H
#define KRVIEWER_CONTENT_H

constexpr unsigned CB_SHOWN = 256 * 1024; // the rest of a longer file isn't shown

struct Content {
    char* pszLines; // free() it
    bool fCut;
};

// Returns false, and allocates nothing, if the file can't be read.
bool readContent(const char* pszFile, Content* pContent);

#endif
