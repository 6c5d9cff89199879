// Files sent and received, in every way.
#include "hands.h"
#include "looks.h"
#include "session.h"
#include "steps.h"
#include "../../resources/ids.h"

namespace {

bool restAtStart()
{
    bool fReady = waitForRow(IDC_DANDD_LOCALFILES, "report.txt") && waitForIdle();
    picture("two-pane-idle");
    return fReady;
}

// The status window has gone, and the file is there with all its bytes.
bool hasArrived(const char* pszLocalName, const char* pszHostName)
{
    return waitForIdle() && waitForNoBox() && areEqual(pszLocalName, pszHostName);
}

// Two files that stand one below the other, selected with Shift and dragged onto the host's
// files.
bool sendByDrag()
{
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "notes.txt");
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    letKey(VK_SHIFT);
    picture("two-pane-selection");
    dragRow(IDC_DANDD_LOCALFILES, "notes.txt", middleOf(control(IDC_DANDD_HOSTFILES)));
    releaseButton();
    return fSelected && waitForRow(IDC_DANDD_HOSTFILES, "report.txt") &&
           waitForRow(IDC_DANDD_HOSTFILES, "notes.txt") && hasArrived("report.txt", "report.txt") &&
           hasArrived("notes.txt", "notes.txt");
}

bool sendByMenu()
{
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "Letter to the editor.doc");
    chooseMenu('F', 'T');
    return fSelected && waitForRow(IDC_DANDD_HOSTFILES, "Letter to the editor.doc") &&
           hasArrived("Letter to the editor.doc", "Letter to the editor.doc");
}

bool receiveByMenu()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "readme.txt");
    chooseMenu('F', 'T');
    return fSelected && waitForRow(IDC_DANDD_LOCALFILES, "readme.txt") &&
           hasArrived("readme.txt", "readme.txt");
}

bool receiveByButton()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "changes.txt");
    clickTool(IDM_XFER_TRANSFER);
    return fSelected && waitForRow(IDC_DANDD_LOCALFILES, "changes.txt") &&
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
    picture("drag-over-directory");
    releaseButton();
    picture("after-drop");
    return waitForLocal("inbox\\manual.txt") && hasArrived("inbox\\manual.txt", "manual.txt") &&
           goHome();
}

// Nothing of the file stays.
bool stopATransfer()
{
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "big.bin");
    chooseMenu('F', 'T');
    bool fBusy = waitForBusy();
    Sleep(1500);
    SetForegroundWindow(sessionWindow());
    picture("two-pane-busy");
    clickTool(IDM_XFER_STOP);
    hostPath(szMask, "krd*");
    return waitForIdle() && fSelected && fBusy && waitForNoHost("big.bin") &&
           FindFirstFileA(szMask, &find) == INVALID_HANDLE_VALUE;
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
    return {STEPS, ARRAYSIZE(STEPS)};
}
