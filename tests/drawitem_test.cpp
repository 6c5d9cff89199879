// Rows of the owner-drawn lists, drawn into a bitmap and compared with the picture that they
// should give, to the pixel.
#include "../resources/ids.h"
#include "../transfer/record.h"
#include "support/imports.h"
#include "support/pane_window.h"

namespace {

constexpr int WIDTH = 260;
constexpr int HEIGHT = 56;
constexpr RECT ROW = {20, 8, 220, 24};
constexpr COLORREF UNTOUCHED = RGB(255, 0, 255);

class Canvas {
public:
    Canvas()
    {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), WIDTH, HEIGHT, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        m_hdc = CreateCompatibleDC(nullptr);
        m_hbm = CreateDIBSection(m_hdc, &info, DIB_RGB_COLORS, &m_pBits, nullptr, 0);
        m_hbmOld = SelectObject(m_hdc, m_hbm);
        fill({0, 0, WIDTH, HEIGHT}, UNTOUCHED);
    }
    ~Canvas()
    {
        SelectObject(m_hdc, m_hbmOld);
        DeleteObject(m_hbm);
        DeleteDC(m_hdc);
    }
    HDC hdc() const
    {
        return m_hdc;
    }
    void fill(const RECT& rc, COLORREF clr) const
    {
        HBRUSH hbr = CreateSolidBrush(clr);
        FillRect(m_hdc, &rc, hbr);
        DeleteObject(hbr);
    }
    std::vector<DWORD> pixels() const
    {
        GdiFlush();
        auto p = static_cast<const DWORD*>(m_pBits);
        return std::vector<DWORD>(p, p + WIDTH * HEIGHT);
    }

private:
    HDC m_hdc;
    HBITMAP m_hbm;
    HGDIOBJ m_hbmOld;
    void* m_pBits;
};

// What a row should look like.
enum Look { NOTHING, PLAIN, HIGHLIGHT, BLACK };
struct Picture {
    Look look;
    const char* pszIcon; // null for a row without text
    int nIndent;
    std::string text;
    bool fFocusRect;
};

std::vector<DWORD> expected(const Picture& picture)
{
    Canvas canvas;
    HDC hdc = canvas.hdc();
    if (picture.look != NOTHING) {
        bool fPlain = picture.look == PLAIN;
        auto color = [&](int nPlain, int nHighlight) {
            return picture.look == BLACK ? 0 : GetSysColor(fPlain ? nPlain : nHighlight);
        };
        canvas.fill(ROW, color(COLOR_WINDOW, COLOR_HIGHLIGHT));
        if (picture.pszIcon != nullptr) {
            int x = ROW.left + 4 * picture.nIndent;
            RECT rc = {x + 24, ROW.top, ROW.right, ROW.bottom};
            DrawIcon(hdc, x, ROW.top, LoadIconA(library(), picture.pszIcon));
            SetBkColor(hdc, color(COLOR_WINDOW, COLOR_HIGHLIGHT));
            SetTextColor(hdc, color(COLOR_WINDOWTEXT, COLOR_HIGHLIGHTTEXT));
            DrawTextA(hdc, picture.text.c_str(), -1, &rc, DT_SINGLELINE | DT_NOPREFIX);
        }
    }
    if (picture.fFocusRect) {
        SetTextColor(hdc, 0);
        SetBkColor(hdc, RGB(255, 255, 255));
        DrawFocusRect(hdc, &ROW);
    }
    return canvas.pixels();
}

int s_cBrushes;

HBRUSH WINAPI countingCreateBrush(COLORREF clr)
{
    ++s_cBrushes;
    return CreateSolidBrush(clr);
}

BOOL WINAPI countingDelete(HGDIOBJ hObject)
{
    s_cBrushes -= GetObjectType(hObject) == OBJ_BRUSH;
    return DeleteObject(hObject);
}

class DrawItem : public PaneWindow {
protected:
    DrawItem()
    {
        m_dir.makeDirs({"child"});
        open();
        feedHost({});
    }

    // Also looks that the device context is given back as it was, but for its text colour.
    std::vector<DWORD> drawn(int idControl, LONG nRow, UINT uAction, UINT uState) const
    {
        Canvas canvas;
        HDC hdc = canvas.hdc();
        UINT uType = idControl == IDC_DANDD_LOCALDRIVES ? ODT_COMBOBOX : ODT_LISTBOX;
        DRAWITEMSTRUCT draw = {
            uType, UINT(idControl), UINT(nRow), uAction, uState, item(idControl), hdc, ROW, 0};
        HGDIOBJ hbrBefore = GetCurrentObject(hdc, OBJ_BRUSH);
        COLORREF clrBefore = GetBkColor(hdc);
        s_cBrushes = 0;
        SendMessageA(m_hwnd, WM_DRAWITEM, WPARAM(idControl), LPARAM(&draw));
        EXPECT_EQ(s_cBrushes, 0);
        EXPECT_EQ(GetCurrentObject(hdc, OBJ_BRUSH), hbrBefore);
        EXPECT_EQ(GetBkColor(hdc), clrBefore);
        return canvas.pixels();
    }

private:
    ReplacedImport m_create{library(), "CreateSolidBrush", countingCreateBrush};
    ReplacedImport m_delete{library(), "DeleteObject", countingDelete};
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
        EXPECT_TRUE(drawn(IDC_DANDD_HOSTDIRS, 2, state.uAction, state.uState) ==
                    expected({state.look, "ClosedFolder", 2, "one", state.fFocusRect}));
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
        EXPECT_TRUE(drawn(row.idControl, row.nRow, ODA_DRAWENTIRE, 0) ==
                    expected({PLAIN, row.pszIcon, row.nIndent, name, false}))
            << name;
    }
}

TEST_F(DrawItem, NamesAreShownAsTheyAre)
{
    for (const std::string& name :
         Strings{"a&b && c", "%s\ttab", "", std::string(259, 'w'), std::string(259, 'W')}) {
        nXferDandDClearHostFileInfo(m_hwnd, XFERCLEAR_SUBDIRS);
        nXferDandDAddHostSubDir(m_hwnd, name.c_str());
        EXPECT_TRUE(drawn(IDC_DANDD_HOSTDIRS, 2, ODA_DRAWENTIRE, ODS_SELECTED) ==
                    expected({HIGHLIGHT, "ClosedFolder", 2, name, false}))
            << name;
    }
}

TEST_F(DrawItem, AListWithoutACurrentRow)
{
    for (int id : {IDC_DANDD_LOCALDIRS, IDC_DANDD_HOSTDIRS}) {
        EXPECT_TRUE(drawn(id, -1, ODA_DRAWENTIRE, 0) == expected({NOTHING, nullptr, 0, "", true}));
        EXPECT_TRUE(drawn(id, 99, ODA_DRAWENTIRE, 0) == expected({PLAIN, nullptr, 0, "", false}));
    }
    EXPECT_TRUE(drawn(IDC_DANDD_HOSTFILES, -1, ODA_DRAWENTIRE, 0) ==
                expected({NOTHING, nullptr, 0, "", false}));
    // The closed drive list shows the present drive, if that has a row.
    tell(IDC_DANDD_LOCALDRIVES, CB_SETCURSEL, WPARAM(-1));
    std::string drive = rows(IDC_DANDD_LOCALDRIVES)[size_t(
        tell(IDC_DANDD_LOCALDRIVES, CB_FINDSTRING, WPARAM(-1), LPARAM("c:")))];
    EXPECT_TRUE(drawn(IDC_DANDD_LOCALDRIVES, -1, ODA_DRAWENTIRE, ODS_FOCUS) ==
                expected({PLAIN, "FixedDrive", 0, drive, true}));
    record()->nLocalDrive = 2;
    EXPECT_TRUE(drawn(IDC_DANDD_LOCALDRIVES, -1, ODA_DRAWENTIRE, 0) ==
                expected({PLAIN, nullptr, 0, "", false}));
}

} // namespace
