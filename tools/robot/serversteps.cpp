// A server of which nothing is known beforehand: files are sent, come back, and go again.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <iterator>

namespace robot {

namespace {

bool connectToTheServer()
{
    bool ready = waitForRow(IDC_DANDD_LOCALFILES, "report.txt") && waitForIdle();
    takePictureOf("server");
    return ready && GetWindowTextLengthA(control(IDC_DANDD_HOSTPATH)) > 0;
}

bool sendByDrag()
{
    bool selected = selectTwoRows(IDC_DANDD_LOCALFILES, "notes.txt");
    dragRow(IDC_DANDD_LOCALFILES, "notes.txt", middleOf(control(IDC_DANDD_HOSTFILES)));
    releaseButton();
    return selected && waitForRow(IDC_DANDD_HOSTFILES, "notes.txt") &&
           waitForRow(IDC_DANDD_HOSTFILES, "report.txt") && waitForIdle();
}

bool sendMore()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "big.bin");
    clickTool(IDM_XFER_TRANSFER);
    takePictureOf("server-busy");
    return selected && waitForRow(IDC_DANDD_HOSTFILES, "big.bin") && waitForIdle();
}

bool receiveOverAFile()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "notes.txt");
    clickTool(IDM_XFER_TRANSFER);
    bool asked = waitForQuestion("notes.txt is there already. Overwrite it?");
    takePictureOf("server-question");
    pressKey('Y');
    return waitForLog("Received notes.txt, ") && waitForIdle() && asked && selected;
}

bool deleteOnTheServer(const char* name, const char* question)
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, name);
    clickTool(IDM_XFER_DELETE);
    return sayYesTo(question) && selected && waitForNoRow(IDC_DANDD_HOSTFILES, name) &&
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
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
