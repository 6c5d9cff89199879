#include "hands.h"
#include "looks.h"
#include "../../toolbar/toolbar.h"

namespace robot {

namespace {

// The toolbar's measures.
constexpr LONG TOOL_LEFT = 8;
constexpr LONG TOOL_STEP = 23;
constexpr LONG TOOL_GAP = 8;
constexpr LONG TOOL_MIDDLE = 12;

// A list takes the mouse when it has got a press, the window when a drag begins.
bool waitForMouseIn(HWND hwnd)
{
    return waitFor([hwnd] {
        GUITHREADINFO info = {};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(GetWindowThreadProcessId(hwnd, nullptr), &info);
        return info.hwndCapture == hwnd;
    });
}

// The toolbar writes a button to where its own process has memory.
struct RemoteButton {
    HANDLE process;
    void* place;
};

RemoteButton makeRemoteButton(HWND hwndToolbar)
{
    DWORD idProcess = 0;
    GetWindowThreadProcessId(hwndToolbar, &idProcess);
    RemoteButton remote = {OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ, FALSE, idProcess),
                           nullptr};
    remote.place =
        VirtualAllocEx(remote.process, nullptr, sizeof(XferToolButton), MEM_COMMIT, PAGE_READWRITE);
    return remote;
}

bool readButton(HWND hwndToolbar, const RemoteButton& remote, int row, XferToolButton* button)
{
    return SendMessageA(hwndToolbar, TOOLM_GETBUTTON, WPARAM(row),
                        reinterpret_cast<LPARAM>(remote.place)) != 0 &&
           ReadProcessMemory(remote.process, remote.place, button, sizeof *button, nullptr);
}

} // namespace

void chooseMenu(WORD vkPopup, WORD vkItem)
{
    pressWithAlt(vkPopup);
    pressKey(vkItem);
}

POINT toolPoint(UINT idCommand)
{
    HWND hwndToolbar = control(IDC_DANDD_TOOLBAR);
    RemoteButton remote = makeRemoteButton(hwndToolbar);
    XferToolButton button = {};
    POINT pt = {TOOL_LEFT + TOOL_MIDDLE, TOOL_MIDDLE};
    for (int n = 0; readButton(hwndToolbar, remote, n, &button) && button.idCommand != idCommand;
         ++n) {
        pt.x += (button.fsStyle & TOOLSTYLE_SEPARATOR) != 0 ? TOOL_GAP : TOOL_STEP;
    }
    VirtualFreeEx(remote.process, remote.place, 0, MEM_RELEASE);
    CloseHandle(remote.process);
    ClientToScreen(hwndToolbar, &pt);
    return pt;
}

void clickTool(UINT idCommand)
{
    clickAt(toolPoint(idCommand));
}

void typeInto(int idLine, const char* text)
{
    clickAt(middleOf(control(idLine)));
    typeOver(text);
}

void typeLine(int idLine, const char* text)
{
    typeInto(idLine, text);
    pressKey(VK_RETURN);
}

void chooseInList(int idCombo, WORD vk)
{
    clickAt(middleOf(control(idCombo)));
    pressKey(vk);
    pressKey(VK_RETURN);
}

bool selectRow(int idList, const char* name)
{
    if (!waitForRow(idList, name) || !waitForIdle() || !waitForNoBox()) {
        return false;
    }
    HWND hwndList = control(idList);
    int row = rowOf(idList, name);
    clickAt(pointOfRow(hwndList, row));
    return waitFor([=] { return SendMessageA(hwndList, LB_GETSEL, WPARAM(row), 0) > 0; });
}

bool selectTwoRows(int idList, const char* name)
{
    bool selected = selectRow(idList, name);
    holdKey(VK_SHIFT);
    pressKey(VK_DOWN);
    letKey(VK_SHIFT);
    return selected;
}

void dragRow(int idList, const char* name, POINT ptTo)
{
    POINT ptFrom = rowPoint(idList, name);
    ptFrom.x += 10; // far enough from an earlier click for no double click
    movePointer(ptFrom);
    pressButton();
    waitForMouseIn(control(idList));
    dragTo(ptFrom, ptTo);
    waitForMouseIn(window());
    rest();
}

bool goHome()
{
    std::string folder = localPath("");
    std::string shown = folder.substr(0, folder.size() - 1);
    CharLowerA(&shown[0]);
    typeLine(IDC_DANDD_LOCALFILTER, folder.c_str());
    return waitForText(IDC_DANDD_LOCALPATH, shown.c_str()) &&
           waitForRow(IDC_DANDD_LOCALFILES, "report.txt");
}

bool sayYesTo(const char* question)
{
    bool asked = waitForQuestion(question);
    pressKey('Y');
    return asked;
}

} // namespace robot
