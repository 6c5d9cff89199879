#include "screen.h"

#include <string.h>

namespace {

constexpr int KEPT_LINES = 2000;

struct KeptLine {
    int cColumns;
    VTermScreenCell* pCells;
};

VTerm* s_pTerm;
VTermScreen* s_pScreen;
const ScreenEvents* s_pEvents;
KeptLine s_aKept[KEPT_LINES]; // a ring
int s_nFirst;                 // number of the oldest line
int s_cKept;
VTermPos s_cursor;
bool s_fCursorShown;

KeptLine* keptLine(int nLine)
{
    return &s_aKept[nLine % KEPT_LINES];
}

void forgetLine(KeptLine* pLine)
{
    free(pLine->pCells);
    *pLine = {};
}

// ---- what libvterm calls

void onOutput(const char* pch, size_t cb, void*)
{
    s_pEvents->pfnPut(reinterpret_cast<const BYTE*>(pch), DWORD(cb));
}

int onDamage(VTermRect rect, void*)
{
    s_pEvents->pfnChanged(rect.start_row, rect.end_row);
    return 1;
}

int onMoveCursor(VTermPos pos, VTermPos old, int, void*)
{
    s_cursor = pos;
    s_pEvents->pfnChanged(old.row, old.row + 1);
    s_pEvents->pfnChanged(pos.row, pos.row + 1);
    return 1;
}

int onProperty(VTermProp nProperty, VTermValue* pValue, void*)
{
    if (nProperty == VTERM_PROP_CURSORVISIBLE) {
        s_fCursorShown = pValue->boolean != 0;
        s_pEvents->pfnChanged(s_cursor.row, s_cursor.row + 1);
    }
    return 1;
}

int onBell(void*)
{
    MessageBeep(0);
    return 1;
}

int onPushLine(int cColumns, const VTermScreenCell* pCells, void*)
{
    if (s_cKept == KEPT_LINES) {
        forgetLine(keptLine(s_nFirst));
        ++s_nFirst;
        --s_cKept;
    }
    KeptLine* pLine = keptLine(s_nFirst + s_cKept);
    size_t cb = size_t(cColumns) * sizeof *pCells;
    pLine->pCells = static_cast<VTermScreenCell*>(malloc(cb));
    pLine->cColumns = pLine->pCells != nullptr ? cColumns : 0;
    if (pLine->pCells != nullptr) {
        memcpy(pLine->pCells, pCells, cb);
    }
    ++s_cKept;
    s_pEvents->pfnMoved();
    return 1;
}

int onPopLine(int cColumns, VTermScreenCell* pCells, void*)
{
    if (s_cKept == 0) {
        return 0;
    }
    KeptLine* pLine = keptLine(s_nFirst + s_cKept - 1);
    for (int n = 0; n < cColumns; ++n) {
        if (n < pLine->cColumns) {
            pCells[n] = pLine->pCells[n];
        } else {
            pCells[n] = {};
            pCells[n].width = 1;
            vterm_state_get_default_colors(vterm_obtain_state(s_pTerm), &pCells[n].fg,
                                           &pCells[n].bg);
        }
    }
    forgetLine(pLine);
    --s_cKept;
    s_pEvents->pfnMoved();
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
    vterm_screen_convert_color_to_rgb(s_pScreen, &color);
    return RGB(color.rgb.red, color.rgb.green, color.rgb.blue);
}

ScreenCell convertCell(const VTermScreenCell* pFrom)
{
    constexpr DWORD BEHIND_WIDE = ~DWORD(0);
    ScreenCell cell = {};
    cell.ch = pFrom->chars[0] == BEHIND_WIDE ? 0 : pFrom->chars[0] == 0 ? ' ' : pFrom->chars[0];
    cell.colText = colorOf(pFrom->attrs.reverse ? pFrom->bg : pFrom->fg);
    cell.colBack = colorOf(pFrom->attrs.reverse ? pFrom->fg : pFrom->bg);
    cell.colText = pFrom->attrs.conceal ? cell.colBack : cell.colText;
    cell.fBold = pFrom->attrs.bold;
    cell.fUnderline = pFrom->attrs.underline != 0;
    cell.fWide = pFrom->width == 2;
    return cell;
}

bool isBlank(DWORD ch)
{
    return ch == ' ' || ch == 0;
}

// Where the text of a line ends.
int endOfLine(int nLine)
{
    int nEnd = screenColumns();
    while (nEnd > 0 && cellAt({nLine, nEnd - 1}).ch == ' ') {
        --nEnd;
    }
    return nEnd;
}

// Returns how many places it took: two for what lies outside of the basic plane.
size_t putChar(WCHAR* pch, DWORD ch)
{
    if (ch < 0x10000) {
        pch[0] = WCHAR(ch);
        return 1;
    }
    pch[0] = WCHAR(0xD800 + ((ch - 0x10000) >> 10));
    pch[1] = WCHAR(0xDC00 + (ch & 0x3FF));
    return 2;
}

} // namespace

bool openScreen(int cRows, int cColumns, const ScreenEvents* pEvents)
{
    VTermColor text, back;
    s_pEvents = pEvents;
    s_pTerm = vterm_new(cRows, cColumns);
    if (s_pTerm == nullptr) {
        return false;
    }
    vterm_set_utf8(s_pTerm, 1);
    vterm_output_set_callback(s_pTerm, onOutput, nullptr);
    s_pScreen = vterm_obtain_screen(s_pTerm);
    vterm_screen_set_callbacks(s_pScreen, &CALLBACKS, nullptr);
    vterm_screen_set_damage_merge(s_pScreen, VTERM_DAMAGE_SCREEN);
    vterm_screen_enable_altscreen(s_pScreen, 1);
    vterm_state_set_bold_highbright(vterm_obtain_state(s_pTerm), 1);
    vterm_color_rgb(&text, 0xD0, 0xD0, 0xD0);
    vterm_color_rgb(&back, 0, 0, 0);
    vterm_screen_set_default_colors(s_pScreen, &text, &back);
    vterm_screen_reset(s_pScreen, 1);
    return true;
}

void closeScreen()
{
    clearKeptLines();
    vterm_free(s_pTerm);
    s_pTerm = nullptr;
}

void writeScreen(const BYTE* pb, DWORD cb)
{
    vterm_input_write(s_pTerm, reinterpret_cast<const char*>(pb), cb);
    vterm_screen_flush_damage(s_pScreen);
}

void sizeScreen(int cRows, int cColumns)
{
    vterm_set_size(s_pTerm, cRows, cColumns);
    vterm_screen_flush_damage(s_pScreen);
}

void clearKeptLines()
{
    for (; s_cKept > 0; --s_cKept, ++s_nFirst) {
        forgetLine(keptLine(s_nFirst));
    }
    s_pEvents->pfnMoved();
}

int screenRows()
{
    int cRows, cColumns;
    vterm_get_size(s_pTerm, &cRows, &cColumns);
    return cRows;
}

int screenColumns()
{
    int cRows, cColumns;
    vterm_get_size(s_pTerm, &cRows, &cColumns);
    return cColumns;
}

int firstLine()
{
    return s_nFirst;
}

int topLine()
{
    return s_nFirst + s_cKept;
}

ScreenCell cellAt(ScreenPlace place)
{
    VTermScreenCell cell = {};
    vterm_state_get_default_colors(vterm_obtain_state(s_pTerm), &cell.fg, &cell.bg);
    if (place.nLine >= topLine()) {
        vterm_screen_get_cell(s_pScreen, {place.nLine - topLine(), place.nColumn}, &cell);
    } else if (place.nLine >= s_nFirst && place.nColumn < keptLine(place.nLine)->cColumns) {
        cell = keptLine(place.nLine)->pCells[place.nColumn];
    }
    return convertCell(&cell);
}

ScreenPlace cursorPlace()
{
    return {topLine() + s_cursor.row, s_cursor.col};
}

bool isCursorShown()
{
    return s_fCursorShown;
}

bool isBefore(ScreenPlace first, ScreenPlace second)
{
    return first.nLine < second.nLine ||
           (first.nLine == second.nLine && first.nColumn < second.nColumn);
}

WCHAR* screenText(ScreenPlace from, ScreenPlace to)
{
    if (from.nLine < s_nFirst) {
        from = {s_nFirst, 0};
    }
    size_t cLines = isBefore(from, to) ? size_t(to.nLine - from.nLine + 1) : 0;
    size_t cch = cLines * (size_t(screenColumns()) * 2 + 2) + 1;
    auto pszText = static_cast<WCHAR*>(malloc(cch * sizeof(WCHAR)));
    WCHAR* pch = pszText;
    for (int nLine = from.nLine; pch != nullptr && cLines > 0 && nLine <= to.nLine; ++nLine) {
        int nEnd = endOfLine(nLine);
        bool fLast = nLine == to.nLine;
        for (int n = nLine == from.nLine ? from.nColumn : 0; n < nEnd; ++n) {
            DWORD ch = cellAt({nLine, n}).ch;
            if (fLast && n >= to.nColumn) {
                break;
            }
            pch += ch != 0 ? putChar(pch, ch) : 0;
        }
        if (!fLast) {
            *pch++ = L'\r';
            *pch++ = L'\n';
        }
    }
    if (pch != nullptr) {
        *pch = L'\0';
    }
    return pszText;
}

ScreenPlace wordEdge(ScreenPlace place, bool fEnd)
{
    bool fBlank = isBlank(cellAt(place).ch);
    int nEdge = place.nColumn;
    int nStep = fEnd ? 1 : -1;
    while (nEdge + nStep >= 0 && nEdge + nStep < screenColumns() &&
           isBlank(cellAt({place.nLine, nEdge + nStep}).ch) == fBlank) {
        nEdge += nStep;
    }
    return {place.nLine, fEnd ? nEdge + 1 : nEdge};
}

void typeKey(VTermKey nKey, VTermModifier nModifier)
{
    vterm_keyboard_key(s_pTerm, nKey, nModifier);
}

void typeChar(DWORD ch)
{
    vterm_keyboard_unichar(s_pTerm, ch, VTERM_MOD_NONE);
}

void pasteText(const WCHAR* pszText)
{
    vterm_keyboard_start_paste(s_pTerm);
    for (; *pszText != L'\0'; ++pszText) {
        if (*pszText == L'\n') {
            continue; // its CR has gone out
        }
        // An escape would end the paste for the program on the host.
        if (*pszText >= L' ' || *pszText == L'\r' || *pszText == L'\t') {
            typeChar(*pszText);
        }
    }
    vterm_keyboard_end_paste(s_pTerm);
}
