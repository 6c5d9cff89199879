// The number and size of the selected local files, in the strip.
#include "resources/ids.h"
#include "shared/block.h"
#include "transfer/commands/selection.h"
#include "transfer/panes/details.h"
#include "transfer/panes/locallist.h"

#include <sys/stat.h>

namespace {

// The selected rows, ascending.
struct SelectedRows {
    LONG* pRows;
    LONG cRows;
};

bool readSelection(HWND hwndList, SelectedRows* pSelected)
{
    auto cSelected = LONG(SendMessageA(hwndList, LB_GETSELCOUNT, 0, 0));
    if (cSelected <= 0) {
        return false;
    }
    pSelected->pRows =
        static_cast<LONG*>(shared::allocateBlock(0, SIZE_T(cSelected) * sizeof(LONG)));
    if (pSelected->pRows == nullptr) {
        return false;
    }
    pSelected->cRows = LONG(SendMessageA(hwndList, LB_GETSELITEMS, WPARAM(cSelected),
                                         reinterpret_cast<LPARAM>(pSelected->pRows)));
    return true;
}

// Sizes of the selected files, from the last to the first; 0 if one is unavailable.
DWORD sumSizes(HWND hwndList, const SelectedRows* pSelected)
{
    char szName[XFER_NAME_SIZE];
    struct _stat stat;
    DWORD cbTotal = 0;
    for (LONG n = pSelected->cRows - 1; n >= 0; --n) {
        if (panes::readRowText(hwndList, pSelected->pRows[n], szName) == LB_ERR ||
            nXferDandDFileStat(szName, &stat) != 0) {
            return 0;
        }
        cbTotal += DWORD(stat.st_size);
    }
    return cbTotal;
}

} // namespace

void commands::showSelectionSum(const Command* pCommand)
{
    char szFormat[XFER_NAME_SIZE];
    char szText[XFER_FORMAT_SIZE];
    SelectedRows selected = {};
    if (!readSelection(pCommand->hwndControl, &selected)) {
        return;
    }
    // Namesakes in another directory don't count.
    DWORD cbTotal = panes::showsCurrentFiles(pCommand->pRecord)
                        ? sumSizes(pCommand->hwndControl, &selected)
                        : 0;
    window::loadString(pCommand->pRecord, IDS_SELECTION_SUM, szFormat, sizeof szFormat);
    wsprintfA(szText, szFormat, DWORD(selected.cRows), cbTotal);
    shared::freeBlock(selected.pRows);
    vXferDandDDisplayDILText(pCommand->hdlgDandD, szText);
}
