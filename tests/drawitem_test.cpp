// Rows of the owner-drawn lists, drawn into a bitmap and compared with the picture that they
// should give, to the pixel.
#include "../resources/ids.h"
#include "../transfer/window/record.h"
#include "support/ledger.h"
#include "support/pane_window.h"

namespace {

constexpr int WIDTH = 260;
constexpr int HEIGHT = 56;
constexpr RECT ROW = {20, 8, 220, 24};
constexpr COLORREF UNTOUCHED = RGB(255, 0, 255);

void fill(HDC hdc, const RECT& rc, COLORREF clr)
{
    HBRUSH hbr = CreateSolidBrush(clr);
    FillRect(hdc, &rc, hbr);
    DeleteObject(hbr);
}

// What a function draws.
std::vector<DWORD> pixelsOf(const std::function<void(HDC)>& draw)
{
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), WIDTH, HEIGHT, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pBits;
    HDC hdc = CreateCompatibleDC(nullptr);
    HBITMAP hbm = CreateDIBSection(hdc, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
    HGDIOBJ hbmOld = SelectObject(hdc, hbm);
    fill(hdc, {0, 0, WIDTH, HEIGHT}, UNTOUCHED);
    draw(hdc);
    GdiFlush();
    auto p = static_cast<const DWORD*>(pBits);
    std::vector<DWORD> pixels(p, p + WIDTH * HEIGHT);
    SelectObject(hdc, hbmOld);
    DeleteObject(hbm);
    DeleteDC(hdc);
    return pixels;
}

// What a row should look like.
enum Look { NOTHING, PLAIN, HIGHLIGHT, BLACK };
struct Picture {
    Look look;
    const char* pszIcon; // null for a row without text
    int nIndent;
    std::string text;
    bool fFocusRect;
};

void drawExpected(HDC hdc, const Picture& picture)
{
    auto color = [&](int nPlain, int nHighlight) {
        return picture.look == BLACK ? 0 : GetSysColor(picture.look == PLAIN ? nPlain : nHighlight);
    };
    if (picture.look != NOTHING) {
        fill(hdc, ROW, color(COLOR_WINDOW, COLOR_HIGHLIGHT));
    }
    if (picture.pszIcon != nullptr && picture.look != NOTHING) {
        int x = ROW.left + 4 * picture.nIndent;
        RECT rc = {x + 24, ROW.top, ROW.right, ROW.bottom};
        DrawIcon(hdc, x, ROW.top, LoadIconA(library(), picture.pszIcon));
        SetBkColor(hdc, color(COLOR_WINDOW, COLOR_HIGHLIGHT));
        SetTextColor(hdc, color(COLOR_WINDOWTEXT, COLOR_HIGHLIGHTTEXT));
        DrawTextA(hdc, picture.text.c_str(), -1, &rc, DT_SINGLELINE | DT_NOPREFIX);
    }
    if (picture.fFocusRect) {
        SetTextColor(hdc, 0);
        SetBkColor(hdc, RGB(255, 255, 255));
        DrawFocusRect(hdc, &ROW);
    }
}

class DrawItem : public PaneWindow {
protected:
    DrawItem()
    {
        m_dir.makeDirs({"child"});
        open();
        feedHost({});
    }

    // Also looks that nothing is left behind, and that the device context is given back as it
    // was, but for its text colour.
    void expectDrawn(int idControl, LONG nRow, UINT uAction, UINT uState,
                     const Picture& picture) const
    {
        auto draw = [=](HDC hdc) {
            UINT uType = idControl == IDC_DANDD_LOCALDRIVES ? ODT_COMBOBOX : ODT_LISTBOX;
            DRAWITEMSTRUCT item = {
                uType,      UINT(idControl),
                UINT(nRow), uAction,
                uState,     m_parent.hwnd(), // no list: the row is one of the window's own
                hdc,        ROW,
                0};
            const size_t cBefore = Ledger::count();
            HGDIOBJ hbrBefore = GetCurrentObject(hdc, OBJ_BRUSH);
            COLORREF clrBefore = GetBkColor(hdc);
            SendMessageA(m_hwnd, WM_DRAWITEM, WPARAM(idControl), LPARAM(&item));
            EXPECT_EQ(Ledger::count(), cBefore);
            EXPECT_EQ(GetCurrentObject(hdc, OBJ_BRUSH), hbrBefore);
            EXPECT_EQ(GetBkColor(hdc), clrBefore);
        };
        EXPECT_TRUE(pixelsOf(draw) == pixelsOf([&](HDC hdc) { drawExpected(hdc, picture); }))
            << picture.text;
    }

private:
    Ledger m_ledger;
};

struct State {
    UINT uAction, uState;
    Look look;
    bool fFocusRect;
};
constexpr UINT SELECTED_FOCUS = ODS_SELECTED | ODS_FOCUS;
const State STATES[] = {
    {0, SELECTED_FOCUS, NOTHING, false},
    {ODA_DRAWENTIRE, 0, PLAIN, false},
    {ODA_DRAWENTIRE, ODS_SELECTED, HIGHLIGHT, false},
    {ODA_DRAWENTIRE, ODS_FOCUS, PLAIN, true},
    {ODA_DRAWENTIRE, SELECTED_FOCUS, HIGHLIGHT, true},
    {ODA_DRAWENTIRE, ODS_GRAYED | ODS_DISABLED, PLAIN, false},
    {ODA_SELECT, ODS_FOCUS, PLAIN, false},
    {ODA_SELECT, SELECTED_FOCUS, HIGHLIGHT, false},
    // A selected row loses its highlight with the focus of its list.
    {ODA_FOCUS, 0, PLAIN, false},
    {ODA_FOCUS, ODS_SELECTED, PLAIN, false},
    {ODA_FOCUS, ODS_FOCUS, NOTHING, true},
    {ODA_FOCUS, SELECTED_FOCUS, HIGHLIGHT, false},
    {ODA_FOCUS | ODA_SELECT, ODS_FOCUS, NOTHING, true},
    {ODA_FOCUS | ODA_SELECT, ODS_SELECTED, HIGHLIGHT, false},
    {ODA_FOCUS | ODA_DRAWENTIRE, 0, PLAIN, false},
    {ODA_FOCUS | ODA_DRAWENTIRE, SELECTED_FOCUS, HIGHLIGHT, true},
    {8, ODS_SELECTED, BLACK, false},
};

TEST_F(DrawItem, ActionAndStateGiveColoursAndFocus)
{
    for (const State& state : STATES) {
        SCOPED_TRACE(testing::Message() << state.uAction << ", " << state.uState);
        expectDrawn(IDC_DANDD_HOSTDIRS, 2, state.uAction, state.uState,
                    {state.look, "ClosedFolder", 2, "one", state.fFocusRect});
    }
}

TEST_F(DrawItem, EachRowHasItsPictureAtItsLevel)
{
    const auto nDeepest = int(split(m_dir.path(), '\\').size());
    const struct {
        int idControl;
        LONG nRow;
        const char* pszIcon;
        int nIndent;
    } all[] = {
        {IDC_DANDD_LOCALDIRS, 0, "OpenFolder", 0},
        {IDC_DANDD_LOCALDIRS, 1, "OpenFolder", 1},
        {IDC_DANDD_LOCALDIRS, nDeepest - 1, "SelectedFolder", nDeepest - 1},
        {IDC_DANDD_LOCALDIRS, nDeepest, "ClosedFolder", nDeepest},
        {IDC_DANDD_HOSTDIRS, 0, "OpenFolder", 0},
        {IDC_DANDD_HOSTDIRS, 1, "SelectedFolder", 1},
        {IDC_DANDD_HOSTDIRS, 3, "ClosedFolder", 2},
        {IDC_DANDD_LOCALDRIVES, LONG(tell(IDC_DANDD_LOCALDRIVES, CB_GETCURSEL)), "FixedDrive", 0},
    };
    for (const auto& row : all) {
        std::string name = rows(row.idControl)[size_t(row.nRow)];
        expectDrawn(row.idControl, row.nRow, ODA_DRAWENTIRE, 0,
                    {PLAIN, row.pszIcon, row.nIndent, name, false});
    }
}

TEST_F(DrawItem, NamesAreShownAsTheyAre)
{
    for (const std::string& name :
         Strings{"a&b && c", "%s\ttab", "", std::string(259, 'w'), std::string(259, 'W')}) {
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_SUBDIRS);
        nXferDandDAddHostSubDir(m_hwnd, name.c_str());
        expectDrawn(IDC_DANDD_HOSTDIRS, 2, ODA_DRAWENTIRE, ODS_SELECTED,
                    {HIGHLIGHT, "ClosedFolder", 2, name, false});
    }
}

TEST_F(DrawItem, AListWithoutACurrentRow)
{
    for (int id : {IDC_DANDD_LOCALDIRS, IDC_DANDD_HOSTDIRS}) {
        expectDrawn(id, -1, ODA_DRAWENTIRE, 0, {NOTHING, nullptr, 0, "", true});
        expectDrawn(id, 99, ODA_DRAWENTIRE, 0, {PLAIN, nullptr, 0, "", false});
    }
    expectDrawn(IDC_DANDD_HOSTFILES, -1, ODA_DRAWENTIRE, 0, {NOTHING, nullptr, 0, "", false});
    // The closed drive list shows the present drive, if that has a row.
    tell(IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, WPARAM(-1));
    std::string drive = rows(IDC_DANDD_LOCALDRIVES)[size_t(
        tell(IDC_DANDD_LOCALDRIVES, CB_FINDSTRING, WPARAM(-1), LPARAM("c:")))];
    expectDrawn(IDC_DANDD_LOCALDRIVES, -1, ODA_DRAWENTIRE, ODS_FOCUS,
                {PLAIN, "FixedDrive", 0, drive, true});
    record()->nLocalDrive = 2;
    expectDrawn(IDC_DANDD_LOCALDRIVES, -1, ODA_DRAWENTIRE, 0, {PLAIN, nullptr, 0, "", false});
}

} // namespace
