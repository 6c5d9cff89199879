// Rows of the owner-drawn lists: a small picture and a text, indented by level.
#include "transfer/panes/drawitem.h"
#include "resources/ids.h"
#include "transfer/panes/drives.h"
#include "transfer/panes/rows.h"

namespace {

constexpr int LEVEL_WIDTH = 4;
constexpr int ICON_WIDTH = 24;
constexpr UINT NO_ITEM = UINT(-1);

// The lists and the messages that read their rows.
struct ListRow {
    UINT idControl;
    UINT uGetTextLen;
    UINT uGetText;
    UINT uGetData;
};

constexpr ListRow LISTS[] = {
    {IDC_DANDD_LOCALDIRS, LB_GETTEXTLEN, LB_GETTEXT, LB_GETITEMDATA},
    {IDC_DANDD_HOSTDIRS, LB_GETTEXTLEN, LB_GETTEXT, LB_GETITEMDATA},
    {IDC_DANDD_LOCALDRIVES, CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_GETITEMDATA},
};

const ListRow* findList(UINT idControl)
{
    for (const ListRow& list : LISTS) {
        if (list.idControl == idControl) {
            return &list;
        }
    }
    return nullptr;
}

// Which colours a row takes; NONE leaves its paint alone.
enum Look { LOOK_BLACK, LOOK_PLAIN, LOOK_HIGHLIGHT, LOOK_NONE };

Look lookOf(const DRAWITEMSTRUCT* pDraw)
{
    bool fSelected = (pDraw->itemState & ODS_SELECTED) != 0;
    Look look = LOOK_BLACK;
    if ((pDraw->itemAction & ODA_FOCUS) != 0) {
        if ((pDraw->itemState & ODS_FOCUS) == 0) {
            look = LOOK_PLAIN; // a selected row loses its highlight with the focus
        } else if (!fSelected) {
            return LOOK_NONE;
        } else {
            look = LOOK_HIGHLIGHT;
        }
    }
    if ((pDraw->itemAction & (ODA_DRAWENTIRE | ODA_SELECT)) != 0) {
        look = fSelected ? LOOK_HIGHLIGHT : LOOK_PLAIN;
    }
    return look;
}

COLORREF colorOf(Look look, int nPlain, int nHighlight)
{
    return look == LOOK_BLACK ? 0 : GetSysColor(look == LOOK_PLAIN ? nPlain : nHighlight);
}

// The text is read whole: the drawing clips what doesn't fit into the width of the row.
bool readText(HWND hwndList, UINT nRow, const ListRow* pList, char (&szText)[XFER_NAME_SIZE])
{
    LRESULT cch = SendMessageA(hwndList, pList->uGetTextLen, nRow, 0);
    return cch >= 0 && cch <= XFER_MAX_NAME &&
           SendMessageA(hwndList, pList->uGetText, nRow, reinterpret_cast<LPARAM>(szText)) >= 0;
}

// Reads the row from the window's own list, whatever window the message names: only there is the
// data of a row known to be a block of the heap.
void vXferDandDDrawListItemBody(HWND hdlgDandD, const DRAWITEMSTRUCT* pDraw, const ListRow* pList)
{
    HWND hwndList = GetDlgItem(hdlgDandD, int(pDraw->CtlID));
    char szText[XFER_NAME_SIZE];
    POINT ptText = {ICON_WIDTH, 0};
    if (!readText(hwndList, pDraw->itemID, pList, szText)) {
        return;
    }
    LRESULT nData = SendMessageA(hwndList, pList->uGetData, pDraw->itemID, 0);
    auto hItem = reinterpret_cast<HGLOBAL>(nData == LB_ERR ? 0 : nData);
    auto pItem = static_cast<const XferListItem*>(hItem == nullptr ? nullptr : GlobalLock(hItem));
    if (pItem == nullptr) {
        return;
    }
    RECT rcText = pDraw->rcItem;
    int xIcon = rcText.left + LEVEL_WIDTH * int(pItem->nIndent);
    DrawIcon(pDraw->hDC, xIcon, rcText.top, pItem->hIcon);
    DPtoLP(pDraw->hDC, &ptText, 1);
    rcText.left = xIcon + ptText.x;
    DrawTextA(pDraw->hDC, szText, lstrlenA(szText), &rcText, DT_SINGLELINE | DT_NOPREFIX);
    GlobalUnlock(hItem);
}

void drawRow(HWND hdlgDandD, const DRAWITEMSTRUCT* pDraw, const ListRow* pList, Look look)
{
    const RECT* prc = &pDraw->rcItem;
    COLORREF clr = colorOf(look, COLOR_WINDOW, COLOR_HIGHLIGHT);
    COLORREF clrOld = SetBkColor(pDraw->hDC, clr);
    SetTextColor(pDraw->hDC, colorOf(look, COLOR_WINDOWTEXT, COLOR_HIGHLIGHTTEXT));
    HBRUSH hbr = CreateSolidBrush(clr);
    HGDIOBJ hbrOld = SelectObject(pDraw->hDC, hbr);
    PatBlt(pDraw->hDC, prc->left, prc->top, prc->right - prc->left, prc->bottom - prc->top,
           PATCOPY);
    vXferDandDDrawListItemBody(hdlgDandD, pDraw, pList);
    SetBkColor(pDraw->hDC, clrOld);
    SelectObject(pDraw->hDC, hbrOld);
    DeleteObject(hbr);
}

} // namespace

void vXferDandDDrawListItem(HWND hdlgDandD, XferWindowRecord* pRecord, const DRAWITEMSTRUCT* pDraw)
{
    const ListRow* pList = pDraw == nullptr ? nullptr : findList(pDraw->CtlID);
    // An action of 0 asks for nothing.
    if (pList == nullptr || pDraw->itemAction == 0) {
        return;
    }
    DRAWITEMSTRUCT draw = *pDraw;
    if (draw.itemID == NO_ITEM) {
        DrawFocusRect(draw.hDC, &draw.rcItem);
        if (draw.CtlID != IDC_DANDD_LOCALDRIVES) {
            return;
        }
        // The closed list always shows the current drive.
        draw.itemID = UINT(panes::findDriveRow(hdlgDandD, pRecord->nLocalDrive));
    }
    if ((draw.itemAction & ODA_FOCUS) != 0) {
        DrawFocusRect(draw.hDC, &draw.rcItem);
    }
    Look look = lookOf(&draw);
    if (look == LOOK_NONE) {
        return;
    }
    drawRow(hdlgDandD, &draw, pList, look);
    if ((draw.itemAction & ODA_DRAWENTIRE) != 0 && (draw.itemState & ODS_FOCUS) != 0) {
        DrawFocusRect(draw.hDC, &draw.rcItem);
    }
}
