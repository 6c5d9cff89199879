// What the robot can see: the windows of the program that it works, the disk, and the screen.
// What is waited for returns false if it doesn't come for long.
#ifndef ROBOT_LOOKS_H
#define ROBOT_LOOKS_H

#include "../../resources/ids.h"

#include <windows.h>

#include <functional>
#include <string>

namespace robot {

// ---- the program

// Starts a program that lies beside this one.
bool startProgram(const std::string& name, const std::string& arguments);

// Asks it to close and waits for its end. Returns false if it fails or has to be ended.
bool endProgram();

// A window of the program with this control in it, or any with 0; null if there is none in sight.
HWND findWindow(int idControl);

// Waits for such a window, which is the one that is driven from then on.
bool waitForWindow(int idControl);
HWND window(); // null once it has gone
HWND control(int id);

// Looks again and again until the condition holds.
bool waitFor(const std::function<bool()>& holds);

// Lets the windows come to rest, so that a picture shows them finished.
void rest();

// ---- rows of the lists
int rowOf(int idList, const char* name);
POINT rowPoint(int idList, const char* name);
bool waitForRow(int idList, const char* name);
bool waitForNoRow(int idList, const char* name);

// Waits until a row lies whole in the visible part of its list.
bool waitForRowInSight(int idList, const char* name);

// ---- the rest of the windows
std::string textOf(HWND hwnd);
bool waitForIdle();
bool waitForBusy(); // a status window is there
bool waitForControl(int id);
bool waitForText(int id, const char* text);
bool waitForLog(const char* text);
bool waitForCheckedButton(UINT idCommand);

// A box or a dialog of the window, in front of it. Keys that are held while the focus moves are
// lost, so the windows come to rest.
bool isBoxOpen();
bool waitForBox();
bool waitForNoBox();

// A box with exactly this text.
bool waitForQuestion(const char* text);

// Waits until the strip shows something else than what had this sum, or the same again.
DWORD sumOfStrip();
bool waitForOtherStrip(DWORD sum);
bool waitForStrip(DWORD sum);

// ---- the disk. Names are those of files in the local folder, and in that of the host.
void setFolders(const char* pictures, const char* local, const char* host);
std::string localPath(const std::string& name);
std::string hostPath(const std::string& name);
bool isThere(const std::string& path); // can be a pattern
bool waitForLocal(const char* name);
bool waitForHost(const char* name);
bool waitForNoLocal(const char* name);
bool waitForNoHost(const char* name);
bool areEqual(const char* localName, const char* hostName);

// Takes a picture of a part of the screen, of a window, or of the driven one.
void takePictureOf(const RECT& rc, const char* name);
void takePictureOf(HWND hwnd, const char* name);
void takePictureOf(const char* name);

} // namespace robot

#endif
