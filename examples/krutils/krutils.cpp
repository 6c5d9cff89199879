// A stand-in for the closed library KRUTILS. It keeps a text of what the user did, shows the
// message box, and answers requests for help.
#include "krutils.h"
#include "../../shared/krutils.h"

#include <stdio.h>
#include <string.h>

namespace {

struct ActionName {
    int nAction;
    const char* pszName;
};

constexpr ActionName ACTIONS[] = {
    {KRACTION_LOCALDIR_CHANGED, "local directory"},
    {KRACTION_LOCALDIR_MADE, "local directory made"},
    {KRACTION_LOCALDIR_REMOVED, "local directory removed"},
    {KRACTION_LOCALFILE_DELETED, "local file deleted"},
    {KRACTION_LOCALFILE_RENAMED, "local file renamed"},
    {KRACTION_DRIVE_CHANGED, "local drive"},
    {KRACTION_HOSTDIR_CHANGED, "host directory"},
    {KRACTION_HOSTDIR_MADE, "host directory made"},
    {KRACTION_HOSTDIR_REMOVED, "host directory removed"},
    {KRACTION_HOSTFILE_DELETED, "host file deleted"},
    {KRACTION_HOSTFILE_RENAMED, "host file renamed"},
    {KRACTION_FILE_SENT, "sent"},
    {KRACTION_FILE_RECEIVED, "received"},
};

constexpr size_t CCH_RECORD = KR_MAX_RECORDED + 1;

char s_szText[CCH_RECORD];
size_t s_cchText;

// Drops the oldest lines, as many as it takes to have room for so many characters.
void makeRoom(size_t cchMore)
{
    char* pchKept = s_szText;
    while (s_cchText - size_t(pchKept - s_szText) + cchMore >= CCH_RECORD) {
        pchKept = strchr(pchKept, '\n') + 1;
    }
    s_cchText -= size_t(pchKept - s_szText);
    memmove(s_szText, pchKept, s_cchText + 1);
}

// Names have at most 259 characters, a command line a few hundred; what is longer is cut.
void appendLine(const char* pszWhat, const char* pszText)
{
    char szLine[1024];
    snprintf(szLine, sizeof szLine - 2, "%s: %s", pszWhat, pszText == nullptr ? "" : pszText);
    strcat(szLine, "\r\n");
    size_t cchLine = strlen(szLine);
    makeRoom(cchLine);
    memcpy(s_szText + s_cchText, szLine, cchLine + 1);
    s_cchText += cchLine;
}

const char* nameOf(int nAction)
{
    for (const ActionName& action : ACTIONS) {
        if (action.nAction == nAction) {
            return action.pszName;
        }
    }
    return "unknown action";
}

bool s_fUseHelpBox;

// The help file of a program has the program's name and is beside it. Returns whether it exists.
bool findHelpFile(char (&szFile)[MAX_PATH])
{
    DWORD cch = GetModuleFileNameA(nullptr, szFile, MAX_PATH);
    char* pchDot = strrchr(szFile, '.');
    if (cch == 0 || cch >= MAX_PATH || pchDot == nullptr || strlen(pchDot) != strlen(".HLP")) {
        strcpy(szFile, "KRDEMO.HLP");
        return false;
    }
    strcpy(pchDot, ".HLP");
    return GetFileAttributesA(szFile) != MAXDWORD;
}

// Help is asked for in the window that is active.
void showNoHelp()
{
    char szTitle[128] = "";
    char szText[256];
    HWND hwnd = GetActiveWindow();
    GetWindowTextA(hwnd, szTitle, sizeof szTitle);
    snprintf(szText, sizeof szText,
             "This program has no help file. Help was requested for the window \"%s\".", szTitle);
    MessageBoxA(hwnd, szText, "Help", MB_OK | MB_ICONINFORMATION);
}

} // namespace

const char* __stdcall KrGetHelpFile(void)
{
    static char s_szFile[MAX_PATH];
    if (findHelpFile(s_szFile) || !s_fUseHelpBox) {
        return s_szFile;
    }
    showNoHelp();
    return nullptr;
}

void __stdcall KrRecordAction(HWND, int nAction, const char* pszText)
{
    appendLine(nameOf(nAction), pszText);
}

void __stdcall KrRecordCommand(HWND, const char* pszCommand)
{
    appendLine("command", pszCommand);
}

void __stdcall KrMessageBoxId(HMODULE hModule, HWND hwndParent, UINT idString, int, int, int)
{
    char szText[256] = "";
    char szCaption[80] = "";
    LoadStringA(hModule, idString, szText, sizeof szText);
    GetWindowTextA(hwndParent, szCaption, sizeof szCaption);
    MessageBoxA(hwndParent, szText, szCaption, MB_OK | MB_ICONEXCLAMATION);
}

void __stdcall KrUseHelpBox(int fUse)
{
    s_fUseHelpBox = fUse != 0;
}

int __stdcall KrGetRecordedText(char* pszBuffer, int cchBuffer)
{
    if (pszBuffer != nullptr && cchBuffer > 0) {
        lstrcpynA(pszBuffer, s_szText, cchBuffer);
    }
    return int(s_cchText);
}

void __stdcall KrForgetRecordedText(void)
{
    s_szText[0] = '\0';
    s_cchText = 0;
}
