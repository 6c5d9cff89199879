// What the driver does to the transfer window, by real input.
#ifndef KRDEMO_HANDS_H
#define KRDEMO_HANDS_H

#include "user.h"

// Chooses a menu item by the mnemonics of its popup and of itself.
void chooseMenu(WORD vkPopup, WORD vkItem);

// The middle of a toolbar button, and a click there.
POINT toolPoint(UINT idCommand);
void clickTool(UINT idCommand);

// Overwrites a line; the second one presses Enter behind it.
void typeInto(int idLine, const char* pszText);
void typeLine(int idLine, const char* pszText);

// Waits for the question and says yes. Gives false if it doesn't come.
bool sayYesTo(const char* pszQuestion);

// Opens a drop-down list, goes to a row by a key and takes it.
void chooseInList(int idCombo, WORD vk);

// Clicks on a row, once nothing is running. Gives false if it doesn't become selected.
bool selectRow(int idList, const char* pszName);

// Takes hold of a row and moves to a point, where the button still has to be released.
void dragRow(int idList, const char* pszName, POINT ptTo);

// Brings the local panes back to the folder of the run.
bool goHome();

#endif
