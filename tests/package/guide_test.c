/* The program of the caller's guide, worked through its windows: it receives a file, sends one,
   lists the host anew and is closed. guide.c is made of the blocks of docs/caller.md. */
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

/* Gives FALSE until there is such a row. */
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

/* Stops a transfer in the middle of a file. */
static BOOL stopTransfer(void)
{
    BOOL fBegun;
    makeFile("stopped.txt", 100000);
    vXferDandDRefreshLocalFiles(s_hdlg);
    if (!transferRow(IDC_DANDD_LOCALFILES, "stopped.txt"))
        return FALSE;
    moveChunk();
    fBegun = GetFileAttributesA("host\\stopped.txt") != INVALID_FILE_ATTRIBUTES;
    SendMessageA(s_hdlg, WM_COMMAND, IDABORT, 0);
    return fBegun;
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
        fDone = stopTransfer();
        break;
    case 4:
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
    return guideMain(2, arguments) == 0 && s_nStep == 5 && s_hdlgStat == NULL ? 0 : 1;
}
