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

// A row's text is read whole: what doesn't fit into a row's width is for the drawing to clip.
bool readText(const DRAWITEMSTRUCT* pDraw, const ListRow* pList, char (&szText)[XFER_NAME_SIZE])
{
    LRESULT cch = SendMessageA(pDraw->hwndItem, pList->uGetTextLen, pDraw->itemID, 0);
    return cch >= 0 && cch <= XFER_MAX_NAME &&
           SendMessageA(pDraw->hwndItem, pList->uGetText, pDraw->itemID,
                        reinterpret_cast<LPARAM>(szText)) >= 0;
}

void vXferDandDDrawListItemBody(const DRAWITEMSTRUCT* pDraw, const ListRow* pList)
{
    char szText[XFER_NAME_SIZE];
    POINT ptText = {ICON_WIDTH, 0};
    if (!readText(pDraw, pList, szText)) {
        return;
    }
    LRESULT nData = SendMessageA(pDraw->hwndItem, pList->uGetData, pDraw->itemID, 0);
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

void drawRow(const DRAWITEMSTRUCT* pDraw, const ListRow* pList, Look look)
{
    const RECT* prc = &pDraw->rcItem;
    COLORREF clr = colorOf(look, COLOR_WINDOW, COLOR_HIGHLIGHT);
    COLORREF clrOld = SetBkColor(pDraw->hDC, clr);
    SetTextColor(pDraw->hDC, colorOf(look, COLOR_WINDOWTEXT, COLOR_HIGHLIGHTTEXT));
    HBRUSH hbr = CreateSolidBrush(clr);
    HGDIOBJ hbrOld = SelectObject(pDraw->hDC, hbr);
    PatBlt(pDraw->hDC, prc->left, prc->top, prc->right - prc->left, prc->bottom - prc->top,
           PATCOPY);
    vXferDandDDrawListItemBody(pDraw, pList);
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
        // The closed list always shows the present drive.
        draw.itemID = UINT(panes::findDriveRow(hdlgDandD, pRecord->nLocalDrive));
    }
    if ((draw.itemAction & ODA_FOCUS) != 0) {
        DrawFocusRect(draw.hDC, &draw.rcItem);
    }
    Look look = lookOf(&draw);
    if (look == LOOK_NONE) {
        return;
    }
    drawRow(&draw, pList, look);
    if ((draw.itemAction & ODA_DRAWENTIRE) != 0 && (draw.itemState & ODS_FOCUS) != 0) {
        DrawFocusRect(draw.hDC, &draw.rcItem);
    }
}
