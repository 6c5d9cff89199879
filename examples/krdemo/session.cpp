#include "session.h"
#include "hostpanes.h"
#include "keys.h"
#include "requests.h"
#include "statuswindow.h"
#include "work.h"
#include "../../include/krhaul.h"

namespace demo {

namespace {

constexpr char TITLE[] = "Files - Sample caller";

HWND window;
WNDPROC windowProc; // the window's procedure before ours
std::string language;

LRESULT CALLBACK sessionProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && LOWORD(wParam) == XFERCMD_REFRESH) {
        vXferDandDRefreshLocalFiles(hwnd);
        enterDirectory("");
    } else if (message == WM_COMMAND && LOWORD(wParam) == IDM_PARENT) {
        enterParent(hwnd);
    } else if (message == WM_COMMAND && LOWORD(wParam) == IDABORT) {
        stopWork();
    } else if (message == WM_CLOSE) {
        closeSession();
        return 0;
    }
    return CallWindowProcA(windowProc, hwnd, message, wParam, lParam);
}

} // namespace

bool openSession(const std::string& localFolder, const std::string& code, HWND owner)
{
    if (!SetCurrentDirectoryA(localFolder.c_str())) {
        return false;
    }
    window = hdlgXferDandDLangCreate2(code.c_str(), TITLE, owner, nullptr, 0, requestCallbacks(),
                                      XFERVIEW_TWOPANE);
    if (window == nullptr) {
        return false;
    }
    windowProc = reinterpret_cast<WNDPROC>(
        SetWindowLongA(window, GWL_WNDPROC, reinterpret_cast<LONG>(sessionProc)));
    language = code;
    setAsker(window);
    say("The host is " + hostAddress().server + ".");
    enterDirectory("");
    return true;
}

void closeSession()
{
    HWND old = window;
    window = nullptr;
    stopWork();
    closeStatusWindow();
    nXferDandDDestroy(old);
}

HWND sessionWindow()
{
    return window;
}

const std::string& sessionLanguage()
{
    return language;
}

void say(const std::string& line)
{
    vXferDandDInfoLine(window, line.c_str());
}

void showWorkBegin()
{
    vXferDandDDisplayDILText(window, "");
    vXferDandDSetBusyState(window, TRUE);
}

void showWorkEnd(bool stopped)
{
    vXferDandDUpdateThermometer(window, -1);
    if (stopped) {
        vXferDandDDisplayDILText(window, "Stopped.");
    }
    vXferDandDSetBusyState(window, FALSE);
}

bool beginSessionWork(std::function<void(bool)> onEnd)
{
    bool begun = beginWork([onEnd](bool stopped) {
        if (onEnd) {
            onEnd(stopped);
        }
        showWorkEnd(stopped);
    });
    if (begun) {
        showWorkBegin();
    } else {
        say("The host is busy.");
    }
    return begun;
}

} // namespace demo
