// Keys that the sample caller has for the lists.
#include "hands.h"
#include "looks.h"
#include "steps.h"

#include <fstream>
#include <iterator>

namespace robot {

namespace {

bool pressOnRow(int idList, const char* name, WORD vk)
{
    bool selected = selectRow(idList, name);
    pressKey(vk);
    return selected;
}

bool receiveByEnter()
{
    return pressOnRow(IDC_DANDD_HOSTFILES, "price list.csv", VK_RETURN) &&
           waitForRow(IDC_DANDD_LOCALFILES, "price list.csv") && waitForIdle() && waitForNoBox() &&
           areEqual("price list.csv", "price list.csv");
}

bool renameByKey()
{
    bool opened = pressOnRow(IDC_DANDD_LOCALFILES, "price list.csv", VK_F2) && waitForBox();
    pressWithAlt('T');
    typeOver("keys.csv");
    pressKey(VK_RETURN);
    return waitForNoBox() && opened && waitForNoLocal("price list.csv") &&
           waitForRow(IDC_DANDD_LOCALFILES, "keys.csv");
}

bool deleteByKey()
{
    bool asked = pressOnRow(IDC_DANDD_LOCALFILES, "keys.csv", VK_DELETE) && waitForBox();
    pressKey('Y');
    bool deleted = waitForNoBox() && asked && waitForNoLocal("keys.csv") &&
                   waitForNoRow(IDC_DANDD_LOCALFILES, "keys.csv");
    return pressOnRow(IDC_DANDD_HOSTFILES, "price list.csv", VK_DELETE) &&
           sayYesTo("Delete price list.csv on the host?") && deleted &&
           waitForNoHost("price list.csv") && waitForNoRow(IDC_DANDD_HOSTFILES, "price list.csv");
}

bool refreshByKey()
{
    std::ofstream(localPath("here.new"));
    std::ofstream(hostPath("there.new"));
    return pressOnRow(IDC_DANDD_LOCALFILES, "letter.txt", VK_F5) &&
           waitForRow(IDC_DANDD_LOCALFILES, "here.new") &&
           waitForRow(IDC_DANDD_HOSTFILES, "there.new");
}

bool helpByKey()
{
    bool shown = pressOnRow(IDC_DANDD_HOSTDIRS, "docs", VK_F1) && waitForBox();
    takePictureOf("help-box");
    pressKey(VK_RETURN);
    return waitForNoBox() && shown;
}

bool isHostDir(const char* path)
{
    return waitForText(IDC_DANDD_HOSTPATH, path) && waitForIdle();
}

// Enter on a directory, and Backspace in each of the two lists of a side.
bool walkOnTheHostByKeys()
{
    bool inFiles = pressOnRow(IDC_DANDD_HOSTDIRS, "archive", VK_RETURN) && isHostDir("/archive") &&
                   pressOnRow(IDC_DANDD_HOSTFILES, "entry-001.log", VK_BACK) && isHostDir("/");
    bool inDirs = pressOnRow(IDC_DANDD_HOSTDIRS, "pub", VK_RETURN) && isHostDir("/pub");
    pressKey(VK_BACK);
    return isHostDir("/") && inFiles && inDirs;
}

bool walkHereByKeys()
{
    bool inFiles = pressOnRow(IDC_DANDD_LOCALDIRS, "many", VK_RETURN) &&
                   pressOnRow(IDC_DANDD_LOCALFILES, "file-0001.dat", VK_BACK) &&
                   waitForRow(IDC_DANDD_LOCALFILES, "letter.txt");
    takePictureOf("after-backspace");
    bool inDirs = pressOnRow(IDC_DANDD_LOCALDIRS, "inbox", VK_RETURN) &&
                  waitForRow(IDC_DANDD_LOCALFILES, "kept.txt");
    pressKey(VK_BACK);
    return waitForRow(IDC_DANDD_LOCALFILES, "letter.txt") && inFiles && inDirs;
}

// In a line the same keys edit.
bool editByKeys()
{
    typeInto(IDC_DANDD_LOCALFILTER, "abc");
    pressKey(VK_BACK);
    pressKey(VK_HOME);
    pressKey(VK_DELETE);
    bool edited = waitForText(IDC_DANDD_LOCALFILTER, "b") && !isBoxOpen();
    return goHome() && edited;
}

constexpr Step STEPS[] = {
    {"receive by Enter", receiveByEnter},
    {"rename by F2", renameByKey},
    {"delete by Del", deleteByKey},
    {"refresh by F5", refreshByKey},
    {"ask for help by F1", helpByKey},
    {"walk on the host by Enter and Backspace", walkOnTheHostByKeys},
    {"walk here by Enter and Backspace", walkHereByKeys},
    {"edit a line by the same keys", editByKeys},
};

} // namespace

StepTable keySteps()
{
    return {STEPS, int(std::size(STEPS))};
}

} // namespace robot
