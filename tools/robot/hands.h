// What the robot does to the window that it drives, by real input.
#ifndef ROBOT_HANDS_H
#define ROBOT_HANDS_H

#include "user.h"

namespace robot {

// Chooses a menu item by the mnemonics of its popup and of itself.
void chooseMenu(WORD vkPopup, WORD vkItem);

// The middle of a toolbar button, and a click there.
POINT toolPoint(UINT idCommand);
void clickTool(UINT idCommand);

// Overwrites a line; the second one presses Enter behind it.
void typeInto(int idLine, const char* text);
void typeLine(int idLine, const char* text);

// Waits for the question and says yes. Returns false if it doesn't come.
bool sayYesTo(const char* question);

// Opens a drop-down list, goes to a row by a key and takes it.
void chooseInList(int idCombo, WORD vk);

// Clicks on a row, once nothing is running. Returns false if it doesn't become selected.
bool selectRow(int idList, const char* name);

// Selects a row and the one below it.
bool selectTwoRows(int idList, const char* name);

// Takes hold of a row and moves to a point, where the button still has to be released.
void dragRow(int idList, const char* name, POINT ptTo);

// Brings the local panes back to the folder of the run.
bool goHome();

} // namespace robot

#endif
