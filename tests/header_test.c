/* The public header is a C header: a caller in C declares a callback, takes an address of
   each kind of export and calls one. */
#include "../include/krhaul.h"
#include "../resources/ids.h"

/* The header and the resources number commands and lists alike: a negative size ends the
   compilation. */
#define SAME(name) typedef char same##name[XFERCMD_##name == IDM_XFER_##name ? 1 : -1]
SAME(REMOVEDIR);
SAME(HELP);
SAME(TRANSFER);
SAME(DELETE);
SAME(MAKEDIR);
SAME(RENAME);
SAME(CONFIRM);
SAME(REFRESH);
SAME(TYPEAUTO);
SAME(TYPETEXT);
SAME(TYPEBINARY);
SAME(COMMANDLINE);
SAME(TWOPANE);
SAME(VIEW);
SAME(DETAILS);
SAME(CHANGEDIR);
SAME(COPY);
SAME(SAVESELECTION);
SAME(SELECTALL);
SAME(HELPSEARCH);
SAME(STOP);

#define SAME_PANE(name) typedef char samePane##name[XFERPANE_##name == IDC_DANDD_##name ? 1 : -1]
SAME_PANE(HOSTDIRS);
SAME_PANE(HOSTFILES);
SAME_PANE(LOCALFILES);
SAME_PANE(LOCALDIRS);

static int KRHAULAPI refuse(DWORD dwUserData, const char* pchText, LONG cchText, DWORD* pdwScratch)
{
    *pdwScratch = dwUserData;
    return pchText != NULL && cchText > 0;
}

int headerTestInC(void);

int headerTestInC(void)
{
    XferSendProc pfnSend = refuse;
    XferFileList list;
    int nRefused = nXferTranslateHCS("x", "", "", pfnSend, 1);
    int fMade = XferFileList_fCreate(&list) && XferFileList_vSetDWord(list, 0, XFERLIST_HOST, 7);
    DWORD dwValue = XferFileList_nGetDWord(list, 0, XFERLIST_HOST);
    XferFileList_vDestroy(list);
    return nRefused == -1 && fMade && dwValue == 7;
}
