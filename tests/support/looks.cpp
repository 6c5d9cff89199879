#include "looks.h"
#include "../../resources/ids.h"
#include "../../toolbar/toolbar.h"

#include <string.h>
#include <utility>

namespace {

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

DrawnTexts::DrawnTexts() : m_extTextOut(library(), "ExtTextOutA", keepingExtTextOut)
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
