// The dialog procedure of the transfer window.
#ifndef TRANSFER_DIALOG_H
#define TRANSFER_DIALOG_H

#include <windows.h>

INT_PTR CALLBACK fDlgXferDandDProc(HWND hdlgDandD, UINT uMessage, WPARAM wParam, LPARAM lParam);

#endif
