#include "screen.h"

#include <string.h>

namespace {

constexpr int KEPT_LINES = 2000;

struct KeptLine {
    int columns;
    VTermScreenCell* cells;
};

VTerm* term;
VTermScreen* screen;
const ScreenEvents* listener;
KeptLine ring[KEPT_LINES]; // a ring
int oldest;                // number of the oldest line
int keptCount;
VTermPos cursor;
bool cursorShown;

KeptLine* keptLine(int line)
{
    return &ring[line % KEPT_LINES];
}

void forgetLine(KeptLine* kept)
{
    free(kept->cells);
    *kept = {};
}

// ---- what libvterm calls

void onOutput(const char* at, size_t count, void*)
{
    listener->put(reinterpret_cast<const BYTE*>(at), DWORD(count));
}

int onDamage(VTermRect rect, void*)
{
    listener->changed(rect.start_row, rect.end_row);
    return 1;
}

int onMoveCursor(VTermPos pos, VTermPos old, int, void*)
{
    cursor = pos;
    listener->changed(old.row, old.row + 1);
    listener->changed(pos.row, pos.row + 1);
    return 1;
}

int onProperty(VTermProp property, VTermValue* value, void*)
{
    if (property == VTERM_PROP_CURSORVISIBLE) {
        cursorShown = value->boolean != 0;
        listener->changed(cursor.row, cursor.row + 1);
    }
    return 1;
}

int onBell(void*)
{
    MessageBeep(0);
    return 1;
}

int onPushLine(int columns, const VTermScreenCell* cells, void*)
{
    if (keptCount == KEPT_LINES) {
        forgetLine(keptLine(oldest));
        ++oldest;
        --keptCount;
    }
    KeptLine* kept = keptLine(oldest + keptCount);
    size_t count = size_t(columns) * sizeof *cells;
    kept->cells = static_cast<VTermScreenCell*>(malloc(count));
    kept->columns = kept->cells != nullptr ? columns : 0;
    if (kept->cells != nullptr) {
        memcpy(kept->cells, cells, count);
    }
    ++keptCount;
    listener->moved();
    return 1;
}

int onPopLine(int columns, VTermScreenCell* cells, void*)
{
    if (keptCount == 0) {
        return 0;
    }
    KeptLine* kept = keptLine(oldest + keptCount - 1);
    for (int n = 0; n < columns; ++n) {
        if (n < kept->columns) {
            cells[n] = kept->cells[n];
        } else {
            cells[n] = {};
            cells[n].width = 1;
            vterm_state_get_default_colors(vterm_obtain_state(term), &cells[n].fg, &cells[n].bg);
        }
    }
    forgetLine(kept);
    --keptCount;
    listener->moved();
    return 1;
}

int onClearKept(void*)
{
    clearKeptLines();
    return 1;
}

constexpr VTermScreenCallbacks CALLBACKS = {onDamage, nullptr,    onMoveCursor, onProperty, onBell,
                                            nullptr,  onPushLine, onPopLine,    onClearKept};

// ---- cells

COLORREF colorOf(VTermColor color)
{
    vterm_screen_convert_color_to_rgb(screen, &color);
    return RGB(color.rgb.red, color.rgb.green, color.rgb.blue);
}

ScreenCell convertCell(const VTermScreenCell* from)
{
    constexpr DWORD BEHIND_WIDE = ~DWORD(0);
    ScreenCell cell = {};
    cell.ch = from->chars[0] == BEHIND_WIDE ? 0 : from->chars[0] == 0 ? ' ' : from->chars[0];
    cell.textColor = colorOf(from->attrs.reverse ? from->bg : from->fg);
    cell.backColor = colorOf(from->attrs.reverse ? from->fg : from->bg);
    cell.textColor = from->attrs.conceal ? cell.backColor : cell.textColor;
    cell.bold = from->attrs.bold;
    cell.underline = from->attrs.underline != 0;
    cell.wide = from->width == 2;
    return cell;
}

bool isBlank(DWORD ch)
{
    return ch == ' ' || ch == 0;
}

// Where the text of a line ends.
int endOfLine(int line)
{
    int how = screenColumns();
    while (how > 0 && cellAt({line, how - 1}).ch == ' ') {
        --how;
    }
    return how;
}

// Returns how many places it took: two for what lies outside of the basic plane.
size_t putChar(WCHAR* at, DWORD ch)
{
    if (ch < 0x10000) {
        at[0] = WCHAR(ch);
        return 1;
    }
    at[0] = WCHAR(0xD800 + ((ch - 0x10000) >> 10));
    at[1] = WCHAR(0xDC00 + (ch & 0x3FF));
    return 2;
}

} // namespace

bool openScreen(int rows, int columns, const ScreenEvents* events)
{
    VTermColor text, back;
    listener = events;
    oldest = 0;
    term = vterm_new(rows, columns);
    if (term == nullptr) {
        return false;
    }
    vterm_set_utf8(term, 1);
    vterm_output_set_callback(term, onOutput, nullptr);
    screen = vterm_obtain_screen(term);
    vterm_screen_set_callbacks(screen, &CALLBACKS, nullptr);
    vterm_screen_set_damage_merge(screen, VTERM_DAMAGE_SCREEN);
    vterm_screen_enable_altscreen(screen, 1);
    vterm_state_set_bold_highbright(vterm_obtain_state(term), 1);
    vterm_color_rgb(&text, 0xD0, 0xD0, 0xD0);
    vterm_color_rgb(&back, 0, 0, 0);
    vterm_screen_set_default_colors(screen, &text, &back);
    vterm_screen_reset(screen, 1);
    return true;
}

void closeScreen()
{
    clearKeptLines();
    vterm_free(term);
    term = nullptr;
}

void writeScreen(const BYTE* bytes, DWORD count)
{
    vterm_input_write(term, reinterpret_cast<const char*>(bytes), count);
    vterm_screen_flush_damage(screen);
}

void sizeScreen(int rows, int columns)
{
    vterm_set_size(term, rows, columns);
    vterm_screen_flush_damage(screen);
}

void clearKeptLines()
{
    for (; keptCount > 0; --keptCount, ++oldest) {
        forgetLine(keptLine(oldest));
    }
    listener->moved();
}

int screenRows()
{
    int rows, columns;
    vterm_get_size(term, &rows, &columns);
    return rows;
}

int screenColumns()
{
    int rows, columns;
    vterm_get_size(term, &rows, &columns);
    return columns;
}

int firstLine()
{
    return oldest;
}

int topLine()
{
    return oldest + keptCount;
}

ScreenCell cellAt(ScreenPlace place)
{
    VTermScreenCell cell = {};
    vterm_state_get_default_colors(vterm_obtain_state(term), &cell.fg, &cell.bg);
    if (place.line >= topLine()) {
        vterm_screen_get_cell(screen, {place.line - topLine(), place.column}, &cell);
    } else if (place.line >= oldest && place.column < keptLine(place.line)->columns) {
        cell = keptLine(place.line)->cells[place.column];
    }
    return convertCell(&cell);
}

ScreenPlace cursorPlace()
{
    return {topLine() + cursor.row, cursor.col};
}

bool isCursorShown()
{
    return cursorShown;
}

bool isBefore(ScreenPlace first, ScreenPlace second)
{
    return first.line < second.line || (first.line == second.line && first.column < second.column);
}

WCHAR* screenText(ScreenPlace from, ScreenPlace to)
{
    if (from.line < oldest) {
        from = {oldest, 0};
    }
    size_t lines = isBefore(from, to) ? size_t(to.line - from.line + 1) : 0;
    size_t count = lines * (size_t(screenColumns()) * 2 + 2) + 1;
    auto text = static_cast<WCHAR*>(malloc(count * sizeof(WCHAR)));
    WCHAR* at = text;
    for (int line = from.line; at != nullptr && lines > 0 && line <= to.line; ++line) {
        int how = endOfLine(line);
        bool last = line == to.line;
        for (int n = line == from.line ? from.column : 0; n < how; ++n) {
            DWORD ch = cellAt({line, n}).ch;
            if (last && n >= to.column) {
                break;
            }
            at += ch != 0 ? putChar(at, ch) : 0;
        }
        if (!last) {
            *at++ = L'\r';
            *at++ = L'\n';
        }
    }
    if (at != nullptr) {
        *at = L'\0';
    }
    return text;
}

ScreenPlace wordEdge(ScreenPlace place, bool toEnd)
{
    bool blank = isBlank(cellAt(place).ch);
    int edge = place.column;
    int step = toEnd ? 1 : -1;
    while (edge + step >= 0 && edge + step < screenColumns() &&
           isBlank(cellAt({place.line, edge + step}).ch) == blank) {
        edge += step;
    }
    return {place.line, toEnd ? edge + 1 : edge};
}

void typeKey(VTermKey key, VTermModifier modifier)
{
    vterm_keyboard_key(term, key, modifier);
}

void typeChar(DWORD ch)
{
    vterm_keyboard_unichar(term, ch, VTERM_MOD_NONE);
}

void pasteText(const WCHAR* text)
{
    vterm_keyboard_start_paste(term);
    for (; *text != L'\0'; ++text) {
        if (*text == L'\n') {
            continue; // its CR has gone out
        }
        // An escape would end the paste for the program on the host.
        if (*text >= L' ' || *text == L'\r' || *text == L'\t') {
            typeChar(*text);
        }
    }
    vterm_keyboard_end_paste(term);
}
