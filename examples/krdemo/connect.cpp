#include "connect.h"
#include "address.h"

namespace {

constexpr char TEMPLATE[] = "CONNECT";

void showAddress(HWND hdlg, const HostAddress* pAddress)
{
    const struct {
        int id;
        const char* pszText;
        size_t cchText;
    } aFields[] = {
        {IDC_CONNECT_SERVER, pAddress->szServer, sizeof pAddress->szServer},
        {IDC_CONNECT_USER, pAddress->szUser, sizeof pAddress->szUser},
        {IDC_CONNECT_PASSWORD, pAddress->szPassword, sizeof pAddress->szPassword},
        {IDC_CONNECT_PATH, pAddress->szPath, sizeof pAddress->szPath},
    };
    for (const auto& field : aFields) {
        SendDlgItemMessageA(hdlg, field.id, EM_LIMITTEXT, WPARAM(field.cchText - 1), 0);
        SetDlgItemTextA(hdlg, field.id, field.pszText);
    }
    SendDlgItemMessageA(hdlg, IDC_CONNECT_PORT, EM_LIMITTEXT, 5, 0);
    SetDlgItemInt(hdlg, IDC_CONNECT_PORT, pAddress->nPort != 0 ? pAddress->nPort : FTP_PORT, FALSE);
}

bool refuseField(HWND hdlg, int id)
{
    MessageBeep(MB_ICONEXCLAMATION);
    SetFocus(GetDlgItem(hdlg, id));
    SendDlgItemMessageA(hdlg, id, EM_SETSEL, 0, -1);
    return false;
}

// Gives false, with the focus on it, if a field can't be used.
bool takeAddress(HWND hdlg, HostAddress* pAddress)
{
    BOOL fNumber = FALSE;
    HostAddress address = {};
    UINT nPort = GetDlgItemInt(hdlg, IDC_CONNECT_PORT, &fNumber, FALSE);
    address.nPort = WORD(nPort);
    GetDlgItemTextA(hdlg, IDC_CONNECT_SERVER, address.szServer, sizeof address.szServer);
    GetDlgItemTextA(hdlg, IDC_CONNECT_USER, address.szUser, sizeof address.szUser);
    GetDlgItemTextA(hdlg, IDC_CONNECT_PASSWORD, address.szPassword, sizeof address.szPassword);
    GetDlgItemTextA(hdlg, IDC_CONNECT_PATH, address.szPath, sizeof address.szPath);
    // A whole address can be typed or pasted where the server's name goes.
    if (isAddress(address.szServer)) {
        HostAddress whole;
        if (!readAddress(address.szServer, &whole)) {
            return refuseField(hdlg, IDC_CONNECT_SERVER);
        }
        *pAddress = whole;
        return true;
    }
    if (address.szServer[0] == '\0') {
        return refuseField(hdlg, IDC_CONNECT_SERVER);
    }
    if (!fNumber || nPort == 0 || nPort > 0xFFFF) {
        return refuseField(hdlg, IDC_CONNECT_PORT);
    }
    *pAddress = address;
    return true;
}

INT_PTR CALLBACK connectProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    if (uMessage == WM_INITDIALOG) {
        SetWindowLongA(hdlg, DWL_USER, lParam);
        showAddress(hdlg, reinterpret_cast<const HostAddress*>(lParam));
        return TRUE;
    }
    if (uMessage == WM_COMMAND && LOWORD(wParam) == IDOK) {
        if (takeAddress(hdlg, reinterpret_cast<HostAddress*>(GetWindowLongA(hdlg, DWL_USER)))) {
            EndDialog(hdlg, IDOK);
        }
        return TRUE;
    }
    if (uMessage == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        EndDialog(hdlg, IDCANCEL);
        return TRUE;
    }
    return FALSE;
}

} // namespace

bool askForServer(HWND hwndOwner, HostAddress* pAddress)
{
    return DialogBoxParamA(GetModuleHandleA(nullptr), TEMPLATE, hwndOwner, connectProc,
                           reinterpret_cast<LPARAM>(pAddress)) == IDOK;
}
