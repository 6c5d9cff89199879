// The file dialogs, worked by keyboard alone, and files looked at.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <iterator>

namespace robot {

namespace {

constexpr char VIEWER[] = "KRVIEWER";

// A command asks for names when nothing is selected. Panes that are filled again have no
// selection.
bool unselectAll()
{
    clickTool(IDM_XFER_REFRESH);
    return waitForIdle() && goHome();
}

// What is typed into a dialog: its fields, each by the mnemonic of its label, and a picture.
struct Field {
    WORD vkLabel;
    const char* text; // null for a button that the mnemonic presses
};

void fillIn(const Field& field)
{
    pressWithAlt(field.vkLabel);
    if (field.text != nullptr) {
        typeOver(field.text);
    }
}

template <size_t count>
bool fillDialog(WORD vkCommand, const Field (&fields)[count], const char* picture)
{
    waitForIdle();
    chooseMenu('F', vkCommand);
    if (!waitForBox()) {
        return false;
    }
    for (const Field& field : fields) {
        fillIn(field);
    }
    if (picture != nullptr) {
        takePictureOf(picture);
    }
    pressKey(VK_RETURN);
    return true;
}

template <size_t count>
bool answer(WORD vkCommand, const Field (&fields)[count], const char* picture = nullptr)
{
    return fillDialog(vkCommand, fields, picture) && waitForNoBox();
}

// The window of the viewer, a program of its own.
bool closeViewer(const char* picture)
{
    bool open = waitFor([] { return IsWindowVisible(FindWindowA(VIEWER, nullptr)) != 0; });
    HWND hwndViewer = FindWindowA(VIEWER, nullptr);
    clickAt(middleOf(hwndViewer));
    takePictureOf(hwndViewer, picture);
    pressKey(VK_ESCAPE);
    bool gone = waitFor([] { return FindWindowA(VIEWER, nullptr) == nullptr; });
    // Which window comes to the front when one of another program goes is up to the platform.
    SetForegroundWindow(window());
    return gone && waitForNoBox() && open;
}

// Both panes follow what has been done, and so does the disk.
bool isOnDisk(const char* local, const char* host)
{
    return waitForLocal(local) && waitForHost(host) && waitForRow(IDC_DANDD_LOCALFILES, local) &&
           waitForRow(IDC_DANDD_HOSTFILES, host);
}

bool sendATypedName()
{
    return unselectAll() &&
           answer('T', {{'S', nullptr}, {'F', "report.txt"}, {'T', "typed.txt"}},
                  "dialog-transfer") &&
           waitForIdle() && isOnDisk("report.txt", "typed.txt") &&
           areEqual("report.txt", "typed.txt");
}

bool receiveATypedName()
{
    return unselectAll() &&
           answer('T', {{'R', nullptr}, {'F', "setup.exe"}, {'T', "received.txt"}}) &&
           waitForIdle() && isOnDisk("received.txt", "setup.exe") &&
           areEqual("received.txt", "setup.exe");
}

bool makeDirectories()
{
    return unselectAll() && answer('M', {{'D', "made here"}}, "dialog-make") &&
           waitForLocal("made here") && waitForRow(IDC_DANDD_LOCALDIRS, "made here") &&
           answer('M', {{'D', "made there"}, {'O', nullptr}}) && waitForHost("made there") &&
           waitForRow(IDC_DANDD_HOSTDIRS, "made there");
}

bool changeDirectories()
{
    std::string folder = localPath("made here");
    CharLowerA(&folder[0]);
    return answer('H', {{'D', "made here"}}, "dialog-change") &&
           waitForText(IDC_DANDD_LOCALPATH, folder.c_str()) && goHome() &&
           answer('H', {{'D', "made there"}, {'O', nullptr}}) &&
           waitForText(IDC_DANDD_HOSTPATH, "/made there") && waitForIdle() &&
           answer('H', {{'D', ".."}, {'O', nullptr}}) && waitForText(IDC_DANDD_HOSTPATH, "/");
}

bool removeDirectories()
{
    return unselectAll() && answer('R', {{'D', "made here"}}, "dialog-remove") &&
           waitForNoLocal("made here") && waitForNoRow(IDC_DANDD_LOCALDIRS, "made here") &&
           answer('R', {{'D', "made there"}, {'O', nullptr}}) && waitForNoHost("made there") &&
           waitForNoRow(IDC_DANDD_HOSTDIRS, "made there");
}

bool renameASelection()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "received.txt");
    return selected && answer('N', {{'T', "renamed.txt"}}, "dialog-rename") &&
           waitForNoLocal("received.txt") && waitForLocal("renamed.txt") &&
           waitForRow(IDC_DANDD_LOCALFILES, "renamed.txt");
}

bool renameOnTheHost()
{
    return unselectAll() &&
           answer('N', {{'R', "typed.txt"}, {'T', "typed again.txt"}, {'O', nullptr}}) &&
           waitForNoHost("typed.txt") && waitForHost("typed again.txt") &&
           waitForRow(IDC_DANDD_HOSTFILES, "typed again.txt");
}

// A pattern with a directory in it leaves files of the same names alone here.
bool deleteByPattern()
{
    return unselectAll() && answer('D', {{'F', "inbox\\draft-*.tmp"}}, "dialog-delete") &&
           waitForNoLocal("inbox\\draft-1.tmp") && waitForNoLocal("inbox\\draft-2.tmp") &&
           waitForLocal("inbox\\kept.txt") && waitForLocal("draft-1.tmp") &&
           rowOf(IDC_DANDD_LOCALFILES, "draft-1.tmp") != LB_ERR &&
           answer('D', {{'F', "draft-*.tmp"}}) && waitForNoLocal("draft-1.tmp") &&
           waitForNoLocal("draft-2.tmp") && waitForNoRow(IDC_DANDD_LOCALFILES, "draft-2.tmp");
}

bool deleteOnTheHost()
{
    return fillDialog('D', {{'F', "spare-?.bak"}, {'O', nullptr}}, nullptr) &&
           sayYesTo("Delete spare-1.bak on the host?") &&
           sayYesTo("Delete spare-2.bak on the host?") && waitForNoHost("spare-1.bak") &&
           waitForNoHost("spare-2.bak") && waitForNoRow(IDC_DANDD_HOSTFILES, "spare-2.bak") &&
           waitForNoBox() && fillDialog('D', {{'F', "typed again.txt"}, {'O', nullptr}}, nullptr) &&
           sayYesTo("Delete typed again.txt on the host?") && waitForNoHost("typed again.txt") &&
           waitForNoBox();
}

bool viewALocalFile()
{
    return unselectAll() && fillDialog('V', {{'F', "letter.txt"}}, "dialog-view") &&
           closeViewer("view-local");
}

bool viewASelection()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "renamed.txt");
    clickTool(IDM_XFER_VIEW);
    return closeViewer("view-bytes") && selected;
}

// The copy that the viewer was given goes with it.
bool waitForNoCopy()
{
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    return waitFor([&] { return !isThere(folder + std::string("krv*")); });
}

bool viewAHostFile()
{
    return unselectAll() &&
           fillDialog('V', {{'F', "letter from the host.txt"}, {'O', nullptr}}, nullptr) &&
           closeViewer("view-host") && waitForNoCopy();
}

bool openConfirmation()
{
    chooseMenu('O', 'C');
    return waitForBox();
}

// The setting holds from the next command on.
bool changeConfirmation()
{
    bool opened = unselectAll() && openConfirmation();
    pressWithAlt('D');
    takePictureOf("dialog-confirmation");
    pressKey(VK_RETURN);
    opened = waitForNoBox() && opened && selectRow(IDC_DANDD_LOCALFILES, "renamed.txt");
    clickTool(IDM_XFER_DELETE);
    bool deleted = opened && waitForNoLocal("renamed.txt") && !isBoxOpen();
    opened = openConfirmation();
    pressWithAlt('D');
    pressKey(VK_RETURN);
    return waitForNoBox() && opened && deleted;
}

bool cancelADialog()
{
    chooseMenu('F', 'M');
    bool opened = waitForBox();
    typeText("unwanted");
    pressKey(VK_ESCAPE);
    return waitForNoBox() && opened && waitForNoLocal("unwanted");
}

constexpr Step STEPS[] = {
    {"send a typed name", sendATypedName},
    {"receive a typed name", receiveATypedName},
    {"make directories", makeDirectories},
    {"change directories", changeDirectories},
    {"remove directories", removeDirectories},
    {"rename a selected file", renameASelection},
    {"rename on the host", renameOnTheHost},
    {"delete by pattern", deleteByPattern},
    {"delete on the host by pattern", deleteOnTheHost},
    {"view a local file", viewALocalFile},
    {"view a selected file by button", viewASelection},
    {"view a host file", viewAHostFile},
    {"change the confirmation settings", changeConfirmation},
    {"cancel a dialog", cancelADialog},
};

} // namespace

StepTable dialogSteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
