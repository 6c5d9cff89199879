#include "order.h"
#include "resource.h"
#include "../../include/krhaul.h"

#include <commdlg.h>
#include <string.h>

namespace {

constexpr char SETTINGS[] = "KRTERM.INI";
constexpr char SECTION[] = "Host commands";

struct Protocol {
    const char* pszName;
    const char* pszSendCommand;
    const char* pszReceiveCommand;
};

// The programs of a usual host.
constexpr Protocol PROTOCOLS[MODEM_PROTOCOLS] = {
    {"XMODEM (checksum)", "rx @H", "sx @H"},
    {"XMODEM (CRC)", "rx -c @H", "sx @H"},
    {"XMODEM-1K", "rx -c @H", "sx -k @H"},
    {"YMODEM", "rb", "sb @H"},
};

struct LineEnd {
    const char* pszName;
    const char* pszBytes;
};

constexpr LineEnd LINE_ENDS[] = {{"CR", "\r"}, {"LF", "\n"}, {"CR and LF", "\r\n"}, {"none", ""}};

TransferOrder* s_pOrder;

bool isBatch()
{
    return s_pOrder->nProtocol == YMODEM;
}

// ---- commands are kept

void keyOf(char (&szKey)[64])
{
    wsprintfA(szKey, "%s %s", s_pOrder->fSend ? "Send" : "Receive",
              PROTOCOLS[s_pOrder->nProtocol].pszName);
}

void loadCommand(HWND hdlg)
{
    char szKey[64];
    char szCommand[CCH_COMMAND];
    const Protocol* pProtocol = &PROTOCOLS[s_pOrder->nProtocol];
    keyOf(szKey);
    GetPrivateProfileStringA(
        SECTION, szKey, s_pOrder->fSend ? pProtocol->pszSendCommand : pProtocol->pszReceiveCommand,
        szCommand, sizeof szCommand, SETTINGS);
    SetDlgItemTextA(hdlg, IDC_COMMAND, szCommand);
}

void keepOrder()
{
    char szKey[64];
    char szNumber[16];
    keyOf(szKey);
    WritePrivateProfileStringA(SECTION, szKey, s_pOrder->szCommand, SETTINGS);
    wsprintfA(szNumber, "%d", s_pOrder->nLineEnd);
    WritePrivateProfileStringA(SECTION, "Line end", szNumber, SETTINGS);
}

// ---- files

// A path alone, or a folder with the names behind it.
void takeFiles(const char* pszzChosen)
{
    const char* pszName = pszzChosen + strlen(pszzChosen) + 1;
    char* pchOut = s_pOrder->szzFiles;
    char* pchEnd = pchOut + CCH_FILES - MAX_PATH - 2;
    if (*pszName == '\0') {
        lstrcpynA(pchOut, pszzChosen, MAX_PATH);
        pchOut += strlen(pchOut) + 1;
    }
    for (; *pszName != '\0' && pchOut < pchEnd; pszName += strlen(pszName) + 1) {
        if (strlen(pszzChosen) + strlen(pszName) + 2 <= MAX_PATH) {
            pchOut += wsprintfA(pchOut, "%s\\%s", pszzChosen, pszName) + 1;
        }
    }
    *pchOut = '\0';
}

int countFiles()
{
    int c = 0;
    for (const char* psz = s_pOrder->szzFiles; *psz != '\0'; psz += strlen(psz) + 1) {
        ++c;
    }
    return c;
}

// What a shell of the host could take for more than a name doesn't get into a command.
void proposeHostName(HWND hdlg)
{
    constexpr char PLAIN[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-+";
    char szName[MAX_PATH];
    lstrcpynA(szName, lastPart(s_pOrder->szzFiles), MAX_PATH);
    for (char* pch = szName; *pch != '\0'; ++pch) {
        if (strchr(PLAIN, *pch) == nullptr || (pch == szName && *pch == '-')) {
            *pch = '_';
        }
    }
    SetDlgItemTextA(hdlg, IDC_HOSTNAME, isBatch() ? "" : szName);
}

void showFiles(HWND hdlg)
{
    char szText[MAX_PATH];
    int c = countFiles();
    wsprintfA(szText, "%d files", c);
    SetDlgItemTextA(hdlg, IDC_LOCAL, c > 1 ? szText : s_pOrder->szzFiles);
    proposeHostName(hdlg);
}

void browse(HWND hdlg)
{
    static char s_szzChosen[CCH_FILES];
    OPENFILENAMEA open = {};
    memset(s_szzChosen, 0, sizeof s_szzChosen);
    open.lStructSize = sizeof open;
    open.hwndOwner = hdlg;
    open.lpstrFilter = "All files\0*.*\0";
    open.lpstrFile = s_szzChosen;
    open.nMaxFile = CCH_FILES - MAX_PATH;
    open.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    if (!s_pOrder->fSend) {
        if (GetSaveFileNameA(&open)) {
            SetDlgItemTextA(hdlg, IDC_LOCAL, s_szzChosen);
        }
        return;
    }
    open.Flags |= OFN_FILEMUSTEXIST | (isBatch() ? DWORD(OFN_ALLOWMULTISELECT) : 0);
    if (GetOpenFileNameA(&open)) {
        takeFiles(s_szzChosen);
        showFiles(hdlg);
    }
}

// ---- the dialog

void onProtocol(HWND hdlg)
{
    s_pOrder->nProtocol =
        ModemProtocol(SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_GETCURSEL, 0, 0));
    bool fFolder = !s_pOrder->fSend && isBatch();
    if (isBatch() || countFiles() > 1) {
        s_pOrder->szzFiles[0] = '\0';
    }
    SetDlgItemTextA(hdlg, IDC_LOCALLABEL,
                    fFolder                        ? "&Local folder:"
                    : s_pOrder->fSend && isBatch() ? "&Local files:"
                                                   : "&Local file:");
    EnableWindow(GetDlgItem(hdlg, IDC_BROWSE), !fFolder);
    EnableWindow(GetDlgItem(hdlg, IDC_HOSTNAME), !(s_pOrder->fSend && isBatch()));
    loadCommand(hdlg);
    if (fFolder) {
        char szFolder[MAX_PATH];
        GetCurrentDirectoryA(MAX_PATH, szFolder);
        SetDlgItemTextA(hdlg, IDC_LOCAL, szFolder);
    } else if (s_pOrder->fSend) {
        showFiles(hdlg);
    }
}

void onInit(HWND hdlg)
{
    for (const Protocol& protocol : PROTOCOLS) {
        SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_ADDSTRING, 0, LPARAM(protocol.pszName));
    }
    for (const LineEnd& end : LINE_ENDS) {
        SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_ADDSTRING, 0, LPARAM(end.pszName));
    }
    UINT nLineEnd = GetPrivateProfileIntA(SECTION, "Line end", 0, SETTINGS);
    SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_SETCURSEL,
                        nLineEnd < ARRAYSIZE(LINE_ENDS) ? nLineEnd : 0, 0);
    SendDlgItemMessageA(hdlg, IDC_PROTOCOL, CB_SETCURSEL, YMODEM, 0);
    SetWindowTextA(hdlg, s_pOrder->fSend ? "Send files" : "Receive files");
    onProtocol(hdlg);
}

// Shows what is wrong and goes to where it is.
bool refuse(HWND hdlg, int idControl, const char* pszText)
{
    MessageBoxA(hdlg, pszText, "KRTERM", MB_OK | MB_ICONEXCLAMATION);
    SetFocus(GetDlgItem(hdlg, idControl));
    return false;
}

bool isCommandValid(HWND hdlg)
{
    DWORD dwPosition;
    if (fXferValidHCS(s_pOrder->szCommand, &dwPosition)) {
        return true;
    }
    refuse(hdlg, IDC_COMMAND, "An @ in the command needs one of H, L, D and @ behind it.");
    SendDlgItemMessageA(hdlg, IDC_COMMAND, EM_SETSEL, dwPosition - 1, LPARAM(dwPosition + 1));
    return false;
}

// A name can also be typed, which is then that of the one file.
void takeTypedFile()
{
    if (countFiles() <= 1) {
        lstrcpynA(s_pOrder->szzFiles, s_pOrder->szLocal, MAX_PATH);
        s_pOrder->szzFiles[strlen(s_pOrder->szzFiles) + 1] = '\0';
    }
}

bool isLocalValid(HWND hdlg)
{
    DWORD dwAttributes =
        GetFileAttributesA(s_pOrder->fSend ? s_pOrder->szzFiles : s_pOrder->szLocal);
    bool fThere = dwAttributes != INVALID_FILE_ATTRIBUTES;
    bool fFolder = fThere && (dwAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (s_pOrder->fSend) {
        return (fThere && !fFolder) || refuse(hdlg, IDC_LOCAL, "Choose a file to send.");
    }
    if (isBatch()) {
        return fFolder || refuse(hdlg, IDC_LOCAL, "There is no such folder.");
    }
    if (s_pOrder->szLocal[0] == '\0' || fFolder) {
        return refuse(hdlg, IDC_LOCAL, "XMODEM doesn't tell a name: type one for the local file.");
    }
    return !fThere || MessageBoxA(hdlg, "The file is there already. Overwrite it?", "KRTERM",
                                  MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool takeOrder(HWND hdlg)
{
    GetDlgItemTextA(hdlg, IDC_HOSTNAME, s_pOrder->szHostName, MAX_PATH);
    GetDlgItemTextA(hdlg, IDC_LOCAL, s_pOrder->szLocal, MAX_PATH);
    GetDlgItemTextA(hdlg, IDC_COMMAND, s_pOrder->szCommand, CCH_COMMAND);
    s_pOrder->nLineEnd = int(SendDlgItemMessageA(hdlg, IDC_LINEEND, CB_GETCURSEL, 0, 0));
    if (s_pOrder->fSend) {
        takeTypedFile();
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

INT_PTR CALLBACK orderProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM)
{
    if (uMessage == WM_INITDIALOG) {
        onInit(hdlg);
        return TRUE;
    }
    if (uMessage == WM_COMMAND) {
        onCommand(hdlg, wParam);
        return TRUE;
    }
    return FALSE;
}

void (*s_pfnPut)(const BYTE* pb, DWORD cb);

int KRHAULAPI putPiece(DWORD, const char* pchText, LONG cchText, DWORD*)
{
    s_pfnPut(reinterpret_cast<const BYTE*>(pchText), DWORD(cchText));
    return 0;
}

} // namespace

bool askForOrder(HWND hwndOwner, bool fSend, TransferOrder* pOrder)
{
    *pOrder = {};
    pOrder->fSend = fSend;
    s_pOrder = pOrder;
    return DialogBoxParamA(GetModuleHandleA(nullptr), "TRANSFER", hwndOwner, orderProc, 0) == 1;
}

void tellHost(const TransferOrder* pOrder, void (*pfnPut)(const BYTE* pb, DWORD cb))
{
    const char* pszEnd = LINE_ENDS[pOrder->nLineEnd].pszBytes;
    const char* pszLocal = lastPart(pOrder->fSend ? pOrder->szzFiles : pOrder->szLocal);
    if (pOrder->szCommand[0] == '\0') {
        return;
    }
    s_pfnPut = pfnPut;
    nXferTranslateHCS(pOrder->szCommand, pOrder->szHostName, pszLocal, putPiece, 0);
    if (pszEnd[0] != '\0') {
        putPiece(0, pszEnd, LONG(strlen(pszEnd)), nullptr);
    }
}

const char* protocolName(ModemProtocol nProtocol)
{
    return PROTOCOLS[nProtocol].pszName;
}

// By characters: in some code pages one ends in the byte of a backslash.
const char* lastPart(const char* pszPath)
{
    const char* pszLast = pszPath;
    for (const char* pch = pszPath; *pch != '\0'; pch = CharNextA(pch)) {
        pszLast = *pch == '\\' || *pch == '/' || *pch == ':' ? pch + 1 : pszLast;
    }
    return pszLast;
}
