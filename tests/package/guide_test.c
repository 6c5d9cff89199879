/* The program of the caller's guide, worked through its windows: it receives a file, sends one,
   refills the host panes, is stopped twice and is closed. */
#define main guideMain
#include "guide.c"
#undef main
#include "ids.h"

#define MAX_TRIES 200

static int s_nStep, s_cTries;

static void makeFile(const char* pszName, size_t cb)
{
    FILE* pFile = fopen(pszName, "wb");
    while (cb-- > 0)
        fputc((int)cb & 0xff, pFile);
    fclose(pFile);
}

static BOOL areEqual(const char* pszName1, const char* pszName2)
{
    FILE* pFile1 = fopen(pszName1, "rb");
    FILE* pFile2 = fopen(pszName2, "rb");
    int c = pFile1 == NULL || pFile2 == NULL ? 1 : 0;
    while (c != 1 && c != EOF)
        c = (c = fgetc(pFile1)) == fgetc(pFile2) ? (c == EOF ? EOF : 0) : 1;
    if (pFile1 != NULL)
        fclose(pFile1);
    if (pFile2 != NULL)
        fclose(pFile2);
    return c == EOF;
}

static int rowOf(int idList, const char* pszName)
{
    return (int)SendDlgItemMessageA(s_hdlg, idList, LB_FINDSTRINGEXACT, (WPARAM)-1,
                                    (LPARAM)pszName);
}

/* Returns FALSE until there is such a row. */
static BOOL transferRow(int idList, const char* pszName)
{
    int nRow = rowOf(idList, pszName);
    if (nRow == LB_ERR)
        return FALSE;
    SendDlgItemMessageA(s_hdlg, idList, LB_SETSEL, TRUE, nRow);
    SendMessageA(s_hdlg, WM_COMMAND, IDM_XFER_TRANSFER, 0);
    return s_list != NULL && s_hdlgStat != NULL;
}

static BOOL refreshHost(void)
{
    makeFile("host\\late.txt", 1);
    SendMessageA(s_hdlg, WM_COMMAND, XFERCMD_REFRESH, 0);
    return rowOf(IDC_DANDD_HOSTFILES, "late.txt") != LB_ERR;
}

static BOOL namesAreChecked(void)
{
    static const char* const SAFE[] = {"a.txt", ".profile", "com", "COMA.txt",
                                       "nulls", "a b",      "x..y"};
    static const char* const UNSAFE[] = {"",     ".",       "..",       "..\\x",  "/etc/x", "c:x",
                                         "a\nb", "nul.txt", "COM1",     "lpt9.x", "con",    "a.",
                                         "a ",   "aux .c",  "CONIN$.x", "a*",     "x|y"};
    size_t n;
    for (n = 0; n < sizeof SAFE / sizeof SAFE[0]; ++n)
        if (!isSafeName(SAFE[n]))
            return FALSE;
    for (n = 0; n < sizeof UNSAFE / sizeof UNSAFE[0]; ++n)
        if (isSafeName(UNSAFE[n]))
            return FALSE;
    return TRUE;
}

/* Stops a transfer in the middle of a file: the stop command, or X on the status window. */
static BOOL stopTransfer(BOOL fByCommand)
{
    BOOL fBegun;
    makeFile("stopped.txt", 100000);
    vXferDandDRefreshLocalFiles(s_hdlg);
    if (!transferRow(IDC_DANDD_LOCALFILES, "stopped.txt"))
        return FALSE;
    moveChunk();
    fBegun = GetFileAttributesA("host\\stopped.txt") != INVALID_FILE_ATTRIBUTES;
    if (fByCommand)
        SendMessageA(s_hdlg, WM_COMMAND, IDABORT, 0);
    else
        SendMessageA(s_hdlgStat, WM_CLOSE, 0, 0);
    return fBegun && s_fStop;
}

/* A step each time that no transfer is running, until one doesn't succeed for long. */
static VOID CALLBACK onTimer(HWND hwnd, UINT uMessage, UINT_PTR uTimer, DWORD dwTime)
{
    BOOL fDone = FALSE;
    (void)hwnd, (void)uMessage, (void)uTimer, (void)dwTime;
    if (s_hdlg == NULL || s_list != NULL)
        return;
    switch (s_nStep) {
    case 0:
        fDone = transferRow(IDC_DANDD_HOSTFILES, "theirs.txt");
        break;
    case 1:
        fDone = areEqual("theirs.txt", "host\\theirs.txt") &&
                transferRow(IDC_DANDD_LOCALFILES, "ours.txt");
        break;
    case 2:
        fDone = areEqual("ours.txt", "host\\ours.txt") && refreshHost();
        break;
    case 3:
    case 4:
        fDone = GetFileAttributesA("host\\stopped.txt") == INVALID_FILE_ATTRIBUTES &&
                stopTransfer(s_nStep == 3);
        break;
    case 5:
        fDone = GetFileAttributesA("host\\stopped.txt") == INVALID_FILE_ATTRIBUTES &&
                PostMessageA(s_hdlg, WM_CLOSE, 0, 0);
        break;
    }
    s_nStep += fDone;
    s_cTries = fDone ? 0 : s_cTries + 1;
    if (s_cTries == MAX_TRIES)
        PostMessageA(s_hdlg, WM_CLOSE, 0, 0);
}

int main(void)
{
    char* arguments[] = {"guide", "host", NULL};
    CreateDirectoryA("host", NULL);
    makeFile("host\\theirs.txt", 200000);
    makeFile("ours.txt", 300000);
    SetTimer(NULL, 0, 20, onTimer);
    return namesAreChecked() && guideMain(2, arguments) == 0 && s_nStep == 6 && s_hdlgStat == NULL
               ? 0
               : 1;
}
