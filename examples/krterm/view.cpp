#include "view.h"
#include "screen.h"

#include <stdlib.h>
#include <string.h>

namespace {

constexpr char CLASS[] = "KRTERMVIEW";
constexpr int MOST_COLUMNS = 500;

HWND window;
const ViewEvents* listener;
int charWidth, charHeight;
int viewTop;                // the line that the view begins with
bool following;             // which is that of the screen
ScreenPlace selectionBegin; // of the selection, where the mouse went down
ScreenPlace selectionEnd;
bool dragging;

HFONT fixedFont()
{
    return static_cast<HFONT>(GetStockObject(SYSTEM_FIXED_FONT));
}

void measureFont()
{
    TEXTMETRICA metric = {};
    HDC hdc = GetDC(nullptr);
    HGDIOBJ oldFont = SelectObject(hdc, fixedFont());
    GetTextMetricsA(hdc, &metric);
    SelectObject(hdc, oldFont);
    ReleaseDC(nullptr, hdc);
    charWidth = metric.tmAveCharWidth;
    charHeight = metric.tmHeight;
}

// ---- scrolling

void showScrollBar()
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
    info.nMax = topLine() - firstLine() + screenRows() - 1;
    info.nPage = UINT(screenRows());
    info.nPos = viewTop - firstLine();
    SetScrollInfo(window, SB_VERT, &info, TRUE);
}

void scrollTo(int line)
{
    int old = viewTop;
    viewTop = line < firstLine() ? firstLine() : line > topLine() ? topLine() : line;
    following = viewTop == topLine();
    if (viewTop != old) {
        InvalidateRect(window, nullptr, FALSE);
    }
    showScrollBar();
}

void onScroll(WPARAM wParam, LPARAM)
{
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(window, SB_VERT, &info);
    int page = screenRows();
    switch (LOWORD(wParam)) {
    case SB_LINEUP:
        scrollTo(viewTop - 1);
        break;
    case SB_LINEDOWN:
        scrollTo(viewTop + 1);
        break;
    case SB_PAGEUP:
        scrollTo(viewTop - page);
        break;
    case SB_PAGEDOWN:
        scrollTo(viewTop + page);
        break;
    case SB_THUMBTRACK:
        scrollTo(firstLine() + info.nTrackPos);
        break;
    default:
        break;
    }
}

// ---- what the screen tells

void putFromScreen(const BYTE* bytes, DWORD count)
{
    listener->put(bytes, count);
}

void onScreenChanged(int firstRow, int endRow)
{
    RECT rect;
    GetClientRect(window, &rect);
    rect.top = (topLine() + firstRow - viewTop) * charHeight;
    rect.bottom = (topLine() + endRow - viewTop) * charHeight;
    InvalidateRect(window, &rect, FALSE);
}

void onScreenMoved()
{
    if (window != nullptr) {
        scrollTo(following ? topLine() : viewTop);
    }
}

constexpr ScreenEvents SCREEN_EVENTS = {putFromScreen, onScreenChanged, onScreenMoved};

// ---- drawing

bool isSelected(ScreenPlace place)
{
    bool forward = isBefore(selectionBegin, selectionEnd);
    ScreenPlace from = forward ? selectionBegin : selectionEnd;
    ScreenPlace to = forward ? selectionEnd : selectionBegin;
    return !isBefore(place, from) && isBefore(place, to);
}

// As it is drawn: selection and cursor are reversed.
ScreenCell shownCell(ScreenPlace place)
{
    ScreenCell cell = cellAt(place);
    ScreenPlace cursor = cursorPlace();
    bool isCursor = isCursorShown() && place.line == cursor.line && place.column == cursor.column &&
                    GetFocus() == window;
    if (isSelected(place) != isCursor) {
        COLORREF col = cell.textColor;
        cell.textColor = cell.backColor;
        cell.backColor = col;
    }
    return cell;
}

bool looksAlike(const ScreenCell* one, const ScreenCell* other)
{
    return one->textColor == other->textColor && one->backColor == other->backColor &&
           one->bold == other->bold && one->underline == other->underline;
}

// Characters of one look, in one row from one column on.
struct Run {
    WCHAR text[MOST_COLUMNS];
    INT widths[MOST_COLUMNS];
    UINT count;
    int column, columns;
    ScreenCell look;
};

void drawRun(HDC hdc, const Run* run, int y)
{
    int x = run->column * charWidth;
    RECT rect = {x, y, x + run->columns * charWidth, y + charHeight};
    SetTextColor(hdc, run->look.textColor);
    SetBkColor(hdc, run->look.backColor);
    ExtTextOutW(hdc, x, y, ETO_OPAQUE | ETO_CLIPPED, &rect, run->text, run->count, run->widths);
    if (run->look.bold) {
        SetBkMode(hdc, TRANSPARENT);
        ExtTextOutW(hdc, x + 1, y, ETO_CLIPPED, &rect, run->text, run->count, run->widths);
        SetBkMode(hdc, OPAQUE);
    }
    if (run->look.underline) {
        SetBkColor(hdc, run->look.textColor);
        rect.top = rect.bottom - 1;
        ExtTextOutW(hdc, 0, 0, ETO_OPAQUE, &rect, nullptr, 0, nullptr);
    }
}

void addToRun(Run* run, const ScreenCell* cell)
{
    ++run->columns;
    if (cell->ch != 0) {
        run->text[run->count] = cell->ch < 0x10000 ? WCHAR(cell->ch) : WCHAR(0xFFFD);
        run->widths[run->count++] = cell->wide ? 2 * charWidth : charWidth;
    }
}

void drawRow(HDC hdc, int line, int y)
{
    static Run run;
    int columns = screenColumns();
    run.count = 0;
    run.column = run.columns = 0;
    for (int n = 0; n < columns && n < MOST_COLUMNS; ++n) {
        ScreenCell cell = shownCell({line, n});
        if (run.columns > 0 && !looksAlike(&cell, &run.look)) {
            drawRun(hdc, &run, y);
            run.count = 0;
            run.column = n;
            run.columns = 0;
        }
        run.look = cell;
        addToRun(&run, &cell);
    }
    drawRun(hdc, &run, y);
}

void onPaint(WPARAM, LPARAM)
{
    PAINTSTRUCT paint;
    RECT client;
    HDC hdc = BeginPaint(window, &paint);
    HGDIOBJ oldFont = SelectObject(hdc, fixedFont());
    int rows = screenRows();
    for (int n = 0; n < rows; ++n) {
        int y = n * charHeight;
        if (y < paint.rcPaint.bottom && y + charHeight > paint.rcPaint.top) {
            drawRow(hdc, viewTop + n, y);
        }
    }
    // What is left over at the edges.
    GetClientRect(window, &client);
    ExcludeClipRect(hdc, 0, 0, screenColumns() * charWidth, rows * charHeight);
    FillRect(hdc, &client, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    SelectObject(hdc, oldFont);
    EndPaint(window, &paint);
}

// ---- selection and clipboard

ScreenPlace placeAt(LPARAM lParam)
{
    int column = (int(short(LOWORD(lParam))) + charWidth / 2) / charWidth;
    int row = int(short(HIWORD(lParam))) / charHeight;
    column = column < 0 ? 0 : column > screenColumns() ? screenColumns() : column;
    row = row < 0 ? 0 : row >= screenRows() ? screenRows() - 1 : row;
    return {viewTop + row, column};
}

void select(ScreenPlace begin, ScreenPlace end)
{
    selectionBegin = begin;
    selectionEnd = end;
    InvalidateRect(window, nullptr, FALSE);
}

void onButtonDown(WPARAM, LPARAM lParam)
{
    SetFocus(window);
    SetCapture(window);
    dragging = true;
    select(placeAt(lParam), placeAt(lParam));
}

void onMouseMove(WPARAM, LPARAM lParam)
{
    int y = int(short(HIWORD(lParam)));
    if (!dragging) {
        return;
    }
    if (y < 0 || y >= screenRows() * charHeight) {
        scrollTo(viewTop + (y < 0 ? -1 : 1));
    }
    select(selectionBegin, placeAt(lParam));
}

void onDoubleClick(WPARAM, LPARAM lParam)
{
    ScreenPlace place = {viewTop + int(short(HIWORD(lParam))) / charHeight,
                         int(short(LOWORD(lParam))) / charWidth};
    select(wordEdge(place, false), wordEdge(place, true));
}

void putOnClipboard(UINT format, const void* text, size_t count)
{
    HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, count);
    if (handle != nullptr) {
        memcpy(GlobalLock(handle), text, count);
        GlobalUnlock(handle);
        SetClipboardData(format, handle);
    }
}

// Not every version of the system makes one kind of text of the other.
void putTextOnClipboard(const WCHAR* text)
{
    size_t length = wcslen(text) + 1;
    int size = WideCharToMultiByte(CP_ACP, 0, text, int(length), nullptr, 0, nullptr, nullptr);
    auto ansi = static_cast<char*>(malloc(size_t(size)));
    if (ansi == nullptr || !OpenClipboard(window)) {
        free(ansi);
        return;
    }
    WideCharToMultiByte(CP_ACP, 0, text, int(length), ansi, size, nullptr, nullptr);
    EmptyClipboard();
    putOnClipboard(CF_UNICODETEXT, text, length * sizeof(WCHAR));
    putOnClipboard(CF_TEXT, ansi, size_t(size));
    CloseClipboard();
    free(ansi);
}

void pasteAnsi(const char* text)
{
    int count = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    auto wide = static_cast<WCHAR*>(malloc(size_t(count) * sizeof(WCHAR)));
    if (wide != nullptr && MultiByteToWideChar(CP_ACP, 0, text, -1, wide, count) > 0) {
        pasteText(wide);
    }
    free(wide);
}

// ---- keys

struct Key {
    WPARAM vk;
    VTermKey key;
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
bool takeOwnKey(WPARAM vk, VTermModifier modifier)
{
    if (vk == VK_INSERT && modifier == VTERM_MOD_CTRL) {
        copySelection();
    } else if (vk == VK_INSERT && modifier == VTERM_MOD_SHIFT) {
        paste();
    } else if (vk == VK_PRIOR && modifier == VTERM_MOD_SHIFT) {
        onScroll(SB_PAGEUP, 0);
    } else if (vk == VK_NEXT && modifier == VTERM_MOD_SHIFT) {
        onScroll(SB_PAGEDOWN, 0);
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

void onKeyDown(WPARAM vk, LPARAM)
{
    VTermModifier modifier = modifiers();
    if (takeOwnKey(vk, modifier) || listener->locked()) {
        return;
    }
    if (vk >= VK_F1 && vk <= VK_F12) {
        beforeTyping();
        typeKey(VTermKey(VTERM_KEY_FUNCTION(vk - VK_F1 + 1)), modifier);
    }
    for (const Key& key : KEYS) {
        if (key.vk == vk) {
            beforeTyping();
            typeKey(key.key, modifier);
        }
    }
}

// The keys of the table make characters too, which have gone out as keys.
void onChar(WPARAM wParam, LPARAM)
{
    WCHAR ch = 0;
    char ansi = char(wParam);
    bool isKey = (wParam == '\r' || wParam == '\t' || wParam == '\b' || wParam == 0x1B) &&
                 GetKeyState(VK_CONTROL) >= 0;
    if (isKey || listener->locked()) {
        return;
    }
    beforeTyping();
    if (wParam < ' ') {
        BYTE byte = BYTE(wParam);
        listener->put(&byte, 1);
    } else if (MultiByteToWideChar(CP_ACP, 0, &ansi, 1, &ch, 1) == 1) {
        typeChar(ch);
    }
}

// ---- the window

void onSize(WPARAM, LPARAM lParam)
{
    int columns = LOWORD(lParam) / charWidth;
    int rows = HIWORD(lParam) / charHeight;
    if (columns < 1 || rows < 1) {
        return; // minimised
    }
    columns = columns > MOST_COLUMNS ? MOST_COLUMNS : columns;
    if (columns != screenColumns() || rows != screenRows()) {
        sizeScreen(rows, columns);
        scrollTo(topLine());
        InvalidateRect(window, nullptr, FALSE);
        listener->sized(rows, columns);
    }
}

LRESULT onGetText(WPARAM size, LPARAM lParam)
{
    WCHAR* text = screenText({viewTop, 0}, {viewTop + screenRows(), 0});
    auto buffer = reinterpret_cast<char*>(lParam);
    int count = 0;
    if (text != nullptr && size > 0) {
        count = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
        auto ansi = static_cast<char*>(malloc(size_t(count)));
        if (ansi != nullptr) {
            WideCharToMultiByte(CP_ACP, 0, text, -1, ansi, count, nullptr, nullptr);
            lstrcpynA(buffer, ansi, int(size));
            count = lstrlenA(buffer);
        }
        free(ansi);
    }
    free(text);
    return count;
}

LRESULT onCreate(HWND hwnd)
{
    window = hwnd;
    following = true;
    return 0;
}

void onWheel(WPARAM wParam, LPARAM)
{
    scrollTo(viewTop - 3 * short(HIWORD(wParam)) / WHEEL_DELTA);
}

void onFocusChanged(WPARAM, LPARAM)
{
    int row = cursorPlace().line - topLine();
    onScreenChanged(row, row + 1);
}

void onButtonUp(WPARAM, LPARAM)
{
    dragging = false;
    ReleaseCapture();
}

LRESULT onTextLength()
{
    return screenRows() * (screenColumns() * 2 + 2);
}

struct Handler {
    UINT message;
    void (*handle)(WPARAM wParam, LPARAM lParam);
};

constexpr Handler HANDLERS[] = {
    {WM_PAINT, onPaint},
    {WM_SIZE, onSize},
    {WM_VSCROLL, onScroll},
    {WM_MOUSEWHEEL, onWheel},
    {WM_KEYDOWN, onKeyDown},
    {WM_CHAR, onChar},
    {WM_LBUTTONDOWN, onButtonDown},
    {WM_MOUSEMOVE, onMouseMove},
    {WM_LBUTTONUP, onButtonUp},
    {WM_LBUTTONDBLCLK, onDoubleClick},
    {WM_SETFOCUS, onFocusChanged},
    {WM_KILLFOCUS, onFocusChanged},
};

LRESULT CALLBACK viewProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CREATE) {
        return onCreate(hwnd);
    }
    if (message == WM_GETTEXT) {
        return onGetText(wParam, lParam);
    }
    if (message == WM_GETTEXTLENGTH) {
        return onTextLength();
    }
    for (const Handler& handler : HANDLERS) {
        if (handler.message == message) {
            handler.handle(wParam, lParam);
            return 0;
        }
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
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

HWND openView(HWND parent, const ViewEvents* events)
{
    constexpr int ROWS = 24;
    constexpr int COLUMNS = 80;
    listener = events;
    viewTop = 0;
    if (!openScreen(ROWS, COLUMNS, &SCREEN_EVENTS)) {
        return nullptr;
    }
    return CreateWindowExA(WS_EX_CLIENTEDGE, CLASS, "", WS_CHILD | WS_VISIBLE | WS_VSCROLL, 0, 0, 0,
                           0, parent, nullptr, nullptr, nullptr);
}

SIZE sizeOfView(int rows, int columns)
{
    RECT rect = {0, 0, columns * charWidth, rows * charHeight};
    AdjustWindowRectEx(&rect, WS_CHILD, FALSE, WS_EX_CLIENTEDGE);
    return {rect.right - rect.left + GetSystemMetrics(SM_CXVSCROLL), rect.bottom - rect.top};
}

bool hasSelection()
{
    return isBefore(selectionBegin, selectionEnd) || isBefore(selectionEnd, selectionBegin);
}

void copySelection()
{
    bool forward = isBefore(selectionBegin, selectionEnd);
    WCHAR* text = screenText(forward ? selectionBegin : selectionEnd,
                             forward ? selectionEnd : selectionBegin);
    if (text != nullptr && hasSelection()) {
        putTextOnClipboard(text);
    }
    free(text);
}

void selectAll()
{
    select({firstLine(), 0}, {topLine() + screenRows(), 0});
}

void paste()
{
    if (listener->locked() || !OpenClipboard(window)) {
        return;
    }
    HANDLE text = GetClipboardData(CF_UNICODETEXT);
    HANDLE ansi = text == nullptr ? GetClipboardData(CF_TEXT) : nullptr;
    beforeTyping();
    if (text != nullptr) {
        pasteText(static_cast<const WCHAR*>(GlobalLock(text)));
        GlobalUnlock(text);
    } else if (ansi != nullptr) {
        pasteAnsi(static_cast<const char*>(GlobalLock(ansi)));
        GlobalUnlock(ansi);
    }
    CloseClipboard();
}
