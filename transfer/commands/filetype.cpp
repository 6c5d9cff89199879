// The file type, whose only store is the check state of the toolbar.
#include "resources/ids.h"
#include "toolbar/toolbar.h"
#include "transfer/commands/commands.h"
#include "transfer/commands/toolbar.h"

namespace {

// In the order in which menu and toolbar are set.
struct TypeRow {
    DWORD nType;
    WORD idCommand;
};
constexpr TypeRow TYPES[] = {
    {XFERTYPE_TEXT, IDM_XFER_TYPETEXT},
    {XFERTYPE_BINARY, IDM_XFER_TYPEBINARY},
    {XFERTYPE_AUTOMATIC, IDM_XFER_TYPEAUTO},
};

} // namespace

WORD commands::commandOfType(DWORD nType)
{
    return TYPES[nType - XFERTYPE_TEXT].idCommand;
}

void commands::chooseFileType(const Command* pCommand)
{
    for (const TypeRow& row : TYPES) {
        if (row.idCommand == pCommand->idCommand) {
            vXferDandDSetFileTypeSelection(pCommand->hdlgDandD, row.nType);
        }
    }
}

void KRHAULAPI vXferDandDSetFileTypeSelection(HWND hdlgDandD, DWORD nType)
{
    if (window::recordOf(hdlgDandD) == nullptr) {
        return;
    }
    for (const TypeRow& row : TYPES) {
        if (row.nType == nType) {
            commands::sendToToolbar(hdlgDandD, TOOLM_CHECKBUTTON, row.idCommand, 1);
        }
    }
    for (const TypeRow& row : TYPES) {
        commands::checkItem(hdlgDandD, row.idCommand, row.nType == nType);
    }
}

int KRHAULAPI nXferDandDGetFileTypeSelection(HWND hdlgDandD)
{
    if (window::recordOf(hdlgDandD) == nullptr) {
        return 0;
    }
    for (const TypeRow& row : TYPES) {
        if (commands::isButtonChecked(hdlgDandD, row.idCommand)) {
            return int(row.nType);
        }
    }
    return XFERTYPE_AUTOMATIC;
}
