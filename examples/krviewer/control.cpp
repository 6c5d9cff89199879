#include "control.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr char CONTROL_OPTION[] = "-ftp1";
constexpr int CCH_LINE = MAX_PATH + 2; // with line end and NUL

// Lines of a control file. What the first two and the last hold is up to the caller and its
// viewer: the sample caller writes its own name, that of the host, and nothing.
enum ControlLine { LINE_CALLER, LINE_HOST, LINE_HOSTNAME, LINE_FILE, LINE_EMPTY, LINE_COUNT };

bool readLine(FILE* pFile, char (&szLine)[CCH_LINE])
{
    if (fgets(szLine, sizeof szLine, pFile) == nullptr) {
        return false;
    }
    char* pchEnd = strchr(szLine, '\n');
    if (pchEnd == nullptr) {
        return false;
    }
    *pchEnd = '\0';
    return true;
}

bool readControlFile(ViewedFile* pViewed)
{
    char lines[LINE_COUNT][CCH_LINE];
    FILE* pFile = fopen(pViewed->szControl, "rt");
    if (pFile == nullptr) {
        return false;
    }
    bool fWhole = true;
    for (auto& szLine : lines) {
        fWhole = fWhole && readLine(pFile, szLine);
    }
    fclose(pFile);
    if (!fWhole) {
        return false;
    }
    lstrcpynA(pViewed->szFile, lines[LINE_FILE], MAX_PATH);
    snprintf(pViewed->szTitle, sizeof pViewed->szTitle, "%s on %s", lines[LINE_HOSTNAME],
             lines[LINE_HOST]);
    return true;
}

bool isControlOption(const char* pszArgument)
{
    return strncmp(pszArgument, CONTROL_OPTION, strlen(CONTROL_OPTION)) == 0;
}

} // namespace

bool readCommandLine(ViewedFile* pViewed)
{
    *pViewed = {};
    if (__argc != 2 || strlen(__argv[1]) >= MAX_PATH) {
        return false;
    }
    if (isControlOption(__argv[1])) {
        strcpy(pViewed->szControl, __argv[1] + strlen(CONTROL_OPTION));
        return readControlFile(pViewed);
    }
    strcpy(pViewed->szFile, __argv[1]);
    const char* pchLast = strrchr(__argv[1], '\\');
    strcpy(pViewed->szTitle, pchLast != nullptr ? pchLast + 1 : __argv[1]);
    return true;
}

void removeTemporary(const ViewedFile* pViewed)
{
    if (pViewed->szControl[0] == '\0') {
        return;
    }
    if (pViewed->szFile[0] != '\0') {
        DeleteFileA(pViewed->szFile);
    }
    DeleteFileA(pViewed->szControl);
}
