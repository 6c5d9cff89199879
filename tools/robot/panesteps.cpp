// The panes: directories, lines, lists, and what is deleted.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <iterator>

namespace robot {

namespace {

bool goToHostDir(const char* row, const char* path)
{
    doubleClickAt(rowPoint(IDC_DANDD_HOSTDIRS, row));
    return waitForText(IDC_DANDD_HOSTPATH, path) && waitForIdle();
}

// A directory that somebody else has made on the host.
bool learnOfAHostDir()
{
    bool made = CreateDirectoryA(hostPath("fresh").c_str(), nullptr) &&
                rowOf(IDC_DANDD_HOSTDIRS, "fresh") == LB_ERR;
    clickTool(IDM_XFER_REFRESH);
    return made && waitForRow(IDC_DANDD_HOSTDIRS, "fresh") && waitForIdle();
}

bool walkOnTheHost()
{
    return goToHostDir("fresh", "/fresh") && goToHostDir("..", "/");
}

bool removeAHostDir()
{
    bool selected = selectRow(IDC_DANDD_HOSTDIRS, "fresh");
    chooseMenu('F', 'R');
    return selected && waitForNoHost("fresh") && waitForNoRow(IDC_DANDD_HOSTDIRS, "fresh");
}

bool enterATypedHostDir()
{
    typeLine(IDC_DANDD_HOSTPATH, "/pub/images");
    return waitForText(IDC_DANDD_HOSTPATH, "/pub/images") && waitForIdle() &&
           goToHostDir("..", "/pub") && goToHostDir("..", "/");
}

// Letters alone scroll a list to the name that begins with them.
bool findByPrefix(int idLine, int idList, const char* prefix, const char* name)
{
    bool hidden =
        waitForRow(idList, name) && SendMessageA(control(idList), LB_GETTOPINDEX, 0, 0) == 0;
    typeInto(idLine, prefix);
    return waitForRowInSight(idList, name) && hidden &&
           SendMessageA(control(idList), LB_GETTOPINDEX, 0, 0) > 0;
}

bool findALocalFile()
{
    doubleClickAt(rowPoint(IDC_DANDD_LOCALDIRS, "many"));
    bool filled = waitForRow(IDC_DANDD_LOCALFILES, "file-0001.dat");
    takePictureOf("many-files");
    bool found =
        findByPrefix(IDC_DANDD_LOCALFILTER, IDC_DANDD_LOCALFILES, "file-0133", "file-0133.dat");
    takePictureOf("quick-search");
    return goHome() && filled && found;
}

bool findAHostFile()
{
    return goToHostDir("archive", "/archive") &&
           findByPrefix(IDC_DANDD_HOSTFILTER, IDC_DANDD_HOSTFILES, "entry-090", "entry-090.log") &&
           goToHostDir("..", "/");
}

bool filterTheHost()
{
    typeLine(IDC_DANDD_HOSTFILTER, "*.txt");
    bool filtered = waitForNoRow(IDC_DANDD_HOSTFILES, "setup.exe") &&
                    waitForRow(IDC_DANDD_HOSTFILES, "manual.txt");
    takePictureOf("host-filter");
    typeLine(IDC_DANDD_HOSTFILTER, "*");
    return waitForRow(IDC_DANDD_HOSTFILES, "setup.exe") && waitForIdle() && filtered;
}

bool maskLocalFiles()
{
    typeLine(IDC_DANDD_LOCALFILTER, "*.doc");
    bool masked = waitForNoRow(IDC_DANDD_LOCALFILES, "big.bin") &&
                  waitForRow(IDC_DANDD_LOCALFILES, "Letter to the editor.doc");
    typeLine(IDC_DANDD_LOCALFILTER, "*.*");
    return waitForRow(IDC_DANDD_LOCALFILES, "big.bin") && masked;
}

// A type counts when Enter follows it.
bool chooseAFileType()
{
    chooseInList(IDC_DANDD_LOCALTYPES, VK_DOWN);
    pressKey(VK_RETURN);
    bool masked = waitForNoRow(IDC_DANDD_LOCALFILES, "big.bin") &&
                  waitForRow(IDC_DANDD_LOCALFILES, "report.txt") &&
                  waitForText(IDC_DANDD_LOCALFILTER, "*.txt");
    takePictureOf("file-type");
    chooseInList(IDC_DANDD_LOCALTYPES, VK_UP);
    pressKey(VK_RETURN);
    return waitForRow(IDC_DANDD_LOCALFILES, "big.bin") && masked;
}

bool changeTheDrive()
{
    chooseInList(IDC_DANDD_LOCALDRIVES, 'C');
    bool changed =
        waitForText(IDC_DANDD_LOCALPATH, "c:\\") && waitForRow(IDC_DANDD_LOCALDIRS, "windows");
    takePictureOf("drive");
    return goHome() && changed;
}

bool lookAtADeepPath()
{
    typeLine(IDC_DANDD_LOCALFILTER, localPath("deep\\a\\b\\c\\d\\e\\").c_str());
    bool there = waitForRow(IDC_DANDD_LOCALFILES, "end.txt");
    takePictureOf("deep-path");
    return goHome() && there;
}

bool deleteOnTheHost()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "notes.txt");
    chooseMenu('F', 'D');
    return sayYesTo("Delete notes.txt on the host?") && selected && waitForNoHost("notes.txt") &&
           waitForNoRow(IDC_DANDD_HOSTFILES, "notes.txt");
}

bool deleteOnTheHostByButton()
{
    bool selected = selectRow(IDC_DANDD_HOSTFILES, "license.txt");
    clickTool(IDM_XFER_DELETE);
    return sayYesTo("Delete license.txt on the host?") && selected &&
           waitForNoHost("license.txt") && waitForNoRow(IDC_DANDD_HOSTFILES, "license.txt");
}

bool answer(WORD vk)
{
    bool asked = waitForBox();
    pressKey(vk);
    return waitForNoBox() && asked;
}

bool keepALocalFile()
{
    bool selected = selectRow(IDC_DANDD_LOCALFILES, "notes.txt");
    clickTool(IDM_XFER_DELETE);
    bool asked = waitForBox();
    takePictureOf("confirm-delete");
    return answer('N') && selected && asked && isThere(localPath("notes.txt")) &&
           rowOf(IDC_DANDD_LOCALFILES, "notes.txt") != LB_ERR;
}

bool deleteHere()
{
    chooseMenu('F', 'D'); // it is still selected
    return answer(VK_RETURN) && waitForNoLocal("notes.txt") &&
           waitForNoRow(IDC_DANDD_LOCALFILES, "notes.txt");
}

bool removeADirectory()
{
    bool selected = selectRow(IDC_DANDD_LOCALDIRS, "empty");
    clickTool(IDM_XFER_REMOVEDIR);
    return answer('Y') && selected && waitForNoLocal("empty") &&
           waitForNoRow(IDC_DANDD_LOCALDIRS, "empty");
}

constexpr Step STEPS[] = {
    {"learn of a host directory by refresh", learnOfAHostDir},
    {"walk on the host", walkOnTheHost},
    {"remove a host directory", removeAHostDir},
    {"enter a typed host directory", enterATypedHostDir},
    {"find a host file by its first letters", findAHostFile},
    {"find a local file by its first letters", findALocalFile},
    {"filter the host files", filterTheHost},
    {"mask the local files", maskLocalFiles},
    {"choose a file type", chooseAFileType},
    {"change the drive and go back", changeTheDrive},
    {"look at a deep path", lookAtADeepPath},
    {"delete on the host", deleteOnTheHost},
    {"delete on the host by button", deleteOnTheHostByButton},
    {"say no and keep a local file", keepALocalFile},
    {"delete a local file", deleteHere},
    {"remove a local directory by button", removeADirectory},
};

} // namespace

StepTable paneSteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
