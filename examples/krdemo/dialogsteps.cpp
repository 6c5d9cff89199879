// The file dialogs, worked by keyboard alone, and files looked at.
#include "hands.h"
#include "looks.h"
#include "session.h"
#include "steps.h"
#include "../../resources/ids.h"

namespace {

constexpr char VIEWER[] = "KRVIEWER";

// A command asks for names when nothing is selected. Panes that are filled anew have no
// selection.
bool unselectAll()
{
    clickTool(IDM_XFER_REFRESH);
    return waitForIdle() && goHome();
}

// What is typed into a dialog: its fields, each by the mnemonic of its label, and a picture.
struct Field {
    WORD vkLabel;
    const char* pszText; // null for a button that the mnemonic presses
};

void fillIn(const Field& field)
{
    pressWithAlt(field.vkLabel);
    if (field.pszText != nullptr) {
        pressKey(VK_HOME);
        holdKey(VK_SHIFT);
        pressKey(VK_END);
        letKey(VK_SHIFT);
        typeText(field.pszText);
    }
}

template <size_t cFields>
bool fillDialog(WORD vkCommand, const Field (&fields)[cFields], const char* pszPicture)
{
    waitForIdle();
    chooseMenu('F', vkCommand);
    if (!waitForBox()) {
        return false;
    }
    for (const Field& field : fields) {
        fillIn(field);
    }
    if (pszPicture != nullptr) {
        picture(pszPicture);
    }
    pressKey(VK_RETURN);
    return true;
}

template <size_t cFields>
bool answer(WORD vkCommand, const Field (&fields)[cFields], const char* pszPicture = nullptr)
{
    return fillDialog(vkCommand, fields, pszPicture) && waitForNoBox();
}

// The window of the viewer, a program of its own.
bool isViewerOpen(const void*)
{
    return IsWindowVisible(FindWindowA(VIEWER, nullptr)) != 0;
}

bool isViewerGone(const void*)
{
    return FindWindowA(VIEWER, nullptr) == nullptr;
}

bool closeViewer(const char* pszPicture)
{
    bool fOpen = waitFor(isViewerOpen, nullptr);
    HWND hwndViewer = FindWindowA(VIEWER, nullptr);
    clickAt(middleOf(hwndViewer));
    pictureOf(hwndViewer, pszPicture);
    pressKey(VK_ESCAPE);
    bool fGone = waitFor(isViewerGone, nullptr);
    // Which window comes to the front when one of another program goes is up to the platform.
    SetForegroundWindow(sessionWindow());
    return fGone && waitForNoBox() && fOpen;
}

// Both panes follow what has been done, and so does the disk.
bool isOnDisk(const char* pszLocal, const char* pszHost)
{
    return waitForLocal(pszLocal) && waitForHost(pszHost) &&
           waitForRow(IDC_DANDD_LOCALFILES, pszLocal) && waitForRow(IDC_DANDD_HOSTFILES, pszHost);
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
    char szFolder[MAX_PATH];
    localPath(szFolder, "made here");
    CharLowerA(szFolder);
    return answer('H', {{'D', "made here"}}, "dialog-change") &&
           waitForText(IDC_DANDD_LOCALPATH, szFolder) && goHome() &&
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
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "received.txt");
    return fSelected && answer('N', {{'T', "renamed.txt"}}, "dialog-rename") &&
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
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "renamed.txt");
    clickTool(IDM_XFER_VIEW);
    return closeViewer("view-bytes") && fSelected;
}

// The copy that the viewer was given goes with it.
bool isTempFileGone(const void*)
{
    char szMask[MAX_PATH];
    WIN32_FIND_DATAA find;
    GetTempPathA(MAX_PATH, szMask);
    lstrcatA(szMask, "krv*");
    HANDLE hFind = FindFirstFileA(szMask, &find);
    if (hFind != INVALID_HANDLE_VALUE) {
        FindClose(hFind);
    }
    return hFind == INVALID_HANDLE_VALUE;
}

bool viewAHostFile()
{
    return unselectAll() &&
           fillDialog('V', {{'F', "letter from the host.txt"}, {'O', nullptr}}, nullptr) &&
           closeViewer("view-host") && waitFor(isTempFileGone, nullptr);
}

bool openConfirmation()
{
    chooseMenu('O', 'C');
    return waitForBox();
}

// The setting holds from the next command on.
bool changeConfirmation()
{
    bool fOpened = unselectAll() && openConfirmation();
    pressWithAlt('D');
    picture("dialog-confirmation");
    pressKey(VK_RETURN);
    fOpened = waitForNoBox() && fOpened && selectRow(IDC_DANDD_LOCALFILES, "renamed.txt");
    clickTool(IDM_XFER_DELETE);
    bool fDeleted = fOpened && waitForNoLocal("renamed.txt") && !isBoxOpen();
    fOpened = openConfirmation();
    pressWithAlt('D');
    pressKey(VK_RETURN);
    return waitForNoBox() && fOpened && fDeleted;
}

bool cancelADialog()
{
    chooseMenu('F', 'M');
    bool fOpened = waitForBox();
    typeText("unwanted");
    pressKey(VK_ESCAPE);
    return waitForNoBox() && fOpened && waitForNoLocal("unwanted");
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
    return {STEPS, ARRAYSIZE(STEPS)};
}
