// What the driver can see: the windows, the disk, and the screen. What is waited for gives
// false if it doesn't come for long.
#ifndef KRDEMO_LOOKS_H
#define KRDEMO_LOOKS_H

#include "options.h"

// The folders of the run, and where pictures go.
void setLooks(const DemoOptions* pOptions);

HWND control(int id);

// ---- rows of the lists
int rowOf(int idList, const char* pszName);
POINT rowPoint(int idList, const char* pszName);
bool waitForRow(int idList, const char* pszName);
bool waitForNoRow(int idList, const char* pszName);

// Waits until a list has rows, all of which contain a text.
bool waitForRowsWith(int idList, const char* pszPart);

// Waits until a row lies whole in the visible part of its list.
bool waitForRowInSight(int idList, const char* pszName);

// ---- the rest of the windows
bool waitForIdle();
bool waitForBusy();
bool waitForControl(int id);
bool waitForText(int id, const char* pszText);
bool waitForLog(const char* pszText);
bool waitForCheckedItem(UINT idCommand);

// A box or a dialog of the window, in front of it. Keys that are held while the focus moves are
// lost, so the windows come to rest.
bool isBoxOpen();
bool waitForBox();
bool waitForNoBox();

// A box with exactly this text.
bool waitForQuestion(const char* pszText);

// Waits until the strip shows something else than what had this sum; 0 stands for anything.
DWORD sumOfStrip();
bool waitForOtherStrip(DWORD dwSum);
bool waitForStrip(DWORD dwSum);

// ---- the disk. Names are those of files in the local folder, and in that of the host.
void localPath(char (&szPath)[MAX_PATH], const char* pszName);
void hostPath(char (&szPath)[MAX_PATH], const char* pszName);
bool isThere(const char* pszPath);
bool waitForLocal(const char* pszName);
bool waitForHost(const char* pszName);
bool waitForNoLocal(const char* pszName);
bool waitForNoHost(const char* pszName);
bool areEqual(const char* pszLocalName, const char* pszHostName);

// Takes a picture of a window, or of the transfer window, if pictures were asked for.
void pictureOf(HWND hwnd, const char* pszName);
void picture(const char* pszName);

#endif
