#include "transfer_window.h"

#include "../../resources/ids.h"
#include "../../toolbar/toolbar.h"

#include <string.h>

namespace {

void KRHAULAPI viewModeChanged(DWORD dwCallerData, DWORD dw1, DWORD dw2, DWORD nViewMode)
{
    auto pCaller = reinterpret_cast<Caller*>(dwCallerData);
    EXPECT_EQ(dw1, 0u);
    EXPECT_EQ(dw2, 0u);
    pCaller->modes.push_back(nViewMode);
    if (pCaller->whenModeChanges) {
        pCaller->whenModeChanges();
    }
}

std::vector<DrawnTexts::Text> s_texts;
BOOL WINAPI keepingExtTextOut(HDC hdc, int x, int y, UINT uOptions, const RECT* prc, LPCSTR pch,
                              UINT cch, const INT* pDx)
{
    // The toolbar draws with it as well, but never clipped.
    if (uOptions == ETO_CLIPPED) {
        s_texts.push_back({std::string(pch, cch), x, y, *prc});
    }
    return ExtTextOutA(hdc, x, y, uOptions, prc, pch, cch, pDx);
}

} // namespace

HMODULE krhaul()
{
    return GetModuleHandleA("KRHAUL.DLL");
}

Caller::Caller() : callbacks()
{
    callbacks.cbSize = sizeof callbacks;
    callbacks.pfnViewModeChanged = viewModeChanged;
}

TransferTest::TransferTest() : m_hEnglish(LoadLibraryA("XFREN.DLL"))
{
    char szPath[MAX_PATH];
    GetCurrentDirectoryA(sizeof szPath, szPath);
    m_oldDirectory = szPath;
    GetTempPathA(sizeof szPath, szPath);
    m_directory = szPath + std::string("krhaul") + std::to_string(GetCurrentProcessId());
    CreateDirectoryA(m_directory.c_str(), nullptr);
    SetCurrentDirectoryA(m_directory.c_str());
}

TransferTest::~TransferTest()
{
    destroy();
    SetCurrentDirectoryA(m_oldDirectory.c_str());
    RemoveDirectoryA(m_directory.c_str());
    FreeLibrary(m_hEnglish);
}

HWND TransferTest::createOnly(HWND hwndParent, DWORD nViewMode)
{
    return hdlgXferDandDCreate2("Title", hwndParent, nullptr, m_caller.data(), &m_caller.callbacks,
                                nViewMode);
}

void TransferTest::create(DWORD nViewMode)
{
    m_caller.modes.clear();
    m_hwnd = createOnly(m_parent.hwnd(), nViewMode);
    ASSERT_NE(m_hwnd, nullptr);
    ASSERT_TRUE(waitUntil([&] { return !m_caller.modes.empty(); }));
    pumpMessages();
}

void TransferTest::destroy()
{
    EXPECT_EQ(nXferDandDDestroy(m_hwnd), 0);
    EXPECT_FALSE(IsWindow(m_hwnd));
    m_hwnd = nullptr;
}

HWND TransferTest::item(int idControl) const
{
    return GetDlgItem(m_hwnd, idControl);
}

void TransferTest::command(UINT idCommand) const
{
    SendMessageA(m_hwnd, WM_COMMAND, idCommand, 0);
}

void TransferTest::setMode(DWORD nViewMode) const
{
    command(nViewMode != 0 ? IDM_XFER_COMMANDLINE : IDM_XFER_TWOPANE);
}

void TransferTest::setClientSize(LONG cx, LONG cy) const
{
    // Twice, as in a narrow window the menu breaks into two lines.
    for (int n = 0; n < 2; ++n) {
        RECT rcWindow;
        RECT rcClient;
        GetWindowRect(m_hwnd, &rcWindow);
        GetClientRect(m_hwnd, &rcClient);
        SetWindowPos(m_hwnd, nullptr, 0, 0, rcWindow.right - rcWindow.left - rcClient.right + cx,
                     rcWindow.bottom - rcWindow.top - rcClient.bottom + cy,
                     SWP_NOMOVE | SWP_NOZORDER);
    }
}

INT_PTR TransferTest::ask(UINT uMessage, WPARAM wParam, LPARAM lParam) const
{
    return CallWindowProcA(reinterpret_cast<WNDPROC>(GetWindowLongA(m_hwnd, DWL_DLGPROC)), m_hwnd,
                           uMessage, wParam, lParam);
}

DrawnTexts::DrawnTexts() : m_extTextOut(krhaul(), "ExtTextOutA", keepingExtTextOut)
{
}

std::vector<DrawnTexts::Text> DrawnTexts::of(HWND hwnd)
{
    s_texts.clear();
    InvalidateRect(hwnd, nullptr, FALSE);
    UpdateWindow(hwnd);
    return std::exchange(s_texts, {});
}

std::string DrawnTexts::strip(HWND hwnd)
{
    auto texts = of(hwnd);
    EXPECT_EQ(texts.size(), 1u);
    return texts.empty() ? "" : texts[0].text;
}

RECT placeOf(HWND hwnd, int idControl)
{
    RECT rc = {};
    GetWindowRect(GetDlgItem(hwnd, idControl), &rc);
    MapWindowPoints(nullptr, hwnd, reinterpret_cast<POINT*>(&rc), 2);
    return rc;
}

bool operator==(const RECT& rc, const RECT& rcOther)
{
    return memcmp(&rc, &rcOther, sizeof rc) == 0;
}

std::ostream& operator<<(std::ostream& stream, const RECT& rc)
{
    return stream << "{" << rc.left << ", " << rc.top << ", " << rc.right << ", " << rc.bottom
                  << "}";
}

LRESULT buttonState(HWND hwnd, UINT idCommand)
{
    return SendDlgItemMessageA(hwnd, IDC_DANDD_TOOLBAR, TOOLM_GETSTATE, idCommand, 0);
}

UINT itemState(HWND hwnd, UINT idCommand)
{
    UINT uState = GetMenuState(GetMenu(hwnd), idCommand, MF_BYCOMMAND);
    return uState == UINT(-1) ? uState : uState & (MF_GRAYED | MF_DISABLED | MF_CHECKED);
}
