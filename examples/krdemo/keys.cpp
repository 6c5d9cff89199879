#include "keys.h"
#include "requests.h"
#include "../../include/krhaul.h"

namespace demo {

namespace {

ACCEL keys[] = {{FVIRTKEY, VK_DELETE, XFERCMD_DELETE},   {FVIRTKEY, VK_F1, XFERCMD_HELP},
                {FVIRTKEY, VK_F2, XFERCMD_RENAME},       {FVIRTKEY, VK_F5, XFERCMD_REFRESH},
                {FVIRTKEY, VK_RETURN, XFERCMD_TRANSFER}, {FVIRTKEY, VK_BACK, IDM_PARENT}};

// Enter on a directory goes there, which the window does by itself.
bool isForList(HWND list, const MSG* msg)
{
    switch (GetDlgCtrlID(list)) {
    case XFERPANE_LOCALFILES:
    case XFERPANE_HOSTFILES:
        return msg->wParam != VK_RETURN || SendMessageA(list, LB_GETSELCOUNT, 0, 0) > 0;
    case XFERPANE_LOCALDIRS:
    case XFERPANE_HOSTDIRS:
        return msg->wParam != VK_RETURN;
    default:
        return false;
    }
}

} // namespace

bool isKey(HWND window, MSG* msg)
{
    static HACCEL table = CreateAcceleratorTableA(keys, ARRAYSIZE(keys));
    HWND focus = GetFocus();
    return window != nullptr && GetParent(focus) == window && isForList(focus, msg) &&
           TranslateAcceleratorA(window, table, msg);
}

void enterParent(HWND window)
{
    int list = GetDlgCtrlID(GetFocus());
    if (list == XFERPANE_HOSTDIRS || list == XFERPANE_HOSTFILES) {
        enterDirectory("..");
    } else if (SetCurrentDirectoryA("..")) {
        vXferDandDRefreshLocalFiles(window);
    }
}

} // namespace demo
