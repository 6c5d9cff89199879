#include "order.h"
#include "resource.h"
#include "../../include/krhaul.h"

#include <commdlg.h>
#include <string.h>

namespace {

constexpr char SETTINGS[] = "KRTERM.INI";
constexpr char SECTION[] = "Host commands";

struct Protocol {
    const char* name;
    const char* sendCommand;
    const char* receiveCommand;
};

// The programs of a usual host.
constexpr Protocol PROTOCOLS[MODEM_PROTOCOLS] = {
    {"XMODEM (checksum)", "rx @H", "sx @H"},
    {"XMODEM (CRC)", "rx -c @H", "sx @H"},
    {"XMODEM-1K", "rx -c @H", "sx -k @H"},
    {"YMODEM", "rb", "sb -k @H"},
};

struct LineEnd {
    const char* name;
    const char* bytes;
};

constexpr LineEnd LINE_ENDS[] = {{"CR", "\r"}, {"LF", "\n"}, {"CR and LF", "\r\n"}, {"none", ""}};

TransferOrder* wanted;

bool isBatch()
{
    return wanted->protocol == YMODEM;
}

// ---- commands are kept

void keyOf(char (&key)[64])
{
    wsprintfA(key, "%s %s", wanted->sending ? "Send" : "Receive", PROTOCOLS[wanted->protocol].name);
}

void loadCommand(HWND hdlg)
{
    char key[64];
    char command[CCH_COMMAND];
    const Protocol* defaults = &PROTOCOLS[wanted->protocol];
    keyOf(key);
    GetPrivateProfileStringA(SECTION, key,
                             wanted->sending ? defaults->sendCommand : defaults->receiveCommand,
                             command, sizeof command, SETTINGS);
    SetDlgItemTextA(hdlg, IDC_COMMAND, command);
}

void keepOrder()
{
    char key[64];
    char number[16];
    keyOf(key);
    WritePrivateProfileStringA(SECTION, key, wanted->command, SETTINGS);
    wsprintfA(number, "%d", wanted->lineEnd);
    WritePrivateProfileStringA(SECTION, "Line end", number, SETTINGS);
}

// ---- files

// A path alone, or a folder with the names behind it.
void takeFiles(const char* chosen)
{
    const char* name = chosen + strlen(chosen) + 1;
    char* out = wanted->files;
    char* end = out + CCH_FILES - MAX_PATH - 2;
    if (*name == '\0') {
        lstrcpynA(out, chosen, MAX_PATH);
        out += strlen(out) + 1;
    }
    for (; *name != '\0' && out < end; name += strlen(name) + 1) {
        if (strlen(chosen) + strlen(name) + 2 <= MAX_PATH) {
            out += wsprintfA(out, "%s\\%s", chosen, name) + 1;
        }
    }
    *out = '\0';
}

int countFiles()
{
    int count = 0;
    for (const char* text = wanted->files; *text != '\0'; text += strlen(text) + 1) {
        ++count;
    }
    return count;
}

// What a shell of the host could take for more than a name doesn't get into a command.
void proposeHostName(HWND hdlg)
{
    constexpr char PLAIN[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-+";
    char name[MAX_PATH];
    lstrcpynA(name, lastPart(wanted->files), MAX_PATH);
    for (char* at = name; *at != '\0'; ++at) {
        if (strchr(PLAIN, *at) == nullptr || (at == name && *at == '-')) {
            *at = '_';
        }
    }
    SetDlgItemTextA(hdlg, IDC_HOSTNAME, isBatch() ? "" : name);
}

void showFiles(HWND hdlg)
{
    char text[MAX_PATH];
    int count = countFiles();
    wsprintfA(text, "%d files", count);
    SetDlgItemTextA(hdlg, IDC_LOCAL, count > 1 ? text : wanted->files);
    proposeHostName(hdlg);
}

void browse(HWND hdlg)
{
    static char chosen[CCH_FILES];
    OPENFILENAMEA open = {};
    memset(chosen, 0, sizeof chosen);
    open.lStructSize = sizeof open;
    open.hwndOwner = hdlg;
    open.lpstrFilter = "All files\0*.*\0";
    open.lpstrFile = chosen;
    open.nMaxFile = CCH_FILES - MAX_PATH;
    open.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    if (!wanted->sending) {
        if (GetSaveFileNameA(&open)) {
            SetDlgItemTextA(hdlg, IDC_LOCAL, chosen);
        }
        return;
    }
    open.Flags |= OFN_FILEMUSTEXIST | (isBatch() ? DWORD(OFN_ALLOWMULTISELECT) : 0);
    if (GetOpenFileNameA(&open)) {
        takeFiles(chosen);
        showFiles(hdlg);
    }
}

// ---- the dialog

void onProtocol(HWND hdlg)
{
    wanted->protocol = ModemProtocol(SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_GETCURSEL, 0, 0));
    bool folder = !wanted->sending && isBatch();
    if (isBatch() || countFiles() > 1) {
        wanted->files[0] = '\0';
    }
    SetDlgItemTextA(hdlg, IDC_LOCALLABEL,
                    folder                         ? "&Local folder:"
                    : wanted->sending && isBatch() ? "&Local files:"
                                                   : "&Local file:");
    EnableWindow(GetDlgItem(hdlg, IDC_BROWSE), !folder);
    EnableWindow(GetDlgItem(hdlg, IDC_HOSTNAME), !(wanted->sending && isBatch()));
    loadCommand(hdlg);
    if (folder) {
        char folderName[MAX_PATH];
        GetCurrentDirectoryA(MAX_PATH, folderName);
        SetDlgItemTextA(hdlg, IDC_LOCAL, folderName);
    } else if (wanted->sending) {
        showFiles(hdlg);
    }
}

void onInit(HWND hdlg)
{
    for (const Protocol& protocol : PROTOCOLS) {
        SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_ADDSTRING, 0, LPARAM(protocol.name));
    }
    for (const LineEnd& end : LINE_ENDS) {
        SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_ADDSTRING, 0, LPARAM(end.name));
    }
    UINT lineEnd = GetPrivateProfileIntA(SECTION, "Line end", 0, SETTINGS);
    SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_SETCURSEL,
                        lineEnd < ARRAYSIZE(LINE_ENDS) ? lineEnd : 0, 0);
    SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_SETCURSEL, YMODEM, 0);
    SetWindowTextA(hdlg, wanted->sending ? "Send files" : "Receive files");
    onProtocol(hdlg);
}

// Shows what is wrong and goes to where it is.
bool refuse(HWND hdlg, int idControl, const char* text)
{
    MessageBoxA(hdlg, text, "KRTERM", MB_OK | MB_ICONEXCLAMATION);
    SetFocus(GetDlgItem(hdlg, idControl));
    return false;
}

bool isCommandValid(HWND hdlg)
{
    DWORD position;
    if (fXferValidHCS(wanted->command, &position)) {
        return true;
    }
    refuse(hdlg, IDC_COMMAND, "An @ in the command needs one of H, L, D and @ behind it.");
    SendDlgItemMessageA(hdlg, IDC_COMMAND, EM_SETSEL, position - 1, LPARAM(position + 1));
    return false;
}

// A name can also be typed, which is then that of the one file.
void takeTypedFile()
{
    if (countFiles() <= 1) {
        lstrcpynA(wanted->files, wanted->local, MAX_PATH);
        wanted->files[strlen(wanted->files) + 1] = '\0';
    }
}

bool isLocalValid(HWND hdlg)
{
    DWORD attributes = GetFileAttributesA(wanted->sending ? wanted->files : wanted->local);
    bool there = attributes != INVALID_FILE_ATTRIBUTES;
    bool folder = there && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (wanted->sending) {
        return (there && !folder) || refuse(hdlg, IDC_LOCAL, "Choose a file to send.");
    }
    if (isBatch()) {
        return folder || refuse(hdlg, IDC_LOCAL, "There is no such folder.");
    }
    if (wanted->local[0] == '\0' || folder) {
        return refuse(hdlg, IDC_LOCAL, "XMODEM doesn't tell a name: type one for the local file.");
    }
    return !there || MessageBoxA(hdlg, "The file is there already. Overwrite it?", "KRTERM",
                                 MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool takeOrder(HWND hdlg)
{
    GetDlgItemTextA(hdlg, IDC_HOSTNAME, wanted->hostName, MAX_PATH);
    GetDlgItemTextA(hdlg, IDC_LOCAL, wanted->local, MAX_PATH);
    GetDlgItemTextA(hdlg, IDC_COMMAND, wanted->command, CCH_COMMAND);
    wanted->lineEnd = int(SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_GETCURSEL, 0, 0));
    if (wanted->sending) {
        takeTypedFile();
    } else if (wanted->local[0] != '\0') {
        char typed[MAX_PATH];
        lstrcpynA(typed, wanted->local, MAX_PATH);
        if (GetFullPathNameA(typed, MAX_PATH, wanted->local, nullptr) >= MAX_PATH) {
            return refuse(hdlg, IDC_LOCAL, "The path is too long.");
        }
    }
    return isCommandValid(hdlg) && isLocalValid(hdlg);
}

void onCommand(HWND hdlg, WPARAM wParam)
{
    WORD id = LOWORD(wParam);
    if (id == IDC_PROTOCOL && HIWORD(wParam) == CBN_SELCHANGE) {
        onProtocol(hdlg);
    } else if (id == IDC_BROWSE) {
        browse(hdlg);
    } else if (id == IDCANCEL) {
        EndDialog(hdlg, 0);
    } else if (id == IDOK && takeOrder(hdlg)) {
        keepOrder();
        EndDialog(hdlg, 1);
    }
}

INT_PTR CALLBACK orderProc(HWND hdlg, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG) {
        onInit(hdlg);
        return TRUE;
    }
    if (message == WM_COMMAND) {
        onCommand(hdlg, wParam);
        return TRUE;
    }
    return FALSE;
}

void (*putProc)(const BYTE* bytes, DWORD count);

int KRHAULAPI putPiece(DWORD, const char* text, LONG count, DWORD*)
{
    putProc(reinterpret_cast<const BYTE*>(text), DWORD(count));
    return 0;
}

} // namespace

bool askForOrder(HWND owner, bool sending, TransferOrder* order)
{
    *order = {};
    order->sending = sending;
    wanted = order;
    return DialogBoxParamA(GetModuleHandleA(nullptr), "TRANSFER", owner, orderProc, 0) == 1;
}

void tellHost(const TransferOrder* order, void (*put)(const BYTE* bytes, DWORD count))
{
    const char* lineEnd = LINE_ENDS[order->lineEnd].bytes;
    const char* local = lastPart(order->sending ? order->files : order->local);
    if (order->command[0] == '\0') {
        return;
    }
    putProc = put;
    nXferTranslateHCS(order->command, order->hostName, local, putPiece, 0);
    if (lineEnd[0] != '\0') {
        putPiece(0, lineEnd, LONG(strlen(lineEnd)), nullptr);
    }
}

const char* protocolName(ModemProtocol protocol)
{
    return PROTOCOLS[protocol].name;
}

// By characters: in some code pages one ends in the byte of a backslash.
const char* lastPart(const char* path)
{
    const char* last = path;
    for (const char* at = path; *at != '\0'; at = CharNextA(at)) {
        last = *at == '\\' || *at == '/' || *at == ':' ? at + 1 : last;
    }
    return last;
}
