#include "move.h"
#include "options.h"
#include "safename.h"
#include "../../include/krhaul.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

// Small, so that on a slow line the count moves on and a stop is seen.
constexpr DWORD CB_CHUNK = 4096;

// Unfinished files have a name that nothing else has.
constexpr char UNFINISHED_PREFIX[] = "krd";
constexpr char COPY_PREFIX[] = "krv";

// What goes as text when the type is to be chosen automatically; everything else goes as it is.
constexpr const char* TEXT_EXTENSIONS[] = {".asc", ".bat", ".c",   ".cfg",  ".cpp", ".css",
                                           ".csv", ".h",   ".htm", ".html", ".ini", ".js",
                                           ".log", ".md",  ".sh",  ".txt",  ".xml"};

enum Outcome { OUTCOME_DONE, OUTCOME_FAILED, OUTCOME_REFUSED, OUTCOME_KEPT, OUTCOME_STOPPED };

struct Moving {
    Worker* pWorker;
    const Host* pHost;
    HostLink* pLink;
    const Move* pMove;
    DWORD nFile;
    const MovedFile* pFile;
    char szLocal[MAX_PATH]; // full path
    char szUnfinished[MAX_PATH];
    HANDLE hLocal;
    bool fReplace; // the user lets go of a file that is there already, or isn't asked
    DWORD cbDone;
    char szWhy[MAX_WORDS];
};

bool isTextName(const char* pszName)
{
    const char* pszExtension = strrchr(pszName, '.');
    for (const char* pszText : TEXT_EXTENSIONS) {
        if (pszExtension != nullptr && lstrcmpiA(pszText, pszExtension) == 0) {
            return true;
        }
    }
    return false;
}

int typeOf(const Moving* pMoving)
{
    if (pMoving->pMove->nType != XFERTYPE_AUTOMATIC) {
        return pMoving->pMove->nType;
    }
    return isTextName(pMoving->pFile->szHost) ? XFERTYPE_TEXT : XFERTYPE_BINARY;
}

// ---- telling

void tell(const Moving* pMoving, void (*pfnShow)(Report*), const char* pszText)
{
    Report told = {};
    told.pfnShow = pfnShow;
    told.nNumber = LONG(pMoving->nFile);
    told.cbDone = pMoving->cbDone;
    told.cbAll = pMoving->pFile->cbSize;
    lstrcpynA(told.szName, pMoving->pMove->fSend ? pMoving->pFile->szHost : pMoving->pFile->szLocal,
              MAX_PATH);
    lstrcpynA(told.szText, pszText, sizeof told.szText);
    report(pMoving->pWorker, &told);
}

Outcome because(Moving* pMoving, Outcome outcome, const char* pszWhy)
{
    lstrcpynA(pMoving->szWhy, pszWhy, MAX_WORDS);
    return outcome;
}

Outcome systemFailure(Moving* pMoving)
{
    systemWords(GetLastError(), pMoving->szWhy);
    return isStopped(pMoving->pWorker) ? OUTCOME_STOPPED : OUTCOME_FAILED;
}

Outcome hostFailure(Moving* pMoving)
{
    return because(pMoving, isStopped(pMoving->pWorker) ? OUTCOME_STOPPED : OUTCOME_FAILED,
                   pMoving->pLink->szWords);
}

// Asks about a file that is there already, if it is to be asked.
Outcome askToReplace(Moving* pMoving, bool fThere, const char* pszName, const char* pszWhere)
{
    char szQuestion[MAX_PATH + 80];
    pMoving->fReplace = !pMoving->pMove->fAskBeforeReplace;
    if (!fThere || pMoving->fReplace) {
        return OUTCOME_DONE;
    }
    snprintf(szQuestion, sizeof szQuestion, "%s is there already%s. Overwrite it?", pszName,
             pszWhere);
    int nAnswer = ask(pMoving->pWorker, szQuestion, MB_YESNOCANCEL | MB_ICONQUESTION);
    pMoving->fReplace = nAnswer == IDYES;
    return nAnswer == IDYES ? OUTCOME_DONE : nAnswer == IDNO ? OUTCOME_KEPT : OUTCOME_STOPPED;
}

// ---- receiving

Outcome countChunk(Moving* pMoving, DWORD cb)
{
    pMoving->cbDone += cb;
    reportProgress(pMoving->pWorker, pMoving->cbDone, pMoving->pMove->shows.pfnProgress);
    return isStopped(pMoving->pWorker) ? OUTCOME_STOPPED : OUTCOME_DONE;
}

Outcome receiveBytes(Moving* pMoving)
{
    BYTE abChunk[CB_CHUNK];
    DWORD cbRead = 1;
    Outcome outcome = OUTCOME_DONE;
    while (outcome == OUTCOME_DONE && cbRead > 0) {
        if (!pMoving->pHost->pfnRead(pMoving->pLink, abChunk, sizeof abChunk, &cbRead)) {
            return hostFailure(pMoving);
        }
        if (!writeUnfinished(unfinishedOf(pMoving->pWorker), abChunk, cbRead)) {
            return systemFailure(pMoving);
        }
        outcome = countChunk(pMoving, cbRead);
    }
    return outcome;
}

Outcome receiveUnfinished(Moving* pMoving)
{
    if (!pMoving->pHost->pfnOpenFile(pMoving->pLink, pMoving->pFile->szHost, false,
                                     typeOf(pMoving))) {
        return hostFailure(pMoving);
    }
    Outcome outcome = receiveBytes(pMoving);
    bool fWhole = pMoving->pHost->pfnCloseFile(pMoving->pLink);
    return outcome == OUTCOME_DONE && !fWhole ? hostFailure(pMoving) : outcome;
}

// Receives into a folder; the file takes its name when it is whole.
Outcome receiveAs(Moving* pMoving, const char* pszFolder, bool fReplace)
{
    Unfinished* pUnfinished = unfinishedOf(pMoving->pWorker);
    Outcome outcome = openUnfinished(pUnfinished, pszFolder) ? receiveUnfinished(pMoving)
                                                             : systemFailure(pMoving);
    if (outcome == OUTCOME_DONE && !nameUnfinished(pUnfinished, pMoving->szLocal, fReplace)) {
        outcome = systemFailure(pMoving);
    }
    giveUpUnfinished(pUnfinished);
    return outcome;
}

// Only the name that was asked for is used, and only after this last look at it.
Outcome receiveFile(Moving* pMoving)
{
    const char* pszName = pMoving->pFile->szLocal;
    const char* pszProblem = nameProblem(pszName);
    if (pszProblem != nullptr) {
        return because(pMoving, OUTCOME_REFUSED, pszProblem);
    }
    if (!joinPath(pMoving->szLocal, pMoving->pMove->szLocalFolder, pszName)) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return systemFailure(pMoving);
    }
    DWORD dwAttributes = GetFileAttributesA(pMoving->szLocal);
    bool fThere = dwAttributes != INVALID_FILE_ATTRIBUTES;
    if (fThere && (dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return because(pMoving, OUTCOME_FAILED, "A directory has this name.");
    }
    Outcome outcome = askToReplace(pMoving, fThere, pszName, "");
    if (outcome != OUTCOME_DONE) {
        return outcome;
    }
    return receiveAs(pMoving, pMoving->pMove->szLocalFolder, pMoving->fReplace);
}

// ---- sending

void makeHostName(char (&szName)[MAX_PATH], const char* pszWhat)
{
    static LONG s_nNumber;
    snprintf(szName, MAX_PATH, "%s%08lx%04lx.%s", UNFINISHED_PREFIX, GetTickCount(),
             InterlockedIncrement(&s_nNumber) & 0xFFFF, pszWhat);
}

// Some hosts don't rename over a file that is there. There it steps aside until the new one
// has its name.
bool takeHostName(const Moving* pMoving)
{
    char szAside[MAX_PATH];
    char szWords[MAX_WORDS];
    const Host* pHost = pMoving->pHost;
    HostLink* pLink = pMoving->pLink;
    const char* pszName = pMoving->pFile->szHost;
    if (pHost->pfnRename(pLink, pMoving->szUnfinished, pszName)) {
        return true;
    }
    strcpy(szWords, pLink->szWords);
    makeHostName(szAside, "old");
    bool fAside = pMoving->fReplace && pHost->pfnRename(pLink, pszName, szAside);
    if (fAside && pHost->pfnRename(pLink, pMoving->szUnfinished, pszName)) {
        pHost->pfnDelete(pLink, szAside);
        return true;
    }
    if (fAside) {
        pHost->pfnRename(pLink, szAside, pszName);
    }
    strcpy(pLink->szWords, szWords);
    return false;
}

Outcome sendBytes(Moving* pMoving)
{
    BYTE abChunk[CB_CHUNK];
    DWORD cbRead = 1;
    Outcome outcome = OUTCOME_DONE;
    while (outcome == OUTCOME_DONE) {
        if (!ReadFile(pMoving->hLocal, abChunk, sizeof abChunk, &cbRead, nullptr)) {
            return systemFailure(pMoving);
        }
        if (cbRead == 0) {
            return OUTCOME_DONE;
        }
        if (!pMoving->pHost->pfnWrite(pMoving->pLink, abChunk, cbRead)) {
            return hostFailure(pMoving);
        }
        outcome = countChunk(pMoving, cbRead);
    }
    return outcome;
}

// What was sent in part goes, over a new connection if need be.
void removeUnfinished(const Moving* pMoving)
{
    if (!pMoving->pHost->pfnDelete(pMoving->pLink, pMoving->szUnfinished)) {
        char szLeft[2 * MAX_PATH];
        snprintf(szLeft, sizeof szLeft, "%s may still be on the host: %s", pMoving->szUnfinished,
                 pMoving->pLink->szWords);
        tell(pMoving, pMoving->pMove->shows.pfnFailed, szLeft);
    }
}

Outcome sendUnfinished(Moving* pMoving)
{
    makeHostName(pMoving->szUnfinished, "part");
    if (!pMoving->pHost->pfnOpenFile(pMoving->pLink, pMoving->szUnfinished, true,
                                     typeOf(pMoving))) {
        return hostFailure(pMoving);
    }
    Outcome outcome = sendBytes(pMoving);
    // The answer to a file that was cut off tells why it was.
    bool fWhole = pMoving->pHost->pfnCloseFile(pMoving->pLink);
    if (!fWhole && (outcome == OUTCOME_DONE || outcome == OUTCOME_FAILED)) {
        outcome = hostFailure(pMoving);
    }
    if (outcome == OUTCOME_DONE && !takeHostName(pMoving)) {
        outcome = hostFailure(pMoving);
    }
    if (outcome == OUTCOME_STOPPED) {
        endTask(pMoving->pWorker);
    }
    if (outcome != OUTCOME_DONE) {
        removeUnfinished(pMoving);
    }
    return outcome;
}

Outcome sendFile(Moving* pMoving)
{
    const char* pszName = pMoving->pFile->szHost;
    const char* pszLocal = pMoving->pFile->szLocal;
    bool fFull = strchr(pszLocal, ':') != nullptr || pszLocal[0] == '\\';
    if (!joinPath(pMoving->szLocal, fFull ? "" : pMoving->pMove->szLocalFolder, pszLocal)) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return systemFailure(pMoving);
    }
    bool fThere = false;
    if (pMoving->pMove->fAskBeforeReplace &&
        !pMoving->pHost->pfnExists(pMoving->pLink, pszName, &fThere)) {
        return hostFailure(pMoving);
    }
    Outcome outcome = askToReplace(pMoving, fThere, pszName, " on the host");
    if (outcome != OUTCOME_DONE) {
        return outcome;
    }
    pMoving->hLocal = CreateFileA(pMoving->szLocal, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (pMoving->hLocal == INVALID_HANDLE_VALUE) {
        return systemFailure(pMoving);
    }
    outcome = sendUnfinished(pMoving);
    CloseHandle(pMoving->hLocal);
    return outcome;
}

// ---- one after another

Outcome moveFile(Moving* pMoving)
{
    pMoving->cbDone = 0;
    pMoving->szWhy[0] = '\0';
    tell(pMoving, pMoving->pMove->shows.pfnBegin,
         pMoving->pMove->fSend ? pMoving->pFile->szLocal : pMoving->pFile->szHost);
    return pMoving->pMove->fSend ? sendFile(pMoving) : receiveFile(pMoving);
}

bool asksToGoOn(const Moving* pMoving)
{
    char szQuestion[MAX_PATH + MAX_WORDS + 80];
    if (pMoving->nFile + 1 == pMoving->pMove->cFiles) {
        return true;
    }
    snprintf(szQuestion, sizeof szQuestion, "%s: %s\n\nGo on with the other files?",
             pMoving->pMove->fSend ? pMoving->pFile->szLocal : pMoving->pFile->szHost,
             pMoving->szWhy);
    if (ask(pMoving->pWorker, szQuestion, MB_YESNO | MB_ICONEXCLAMATION) == IDYES) {
        return true;
    }
    stopFromWithin(pMoving->pWorker);
    return false;
}

// Tells what became of a file. Gives false if the others are to stay where they are.
bool handleOutcome(const Moving* pMoving, Outcome outcome)
{
    char szWhy[MAX_WORDS + 40];
    switch (outcome) {
    case OUTCOME_DONE:
        tell(pMoving, pMoving->pMove->shows.pfnDone, "");
        return true;
    case OUTCOME_KEPT:
        tell(pMoving, pMoving->pMove->shows.pfnFailed, "Kept as it is.");
        return true;
    case OUTCOME_REFUSED:
        snprintf(szWhy, sizeof szWhy, "Refused as a local name: %s.", pMoving->szWhy);
        tell(pMoving, pMoving->pMove->shows.pfnFailed, szWhy);
        return true;
    case OUTCOME_FAILED:
        tell(pMoving, pMoving->pMove->shows.pfnFailed, pMoving->szWhy);
        return asksToGoOn(pMoving);
    default:
        stopFromWithin(pMoving->pWorker);
        return false;
    }
}

bool goOn(Moving* pMoving)
{
    Outcome outcome = moveFile(pMoving);
    return handleOutcome(pMoving, outcome) && !isStopped(pMoving->pWorker);
}

// A name that is nobody else's takes the place of the host's.
Outcome fetchCopy(Moving* pMoving)
{
    char szFolder[MAX_PATH];
    GetTempPathA(MAX_PATH, szFolder);
    if (GetTempFileNameA(szFolder, COPY_PREFIX, 0, pMoving->szLocal) == 0) {
        return systemFailure(pMoving);
    }
    Outcome outcome = receiveAs(pMoving, szFolder, true);
    if (outcome != OUTCOME_DONE) {
        DeleteFileA(pMoving->szLocal);
    }
    return outcome;
}

void tellCopy(const Moving* pMoving, Outcome outcome)
{
    Report told = {};
    told.pfnShow =
        outcome == OUTCOME_DONE ? pMoving->pMove->shows.pfnDone : pMoving->pMove->shows.pfnFailed;
    strcpy(told.szName, pMoving->pFile->szHost);
    strcpy(told.szText, outcome == OUTCOME_DONE ? pMoving->szLocal : pMoving->szWhy);
    if (outcome != OUTCOME_STOPPED) {
        report(pMoving->pWorker, &told);
    }
}

Moving beginMoving(Worker* pWorker, const Move* pMove)
{
    Moving moving = {};
    moving.pWorker = pWorker;
    moving.pHost = hostOf(pWorker);
    moving.pLink = linkOf(pWorker);
    moving.pMove = pMove;
    moving.pFile = pMove->pFiles;
    return moving;
}

} // namespace

void fetchCopies(Worker* pWorker, void* pContext)
{
    auto pMove = static_cast<Move*>(pContext);
    Moving moving = beginMoving(pWorker, pMove);
    for (; moving.nFile < pMove->cFiles && !isStopped(pWorker); ++moving.nFile, ++moving.pFile) {
        moving.cbDone = 0;
        tellCopy(&moving, fetchCopy(&moving));
    }
    free(pMove->pFiles);
}

void moveFiles(Worker* pWorker, void* pContext)
{
    auto pMove = static_cast<Move*>(pContext);
    Moving moving = beginMoving(pWorker, pMove);
    char szBack[MAX_PATH];
    strcpy(szBack, moving.pLink->szPath);
    bool fElsewhere = pMove->szHostDir[0] != '\0';
    bool fGoOn = !fElsewhere || moving.pHost->pfnChangeDir(moving.pLink, pMove->szHostDir);
    for (; moving.nFile < pMove->cFiles; ++moving.nFile, ++moving.pFile) {
        if (!fGoOn && moving.nFile == 0) {
            tell(&moving, pMove->shows.pfnFailed, moving.pLink->szWords);
        }
        if (!fGoOn || !goOn(&moving)) {
            break;
        }
    }
    if (fElsewhere && fGoOn) {
        endTask(pWorker);
        if (!moving.pHost->pfnChangeDir(moving.pLink, szBack)) {
            returnTo(pWorker, szBack);
        }
    }
    free(pMove->pFiles);
}
