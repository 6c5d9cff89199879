// Modal dialogs and message boxes, which run inside the call that opens them: what a test does
// in them is handed over before.
#ifndef TESTS_SUPPORT_MODAL_H
#define TESTS_SUPPORT_MODAL_H

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Is asked again and again, whenever the dialog or box that the user could work in has nothing
// else to do, until it gives true.
using ModalStep = std::function<bool(HWND hdlg)>;

// Makes the call and meanwhile takes the steps one after the other. hwndMain is no dialog to
// them. The test fails if a step isn't taken, or if something is still open 20 seconds after
// the last.
void runModal(HWND hwndMain, const std::function<void()>& call, std::vector<ModalStep> steps);

// What a key and a click bring to a dialog.
void pressKey(HWND hdlg, WORD vk);
void pressButton(HWND hdlg, int id);

// Puts a text in the place of what an edit control holds, as the clipboard does.
void replaceText(HWND hdlg, int id, const std::string& text);

#endif
