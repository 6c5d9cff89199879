#include "curlloop.h"
#include "loop.h"

#include <map>
#include <set>

namespace demo {

namespace {

constexpr char CLASS[] = "KRDEMO.Curl";
constexpr UINT WM_SOCKET = WM_APP;  // wParam the socket, lParam what it is ready for
constexpr UINT WM_NOW = WM_APP + 1; // libcurl wants to go on without a socket
constexpr UINT_PTR TIMER_CURL = 1;  // the same, after some time
constexpr UINT_PTR TIMER_REST = 2;
constexpr UINT_PTR TIMER_LOOK = 3;
constexpr DWORD WORK_MS = 50;
constexpr UINT REST_MS = 10;
constexpr UINT LOOK_MS = 200;
constexpr DWORD WAIT_MS = 10;

CURLM* multi;
HWND hwnd;
std::map<curl_socket_t, int> watched; // what libcurl waits for
std::set<curl_socket_t> opened;
std::map<CURL*, std::function<void(CURLcode)>> transfers;
bool isResting;
DWORD workBegan;

// ---- what libcurl asks for

// Each call makes the platform look again, also at what it has told of already.
void arm(curl_socket_t socket, int what)
{
    long events = (what != 0 ? FD_CLOSE : 0) | ((what & CURL_POLL_IN) != 0 ? FD_READ : 0) |
                  ((what & CURL_POLL_OUT) != 0 ? FD_WRITE | FD_CONNECT : 0);
    WSAAsyncSelect(socket, hwnd, events != 0 ? WM_SOCKET : 0, events);
}

int onWatch(CURL*, curl_socket_t socket, int what, void*, void*)
{
    if (what == CURL_POLL_REMOVE) {
        watched.erase(socket);
        arm(socket, 0);
    } else {
        watched[socket] = what;
        arm(socket, what);
    }
    return 0;
}

int onTimer(CURLM*, long milliseconds, void*)
{
    KillTimer(hwnd, TIMER_CURL);
    if (milliseconds == 0) {
        PostMessageA(hwnd, WM_NOW, 0, 0);
    } else if (milliseconds > 0) {
        SetTimer(hwnd, TIMER_CURL, UINT(milliseconds), nullptr);
    }
    return 0;
}

curl_socket_t onOpen(void*, curlsocktype, curl_sockaddr* address)
{
    curl_socket_t handle = socket(address->family, address->socktype, address->protocol);
    opened.insert(handle);
    return handle;
}

int onClose(void*, curl_socket_t handle)
{
    opened.erase(handle);
    return closesocket(handle);
}

// ---- what is told to it

void tellEnds()
{
    int left = 0;
    while (CURLMsg* message = multi != nullptr ? curl_multi_info_read(multi, &left) : nullptr) {
        CURL* easy = message->easy_handle;
        CURLcode code = message->data.result;
        std::function<void(CURLcode)> onEnd = std::move(transfers[easy]);
        transfers.erase(easy);
        curl_multi_remove_handle(multi, easy);
        onEnd(code);
    }
}

// A quick server fills the queue with messages of its sockets, which go before all that the user
// does. So the work rests from time to time until the queue is empty.
void act(curl_socket_t socket, int ready)
{
    int running = 0;
    if (isResting || multi == nullptr) {
        return;
    }
    curl_multi_socket_action(multi, socket, ready, &running);
    tellEnds();
    if (GetTickCount() - workBegan > WORK_MS) {
        isResting = true;
        SetTimer(hwnd, TIMER_REST, REST_MS, nullptr);
        return;
    }
    auto found = watched.find(socket);
    if (found != watched.end()) {
        arm(socket, found->second);
    }
}

void onSocket(curl_socket_t socket, LPARAM lParam)
{
    int event = WSAGETSELECTEVENT(lParam);
    int ready = event == FD_CLOSE  ? CURL_CSELECT_IN | CURL_CSELECT_OUT
                : event == FD_READ ? CURL_CSELECT_IN
                                   : CURL_CSELECT_OUT;
    if (watched.count(socket) != 0) {
        act(socket, ready | (WSAGETSELECTERROR(lParam) != 0 ? CURL_CSELECT_ERR : 0));
    }
}

// That a connection was closed is told once, and libcurl may not have asked at that time. So the
// sockets are looked at themselves now and then.
void lookAtSockets()
{
    std::map<curl_socket_t, int> all = watched;
    for (const auto& socket : all) {
        fd_set readers = {1, {socket.first}};
        fd_set writers = readers;
        timeval noTime = {};
        bool in = (socket.second & CURL_POLL_IN) != 0;
        bool out = (socket.second & CURL_POLL_OUT) != 0;
        select(0, in ? &readers : nullptr, out ? &writers : nullptr, nullptr, &noTime);
        int ready = (in && readers.fd_count > 0 ? CURL_CSELECT_IN : 0) |
                    (out && writers.fd_count > 0 ? CURL_CSELECT_OUT : 0);
        if (ready != 0 && watched.count(socket.first) != 0) {
            act(socket.first, ready);
        }
    }
    if (transfers.empty()) {
        KillTimer(hwnd, TIMER_LOOK);
    }
}

void endRest()
{
    KillTimer(hwnd, TIMER_REST);
    isResting = false;
    workBegan = GetTickCount();
    act(CURL_SOCKET_TIMEOUT, 0);
    for (const auto& socket : watched) {
        arm(socket.first, socket.second);
    }
}

LRESULT CALLBACK loopProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SOCKET) {
        onSocket(curl_socket_t(wParam), lParam);
    } else if (message == WM_NOW) {
        act(CURL_SOCKET_TIMEOUT, 0);
    } else if (message == WM_TIMER && wParam == TIMER_CURL) {
        KillTimer(hwnd, TIMER_CURL);
        act(CURL_SOCKET_TIMEOUT, 0);
    } else if (message == WM_TIMER && wParam == TIMER_LOOK) {
        lookAtSockets();
    } else if (message == WM_TIMER) {
        endRest();
    } else {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    return 0;
}

void waitForEnds(DWORD patience)
{
    DWORD start = GetTickCount();
    while (!transfers.empty() && GetTickCount() - start < patience) {
        MSG msg;
        while (PeekMessageA(&msg, hwnd, 0, 0, PM_REMOVE)) {
            DispatchMessageA(&msg);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, WAIT_MS, QS_ALLINPUT);
    }
}

} // namespace

void openCurlLoop()
{
    curl_global_init(CURL_GLOBAL_ALL);
    hwnd = makeMessageWindow(CLASS, loopProc);
    multi = curl_multi_init();
    curl_multi_setopt(multi, CURLMOPT_SOCKETFUNCTION, onWatch);
    curl_multi_setopt(multi, CURLMOPT_TIMERFUNCTION, onTimer);
    isResting = false;
    workBegan = GetTickCount();
}

// No server is waited for to take its leave: the sockets are shut first.
void closeCurlLoop(DWORD patience)
{
    waitForEnds(patience);
    for (curl_socket_t socket : opened) {
        shutdown(socket, SD_BOTH);
    }
    while (!transfers.empty()) {
        dropHandle(transfers.begin()->first);
    }
    curl_multi_cleanup(multi);
    multi = nullptr;
    watched.clear();
    opened.clear();
    DestroyWindow(hwnd);
}

void runHandle(CURL* easy, std::function<void(CURLcode)> onEnd)
{
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, onOpen);
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, onClose);
    transfers[easy] = std::move(onEnd);
    curl_multi_add_handle(multi, easy);
    SetTimer(hwnd, TIMER_LOOK, LOOK_MS, nullptr);
}

void dropHandle(CURL* easy)
{
    if (transfers.erase(easy) != 0) {
        curl_multi_remove_handle(multi, easy);
    }
}

} // namespace demo
