#include "status/tick.h"
#include "resources/ids.h"
#include "status/bar.h"

#include <stdint.h>

namespace {

constexpr DWORD MS_PER_SECOND = 1000;
constexpr DWORD SECONDS_PER_MINUTE = 60;
constexpr DWORD SECONDS_PER_HOUR = 3600;

// The values of one tick. They are read once: showing them sends messages, which the caller can
// answer by changing the slot or by destroying the window.
struct Figures {
    DWORD cbTotal;
    DWORD cbCount;
    DWORD cSeconds;
    DWORD dwRate; // bytes a second; 0 in the first second
};

Figures readFigures(const StatSlot* pSlot)
{
    Figures figures = {pSlot->ulTotalSize, pSlot->ulCount, 0, 0};
    // The difference stays right when the counter has wrapped.
    figures.cSeconds = (GetTickCount() - pSlot->dwStartTick) / MS_PER_SECOND;
    figures.dwRate = figures.cSeconds == 0 ? 0 : figures.cbCount / figures.cSeconds;
    return figures;
}

void showNumber(const status::Ref& ref, int idControl, DWORD dwValue)
{
    char szNumber[12];
    wsprintfA(szNumber, "%lu", dwValue);
    status::setText(ref, idControl, szNumber);
}

void showTime(const status::Ref& ref, int idControl, DWORD cSeconds)
{
    char szTime[16];
    wsprintfA(szTime, "%02lu:%02lu:%02lu", cSeconds / SECONDS_PER_HOUR,
              cSeconds / SECONDS_PER_MINUTE % 60, cSeconds % SECONDS_PER_MINUTE);
    status::setText(ref, idControl, szTime);
}

void showUnknown(const status::Ref& ref)
{
    char szText[80] = "";
    if (status::isAlive(ref)) {
        LoadStringA(ref.pSlot->hLanguage, IDS_NOT_KNOWN, szText, sizeof szText);
        status::setText(ref, IDC_STAT_REMAINING, szText);
        status::setText(ref, IDC_STAT_TIMELEFT, szText);
    }
}

void showProgress(const status::Ref& ref, const Figures* pFigures)
{
    status::setText(ref, IDC_STAT_STATUS, ref.pSlot->szStatus);
    showNumber(ref, IDC_STAT_COUNT, pFigures->cbCount);
    showTime(ref, IDC_STAT_ELAPSED, pFigures->cSeconds);
    if (pFigures->cSeconds != 0) {
        showNumber(ref, IDC_STAT_RATE, pFigures->dwRate);
    }
}

void showRemaining(const status::Ref& ref, const Figures* pFigures)
{
    DWORD cbRemaining =
        pFigures->cbCount < pFigures->cbTotal ? pFigures->cbTotal - pFigures->cbCount : 0;
    showNumber(ref, IDC_STAT_REMAINING, cbRemaining);
    if (pFigures->dwRate != 0) {
        showTime(ref, IDC_STAT_TIMELEFT, cbRemaining / pFigures->dwRate);
    }
}

LONG percentOf(const Figures* pFigures)
{
    uint64_t nPercent = uint64_t(pFigures->cbCount) * 100 / pFigures->cbTotal;
    return nPercent > 100 ? 100 : LONG(nPercent);
}

void showPercent(const status::Ref& ref, LONG nPercent)
{
    if (status::isAlive(ref) && nPercent != ref.pSlot->nLastPercent) {
        PostMessageA(ref.pSlot->hwndParent, WM_XFERSTAT_PERCENT, WPARAM(nPercent), 0);
        ref.pSlot->nLastPercent = nPercent;
        status::paintBar(ref, DWORD(nPercent));
    }
}

} // namespace

int XferStatTick(HWND hdlgStat)
{
    StatSlot* pSlot = status::slotOf(hdlgStat);
    if (pSlot == nullptr) {
        return XFER_NOWINDOW;
    }
    status::Ref ref = status::refOf(pSlot);
    Figures figures = readFigures(pSlot);
    showProgress(ref, &figures);
    if (figures.cbTotal == 0) {
        showUnknown(ref);
    } else {
        showRemaining(ref, &figures);
        showPercent(ref, percentOf(&figures));
    }
    return XFER_OK;
}
