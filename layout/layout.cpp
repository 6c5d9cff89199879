#include "layout/layout.h"
#include "include/krhaul.h"
#include "layout/infoscroll.h"
#include "layout/templatesize.h"
#include "resources/ids.h"

namespace {

constexpr BYTE CLIENT = XFERANCHOR_SAME;                     // same edge of the client area
constexpr BYTE FAR_CLIENT = 0;                               // opposite edge of it
constexpr BYTE CENTRE = XFERANCHOR_SAME | XFERANCHOR_CENTRE; // same edge of the centre box
constexpr BYTE FAR_CENTRE = XFERANCHOR_CENTRE;               // opposite edge of it
constexpr XferAnchorSet ABSENT = {0, 0, 0, 0, 0};

constexpr char TEMPLATE[] = "DLGDANDD";
constexpr LONG CENTRE_HALF = 5;
constexpr UINT MOVE_FLAGS = SWP_NOZORDER | SWP_NOREDRAW | SWP_NOACTIVATE;
constexpr UINT STAY_FLAGS = MOVE_FLAGS | SWP_NOSIZE | SWP_NOMOVE;

// Height of the opened drive list, as a multiple of the closed one.
constexpr int DROPDOWN_FACTOR = 10;

// The place of the log in command line mode: past both sides of the client area, from below the
// toolbar to above the command line.
constexpr LONG INFO_OVERLAP = 1;
constexpr LONG INFO_TOP = 26;
constexpr LONG INFO_GAP = 4;

layout::AliveProc s_pfnIsAlive;

bool isAlive(HWND hdlgDandD, const layout::Distances* pLayout)
{
    return s_pfnIsAlive == nullptr || s_pfnIsAlive(hdlgDandD, pLayout);
}

struct References {
    RECT rcClient;
    RECT rcCentre;
};

References computeReferences(const RECT* prcClient)
{
    References references = {*prcClient, {}};
    LONG x = references.rcClient.right / 2;
    LONG y = references.rcClient.bottom / 2;
    references.rcCentre = {x - CENTRE_HALF, y - CENTRE_HALF, x + CENTRE_HALF, y + CENTRE_HALF};
    return references;
}

References currentReferences(HWND hdlgDandD)
{
    RECT rcClient = {};
    GetClientRect(hdlgDandD, &rcClient);
    return computeReferences(&rcClient);
}

// The platform cuts a window that is larger than the screen when it is created, but its controls
// are where the template puts them. Measured against the smaller window, those on the right would
// stay outside for good.
References templateReferences(HWND hdlgDandD)
{
    RECT rcClient = {};
    return layout::templateClient(hdlgDandD, TEMPLATE, &rcClient) ? computeReferences(&rcClient)
                                                                  : currentReferences(hdlgDandD);
}

const RECT* referenceOf(const References* pReferences, BYTE bAnchor)
{
    return (bAnchor & XFERANCHOR_CENTRE) != 0 ? &pReferences->rcCentre : &pReferences->rcClient;
}

LONG edgeOf(const References* pReferences, BYTE bAnchor, LONG RECT::*pSame, LONG RECT::*pOpposite)
{
    const RECT* prc = referenceOf(pReferences, bAnchor);
    return (bAnchor & XFERANCHOR_SAME) != 0 ? prc->*pSame : prc->*pOpposite;
}

// The reference edges of a control.
RECT edgesOf(const References* pReferences, const XferAnchorSet* pSet)
{
    return {edgeOf(pReferences, pSet->bLeft, &RECT::left, &RECT::right),
            edgeOf(pReferences, pSet->bTop, &RECT::top, &RECT::bottom),
            edgeOf(pReferences, pSet->bRight, &RECT::right, &RECT::left),
            edgeOf(pReferences, pSet->bBottom, &RECT::bottom, &RECT::top)};
}

// The rectangle of a control in client coordinates of the window.
RECT placeOf(HWND hdlgDandD, HWND hwndControl)
{
    RECT rc = {};
    GetWindowRect(hwndControl, &rc);
    POINT ptFirst = {rc.left, rc.top};
    POINT ptLast = {rc.right, rc.bottom};
    ScreenToClient(hdlgDandD, &ptFirst);
    ScreenToClient(hdlgDandD, &ptLast);
    return {ptFirst.x, ptFirst.y, ptLast.x, ptLast.y};
}

bool isInMode(const XferLayoutRow* pRow, int nMode)
{
    return (pRow->modes[nMode].fInMode & 1) != 0;
}

void measureRow(HWND hdlgDandD, const References* pReferences, const XferLayoutRow* pRow, int nMode,
                RECT* prcDistances)
{
    RECT rc = placeOf(hdlgDandD, GetDlgItem(hdlgDandD, pRow->nControlId));
    RECT rcEdges = edgesOf(pReferences, &pRow->modes[nMode]);
    *prcDistances = {rc.left - rcEdges.left, rc.top - rcEdges.top, rc.right - rcEdges.right,
                     rc.bottom - rcEdges.bottom};
}

void moveRow(HWND hdlgDandD, const References* pReferences, const XferLayoutRow* pRow, int nMode,
             const RECT* prcDistances)
{
    RECT rc = edgesOf(pReferences, &pRow->modes[nMode]);
    LONG x = rc.left + prcDistances->left;
    LONG y = rc.top + prcDistances->top;
    SetWindowPos(GetDlgItem(hdlgDandD, pRow->nControlId), nullptr, x, y,
                 rc.right + prcDistances->right - x, rc.bottom + prcDistances->bottom - y,
                 MOVE_FLAGS);
}

// The height of a combo box is that of its opened list.
void setDropDownHeight(HWND hdlgDandD)
{
    HWND hwndDrives = GetDlgItem(hdlgDandD, IDC_DANDD_LOCALDRIVES);
    RECT rc = placeOf(hdlgDandD, hwndDrives);
    SetWindowPos(hwndDrives, nullptr, rc.left, rc.top, rc.right - rc.left,
                 (rc.bottom - rc.top) * DROPDOWN_FACTOR, MOVE_FLAGS);
}

// Most controls already are as they should be at each change of size.
void enableRow(HWND hwndControl, BOOL fEnabled)
{
    if (IsWindowEnabled(hwndControl) != fEnabled) {
        EnableWindow(hwndControl, fEnabled);
    }
}

void setVisible(HWND hwndControl, bool fVisible)
{
    if (((GetWindowLongA(hwndControl, GWL_STYLE) & WS_VISIBLE) != 0) != fVisible) {
        SetWindowPos(hwndControl, nullptr, 0, 0, 0, 0,
                     STAY_FLAGS | (fVisible ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    }
}

// Each of the two steps sends messages to the control.
void showRow(HWND hdlgDandD, const layout::Distances* pLayout, const XferLayoutRow* pRow, int nMode)
{
    HWND hwndControl = GetDlgItem(hdlgDandD, pRow->nControlId);
    bool fShown = isInMode(pRow, nMode);
    if (fShown) {
        enableRow(hwndControl, TRUE);
    } else {
        setVisible(hwndControl, false);
    }
    if (!isAlive(hdlgDandD, pLayout)) {
        return;
    }
    if (fShown) {
        setVisible(hwndControl, true);
    } else {
        enableRow(hwndControl, FALSE);
    }
}

} // namespace

// Fields of a set: whether the control is in the mode, then top, bottom, left, right.
const XferLayoutRow g_xferLayoutRows[XFERLAYOUT_ROWS] = {
    {IDC_DANDD_LOCALFILTERLABEL, {{1, CLIENT, FAR_CLIENT, FAR_CENTRE, CENTRE}, ABSENT}},
    {IDC_DANDD_LOCALFILTER, {{1, CLIENT, FAR_CLIENT, CENTRE, CLIENT}, ABSENT}},
    {IDC_DANDD_LOCALFILES, {{1, CLIENT, FAR_CENTRE, FAR_CENTRE, CLIENT}, ABSENT}},
    {IDC_DANDD_LOCALPATHLABEL, {{1, CLIENT, FAR_CLIENT, CLIENT, FAR_CLIENT}, ABSENT}},
    {IDC_DANDD_LOCALPATH, {{1, CLIENT, FAR_CLIENT, CLIENT, FAR_CENTRE}, ABSENT}},
    {IDC_DANDD_LOCALDIRS, {{1, CLIENT, FAR_CENTRE, CLIENT, FAR_CENTRE}, ABSENT}},
    {IDC_DANDD_LOCALDRIVESLABEL, {{1, CENTRE, FAR_CENTRE, CLIENT, FAR_CLIENT}, ABSENT}},
    {IDC_DANDD_LOCALDRIVES, {{1, CENTRE, FAR_CENTRE, CLIENT, FAR_CENTRE}, ABSENT}},
    {IDC_DANDD_HOSTFILTERLABEL, {{1, FAR_CENTRE, CENTRE, FAR_CENTRE, CENTRE}, ABSENT}},
    {IDC_DANDD_HOSTFILTER, {{1, FAR_CENTRE, CENTRE, FAR_CENTRE, CLIENT}, ABSENT}},
    {IDC_DANDD_HOSTFILES, {{1, FAR_CENTRE, CLIENT, FAR_CENTRE, CLIENT}, ABSENT}},
    {IDC_DANDD_HOSTPATHLABEL, {{1, FAR_CENTRE, CENTRE, CLIENT, FAR_CLIENT}, ABSENT}},
    {IDC_DANDD_HOSTPATH, {{1, FAR_CENTRE, CENTRE, CLIENT, FAR_CENTRE}, ABSENT}},
    {IDC_DANDD_HOSTDIRS, {{1, FAR_CENTRE, CLIENT, CLIENT, FAR_CENTRE}, ABSENT}},
    {IDC_DANDD_BAND, {{1, CENTRE, CENTRE, CLIENT, CLIENT}, ABSENT}},
    {IDC_DANDD_COMMANDLABEL, {ABSENT, {1, FAR_CLIENT, CLIENT, CLIENT, FAR_CLIENT}}},
    {IDC_DANDD_COMMANDLINE, {ABSENT, {1, FAR_CLIENT, CLIENT, CLIENT, CLIENT}}},
    {IDC_DANDD_INFOLINE,
     {{1, FAR_CLIENT, CLIENT, CLIENT, CLIENT}, {1, CLIENT, CLIENT, CLIENT, CLIENT}}},
    {IDC_DANDD_STRIP, {{1, FAR_CLIENT, CLIENT, CLIENT, CLIENT}, ABSENT}},
};

namespace {

int rowOf(LONG nControlId)
{
    int n = 0;
    while (g_xferLayoutRows[n].nControlId != nControlId) {
        ++n;
    }
    return n;
}

} // namespace

void vXferDandDCaptureLayout(HWND hdlgDandD, layout::Distances* pLayout)
{
    References references = templateReferences(hdlgDandD);
    for (int nMode = 0; nMode < XFERLAYOUT_MODES; ++nMode) {
        for (int n = 0; n < XFERLAYOUT_ROWS; ++n) {
            if (isInMode(&g_xferLayoutRows[n], nMode)) {
                measureRow(hdlgDandD, &references, &g_xferLayoutRows[n], nMode,
                           &pLayout->distances[n][nMode]);
            }
        }
    }
    LONG nCommandTop = pLayout->distances[rowOf(IDC_DANDD_COMMANDLINE)][XFERVIEW_COMMANDLINE].top;
    pLayout->distances[rowOf(IDC_DANDD_INFOLINE)][XFERVIEW_COMMANDLINE] = {
        -INFO_OVERLAP, INFO_TOP, INFO_OVERLAP, nCommandTop - INFO_GAP};
}

namespace {

bool moveRows(HWND hdlgDandD, const layout::Distances* pLayout, int nMode)
{
    References references = currentReferences(hdlgDandD);
    for (int n = 0; n < XFERLAYOUT_ROWS && isAlive(hdlgDandD, pLayout); ++n) {
        if (isInMode(&g_xferLayoutRows[n], nMode)) {
            moveRow(hdlgDandD, &references, &g_xferLayoutRows[n], nMode,
                    &pLayout->distances[n][nMode]);
        }
    }
    return isAlive(hdlgDandD, pLayout);
}

bool showRows(HWND hdlgDandD, const layout::Distances* pLayout, int nMode)
{
    for (int n = 0; n < XFERLAYOUT_ROWS && isAlive(hdlgDandD, pLayout); ++n) {
        showRow(hdlgDandD, pLayout, &g_xferLayoutRows[n], nMode);
    }
    return isAlive(hdlgDandD, pLayout);
}

} // namespace

void layout::setAliveProc(AliveProc pfnIsAlive)
{
    s_pfnIsAlive = pfnIsAlive;
}

void vXferDandDApplyLayout(HWND hdlgDandD, const layout::Distances* pLayout, int nMode)
{
    int fAtEnd = fXferDandDInfoAtEnd(hdlgDandD);
    if (!moveRows(hdlgDandD, pLayout, nMode)) {
        return;
    }
    setDropDownHeight(hdlgDandD);
    if (!showRows(hdlgDandD, pLayout, nMode)) {
        return;
    }
    if (fAtEnd) {
        vXferDandDInfoScrollToEnd(hdlgDandD, 0);
    }
    // A window that clips its children, which keeps them from flashing, leaves them out of a plain
    // invalidation.
    if (isAlive(hdlgDandD, pLayout)) {
        RedrawWindow(hdlgDandD, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    }
}
