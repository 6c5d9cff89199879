// The info line: the log of the window, a multi-line edit control that trims itself.
#include "layout/infoscroll.h"
#include "resources/ids.h"
#include "shared/text.h"
#include "transfer/window/record.h"

#include <string.h>

namespace {

constexpr LONG TRIM_LIMIT = 30000;
constexpr LONG KEPT_LENGTH = 24000;
constexpr int CCH_TEXT = 260;
constexpr char LINE_START[] = "\r\n";
constexpr int CCH_LINE_START = sizeof LINE_START - 1;
constexpr int ENTRY_SIZE = CCH_LINE_START + CCH_TEXT + 1;

LONG query(HWND hwndInfo, UINT uMessage, LONG nValue = 0)
{
    return LONG(SendMessageA(hwndInfo, uMessage, WPARAM(nValue), 0));
}

// The index behind the last character of a line, not counting its line end.
LONG endOfLine(HWND hwndInfo, LONG nLine)
{
    LONG nStart = query(hwndInfo, EM_LINEINDEX, nLine);
    return nStart + query(hwndInfo, EM_LINELENGTH, nStart);
}

// Every entry begins with a line end and has none at its end. Returns its length.
LONG buildEntry(char (&szEntry)[ENTRY_SIZE], const char* pszText)
{
    strcpy(szEntry, LINE_START);
    shared::copyText(szEntry + CCH_LINE_START, pszText, CCH_TEXT + 1);
    LONG cch = LONG(strlen(szEntry));
    while (cch > CCH_LINE_START && (szEntry[cch - 1] == '\r' || szEntry[cch - 1] == '\n')) {
        szEntry[--cch] = '\0';
    }
    return cch;
}

// Replaces the selection, which is reported to the caller's window procedure. Returns whether the
// window still exists.
bool replaceSelection(const window::Ref& ref, HWND hwndInfo, const char* pszText)
{
    SendMessageA(hwndInfo, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(pszText));
    return window::isAlive(ref);
}

// Deletes whole lines from the start of the log, so that it holds at most KEPT_LENGTH characters
// together with the new entry.
bool trim(XferWindowRecord* pRecord, HWND hwndInfo, LONG cLines, LONG cchTotal)
{
    window::Ref ref = window::refOf(pRecord);
    SendMessageA(hwndInfo, WM_SETREDRAW, FALSE, 0);
    LONG nLine = query(hwndInfo, EM_LINEFROMCHAR, cchTotal - KEPT_LENGTH);
    LONG nEnd = endOfLine(hwndInfo, nLine);
    // If the cut falls on a line end, one line more has to go to stay within the limit.
    if (cchTotal - nEnd > KEPT_LENGTH) {
        nEnd = endOfLine(hwndInfo, ++nLine);
    }
    pRecord->cchLogTrimmed += DWORD(nEnd);
    SendMessageA(hwndInfo, EM_SETSEL, 0, nEnd);
    if (!replaceSelection(ref, hwndInfo, "")) {
        return false;
    }
    vXferDandDInfoScrollToEnd(ref.hdlgDandD, int(cLines - nLine + 1));
    SendMessageA(hwndInfo, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(hwndInfo, nullptr, TRUE);
    return window::isAlive(ref);
}

void append(const window::Ref& ref, HWND hwndInfo, const char* pszEntry)
{
    // Clamped to the end of the text, which is never beyond the limit here.
    SendMessageA(hwndInfo, EM_SETSEL, TRIM_LIMIT, TRIM_LIMIT);
    if (!replaceSelection(ref, hwndInfo, pszEntry)) {
        return;
    }
    LONG nLast = query(hwndInfo, EM_LINEINDEX, query(hwndInfo, EM_GETLINECOUNT) - 1);
    SendMessageA(hwndInfo, EM_SETSEL, WPARAM(nLast), nLast);
    // Setting a selection doesn't scroll a multi-line control on every version, and a long entry
    // would leave the log scrolled to its end.
    SendMessageA(hwndInfo, EM_SCROLLCARET, 0, 0);
}

} // namespace

void KRHAULAPI vXferDandDInfoLine(HWND hdlgDandD, const char* pszText)
{
    char szEntry[ENTRY_SIZE];
    XferWindowRecord* pRecord = window::recordOf(hdlgDandD);
    if (pRecord == nullptr) {
        return;
    }
    window::Ref ref = window::refOf(pRecord);
    HWND hwndInfo = GetDlgItem(hdlgDandD, IDC_DANDD_INFOLINE);
    LONG cchEntry = buildEntry(szEntry, pszText);
    LONG cLines = query(hwndInfo, EM_GETLINECOUNT);
    LONG cchTotal = cchEntry + (cLines != 0 ? endOfLine(hwndInfo, cLines - 1) : 0);
    if (cchTotal <= TRIM_LIMIT || trim(pRecord, hwndInfo, cLines, cchTotal)) {
        append(ref, hwndInfo, szEntry);
    }
}

LRESULT CALLBACK lInfoLineProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    const XferWindowRecord* pRecord = window::recordOf(GetParent(hwnd));
    if (pRecord == nullptr || pRecord->pfnOrigInfoLine == nullptr) {
        return DefWindowProcA(hwnd, uMessage, wParam, lParam);
    }
    window::Ref ref = window::refOf(pRecord);
    if (uMessage == WM_KILLFOCUS) {
        // The control can repaint, for which the caller's window procedure is asked for colours.
        SendMessageA(hwnd, EM_SETSEL, WPARAM(-1), 0);
        if (!window::isAlive(ref)) {
            return 0;
        }
    } else if ((uMessage == WM_KEYDOWN || uMessage == WM_KEYUP) && wParam == VK_ESCAPE) {
        return 0;
    }
    return CallWindowProcA(pRecord->pfnOrigInfoLine, hwnd, uMessage, wParam, lParam);
}
