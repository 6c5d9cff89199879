#include "subclassed.h"

#include <map>
#include <utility>

namespace {

std::map<HWND, Subclassed*> s_subclassed;

} // namespace

Subclassed::Subclassed(HWND hwnd, Handler handler) : m_hwnd(hwnd), m_handler(std::move(handler))
{
    s_subclassed[hwnd] = this;
    m_pfnOld =
        reinterpret_cast<WNDPROC>(SetWindowLongA(hwnd, GWL_WNDPROC, reinterpret_cast<LONG>(proc)));
}

Subclassed::~Subclassed()
{
    if (IsWindow(m_hwnd)) {
        SetWindowLongA(m_hwnd, GWL_WNDPROC, reinterpret_cast<LONG>(m_pfnOld));
    }
    s_subclassed.erase(m_hwnd);
}

LRESULT CALLBACK Subclassed::proc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    Subclassed* pThis = s_subclassed[hwnd];
    WNDPROC pfnOld = pThis->m_pfnOld;
    return pThis->m_handler(uMessage, wParam, lParam)
               ? 0
               : CallWindowProcA(pfnOld, hwnd, uMessage, wParam, lParam);
}
