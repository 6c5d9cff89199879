// The window around the panes: buttons, menu, strip, log, modes and size.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <fstream>
#include <iterator>

namespace robot {

namespace {

// A press that ends off the button does nothing.
bool pressAButton()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "report.txt");
    movePointer(toolPoint(IDM_XFER_DELETE));
    pressButton();
    takePictureOf("button-pressed");
    movePointer(middleOf(control(IDC_DANDD_INFOLINE)));
    releaseButton();
    rest();
    return !isBoxOpen() && selected;
}

bool openAMenu()
{
    DWORD strip = sumOfStrip();
    pressWithAlt('V');
    pressKey(VK_DOWN);
    bool hint = waitForOtherStrip(strip);
    takePictureOf("menu-hint");
    pressKey(VK_ESCAPE);
    pressKey(VK_ESCAPE);
    return hint;
}

// The strip tells how many files are selected, and their size.
bool sumUpASelection()
{
    if (!selectRow(IDC_DANDD_LOCALFILES, "index.htm")) {
        return false;
    }
    rest();
    DWORD one = sumOfStrip();
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    bool two = waitForOtherStrip(one);
    takePictureOf("selection-sum");
    pressKey(VK_UP);
    letKey(VK_SHIFT);
    return waitForStrip(one) && two;
}

bool showDetails()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "report.txt");
    clickTool(IDM_XFER_DETAILS);
    return selected && waitForLog("report   txt 4194304 ");
}

bool showHostDetails()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "logo.bmp");
    chooseMenu('F', 'A');
    bool logged = waitForLog("logo.bmp                      1,048,576");
    takePictureOf("details");
    return selected && logged;
}

// The file is written when the box has gone.
bool isLogSaved()
{
    std::ifstream file(localPath("log.txt"));
    bool found = false;
    for (std::string line; !found && std::getline(file, line);) {
        found = line.find("Sent report.txt, 4,194,304 bytes.") == 0;
    }
    return found;
}

bool saveTheLog()
{
    chooseMenu('E', 'A');
    chooseMenu('E', 'S');
    bool asked = waitForBox();
    takePictureOf("save-selection");
    typeText(localPath("log.txt").c_str());
    pressKey(VK_RETURN);
    return waitForNoBox() && asked && waitFor(isLogSaved);
}

bool chooseTransferTypes()
{
    clickTool(IDM_XFER_TYPETEXT);
    bool text = waitForCheckedButton(IDM_XFER_TYPETEXT);
    clickTool(IDM_XFER_TYPEBINARY);
    bool binary = waitForCheckedButton(IDM_XFER_TYPEBINARY);
    clickTool(IDM_XFER_TYPEAUTO);
    return waitForCheckedButton(IDM_XFER_TYPEAUTO) && text && binary;
}

bool workOnTheCommandLine()
{
    clickTool(IDM_XFER_COMMANDLINE);
    bool shown = waitForControl(IDC_DANDD_COMMANDLINE);
    for (int n = 0; n < 4; ++n) {
        typeLine(IDC_DANDD_COMMANDLINE, "dir");
    }
    typeLine(IDC_DANDD_COMMANDLINE, "pwd");
    shown = waitForLog("> pwd") && shown;
    takePictureOf("command-line");
    typeLine(IDC_DANDD_COMMANDLINE, "check");
    takePictureOf("command-line-check");
    bool done = waitForIdle();
    chooseMenu('V', 'P');
    return waitForControl(IDC_DANDD_LOCALFILES) && shown && done;
}

// Gives the client area a size, in halves of what it was at first.
bool sizeTo(const RECT* outer, const RECT* client, int halves, const char* picture)
{
    RECT rc = {};
    LONG cx = client->right * halves / 2;
    LONG cy = client->bottom * halves / 2;
    SetWindowPos(window(), nullptr, 0, 0, outer->right - outer->left - client->right + cx,
                 outer->bottom - outer->top - client->bottom + cy, SWP_NOMOVE | SWP_NOZORDER);
    if (picture != nullptr) {
        takePictureOf(picture);
    }
    GetClientRect(window(), &rc);
    return rc.right == cx && rc.bottom == cy;
}

bool changeTheSize()
{
    RECT rcWindow = {};
    RECT rcClient = {};
    GetWindowRect(window(), &rcWindow);
    GetClientRect(window(), &rcClient);
    bool larger = sizeTo(&rcWindow, &rcClient, 3, "size-larger");
    bool half = sizeTo(&rcWindow, &rcClient, 1, "size-half");
    return sizeTo(&rcWindow, &rcClient, 2, nullptr) && larger && half;
}

bool closeTheWindow()
{
    RECT rc;
    GetWindowRect(window(), &rc);
    clickAt({rc.right - 15, rc.top + 13});
    return waitFor([] { return window() == nullptr; });
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
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
