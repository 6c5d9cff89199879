#include "line.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr WORD TELNET_PORT = 23;
constexpr DWORD READ_SIZE = 16384;
// Far more than a protocol that waits for answers ever has on its way.
constexpr DWORD KEPT_MOST = 1 << 20;

struct Line {
    SOCKET socket;
    const LineEvents* pEvents;
    BYTE* pbKept;
    DWORD cbKept;
    bool fOpen;
};

Line s_line = {INVALID_SOCKET, nullptr, nullptr, 0, false};

bool readAddress(const char* pszAddress, sockaddr_in* pAddress)
{
    char szHost[256];
    lstrcpynA(szHost, pszAddress, sizeof szHost);
    char* pchColon = strchr(szHost, ':');
    int nPort = pchColon != nullptr ? atoi(pchColon + 1) : TELNET_PORT;
    if (pchColon != nullptr) {
        *pchColon = '\0';
    }
    *pAddress = {};
    pAddress->sin_family = AF_INET;
    pAddress->sin_port = htons(WORD(nPort));
    pAddress->sin_addr.s_addr = inet_addr(szHost);
    if (pAddress->sin_addr.s_addr == INADDR_NONE) {
        const hostent* pHost = gethostbyname(szHost);
        if (pHost == nullptr) {
            return false;
        }
        memcpy(&pAddress->sin_addr, pHost->h_addr_list[0], sizeof pAddress->sin_addr);
    }
    return nPort > 0 && nPort < 65536;
}

bool connectLine(HWND hwnd, UINT uMessage, const sockaddr_in* pAddress)
{
    constexpr int ON = 1;
    s_line.socket = socket(AF_INET, SOCK_STREAM, 0);
    if (s_line.socket == INVALID_SOCKET ||
        WSAAsyncSelect(s_line.socket, hwnd, uMessage, FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE) !=
            0) {
        return false;
    }
    // A block and its answer are small and wait for each other.
    setsockopt(s_line.socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&ON),
               sizeof ON);
    return connect(s_line.socket, reinterpret_cast<const sockaddr*>(pAddress), sizeof *pAddress) ==
               0 ||
           WSAGetLastError() == WSAEWOULDBLOCK;
}

void endLine(const char* pszWhy)
{
    const LineEvents* pEvents = s_line.pEvents;
    closeLine();
    pEvents->pfnClosed(pszWhy);
}

DWORD sendSome(const BYTE* pb, DWORD cb)
{
    DWORD cbSent = 0;
    while (cbSent < cb) {
        int n =
            send(s_line.socket, reinterpret_cast<const char*>(pb) + cbSent, int(cb - cbSent), 0);
        if (n <= 0) {
            break;
        }
        cbSent += DWORD(n);
    }
    return cbSent;
}

void sendKept()
{
    DWORD cbSent = sendSome(s_line.pbKept, s_line.cbKept);
    s_line.cbKept -= cbSent;
    memmove(s_line.pbKept, s_line.pbKept + cbSent, s_line.cbKept);
}

// Returns false if there was nothing.
bool receive()
{
    static BYTE s_ab[READ_SIZE];
    int cb = recv(s_line.socket, reinterpret_cast<char*>(s_ab), sizeof s_ab, 0);
    if (cb > 0) {
        s_line.pEvents->pfnReceived(s_ab, DWORD(cb));
    }
    return cb > 0;
}

void onClosed()
{
    while (receive()) {
    }
    if (s_line.socket != INVALID_SOCKET) {
        endLine("The host has closed the connection.");
    }
}

void onConnected(int nError)
{
    if (nError != 0) {
        endLine("The host doesn't answer.");
        return;
    }
    s_line.fOpen = true;
    s_line.pEvents->pfnOpened();
}

} // namespace

bool openLine(HWND hwnd, UINT uMessage, const char* pszAddress, const LineEvents* pEvents,
              const char** ppszWhy)
{
    WSADATA data;
    sockaddr_in address;
    closeLine();
    s_line.pEvents = pEvents;
    *ppszWhy = "There is no network.";
    if (WSAStartup(MAKEWORD(1, 1), &data) != 0) {
        return false;
    }
    *ppszWhy = "The host isn't known.";
    if (!readAddress(pszAddress, &address)) {
        return false;
    }
    *ppszWhy = "There is no way to the host.";
    s_line.pbKept = static_cast<BYTE*>(malloc(KEPT_MOST));
    if (s_line.pbKept != nullptr && connectLine(hwnd, uMessage, &address)) {
        return true;
    }
    closeLine();
    return false;
}

void closeLine()
{
    if (s_line.socket != INVALID_SOCKET) {
        closesocket(s_line.socket);
    }
    free(s_line.pbKept);
    s_line.socket = INVALID_SOCKET;
    s_line.pbKept = nullptr;
    s_line.cbKept = 0;
    s_line.fOpen = false;
}

bool isLineOpen()
{
    return s_line.fOpen;
}

void putLine(const BYTE* pb, DWORD cb)
{
    if (!s_line.fOpen) {
        return;
    }
    DWORD cbSent = s_line.cbKept == 0 ? sendSome(pb, cb) : 0;
    DWORD cbRest = cb - cbSent;
    if (cbRest > KEPT_MOST - s_line.cbKept) {
        cbRest = KEPT_MOST - s_line.cbKept;
    }
    memcpy(s_line.pbKept + s_line.cbKept, pb + cbSent, cbRest);
    s_line.cbKept += cbRest;
}

DWORD waitingInLine()
{
    return s_line.cbKept;
}

void onLineMessage(WPARAM wParam, LPARAM lParam)
{
    if (wParam != s_line.socket) {
        return; // of an earlier connection
    }
    switch (WSAGETSELECTEVENT(lParam)) {
    case FD_CONNECT:
        onConnected(WSAGETSELECTERROR(lParam));
        break;
    case FD_READ:
        receive();
        break;
    case FD_WRITE:
        sendKept();
        break;
    case FD_CLOSE:
        onClosed();
        break;
    default:
        break;
    }
}
