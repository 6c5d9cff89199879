// Files on an FTP server, through the platform's internet library. Nothing of it is called on
// the windows' thread but the end of a connection.
#include <winsock2.h>
#include "ftpnames.h"
#include "host.h"
#include "options.h"
#include "../../include/krhaul.h"

#include <wininet.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

constexpr char AGENT[] = "KRDEMO";
constexpr DWORD IDLE_MS = 10000; // after so long a connection is looked at before it is used
constexpr DWORD PATIENCE_MS = 30000;
constexpr char LOST[] = "The server doesn't answer any more.";
constexpr char UNNAMEABLE[] = "A server can't be asked for this name.";
constexpr char NO_LISTING[] = "The list of the directory is not whole.";

struct FtpLink {
    HostLink base;
    HostAddress address;
    // Taken away by whoever closes them, which can be another thread.
    HINTERNET hInternet, hConnect;
    HINTERNET hFile;
    LONG nSocket; // data connection of a listing
    bool fUtf8;
    DWORD dwUsed; // time of the last use of the connection
};

FtpLink* linkOf(HostLink* pLink)
{
    return reinterpret_cast<FtpLink*>(pLink);
}

HINTERNET take(HINTERNET* ph)
{
    return InterlockedExchangePointer(ph, nullptr);
}

void closeHandle(HINTERNET* ph)
{
    HINTERNET h = take(ph);
    if (h != nullptr) {
        InternetCloseHandle(h);
    }
}

void disconnect(FtpLink* pFtp)
{
    closeHandle(&pFtp->hConnect);
    closeHandle(&pFtp->hInternet);
}

// ---- what the server says

// The last line of the server's last answer.
void lastWords(char (&szWords)[MAX_WIRE])
{
    DWORD dwError;
    DWORD cch = MAX_WIRE;
    szWords[0] = '\0';
    if (!InternetGetLastResponseInfoA(&dwError, szWords, &cch)) {
        szWords[0] = '\0';
    }
    while (cch > 0 && cch < MAX_WIRE && (szWords[cch - 1] == '\n' || szWords[cch - 1] == '\r')) {
        szWords[--cch] = '\0';
    }
    const char* pchLast = strrchr(szWords, '\n');
    if (pchLast != nullptr) {
        memmove(szWords, pchLast + 1, strlen(pchLast));
    }
}

int answerCode()
{
    char szWords[MAX_WIRE];
    lastWords(szWords);
    return atoi(szWords);
}

bool command(FtpLink* pFtp, const char* pszCommand)
{
    return FtpCommandA(pFtp->hConnect, FALSE, FTP_TRANSFER_TYPE_ASCII, pszCommand, 0, nullptr) != 0;
}

bool say(FtpLink* pFtp, const char* pszWords)
{
    lstrcpynA(pFtp->base.szWords, pszWords, MAX_WORDS);
    return false;
}

// Keeps the server's words after a failure. A connection that doesn't answer any more is
// closed: its last words are those of an earlier answer.
bool fail(FtpLink* pFtp)
{
    char szWords[MAX_WIRE];
    lastWords(szWords);
    int nCode = atoi(szWords);
    if (nCode >= 400 && nCode != 421 && pFtp->hConnect != nullptr && command(pFtp, "NOOP")) {
        shownText(szWords, pFtp->base.szWords, MAX_WORDS);
        return false;
    }
    disconnect(pFtp);
    return say(pFtp, LOST);
}

bool outcome(FtpLink* pFtp, bool fDone)
{
    pFtp->dwUsed = GetTickCount();
    return fDone || fail(pFtp);
}

// ---- the connection

bool learnPath(FtpLink* pFtp)
{
    char szWire[MAX_WIRE];
    char szPath[MAX_PATH];
    DWORD cch = MAX_WIRE;
    if (!FtpGetCurrentDirectoryA(pFtp->hConnect, szWire, &cch)) {
        return fail(pFtp);
    }
    if (!shownName(szWire, &pFtp->fUtf8, szPath)) {
        return say(pFtp, UNNAMEABLE);
    }
    strcpy(pFtp->base.szPath, szPath);
    return true;
}

// A connection that isn't in the directory of its path would reach other files by their names.
bool leaveUnless(FtpLink* pFtp, bool fThere)
{
    if (!fThere) {
        disconnect(pFtp);
    }
    return fThere;
}

// Goes to where the connection before this one was, or to where the user wants to begin.
bool enterPath(FtpLink* pFtp)
{
    char szWire[MAX_WIRE];
    if (pFtp->base.szPath[0] == '\0') {
        return learnPath(pFtp);
    }
    if (!wireName(pFtp->base.szPath, pFtp->fUtf8, szWire)) {
        return say(pFtp, UNNAMEABLE);
    }
    if (!FtpSetCurrentDirectoryA(pFtp->hConnect, szWire)) {
        return fail(pFtp);
    }
    return learnPath(pFtp);
}

bool isAlive(FtpLink* pFtp)
{
    return pFtp->hConnect != nullptr &&
           (GetTickCount() - pFtp->dwUsed < IDLE_MS || command(pFtp, "NOOP"));
}

// The reason of a refused login is the server's; without one there was no connection.
bool failToConnect(FtpLink* pFtp, DWORD dwError)
{
    char szWords[MAX_WIRE] = "";
    lastWords(szWords);
    if (atoi(szWords) >= 400) {
        shownText(szWords, pFtp->base.szWords, MAX_WORDS);
    } else {
        snprintf(pFtp->base.szWords, MAX_WORDS, "No connection to %s, port %u (error %lu).",
                 pFtp->address.szServer, pFtp->address.nPort, dwError);
    }
    disconnect(pFtp);
    return false;
}

// Asks for UTF-8 once: servers that need to be asked for it know this command, and the others
// may refuse it.
bool connect(FtpLink* pFtp)
{
    if (isAlive(pFtp)) {
        return true;
    }
    disconnect(pFtp);
    HINTERNET hInternet = InternetOpenA(AGENT, INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0);
    pFtp->hInternet = hInternet;
    bool fGuest = pFtp->address.szUser[0] == '\0';
    HINTERNET hConnect = InternetConnectA(hInternet, pFtp->address.szServer, pFtp->address.nPort,
                                          fGuest ? nullptr : pFtp->address.szUser,
                                          fGuest ? nullptr : pFtp->address.szPassword,
                                          INTERNET_SERVICE_FTP, INTERNET_FLAG_PASSIVE, 0);
    if (hConnect == nullptr) {
        return failToConnect(pFtp, GetLastError());
    }
    pFtp->hConnect = hConnect;
    pFtp->dwUsed = GetTickCount();
    command(pFtp, "OPTS UTF8 ON");
    return leaveUnless(pFtp, enterPath(pFtp));
}

// Connects, and makes a name ready for a command.
bool prepare(HostLink* pLink, const char* pszName, char (&szWire)[MAX_WIRE])
{
    FtpLink* pFtp = linkOf(pLink);
    return connect(pFtp) && (wireName(pszName, pFtp->fUtf8, szWire) || say(pFtp, UNNAMEABLE));
}

HostLink* make(const HostAddress* pAddress)
{
    auto pFtp = static_cast<FtpLink*>(calloc(1, sizeof(FtpLink)));
    if (pFtp != nullptr) {
        pFtp->address = *pAddress;
        pFtp->nSocket = LONG(INVALID_SOCKET);
        pFtp->fUtf8 = true;
        lstrcpynA(pFtp->base.szPath, pAddress->szPath, MAX_PATH);
    }
    return reinterpret_cast<HostLink*>(pFtp);
}

void freeLink(HostLink* pLink)
{
    disconnect(linkOf(pLink));
    free(pLink);
}

// Without its connection no call has anything left to wait for.
void abortCall(HostLink* pLink)
{
    auto nSocket = SOCKET(linkOf(pLink)->nSocket);
    if (nSocket != INVALID_SOCKET) {
        shutdown(nSocket, SD_BOTH);
    }
    disconnect(linkOf(pLink));
}

// ---- directories

bool changeDir(HostLink* pLink, const char* pszDir)
{
    char szWire[MAX_WIRE];
    return prepare(pLink, pszDir, szWire) &&
           outcome(linkOf(pLink), FtpSetCurrentDirectoryA(linkOf(pLink)->hConnect, szWire)) &&
           leaveUnless(linkOf(pLink), learnPath(linkOf(pLink)));
}

bool makeDir(HostLink* pLink, const char* pszDir)
{
    char szWire[MAX_WIRE];
    return prepare(pLink, pszDir, szWire) &&
           outcome(linkOf(pLink), FtpCreateDirectoryA(linkOf(pLink)->hConnect, szWire));
}

bool removeDir(HostLink* pLink, const char* pszDir)
{
    char szWire[MAX_WIRE];
    return prepare(pLink, pszDir, szWire) &&
           outcome(linkOf(pLink), FtpRemoveDirectoryA(linkOf(pLink)->hConnect, szWire));
}

// ---- listing

// The library's own list of a directory is a guess at a text made for people. So the server is
// asked for the list that is made for programs, and the library's is for servers without it.
// Some platforms' library can't give the data of a command: there a socket of our own takes it.
struct Listing {
    FtpLink* pFtp;
    HostEntryProc pfnEntry;
    void* pContext;
    char szLine[MAX_WIRE];
    DWORD cchLine;
};

void addEntry(FtpLink* pFtp, const char* pszWireName, HostEntryProc pfnEntry, void* pContext,
              DWORD cbSize, bool fDirectory)
{
    char szName[MAX_PATH];
    if (shownName(pszWireName, &pFtp->fUtf8, szName) && strcmp(szName, ".") != 0 &&
        strcmp(szName, "..") != 0) {
        pfnEntry(pContext, szName, cbSize, fDirectory);
    }
}

void takeListing(Listing* pListing, const char* pchText, DWORD cch)
{
    ListedEntry entry;
    for (const char* pch = pchText; pch < pchText + cch; ++pch) {
        if (*pch != '\n') {
            if (*pch != '\0' && pListing->cchLine + 1 < MAX_WIRE) {
                pListing->szLine[pListing->cchLine++] = *pch;
            }
            continue;
        }
        DWORD cchLine = pListing->cchLine;
        pListing
            ->szLine[cchLine > 0 && pListing->szLine[cchLine - 1] == '\r' ? cchLine - 1 : cchLine] =
            '\0';
        pListing->cchLine = 0;
        if (readListLine(pListing->szLine, &entry)) {
            addEntry(pListing->pFtp, entry.pszWireName, pListing->pfnEntry, pListing->pContext,
                     entry.cbSize, entry.fDirectory);
        }
    }
}

bool listByCommandData(Listing* pListing, HINTERNET hData)
{
    char achChunk[4096];
    DWORD cb = 0;
    bool fRead = true;
    while (fRead) {
        fRead = InternetReadFile(hData, achChunk, sizeof achChunk, &cb) && cb > 0;
        takeListing(pListing, achChunk, fRead ? cb : 0);
    }
    InternetCloseHandle(hData);
    return answerCode() / 100 == 2;
}

// Only to the server itself: its answer names a port, and an address that isn't looked at.
SOCKET openData(FtpLink* pFtp)
{
    char szWords[MAX_WIRE];
    unsigned anNumbers[6];
    lastWords(szWords);
    const char* pch = strchr(szWords, '(');
    hostent* pServer = gethostbyname(pFtp->address.szServer);
    if (pch == nullptr || pServer == nullptr ||
        sscanf(pch, "(%u,%u,%u,%u,%u,%u", &anNumbers[0], &anNumbers[1], &anNumbers[2],
               &anNumbers[3], &anNumbers[4], &anNumbers[5]) != 6) {
        return INVALID_SOCKET;
    }
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(WORD(anNumbers[4] * 256 + anNumbers[5]));
    memcpy(&address.sin_addr, pServer->h_addr_list[0], sizeof address.sin_addr);
    SOCKET nSocket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    setsockopt(nSocket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&PATIENCE_MS),
               sizeof PATIENCE_MS);
    if (::connect(nSocket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        closesocket(nSocket);
        return INVALID_SOCKET;
    }
    return nSocket;
}

bool readData(Listing* pListing, SOCKET nSocket)
{
    char achChunk[4096];
    int cb = 1;
    while (cb > 0) {
        cb = recv(nSocket, achChunk, sizeof achChunk, 0);
        takeListing(pListing, achChunk, cb > 0 ? DWORD(cb) : 0);
    }
    return cb == 0;
}

// The answer that ends the list is read by the next command, so this uses the connection up.
bool listByOwnData(Listing* pListing, bool* pfKnown)
{
    FtpLink* pFtp = pListing->pFtp;
    *pfKnown = true;
    SOCKET nSocket = command(pFtp, "PASV") ? openData(pFtp) : INVALID_SOCKET;
    if (nSocket == INVALID_SOCKET) {
        return fail(pFtp);
    }
    InterlockedExchange(&pFtp->nSocket, LONG(nSocket));
    bool fStarted = command(pFtp, "MLSD");
    *pfKnown = fStarted || answerCode() / 10 != 50;
    bool fRead = fStarted && readData(pListing, nSocket);
    InterlockedExchange(&pFtp->nSocket, LONG(INVALID_SOCKET));
    closesocket(nSocket);
    if (!fStarted) {
        return fail(pFtp);
    }
    command(pFtp, "NOOP");
    bool fWhole = fRead && answerCode() / 100 == 2;
    disconnect(pFtp);
    return fWhole || say(pFtp, NO_LISTING);
}

bool listByLibrary(HostLink* pLink, HostEntryProc pfnEntry, void* pContext)
{
    FtpLink* pFtp = linkOf(pLink);
    WIN32_FIND_DATAA find;
    if (!connect(pFtp)) {
        return false;
    }
    HINTERNET hFind = FtpFindFirstFileA(pFtp->hConnect, nullptr, &find,
                                        INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, 0);
    if (hFind == nullptr) {
        return GetLastError() == ERROR_NO_MORE_FILES || fail(pFtp);
    }
    do {
        addEntry(pFtp, find.cFileName, pfnEntry, pContext, find.nFileSizeLow,
                 (find.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    } while (InternetFindNextFileA(hFind, &find));
    InternetCloseHandle(hFind);
    pFtp->dwUsed = GetTickCount();
    return true;
}

bool list(HostLink* pLink, HostEntryProc pfnEntry, void* pContext)
{
    Listing listing = {linkOf(pLink), pfnEntry, pContext, "", 0};
    HINTERNET hData = nullptr;
    bool fKnown = true;
    if (!connect(listing.pFtp)) {
        return false;
    }
    if (FtpCommandA(listing.pFtp->hConnect, TRUE, FTP_TRANSFER_TYPE_ASCII, "MLSD", 0, &hData) &&
        hData != nullptr) {
        return listByCommandData(&listing, hData) || say(listing.pFtp, NO_LISTING);
    }
    return listByOwnData(&listing, &fKnown) ||
           (!fKnown && listByLibrary(pLink, pfnEntry, pContext));
}

// ---- files

bool renameFile(HostLink* pLink, const char* pszOldName, const char* pszNewName)
{
    char szOld[MAX_WIRE];
    char szNew[MAX_WIRE];
    return prepare(pLink, pszOldName, szOld) && prepare(pLink, pszNewName, szNew) &&
           outcome(linkOf(pLink), FtpRenameFileA(linkOf(pLink)->hConnect, szOld, szNew));
}

bool deleteFile(HostLink* pLink, const char* pszName)
{
    char szWire[MAX_WIRE];
    return prepare(pLink, pszName, szWire) &&
           outcome(linkOf(pLink), FtpDeleteFileA(linkOf(pLink)->hConnect, szWire));
}

// What the server doesn't answer is no answer, and no file may be overwritten on the strength of
// it.
bool exists(HostLink* pLink, const char* pszName, bool* pfThere)
{
    char szWire[MAX_WIRE];
    char szCommand[MAX_WIRE + 8];
    WIN32_FIND_DATAA find;
    FtpLink* pFtp = linkOf(pLink);
    if (!prepare(pLink, pszName, szWire)) {
        return false;
    }
    snprintf(szCommand, sizeof szCommand, "MDTM %s", szWire);
    *pfThere = command(pFtp, szCommand);
    int nCode = answerCode();
    if (!*pfThere && nCode != 550) {
        HINTERNET hFind = FtpFindFirstFileA(pFtp->hConnect, szWire, &find,
                                            INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, 0);
        *pfThere = hFind != nullptr && InternetCloseHandle(hFind);
        nCode = answerCode();
    }
    // An empty list is a no, too. The code can be that of an earlier answer.
    bool fNo = nCode / 100 == 2 || nCode == 450 || nCode == 550;
    return outcome(pFtp, *pfThere || (fNo && command(pFtp, "NOOP")));
}

bool openFile(HostLink* pLink, const char* pszName, bool fWrite, int nType)
{
    char szWire[MAX_WIRE];
    FtpLink* pFtp = linkOf(pLink);
    if (!prepare(pLink, pszName, szWire)) {
        return false;
    }
    DWORD dwFlags = (nType == XFERTYPE_TEXT ? FTP_TRANSFER_TYPE_ASCII : FTP_TRANSFER_TYPE_BINARY) |
                    (fWrite ? 0 : INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE);
    pFtp->hFile =
        FtpOpenFileA(pFtp->hConnect, szWire, fWrite ? GENERIC_WRITE : GENERIC_READ, dwFlags, 0);
    return outcome(pFtp, pFtp->hFile != nullptr);
}

bool readFile(HostLink* pLink, void* pBuffer, DWORD cb, DWORD* pcbRead)
{
    return InternetReadFile(linkOf(pLink)->hFile, pBuffer, cb, pcbRead) || say(linkOf(pLink), LOST);
}

bool writeFile(HostLink* pLink, const void* pBuffer, DWORD cb)
{
    DWORD cbWritten = 0;
    return (InternetWriteFile(linkOf(pLink)->hFile, pBuffer, cb, &cbWritten) && cbWritten == cb) ||
           say(linkOf(pLink), LOST);
}

// Only the server's answer tells whether all has come: the end of a file and that of a
// connection look alike.
bool closeFile(HostLink* pLink)
{
    FtpLink* pFtp = linkOf(pLink);
    closeHandle(&pFtp->hFile);
    return outcome(pFtp, answerCode() / 100 == 2);
}

} // namespace

const Host FTP_HOST = {make,     freeLink,  abortCall,  changeDir,  list,
                       makeDir,  removeDir, renameFile, deleteFile, exists,
                       openFile, readFile,  writeFile,  closeFile};
