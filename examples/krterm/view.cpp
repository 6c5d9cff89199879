#include "view.h"
#include "screen.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr char CLASS[] = "KRTERMVIEW";
constexpr int MOST_COLUMNS = 500;

HWND s_hwnd;
const ViewEvents* s_pEvents;
int s_cxChar, s_cyChar;
int s_nTop;          // the line that the view begins with
bool s_fFollow;      // which is that of the screen
ScreenPlace s_begin; // of the selection, where the mouse went down
ScreenPlace s_end;
bool s_fDragging;

HFONT fixedFont()
{
    return static_cast<HFONT>(GetStockObject(SYSTEM_FIXED_FONT));
}

void measureFont()
{
    TEXTMETRICA metric = {};
    HDC hdc = GetDC(nullptr);
    HGDIOBJ hfontOld = SelectObject(hdc, fixedFont());
    GetTextMetricsA(hdc, &metric);
    SelectObject(hdc, hfontOld);
    ReleaseDC(nullptr, hdc);
    s_cxChar = metric.tmAveCharWidth;
    s_cyChar = metric.tmHeight;
}

// ---- scrolling

void showScrollBar()
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = topLine() - firstLine() + screenRows() - 1;
    info.nPage = UINT(screenRows());
    info.nPos = s_nTop - firstLine();
    SetScrollInfo(s_hwnd, SB_VERT, &info, TRUE);
}

void scrollTo(int nLine)
{
    int nOld = s_nTop;
    s_nTop = nLine < firstLine() ? firstLine() : nLine > topLine() ? topLine() : nLine;
    s_fFollow = s_nTop == topLine();
    if (s_nTop != nOld) {
        InvalidateRect(s_hwnd, nullptr, FALSE);
    }
    showScrollBar();
}

void onScroll(WORD nCode)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(s_hwnd, SB_VERT, &info);
    int cPage = screenRows();
    switch (nCode) {
    case SB_LINEUP:
        scrollTo(s_nTop - 1);
        break;
    case SB_LINEDOWN:
        scrollTo(s_nTop + 1);
        break;
    case SB_PAGEUP:
        scrollTo(s_nTop - cPage);
        break;
    case SB_PAGEDOWN:
        scrollTo(s_nTop + cPage);
        break;
    case SB_THUMBTRACK:
        scrollTo(firstLine() + info.nTrackPos);
        break;
    default:
        break;
    }
}

// ---- what the screen tells

void putFromScreen(const BYTE* pb, DWORD cb)
{
    s_pEvents->pfnPut(pb, cb);
}

void onScreenChanged(int nFirstRow, int nEndRow)
{
    RECT rc;
    GetClientRect(s_hwnd, &rc);
    rc.top = (topLine() + nFirstRow - s_nTop) * s_cyChar;
    rc.bottom = (topLine() + nEndRow - s_nTop) * s_cyChar;
    InvalidateRect(s_hwnd, &rc, FALSE);
}

void onScreenMoved()
{
    if (s_hwnd != nullptr) {
        scrollTo(s_fFollow ? topLine() : s_nTop);
    }
}

constexpr ScreenEvents SCREEN_EVENTS = {putFromScreen, onScreenChanged, onScreenMoved};

// ---- drawing

bool isSelected(ScreenPlace place)
{
    bool fForward = isBefore(s_begin, s_end);
    ScreenPlace from = fForward ? s_begin : s_end;
    ScreenPlace to = fForward ? s_end : s_begin;
    return !isBefore(place, from) && isBefore(place, to);
}

// As it is drawn: selection and cursor are reversed.
ScreenCell shownCell(ScreenPlace place)
{
    ScreenCell cell = cellAt(place);
    ScreenPlace cursor = cursorPlace();
    bool fCursor = isCursorShown() && place.nLine == cursor.nLine &&
                   place.nColumn == cursor.nColumn && GetFocus() == s_hwnd;
    if (isSelected(place) != fCursor) {
        COLORREF col = cell.colText;
        cell.colText = cell.colBack;
        cell.colBack = col;
    }
    return cell;
}

bool looksAlike(const ScreenCell* p1, const ScreenCell* p2)
{
    return p1->colText == p2->colText && p1->colBack == p2->colBack && p1->fBold == p2->fBold &&
           p1->fUnderline == p2->fUnderline;
}

// Characters of one look, in one row from one column on.
struct Run {
    WCHAR szText[MOST_COLUMNS];
    INT aWidths[MOST_COLUMNS];
    UINT cch;
    int nColumn, cColumns;
    ScreenCell look;
};

void drawRun(HDC hdc, const Run* pRun, int y)
{
    int x = pRun->nColumn * s_cxChar;
    RECT rc = {x, y, x + pRun->cColumns * s_cxChar, y + s_cyChar};
    SetTextColor(hdc, pRun->look.colText);
    SetBkColor(hdc, pRun->look.colBack);
    ExtTextOutW(hdc, x, y, ETO_OPAQUE | ETO_CLIPPED, &rc, pRun->szText, pRun->cch, pRun->aWidths);
    if (pRun->look.fBold) {
        SetBkMode(hdc, TRANSPARENT);
        ExtTextOutW(hdc, x + 1, y, ETO_CLIPPED, &rc, pRun->szText, pRun->cch, pRun->aWidths);
        SetBkMode(hdc, OPAQUE);
    }
    if (pRun->look.fUnderline) {
        SetBkColor(hdc, pRun->look.colText);
        rc.top = rc.bottom - 1;
        ExtTextOutW(hdc, 0, 0, ETO_OPAQUE, &rc, nullptr, 0, nullptr);
    }
}

void addToRun(Run* pRun, const ScreenCell* pCell)
{
    ++pRun->cColumns;
    if (pCell->ch != 0) {
        pRun->szText[pRun->cch] = pCell->ch < 0x10000 ? WCHAR(pCell->ch) : WCHAR(0xFFFD);
        pRun->aWidths[pRun->cch++] = pCell->fWide ? 2 * s_cxChar : s_cxChar;
    }
}

void drawRow(HDC hdc, int nLine, int y)
{
    static Run s_run;
    int cColumns = screenColumns();
    s_run.cch = 0;
    s_run.nColumn = s_run.cColumns = 0;
    for (int n = 0; n < cColumns && n < MOST_COLUMNS; ++n) {
        ScreenCell cell = shownCell({nLine, n});
        if (s_run.cColumns > 0 && !looksAlike(&cell, &s_run.look)) {
            drawRun(hdc, &s_run, y);
            s_run.cch = 0;
            s_run.nColumn = n;
            s_run.cColumns = 0;
        }
        s_run.look = cell;
        addToRun(&s_run, &cell);
    }
    drawRun(hdc, &s_run, y);
}

void onPaint(HWND hwnd)
{
    PAINTSTRUCT paint;
    RECT rcClient;
    HDC hdc = BeginPaint(hwnd, &paint);
    HGDIOBJ hfontOld = SelectObject(hdc, fixedFont());
    int cRows = screenRows();
    for (int n = 0; n < cRows; ++n) {
        int y = n * s_cyChar;
        if (y < paint.rcPaint.bottom && y + s_cyChar > paint.rcPaint.top) {
            drawRow(hdc, s_nTop + n, y);
        }
    }
    // What is left over at the edges.
    GetClientRect(hwnd, &rcClient);
    ExcludeClipRect(hdc, 0, 0, screenColumns() * s_cxChar, cRows * s_cyChar);
    FillRect(hdc, &rcClient, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    SelectObject(hdc, hfontOld);
    EndPaint(hwnd, &paint);
}

// ---- selection and clipboard

ScreenPlace placeAt(LPARAM lParam)
{
    int nColumn = (int(short(LOWORD(lParam))) + s_cxChar / 2) / s_cxChar;
    int nRow = int(short(HIWORD(lParam))) / s_cyChar;
    nColumn = nColumn < 0 ? 0 : nColumn > screenColumns() ? screenColumns() : nColumn;
    nRow = nRow < 0 ? 0 : nRow >= screenRows() ? screenRows() - 1 : nRow;
    return {s_nTop + nRow, nColumn};
}

void select(ScreenPlace begin, ScreenPlace end)
{
    s_begin = begin;
    s_end = end;
    InvalidateRect(s_hwnd, nullptr, FALSE);
}

void onButtonDown(HWND hwnd, LPARAM lParam)
{
    SetFocus(hwnd);
    SetCapture(hwnd);
    s_fDragging = true;
    select(placeAt(lParam), placeAt(lParam));
}

void onMouseMove(LPARAM lParam)
{
    int y = int(short(HIWORD(lParam)));
    if (!s_fDragging) {
        return;
    }
    if (y < 0 || y >= screenRows() * s_cyChar) {
        scrollTo(s_nTop + (y < 0 ? -1 : 1));
    }
    select(s_begin, placeAt(lParam));
}

void onDoubleClick(LPARAM lParam)
{
    ScreenPlace place = {s_nTop + int(short(HIWORD(lParam))) / s_cyChar,
                         int(short(LOWORD(lParam))) / s_cxChar};
    select(wordEdge(place, false), wordEdge(place, true));
}

void putOnClipboard(UINT uFormat, const void* pText, size_t cb)
{
    HGLOBAL hglobal = GlobalAlloc(GMEM_MOVEABLE, cb);
    if (hglobal != nullptr) {
        memcpy(GlobalLock(hglobal), pText, cb);
        GlobalUnlock(hglobal);
        SetClipboardData(uFormat, hglobal);
    }
}

// Not every version of the system makes one kind of text of the other.
void putTextOnClipboard(const WCHAR* pszText)
{
    size_t cch = wcslen(pszText) + 1;
    int cb = WideCharToMultiByte(CP_ACP, 0, pszText, int(cch), nullptr, 0, nullptr, nullptr);
    auto pszAnsi = static_cast<char*>(malloc(size_t(cb)));
    if (pszAnsi == nullptr || !OpenClipboard(s_hwnd)) {
        free(pszAnsi);
        return;
    }
    WideCharToMultiByte(CP_ACP, 0, pszText, int(cch), pszAnsi, cb, nullptr, nullptr);
    EmptyClipboard();
    putOnClipboard(CF_UNICODETEXT, pszText, cch * sizeof(WCHAR));
    putOnClipboard(CF_TEXT, pszAnsi, size_t(cb));
    CloseClipboard();
    free(pszAnsi);
}

void pasteAnsi(const char* pszText)
{
    int cch = MultiByteToWideChar(CP_ACP, 0, pszText, -1, nullptr, 0);
    auto pszWide = static_cast<WCHAR*>(malloc(size_t(cch) * sizeof(WCHAR)));
    if (pszWide != nullptr && MultiByteToWideChar(CP_ACP, 0, pszText, -1, pszWide, cch) > 0) {
        pasteText(pszWide);
    }
    free(pszWide);
}

// ---- keys

struct Key {
    WPARAM vk;
    VTermKey nKey;
};

constexpr Key KEYS[] = {
    {VK_RETURN, VTERM_KEY_ENTER},  {VK_TAB, VTERM_KEY_TAB},       {VK_BACK, VTERM_KEY_BACKSPACE},
    {VK_ESCAPE, VTERM_KEY_ESCAPE}, {VK_UP, VTERM_KEY_UP},         {VK_DOWN, VTERM_KEY_DOWN},
    {VK_LEFT, VTERM_KEY_LEFT},     {VK_RIGHT, VTERM_KEY_RIGHT},   {VK_INSERT, VTERM_KEY_INS},
    {VK_DELETE, VTERM_KEY_DEL},    {VK_HOME, VTERM_KEY_HOME},     {VK_END, VTERM_KEY_END},
    {VK_PRIOR, VTERM_KEY_PAGEUP},  {VK_NEXT, VTERM_KEY_PAGEDOWN},
};

VTermModifier modifiers()
{
    int n = (GetKeyState(VK_SHIFT) < 0 ? VTERM_MOD_SHIFT : 0) |
            (GetKeyState(VK_CONTROL) < 0 ? VTERM_MOD_CTRL : 0);
    return VTermModifier(n);
}

// Shift keeps these keys in the terminal. Returns false for any other.
bool takeOwnKey(WPARAM vk, VTermModifier nModifier)
{
    if (vk == VK_INSERT && nModifier == VTERM_MOD_CTRL) {
        copySelection();
    } else if (vk == VK_INSERT && nModifier == VTERM_MOD_SHIFT) {
        paste();
    } else if (vk == VK_PRIOR && nModifier == VTERM_MOD_SHIFT) {
        onScroll(SB_PAGEUP);
    } else if (vk == VK_NEXT && nModifier == VTERM_MOD_SHIFT) {
        onScroll(SB_PAGEDOWN);
    } else {
        return false;
    }
    return true;
}

void beforeTyping()
{
    select({}, {});
    scrollTo(topLine());
}

void onKeyDown(WPARAM vk)
{
    VTermModifier nModifier = modifiers();
    if (takeOwnKey(vk, nModifier) || s_pEvents->pfnLocked()) {
        return;
    }
    if (vk >= VK_F1 && vk <= VK_F12) {
        beforeTyping();
        typeKey(VTermKey(VTERM_KEY_FUNCTION(vk - VK_F1 + 1)), nModifier);
    }
    for (const Key& key : KEYS) {
        if (key.vk == vk) {
            beforeTyping();
            typeKey(key.nKey, nModifier);
        }
    }
}

// The keys of the table make characters too, which have gone out as keys.
void onChar(WPARAM wParam)
{
    WCHAR ch = 0;
    char chAnsi = char(wParam);
    bool fKey = (wParam == '\r' || wParam == '\t' || wParam == '\b' || wParam == 0x1B) &&
                GetKeyState(VK_CONTROL) >= 0;
    if (fKey || s_pEvents->pfnLocked()) {
        return;
    }
    beforeTyping();
    if (wParam < ' ') {
        BYTE b = BYTE(wParam);
        s_pEvents->pfnPut(&b, 1);
    } else if (MultiByteToWideChar(CP_ACP, 0, &chAnsi, 1, &ch, 1) == 1) {
        typeChar(ch);
    }
}

// ---- the window

void onSize(LPARAM lParam)
{
    int cColumns = LOWORD(lParam) / s_cxChar;
    int cRows = HIWORD(lParam) / s_cyChar;
    if (cColumns < 1 || cRows < 1) {
        return; // minimised
    }
    cColumns = cColumns > MOST_COLUMNS ? MOST_COLUMNS : cColumns;
    if (cColumns != screenColumns() || cRows != screenRows()) {
        sizeScreen(cRows, cColumns);
        scrollTo(topLine());
        InvalidateRect(s_hwnd, nullptr, FALSE);
        s_pEvents->pfnSized(cRows, cColumns);
    }
}

LRESULT onGetText(WPARAM cchBuffer, LPARAM lParam)
{
    WCHAR* pszText = screenText({s_nTop, 0}, {s_nTop + screenRows(), 0});
    auto pszBuffer = reinterpret_cast<char*>(lParam);
    int cch = 0;
    if (pszText != nullptr && cchBuffer > 0) {
        cch = WideCharToMultiByte(CP_ACP, 0, pszText, -1, nullptr, 0, nullptr, nullptr);
        auto pszAnsi = static_cast<char*>(malloc(size_t(cch)));
        if (pszAnsi != nullptr) {
            WideCharToMultiByte(CP_ACP, 0, pszText, -1, pszAnsi, cch, nullptr, nullptr);
            lstrcpynA(pszBuffer, pszAnsi, int(cchBuffer));
            cch = lstrlenA(pszBuffer);
        }
        free(pszAnsi);
    }
    free(pszText);
    return cch;
}

LRESULT onCreate(HWND hwnd)
{
    s_hwnd = hwnd;
    s_fFollow = true;
    return 0;
}

void onWheel(WPARAM wParam)
{
    scrollTo(s_nTop - 3 * short(HIWORD(wParam)) / WHEEL_DELTA);
}

void showCursor()
{
    int nRow = cursorPlace().nLine - topLine();
    onScreenChanged(nRow, nRow + 1);
}

void onButtonUp()
{
    s_fDragging = false;
    ReleaseCapture();
}

LRESULT onTextLength()
{
    return screenRows() * (screenColumns() * 2 + 2);
}

LRESULT CALLBACK viewProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_CREATE:
        return onCreate(hwnd);
    case WM_PAINT:
        onPaint(hwnd);
        return 0;
    case WM_SIZE:
        onSize(lParam);
        return 0;
    case WM_VSCROLL:
        onScroll(LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        onWheel(wParam);
        return 0;
    case WM_KEYDOWN:
        onKeyDown(wParam);
        return 0;
    case WM_CHAR:
        onChar(wParam);
        return 0;
    case WM_LBUTTONDOWN:
        onButtonDown(hwnd, lParam);
        return 0;
    case WM_MOUSEMOVE:
        onMouseMove(lParam);
        return 0;
    case WM_LBUTTONUP:
        onButtonUp();
        return 0;
    case WM_LBUTTONDBLCLK:
        onDoubleClick(lParam);
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        showCursor();
        return 0;
    case WM_GETTEXT:
        return onGetText(wParam, lParam);
    case WM_GETTEXTLENGTH:
        return onTextLength();
    default:
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
}

} // namespace

bool registerView(HINSTANCE hInstance)
{
    WNDCLASSA wndclass = {};
    measureFont();
    wndclass.style = CS_DBLCLKS;
    wndclass.lpfnWndProc = viewProc;
    wndclass.hInstance = hInstance;
    wndclass.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32513)); // IDC_IBEAM
    wndclass.lpszClassName = CLASS;
    return RegisterClassA(&wndclass) != 0;
}

HWND openView(HWND hwndParent, const ViewEvents* pEvents)
{
    constexpr int ROWS = 24;
    constexpr int COLUMNS = 80;
    s_pEvents = pEvents;
    s_nTop = 0;
    if (!openScreen(ROWS, COLUMNS, &SCREEN_EVENTS)) {
        return nullptr;
    }
    return CreateWindowExA(WS_EX_CLIENTEDGE, CLASS, "", WS_CHILD | WS_VISIBLE | WS_VSCROLL, 0, 0, 0,
                           0, hwndParent, nullptr, nullptr, nullptr);
}

SIZE sizeOfView(int cRows, int cColumns)
{
    RECT rc = {0, 0, cColumns * s_cxChar, cRows * s_cyChar};
    AdjustWindowRectEx(&rc, WS_CHILD, FALSE, WS_EX_CLIENTEDGE);
    return {rc.right - rc.left + GetSystemMetrics(SM_CXVSCROLL), rc.bottom - rc.top};
}

bool hasSelection()
{
    return isBefore(s_begin, s_end) || isBefore(s_end, s_begin);
}

void copySelection()
{
    bool fForward = isBefore(s_begin, s_end);
    WCHAR* pszText = screenText(fForward ? s_begin : s_end, fForward ? s_end : s_begin);
    if (pszText != nullptr && hasSelection()) {
        putTextOnClipboard(pszText);
    }
    free(pszText);
}

void selectAll()
{
    select({firstLine(), 0}, {topLine() + screenRows(), 0});
}

void paste()
{
    if (s_pEvents->pfnLocked() || !OpenClipboard(s_hwnd)) {
        return;
    }
    HANDLE hText = GetClipboardData(CF_UNICODETEXT);
    HANDLE hAnsi = hText == nullptr ? GetClipboardData(CF_TEXT) : nullptr;
    beforeTyping();
    if (hText != nullptr) {
        pasteText(static_cast<const WCHAR*>(GlobalLock(hText)));
        GlobalUnlock(hText);
    } else if (hAnsi != nullptr) {
        pasteAnsi(static_cast<const char*>(GlobalLock(hAnsi)));
        GlobalUnlock(hAnsi);
    }
    CloseClipboard();
}
