#include "connect.h"
#include "address.h"

#include <iterator>

namespace demo {

namespace {

constexpr int LONGEST_FIELD = 255;
constexpr UINT LAST_PORT = 0xFFFF;

struct Field {
    int id;
    std::string Address::*text;
};

constexpr Field FIELDS[] = {{IDC_CONNECT_SERVER, &Address::server},
                            {IDC_CONNECT_USER, &Address::user},
                            {IDC_CONNECT_PASSWORD, &Address::password},
                            {IDC_CONNECT_PATH, &Address::path},
                            {IDC_CONNECT_KEY, &Address::keyFile}};

std::string textOf(HWND dialog, int id)
{
    char text[LONGEST_FIELD + 1] = "";
    GetDlgItemTextA(dialog, id, text, sizeof text);
    std::string copy = text;
    SecureZeroMemory(text, sizeof text);
    return copy;
}

void setField(HWND dialog, int id, const char* text)
{
    SendDlgItemMessageA(dialog, id, EM_LIMITTEXT, LONGEST_FIELD, 0);
    SetDlgItemTextA(dialog, id, text);
}

// ---- the dialog that asks for a server

const ProtocolName& selectedProtocol(HWND dialog)
{
    return PROTOCOLS[SendDlgItemMessageA(dialog, IDC_CONNECT_PROTOCOL, CB_GETCURSEL, 0, 0)];
}

void showAddress(HWND dialog, const Address& address)
{
    bool isServer = address.protocol != Protocol::Folder;
    const ProtocolName& shown = nameOf(address.protocol);
    for (const ProtocolName& protocol : PROTOCOLS) {
        SendDlgItemMessageA(dialog, IDC_CONNECT_PROTOCOL, CB_ADDSTRING, 0,
                            reinterpret_cast<LPARAM>(protocol.title));
    }
    SendDlgItemMessageA(dialog, IDC_CONNECT_PROTOCOL, CB_SETCURSEL, WPARAM(&shown - PROTOCOLS), 0);
    for (const Field& field : FIELDS) {
        bool isSecret = field.text == &Address::password;
        setField(dialog, field.id, isServer && !isSecret ? (address.*field.text).c_str() : "");
    }
    SetDlgItemInt(dialog, IDC_CONNECT_PORT, isServer ? address.port : shown.port, FALSE);
}

bool refuseField(HWND dialog, int id)
{
    MessageBeep(MB_ICONEXCLAMATION);
    SetFocus(GetDlgItem(dialog, id));
    SendDlgItemMessageA(dialog, id, EM_SETSEL, 0, -1);
    return false;
}

// Returns false, with the focus on it, if a field can't be used.
bool takeAddress(HWND dialog, Address* address)
{
    BOOL isNumber = FALSE;
    Address read = *address;
    for (const Field& field : FIELDS) {
        read.*field.text = textOf(dialog, field.id);
    }
    read.protocol = selectedProtocol(dialog).protocol;
    read.port = GetDlgItemInt(dialog, IDC_CONNECT_PORT, &isNumber, FALSE);
    read.codePage = address->protocol == Protocol::Folder ? CP_UTF8 : address->codePage;
    // A whole address can be typed or pasted where the server's name goes.
    if (isAddress(read.server) ? !readAddress(read.server, &read) : read.server.empty()) {
        return refuseField(dialog, IDC_CONNECT_SERVER);
    }
    if (!isNumber || read.port == 0 || read.port > LAST_PORT) {
        return refuseField(dialog, IDC_CONNECT_PORT);
    }
    *address = read;
    wipe(&read.password);
    return true;
}

void onServerCommand(HWND dialog, WPARAM wParam)
{
    auto address = reinterpret_cast<Address*>(GetWindowLongA(dialog, DWL_USER));
    if (LOWORD(wParam) == IDC_CONNECT_PROTOCOL && HIWORD(wParam) == CBN_SELCHANGE) {
        SetDlgItemInt(dialog, IDC_CONNECT_PORT, selectedProtocol(dialog).port, FALSE);
    } else if (LOWORD(wParam) == IDCANCEL ||
               (LOWORD(wParam) == IDOK && takeAddress(dialog, address))) {
        EndDialog(dialog, LOWORD(wParam));
    }
}

INT_PTR CALLBACK serverProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongA(dialog, DWL_USER, lParam);
        showAddress(dialog, *reinterpret_cast<Address*>(lParam));
        return TRUE;
    }
    if (message == WM_COMMAND) {
        onServerCommand(dialog, wParam);
        return TRUE;
    }
    return FALSE;
}

// ---- the dialog that asks for a password

INT_PTR CALLBACK passwordProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        auto address = reinterpret_cast<Address*>(lParam);
        bool isKey = !address->keyFile.empty();
        std::string label = isKey ? "Passphrase of the key " + address->keyFile
                                  : "Password of " + address->user + " on " + address->server;
        SetWindowLongA(dialog, DWL_USER, lParam);
        SetDlgItemTextA(dialog, IDC_PASSWORD_LABEL, (label + ":").c_str());
        setField(dialog, IDC_CONNECT_PASSWORD, "");
        return TRUE;
    }
    if (message != WM_COMMAND) {
        return FALSE;
    }
    if (LOWORD(wParam) == IDOK) {
        auto address = reinterpret_cast<Address*>(GetWindowLongA(dialog, DWL_USER));
        address->password = textOf(dialog, IDC_CONNECT_PASSWORD);
    }
    if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, LOWORD(wParam));
    }
    return TRUE;
}

// ---- the dialog that asks about many files

INT_PTR CALLBACK manyProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetDlgItemTextA(dialog, IDC_MANY_QUESTION, reinterpret_cast<const char*>(lParam));
        return TRUE;
    }
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) {
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    }
    return FALSE;
}

INT_PTR runDialog(const char* dialogTemplate, HWND owner, DLGPROC procedure, LPARAM lParam)
{
    return DialogBoxParamA(GetModuleHandleA(nullptr), dialogTemplate, owner, procedure, lParam);
}

} // namespace

bool askForServer(HWND owner, Address* address)
{
    return runDialog("CONNECT", owner, serverProc, reinterpret_cast<LPARAM>(address)) == IDOK;
}

bool askForPassword(HWND owner, Address* address)
{
    bool isKnown = address->user.empty() || !address->password.empty() ||
                   address->protocol == Protocol::Folder;
    return isKnown ||
           runDialog("PASSWORD", owner, passwordProc, reinterpret_cast<LPARAM>(address)) == IDOK;
}

int askAboutMany(HWND owner, const char* question)
{
    return int(runDialog("MANY", owner, manyProc, reinterpret_cast<LPARAM>(question)));
}

} // namespace demo
