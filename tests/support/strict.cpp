#include "strict.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

namespace {

// Stands where the handle of a dead window leads to, with something in its long that is no address.
HWND s_hwndOther;
constexpr LONG OTHERS_LONG = 0x1234;
std::set<std::string> s_faults;
bool s_fPaintAtOnce;
HWND s_hwndWithoutCaret;

bool isOther(HWND hwnd)
{
    return hwnd != nullptr && (hwnd == s_hwndOther || !IsWindow(hwnd));
}

// The fakes of calls that take a window first. A number for each, because calls of one type would
// share a fake.
template <int NUMBER, typename Result, typename... Args> struct OfWindow {
    static inline Result(WINAPI* s_pfn)(HWND, Args...);
    static inline const char* s_pszName;
    static Result WINAPI ask(HWND hwnd, Args... args)
    {
        return s_pfn(isOther(hwnd) ? s_hwndOther : hwnd, args...);
    }
    static Result WINAPI act(HWND hwnd, Args... args)
    {
        if (isOther(hwnd)) {
            s_faults.insert(s_pszName + std::string(" hits another window"));
            return Result();
        }
        return s_pfn(hwnd, args...);
    }
};

HWND WINAPI strictGetDlgItem(HWND hwnd, int id)
{
    return isOther(hwnd) ? s_hwndOther : GetDlgItem(hwnd, id);
}

bool isOfClass(HWND hwnd, const char* pszClass, LONG lStyles)
{
    char szClass[16] = "";
    GetClassNameA(hwnd, szClass, sizeof szClass);
    return lstrcmpiA(szClass, pszClass) == 0 &&
           (lStyles == 0 || (GetWindowLongA(hwnd, GWL_STYLE) & lStyles) != 0);
}

// Where the first line in view begins, and its number.
POINT placeOfText(HWND hwnd)
{
    LRESULT nLine = SendMessageA(hwnd, EM_GETFIRSTVISIBLELINE, 0, 0);
    LRESULT nChar = SendMessageA(hwnd, EM_LINEINDEX, 0, 0);
    return {short(LOWORD(SendMessageA(hwnd, EM_POSFROMCHAR, WPARAM(nChar), 0))), LONG(nLine)};
}

LONG charWidth(HWND hwnd)
{
    TEXTMETRICA metrics = {};
    HDC hdc = GetDC(hwnd);
    SelectObject(hdc, reinterpret_cast<HGDIOBJ>(SendMessageA(hwnd, WM_GETFONT, 0, 0)));
    GetTextMetricsA(hdc, &metrics);
    ReleaseDC(hwnd, hdc);
    return metrics.tmAveCharWidth;
}

LRESULT selectWithoutScrolling(HWND hwnd, WPARAM wParam, LPARAM lParam)
{
    const POINT before = placeOfText(hwnd);
    LRESULT nResult = SendMessageA(hwnd, EM_SETSEL, wParam, lParam);
    const POINT now = placeOfText(hwnd);
    if (before.x != now.x || before.y != now.y) {
        SendMessageA(hwnd, EM_LINESCROLL, WPARAM((now.x - before.x) / charWidth(hwnd)),
                     before.y - now.y);
    }
    return nResult;
}

// Not every version keeps room for a line in an edit that has none.
LRESULT formattingRect(HWND hwnd, LPARAM lParam)
{
    RECT rc;
    auto prc = reinterpret_cast<RECT*>(lParam);
    const LRESULT nResult = SendMessageA(hwnd, EM_GETRECT, 0, lParam);
    GetClientRect(hwnd, &rc);
    prc->bottom = std::max(prc->top, std::min(prc->bottom, rc.bottom));
    return nResult;
}

LRESULT moveCaret(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (LONG(wParam) == -1 && SendMessageA(hwnd, LB_GETCURSEL, 0, 0) == LB_ERR) {
        s_hwndWithoutCaret = hwnd;
        return SendMessageA(hwnd, LB_SETTOPINDEX, 0, 0);
    }
    s_hwndWithoutCaret = nullptr;
    return SendMessageA(hwnd, uMessage, wParam, lParam);
}

LRESULT WINAPI strictSendMessage(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (isOther(hwnd)) {
        s_faults.insert("message " + std::to_string(uMessage) + " hits another window");
        return 0;
    }
    if (uMessage == EM_SETSEL && isOfClass(hwnd, "Edit", ES_MULTILINE)) {
        return selectWithoutScrolling(hwnd, wParam, lParam);
    }
    if (uMessage == EM_GETRECT && isOfClass(hwnd, "Edit", ES_MULTILINE)) {
        return formattingRect(hwnd, lParam);
    }
    if (uMessage == LB_SETCARETINDEX && !isOfClass(hwnd, "ListBox", LBS_EXTENDEDSEL)) {
        return moveCaret(hwnd, uMessage, wParam, lParam);
    }
    if (uMessage == LB_GETCARETINDEX && hwnd == s_hwndWithoutCaret) {
        return -1;
    }
    return SendMessageA(hwnd, uMessage, wParam, lParam);
}

LRESULT WINAPI strictSendDlgItemMessage(HWND hwnd, int id, UINT uMessage, WPARAM wParam,
                                        LPARAM lParam)
{
    return strictSendMessage(strictGetDlgItem(hwnd, id), uMessage, wParam, lParam);
}

HWND WINAPI strictCreateDialog(HINSTANCE hModule, LPCSTR pszTemplate, HWND hwndOwner,
                               DLGPROC pfnDialog, LPARAM lParam)
{
    HWND hwnd = CreateDialogParamA(hModule, pszTemplate, hwndOwner, pfnDialog, lParam);
    RedrawWindow(hwnd, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN |
                     (s_fPaintAtOnce ? RDW_UPDATENOW : 0));
    return hwnd;
}

bool isBlock(HGLOBAL h, const char* pszCall)
{
    bool fBlock = h != nullptr && GlobalFlags(h) != GMEM_INVALID_HANDLE;
    if (!fBlock) {
        s_faults.insert(pszCall + std::string(" of what is no block"));
    }
    return fBlock;
}

HGLOBAL WINAPI strictGlobalHandle(LPCVOID p)
{
    HGLOBAL h = GlobalHandle(p);
    return isBlock(h, "GlobalHandle") ? h : nullptr;
}

LPVOID WINAPI strictGlobalLock(HGLOBAL h)
{
    return isBlock(h, "GlobalLock") ? GlobalLock(h) : nullptr;
}

SIZE_T WINAPI strictGlobalSize(HGLOBAL h)
{
    return isBlock(h, "GlobalSize") ? GlobalSize(h) : 0;
}

DWORD WINAPI strictFormatMessage(DWORD dwFlags, LPCVOID pSource, DWORD dwMessage, DWORD dwLanguage,
                                 LPSTR pszBuffer, DWORD cchBuffer, va_list* pArguments)
{
    if ((dwFlags & FORMAT_MESSAGE_FROM_SYSTEM) != 0 && dwLanguage != 0) {
        SetLastError(ERROR_RESOURCE_LANG_NOT_FOUND);
        return 0;
    }
    return FormatMessageA(dwFlags, pSource, dwMessage, dwLanguage, pszBuffer, cchBuffer,
                          pArguments);
}

} // namespace

template <int NUMBER, typename Result, typename... Args>
void StrictPlatform::asks(const char* pszName, Result(WINAPI* pfn)(HWND, Args...))
{
    OfWindow<NUMBER, Result, Args...>::s_pfn = pfn;
    replace(pszName, OfWindow<NUMBER, Result, Args...>::ask);
}

template <int NUMBER, typename Result, typename... Args>
void StrictPlatform::acts(const char* pszName, Result(WINAPI* pfn)(HWND, Args...))
{
    OfWindow<NUMBER, Result, Args...>::s_pfn = pfn;
    OfWindow<NUMBER, Result, Args...>::s_pszName = pszName;
    replace(pszName, OfWindow<NUMBER, Result, Args...>::act);
}

StrictPlatform::StrictPlatform() : ReplacedImports(GetModuleHandleA("KRHAUL.DLL"))
{
    s_faults.clear();
    s_fPaintAtOnce = false;
    s_hwndWithoutCaret = nullptr;
    // Of the dialogs' class, for its long.
    s_hwndOther =
        CreateWindowA("#32770", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongA(s_hwndOther, DWL_USER, OTHERS_LONG);
    watchWindows();
    replace("SendMessageA", strictSendMessage);
    replace("SendDlgItemMessageA", strictSendDlgItemMessage);
    replace("GetDlgItem", strictGetDlgItem);
    replace("CreateDialogParamA", strictCreateDialog);
    replace("GlobalHandle", strictGlobalHandle);
    replace("GlobalLock", strictGlobalLock);
    replace("GlobalSize", strictGlobalSize);
    replace("FormatMessageA", strictFormatMessage);
}

void StrictPlatform::watchWindows()
{
    asks<0>("GetWindowLongA", GetWindowLongA);
    asks<1>("GetParent", GetParent);
    asks<2>("IsWindow", IsWindow);
    asks<3>("IsWindowEnabled", IsWindowEnabled);
    asks<4>("IsWindowVisible", IsWindowVisible);
    asks<5>("IsIconic", IsIconic);
    asks<6>("GetWindowRect", GetWindowRect);
    asks<7>("GetClientRect", GetClientRect);
    asks<8>("IsDlgButtonChecked", IsDlgButtonChecked);
    acts<10>("SetWindowLongA", SetWindowLongA);
    acts<11>("SetWindowTextA", SetWindowTextA);
    acts<12>("SetDlgItemTextA", SetDlgItemTextA);
    acts<13>("SetDlgItemInt", SetDlgItemInt);
    acts<14>("PostMessageA", PostMessageA);
    acts<15>("EnableWindow", EnableWindow);
    acts<16>("ShowWindow", ShowWindow);
    acts<17>("MoveWindow", MoveWindow);
    acts<18>("SetWindowPos", SetWindowPos);
    acts<19>("InvalidateRect", InvalidateRect);
    acts<20>("RedrawWindow", RedrawWindow);
    acts<21>("UpdateWindow", UpdateWindow);
    acts<22>("DestroyWindow", DestroyWindow);
    acts<23>("EndDialog", EndDialog);
    acts<24>("SetTimer", SetTimer);
    acts<25>("KillTimer", KillTimer);
    acts<26>("SetFocus", SetFocus);
    acts<27>("GetDC", GetDC);
    acts<28>("CheckDlgButton", CheckDlgButton);
    acts<29>("CheckRadioButton", CheckRadioButton);
}

StrictPlatform::~StrictPlatform()
{
    clear();
    DestroyWindow(std::exchange(s_hwndOther, nullptr));
    for (const std::string& fault : s_faults) {
        ADD_FAILURE() << "not on every platform: " << fault;
    }
}

void StrictPlatform::paintAtOnce(bool fAtOnce)
{
    s_fPaintAtOnce = fAtOnce;
}

namespace {

std::vector<std::string> s_started;
size_t s_cStarted;

UINT WINAPI fakeWinExec(LPCSTR pszCommand, UINT uShow)
{
    EXPECT_EQ(uShow, UINT(SW_SHOW));
    s_started.push_back(pszCommand);
    const size_t n = s_cStarted++;
    const UINT uResult = n < StartedPrograms::s_results.size() ? StartedPrograms::s_results[n] : 33;
    if (StartedPrograms::s_whileStarting) {
        StartedPrograms::s_whileStarting();
    }
    return uResult;
}

} // namespace

std::vector<UINT> StartedPrograms::s_results;
std::function<void()> StartedPrograms::s_whileStarting;

StartedPrograms::StartedPrograms() : m_exec(GetModuleHandleA("KRHAUL.DLL"), "WinExec", fakeWinExec)
{
    take();
    s_results.clear();
    s_whileStarting = nullptr;
}

std::vector<std::string> StartedPrograms::take()
{
    s_cStarted = 0;
    return std::exchange(s_started, {});
}

namespace {

// The file of that name, or of that name with the extension of programs; empty if there is none.
std::string findProgram(const std::string& name)
{
    char szPath[MAX_PATH] = "";
    char szLong[MAX_PATH] = "";
    const DWORD cch = SearchPathA(nullptr, name.c_str(), ".exe", sizeof szPath, szPath, nullptr);
    if (cch == 0 || cch >= sizeof szPath ||
        (GetFileAttributesA(szPath) & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return "";
    }
    GetLongPathNameA(szPath, szLong, sizeof szLong);
    CharLowerBuffA(szLong, sizeof szLong);
    return szLong;
}

// The ends of what a command line can name as its program, in the order in which they are tried.
std::vector<size_t> programEnds(const std::string& command)
{
    std::vector<size_t> ends;
    if (command[0] == '"') {
        return {command.find('"', 1)};
    }
    for (size_t n = command.find(' '); n != std::string::npos; n = command.find(' ', n + 1)) {
        ends.push_back(n);
    }
    return ends;
}

} // namespace

std::string StartedPrograms::programOf(const std::string& command)
{
    const size_t nFrom = command[0] == '"';
    for (size_t nEnd : programEnds(command)) {
        const std::string program = findProgram(command.substr(nFrom, nEnd - nFrom));
        if (!program.empty()) {
            return program;
        }
    }
    return "";
}

std::string StartedPrograms::argumentOf(const std::string& command)
{
    const size_t nFrom = command.find('"', command[0] == '"' ? command.find('"', 1) + 1 : 0) + 1;
    return command.substr(nFrom, command.rfind('"') - nFrom);
}
