/** @file krhaul.h
 *  @brief The interface of KRHAUL.DLL, for C and C++.
 *
 *  KRHAUL is the user interface of file transfers for terminal emulators. It shows what the
 *  user sees of a transfer; the program that loads it, the caller, has the protocol.
 *
 *  @par Calling convention
 *  Every export and every callback is __stdcall. Exports have undecorated names.
 *
 *  @par Threads
 *  The library has no thread and no lock. All calls, callbacks and window messages belong on
 *  the one thread that creates the windows and runs the message loop. The windows are
 *  modeless: Tab, Enter and Escape work in them only if that loop hands its messages to
 *  IsDialogMessageA.
 *
 *  @par Re-entry
 *  Message boxes run loops of their own, so a message of the caller's windows, and through it
 *  any export, can arrive before a call that shows one has returned.
 *
 *  @par Texts
 *  All texts are NUL-terminated ANSI strings. Names and paths hold at most #XFER_MAX_NAME
 *  characters and a NUL. A longer text is cut to its field and never runs past it. The
 *  library copies what it keeps; a text needs to live only through the call.
 *
 *  @par Errors
 *  No call throws, and none sets the thread's last error on purpose. Results are
 *   - calls beginning with n: 0 for success, #XFER_NOWINDOW or #XFER_NOLANGUAGE;
 *   - calls with f: 1 for success or yes, 0 for failure or no;
 *   - calls with hdlg: a window, or 0;
 *   - calls with v: nothing, unless their text says otherwise.
 *
 *  Bad input (a null pointer, a window that isn't one of the library's, a size out of range)
 *  gives the failure result that the call's text names and does nothing else. A call that
 *  fails leaves its outputs alone unless its text says otherwise.
 */
#ifndef KRHAUL_H
#define KRHAUL_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Calling convention of every export and callback. */
#define KRHAULAPI __stdcall

/** Characters of a name or path, without the NUL. */
#define XFER_MAX_NAME 259

/** @name Integer results */
/**@{*/
#define XFER_OK 0          /**< Success. */
#define XFER_NOWINDOW (-1) /**< The window isn't a status window of this library. */
#define XFER_NOLANGUAGE (-2) /**< The language module can't be loaded. */
/**@}*/

/* -------------------------------------------------------------------------------------- */
/** @defgroup filelist File lists
 *  A growing table of rows with two typed cells, which carries groups of file names across
 *  the boundary. Column 0 holds the local name, column 1 the host name.
 *
 *  Rows and columns are counted from 0. A list belongs to whoever made it until it is given
 *  away; the receiver destroys it. It has no lock and is used on one thread at a time.
 *
 *  Building a list: XferFileList_fCreate(), XferFileList_fSetSize() to the number of rows to
 *  come, then the cells of rows 0, 1, 2 and so on. If one of them fails, destroy the list.
 *  @{ */

/** A list: an address that means nothing to its user. 0 is no list. */
typedef struct XferFileListHeader* XferFileList;

#define XFERLIST_LOCAL 0 /**< Column of local names. */
#define XFERLIST_HOST 1  /**< Column of host names. */

#define XFERLIST_KEEPGROWTH (-1) /**< For XferFileList_fSetSize(): growth stays as it is. */

/** Makes an empty list with room for 4 rows, which grows by 16.
 *  @param pList receives the list, or 0 on failure.
 *  @return 1; 0 if there is no memory or pList is null. */
int KRHAULAPI XferFileList_fCreate(XferFileList* pList);

/** Frees the list with all its texts. A null list does nothing. */
void KRHAULAPI XferFileList_vDestroy(XferFileList list);

/** Makes room, or changes the number of rows in use.
 *
 *  Above the capacity: the capacity grows by the growth, or to the new size if that is
 *  more. The list may move, and *pList follows it. The number of rows in use stays; the
 *  rows come into use as their cells are set. Within the capacity: the number of rows in
 *  use becomes the new size; rows that go lose their cells, rows that come are empty.
 *
 *  @param pList the list; its address may change.
 *  @param cRows new size, 0 or more.
 *  @param cGrowBy rows to add when the list has to grow, from now on; 0 is valid,
 *         #XFERLIST_KEEPGROWTH keeps the present value.
 *  @return 1; 0 for a null list, a negative size, a size or growth that can't be counted in
 *         31 bits, or no memory. The list is then as it was. */
int KRHAULAPI XferFileList_fSetSize(XferFileList* pList, LONG cRows, LONG cGrowBy);

/** @return the number of rows in use; 0 for a null list. */
LONG KRHAULAPI XferFileList_cGetSize(XferFileList list);

/** Puts a number into a cell; what was there goes. Rows below it come into use, empty.
 *  @return 1; 0, with nothing changed, for a null list, a row that is negative or for which
 *         no room was made with XferFileList_fSetSize(), or a column other than 0 and 1. */
int KRHAULAPI XferFileList_vSetDWord(XferFileList list, LONG nRow, LONG nColumn, DWORD dwValue);

/** @return the number in the cell; 0 unless the cell exists and holds a number. */
DWORD KRHAULAPI XferFileList_nGetDWord(XferFileList list, LONG nRow, LONG nColumn);

/** Puts a copy of a text of any length into a cell; what was there goes.
 *  @return 1; 0, with nothing changed, as XferFileList_vSetDWord() and for a null text. With
 *         no memory for the copy also 0; the cell is then empty, its row in use. */
int KRHAULAPI XferFileList_fSetString(XferFileList list, LONG nRow, LONG nColumn,
                                      const char* pszText);

/** Copies the text of a cell, cut to the buffer and always with its NUL; the rest of the
 *  buffer is filled with NULs. The buffer becomes the empty string unless the cell exists
 *  and holds a text.
 *  @param cchBuffer size of the buffer, its NUL included.
 *  @return pszBuffer; null, with nothing written, if cchBuffer is 0 or less. */
char* KRHAULAPI XferFileList_lpszGetString(XferFileList list, LONG nRow, LONG nColumn,
                                           char* pszBuffer, LONG cchBuffer);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup language Language modules
 *  All dialogs, menus and strings come from a module named "XFR", a language code and
 *  ".DLL", which the platform's library search finds. A code has at most 12 characters.
 *  @{ */

/** Loads the module of a language. The caller frees it with FreeLibrary.
 *  @param phModule receives the module, or 0 on failure.
 *  @param pszLanguage language code, such as "EN".
 *  @return #XFER_OK; #XFER_NOLANGUAGE if there is no such module, the code is null or too
 *         long, or phModule is null. */
int KRHAULAPI nXferAllocLoadLanguage(HMODULE* phModule, const char* pszLanguage);

/** Frees the module in *phModule, if there is one, and loads another in its place. What
 *  still rests on the old module has to be loaded anew. There is no way back to the old one.
 *  @return as nXferAllocLoadLanguage(). */
int KRHAULAPI nXferDoLanguageChange(HMODULE* phModule, const char* pszLanguage);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup hoststring Host command strings
 *  A host command string is a template with escapes, upper and lower case alike: "@@" one
 *  "@", "@D" a pause of a second, "@H" the host file name (the local one if it is empty or
 *  "<Automatic>"), "@L" the local file name. Anything else behind "@" is no escape.
 *  @{ */

/** Takes characters to send.
 *  @param dwUserData as given to nXferTranslateHCS().
 *  @param pchText the characters, in general without a NUL behind them.
 *  @param cchText their number, at least 1.
 *  @param pdwScratch a double word that the callback may write and nobody reads.
 *  @return 0 to go on; anything else stops the translation. */
typedef int(KRHAULAPI* XferSendProc)(DWORD dwUserData, const char* pchText, LONG cchText,
                                     DWORD* pdwScratch);

/** Sends a template piece by piece. An invalid escape is dropped without a word. A pause
 *  blocks the thread, with no message handled, for its second.
 *  @param pszTemplate the template; null counts as empty.
 *  @param pszHostName,pszLocalName the file names; null counts as empty.
 *  @param pfnSend takes the pieces; null refuses the first of them.
 *  @param dwUserData handed to pfnSend.
 *  @return 0 when all went through; -1 when pfnSend refused. What went out stays sent. */
int KRHAULAPI nXferTranslateHCS(const char* pszTemplate, const char* pszHostName,
                                const char* pszLocalName, XferSendProc pfnSend, DWORD dwUserData);

/** Tells whether all escapes of a template are valid.
 *  @param pszTemplate the template; null counts as empty.
 *  @param pdwPosition receives the index of the character that should have completed the
 *         first bad escape (that of the NUL for an "@" at the end); 0 if all are valid. Can
 *         be null.
 *  @return 1 if valid, else 0. */
int KRHAULAPI fXferValidHCS(const char* pszTemplate, DWORD* pdwPosition);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup status The status window
 *  A modeless window that shows a running transfer. Up to #XFERSTAT_MAXWINDOWS exist in a
 *  process. The calls that feed it only store values; once a second, while a transfer
 *  runs, the window turns them into figures.
 *
 *  Order of calls: hdlgXferStatCreate(); for each file nXferStatFileInfo() and
 *  nXferStatStartTransfer(), any number of nXferStatCountInfo(), nXferStatStatusInfo() and
 *  nXferStatErrorInfo(), then nXferStatEndTransfer(); at last nXferStatDestroy().
 *
 *  The user can close the window. Calls on it then do nothing and give the results of a
 *  live window, until nXferStatDestroy() has given its place free.
 *
 *  A press on the Cancel or the caption button tells nobody: a caller that wants to know
 *  subclasses the window and looks for WM_COMMAND with #XFERSTAT_CANCEL or #XFERSTAT_BUTTON.
 *  @{ */

#define XFERSTAT_MAXWINDOWS 8 /**< Status windows per process. */
#define XFERSTAT_MAXSTATUS 79 /**< Characters of a status text, without the NUL. */

/** @name Commands of the window, seen by a caller that subclasses it */
/**@{*/
#define XFERSTAT_CANCEL 2   /**< Cancel, or Escape. */
#define XFERSTAT_BUTTON 112 /**< The button of vXferStatButtonText(). */
/**@}*/

/** @name Messages posted to the parent of a status window
 *  Without a parent they are posted to the thread, as PostMessageA does for the window 0. */
/**@{*/
/** The whole percentage has changed; wParam is 0 to 100, lParam 0. */
#define WM_XFERSTAT_PERCENT 0x050B
/** nXferStatDestroy() is about to destroy the window; wParam and lParam are 0. */
#define WM_XFERSTAT_CLOSED 0x050C
/**@}*/

/** @name Messages that the caller can send to a status window */
/**@{*/
/** Shows the help of the window, as its Help button does. The same number in all dialogs of
 *  the library. */
#define WM_XFER_HELP 0x0501
/** Gives the keyboard focus to the parent of the status window that was made last. */
#define WM_XFERSTAT_FOCUSPARENT 0x8500
/**@}*/

/** Makes a status window in English: hdlgXferStatLangCreate() with the code "EN". */
HWND KRHAULAPI hdlgXferStatCreate(const char* pszTitle, DWORD dwLabel, HWND hwndParent,
                                  DWORD fCorner, DWORD fMinimize);

/** Makes a status window.
 *  @param pszLanguage language code of its module, which the window owns.
 *  @param pszTitle the caption.
 *  @param dwLabel 0 names the second file "Saved as", anything else "Host file" (in the
 *         words of the language).
 *  @param hwndParent owner of the window, receiver of its messages; can be 0.
 *  @param fCorner not 0 puts the window into the top right corner of the screen. Only the
 *         low 16 bits count.
 *  @param fMinimize not 0 starts it as an icon. Only the low 16 bits count.
 *  @return the window, or 0: the module can't be loaded or has no template (no message), or
 *         #XFERSTAT_MAXWINDOWS windows exist (the user is told in a message box). */
HWND KRHAULAPI hdlgXferStatLangCreate(const char* pszLanguage, const char* pszTitle, DWORD dwLabel,
                                      HWND hwndParent, DWORD fCorner, DWORD fMinimize);

/** Starts the clock and the once-a-second figures, and clears the bar. While a transfer
 *  runs it only restarts the clock. Count and size stay: set them for each file.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatStartTransfer(HWND hdlgStat);

/** Brings all figures up to date, at once, and ends the once-a-second figures.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatEndTransfer(HWND hdlgStat);

/** Ends the transfer, posts #WM_XFERSTAT_CLOSED, destroys the window and gives its place
 *  and its language module free. Also needed for a window that its user has closed.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatDestroy(HWND hdlgStat);

/** Shows the names and the size of the file that is transferred.
 *  @param cbSize bytes, up to 4 GiB - 1; 0 means that the size isn't known. No percentage is
 *         shown then, and the bar stays disabled.
 *  @return 0 always. */
int KRHAULAPI nXferStatFileInfo(HWND hdlgStat, const char* pszName1, const char* pszName2,
                                DWORD cbSize);

/** Shows two counts of errors, at once.
 *  @return 0 always. */
int KRHAULAPI nXferStatErrorInfo(HWND hdlgStat, DWORD cErrors1, DWORD cErrors2);

/** Notes the status text, cut to #XFERSTAT_MAXSTATUS characters; a null text changes
 *  nothing. It stays noted for the next window in the same place until it is set anew.
 *  @return 0 always. */
int KRHAULAPI nXferStatStatusInfo(HWND hdlgStat, const char* pszStatus);

/** Notes the bytes moved so far. Cheap: made for the inner loop of a protocol.
 *  @return 0 always. */
int KRHAULAPI nXferStatCountInfo(HWND hdlgStat, DWORD cbCount);

/** Changes the caption button: 0 hides it for good, 1 to 3 give it the first, second or
 *  third caption of the language ("Stop", "Skip", "Close"). Other codes do nothing. */
void KRHAULAPI vXferStatButtonText(HWND hdlgStat, DWORD dwCaption);

/** Does nothing. */
void KRHAULAPI vXferStatDummy(void);

/** The dialog procedure of the status window. Not meant to be called. */
INT_PTR CALLBACK fDlgXferStatProc(HWND hdlgStat, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
