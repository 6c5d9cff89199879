#include "transfer_bench.h"
#include "measure.h"
#include "../include/krhaul.h"
#include "../layout/layout.h"
#include "../resources/ids.h"

namespace {

HWND s_hdlg;
HMODULE s_hEnglish;

HWND openWindow()
{
    HostCallbacks callbacks = {};
    callbacks.cbSize = sizeof callbacks;
    return hdlgXferDandDCreate2("", nullptr, nullptr, 0, &callbacks, XFERVIEW_TWOPANE);
}

// ---- the layout, beside the same moves in one batch

struct Place {
    HWND hwnd;
    RECT rc;
};

void takePlaces(Place (&places)[XFERLAYOUT_ROWS])
{
    for (int n = 0; n < XFERLAYOUT_ROWS; ++n) {
        places[n].hwnd = GetDlgItem(s_hdlg, g_xferLayoutRows[n].nControlId);
        GetWindowRect(places[n].hwnd, &places[n].rc);
        MapWindowPoints(nullptr, s_hdlg, reinterpret_cast<POINT*>(&places[n].rc), 2);
    }
}

void moveInOneBatch(const Place (&places)[XFERLAYOUT_ROWS])
{
    HDWP hdwp = BeginDeferWindowPos(XFERLAYOUT_ROWS);
    for (const Place& place : places) {
        hdwp = DeferWindowPos(hdwp, place.hwnd, nullptr, place.rc.left, place.rc.top,
                              place.rc.right - place.rc.left, place.rc.bottom - place.rc.top,
                              SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(hdwp);
    InvalidateRect(s_hdlg, nullptr, TRUE);
}

// What the drive list alone costs: its height is set twice, to its own and to that of its
// dropped down list, and the platform arranges a combo box anew each time.
double driveListFloor(int cTimes)
{
    HWND hwndDrives = GetDlgItem(s_hdlg, IDC_DANDD_LOCALDRIVES);
    RECT rc;
    GetWindowRect(hwndDrives, &rc);
    int cx = rc.right - rc.left;
    int cy = rc.bottom - rc.top;
    return best([=] {
        for (int n = 0; n < cTimes; ++n) {
            for (int nFactor : {1, 10}) {
                SetWindowPos(hwndDrives, nullptr, 0, 0, cx, cy * nFactor,
                             SWP_NOMOVE | SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE);
            }
        }
    });
}

void benchLayout()
{
    constexpr int TIMES = 200;
    static layout::Distances s_layout;
    Place places[XFERLAYOUT_ROWS];
    vXferDandDCaptureLayout(s_hdlg, &s_layout);
    takePlaces(places);
    double dLayout = best([] {
        for (int n = 0; n < TIMES; ++n) {
            vXferDandDApplyLayout(s_hdlg, &s_layout, 0);
        }
    });
    double dBatch = best([&] {
        for (int n = 0; n < TIMES; ++n) {
            moveInOneBatch(places);
        }
    });
    print("one apply of the layout", dLayout / TIMES * 1e6, "us", dBatch / TIMES * 1e6,
          "the moves in one DeferWindowPos", dLayout / dBatch);
    // One batch can't take its place: the drive list is measured where its first move has put it,
    // and whoever listens to a control hears of one move after the other.
    double dFloor = driveListFloor(TIMES) + dBatch;
    print("  its floor: moves and drive list", dFloor / TIMES * 1e6, "us", dBatch / TIMES * 1e6,
          "the moves in one DeferWindowPos", dFloor / dBatch);
}

// ---- the log, beside plain appends to an edit control that is trimmed alike

constexpr int ENTRIES = 100000;
constexpr char ENTRY[] = "Received file000123.dat, 12345678 bytes.";

// What appending and trimming cost at the least: the same number of characters, cut as often.
void appendPlain(HWND hwndEdit)
{
    constexpr char LINE[] = "\r\nReceived file000123.dat, 12345678 bytes.";
    constexpr LONG CCH = sizeof LINE - 1;
    LONG cch = 0;
    SetWindowTextA(hwndEdit, "");
    for (int n = 0; n < ENTRIES; ++n) {
        if (cch + CCH > 30000) {
            LONG cchCut = (cch + CCH - 24000 + CCH - 1) / CCH * CCH;
            SendMessageA(hwndEdit, WM_SETREDRAW, FALSE, 0);
            SendMessageA(hwndEdit, EM_SETSEL, 0, cchCut);
            SendMessageA(hwndEdit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(""));
            SendMessageA(hwndEdit, WM_SETREDRAW, TRUE, 0);
            cch -= cchCut;
        }
        SendMessageA(hwndEdit, EM_SETSEL, 30000, 30000);
        SendMessageA(hwndEdit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(LINE));
        cch += CCH;
    }
}

// Hidden: in sight, what an entry costs is the drawing of the control's scroll bars.
void benchLog()
{
    HWND hwndInfo = GetDlgItem(s_hdlg, IDC_DANDD_INFOLINE);
    ShowWindow(s_hdlg, SW_HIDE);
    double dLog = best(
        [] {
            for (int n = 0; n < ENTRIES; ++n) {
                vXferDandDInfoLine(s_hdlg, ENTRY);
            }
        },
        1);
    // The same control, so that both pay for the same painting.
    double dPlain = best([=] { appendPlain(hwndInfo); }, 1);
    print("100,000 log entries", dLog * 1e3, "ms", dPlain * 1e3, "plain appends, trimmed alike",
          dLog / dPlain);
    ShowWindow(s_hdlg, SW_SHOW);
    pump();
}

// ---- the thermometer inside its limit, beside an empty call and beside its floor

void benchThermometer()
{
    constexpr int CALLS = 5000000;
    vXferDandDSetThermometer(s_hdlg, 1000);
    vXferDandDUpdateThermometer(s_hdlg, 1);
    UpdateWindow(s_hdlg);
    // Less than half a second's worth, after a paint: no call of these repaints.
    double dUpdate = best([] {
        for (int n = 0; n < CALLS; ++n) {
            vXferDandDUpdateThermometer(s_hdlg, n & 511);
        }
        UpdateWindow(s_hdlg);
    });
    double dEmpty = best([] {
        for (int n = 0; n < CALLS; ++n) {
            vXferStatDummy();
        }
    });
    double dClock = best([] {
        for (int n = 0; n < CALLS; ++n) {
            GetTickCount();
        }
    });
    print("an update of the thermometer", dUpdate / CALLS * 1e9, "ns", dEmpty / CALLS * 1e9,
          "an empty export", dUpdate / dEmpty);
    print("  its floor: one GetTickCount", dClock / CALLS * 1e9, "ns", dEmpty / CALLS * 1e9,
          "an empty export", dClock / dEmpty);
    vXferDandDUpdateThermometer(s_hdlg, -1);
}

// ---- a window made and destroyed, beside the same template with an empty procedure

INT_PTR CALLBACK emptyProc(HWND, UINT, WPARAM, LPARAM)
{
    return 0;
}

void benchCreation()
{
    constexpr int TIMES = 20;
    double dOurs = best([] {
        for (int n = 0; n < TIMES; ++n) {
            DestroyWindow(openWindow());
        }
        pump();
    });
    double dEmpty = best([] {
        for (int n = 0; n < TIMES; ++n) {
            DestroyWindow(CreateDialogParamA(s_hEnglish, "DLGDANDD", nullptr, emptyProc, 0));
        }
        pump();
    });
    print("a transfer window made, destroyed", dOurs / TIMES * 1e3, "ms", dEmpty / TIMES * 1e3,
          "its template, empty procedure", dOurs / dEmpty);
}

} // namespace

void benchFrame(const char*)
{
    s_hEnglish = LoadLibraryA("XFREN.DLL");
    s_hdlg = openWindow();
    pump();
    benchLayout();
    benchThermometer();
    benchCreation();
    benchLog();
    nXferDandDDestroy(s_hdlg);
    FreeLibrary(s_hEnglish);
}
