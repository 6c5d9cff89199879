#include "tasks.h"
#include "../../include/krhaul.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr DWORD CB_CHUNK = 4096;

struct Entries {
    DirEntry* pEntries;
    DWORD cEntries, cRoom;
};

void takeEntry(void* pContext, const char* pszName, DWORD cbSize, bool fDirectory)
{
    auto pList = static_cast<Entries*>(pContext);
    if (pList->cEntries == pList->cRoom) {
        DWORD cRoom = pList->cRoom * 2 + 64;
        auto pMore = static_cast<DirEntry*>(realloc(pList->pEntries, cRoom * sizeof(DirEntry)));
        if (pMore == nullptr) {
            return;
        }
        pList->pEntries = pMore;
        pList->cRoom = cRoom;
    }
    DirEntry* pEntry = &pList->pEntries[pList->cEntries++];
    lstrcpynA(pEntry->szName, pszName, MAX_PATH);
    pEntry->cbSize = cbSize;
    pEntry->fDirectory = fDirectory;
}

void line(Worker* pWorker, const HostTask* pTask, const char* pszFormat, ...)
{
    Report told = {};
    va_list arguments;
    va_start(arguments, pszFormat);
    vsnprintf(told.szText, sizeof told.szText, pszFormat, arguments);
    va_end(arguments);
    told.pfnShow = pTask->shows.pfnLine;
    report(pWorker, &told);
}

// What the user has stopped needs no words.
void failure(Worker* pWorker, const HostTask* pTask, const char* pszName)
{
    if (!isStopped(pWorker)) {
        line(pWorker, pTask, "%s%s%s", pszName, pszName[0] != '\0' ? ": " : "",
             linkOf(pWorker)->szWords);
    }
}

void change(Worker* pWorker, void (*pfnShow)(Report*), const char* pszName, DWORD cbSize,
            bool fDirectory)
{
    Report told = {};
    told.pfnShow = pfnShow;
    told.cbDone = cbSize;
    told.nNumber = fDirectory;
    lstrcpynA(told.szName, pszName, MAX_PATH);
    report(pWorker, &told);
}

void deleteFile(Worker* pWorker, const HostTask* pTask, const char* pszName)
{
    if (!hostOf(pWorker)->pfnDelete(linkOf(pWorker), pszName)) {
        failure(pWorker, pTask, pszName);
        return;
    }
    change(pWorker, pTask->shows.pfnRemoved, pszName, 0, false);
    line(pWorker, pTask, "Deleted %s on the host.", pszName);
}

int askToDelete(Worker* pWorker, const char* pszName)
{
    char szQuestion[MAX_PATH + 40];
    snprintf(szQuestion, sizeof szQuestion, "Delete %s on the host?", pszName);
    return ask(pWorker, szQuestion, MB_YESNOCANCEL | MB_ICONQUESTION);
}

// Many servers rename over a file without a word.
bool asksToReplace(Worker* pWorker, const char* pszName)
{
    char szQuestion[MAX_PATH + 80];
    snprintf(szQuestion, sizeof szQuestion, "%s is there already on the host. Overwrite it?",
             pszName);
    return ask(pWorker, szQuestion, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

// Gives false if it can't be read to its end.
bool checkFile(Worker* pWorker, const HostTask* pTask, const char* pszName, DWORD* pcbAll,
               DWORD* pdwSum)
{
    BYTE abChunk[CB_CHUNK];
    const Host* pHost = hostOf(pWorker);
    HostLink* pLink = linkOf(pWorker);
    DWORD cbRead = 1;
    if (!pHost->pfnOpenFile(pLink, pszName, false, XFERTYPE_BINARY)) {
        return false;
    }
    bool fRead = true;
    while (fRead && cbRead > 0 && !isStopped(pWorker)) {
        fRead = pHost->pfnRead(pLink, abChunk, CB_CHUNK, &cbRead);
        for (DWORD n = 0; fRead && n < cbRead; ++n) {
            *pdwSum = *pdwSum * 31 + abChunk[n];
        }
        *pcbAll += fRead ? cbRead : 0;
        reportProgress(pWorker, *pcbAll, pTask->shows.pfnCount);
    }
    return pHost->pfnCloseFile(pLink) && fRead;
}

} // namespace

void enterDirectory(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    Entries entries = {};
    Report told = {};
    char szBack[MAX_PATH];
    const Host* pHost = hostOf(pWorker);
    HostLink* pLink = linkOf(pWorker);
    const char* pszDir = pTask->szName;
    strcpy(szBack, pLink->szPath);
    if ((pszDir[0] != '\0' && !pHost->pfnChangeDir(pLink, pszDir)) ||
        !pHost->pfnList(pLink, takeEntry, &entries)) {
        free(entries.pEntries);
        failure(pWorker, pTask, pszDir);
        returnTo(pWorker, szBack);
        return;
    }
    told.pfnShow = pTask->shows.pfnDirectory;
    told.pEntries = entries.pEntries;
    told.cEntries = entries.cEntries;
    strcpy(told.szName, pLink->szPath);
    report(pWorker, &told);
}

void makeDirectory(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    if (hostOf(pWorker)->pfnMakeDir(linkOf(pWorker), pTask->szName)) {
        change(pWorker, pTask->shows.pfnAdded, pTask->szName, 0, true);
        line(pWorker, pTask, "Made %s on the host.", pTask->szName);
    } else {
        failure(pWorker, pTask, pTask->szName);
    }
}

void removeDirectory(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    if (hostOf(pWorker)->pfnRemoveDir(linkOf(pWorker), pTask->szName)) {
        change(pWorker, pTask->shows.pfnRemoved, pTask->szName, 0, true);
        line(pWorker, pTask, "Removed %s on the host.", pTask->szName);
    } else {
        failure(pWorker, pTask, pTask->szName);
    }
}

void renameFile(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    bool fThere = false;
    if (pTask->fAsk && !hostOf(pWorker)->pfnExists(linkOf(pWorker), pTask->szNewName, &fThere)) {
        failure(pWorker, pTask, pTask->szNewName);
        return;
    }
    if (fThere && !asksToReplace(pWorker, pTask->szNewName)) {
        return;
    }
    if (hostOf(pWorker)->pfnRename(linkOf(pWorker), pTask->szName, pTask->szNewName)) {
        change(pWorker, pTask->shows.pfnRemoved, pTask->szName, 0, false);
        change(pWorker, pTask->shows.pfnAdded, pTask->szNewName, pTask->cbEntry, false);
        line(pWorker, pTask, "Renamed %s to %s on the host.", pTask->szName, pTask->szNewName);
    } else {
        failure(pWorker, pTask, pTask->szName);
    }
}

void deleteFiles(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    int nAnswer = IDYES;
    for (DWORD n = 0; n < pTask->cNames && nAnswer != IDCANCEL && !isStopped(pWorker); ++n) {
        const char* pszName = pTask->pNames[n].szName;
        nAnswer = pTask->fAsk ? askToDelete(pWorker, pszName) : IDYES;
        if (nAnswer == IDYES) {
            deleteFile(pWorker, pTask, pszName);
        }
    }
    free(pTask->pNames);
}

void checkFiles(Worker* pWorker, void* pContext)
{
    auto pTask = static_cast<const HostTask*>(pContext);
    Entries entries = {};
    DWORD cFiles = 0;
    DWORD cbAll = 0;
    DWORD dwSum = 0;
    bool fGood = hostOf(pWorker)->pfnList(linkOf(pWorker), takeEntry, &entries);
    for (DWORD n = 0; fGood && n < entries.cEntries && !isStopped(pWorker); ++n) {
        if (!entries.pEntries[n].fDirectory) {
            fGood = checkFile(pWorker, pTask, entries.pEntries[n].szName, &cbAll, &dwSum);
            cFiles += fGood;
        }
    }
    free(entries.pEntries);
    if (fGood) {
        line(pWorker, pTask, "%lu files, %lu bytes, sum %08lX.", cFiles, cbAll, dwSum);
    } else {
        failure(pWorker, pTask, "");
    }
}
