#include "driver.h"
#include "job.h"
#include "picture.h"
#include "session.h"
#include "user.h"
#include "../../resources/ids.h"

#include <stdio.h>
#include <string.h>

namespace {

DemoOptions s_options;
HANDLE s_hThread;
int s_cFailed;

HWND control(int id)
{
    return GetDlgItem(sessionWindow(), id);
}

// ---- what can be waited for

bool holdsRow(const void* pContext)
{
    auto ppRow = static_cast<const char* const*>(pContext);
    int idList = ppRow[1] == nullptr ? IDC_DANDD_HOSTFILES : IDC_DANDD_LOCALFILES;
    return SendMessageA(control(idList), LB_FINDSTRINGEXACT, WPARAM(-1),
                        reinterpret_cast<LPARAM>(ppRow[0])) != LB_ERR;
}

bool waitForHostFile(const char* pszName)
{
    const char* const aszRow[] = {pszName, nullptr};
    return waitFor(holdsRow, aszRow);
}

bool waitForLocalFile(const char* pszName)
{
    const char* const aszRow[] = {pszName, pszName};
    return waitFor(holdsRow, aszRow);
}

bool isIdle(const void*)
{
    return !isJobRunning() &&
           (GetMenuState(GetMenu(sessionWindow()), IDM_XFER_TRANSFER, MF_BYCOMMAND) & MF_GRAYED) ==
               0;
}

bool isBusy(const void*)
{
    return isJobRunning();
}

bool isVisible(const void* pContext)
{
    return IsWindowVisible(control(*static_cast<const int*>(pContext))) != 0;
}

bool waitForControl(int id)
{
    return waitFor(isVisible, &id);
}

bool isThere(const void* pContext)
{
    return GetFileAttributesA(static_cast<const char*>(pContext)) != INVALID_FILE_ATTRIBUTES;
}

bool isGone(const void* pContext)
{
    return !isThere(pContext);
}

bool isPathShown(const void* pContext)
{
    char szPath[MAX_PATH] = "";
    SendMessageA(control(IDC_DANDD_HOSTPATH), WM_GETTEXT, MAX_PATH,
                 reinterpret_cast<LPARAM>(szPath));
    return strcmp(szPath, static_cast<const char*>(pContext)) == 0;
}

bool isLogged(const void* pContext)
{
    static char s_szLog[30001];
    SendMessageA(control(IDC_DANDD_INFOLINE), WM_GETTEXT, sizeof s_szLog,
                 reinterpret_cast<LPARAM>(s_szLog));
    return strstr(s_szLog, static_cast<const char*>(pContext)) != nullptr;
}

bool isBoxOpen(const void*)
{
    HWND hwnd = GetForegroundWindow();
    return hwnd != sessionWindow() && GetWindow(hwnd, GW_OWNER) == sessionWindow();
}

// ---- the folders

const char* pathIn(const char* pszFolder, const char* pszName)
{
    static char s_szPath[MAX_PATH];
    joinPath(s_szPath, pszFolder, pszName);
    return s_szPath;
}

bool areEqual(const char* pszName1, const char* pszName2)
{
    static char s_chunks[2][64 * 1024];
    FILE* pFiles[] = {fopen(pszName1, "rb"), fopen(pszName2, "rb")};
    bool fEqual = pFiles[0] != nullptr && pFiles[1] != nullptr;
    size_t cb = 1;
    while (fEqual && cb > 0) {
        cb = fread(s_chunks[0], 1, sizeof s_chunks[0], pFiles[0]);
        fEqual = fread(s_chunks[1], 1, sizeof s_chunks[1], pFiles[1]) == cb &&
                 memcmp(s_chunks[0], s_chunks[1], cb) == 0;
    }
    for (FILE* pFile : pFiles) {
        if (pFile != nullptr) {
            fclose(pFile);
        }
    }
    return fEqual;
}

bool hasArrived(const char* pszName)
{
    char szLocal[MAX_PATH];
    joinPath(szLocal, s_options.szFirst, pszName);
    return areEqual(szLocal, pathIn(s_options.szSecond, pszName));
}

void picture(const char* pszName)
{
    char szFile[MAX_PATH];
    char szPath[MAX_PATH];
    RECT rc = {};
    if (s_options.szPictures[0] == '\0') {
        return;
    }
    rest();
    GetWindowRect(sessionWindow(), &rc);
    snprintf(szFile, sizeof szFile, "%s.bmp", pszName);
    joinPath(szPath, s_options.szPictures, szFile);
    takePicture(&rc, szPath);
}

// ---- what a user does

int rowOf(int idList, const char* pszName)
{
    return int(SendMessageA(control(idList), LB_FINDSTRINGEXACT, WPARAM(-1),
                            reinterpret_cast<LPARAM>(pszName)));
}

POINT rowPoint(int idList, const char* pszName)
{
    return pointOfRow(control(idList), rowOf(idList, pszName));
}

// A menu item, by the mnemonics of its popup and of itself.
void chooseMenu(WORD vkPopup, WORD vkItem)
{
    pressWithAlt(vkPopup);
    pressKey(vkItem);
}

void typeLine(int idLine, const char* pszText)
{
    clickAt(middleOf(control(idLine)));
    pressKey(VK_HOME);
    holdKey(VK_SHIFT);
    pressKey(VK_END);
    letKey(VK_SHIFT);
    typeText(pszText);
    pressKey(VK_RETURN);
}

bool restAtStart()
{
    bool fReady = waitForLocalFile("report.txt") && waitFor(isIdle, nullptr);
    picture("two-pane-idle");
    return fReady;
}

bool pressAButton()
{
    POINT pt = {8 + 2 * 23 + 12, 13}; // the third button, delete
    ClientToScreen(control(IDC_DANDD_TOOLBAR), &pt);
    movePointer(pt);
    pressButton();
    picture("button-pressed");
    movePointer(middleOf(control(IDC_DANDD_INFOLINE)));
    releaseButton();
    return !isBoxOpen(nullptr);
}

bool openAMenu()
{
    pressWithAlt('V');
    pressKey(VK_DOWN);
    picture("menu-hint");
    pressKey(VK_ESCAPE);
    pressKey(VK_ESCAPE);
    return true;
}

// Two files that stand one below the other, selected with Shift and dragged onto the host's
// files.
bool sendByDrag()
{
    POINT ptFrom = rowPoint(IDC_DANDD_LOCALFILES, "notes.txt");
    POINT ptTo = middleOf(control(IDC_DANDD_HOSTFILES));
    clickAt(ptFrom);
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    letKey(VK_SHIFT);
    picture("two-pane-selection");
    ptFrom.x += 10; // far enough from the click for no double click
    movePointer(ptFrom);
    pressButton();
    dragTo(ptFrom, ptTo);
    releaseButton();
    return waitForHostFile("report.txt") && waitForHostFile("notes.txt") &&
           waitFor(isIdle, nullptr) && hasArrived("report.txt") && hasArrived("notes.txt");
}

// A host file, dragged onto a row of the local directories, which it enters.
bool receiveOntoADirectory()
{
    char szCopy[MAX_PATH];
    POINT ptFrom = rowPoint(IDC_DANDD_HOSTFILES, "manual.txt");
    POINT ptTo = rowPoint(IDC_DANDD_LOCALDIRS, "inbox");
    movePointer(ptFrom);
    pressButton();
    dragTo(ptFrom, ptTo);
    picture("drag-over-directory");
    releaseButton();
    picture("after-drop");
    joinPath(szCopy, s_options.szFirst, "inbox\\manual.txt");
    return waitFor(isThere, szCopy) && waitFor(isIdle, nullptr) &&
           areEqual(szCopy, pathIn(s_options.szSecond, "manual.txt"));
}

bool goBackUp()
{
    char szUp[MAX_PATH];
    snprintf(szUp, sizeof szUp, "%s\\", s_options.szFirst);
    typeLine(IDC_DANDD_LOCALFILTER, szUp);
    return waitForLocalFile("report.txt");
}

bool walkOnTheHost()
{
    doubleClickAt(rowPoint(IDC_DANDD_HOSTDIRS, "docs"));
    bool fInside = waitFor(isPathShown, "/docs") && waitFor(isIdle, nullptr);
    doubleClickAt(rowPoint(IDC_DANDD_HOSTDIRS, ".."));
    return waitFor(isPathShown, "/") && waitFor(isIdle, nullptr) && fInside;
}

// A transfer by menu, stopped in its middle: nothing of it stays.
bool stopATransfer()
{
    clickAt(rowPoint(IDC_DANDD_LOCALFILES, "big.bin"));
    chooseMenu('F', 'T');
    bool fBusy = waitFor(isBusy, nullptr);
    Sleep(1500);
    SetForegroundWindow(sessionWindow());
    picture("two-pane-busy");
    chooseMenu('V', 'S');
    WIN32_FIND_DATAA find;
    return waitFor(isIdle, nullptr) && fBusy && isGone(pathIn(s_options.szSecond, "big.bin")) &&
           FindFirstFileA(pathIn(s_options.szSecond, "krd*"), &find) == INVALID_HANDLE_VALUE;
}

bool deleteOnTheHost()
{
    clickAt(rowPoint(IDC_DANDD_HOSTFILES, "notes.txt"));
    chooseMenu('F', 'D');
    bool fAsked = waitFor(isBoxOpen, nullptr);
    pressKey(VK_RETURN);
    return waitFor(isGone, pathIn(s_options.szSecond, "notes.txt")) && waitFor(isIdle, nullptr) &&
           fAsked;
}

bool deleteHere()
{
    char szFile[MAX_PATH];
    joinPath(szFile, s_options.szFirst, "notes.txt");
    clickAt(rowPoint(IDC_DANDD_LOCALFILES, "notes.txt"));
    chooseMenu('F', 'D');
    bool fAsked = waitFor(isBoxOpen, nullptr);
    picture("confirm-delete");
    pressKey(VK_RETURN);
    return waitFor(isGone, szFile) && fAsked;
}

bool removeADirectory()
{
    char szDir[MAX_PATH];
    joinPath(szDir, s_options.szFirst, "empty");
    clickAt(rowPoint(IDC_DANDD_LOCALDIRS, "empty"));
    chooseMenu('F', 'R');
    bool fAsked = waitFor(isBoxOpen, nullptr);
    pressKey(VK_RETURN);
    return waitFor(isGone, szDir) && fAsked;
}

bool showDetails()
{
    LRESULT cBefore = SendMessageA(control(IDC_DANDD_INFOLINE), EM_GETLINECOUNT, 0, 0);
    clickAt(rowPoint(IDC_DANDD_LOCALFILES, "report.txt"));
    chooseMenu('F', 'A');
    rest();
    return SendMessageA(control(IDC_DANDD_INFOLINE), EM_GETLINECOUNT, 0, 0) == cBefore + 1;
}

bool lookAtManyFiles()
{
    doubleClickAt(rowPoint(IDC_DANDD_LOCALDIRS, "many"));
    bool fFilled = waitForLocalFile("file-0001.dat");
    picture("many-files");
    return goBackUp() && fFilled;
}

bool lookAtADeepPath()
{
    char szDeep[MAX_PATH];
    snprintf(szDeep, sizeof szDeep, "%s\\deep\\a\\b\\c\\d\\e\\", s_options.szFirst);
    typeLine(IDC_DANDD_LOCALFILTER, szDeep);
    bool fThere = waitForLocalFile("end.txt");
    picture("deep-path");
    return goBackUp() && fThere;
}

bool workOnTheCommandLine()
{
    chooseMenu('V', 'C');
    bool fShown = waitForControl(IDC_DANDD_COMMANDLINE);
    for (int n = 0; n < 4; ++n) {
        typeLine(IDC_DANDD_COMMANDLINE, "dir");
    }
    typeLine(IDC_DANDD_COMMANDLINE, "pwd");
    fShown = waitFor(isLogged, "> pwd") && fShown;
    picture("command-line");
    typeLine(IDC_DANDD_COMMANDLINE, "check");
    picture("command-line-check");
    bool fDone = waitFor(isIdle, nullptr);
    chooseMenu('V', 'P');
    return waitForControl(IDC_DANDD_LOCALFILES) && fShown && fDone;
}

bool changeTheSize()
{
    RECT rc;
    GetWindowRect(sessionWindow(), &rc);
    int cx = rc.right - rc.left;
    int cy = rc.bottom - rc.top;
    SetWindowPos(sessionWindow(), nullptr, 0, 0, cx * 3 / 2, cy * 3 / 2, SWP_NOMOVE | SWP_NOZORDER);
    picture("size-larger");
    SetWindowPos(sessionWindow(), nullptr, 0, 0, cx / 2, cy / 2, SWP_NOMOVE | SWP_NOZORDER);
    picture("size-half");
    SetWindowPos(sessionWindow(), nullptr, 0, 0, cx, cy, SWP_NOMOVE | SWP_NOZORDER);
    return true;
}

bool isClosed(const void*)
{
    return sessionWindow() == nullptr;
}

bool closeTheWindow()
{
    RECT rc;
    GetWindowRect(sessionWindow(), &rc);
    clickAt({rc.right - 15, rc.top + 13});
    return waitFor(isClosed, nullptr);
}

struct Step {
    const char* pszName;
    bool (*pfnRun)();
};

constexpr Step STEPS[] = {
    {"start", restAtStart},
    {"press a button", pressAButton},
    {"open a menu", openAMenu},
    {"send two files by drag", sendByDrag},
    {"receive onto a directory by drag", receiveOntoADirectory},
    {"go back by typing a path", goBackUp},
    {"walk on the host", walkOnTheHost},
    {"stop a transfer", stopATransfer},
    {"delete on the host", deleteOnTheHost},
    {"delete a local file", deleteHere},
    {"remove a local directory", removeADirectory},
    {"show details", showDetails},
    {"look at many files", lookAtManyFiles},
    {"look at a deep path", lookAtADeepPath},
    {"work on the command line", workOnTheCommandLine},
    {"change the size", changeTheSize},
    {"close the window", closeTheWindow},
};

DWORD WINAPI drive(void*)
{
    for (const Step& step : STEPS) {
        bool fDone = step.pfnRun();
        s_cFailed += !fDone;
        printf("%s: %s\n", step.pszName, fDone ? "done" : "FAILED");
        fflush(stdout);
    }
    // The program ends with the window, whatever became of the last step.
    PostMessageA(sessionWindow(), WM_CLOSE, 0, 0);
    return 0;
}

} // namespace

void startDriver(const DemoOptions* pOptions)
{
    s_options = *pOptions;
    s_hThread = CreateThread(nullptr, 0, drive, nullptr, 0, nullptr);
}

int endDriver()
{
    WaitForSingleObject(s_hThread, INFINITE);
    CloseHandle(s_hThread);
    return s_cFailed;
}
