#include "shared/icon.h"
#include "shared/module.h"

void shared::paintIconic(HWND hdlg, const char* pszIcon)
{
    PAINTSTRUCT paint;
    HDC hdc = BeginPaint(hdlg, &paint);
    DefDlgProcA(hdlg, WM_ICONERASEBKGND, reinterpret_cast<WPARAM>(hdc), 0);
    DrawIcon(hdc, 0, 0, LoadIconA(g_hInstance, pszIcon));
    EndPaint(hdlg, &paint);
}
