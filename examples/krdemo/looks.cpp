#include "looks.h"
#include "job.h"
#include "picture.h"
#include "session.h"
#include "user.h"
#include "worker.h"
#include "../../resources/ids.h"

#include <stdio.h>
#include <string.h>

namespace {

constexpr int CCH_LOG = 30001;
constexpr LONG STRIP_HEIGHT = 26;

DemoOptions s_options;

// A row that is looked for, or a text.
struct Wanted {
    int id;
    const char* pszText;
};

const Wanted* wanted(const void* pContext)
{
    return static_cast<const Wanted*>(pContext);
}

bool holdsRow(const void* pContext)
{
    return rowOf(wanted(pContext)->id, wanted(pContext)->pszText) != LB_ERR;
}

bool lacksRow(const void* pContext)
{
    return !holdsRow(pContext);
}

bool holdsOnlyRowsWith(const void* pContext)
{
    char szText[MAX_PATH];
    HWND hwndList = control(wanted(pContext)->id);
    auto cRows = int(SendMessageA(hwndList, LB_GETCOUNT, 0, 0));
    for (int n = 0; n < cRows; ++n) {
        SendMessageA(hwndList, LB_GETTEXT, WPARAM(n), reinterpret_cast<LPARAM>(szText));
        if (strstr(szText, wanted(pContext)->pszText) == nullptr) {
            return false;
        }
    }
    return cRows > 0;
}

bool hasRowInSight(const void* pContext)
{
    RECT rc = {};
    RECT rcClient = {};
    HWND hwndList = control(wanted(pContext)->id);
    int nRow = rowOf(wanted(pContext)->id, wanted(pContext)->pszText);
    SendMessageA(hwndList, LB_GETITEMRECT, WPARAM(nRow), reinterpret_cast<LPARAM>(&rc));
    GetClientRect(hwndList, &rcClient);
    return nRow != LB_ERR && rc.left >= 0 && rc.top >= 0 && rc.right <= rcClient.right &&
           rc.bottom <= rcClient.bottom;
}

bool isIdle(const void*)
{
    return !isTaskRunning() &&
           (GetMenuState(GetMenu(sessionWindow()), IDM_XFER_TRANSFER, MF_BYCOMMAND) & MF_GRAYED) ==
               0;
}

bool isBusy(const void*)
{
    return isJobRunning();
}

bool isVisible(const void* pContext)
{
    return IsWindowVisible(control(wanted(pContext)->id)) != 0;
}

bool hasText(const void* pContext)
{
    char szText[MAX_PATH] = "";
    SendMessageA(control(wanted(pContext)->id), WM_GETTEXT, MAX_PATH,
                 reinterpret_cast<LPARAM>(szText));
    return strcmp(szText, wanted(pContext)->pszText) == 0;
}

bool isLogged(const void* pContext)
{
    static char s_szLog[CCH_LOG];
    SendMessageA(control(IDC_DANDD_INFOLINE), WM_GETTEXT, sizeof s_szLog,
                 reinterpret_cast<LPARAM>(s_szLog));
    return strstr(s_szLog, static_cast<const char*>(pContext)) != nullptr;
}

bool isItemChecked(const void* pContext)
{
    auto idCommand = *static_cast<const UINT*>(pContext);
    return (GetMenuState(GetMenu(sessionWindow()), idCommand, MF_BYCOMMAND) & MF_CHECKED) != 0;
}

bool hasBox(const void*)
{
    return isBoxOpen();
}

bool asksQuestion(const void* pContext)
{
    return isBoxOpen() && FindWindowExA(GetForegroundWindow(), nullptr, "Static",
                                        static_cast<const char*>(pContext)) != nullptr;
}

bool hasNoBox(const void*)
{
    return GetForegroundWindow() == sessionWindow();
}

bool showsStrip(const void* pContext)
{
    return sumOfStrip() == *static_cast<const DWORD*>(pContext);
}

bool showsOtherStrip(const void* pContext)
{
    return !showsStrip(pContext);
}

bool hasFile(const void* pContext)
{
    return isThere(static_cast<const char*>(pContext));
}

bool hasNoFile(const void* pContext)
{
    return !hasFile(pContext);
}

bool waitForWanted(bool (*pfnHolds)(const void*), int id, const char* pszText)
{
    Wanted context = {id, pszText};
    return waitFor(pfnHolds, &context);
}

bool waitInFolder(bool (*pfnHolds)(const void*), const char* pszFolder, const char* pszName)
{
    char szPath[MAX_PATH];
    joinPath(szPath, pszFolder, pszName);
    return waitFor(pfnHolds, szPath);
}

bool haveEqualBytes(FILE* pFile1, FILE* pFile2)
{
    static char s_chunks[2][64 * 1024];
    size_t cb = 1;
    bool fEqual = true;
    while (fEqual && cb > 0) {
        cb = fread(s_chunks[0], 1, sizeof s_chunks[0], pFile1);
        fEqual = fread(s_chunks[1], 1, sizeof s_chunks[1], pFile2) == cb &&
                 memcmp(s_chunks[0], s_chunks[1], cb) == 0;
    }
    return fEqual;
}

} // namespace

void setLooks(const DemoOptions* pOptions)
{
    s_options = *pOptions;
}

HWND control(int id)
{
    return GetDlgItem(sessionWindow(), id);
}

int rowOf(int idList, const char* pszName)
{
    return int(SendMessageA(control(idList), LB_FINDSTRINGEXACT, WPARAM(-1),
                            reinterpret_cast<LPARAM>(pszName)));
}

POINT rowPoint(int idList, const char* pszName)
{
    return pointOfRow(control(idList), rowOf(idList, pszName));
}

bool waitForRow(int idList, const char* pszName)
{
    return waitForWanted(holdsRow, idList, pszName);
}

bool waitForNoRow(int idList, const char* pszName)
{
    return waitForWanted(lacksRow, idList, pszName);
}

bool waitForRowsWith(int idList, const char* pszPart)
{
    return waitForWanted(holdsOnlyRowsWith, idList, pszPart);
}

bool waitForRowInSight(int idList, const char* pszName)
{
    return waitForWanted(hasRowInSight, idList, pszName);
}

bool waitForIdle()
{
    return waitFor(isIdle, nullptr);
}

bool waitForBusy()
{
    return waitFor(isBusy, nullptr);
}

bool waitForControl(int id)
{
    return waitForWanted(isVisible, id, nullptr);
}

bool waitForText(int id, const char* pszText)
{
    return waitForWanted(hasText, id, pszText);
}

bool waitForLog(const char* pszText)
{
    return waitFor(isLogged, pszText);
}

bool waitForCheckedItem(UINT idCommand)
{
    return waitFor(isItemChecked, &idCommand);
}

bool isBoxOpen()
{
    HWND hwnd = GetForegroundWindow();
    return hwnd != sessionWindow() && GetWindow(hwnd, GW_OWNER) == sessionWindow();
}

bool waitForBox()
{
    bool fBox = waitFor(hasBox, nullptr);
    rest();
    return fBox;
}

bool waitForQuestion(const char* pszText)
{
    bool fAsked = waitFor(asksQuestion, pszText);
    rest();
    return fAsked;
}

bool waitForNoBox()
{
    bool fNoBox = waitFor(hasNoBox, nullptr);
    rest();
    return fNoBox;
}

DWORD sumOfStrip()
{
    RECT rc = {};
    GetClientRect(sessionWindow(), &rc);
    rc.top = rc.bottom - STRIP_HEIGHT;
    MapWindowPoints(sessionWindow(), nullptr, reinterpret_cast<POINT*>(&rc), 2);
    return sumOfScreen(&rc);
}

bool waitForOtherStrip(DWORD dwSum)
{
    return waitFor(showsOtherStrip, &dwSum);
}

bool waitForStrip(DWORD dwSum)
{
    return waitFor(showsStrip, &dwSum);
}

void localPath(char (&szPath)[MAX_PATH], const char* pszName)
{
    joinPath(szPath, s_options.szFirst, pszName);
}

void hostPath(char (&szPath)[MAX_PATH], const char* pszName)
{
    joinPath(szPath, s_options.szSecond, pszName);
}

bool isThere(const char* pszPath)
{
    return GetFileAttributesA(pszPath) != INVALID_FILE_ATTRIBUTES;
}

bool waitForLocal(const char* pszName)
{
    return waitInFolder(hasFile, s_options.szFirst, pszName);
}

bool waitForHost(const char* pszName)
{
    return waitInFolder(hasFile, s_options.szSecond, pszName);
}

bool waitForNoLocal(const char* pszName)
{
    return waitInFolder(hasNoFile, s_options.szFirst, pszName);
}

bool waitForNoHost(const char* pszName)
{
    return waitInFolder(hasNoFile, s_options.szSecond, pszName);
}

bool areEqual(const char* pszLocalName, const char* pszHostName)
{
    char szLocal[MAX_PATH];
    char szHost[MAX_PATH];
    localPath(szLocal, pszLocalName);
    hostPath(szHost, pszHostName);
    FILE* pLocal = fopen(szLocal, "rb");
    FILE* pHost = fopen(szHost, "rb");
    bool fEqual = pLocal != nullptr && pHost != nullptr && haveEqualBytes(pLocal, pHost);
    FILE* const pFiles[] = {pLocal, pHost};
    for (FILE* pFile : pFiles) {
        if (pFile != nullptr) {
            fclose(pFile);
        }
    }
    return fEqual;
}

void pictureOf(HWND hwnd, const char* pszName)
{
    char szFile[MAX_PATH];
    char szPath[MAX_PATH];
    RECT rc = {};
    if (s_options.szPictures[0] == '\0') {
        return;
    }
    rest();
    GetWindowRect(hwnd, &rc);
    snprintf(szFile, sizeof szFile, "%s.bmp", pszName);
    joinPath(szPath, s_options.szPictures, szFile);
    takePicture(&rc, szPath);
}

void picture(const char* pszName)
{
    pictureOf(sessionWindow(), pszName);
}
