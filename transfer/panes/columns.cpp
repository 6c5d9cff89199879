// The width of the file lists' columns: all are as wide as the widest name.
#include "transfer/panes/columns.h"
#include "transfer/panes/rows.h"

#include <string.h>

namespace {

constexpr char MARGIN[] = "  ";
constexpr char LEAST_NAME[] = "eeeeeeeee.eee";
constexpr int CHARS = 128;
constexpr int CX_STEP = 4;

struct Measure {
    HDC hdc;
    int cxOfChar[CHARS];
    bool fHasWidths;
};

int measure(HDC hdc, const char* pszText)
{
    SIZE size = {};
    GetTextExtentPointA(hdc, pszText, lstrlenA(pszText), &size);
    return size.cx;
}

// Whether a name could be wider than this. Plain characters are as wide together as they are
// one by one; where a name has others, it has to be measured.
bool canBeWider(const Measure* pMeasure, const char* pszName, int cx)
{
    int cxName = 0;
    for (const char* pch = pszName; *pch != '\0'; ++pch) {
        auto n = static_cast<unsigned char>(*pch);
        if (n >= CHARS || !pMeasure->fHasWidths) {
            return true;
        }
        cxName += pMeasure->cxOfChar[n];
    }
    return cxName > cx;
}

int widestName(const Measure* pMeasure, HWND hwndList)
{
    char szName[XFER_NAME_SIZE];
    int cxMargin = measure(pMeasure->hdc, MARGIN);
    int cxWidest = measure(pMeasure->hdc, LEAST_NAME);
    auto cRows = LONG(SendMessageA(hwndList, LB_GETCOUNT, 0, 0));
    for (LONG n = 0; n < cRows; ++n) {
        panes::readRowText(hwndList, n, szName);
        if (canBeWider(pMeasure, szName, cxWidest - cxMargin)) {
            int cx = measure(pMeasure->hdc, szName) + cxMargin;
            cxWidest = cx > cxWidest ? cx : cxWidest;
        }
    }
    return cxWidest;
}

} // namespace

void vXferDandDSetColumnWidth(XferWindowRecord* pRecord, int idControl)
{
    HWND hwndList = GetDlgItem(pRecord->hwndDialog, idControl);
    // GetDC takes a null window for the whole screen.
    Measure widths = {hwndList == nullptr ? nullptr : GetDC(hwndList), {}, false};
    if (widths.hdc == nullptr) {
        return;
    }
    HGDIOBJ hfontOld = SelectObject(widths.hdc, pRecord->hfontList);
    widths.fHasWidths = GetCharWidthA(widths.hdc, 0, CHARS - 1, widths.cxOfChar) != 0;
    int cx = (widestName(&widths, hwndList) / CX_STEP + 1) * CX_STEP;
    SendMessageA(hwndList, LB_SETCOLUMNWIDTH, WPARAM(cx), 0);
    SelectObject(widths.hdc, hfontOld);
    ReleaseDC(hwndList, widths.hdc);
}
