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
    const LineEvents* events;
    BYTE* kept;
    DWORD keptSize;
    bool open;
};

Line connection = {INVALID_SOCKET, nullptr, nullptr, 0, false};

bool readAddress(const char* address, sockaddr_in* result)
{
    char host[256];
    lstrcpynA(host, address, sizeof host);
    char* colon = strchr(host, ':');
    int port = colon != nullptr ? atoi(colon + 1) : TELNET_PORT;
    if (colon != nullptr) {
        *colon = '\0';
    }
    *result = {};
    result->sin_family = AF_INET;
    result->sin_port = htons(WORD(port));
    result->sin_addr.s_addr = inet_addr(host);
    if (result->sin_addr.s_addr == INADDR_NONE) {
        const hostent* entry = gethostbyname(host);
        if (entry == nullptr) {
            return false;
        }
        memcpy(&result->sin_addr, entry->h_addr_list[0], sizeof result->sin_addr);
    }
    return port > 0 && port < 65536;
}

bool connectLine(HWND hwnd, UINT message, const sockaddr_in* result)
{
    constexpr int ON = 1;
    connection.socket = socket(AF_INET, SOCK_STREAM, 0);
    if (connection.socket == INVALID_SOCKET ||
        WSAAsyncSelect(connection.socket, hwnd, message,
                       FD_CONNECT | FD_READ | FD_WRITE | FD_CLOSE) != 0) {
        return false;
    }
    // A block and its answer are small and wait for each other.
    setsockopt(connection.socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&ON),
               sizeof ON);
    return connect(connection.socket, reinterpret_cast<const sockaddr*>(result), sizeof *result) ==
               0 ||
           WSAGetLastError() == WSAEWOULDBLOCK;
}

void endLine(const char* why)
{
    const LineEvents* events = connection.events;
    closeLine();
    events->closed(why);
}

DWORD sendSome(const BYTE* bytes, DWORD count)
{
    DWORD sent = 0;
    while (sent < count) {
        int n = send(connection.socket, reinterpret_cast<const char*>(bytes) + sent,
                     int(count - sent), 0);
        if (n <= 0) {
            break;
        }
        sent += DWORD(n);
    }
    return sent;
}

void sendKept()
{
    DWORD sent = sendSome(connection.kept, connection.keptSize);
    connection.keptSize -= sent;
    memmove(connection.kept, connection.kept + sent, connection.keptSize);
}

// Returns false if there was nothing.
bool receive()
{
    static BYTE buffer[READ_SIZE];
    int count = recv(connection.socket, reinterpret_cast<char*>(buffer), sizeof buffer, 0);
    if (count > 0) {
        connection.events->received(buffer, DWORD(count));
    }
    return count > 0;
}

void onClosed()
{
    while (receive()) {
    }
    if (connection.socket != INVALID_SOCKET) {
        endLine("The host has closed the connection.");
    }
}

void onConnected(int error)
{
    if (error != 0) {
        endLine("The host doesn't answer.");
        return;
    }
    connection.open = true;
    connection.events->opened();
}

} // namespace

bool openLine(HWND hwnd, UINT message, const char* address, const LineEvents* events,
              const char** why)
{
    WSADATA data;
    sockaddr_in hostAddress;
    closeLine();
    connection.events = events;
    *why = "There is no network.";
    if (WSAStartup(MAKEWORD(1, 1), &data) != 0) {
        return false;
    }
    *why = "The host isn't known.";
    if (!readAddress(address, &hostAddress)) {
        return false;
    }
    *why = "There is no way to the host.";
    connection.kept = static_cast<BYTE*>(malloc(KEPT_MOST));
    if (connection.kept != nullptr && connectLine(hwnd, message, &hostAddress)) {
        return true;
    }
    closeLine();
    return false;
}

void closeLine()
{
    if (connection.socket != INVALID_SOCKET) {
        closesocket(connection.socket);
    }
    free(connection.kept);
    connection.socket = INVALID_SOCKET;
    connection.kept = nullptr;
    connection.keptSize = 0;
    connection.open = false;
}

bool isLineOpen()
{
    return connection.open;
}

void putLine(const BYTE* bytes, DWORD count)
{
    if (!connection.open) {
        return;
    }
    DWORD sent = connection.keptSize == 0 ? sendSome(bytes, count) : 0;
    DWORD rest = count - sent;
    if (rest > KEPT_MOST - connection.keptSize) {
        rest = KEPT_MOST - connection.keptSize;
    }
    memcpy(connection.kept + connection.keptSize, bytes + sent, rest);
    connection.keptSize += rest;
}

DWORD waitingInLine()
{
    return connection.keptSize;
}

void onLineMessage(WPARAM wParam, LPARAM lParam)
{
    if (wParam != connection.socket) {
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
