#include "transfer/commands/question.h"
#include "transfer/panes/locallist.h"
#include "transfer/window/request.h"

#include <string.h>

namespace {

bool userConfirms(const commands::Command* pCommand, const commands::Question* pQuestion,
                  const char* pszName)
{
    char szFormat[commands::CCH_QUESTION];
    char szCaption[commands::CCH_QUESTION];
    char szText[XFER_FORMAT_SIZE];
    window::loadString(pCommand->pRecord, pQuestion->idText, szFormat, sizeof szFormat);
    window::loadString(pCommand->pRecord, pQuestion->idCaption, szCaption, sizeof szCaption);
    wsprintfA(szText, szFormat, pszName);
    int nAnswer = MessageBoxA(pCommand->hdlgDandD, szText, szCaption, MB_YESNO | MB_ICONQUESTION);
    return nAnswer == IDYES && window::isAlive(pCommand->ref);
}

} // namespace

bool commands::mayDelete(const Command* pCommand, const Question* pQuestion, const char* pszName)
{
    char szDir[XFER_NAME_SIZE];
    strcpy(szDir, pCommand->pRecord->szLocalDir);
    bool fAsk = (window::confirmFlags(pCommand->pRecord) & pQuestion->dwFlag) != 0;
    return window::isAlive(pCommand->ref) &&
           (!fAsk || userConfirms(pCommand, pQuestion, pszName)) && panes::isCurrentDir(szDir);
}
