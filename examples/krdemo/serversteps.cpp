// A server of which nothing is known beforehand: files are sent, come back, and go again.
#include "hands.h"
#include "looks.h"
#include "session.h"
#include "steps.h"
#include "../../resources/ids.h"

namespace {

bool connectToTheServer()
{
    bool fReady = waitForRow(IDC_DANDD_LOCALFILES, "report.txt") && waitForIdle();
    picture("server");
    return fReady && GetWindowTextLengthA(control(IDC_DANDD_HOSTPATH)) > 0;
}

bool selectTwo(int idList)
{
    bool fSelected = selectRow(idList, "notes.txt");
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    letKey(VK_SHIFT);
    return fSelected;
}

bool sendByDrag()
{
    bool fSelected = selectTwo(IDC_DANDD_LOCALFILES);
    dragRow(IDC_DANDD_LOCALFILES, "notes.txt", middleOf(control(IDC_DANDD_HOSTFILES)));
    releaseButton();
    return fSelected && waitForRow(IDC_DANDD_HOSTFILES, "notes.txt") &&
           waitForRow(IDC_DANDD_HOSTFILES, "report.txt") && waitForIdle();
}

bool sendMore()
{
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "big.bin");
    clickTool(IDM_XFER_TRANSFER);
    picture("server-busy");
    return fSelected && waitForRow(IDC_DANDD_HOSTFILES, "big.bin") && waitForIdle();
}

bool receiveOverAFile()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "notes.txt");
    clickTool(IDM_XFER_TRANSFER);
    bool fAsked = waitForQuestion("notes.txt is there already. Overwrite it?");
    picture("server-question");
    pressKey('Y');
    return waitForLog("Received notes.txt, ") && waitForIdle() && fAsked && fSelected;
}

bool deleteOnTheServer(const char* pszName, const char* pszQuestion)
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, pszName);
    clickTool(IDM_XFER_DELETE);
    return sayYesTo(pszQuestion) && fSelected && waitForNoRow(IDC_DANDD_HOSTFILES, pszName) &&
           waitForIdle() && waitForNoBox();
}

bool takeItAllAway()
{
    return deleteOnTheServer("notes.txt", "Delete notes.txt on the host?") &&
           deleteOnTheServer("report.txt", "Delete report.txt on the host?") &&
           deleteOnTheServer("big.bin", "Delete big.bin on the host?");
}

constexpr Step STEPS[] = {
    {"connect", connectToTheServer},
    {"send two files by drag", sendByDrag},
    {"send by button", sendMore},
    {"receive over a file", receiveOverAFile},
    {"delete what was sent", takeItAllAway},
};

} // namespace

StepTable serverSteps()
{
    return {STEPS, ARRAYSIZE(STEPS)};
}
