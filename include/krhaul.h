/** @file krhaul.h
 *  @brief The interface of KRHAUL.DLL, for C and C++.
 *
 *  KRHAUL is the user interface of file transfers in terminal emulators. It shows the user
 *  what a transfer does; the protocol itself belongs to the program that loads the library, called
 *  the caller.
 *
 *  @par Requirements
 *  KRHAUL.DLL is a 32-bit library. It loads only if KRUTILS.DLL is found too, of which it calls
 *  the functions with the ordinals 4 (name of the help file), 22 (the user typed a command), 41
 *  (the user did something) and 70 (message box). Windows also need a language module.
 *
 *  @par Stability
 *  Names, ordinals, arguments, constants and structures in this header don't change, and
 *  neither do the control ids, commands and strings that a language module must have. A new
 *  version with the same major number may add exports, constants and slots at the end of
 *  #HostCallbacks, and may change texts, pictures and the layout. Nothing else may be relied on:
 *  not the exports without a declaration here, not the record behind a window, not the wording
 *  of a text.
 *
 *  @par Calling convention
 *  Every export and every callback is __stdcall. The names of exports are undecorated.
 *
 *  @par Threads
 *  The library has no thread and no lock. All calls, callbacks and window messages belong on
 *  the one thread that creates the windows and runs the message loop. The windows are
 *  modeless: Tab, Enter and Escape work in them only if that loop passes its messages to
 *  IsDialogMessageA.
 *
 *  @par Re-entry
 *  Dialogs and message boxes run message loops of their own. Before a call that shows one
 *  returns, the caller's windows may receive messages, and their procedures may call any export.
 *
 *  @par Texts
 *  All texts are NUL-terminated ANSI strings. The library copies what it keeps; a text only
 *  has to live until the call returns. A text that is kept in a field of fixed size is cut to
 *  that size, which is stated with the call; for names and paths it is #XFER_MAX_NAME unless
 *  the call says otherwise. Texts that are only passed on have no limit: those in file lists,
 *  captions, and the file names of a status window.
 *
 *  @par Errors
 *  No call throws, and none sets the thread's last error on purpose. Results depend on the
 *  prefix of the name:
 *   - n: 0 for success, #XFER_NOWINDOW or #XFER_NOLANGUAGE;
 *   - f: 1 for success or yes, 0 for failure or no;
 *   - hdlg: a window, or 0;
 *   - v: nothing, unless the text of the call says otherwise.
 *
 *  Invalid arguments (a null pointer, a window that isn't one of the library's, a size out of
 *  range) do no harm. Unless its text says otherwise, such a call returns its failure result,
 *  does nothing and leaves its outputs unchanged.
 */
#ifndef KRHAUL_H
#define KRHAUL_H

#ifdef _WIN64
#error "KRHAUL.DLL is a 32-bit library: compile for 32-bit Windows (x86)"
#endif

#include <windows.h>

/** @name Version of this header
 *  That of the DLL itself is in its version resource; the caller's guide shows how to read it. */
/**@{*/
#define KRHAUL_VERSION_MAJOR 1 /**< Changes when callers have to be changed. */
#define KRHAUL_VERSION_MINOR 0 /**< Changes when something is added. */
/** Both in one number, with which a program can ask for a minimum version. */
#define KRHAUL_VERSION ((KRHAUL_VERSION_MAJOR << 16) | KRHAUL_VERSION_MINOR)
/**@}*/

#ifdef __cplusplus
extern "C" {
#endif

/** Calling convention of every export and callback. */
#define KRHAULAPI __stdcall

/** Longest name or path that the library keeps, in characters without the NUL. */
#define XFER_MAX_NAME 259

/** @name Integer results */
/**@{*/
#define XFER_OK 0            /**< Success. */
#define XFER_NOWINDOW (-1)   /**< The window isn't a status window of this library. */
#define XFER_NOLANGUAGE (-2) /**< The language module can't be loaded. */
/**@}*/

/* -------------------------------------------------------------------------------------- */
/** @defgroup filelist File lists
 *  A table of rows with two typed cells that grows as needed. It carries groups of file names
 *  between the library and the caller. Column 0 holds the local name, column 1 the host name.
 *
 *  Rows and columns are counted from 0. A list belongs to whoever made it until it is passed
 *  on; the receiver destroys it. It has no lock and must be used on one thread at a time.
 *
 *  To build a list, call XferFileList_fCreate(), then XferFileList_fSetSize() with the number of
 *  rows to come, then set the cells of rows 0, 1, 2 and so on. If one call fails, destroy the
 *  list.
 *  @{ */

/** An opaque handle to a list. 0 is no list. */
typedef struct XferFileListHeader* XferFileList;

#define XFERLIST_LOCAL 0 /**< Column of local names. */
#define XFERLIST_HOST 1  /**< Column of host names. */

#define XFERLIST_KEEPGROWTH (-1) /**< For XferFileList_fSetSize(): leave the growth as it is. */

/** Creates an empty list with room for 4 rows, which grows by 16 rows at a time.
 *  @param pList receives the list, or 0 on failure.
 *  @return 1; 0 if memory is short or pList is null. */
int KRHAULAPI XferFileList_fCreate(XferFileList* pList);

/** Frees the list with all its texts. Does nothing for a null list. */
void KRHAULAPI XferFileList_vDestroy(XferFileList list);

/** Makes room, or changes the number of rows in use.
 *
 *  If the new size is above the capacity, the capacity grows by the growth, or to the new size
 *  if that is more. The list may move, in which case *pList is updated. The number of rows in
 *  use stays the same; rows come into use as their cells are set. If the new size is within the
 *  capacity, it becomes the number of rows in use; removed rows lose their cells, added rows
 *  are empty.
 *
 *  @param pList the list; its address may change.
 *  @param cRows new size, 0 or more.
 *  @param cGrowBy how many rows to add from now on when the list has to grow; 0 is valid,
 *         #XFERLIST_KEEPGROWTH keeps the current value.
 *  @return 1; 0 for a null list, a negative size, a size or growth that doesn't fit in 31 bits,
 *         or if memory is short. The list is then unchanged. */
int KRHAULAPI XferFileList_fSetSize(XferFileList* pList, LONG cRows, LONG cGrowBy);

/** Counts the rows.
 *  @return the number of rows in use; 0 for a null list. */
LONG KRHAULAPI XferFileList_cGetSize(XferFileList list);

/** Puts a number into a cell in place of what it held. Rows before it that weren't in use
 *  come into use, empty.
 *  @return 1; 0, with nothing changed, for a null list, a row that is negative or beyond the
 *         capacity set with XferFileList_fSetSize(), or a column other than 0 and 1. */
int KRHAULAPI XferFileList_vSetDWord(XferFileList list, LONG nRow, LONG nColumn, DWORD dwValue);

/** Reads the number in a cell.
 *  @return the number; 0 if there is no such list or cell, or the cell doesn't hold a number. */
DWORD KRHAULAPI XferFileList_nGetDWord(XferFileList list, LONG nRow, LONG nColumn);

/** Puts a copy of a text of any length into a cell in place of what it held.
 *  @return 1; 0, with nothing changed, in the same cases as XferFileList_vSetDWord() and for a
 *         null text. Also 0 if memory for the copy is short; the cell is then empty and its row
 *         in use. */
int KRHAULAPI XferFileList_fSetString(XferFileList list, LONG nRow, LONG nColumn,
                                      const char* pszText);

/** Copies the text of a cell, cut to the buffer and always NUL-terminated; the rest of the
 *  buffer is filled with NULs. If there is no such list or cell, or the cell doesn't hold a
 *  text, the buffer receives the empty string.
 *  @param list the list.
 *  @param nRow row of the cell.
 *  @param nColumn column of the cell.
 *  @param pszBuffer receives the text.
 *  @param cchBuffer size of the buffer in characters, including the NUL.
 *  @return pszBuffer; null, with nothing written, if it is null or cchBuffer is 0 or less. */
char* KRHAULAPI XferFileList_lpszGetString(XferFileList list, LONG nRow, LONG nColumn,
                                           char* pszBuffer, LONG cchBuffer);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup language Language modules
 *  All dialogs, menus and strings come from a DLL called a language module. Its name is "XFR",
 *  a language code of up to 12 characters and ".DLL", and the platform's library search finds
 *  it.
 *  @{ */

/** Loads the module of a language. The caller frees it with FreeLibrary.
 *  @param phModule receives the module, or 0 on failure. If it is null, nothing is done.
 *  @param pszLanguage language code, such as "EN". There is no module for a code that is null
 *         or too long.
 *  @return #XFER_OK; #XFER_NOLANGUAGE if there is no such module or phModule is null. */
int KRHAULAPI nXferAllocLoadLanguage(HMODULE* phModule, const char* pszLanguage);

/** Frees the module in *phModule, if there is one, and loads another in its place. Whatever
 *  was loaded from the old module has to be loaded again. The old module is freed even if the
 *  new one can't be loaded; *phModule is then 0.
 *  @param phModule the module to free, or 0; receives the new one, or 0 on failure.
 *  @param pszLanguage as for nXferAllocLoadLanguage().
 *  @return the same as nXferAllocLoadLanguage(). */
int KRHAULAPI nXferDoLanguageChange(HMODULE* phModule, const char* pszLanguage);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup hoststring Host command strings
 *  A host command string is a template with four escapes, in upper or lower case: \@\@ for an
 *  at sign, \@D for a pause of one second, \@H for the host file name (the local one if that is
 *  empty or "<Automatic>"), and \@L for the local file name. An at sign before anything else isn't
 *  an escape.
 *  @{ */

/** Sends characters to the host. Its arguments are the dwUserData of nXferTranslateHCS(); the
 *  characters, usually not NUL-terminated; their number, at least 1; and a double word that the
 *  callback may write and that nothing reads. It returns 0 to continue; anything else stops the
 *  translation. */
typedef int(KRHAULAPI* XferSendProc)(DWORD dwUserData, const char* pchText, LONG cchText,
                                     DWORD* pdwScratch);

/** Sends a template piece by piece. Invalid escapes are silently dropped. A pause blocks the
 *  thread for a second, during which no message is handled.
 *  @param pszTemplate the template; null counts as empty.
 *  @param pszHostName name of the file on the host; null counts as empty.
 *  @param pszLocalName name of the local file; null counts as empty.
 *  @param pfnSend sends the pieces; null stops at the first of them.
 *  @param dwUserData passed to pfnSend.
 *  @return 0 when everything was sent; -1 when pfnSend stopped, after what was sent before. */
int KRHAULAPI nXferTranslateHCS(const char* pszTemplate, const char* pszHostName,
                                const char* pszLocalName, XferSendProc pfnSend, DWORD dwUserData);

/** Checks whether all escapes of a template are valid.
 *  @param pszTemplate the template; null counts as empty.
 *  @param pdwPosition receives the index of the character that should have completed the
 *         first invalid escape (that of the NUL if the template ends with an at sign); 0 if all
 *         are valid. Can be null.
 *  @return 1 if valid, else 0. */
int KRHAULAPI fXferValidHCS(const char* pszTemplate, DWORD* pdwPosition);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup status The status window
 *  A modeless window that shows a running transfer. A process can have up to
 *  #XFERSTAT_MAXWINDOWS of them. Most calls only store values; once a second, while a transfer
 *  runs, the window turns them into figures.
 *
 *  Order of calls: hdlgXferStatCreate(); for each file nXferStatFileInfo() and
 *  nXferStatStartTransfer(), any number of nXferStatCountInfo(), nXferStatStatusInfo() and
 *  nXferStatErrorInfo(), then nXferStatEndTransfer(); finally nXferStatDestroy().
 *
 *  The user can close the window, which doesn't stop the transfer. Calls on it then do nothing
 *  and return the results of a live window until nXferStatDestroy() frees its slot.
 *
 *  No callback and no message reports a click on the Cancel or the caption button, or the
 *  closing by the user. A caller that wants to know subclasses the window and watches for
 *  WM_COMMAND with #XFERSTAT_CANCEL or #XFERSTAT_BUTTON, and for WM_CLOSE.
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
/** Gives the keyboard focus to the parent of the most recently created status window. */
#define WM_XFERSTAT_FOCUSPARENT 0x8500
/**@}*/

/** @name Captions of the button, for vXferStatButtonText()
 *  In the language of the window; these are the English ones. */
/**@{*/
#define XFERSTAT_CAPTION_NONE 0  /**< Hides the button permanently. */
#define XFERSTAT_CAPTION_STOP 1  /**< "Stop". */
#define XFERSTAT_CAPTION_SKIP 2  /**< "Skip". */
#define XFERSTAT_CAPTION_CLOSE 3 /**< "Close". */
/**@}*/

/** Creates a status window in English: hdlgXferStatLangCreate() with the code "EN". */
HWND KRHAULAPI hdlgXferStatCreate(const char* pszTitle, DWORD dwLabel, HWND hwndParent,
                                  DWORD fCorner, DWORD fMinimize);

/** Creates a status window.
 *  @param pszLanguage language code of its module, which the window owns.
 *  @param pszTitle the caption; null leaves it empty.
 *  @param dwLabel 0 labels the second file name "Saved as", anything else "Host file" (in the
 *         language of the window).
 *  @param hwndParent owner of the window and receiver of its messages; can be 0. If it is
 *         neither 0 nor a window, no status window is created.
 *  @param fCorner not 0 puts the window into the top right corner of the screen. Only the
 *         low 16 bits count.
 *  @param fMinimize not 0 starts it as an icon. Only the low 16 bits count.
 *  @return the window, or 0. If #XFERSTAT_MAXWINDOWS windows exist, a message box tells the
 *         user. There is no message if the module can't be loaded (also for a null code) or has
 *         no template, or if the parent isn't a window. */
HWND KRHAULAPI hdlgXferStatLangCreate(const char* pszLanguage, const char* pszTitle, DWORD dwLabel,
                                      HWND hwndParent, DWORD fCorner, DWORD fMinimize);

/** Starts the clock and the once-a-second figures, and clears the bar. While a transfer
 *  runs it restarts the clock and clears the bar. Count and size stay: set them for each file.
 *  The last percentage also stays, and isn't painted again until a different one has been.
 *  @return #XFER_OK, even if the platform has no timer left, in which case no figures appear
 *          until a later start gets one; #XFER_NOWINDOW. */
int KRHAULAPI nXferStatStartTransfer(HWND hdlgStat);

/** Updates all figures at once and ends the once-a-second updates. If no transfer was started,
 *  the elapsed time is that since the system was started.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatEndTransfer(HWND hdlgStat);

/** Ends the transfer, posts #WM_XFERSTAT_CLOSED, destroys the window and frees its slot and its
 *  language module. Also needed for a window that the user has closed.
 *  @return #XFER_OK or #XFER_NOWINDOW. */
int KRHAULAPI nXferStatDestroy(HWND hdlgStat);

/** Shows the names and the size of the file that is being transferred.
 *  @param hdlgStat the window.
 *  @param pszName1 name of the local file, of any length; null empties the field.
 *  @param pszName2 name of the second file, likewise.
 *  @param cbSize size in bytes, up to 4 GiB - 1; 0 if it isn't known, in which case no
 *         percentage is shown and the bar stays disabled.
 *  @return always 0. */
int KRHAULAPI nXferStatFileInfo(HWND hdlgStat, const char* pszName1, const char* pszName2,
                                DWORD cbSize);

/** Shows at once how many errors there were, and how many retries.
 *  @param hdlgStat the window.
 *  @param cErrors errors.
 *  @param cRetries retries.
 *  @return always 0. */
int KRHAULAPI nXferStatErrorInfo(HWND hdlgStat, DWORD cErrors, DWORD cRetries);

/** Stores the status text, cut to #XFERSTAT_MAXSTATUS characters; a null text changes
 *  nothing. A later window in the same slot still has it until another one is set.
 *  @return always 0. */
int KRHAULAPI nXferStatStatusInfo(HWND hdlgStat, const char* pszStatus);

/** Stores the number of bytes transferred so far. Cheap: meant for the inner loop of a protocol.
 *  @return always 0. */
int KRHAULAPI nXferStatCountInfo(HWND hdlgStat, DWORD cbCount);

/** Sets the caption of the button.
 *  @param hdlgStat the window.
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
 *  line), a message strip with a thermometer, and a second view mode in which the log and a
 *  command line replace the panes. The library does the local work; for anything that concerns
 *  the host it calls the caller through #HostCallbacks.
 *
 *  Order of calls: hdlgXferDandDCreate2(); the message loop, which delivers the first view
 *  mode; vXferDandDSetBusyState() with 0 once the host is ready; finally nXferDandDDestroy().
 *  The window starts busy.
 *
 *  Three things have no callback. The caller sees them by subclassing the window
 *  (SetWindowLongA with GWL_WNDPROC): the command #XFERCMD_REFRESH; WM_COMMAND with IDABORT,
 *  which the stop command sends; and WM_CLOSE, which by itself closes nothing.
 *
 *  Calls with a window that isn't a transfer window of this library, 0 included, do nothing.
 *  Those with an integer result then return 0, except nXferDandDDialogBoxParam().
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
#define XFERTYPE_AUTOMATIC 3 /**< The caller decides for each file. */
/**@}*/

/** @name Commands of the window
 *  For accelerators and menus of the caller: sent as WM_COMMAND, they do what the menu item does,
 *  also while that is disabled. Only XFERCMD_REFRESH does nothing by itself: the caller refills
 *  the host panes. */
/**@{*/
#define XFERCMD_REMOVEDIR 204     /**< Remove the selected directory. */
#define XFERCMD_HELP 205          /**< Show help. */
#define XFERCMD_TRANSFER 206      /**< Send or receive. */
#define XFERCMD_DELETE 217        /**< Delete files. */
#define XFERCMD_MAKEDIR 218       /**< Make a directory. */
#define XFERCMD_RENAME 219        /**< Rename a file. */
#define XFERCMD_CONFIRM 225       /**< Open the confirmation dialog. */
#define XFERCMD_REFRESH 228       /**< The user wants the host panes refilled. */
#define XFERCMD_TYPEAUTO 241      /**< Select #XFERTYPE_AUTOMATIC. */
#define XFERCMD_TYPETEXT 242      /**< Select #XFERTYPE_TEXT. */
#define XFERCMD_TYPEBINARY 243    /**< Select #XFERTYPE_BINARY. */
#define XFERCMD_COMMANDLINE 244   /**< Change to #XFERVIEW_COMMANDLINE. */
#define XFERCMD_TWOPANE 245       /**< Change to #XFERVIEW_TWOPANE. */
#define XFERCMD_VIEW 246          /**< View files. */
#define XFERCMD_DETAILS 247       /**< Show details of files. */
#define XFERCMD_CHANGEDIR 248     /**< Change the directory. */
#define XFERCMD_COPY 249          /**< Copy the selection of the log. */
#define XFERCMD_SAVESELECTION 250 /**< Save the selection of the log. */
#define XFERCMD_SELECTALL 251     /**< Select all of the log. */
#define XFERCMD_HELPSEARCH 252    /**< Search for help. */
#define XFERCMD_STOP 256          /**< Stop: sends WM_COMMAND with IDABORT. */
/**@}*/

/** @name Lists of the panes
 *  The control ids by which a caller tells what has the keyboard focus, such as for accelerators
 *  that work in the lists alone. All are list boxes; those of files allow several selected rows. */
/**@{*/
#define XFERPANE_HOSTDIRS 208   /**< Directories of the host. */
#define XFERPANE_HOSTFILES 209  /**< Files of the host. */
#define XFERPANE_LOCALFILES 223 /**< Local files. */
#define XFERPANE_LOCALDIRS 224  /**< Local directories. */
/**@}*/

/** @name Confirmation flags
 *  The bits of HostCallbacks::pfnConfirmFlags. Each has a check box in the confirmation dialog,
 *  in a group for local or for host files. The library acts on two of them, before it deletes local
 * files or removes local directories that are selected; names that are typed into a dialog are
 * never asked about. The other three are only shown and stored: it is up to the caller to ask the
 * user, also before it deletes host files. */
/**@{*/
#define XFERCONFIRM_LOCALREPLACE 1 /**< Overwriting local files: the caller asks. */
#define XFERCONFIRM_LOCALDELETE 2  /**< Deleting local files: the library asks. */
#define XFERCONFIRM_LOCALRMDIR 4   /**< Removing local directories: the library asks. */
#define XFERCONFIRM_HOSTDELETE 8   /**< Deleting host files: the caller asks. */
#define XFERCONFIRM_HOSTREPLACE 16 /**< Overwriting host files: the caller asks. */
/**@}*/

/** Shows a hint in the message strip: wParam is the id of a string in the window's language
 *  module, which is also a command id, or 0 for no hint. */
#define WM_XFER_SHOWHINT 0x0518

/** What the caller can do on the host.
 *
 *  The first argument of each callback is the dwCallerData of the window; dw1, dw2 and dw4 are
 *  always 0. A list belongs to the callback, which destroys it with XferFileList_vDestroy().
 *  Exports may be called from a callback, including nXferDandDDestroy().
 *
 *  Texts are in scratch buffers of the library that many calls overwrite. A callback copies
 *  its texts before it does anything else. The text of pfnChangeHostDir in particular doesn't
 *  survive any call that adds, removes or refills rows, shows a dialog or a message box, or
 *  handles messages.
 *
 *  A null slot is never called: a command that needs it does nothing and records nothing.
 *  Without pfnConfirmFlags the user is asked before each local deletion and removal of what is
 *  selected. The view mode also changes without pfnViewModeChanged. */
typedef struct HostCallbacks {
    /** Size in bytes of the table that the caller fills in. Slots beyond it count as null.
     *  The creation of a window overwrites it with the size that the library knows. */
    DWORD cbSize;
    /** Send files: column #XFERLIST_LOCAL, with a target name in #XFERLIST_HOST if the user
     *  typed one. pszHostDir is the host directory to send to, or null for the current one. */
    void(KRHAULAPI* pfnSendFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                  DWORD dw4, const char* pszHostDir);
    /** Receive files: column #XFERLIST_HOST, with a target name in #XFERLIST_LOCAL if the user
     *  typed one. */
    void(KRHAULAPI* pfnReceiveFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                     DWORD dw4);
    /** Delete files: column #XFERLIST_HOST. The library doesn't ask the user first. */
    void(KRHAULAPI* pfnDeleteHostFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                        DWORD dw4);
    /** Rename a file. */
    void(KRHAULAPI* pfnRenameHostFile)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                       const char* pszOldName, const char* pszNewName);
    /** Make a directory. */
    void(KRHAULAPI* pfnMakeHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir);
    /** Change to a directory. fFromList is 1 if the name is a row of the host directory list,
     *  0 if the user typed it. */
    void(KRHAULAPI* pfnChangeHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir,
                                      DWORD fFromList);
    /** Remove a directory. fFromList as for pfnChangeHostDir. */
    void(KRHAULAPI* pfnRemoveHostDir)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszDir,
                                      DWORD fFromList);
    /** Keeps the confirmation flags, a sum of XFERCONFIRM_ bits, which nothing else stores:
     *  returns the current flags, after replacing them with dwFlags if fSet is 1. */
    DWORD(KRHAULAPI* pfnConfirmFlags)(DWORD dwCallerData, DWORD dwFlags, DWORD fSet);
    /** Send a raw command, typed on the command line, to the host. */
    void(KRHAULAPI* pfnHostCommand)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                    const char* pszCommand);
    /** Show only the files that pass a filter. */
    void(KRHAULAPI* pfnHostFilter)(DWORD dwCallerData, DWORD dw1, DWORD dw2, const char* pszFilter);
    /** The view mode has changed to nViewMode, an XFERVIEW_ code. */
    void(KRHAULAPI* pfnViewModeChanged)(DWORD dwCallerData, DWORD dw1, DWORD dw2, DWORD nViewMode);
    /** Show details of files: column #XFERLIST_HOST. */
    void(KRHAULAPI* pfnHostFileDetails)(DWORD dwCallerData, DWORD dw1, DWORD dw2,
                                        XferFileList list);
    /** View files: column #XFERLIST_HOST. Fetch a temporary copy of each and pass it to
     *  vXferDandDViewFile(). */
    void(KRHAULAPI* pfnViewHostFiles)(DWORD dwCallerData, DWORD dw1, DWORD dw2, XferFileList list,
                                      DWORD dw4);
} HostCallbacks;

/** Creates a transfer window in English: hdlgXferDandDLangCreate2() with the code "EN". */
HWND KRHAULAPI hdlgXferDandDCreate2(const char* pszTitle, HWND hwndParent, HGLOBAL* phRecord,
                                    DWORD dwCallerData, HostCallbacks* pCallbacks, DWORD nViewMode);

/** Creates a transfer window.
 *  @param pszLanguage language code of its module, which the window owns. There is no module
 *         for a null code.
 *  @param pszTitle the caption; null leaves it empty.
 *  @param hwndParent the caller's window, or 0. It becomes the owner of the new window only if
 *         it has a parent or owner itself; a top-level window doesn't. It and its parents are
 *         disabled while a modal dialog runs.
 *  @param phRecord receives a handle that nothing needs, and only if a window is created; can
 *         be null. The handle is invalid once the window is gone.
 *  @param dwCallerData first argument of every callback.
 *  @param pCallbacks is copied; its cbSize is overwritten with sizeof(HostCallbacks). Null
 *         counts as a table without slots.
 *  @param nViewMode #XFERVIEW_TWOPANE or #XFERVIEW_COMMANDLINE. It takes effect, and
 *         pfnViewModeChanged is called, once the message loop runs.
 *  @return the window, or 0 with nothing left behind. A message box tells the user if resources
 *         were short. There is no message if the module can't be loaded or has no template. */
HWND KRHAULAPI hdlgXferDandDLangCreate2(const char* pszLanguage, const char* pszTitle,
                                        HWND hwndParent, HGLOBAL* phRecord, DWORD dwCallerData,
                                        HostCallbacks* pCallbacks, DWORD nViewMode);

/** Destroys a transfer window and everything that belongs to it, including temporary copies of
 *  viewed files.
 *  @return always 0. */
int KRHAULAPI nXferDandDDestroy(HWND hdlgDandD);

/** Runs a modal dialog from the window's language module, owned by the window. The window's
 *  parent and all parents of that are disabled while it runs.
 *  @return the result of the dialog; -1 if it can't be created, the template or the procedure
 *         is null, or the window isn't a transfer window. */
INT_PTR KRHAULAPI nXferDandDDialogBoxParam(HWND hdlgDandD, const char* pszTemplate,
                                           DLGPROC pfnDialog, LPARAM lParam);

/** Starts (not 0) or ends (0) the busy state. While busy, the buttons and menu items that would
 *  start a second host operation are disabled, clicks on the file lists do nothing, and the
 *  stop command is enabled. Enter in the host lines and the command line, and double clicks on
 *  directories, still reach the caller, which refuses what it can't do at the moment. The busy
 *  state doesn't nest: a call with the current state changes nothing. In command line mode its
 *  end moves the focus to the command line, unless vXferDandDViewFile() was called meanwhile. */
void KRHAULAPI vXferDandDSetBusyState(HWND hdlgDandD, DWORD fBusy);

/** Selects a file type. Other values than #XFERTYPE_TEXT to #XFERTYPE_AUTOMATIC uncheck the
 *  menu items and leave the toolbar as it is. */
void KRHAULAPI vXferDandDSetFileTypeSelection(HWND hdlgDandD, DWORD nType);

/** Tells which file type is selected.
 *  @return the file type; #XFERTYPE_AUTOMATIC if none is selected. */
int KRHAULAPI nXferDandDGetFileTypeSelection(HWND hdlgDandD);

/** Shows a text in the message strip, cut to #XFER_MAX_NAME characters, until the next text
 *  or hint. Null counts as empty. */
void KRHAULAPI vXferDandDDisplayDILText(HWND hdlgDandD, const char* pszText);

/** Sets the value at which the thermometer is full; 0 if it isn't known, in which case the
 *  position is shown as a number. It stays set for later runs. */
void KRHAULAPI vXferDandDSetThermometer(HWND hdlgDandD, LONG nTotal);

/** Sets the position of the thermometer; -1 switches it off at once. Cheap: it is painted
 *  at most twice a second, so the last position of a run may never be seen. */
void KRHAULAPI vXferDandDUpdateThermometer(HWND hdlgDandD, LONG nPosition);

/** Adds an entry to the log, cut to 260 characters; line ends at its end are dropped. Null
 *  counts as empty. When the log exceeds 30000 characters, its oldest lines are removed until it
 *  has at most 24000. */
void KRHAULAPI vXferDandDInfoLine(HWND hdlgDandD, const char* pszText);

/** The window procedure of the log. Not meant to be called. */
LRESULT CALLBACK lInfoLineProc(HWND hwnd, UINT uMessage, WPARAM wParam, LPARAM lParam);

/** @name Local panes
 *  They show the current directory of the process. The window updates them whenever it has
 *  changed local files or that directory itself. If the caller has changed the directory, the
 *  next command that would act on the rows refills them instead. */
/**@{*/
/** Refills the local panes. For a caller that has changed local files itself. */
void KRHAULAPI vXferDandDRefreshLocalFiles(HWND hdlgDandD);

/** Adds a file to the local file list, unless it is there already, without a refresh.
 *  @param hdlgDandD the window.
 *  @param pszName name or path; only what follows the last backslash counts. Null does nothing.
 *  @return always 0. */
int KRHAULAPI nXferDandDAddLocalFileName(HWND hdlgDandD, const char* pszName);
/**@}*/

/** @name Host panes
 *  They show only what the caller puts there, in the case-sensitive order of lstrcmpA. After
 *  each change of the host directory call nXferDandDClearHostFileInfo() or
 *  nXferDandDClearHostFileList(), which also add the ".." row, vXferDandDPrintWorkingDir(), then
 *  add the directories and files in any order. Do so within a busy period: its end adapts the
 *  columns to the names, and during it the lists are drawn only when the message loop runs. Names
 *  are cut to #XFER_MAX_NAME characters; null does nothing, unless the call says otherwise. To the
 *  library they are mere texts: it never passes them to a local file operation. All calls return
 *  0. */
/**@{*/
#define XFERCLEAR_FILES 1   /**< The host file list. */
#define XFERCLEAR_SUBDIRS 2 /**< The host directory list; its ".." row is added again. */
#define XFERCLEAR_WORKDIR 4 /**< The host path line and the row of the working directory. */
#define XFERCLEAR_FILTER 8  /**< The host filter line. */

/** Clears some of the host side. dwFlags is a sum of XFERCLEAR_ bits; to refill the panes without
 *  losing the user's filter, leave out #XFERCLEAR_FILTER. */
int KRHAULAPI nXferDandDClearHostFileInfo(HWND hdlgDandD, DWORD dwFlags);

/** Clears all of the host side, including the filter line. */
int KRHAULAPI nXferDandDClearHostFileList(HWND hdlgDandD);

/** Shows the working directory, as a row of the directory list and in the host path line. Null
 *  texts count as empty. */
void KRHAULAPI vXferDandDPrintWorkingDir(HWND hdlgDandD, const char* pszRow, const char* pszPath);

/** Adds a subdirectory; one of the same name is replaced. */
int KRHAULAPI nXferDandDAddHostSubDir(HWND hdlgDandD, const char* pszName);

/** Removes a subdirectory, if there is one of that name. */
int KRHAULAPI nXferDandDRemoveHostSubDir(HWND hdlgDandD, const char* pszName);

/** Adds a file, unless it is there already. The text is shown as it is. */
int KRHAULAPI nXferDandDAddHostFileName(HWND hdlgDandD, const char* pszName);

/** Removes a file, if there is one of that name. */
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
 *  The commands of the window open them; these calls are for the caller's own use. */
/**@{*/
/** Shows the transfer dialog with both names and the direction filled in, so that the user can
 *  change the target name or cancel before the protocol starts. The dialog doesn't accept a local
 *  name that can't be sent, or that can't be received to; it doesn't check the host name, and
 *  doesn't ask about overwriting a file. With two empty names the dialog opens blank, and the
 *  user may choose the other direction, which the result doesn't tell.
 *  @param hdlgDandD the window.
 *  @param fSend not 0 to send.
 *  @param pszLocalName buffer of at least #XFER_MAX_NAME + 1 characters. If the user accepts, it
 *         is overwritten up to that size, with NULs after the name; otherwise it is unchanged.
 *  @param pszHostName buffer of the same kind.
 *  @return 1 if the user accepted; 0 if not, if a name is null, if the dialog can't be shown, or
 *          if the window was destroyed meanwhile. */
int KRHAULAPI fXferDandDConfirmTransfer(HWND hdlgDandD, DWORD fSend, char* pszLocalName,
                                        char* pszHostName);

/** Shows a file in a viewer: the quick viewer of the system if it is registered and handles text
 *  files, otherwise the program KRVIEWER in the folder of the executable. The call doesn't wait
 *  for the viewer. File names that are null or empty, longer than #XFER_MAX_NAME characters or
 *  contain a double quote are refused with a text in the message strip.
 *
 *  If there is no viewer, nothing happens and nothing is reported. A temporary copy and its
 *  control file then stay in the temporary folder. A caller that wants to know beforehand looks
 *  for KRVIEWER.EXE beside its executable, as the caller's guide shows.
 *  @param hdlgDandD the window.
 *  @param pszFile the file, as a full path or relative to the current directory.
 *  @param pszHostName null for a plain local file. Otherwise pszFile is a temporary copy of that
 *         host file, which the caller hands over: if the quick viewer shows it, it is deleted
 *         with the window (from version 4 of the platform on); KRVIEWER gets a control file, and
 *         deletes both the copy and the control file.
 *  @param pszText3 second line of the control file for KRVIEWER. The five lines are pszText4,
 *         pszText3, pszHostName, pszFile and pszText5, and no text may contain a line end.
 *         Without a host name it is unused; null counts as empty.
 *  @param pszText4 first line, likewise.
 *  @param pszText5 last line, likewise. */
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

/** Moves the keyboard focus to the local filter line, selecting its text, or in command line
 *  mode to the command line. */
void KRHAULAPI vXferDandDSetFocus(HWND hdlgDandD);

/** Sets the caption of the window. Null leaves it empty. */
void KRHAULAPI vXferDandDSetTitle(HWND hdlgDandD, const char* pszTitle);
/** @} */

/* -------------------------------------------------------------------------------------- */
/** @defgroup help Help contexts
 *  A help request calls WinHelpA with the file that KrGetHelpFile() of KRUTILS names, the command
 *  HELP_CONTEXT and one of these numbers. "Search for Help on" uses HELP_PARTIALKEY and an empty
 *  key.
 *  @{ */
#define XFERHELP_VIEW 801      /**< View dialog. */
#define XFERHELP_CHANGEDIR 802 /**< Change directory dialog. */
#define XFERHELP_TRANSFER 812  /**< Transfer window. */
#define XFERHELP_DELETE 813    /**< Delete dialog. */
#define XFERHELP_RENAME 814    /**< Rename dialog. */
#define XFERHELP_COPY 815      /**< Transfer dialog. */
#define XFERHELP_MAKEDIR 816   /**< Make directory dialog. */
#define XFERHELP_REMOVEDIR 817 /**< Remove directory dialog. */
#define XFERHELP_CONFIRM 818   /**< Confirmation dialog. */
#define XFERHELP_STATUS 990    /**< Status window. */
/** @} */

#ifdef __cplusplus
}
#endif

#endif
