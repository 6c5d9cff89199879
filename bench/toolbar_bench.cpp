#include "toolbar_bench.h"
#include "../resources/ids.h"
#include "../toolbar/toolbar.h"

#include <commctrl.h>

namespace {

constexpr int PICTURES = 15;
constexpr BYTE OFF = 0, ON = TOOLSTATE_ENABLED, CHECKED = TOOLSTATE_CHECKED;
constexpr BYTE GAP = TOOLSTYLE_SEPARATOR, GROUP = TOOLSTYLE_CHECK | TOOLSTYLE_GROUP;

struct BenchRow {
    LONG iPicture;
    WORD idCommand;
    BYTE fsBusy, fsIdle, fsStyle;
};

// The buttons of the transfer window in two-pane mode, and their states while it is busy and idle.
constexpr BenchRow ROWS[] = {
    {0, IDM_XFER_TRANSFER, OFF, ON, 0},
    {1, IDM_XFER_RENAME, OFF, ON, 0},
    {2, IDM_XFER_DELETE, OFF, ON, 0},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {3, IDM_XFER_MAKEDIR, OFF, ON, 0},
    {4, IDM_XFER_REMOVEDIR, OFF, ON, 0},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {5, IDM_XFER_DETAILS, OFF, ON, 0},
    {6, IDM_XFER_VIEW, OFF, ON, 0},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {7, IDM_XFER_TYPETEXT, OFF, ON, GROUP},
    {8, IDM_XFER_TYPEBINARY, OFF, ON, GROUP},
    {9, IDM_XFER_TYPEAUTO, CHECKED, ON | CHECKED, GROUP},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {10, IDM_XFER_TWOPANE, CHECKED, ON | CHECKED, GROUP},
    {11, IDM_XFER_COMMANDLINE, OFF, ON, GROUP},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {12, IDM_XFER_REFRESH, OFF, ON, 0},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {13, IDM_XFER_STOP, ON, OFF, 0},
    {-1, IDC_DANDD_TOOLBAR, ON, ON, GAP},
    {14, IDM_XFER_HELP, ON, ON, 0},
};

HWND makeOurs(HWND hwndParent, HINSTANCE hModule)
{
    fXferToolbarRegister(GetModuleHandleA(nullptr));
    HWND hwnd = CreateWindowA(XFER_TOOLBARCLASS, "", WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, hwndParent,
                              reinterpret_cast<HMENU>(IDC_DANDD_TOOLBAR), nullptr, nullptr);
    const toolbar::PictureSource pictures = {hModule, IDB_TOOLBAR};
    SendMessageA(hwnd, TOOLM_ADDBITMAP, PICTURES, reinterpret_cast<LPARAM>(&pictures));
    for (const BenchRow& row : ROWS) {
        const XferToolButton button = {row.iPicture, row.idCommand, row.fsBusy, row.fsStyle};
        SendMessageA(hwnd, TOOLM_ADDBUTTONS, 1, reinterpret_cast<LPARAM>(&button));
    }
    return hwnd;
}

// The states of both toolbars have the same values.
BYTE libraryStyle(BYTE fsStyle)
{
    return fsStyle == GAP ? TBSTYLE_SEP : fsStyle == GROUP ? TBSTYLE_CHECKGROUP : TBSTYLE_BUTTON;
}

// Left as its users get it: where the system has themes for it, it is a little slower by them.
HWND makeLibrary(HWND hwndParent, HINSTANCE hModule)
{
    TBBUTTON buttons[ARRAYSIZE(ROWS)] = {};
    for (size_t n = 0; n < ARRAYSIZE(ROWS); ++n) {
        buttons[n].iBitmap = ROWS[n].fsStyle == GAP ? 8 : ROWS[n].iPicture;
        buttons[n].idCommand = ROWS[n].idCommand;
        buttons[n].fsState = ROWS[n].fsBusy;
        buttons[n].fsStyle = libraryStyle(ROWS[n].fsStyle);
    }
    InitCommonControls();
    HWND hwnd = CreateWindowA(TOOLBARCLASSNAMEA, "",
                              WS_CHILD | WS_VISIBLE | CCS_NOPARENTALIGN | CCS_NODIVIDER, 0, 0, 0, 0,
                              hwndParent, nullptr, nullptr, nullptr);
    TBADDBITMAP pictures = {hModule, IDB_TOOLBAR};
    SendMessageA(hwnd, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageA(hwnd, TB_SETBITMAPSIZE, 0, MAKELPARAM(16, 15));
    SendMessageA(hwnd, TB_ADDBITMAP, PICTURES, reinterpret_cast<LPARAM>(&pictures));
    SendMessageA(hwnd, TB_ADDBUTTONSA, ARRAYSIZE(ROWS), reinterpret_cast<LPARAM>(buttons));
    SendMessageA(hwnd, TB_SETBUTTONSIZE, 0, MAKELPARAM(24, 22));
    return hwnd;
}

} // namespace

BenchToolbars makeBenchToolbars(HINSTANCE hModule)
{
    BenchToolbars toolbars;
    toolbars.hwndParent = CreateWindowExA(WS_EX_TOPMOST, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0,
                                          600, 100, nullptr, nullptr, nullptr, nullptr);
    toolbars.hwndOurs = makeOurs(toolbars.hwndParent, hModule);
    toolbars.hwndLibrary = makeLibrary(toolbars.hwndParent, hModule);
    MoveWindow(toolbars.hwndLibrary, 0, 40, 600, 27, FALSE);
    return toolbars;
}

void destroyBenchToolbars(const BenchToolbars* pToolbars)
{
    DestroyWindow(pToolbars->hwndParent);
}

void setBenchToolbarLook(const BenchToolbars* pToolbars, BenchToolbarLook look)
{
    for (const BenchRow& row : ROWS) {
        if (row.fsStyle != GAP) {
            BYTE fsState = look == BENCH_BUSY ? row.fsBusy : row.fsIdle;
            SendMessageA(pToolbars->hwndOurs, TOOLM_SETSTATE, row.idCommand, fsState);
            SendMessageA(pToolbars->hwndLibrary, TB_SETSTATE, row.idCommand, fsState);
        }
    }
}

void repaintBenchToolbar(HWND hwnd, int cTimes)
{
    for (int n = 0; n < cTimes; ++n) {
        InvalidateRect(hwnd, nullptr, TRUE);
        UpdateWindow(hwnd);
    }
    GdiFlush();
}
