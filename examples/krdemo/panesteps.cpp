// The panes: directories, lines, lists, and what is deleted.
#include "hands.h"
#include "looks.h"
#include "steps.h"
#include "../../resources/ids.h"

namespace {

bool goToHostDir(const char* pszRow, const char* pszPath)
{
    doubleClickAt(rowPoint(IDC_DANDD_HOSTDIRS, pszRow));
    return waitForText(IDC_DANDD_HOSTPATH, pszPath) && waitForIdle();
}

// A directory that somebody else has made on the host.
bool learnOfAHostDir()
{
    char szDir[MAX_PATH];
    hostPath(szDir, "fresh");
    bool fMade = CreateDirectoryA(szDir, nullptr) && rowOf(IDC_DANDD_HOSTDIRS, "fresh") == LB_ERR;
    clickTool(IDM_XFER_REFRESH);
    return fMade && waitForRow(IDC_DANDD_HOSTDIRS, "fresh") && waitForIdle();
}

bool walkOnTheHost()
{
    return goToHostDir("fresh", "/fresh") && goToHostDir("..", "/");
}

bool removeAHostDir()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTDIRS, "fresh");
    chooseMenu('F', 'R');
    return fSelected && waitForNoHost("fresh") && waitForNoRow(IDC_DANDD_HOSTDIRS, "fresh");
}

bool enterATypedHostDir()
{
    typeLine(IDC_DANDD_HOSTPATH, "/pub/images");
    return waitForText(IDC_DANDD_HOSTPATH, "/pub/images") && waitForIdle() &&
           goToHostDir("..", "/pub") && goToHostDir("..", "/");
}

// Letters alone scroll a list to the name that begins with them.
bool findByPrefix(int idLine, int idList, const char* pszPrefix, const char* pszName)
{
    bool fHidden =
        waitForRow(idList, pszName) && SendMessageA(control(idList), LB_GETTOPINDEX, 0, 0) == 0;
    typeInto(idLine, pszPrefix);
    return waitForRowInSight(idList, pszName) && fHidden &&
           SendMessageA(control(idList), LB_GETTOPINDEX, 0, 0) > 0;
}

bool findALocalFile()
{
    doubleClickAt(rowPoint(IDC_DANDD_LOCALDIRS, "many"));
    bool fFilled = waitForRow(IDC_DANDD_LOCALFILES, "file-0001.dat");
    picture("many-files");
    bool fFound =
        findByPrefix(IDC_DANDD_LOCALFILTER, IDC_DANDD_LOCALFILES, "file-0133", "file-0133.dat");
    picture("quick-search");
    return goHome() && fFilled && fFound;
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
    bool fFiltered = waitForRowsWith(IDC_DANDD_HOSTFILES, ".txt");
    picture("host-filter");
    typeLine(IDC_DANDD_HOSTFILTER, "*");
    return waitForRow(IDC_DANDD_HOSTFILES, "setup.exe") && waitForIdle() && fFiltered;
}

bool maskLocalFiles()
{
    typeLine(IDC_DANDD_LOCALFILTER, "*.doc");
    bool fMasked = waitForRowsWith(IDC_DANDD_LOCALFILES, ".doc");
    typeLine(IDC_DANDD_LOCALFILTER, "*.*");
    return waitForRow(IDC_DANDD_LOCALFILES, "big.bin") && fMasked;
}

// A type counts when Enter follows it.
bool chooseAFileType()
{
    chooseInList(IDC_DANDD_LOCALTYPES, VK_DOWN);
    pressKey(VK_RETURN);
    bool fMasked = waitForRowsWith(IDC_DANDD_LOCALFILES, ".txt") &&
                   waitForText(IDC_DANDD_LOCALFILTER, "*.txt");
    picture("file-type");
    chooseInList(IDC_DANDD_LOCALTYPES, VK_UP);
    pressKey(VK_RETURN);
    return waitForRow(IDC_DANDD_LOCALFILES, "big.bin") && fMasked;
}

bool changeTheDrive()
{
    chooseInList(IDC_DANDD_LOCALDRIVES, 'C');
    bool fChanged =
        waitForText(IDC_DANDD_LOCALPATH, "c:\\") && waitForRow(IDC_DANDD_LOCALDIRS, "windows");
    picture("drive");
    return goHome() && fChanged;
}

bool lookAtADeepPath()
{
    char szDeep[MAX_PATH];
    localPath(szDeep, "deep\\a\\b\\c\\d\\e\\");
    typeLine(IDC_DANDD_LOCALFILTER, szDeep);
    bool fThere = waitForRow(IDC_DANDD_LOCALFILES, "end.txt");
    picture("deep-path");
    return goHome() && fThere;
}

bool deleteOnTheHost()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "notes.txt");
    chooseMenu('F', 'D');
    return sayYesTo("Delete notes.txt on the host?") && fSelected && waitForNoHost("notes.txt") &&
           waitForNoRow(IDC_DANDD_HOSTFILES, "notes.txt");
}

bool deleteOnTheHostByButton()
{
    bool fSelected = selectRow(IDC_DANDD_HOSTFILES, "license.txt");
    clickTool(IDM_XFER_DELETE);
    return sayYesTo("Delete license.txt on the host?") && fSelected &&
           waitForNoHost("license.txt") && waitForNoRow(IDC_DANDD_HOSTFILES, "license.txt");
}

bool answer(WORD vk)
{
    bool fAsked = waitForBox();
    pressKey(vk);
    return waitForNoBox() && fAsked;
}

bool keepALocalFile()
{
    char szFile[MAX_PATH];
    localPath(szFile, "notes.txt");
    bool fSelected = selectRow(IDC_DANDD_LOCALFILES, "notes.txt");
    clickTool(IDM_XFER_DELETE);
    bool fAsked = waitForBox();
    picture("confirm-delete");
    return answer('N') && fSelected && fAsked && isThere(szFile) &&
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
    bool fSelected = selectRow(IDC_DANDD_LOCALDIRS, "empty");
    clickTool(IDM_XFER_REMOVEDIR);
    return answer('Y') && fSelected && waitForNoLocal("empty") &&
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
    return {STEPS, ARRAYSIZE(STEPS)};
}
