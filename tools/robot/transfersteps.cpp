// Files sent and received, in every way.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <iterator>

namespace robot {

namespace {

bool restAtStart()
{
    bool ready = waitForRow(IDC_DANDD_LOCALFILES, "report.txt") && waitForIdle();
    takePictureOf("two-pane-idle");
    return ready;
}

// The status window has gone, and the file is there with all its bytes.
bool hasArrived(const char* localName, const char* hostName)
{
    return waitForIdle() && waitForNoBox() && areEqual(localName, hostName);
}

// Two files that stand one below the other, selected with Shift and dragged onto the host's
// files.
bool sendByDrag()
{
    bool selected = selectTwoRows(IDC_DANDD_LOCALFILES, "notes.txt");
    takePictureOf("two-pane-selection");
    dragRow(IDC_DANDD_LOCALFILES, "notes.txt", middleOf(control(IDC_DANDD_HOSTFILES)));
    releaseButton();
    return selected && waitForRow(IDC_DANDD_HOSTFILES, "report.txt") &&
           waitForRow(IDC_DANDD_HOSTFILES, "notes.txt") && hasArrived("report.txt", "report.txt") &&
           hasArrived("notes.txt", "notes.txt");
}

bool sendByMenu()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "Letter to the editor.doc");
    chooseMenu('F', 'T');
    return selected && waitForRow(IDC_DANDD_HOSTFILES, "Letter to the editor.doc") &&
           hasArrived("Letter to the editor.doc", "Letter to the editor.doc");
}

bool receiveByMenu()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "readme.txt");
    chooseMenu('F', 'T');
    return selected && waitForRow(IDC_DANDD_LOCALFILES, "readme.txt") &&
           hasArrived("readme.txt", "readme.txt");
}

bool receiveByButton()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "changes.txt");
    clickTool(IDM_XFER_TRANSFER);
    return selected && waitForRow(IDC_DANDD_LOCALFILES, "changes.txt") &&
           hasArrived("changes.txt", "changes.txt");
}

bool receiveByDrag()
{
    dragRow(IDC_DANDD_HOSTFILES, "index.htm", middleOf(control(IDC_DANDD_LOCALFILES)));
    releaseButton();
    return waitForRow(IDC_DANDD_LOCALFILES, "index.htm") && hasArrived("index.htm", "index.htm");
}

bool sendOntoADirectory()
{
    dragRow(IDC_DANDD_LOCALFILES, "notes.txt", rowPoint(IDC_DANDD_HOSTDIRS, "docs"));
    releaseButton();
    return waitForHost("docs\\notes.txt") && hasArrived("notes.txt", "docs\\notes.txt") &&
           waitForText(IDC_DANDD_HOSTPATH, "/");
}

// The drop enters the directory.
bool receiveOntoADirectory()
{
    dragRow(IDC_DANDD_HOSTFILES, "manual.txt", rowPoint(IDC_DANDD_LOCALDIRS, "inbox"));
    takePictureOf("drag-over-directory");
    releaseButton();
    takePictureOf("after-drop");
    return waitForLocal("inbox\\manual.txt") && hasArrived("inbox\\manual.txt", "manual.txt") &&
           goHome();
}

// Nothing of the file stays.
bool stopATransfer()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "big.bin");
    chooseMenu('F', 'T');
    bool busy = waitForBusy();
    Sleep(1500);
    SetForegroundWindow(window());
    takePictureOf("two-pane-busy");
    clickTool(IDM_XFER_STOP);
    return waitForIdle() && selected && busy && waitForNoHost("big.bin") &&
           !isThere(hostPath("krd*"));
}

constexpr Step STEPS[] = {
    {"start", restAtStart},
    {"send two files by drag", sendByDrag},
    {"send by menu", sendByMenu},
    {"receive by menu", receiveByMenu},
    {"receive by button", receiveByButton},
    {"receive by drag", receiveByDrag},
    {"send onto a host directory by drag", sendOntoADirectory},
    {"receive onto a directory by drag", receiveOntoADirectory},
    {"stop a transfer by button", stopATransfer},
};

} // namespace

StepTable transferSteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
