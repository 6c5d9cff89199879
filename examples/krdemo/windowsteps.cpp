// The window around the panes: buttons, menu, strip, log, modes and size.
#include "hands.h"
#include "looks.h"
#include "session.h"
#include "steps.h"
#include "../../resources/ids.h"

#include <stdio.h>
#include <string.h>

namespace {

// A press that ends off the button does nothing.
bool pressAButton()
{
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "report.txt");
    movePointer(toolPoint(IDM_XFER_DELETE));
    pressButton();
    picture("button-pressed");
    movePointer(middleOf(control(IDC_DANDD_INFOLINE)));
    releaseButton();
    rest();
    return !isBoxOpen() && fSelected;
}

bool openAMenu()
{
    DWORD dwStrip = sumOfStrip();
    pressWithAlt('V');
    pressKey(VK_DOWN);
    bool fHint = waitForOtherStrip(dwStrip);
    picture("menu-hint");
    pressKey(VK_ESCAPE);
    pressKey(VK_ESCAPE);
    return fHint;
}

// The strip tells how many files are selected, and their size.
bool sumUpASelection()
{
    if (!selectRow(IDC_DANDD_LOCALFILES, "index.htm")) {
        return false;
    }
    rest();
    DWORD dwOne = sumOfStrip();
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    bool fTwo = waitForOtherStrip(dwOne);
    picture("selection-sum");
    pressKey(VK_UP);
    letKey(VK_SHIFT);
    return waitForStrip(dwOne) && fTwo;
}

bool showDetails()
{
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "report.txt");
    clickTool(IDM_XFER_DETAILS);
    return fSelected && waitForLog("report   txt 4194304 ");
}

bool showHostDetails()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "logo.bmp");
    chooseMenu('F', 'A');
    bool fLogged = waitForLog("logo.bmp                   1048576");
    picture("details");
    return fSelected && fLogged;
}

// The file is written when the box has gone.
bool isLogSaved(const void* pContext)
{
    char szLine[MAX_PATH];
    bool fFound = false;
    FILE* pFile = fopen(static_cast<const char*>(pContext), "r");
    while (pFile != nullptr && !fFound && fgets(szLine, sizeof szLine, pFile) != nullptr) {
        fFound = strcmp(szLine, "Sent report.txt, 4194304 bytes.\n") == 0;
    }
    if (pFile != nullptr) {
        fclose(pFile);
    }
    return fFound;
}

bool saveTheLog()
{
    char szFile[MAX_PATH];
    localPath(szFile, "log.txt");
    chooseMenu('E', 'A');
    chooseMenu('E', 'S');
    bool fAsked = waitForBox();
    picture("save-selection");
    typeText(szFile);
    pressKey(VK_RETURN);
    return waitForNoBox() && fAsked && waitFor(isLogSaved, szFile);
}

bool chooseTransferTypes()
{
    clickTool(IDM_XFER_TYPETEXT);
    bool fText = waitForCheckedItem(IDM_XFER_TYPETEXT);
    clickTool(IDM_XFER_TYPEBINARY);
    bool fBinary = waitForCheckedItem(IDM_XFER_TYPEBINARY);
    clickTool(IDM_XFER_TYPEAUTO);
    return waitForCheckedItem(IDM_XFER_TYPEAUTO) && fText && fBinary;
}

bool workOnTheCommandLine()
{
    clickTool(IDM_XFER_COMMANDLINE);
    bool fShown = waitForControl(IDC_DANDD_COMMANDLINE);
    for (int n = 0; n < 4; ++n) {
        typeLine(IDC_DANDD_COMMANDLINE, "dir");
    }
    typeLine(IDC_DANDD_COMMANDLINE, "pwd");
    fShown = waitForLog("> pwd") && fShown;
    picture("command-line");
    typeLine(IDC_DANDD_COMMANDLINE, "check");
    picture("command-line-check");
    bool fDone = waitForIdle();
    chooseMenu('V', 'P');
    return waitForControl(IDC_DANDD_LOCALFILES) && fShown && fDone;
}

// Gives the client area a size, in halves of what it was at first.
bool sizeTo(const RECT* prcWindow, const RECT* prcClient, int cHalves, const char* pszPicture)
{
    RECT rc = {};
    LONG cx = prcClient->right * cHalves / 2;
    LONG cy = prcClient->bottom * cHalves / 2;
    SetWindowPos(
        sessionWindow(), nullptr, 0, 0, prcWindow->right - prcWindow->left - prcClient->right + cx,
        prcWindow->bottom - prcWindow->top - prcClient->bottom + cy, SWP_NOMOVE | SWP_NOZORDER);
    if (pszPicture != nullptr) {
        picture(pszPicture);
    }
    GetClientRect(sessionWindow(), &rc);
    return rc.right == cx && rc.bottom == cy;
}

bool changeTheSize()
{
    RECT rcWindow = {};
    RECT rcClient = {};
    GetWindowRect(sessionWindow(), &rcWindow);
    GetClientRect(sessionWindow(), &rcClient);
    bool fLarger = sizeTo(&rcWindow, &rcClient, 3, "size-larger");
    bool fHalf = sizeTo(&rcWindow, &rcClient, 1, "size-half");
    return sizeTo(&rcWindow, &rcClient, 2, nullptr) && fLarger && fHalf;
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

constexpr Step STEPS[] = {
    {"press a button", pressAButton},
    {"open a menu", openAMenu},
    {"sum up a selection", sumUpASelection},
    {"show details by button", showDetails},
    {"show details of a host file", showHostDetails},
    {"save the log", saveTheLog},
    {"choose how files are transferred by button", chooseTransferTypes},
    {"work on the command line", workOnTheCommandLine},
    {"change the size", changeTheSize},
    {"close the window", closeTheWindow},
};

} // namespace

StepTable windowSteps()
{
    return {STEPS, ARRAYSIZE(STEPS)};
}
