// A stand-in for the closed library KRUTILS: recorded actions become lines of a text, and
// the message box is a real one.
#include "krutils.h"
#include "../../shared/krutils.h"

#include <stdlib.h>
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

// The text grows without limit; a program that records for long forgets it now and then.
char* s_pszText;
size_t s_cchText;
size_t s_cchRoom;

bool makeRoom(size_t cchMore)
{
    if (s_cchText + cchMore < s_cchRoom) {
        return true;
    }
    size_t cchRoom = (s_cchText + cchMore) * 2 + 256;
    void* pNew = realloc(s_pszText, cchRoom);
    if (pNew == nullptr) {
        return false;
    }
    s_pszText = static_cast<char*>(pNew);
    s_cchRoom = cchRoom;
    return true;
}

void append(const char* psz)
{
    size_t cch = strlen(psz);
    if (makeRoom(cch)) {
        memcpy(s_pszText + s_cchText, psz, cch + 1);
        s_cchText += cch;
    }
}

void appendLine(const char* pszWhat, const char* pszText)
{
    append(pszWhat);
    append(": ");
    append(pszText == nullptr ? "" : pszText);
    append("\r\n");
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

} // namespace

const char* __stdcall KrGetHelpFile(void)
{
    return "KRDEMO.HLP";
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

int __stdcall KrGetRecordedText(char* pszBuffer, int cchBuffer)
{
    if (pszBuffer != nullptr && cchBuffer > 0) {
        lstrcpynA(pszBuffer, s_pszText == nullptr ? "" : s_pszText, cchBuffer);
    }
    return int(s_cchText);
}

void __stdcall KrForgetRecordedText(void)
{
    free(s_pszText);
    s_pszText = nullptr;
    s_cchText = s_cchRoom = 0;
}
