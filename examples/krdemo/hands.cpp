#include "hands.h"
#include "looks.h"
#include "../../resources/ids.h"
#include "../../toolbar/toolbar.h"

#include <string.h>

namespace {

// The toolbar's measures.
constexpr LONG TOOL_LEFT = 8;
constexpr LONG TOOL_STEP = 23;
constexpr LONG TOOL_GAP = 8;
constexpr LONG TOOL_MIDDLE = 12;

struct Row {
    HWND hwndList;
    int nRow;
};

bool isSelected(const void* pContext)
{
    auto pRow = static_cast<const Row*>(pContext);
    return SendMessageA(pRow->hwndList, LB_GETSEL, WPARAM(pRow->nRow), 0) > 0;
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
    XferToolButton button = {};
    POINT pt = {TOOL_LEFT + TOOL_MIDDLE, TOOL_MIDDLE};
    for (int n = 0; SendMessageA(hwndToolbar, TOOLM_GETBUTTON, WPARAM(n),
                                 reinterpret_cast<LPARAM>(&button)) != 0 &&
                    button.idCommand != idCommand;
         ++n) {
        pt.x += (button.fsStyle & TOOLSTYLE_SEPARATOR) != 0 ? TOOL_GAP : TOOL_STEP;
    }
    ClientToScreen(hwndToolbar, &pt);
    return pt;
}

void clickTool(UINT idCommand)
{
    clickAt(toolPoint(idCommand));
}

void typeInto(int idLine, const char* pszText)
{
    clickAt(middleOf(control(idLine)));
    pressKey(VK_HOME);
    holdKey(VK_SHIFT);
    pressKey(VK_END);
    letKey(VK_SHIFT);
    typeText(pszText);
}

void typeLine(int idLine, const char* pszText)
{
    typeInto(idLine, pszText);
    pressKey(VK_RETURN);
}

void chooseInList(int idCombo, WORD vk)
{
    clickAt(middleOf(control(idCombo)));
    pressKey(vk);
    pressKey(VK_RETURN);
}

bool selectRow(int idList, const char* pszName)
{
    if (!waitForRow(idList, pszName) || !waitForIdle() || !waitForNoBox()) {
        return false;
    }
    Row row = {control(idList), rowOf(idList, pszName)};
    clickAt(pointOfRow(row.hwndList, row.nRow));
    return waitFor(isSelected, &row);
}

void dragRow(int idList, const char* pszName, POINT ptTo)
{
    POINT ptFrom = rowPoint(idList, pszName);
    ptFrom.x += 10; // far enough from an earlier click for no double click
    movePointer(ptFrom);
    pressButton();
    dragTo(ptFrom, ptTo);
}

bool goHome()
{
    char szFolder[MAX_PATH];
    char szShown[MAX_PATH];
    localPath(szFolder, "");
    lstrcpynA(szShown, szFolder, MAX_PATH);
    CharLowerA(szShown);
    szShown[strlen(szShown) - 1] = '\0';
    typeLine(IDC_DANDD_LOCALFILTER, szFolder);
    return waitForText(IDC_DANDD_LOCALPATH, szShown) &&
           waitForRow(IDC_DANDD_LOCALFILES, "report.txt");
}

bool sayYesTo(const char* pszQuestion)
{
    bool fAsked = waitForQuestion(pszQuestion);
    pressKey('Y');
    return fAsked;
}
