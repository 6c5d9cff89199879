// The panes: what fills the lists on both sides, and what the user does in them. Each group is
// one source file. The exported calls stand in krhaul.h.
#ifndef TRANSFER_PANES_H
#define TRANSFER_PANES_H

#include "rows.h"

#include <sys/stat.h>

// locallist.cpp: the local panes.
UINT nXferDandDTypePatternId(LRESULT nTypeRow);
int nXferDandDRemoveLocalFileName(HWND hdlgDandD, const char* pszName);

// Whether the names in the local panes mean what stands in the current directory of the
// process. If that is another one by now, the panes are filled anew.
bool fXferDandDShowsHere(XferWindowRecord* pRecord);

// The same for the names of files: a path in the filter line, which Enter hasn't followed,
// fills the list with files of its own directory. The log says so.
bool fXferDandDShowsFilesHere(XferWindowRecord* pRecord);

// drives.cpp: the drive list and the list of file types.
void vXferDandDFillDriveList(HWND hdlgDandD);
void vXferDandDFillTypeList(HWND hdlgDandD, HMODULE hLanguage);

// Finds the row of a drive, which is 1 for A:. Gives the row, or CB_ERR if it has none.
LRESULT nXferDandDFindDriveRow(HWND hdlgDandD, LONG nDrive);

// drawitem.cpp: a row of an owner-drawn list.
void vXferDandDDrawListItem(HWND hdlgDandD, XferWindowRecord* pRecord, const DRAWITEMSTRUCT* pDraw);

// pathline.cpp: Enter and double clicks. Gives 1 if the control is one that they mean something
// to.
int fXferDandDActivate(HWND hdlgDandD, XferWindowRecord* pRecord, HWND hwndControl);
void vXferDandDApplyLocalFilter(HWND hdlgDandD);

// The path of an ancestor row of the local directory list.
void vXferDandDAncestorPath(const XferWindowRecord* pRecord, const XferRow* pRow,
                            char (&szPath)[XFER_NAME_SIZE]);

// Says in the log that a local file or directory can't be had. Only cchFormat characters of
// the format count, at most 80.
void vXferDandDReportLocalFailure(HWND hdlgDandD, const XferWindowRecord* pRecord,
                                  const char* pszName, int cchFormat);

// drag.cpp: the drag itself. Gives the id of the list under the pointer at its end, or 0.
int nXferDandDTrackDrag(HWND hdlgDandD, int idSource, int idFileTarget, int idDirTarget);

// drop.cpp: what follows a drag, or the transfer command.
enum XferDirection { XFERDIR_RECEIVE = 0, XFERDIR_SEND = 1 };
void vXferDandDDropOn(XferWindowRecord* pRecord, int idSource, int idTarget,
                      XferDirection direction, bool fOnDirList);

// Makes a list of the selected rows' names, in one column; nAction is what each name is
// recorded as, or 0. Gives 1, or 0 with no list.
int fXferDandDListSelection(const XferWindowRecord* pRecord, int idSource, LONG nColumn,
                            int nAction, XferFileList* pList);

// Whether the caller transfers in this direction at all.
bool fXferDandDIsServed(const XferWindowRecord* pRecord, XferDirection direction);

// Hands a list of names to the caller that serves the direction, who owns it from then on.
void vXferDandDHandOver(const XferWindowRecord* pRecord, XferDirection direction, XferFileList list,
                        const char* pszHostDir);

// Gives 1, also when nothing was selected, or 0 when nobody takes the files, the directory can't
// be entered or the list not be made. *pList is the list that was handed over; it isn't ours any
// more.
int fXferDandDTransferSelection(XferWindowRecord* pRecord, int idSource, XferDirection direction,
                                XferFileList* pList, const char* pszDir);

// commands.cpp: while it is set, a change of selection leaves the text of the strip alone.
void vXferDandDKeepStripText(bool fKeep);

// details.cpp: lines in the style of a directory listing.
void vXferDandDFileDetails(HWND hdlgDandD, const char* pszName);
int nXferDandDFileStat(const char* pszPath, struct _stat* pStat);

#endif
