// A caller in C++: it carries names in a list, and opens and closes a window of each kind.
#include <krhaul.h>

#include <string>

namespace {

bool carriesNames()
{
    char szName[XFER_MAX_NAME + 1];
    XferFileList list = nullptr;
    bool fMade = XferFileList_fCreate(&list) &&
                 XferFileList_fSetString(list, 0, XFERLIST_HOST, "report.txt");
    std::string name = XferFileList_lpszGetString(list, 0, XFERLIST_HOST, szName, sizeof szName);
    XferFileList_vDestroy(list);
    return fMade && name == "report.txt";
}

bool opensWindows()
{
    HostCallbacks callbacks = {};
    callbacks.cbSize = sizeof callbacks;
    HWND hdlg = hdlgXferDandDCreate2("Files", nullptr, nullptr, 0, &callbacks, XFERVIEW_TWOPANE);
    HWND hdlgStat = hdlgXferStatCreate("Receiving", 1, hdlg, 0, 0);
    bool fOpened = IsWindow(hdlg) && IsWindow(hdlgStat);
    return fOpened && nXferStatDestroy(hdlgStat) == XFER_OK && nXferDandDDestroy(hdlg) == 0 &&
           !IsWindow(hdlg);
}

} // namespace

int main()
{
    return carriesNames() && opensWindows() ? 0 : 1;
}
