/* Every number that code and resources share: control ids, grouped by dialog template, then
   commands, strings and bitmaps. Plain #defines, because the resource compiler reads this
   file too. IDOK and IDCANCEL are the platform's; a template has them where nothing else is
   said. */
#ifndef KRHAUL_IDS_H
#define KRHAUL_IDS_H

/* DLGXFER, the status window. 2 (IDCANCEL) is its Cancel; it has no OK. */
#define IDC_STAT_NAME1 100
#define IDC_STAT_NAME2 101
#define IDC_STAT_SIZE 102
#define IDC_STAT_ERRORS1 103
#define IDC_STAT_ERRORS2 104
#define IDC_STAT_STATUS 105
#define IDC_STAT_BAR 106
#define IDC_STAT_COUNT 107
#define IDC_STAT_REMAINING 108
#define IDC_STAT_RATE 109
#define IDC_STAT_ELAPSED 110
#define IDC_STAT_TIMELEFT 111
#define IDC_STAT_BUTTON 112
#define IDC_STAT_HELP 114
#define IDC_STAT_LABEL 115
#define IDC_STAT_PARENT 201

/* DLGDANDD, the transfer window. It has neither OK nor Cancel. */
#define IDC_DANDD_INFOLINE 201
#define IDC_DANDD_LOCALFILTER 207
#define IDC_DANDD_HOSTDIRS 208
#define IDC_DANDD_HOSTFILES 209
#define IDC_DANDD_HOSTFILTER 210
#define IDC_DANDD_LOCALDRIVES 211
#define IDC_DANDD_LOCALTYPES 213
#define IDC_DANDD_LOCALPATH 221
#define IDC_DANDD_HOSTPATH 222
#define IDC_DANDD_LOCALFILES 223
#define IDC_DANDD_LOCALDIRS 224
#define IDC_DANDD_LOCALFILTERLABEL 226
#define IDC_DANDD_HOSTFILTERLABEL 227
#define IDC_DANDD_LOCALPATHLABEL 229
#define IDC_DANDD_HOSTPATHLABEL 230
#define IDC_DANDD_LOCALDRIVESLABEL 232
#define IDC_DANDD_COMMANDLABEL 237
#define IDC_DANDD_COMMANDLINE 238
#define IDC_DANDD_TOOLBAR 240
/* The number is that of a command as well; a static control sends none. */
#define IDC_DANDD_BAND 241
#define IDC_DANDD_STRIP 255

/* DLGCOPY, the transfer dialog. */
#define IDC_COPY_SEND 102
#define IDC_COPY_RECEIVE 103
#define IDC_COPY_SOURCE 104
#define IDC_COPY_TARGET 105
#define IDC_COPY_HELP 107

/* DLGVIEW. */
#define IDC_VIEW_LOCAL 101
#define IDC_VIEW_HOST 102
#define IDC_VIEW_NAME 103
#define IDC_VIEW_HELP 104

/* DLGRENAME. */
#define IDC_RENAME_OLDNAME 101
#define IDC_RENAME_NEWNAME 102
#define IDC_RENAME_LOCAL 104
#define IDC_RENAME_HOST 105
#define IDC_RENAME_HELP 107

/* DLGDEL. */
#define IDC_DEL_LOCAL 101
#define IDC_DEL_HOST 102
#define IDC_DEL_NAME 104
#define IDC_DEL_HELP 105

/* DLGMKDIR, DLGDANDRMDIR and DLGCHDIR, which differ in their texts only. */
#define IDC_DIR_LOCAL 101
#define IDC_DIR_HOST 102
#define IDC_DIR_NAME 103
#define IDC_DIR_HELP 104

/* DLGCONFIRM. The check boxes don't stand in the order of their bits (2, 4, 1, 8, 16). */
#define IDC_CONFIRM_HELP 105
#define IDC_CONFIRM_LOCALDELETE 107
#define IDC_CONFIRM_LOCALRMDIR 108
#define IDC_CONFIRM_LOCALREPLACE 109
#define IDC_CONFIRM_HOSTDELETE 110
#define IDC_CONFIRM_HOSTREPLACE 111

/* FILEOPEN has the ids of the platform's own file dialogs, which stand in <dlgs.h>. */

/* Commands of the transfer window. The string of the same number is the hint of the menu
   item or toolbar button. */
#define IDM_XFER_REMOVEDIR 204
#define IDM_XFER_HELP 205
#define IDM_XFER_TRANSFER 206
#define IDM_XFER_DELETE 217
#define IDM_XFER_MAKEDIR 218
#define IDM_XFER_RENAME 219
#define IDM_XFER_CONFIRM 225
#define IDM_XFER_REFRESH 228
#define IDM_XFER_TYPEAUTO 241
#define IDM_XFER_TYPETEXT 242
#define IDM_XFER_TYPEBINARY 243
#define IDM_XFER_COMMANDLINE 244
#define IDM_XFER_TWOPANE 245
#define IDM_XFER_VIEW 246
#define IDM_XFER_DETAILS 247
#define IDM_XFER_CHANGEDIR 248
#define IDM_XFER_COPY 249
#define IDM_XFER_SAVESELECTION 250
#define IDM_XFER_SELECTALL 251
#define IDM_XFER_HELPSEARCH 252
#define IDM_XFER_STOP 256

/* Strings of the transfer window. */
#define IDS_RMDIR_CAPTION 398
#define IDS_DELETE_CAPTION 399
#define IDS_DELETE_TEXT 428
#define IDS_RMDIR_TEXT 429
#define IDS_SAVE_FAILED 454
#define IDS_SAVE_TITLE 1036
#define IDS_LOCAL_FAILED 1507
#define IDS_TYPE1_NAME 1528
#define IDS_TYPE1_MASK 1529
#define IDS_TYPE2_NAME 1530
#define IDS_TYPE2_MASK 1531
#define IDS_DRIVE_FAILED 1555
#define IDS_SELECTION_SUM 1556
#define IDS_HOSTDIR_FIXED 1559
#define IDS_DROP_FAILED 1560
#define IDS_THERMO_COUNT 1562

/* Hints of the popups of the menu, in their order. */
#define IDS_POPUP1_HINT 3100
#define IDS_POPUP2_HINT 3101
#define IDS_POPUP3_HINT 3102
#define IDS_POPUP4_HINT 3103
#define IDS_POPUP5_HINT 3104

/* Strings of the status window. IDS_NOT_KNOWN is also the hint of a menu item without one
   of its own, both kinds of windows use IDS_NO_RESOURCES. */
#define IDS_STAT_LABEL 1500
#define IDS_NO_RESOURCES 1501
#define IDS_NOT_KNOWN 1503
#define IDS_STAT_BUTTON1 1504
#define IDS_STAT_BUTTON2 1505
#define IDS_STAT_BUTTON3 1506

/* The strip of toolbar pictures, in the library itself. */
#define IDB_TOOLBAR 240

#endif
