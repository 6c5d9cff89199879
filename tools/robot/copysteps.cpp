// Files copied with a status window alone: pictures near the start, in the middle, at the end.
#include "looks.h"
#include "steps.h"
#include "user.h"

#include <iterator>
#include <stdlib.h>

namespace robot {

namespace {

void takePictureOfBoth(const char* name)
{
    RECT rc = {};
    RECT rcStatus = {};
    GetWindowRect(window(), &rc);
    GetWindowRect(findWindow(IDC_STAT_STATUS), &rcStatus);
    UnionRect(&rc, &rc, &rcStatus);
    takePictureOf(rc, name);
}

std::string status()
{
    HWND hdlg = findWindow(IDC_STAT_STATUS);
    return hdlg != nullptr ? textOf(GetDlgItem(hdlg, IDC_STAT_STATUS)) : "";
}

// The title of the program's own window tells the percentage of the current file.
bool waitForPercent(const char* file, int first, int last)
{
    return waitFor([=] {
        int percent = atoi(textOf(window()).c_str());
        return status() == file && percent >= first && percent <= last;
    });
}

bool lookAtTheStart()
{
    bool started = waitForPercent("File 1 of 4", 1, 50);
    takePictureOfBoth("start");
    return started;
}

bool lookAtTheMiddle()
{
    bool halfway = waitForPercent("File 3 of 4", 51, 80);
    takePictureOfBoth("middle");
    return halfway;
}

bool closeAtTheEnd()
{
    bool ended = waitFor([] { return status() == "All files are copied"; });
    takePictureOfBoth("end");
    clickAt(middleOf(GetDlgItem(findWindow(IDC_STAT_STATUS), IDC_STAT_BUTTON)));
    return waitFor([] { return findWindow(IDC_STAT_STATUS) == nullptr; }) && ended;
}

constexpr Step STEPS[] = {
    {"copy the first file", lookAtTheStart},
    {"copy the third file", lookAtTheMiddle},
    {"close the status window", closeAtTheEnd},
};

} // namespace

StepTable copySteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
