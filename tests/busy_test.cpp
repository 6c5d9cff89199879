// The busy state and the file type: the buttons and menu items that follow them, the cursor and
// the focus.
#include "../resources/ids.h"
#include "../toolbar/toolbar.h"
#include "support/looks.h"

namespace {

class Busy : public PaneWindow {
protected:
    // Types show in three places, which have to agree.
    void expectType(int nType, UINT idButton, UINT idItem) const
    {
        EXPECT_EQ(nXferDandDGetFileTypeSelection(m_hwnd), nType);
        for (UINT id : {IDM_XFER_TYPETEXT, IDM_XFER_TYPEBINARY, IDM_XFER_TYPEAUTO}) {
            EXPECT_EQ(buttonState(m_hwnd, id) & TOOLSTATE_CHECKED, id == idButton ? 1 : 0) << id;
            EXPECT_EQ((itemState(m_hwnd, id) & MF_CHECKED) != 0, id == idItem) << id;
        }
    }
};

enum State { BUSY, IDLE_PANES, IDLE_COMMANDLINE, STATES };
constexpr UINT NO_ITEM = UINT(-1);
constexpr LRESULT NO_BUTTON = -1;

struct Row {
    UINT idCommand;
    bool fButton, fItem;
    const char* pszOn; // '+' or '-' for each state; null where the state changes nothing
};

const Row ROWS[] = {
    {IDM_XFER_TRANSFER, true, true, "-++"},      {IDM_XFER_RENAME, true, true, "-++"},
    {IDM_XFER_DELETE, true, true, "-++"},        {IDM_XFER_MAKEDIR, true, true, "-++"},
    {IDM_XFER_REMOVEDIR, true, true, "-++"},     {IDM_XFER_VIEW, true, true, "-++"},
    {IDM_XFER_CHANGEDIR, false, true, "-++"},    {IDM_XFER_TYPEAUTO, true, true, "-++"},
    {IDM_XFER_TYPETEXT, true, true, "-++"},      {IDM_XFER_TYPEBINARY, true, true, "-++"},
    {IDM_XFER_COMMANDLINE, true, true, "-++"},   {IDM_XFER_TWOPANE, true, true, "-++"},
    {IDM_XFER_REFRESH, true, true, "-+-"},       {IDM_XFER_DETAILS, true, true, "-+-"},
    {IDM_XFER_STOP, true, true, "+--"},          {IDM_XFER_HELP, true, true, nullptr},
    {IDM_XFER_CONFIRM, false, true, nullptr},    {IDM_XFER_COPY, false, true, nullptr},
    {IDM_XFER_SELECTALL, false, true, nullptr},  {IDM_XFER_SAVESELECTION, false, true, nullptr},
    {IDM_XFER_HELPSEARCH, false, true, nullptr},
};

TEST_F(Busy, SwitchesCommandsByItsTable)
{
    // Each state is entered from each other one, and the first from the window's creation.
    const State path[] = {BUSY, IDLE_PANES,       BUSY,       IDLE_COMMANDLINE,
                          BUSY, IDLE_COMMANDLINE, IDLE_PANES, IDLE_COMMANDLINE};
    create();
    std::vector<UINT> untouched;
    for (const Row& row : ROWS) {
        untouched.push_back(itemState(m_hwnd, row.idCommand));
    }
    for (State state : path) {
        if (state != BUSY) {
            setMode(state == IDLE_COMMANDLINE);
        }
        vXferDandDSetBusyState(m_hwnd, state == BUSY);
        for (const Row& row : ROWS) {
            SCOPED_TRACE(testing::Message() << "command " << row.idCommand << " state " << state);
            LRESULT nButton = buttonState(m_hwnd, row.idCommand);
            UINT uItem = itemState(m_hwnd, row.idCommand);
            ASSERT_EQ(nButton != NO_BUTTON, row.fButton);
            ASSERT_EQ(uItem != NO_ITEM, row.fItem);
            if (row.pszOn == nullptr) {
                EXPECT_EQ(uItem, untouched[size_t(&row - ROWS)]);
                EXPECT_TRUE(!row.fButton || nButton == TOOLSTATE_ENABLED);
                continue;
            }
            bool fOn = row.pszOn[state] == '+';
            EXPECT_TRUE(!row.fButton || ((nButton & TOOLSTATE_ENABLED) != 0) == fOn);
            EXPECT_EQ((uItem & MF_GRAYED) == 0, fOn);
        }
        EXPECT_TRUE(IsWindowEnabled(item(IDC_DANDD_INFOLINE)));
    }
}

TEST_F(Busy, ItsEndShowsTypeAndModeChecked)
{
    for (UINT idMode : {IDM_XFER_TWOPANE, IDM_XFER_COMMANDLINE}) {
        create(idMode == IDM_XFER_COMMANDLINE);
        vXferDandDSetBusyState(m_hwnd, 0);
        for (UINT id : {IDM_XFER_TYPEAUTO, IDM_XFER_TYPETEXT, IDM_XFER_TYPEBINARY, IDM_XFER_TWOPANE,
                        IDM_XFER_COMMANDLINE}) {
            bool fChecked = id == IDM_XFER_TYPEAUTO || id == idMode;
            EXPECT_EQ(buttonState(m_hwnd, id),
                      TOOLSTATE_ENABLED | (fChecked ? TOOLSTATE_CHECKED : 0));
            EXPECT_EQ(itemState(m_hwnd, id), fChecked ? UINT(MF_CHECKED) : 0u);
        }
        vXferDandDSetBusyState(m_hwnd, 1);
        EXPECT_EQ(buttonState(m_hwnd, IDM_XFER_TYPEAUTO), TOOLSTATE_CHECKED);
        EXPECT_EQ(buttonState(m_hwnd, idMode), TOOLSTATE_CHECKED);
        close();
    }
}

TEST_F(Busy, FileTypeIsTheCheckedButton)
{
    struct Type {
        DWORD nType;
        UINT idCommand;
    };
    const Type types[] = {{XFERTYPE_BINARY, IDM_XFER_TYPEBINARY},
                          {XFERTYPE_TEXT, IDM_XFER_TYPETEXT},
                          {XFERTYPE_AUTOMATIC, IDM_XFER_TYPEAUTO}};
    create();
    expectType(XFERTYPE_AUTOMATIC, IDM_XFER_TYPEAUTO, IDM_XFER_TYPEAUTO);
    for (bool fBusy : {true, false}) {
        vXferDandDSetBusyState(m_hwnd, fBusy);
        for (const Type& type : types) {
            SCOPED_TRACE(testing::Message() << fBusy << " " << type.nType);
            vXferDandDSetFileTypeSelection(m_hwnd, type.nType);
            expectType(int(type.nType), type.idCommand, type.idCommand);
            // What isn't a type unchecks the menu alone.
            for (DWORD nOther : {0u, 4u, 7u, 0xFFFFFFFFu, 0x10001u}) {
                vXferDandDSetFileTypeSelection(m_hwnd, nOther);
                expectType(int(type.nType), type.idCommand, 0);
            }
            vXferDandDSetBusyState(m_hwnd, !fBusy);
            vXferDandDSetBusyState(m_hwnd, fBusy);
            expectType(int(type.nType), type.idCommand, 0);
        }
        for (const Type& type : types) {
            command(type.idCommand);
            expectType(int(type.nType), type.idCommand, type.idCommand);
        }
    }
    SendMessageA(item(IDC_DANDD_TOOLBAR), TOOLM_CHECKBUTTON, IDM_XFER_TYPEAUTO, 0);
    expectType(XFERTYPE_AUTOMATIC, 0, IDM_XFER_TYPEAUTO);
}

TEST_F(Busy, CursorAndFocusFollowAtOnce)
{
    const struct {
        DWORD nMode, fBusy;
        bool fFocus, fChange;
    } cases[] = {
        {0, 1, false, false}, {0, 0, false, true}, {0, 1, false, true},
        {1, 1, false, false}, {1, 0, true, true},  {1, 0, false, false},
        {1, 2, false, true},  {1, 1, false, true}, {1, 0, true, true},
    };
    HCURSOR hcurCross = LoadCursorA(nullptr, IDC_CROSS);
    create();
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        setMode(c.nMode);
        SetFocus(item(IDC_DANDD_INFOLINE));
        SetCursor(hcurCross);
        vXferDandDSetBusyState(m_hwnd, c.fBusy);
        EXPECT_EQ(GetFocus(), item(c.fFocus ? IDC_DANDD_COMMANDLINE : IDC_DANDD_INFOLINE));
        HCURSOR hcur = LoadCursorA(nullptr, MAKEINTRESOURCEA(c.fBusy ? 32650 : 32512));
        EXPECT_EQ(GetCursor(), c.fChange ? hcur : hcurCross);
    }
}

} // namespace
