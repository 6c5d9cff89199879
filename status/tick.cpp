// The once-a-second tick: from the values in a slot to the figures in its window.
#include "status/dialog.h"
#include "resources/ids.h"

#include <stdint.h>

namespace {

constexpr DWORD MS_PER_SECOND = 1000;

void showNumber(HWND hdlgStat, int idControl, DWORD dwValue)
{
    char szNumber[12];
    wsprintfA(szNumber, "%lu", dwValue);
    SetDlgItemTextA(hdlgStat, idControl, szNumber);
}

void showTime(HWND hdlgStat, int idControl, DWORD cSeconds)
{
    char szTime[16];
    wsprintfA(szTime, "%02lu:%02lu:%02lu", cSeconds / 3600, cSeconds / 60 % 60, cSeconds % 60);
    SetDlgItemTextA(hdlgStat, idControl, szTime);
}

void showNotKnown(HWND hdlgStat, HMODULE hLanguage)
{
    char szText[80] = "";
    LoadStringA(hLanguage, IDS_NOT_KNOWN, szText, sizeof szText);
    SetDlgItemTextA(hdlgStat, IDC_STAT_REMAINING, szText);
    SetDlgItemTextA(hdlgStat, IDC_STAT_TIMELEFT, szText);
}

// Gives the rate in bytes a second; 0 while no second has passed.
DWORD showClock(HWND hdlgStat, const StatSlot* pSlot)
{
    // The difference stays right when the counter has run over.
    DWORD cSeconds = (GetTickCount() - pSlot->dwStartTick) / MS_PER_SECOND;
    showTime(hdlgStat, IDC_STAT_ELAPSED, cSeconds);
    if (cSeconds == 0) {
        return 0;
    }
    DWORD dwRate = pSlot->ulCount / cSeconds;
    showNumber(hdlgStat, IDC_STAT_RATE, dwRate);
    return dwRate;
}

void showRemaining(HWND hdlgStat, const StatSlot* pSlot, DWORD dwRate)
{
    DWORD cbRemaining =
        pSlot->ulCount < pSlot->ulTotalSize ? pSlot->ulTotalSize - pSlot->ulCount : 0;
    showNumber(hdlgStat, IDC_STAT_REMAINING, cbRemaining);
    if (dwRate != 0) {
        showTime(hdlgStat, IDC_STAT_TIMELEFT, cbRemaining / dwRate);
    }
}

LONG percentOf(const StatSlot* pSlot)
{
    uint64_t nPercent = uint64_t(pSlot->ulCount) * 100 / pSlot->ulTotalSize;
    return nPercent > 100 ? 100 : LONG(nPercent);
}

} // namespace

int XferStatTick(HWND hdlgStat)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_NOWINDOW;
    }
    SetDlgItemTextA(hdlgStat, IDC_STAT_STATUS, pSlot->szStatus);
    showNumber(hdlgStat, IDC_STAT_COUNT, pSlot->ulCount);
    DWORD dwRate = showClock(hdlgStat, pSlot);
    if (pSlot->ulTotalSize == 0) {
        showNotKnown(hdlgStat, pSlot->hLanguage);
        return XFER_OK;
    }
    showRemaining(hdlgStat, pSlot, dwRate);
    LONG nPercent = percentOf(pSlot);
    if (nPercent != pSlot->nLastPercent) {
        PostMessageA(pSlot->hwndParent, WM_XFERSTAT_PERCENT, WPARAM(nPercent), 0);
        pSlot->nLastPercent = nPercent;
        status::paintBar(hdlgStat, DWORD(nPercent));
    }
    return XFER_OK;
}
