/** @file krhaul.h
 *  @brief The interface of KRHAUL.DLL, for C and C++.
 *
 *  KRHAUL is the user interface of file transfers for terminal emulators. It shows what the
 *  user sees of a transfer; the program that loads it, the caller, has the protocol.
 *
 *  @par What it needs
 *  KRHAUL.DLL loads only where KRUTILS.DLL is found too, of which it calls the functions with
 *  the ordinals 4 (name of the help file), 22 (a command was typed), 41 (an action was done)
 *  and 70 (message box). Windows need a language module besides.
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
 *  Dialogs and message boxes run loops of their own, so a message of the caller's windows,
 *  and through it any export, can arrive before a call that shows one has returned.
 *
 *  @par Texts
 *  All texts are NUL-terminated ANSI strings. The library copies what it keeps; a text needs
 *  to live only through the call. A text that is kept in a field of fixed size is cut to it;
 *  the sizes stand with the calls, #XFER_MAX_NAME for names and paths where nothing else is
 *  said. What is handed on as it is has no limit: texts in file lists, captions, and the file
 *  names of a status window.
 *
 *  @par Errors
 *  No call throws, and none sets the thread's last error on purpose. Results are
 *   - calls beginning with n: 0 for success, #XFER_NOWINDOW or #XFER_NOLANGUAGE;
 *   - calls with f: 1 for success or yes, 0 for failure or no;
 *   - calls with hdlg: a window, or 0;
 *   - calls with v: nothing, unless their text says otherwise.
 *
 *  Bad input (a null pointer, a window that isn't one of the library's, a size out of range)
 *  does no harm. What comes of it stands with each call; unless its text says otherwise, the
 *  call gives its failure result, does nothing and leaves its outputs alone.
 */
#ifndef KRHAUL_H
#define KRHAUL_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Calling convention of every export and callback. */
#define KRHAULAPI __stdcall

/** Characters of a name or path that the library keeps, without the NUL. */
#define XFER_MAX_NAME 259

/** @name Integer results */
/**@{*/
#define XFER_OK 0            /**< Success. */
#define XFER_NOWINDOW (-1)   /**< The window isn't a status window of this library. */
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

/** @return the number in the cell; 0 unless the cell exists and holds a number, so also for a
 *          null list. */
DWORD KRHAULAPI XferFileList_nGetDWord(XferFileList list, LONG nRow, LONG nColumn);

/** Puts a copy of a text of any length into a cell; what was there goes.
 *  @return 1; 0, with nothing changed, as XferFileList_vSetDWord() and for a null text. With
 *         no memory for the copy also 0; the cell is then empty, its row in use. */
int KRHAULAPI XferFileList_fSetString(XferFileList list, LONG nRow, LONG nColumn,
                                      const char* pszText);

/** Copies the text of a cell, cut to the buffer and always with its NUL; the rest of the
 *  buffer is filled with NULs. The buffer becomes the empty string unless the cell exists
 *  and holds a text, so also for a null list.
 *  @param cchBuffer size of the buffer, its NUL included.
 *  @return pszBuffer; null, with nothing written, if it is null or cchBuffer is 0 or less. */
char* KRHAULAPI XferFileList_lpszGetString(XferFileList list, LONG nRow, LONG nColumn,
                                           char* pszBuffer, LONG cchBuffer);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup language Language modules
 *  All dialogs, menus and strings come from a module named "XFR", a language code and
 *  ".DLL", which the platform's library search finds. A code has at most 12 characters.
 *  @{ */

/** Loads the module of a language. The caller frees it with FreeLibrary.
 *  @param phModule receives the module, or 0 on failure. If it is null, nothing is done.
 *  @param pszLanguage language code, such as "EN". A code that is null or too long is that of
 *         no module.
 *  @return #XFER_OK; #XFER_NOLANGUAGE if there is no such module or phModule is null. */
int KRHAULAPI nXferAllocLoadLanguage(HMODULE* phModule, const char* pszLanguage);

/** Frees the module in *phModule, if there is one, and loads another in its place. What
 *  still rests on the old module has to be loaded anew. There is no way back to the old one:
 *  it is also freed, and *phModule then 0, if the new one can't be loaded.
 *  @param phModule,pszLanguage as for nXferAllocLoadLanguage().
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

/** @name Captions of the button, for vXferStatButtonText()
 *  In the words of the language; these are the English ones. */
/**@{*/
#define XFERSTAT_CAPTION_NONE 0  /**< The button is hidden, for good. */
#define XFERSTAT_CAPTION_STOP 1  /**< "Stop". */
#define XFERSTAT_CAPTION_SKIP 2  /**< "Skip". */
#define XFERSTAT_CAPTION_CLOSE 3 /**< "Close". */
/**@}*/

/** Makes a status window in English: hdlgXferStatLangCreate() with the code "EN". */
HWND KRHAULAPI hdlgXferStatCreate(const char* pszTitle, DWORD dwLabel, HWND hwndParent,
                                  DWORD fCorner, DWORD fMinimize);

/** Makes a status window.
 *  @param pszLanguage language code of its module, which the window owns.
 *  @param pszTitle the caption; null leaves it empty.
 *  @param dwLabel 0 names the second file "Saved as", anything else "Host file" (in the
 *         words of the language).
 *  @param hwndParent owner of the window, receiver of its messages; can be 0. With anything
 *         else that isn't a window, none is made.
 *  @param fCorner not 0 puts the window into the top right corner of the screen. Only the
 *         low 16 bits count.
 *  @param fMinimize not 0 starts it as an icon. Only the low 16 bits count.
 *  @return the window, or 0: the module can't be loaded (also for a null code) or has no
 *         template, or the parent isn't a window (no message), or #XFERSTAT_MAXWINDOWS windows
 *         exist (the user is told in a message box). */
HWND KRHAULAPI hdlgXferStatLangCreate(const char* pszLanguage, const char* pszTitle, DWORD dwLabel,
                                      HWND hwndParent, DWORD fCorner, DWORD fMinimize);

/** Starts the clock and the once-a-second figures, and clears the bar. While a transfer
 *  runs it restarts the clock and clears the bar. Count and size stay: set them for each file.
 *  So does the percentage that was shown last; it isn't painted again before another one was.
 *  @return #XFER_OK, also if the platform has no timer left; then no figures come until a later
 *          start gets one. #XFER_NOWINDOW. */
int KRHAULAPI nXferStatStartTransfer(HWND hdlgStat);

/** Brings all figures up to date, at once, and ends the once-a-second figures. Without a start
 *  before it, the elapsed time is that since the system was started.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatEndTransfer(HWND hdlgStat);

/** Ends the transfer, posts #WM_XFERSTAT_CLOSED, destroys the window and gives its place
 *  and its language module free. Also needed for a window that its user has closed.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatDestroy(HWND hdlgStat);

/** Shows the names and the size of the file that is transferred.
 *  @param pszName1,pszName2 the names, of any length; null empties its field.
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

/** Changes the caption button.
 *  @param dwCaption one of the XFERSTAT_CAPTION_ codes; others do nothing. */
void KRHAULAPI vXferStatButtonText(HWND hdlgStat, DWORD dwCaption);

/** Does nothing. */
void KRHAULAPI vXferStatDummy(void);

/** The dialog procedure of the status window. Not meant to be called. */
INT_PTR CALLBACK fDlgXferStatProc(HWND hdlgStat, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup transfer The transfer window
 *  A modeless window with two panes, local above host, a toolbar, a menu, a log (the info
 *  line), a message strip with a thermometer, and a second view mode in which log and
 *  command line take the place of the panes. The library does the local work; what concerns
 *  the host it asks of the caller, through #HostCallbacks.
 *
 *  Order of calls: hdlgXferDandDCreate2(); the message loop, which delivers the first view
 *  mode; vXferDandDSetBusyState() with 0 once the host can take orders; at last
 *  nXferDandDDestroy(). The window starts busy.
 *
 *  Three things reach the caller through no callback. It has to see them by looking at the
 *  window's messages first, with a window procedure of its own before the window's
 *  (SetWindowLongA with GWL_WNDPROC): the command #XFERCMD_REFRESH; WM_COMMAND with IDABORT,
 *  which the stop command sends; and WM_CLOSE, which by itself closes nothing.
 *
 *  Calls with a window that isn't a transfer window of this library, 0 included, do nothing.
 *  Calls with an integer result then give 0, but for nXferDandDDialogBoxParam().
 *  @{ */

/** @name View modes */
/**@{*/
#define XFERVIEW_TWOPANE 0     /**< Two panes. */
#define XFERVIEW_COMMANDLINE 1 /**< Log and command line. */
/**@}*/

/** @name File types, as the user has selected them */
/**@{*/
#define XFERTYPE_TEXT 1      /**< Files are text. */
#define XFERTYPE_BINARY 2    /**< Files are moved as they are. */
#define XFERTYPE_AUTOMATIC 3 /**< The caller finds out for each file. */
/**@}*/

/** @name Commands that only the caller can carry out */
/**@{*/
#define XFERCMD_REFRESH 228 /**< The user wants the host panes filled anew. */
/**@}*/

/** Shows a hint in the message strip: wParam is the id of a string in the window's language
 *  module, which is also a command id, or 0 for no hint. */
#define WM_XFER_SHOWHINT 0x0518

/** What the caller can do on the host.
 *
 *  The first argument of each callback is the dwCallerData of the window; dw1 and dw2 are
 *  always 0. Results aren't used where a callback has none. Texts lie in scratch buffers of
 *  the library: keep a copy. A list belongs to the callback, which destroys it with
 *  XferFileList_vDestroy(). Exported calls may be made from a callback, nXferDandDDestroy()
 *  included.
 *
 *  A null slot is asked for nothing: what would lead to it does nothing and records nothing.
 *  Without pfnConfirmFlags the user is asked before each local delete and removal of what is
 *  selected. The view mode changes also without pfnViewModeChanged. */
typedef struct HostCallbacks {
    /** Size of this table in bytes, as the caller knows it. Slots beyond it count as null.
     *  The creation of a window overwrites it with the size that the library knows. */
    DWORD cbSize;
    /** Send files: column #XFERLIST_LOCAL, with a target name in #XFERLIST_HOST where the
     *  user gave one. pszHostDir is the host directory to send to, or null for the present
     *  one. */
    void(KRHAULAPI* pfnSendFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                  DWORD dw4, const char* pszHostDir);
    /** Receive files: column #XFERLIST_HOST, with a target name in #XFERLIST_LOCAL where the
     *  user gave one. */
    void(KRHAULAPI* pfnReceiveFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                     DWORD dw4);
    /** Delete files: column #XFERLIST_HOST. */
    void(KRHAULAPI* pfnDeleteHostFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                        DWORD dw4);
    /** Rename a file. */
    void(KRHAULAPI* pfnRenameHostFile)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                       const char* pszOldName, const char* pszNewName);
    /** Make a directory. */
    void(KRHAULAPI* pfnMakeHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir);
    /** Change to a directory. fFromList is 1 if the name is a row of the host directory list,
     *  0 if it was typed. */
    void(KRHAULAPI* pfnChangeHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir,
                                      DWORD fFromList);
    /** Remove a directory. fFromList as for pfnChangeHostDir. */
    void(KRHAULAPI* pfnRemoveHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir,
                                      DWORD fFromList);
    /** The only store of the confirmation flags: gives the present flags, and takes new ones
     *  when fSet is 1. Bit value 2 asks before a selected local file is deleted, 4 before a
     *  selected local directory is removed; names that are typed into a dialog are never asked
     *  about. 1, 8 and 16 are the caller's own. */
    DWORD(KRHAULAPI* pfnConfirmFlags)(DWORD dwCallerData, DWORD dwFlags, DWORD fSet);
    /** A raw command of the command line. Optional. */
    void(KRHAULAPI* pfnHostCommand)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                    const char* pszCommand);
    /** Show only the files that pass a filter. */
    void(KRHAULAPI* pfnHostFilter)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszFilter);
    /** The view mode changes to nViewMode. Optional. */
    void(KRHAULAPI* pfnViewModeChanged)(DWORD dwCallerData, DWORD dw1, DWORD dw2, DWORD nViewMode);
    /** Tell details of files: column #XFERLIST_HOST. */
    void(KRHAULAPI* pfnHostFileDetails)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                        XferFileList list);
    /** Show files: column #XFERLIST_HOST. */
    void(KRHAULAPI* pfnViewHostFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                      DWORD dw4);
} HostCallbacks;

/** Makes a transfer window in English: hdlgXferDandDLangCreate2() with the code "EN", and what
 *  stands there of null arguments. */
HWND KRHAULAPI hdlgXferDandDCreate2(const char* pszTitle, HWND hwndParent, HGLOBAL* phRecord,
                                    DWORD dwCallerData, HostCallbacks* pCallbacks, DWORD nViewMode);

/** Makes a transfer window.
 *  @param pszLanguage language code of its module, which the window owns. Null is that of no
 *         module.
 *  @param pszTitle the caption; null leaves it empty.
 *  @param hwndParent the caller's window, or 0. It owns the new window if it has a parent or
 *         owner itself; a top-level window doesn't. It and its parents are disabled while a
 *         modal dialog runs.
 *  @param phRecord receives a handle that nothing needs, and only when a window is made; can
 *         be null. It is stale once the window has gone.
 *  @param dwCallerData first argument of every callback.
 *  @param pCallbacks read once; its cbSize is overwritten with sizeof(HostCallbacks). Null
 *         counts as a table without slots.
 *  @param nViewMode #XFERVIEW_TWOPANE or #XFERVIEW_COMMANDLINE. It takes effect, with
 *         pfnViewModeChanged, when the message loop has run.
 *  @return the window, or 0 with nothing left behind. The user is told, in a message box, if
 *         resources were lacking; a module that can't be loaded or has no template says
 *         nothing. */
HWND KRHAULAPI hdlgXferDandDLangCreate2(const char* pszLanguage, const char* pszTitle,
                                        HWND hwndParent, HGLOBAL* phRecord, DWORD dwCallerData,
                                        HostCallbacks* pCallbacks, DWORD nViewMode);

/** Destroys a transfer window and all that belongs to it, temporary copies of viewed files
 *  included.
 *  @return 0 always. */
int KRHAULAPI nXferDandDDestroy(HWND hdlgDandD);

/** Runs a modal dialog, from the window's language module and owned by the window, with the
 *  window's parent and all its parents disabled.
 *  @return the result of the dialog; -1 if it can't be made, the template or the procedure is
 *         null, or the window isn't a transfer window. */
INT_PTR KRHAULAPI nXferDandDDialogBoxParam(HWND hdlgDandD, const char* pszTemplate,
                                           DLGPROC pfnDialog, LPARAM lParam);

/** Starts (not 0) or ends (0) the busy state, in which the buttons and menu items that would
 *  start a second host operation are switched off, presses on the file lists do nothing, and the
 *  stop command is on. Enter in the host lines and the command line, and double clicks on
 *  directories, still come through: what can't be done beside the running work is the caller's
 *  to refuse. A call with the present flag changes nothing. In command line mode the end gives the
 *  focus to the command line, unless vXferDandDViewFile() was called since the start. */
void KRHAULAPI vXferDandDSetBusyState(HWND hdlgDandD, DWORD fBusy);

/** Selects a file type. Other values than #XFERTYPE_TEXT to #XFERTYPE_AUTOMATIC uncheck the
 *  menu items and leave the toolbar as it is. */
void KRHAULAPI vXferDandDSetFileTypeSelection(HWND hdlgDandD, DWORD nType);

/** @return the selected file type; #XFERTYPE_AUTOMATIC if none is. */
int KRHAULAPI nXferDandDGetFileTypeSelection(HWND hdlgDandD);

/** Shows a text in the message strip, cut to #XFER_MAX_NAME characters, until the next text
 *  or hint. Null counts as empty. */
void KRHAULAPI vXferDandDDisplayDILText(HWND hdlgDandD, const char* pszText);

/** Sets the value that fills the thermometer; 0 if it isn't known, in which case the
 *  position is shown as a number. It stays for later runs. */
void KRHAULAPI vXferDandDSetThermometer(HWND hdlgDandD, LONG nTotal);

/** Sets the position of the thermometer; -1 switches it off, at once. Cheap: it is painted
 *  at most twice a second, so the last position of a run may go unseen. */
void KRHAULAPI vXferDandDUpdateThermometer(HWND hdlgDandD, LONG nPosition);

/** Adds an entry to the log, cut to 260 characters; line ends behind it are dropped. Null
 *  counts as empty. When the log passes 30000 characters its oldest lines go, down to 24000. */
void KRHAULAPI vXferDandDInfoLine(HWND hdlgDandD, const char* pszText);

/** The window procedure of the log. Not meant to be called. */
LRESULT CALLBACK lInfoLineProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);

/** @name Local panes
 *  The window itself brings them up to date whenever it has changed local files or the current
 *  directory of the process, which is the directory that they show. If the caller has changed
 *  that directory, the next command that acts on what they show fills them anew instead. */
/**@{*/
/** Fills the local panes anew. For a caller that has changed local files itself. */
void KRHAULAPI vXferDandDRefreshLocalFiles(HWND hdlgDandD);

/** Adds a file to the local file list, unless it is there, with no refresh.
 *  @param pszName name or path; what follows the last backslash counts. Null does nothing.
 *  @return 0 always. */
int KRHAULAPI nXferDandDAddLocalFileName(HWND hdlgDandD, const char* pszName);
/**@}*/

/** @name Host panes
 *  They show only what the caller puts there, in the order of lstrcmpA, case and all. After
 *  each change of the host directory: nXferDandDClearHostFileList(), which also makes the
 *  ".." row, vXferDandDPrintWorkingDir(), then the directories and files in any order; all of
 *  it inside a busy period, whose end makes the columns as wide as the names, and in which the
 *  lists are drawn only when the message loop runs. Names are cut to #XFER_MAX_NAME
 *  characters; null does nothing, unless the call says otherwise. They are texts to this library
 *  and never reach a local file operation. Results are 0 always. */
/**@{*/
#define XFERCLEAR_FILES 1   /**< The host file list. */
#define XFERCLEAR_SUBDIRS 2 /**< The host directory list, which gets its ".." row anew. */
#define XFERCLEAR_WORKDIR 4 /**< The host path line and the row of the working directory. */
#define XFERCLEAR_FILTER 8  /**< The host filter line. */

/** Clears what the sum of XFERCLEAR_ flags says. */
int KRHAULAPI nXferDandDClearHostFileInfo(HWND hdlgDandD, DWORD dwFlags);

/** Clears all of the host side. */
int KRHAULAPI nXferDandDClearHostFileList(HWND hdlgDandD);

/** Shows the working directory: its row in the directory list, and the host path line. Null
 *  texts count as empty. */
void KRHAULAPI vXferDandDPrintWorkingDir(HWND hdlgDandD, const char* pszRow, const char* pszPath);

/** Adds a subdirectory; one of the same name is replaced. */
int KRHAULAPI nXferDandDAddHostSubDir(HWND hdlgDandD, const char* pszName);

/** Removes a subdirectory, if it is there. */
int KRHAULAPI nXferDandDRemoveHostSubDir(HWND hdlgDandD, const char* pszName);

/** Adds a file, unless it is there. The text is shown as it is given. */
int KRHAULAPI nXferDandDAddHostFileName(HWND hdlgDandD, const char* pszName);

/** Removes a file, if it is there. */
int KRHAULAPI nXferDandDRemoveHostFileName(HWND hdlgDandD, const char* pszName);
/**@}*/

/** @name Window procedures of the lists
 *  Not meant to be called. */
/**@{*/
/** Of the host file list. */
LRESULT CALLBACK lHFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the local file list. */
LRESULT CALLBACK lLFileListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the host directory list. */
LRESULT CALLBACK lHDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the local directory list. */
LRESULT CALLBACK lLDirListProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
/**@}*/

/** @name File dialogs
 *  The commands of the window open them by themselves. */
/**@{*/
/** Shows the transfer dialog with both names and the direction given, so that the user can
 *  change the target name, or cancel, before the protocol starts. A local name that can't be
 *  sent or received onto is refused in the dialog; the host name isn't looked at, and nobody is
 *  asked about overwriting a file. With two empty names the dialog opens blank, and the user
 *  may choose the other direction, which the result doesn't tell.
 *  @param fSend not 0 for a send.
 *  @param pszLocalName,pszHostName buffers of at least #XFER_MAX_NAME + 1 characters. On
 *         acceptance each is overwritten up to that size, with NULs behind the name; else they
 *         stay as they were.
 *  @return 1 if the user accepted; 0 if not, if a name is null, if the dialog can't be shown,
 *          and if the window was destroyed meanwhile. */
int KRHAULAPI fXferDandDConfirmTransfer(HWND hdlgDandD, DWORD fSend, char* pszLocalName,
                                        char* pszHostName);

/** Shows a file: with the quick viewer of the system if it is registered and knows text files,
 *  else with the program KRVIEWER in the folder of the executable. The call doesn't wait for
 *  the viewer. It gives no sign if there is no viewer. What is refused is said in the message
 *  strip: a file name that is null or empty, has more than #XFER_MAX_NAME characters or holds a
 *  double quote, and a control file that can't be written.
 *  @param pszFile the file, as a full path or relative to the current directory.
 *  @param pszHostName null for a plain local file. Else pszFile is a temporary copy of that
 *         host file, which belongs to the viewer from now on: what the quick viewer shows is
 *         deleted with the window (from version 4 of the platform on), KRVIEWER gets a control
 *         file and deletes copy and control file itself.
 *  @param pszText3,pszText4,pszText5 texts for KRVIEWER, not used without a host name; null
 *         counts as empty. Lines of the control file: pszText4, pszText3, pszHostName, pszFile,
 *         pszText5. No text may hold a line end. */
void KRHAULAPI vXferDandDViewFile(HWND hdlgDandD, const char* pszFile, const char* pszHostName,
                                  const char* pszText3, const char* pszText4, const char* pszText5);

/**@}*/

/** @name Procedures of the file dialogs
 *  Not meant to be called. */
/**@{*/
/** Of the transfer dialog. */
INT_PTR CALLBACK fDlgXferDandDTranProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the rename dialog. */
INT_PTR CALLBACK fDlgXferDandDRenProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the delete dialog. */
INT_PTR CALLBACK fDlgXferDandDDelProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the "make directory" dialog. */
INT_PTR CALLBACK fDlgXferDandDMkdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the "remove directory" dialog. */
INT_PTR CALLBACK fDlgXferDandDRmdirProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/** Of the confirmation dialog. */
INT_PTR CALLBACK fDlgXferDandDConfirmProc(HWND hdlg, UINT uMessage, WPARAM wParam, LPARAM lParam);
/**@}*/

/** Puts the keyboard focus where the view mode wants it: the local filter line, with its
 *  text selected, or the command line. */
void KRHAULAPI vXferDandDSetFocus(HWND hdlgDandD);

/** Sets the caption of the window. Null leaves it empty. */
void KRHAULAPI vXferDandDSetTitle(HWND hdlgDandD, const char* pszTitle);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
