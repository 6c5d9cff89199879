// Hints of menu items and toolbar buttons, in the message strip.
#include "transfer/frame/hints.h"
#include "resources/ids.h"

#include <string.h>

namespace {

constexpr char UNKNOWN[] = "Unknown";
constexpr UINT ALL_FLAGS = 0xFFFF;

void repaintStrip(HWND hdlgDandD, const XferWindowRecord* pRecord)
{
    InvalidateRect(hdlgDandD, &pRecord->rcStrip, FALSE);
}

UINT popupHintId(const XferWindowRecord* pRecord, HMENU hmenuPopup)
{
    for (UINT n = 0; n < XFER_POPUPS; ++n) {
        if (hmenuPopup != nullptr && pRecord->hmenuPopup[n] == hmenuPopup) {
            return IDS_POPUP1_HINT + n;
        }
    }
    return IDS_NOT_KNOWN;
}

void loadHint(XferWindowRecord* pRecord, UINT idString)
{
    window::loadString(pRecord, idString, pRecord->szStripText, sizeof pRecord->szStripText);
}

} // namespace

void frame::showMenuHint(HWND hdlgDandD, XferWindowRecord* pRecord, WPARAM wParam, LPARAM lParam)
{
    UINT idItem = LOWORD(wParam);
    UINT uFlags = HIWORD(wParam);
    auto hmenu = reinterpret_cast<HMENU>(lParam);
    if ((uFlags & (MF_SYSMENU | MF_SEPARATOR)) == 0) {
        bool fPopup = (uFlags & MF_POPUP) != 0;
        loadHint(pRecord, fPopup ? popupHintId(pRecord, GetSubMenu(hmenu, int(idItem))) : idItem);
        if (pRecord->szStripText[0] == '\0') {
            loadHint(pRecord, IDS_NOT_KNOWN);
        }
        if (pRecord->szStripText[0] == '\0') {
            strcpy(pRecord->szStripText, UNKNOWN);
        }
        repaintStrip(hdlgDandD, pRecord);
    } else if (idItem == 0 && uFlags == ALL_FLAGS && hmenu == nullptr) {
        pRecord->szStripText[0] = '\0';
        repaintStrip(hdlgDandD, pRecord);
    }
}

void frame::showButtonHint(HWND hdlgDandD, XferWindowRecord* pRecord, UINT idString)
{
    pRecord->szStripText[0] = '\0';
    if (idString != 0) {
        loadHint(pRecord, idString);
    }
    repaintStrip(hdlgDandD, pRecord);
}
