// A transfer window, in a directory of its own, with a caller that writes down what it is asked.
#ifndef TESTS_SUPPORT_PANE_WINDOW_H
#define TESTS_SUPPORT_PANE_WINDOW_H

#include "../../include/krhaul.h"
#include "imports.h"
#include "strict.h"
#include "windows.h"

#include <gtest/gtest.h>
#include <functional>
#include <string>
#include <vector>

typedef std::vector<std::string> Strings;

HMODULE library();

std::string lower(std::string text);
Strings split(const std::string& text, char chAt = ' ');

// What KRUTILS has recorded since the last call, a line each.
Strings recorded();

// Runs something inside each call that tells KRUTILS of an action or a command, in place of the
// call. One at a time.
class InRecord {
public:
    explicit InRecord(std::function<void()> act);

private:
    ReplacedImport m_action, m_command;
};

// A new directory, current while the object lives; removed with all that is in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // In lower case, with no backslash at the end.
    const std::string& path() const
    {
        return m_path;
    }
    std::string path(const std::string& name) const
    {
        return m_path + "\\" + name;
    }
    void makeFile(const std::string& name, size_t cb = 0) const;
    void makeFiles(const Strings& names) const;
    void makeDirs(const Strings& names) const;
    void enter() const;
    bool holds(const std::string& name) const;
    // All that is in it and below, in order.
    Strings names() const;

private:
    std::string m_path, m_before;
};

std::string currentDir();

// The bytes of a file; empty also if there is none.
std::string contentsOf(const std::string& path);

struct XferWindowRecord;

class PaneWindow : public testing::Test {
protected:
    PaneWindow();
    ~PaneWindow() override;

    // Makes a window of this caller, with nothing handled yet.
    HWND createOnly(HWND hwndParent, DWORD nViewMode = XFERVIEW_TWOPANE);
    // Makes m_hwnd, and handles messages until its first mode has come.
    void create(DWORD nViewMode = XFERVIEW_TWOPANE);
    // The same, and it is idle.
    void open(DWORD nViewMode = XFERVIEW_TWOPANE);
    void close();
    void setMode(DWORD nViewMode) const;
    // Sizes the client area.
    void setClientSize(LONG cx, LONG cy) const;
    // What the dialog procedure itself gives for a message.
    INT_PTR ask(UINT uMessage, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Lists that show paint their scroll bars at each new row: for tests with many rows.
    void hide() const
    {
        ShowWindow(m_hwnd, SW_HIDE);
    }

    XferWindowRecord* record() const
    {
        return reinterpret_cast<XferWindowRecord*>(GetWindowLongA(m_hwnd, DWL_USER));
    }
    HWND item(int idControl) const
    {
        return GetDlgItem(m_hwnd, idControl);
    }
    LRESULT tell(int idControl, UINT uMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendDlgItemMessageA(m_hwnd, idControl, uMessage, wParam, lParam);
    }
    void command(UINT id) const
    {
        SendMessageA(m_hwnd, WM_COMMAND, id, 0);
    }
    void notify(int idControl, UINT nNotification) const;

    // Returns the focus to a control and presses Enter on it.
    void enter(int idControl) const;
    void type(int idControl, const std::string& text) const;
    std::string text(int idControl) const
    {
        return textOf(m_hwnd, idControl);
    }

    // Rows of a list box or of the drive list.
    Strings rows(int idControl) const;
    LONG rowOf(int idControl, const std::string& text) const;
    void selectRow(int idDirList, const std::string& text) const;
    // In a file list, with no notification.
    void selectFiles(int idFileList, const Strings& names) const;
    // The same, with nothing selected in the other list.
    void selectOnly(int idFileList, const Strings& names) const;
    Strings selected(int idFileList) const;
    LONG columnWidth(int idFileList) const;

    // Makes the test's directory current and fills the panes with it.
    void goHome() const;

    // The usual host side: "..", the working directory "/work", "one" and "two", and files.
    void feedHost(const Strings& files) const;

    // The text of the message strip, which shows nowhere else.
    std::string stripText() const;
    // A string of the window's language.
    std::string english(UINT id) const
    {
        return stringOf(m_hEnglish, id);
    }
    // Entries of the log, oldest first.
    Strings log() const;

    // What the caller has been asked since the last call: the name of the request and what
    // came with it. Names of a list stand in the order of its rows.
    Strings requests();
    // The requests and behind them what KRUTILS has recorded, with "|" between them.
    std::string heard();

    TempDir m_dir;
    ParentWindow m_parent;
    StrictPlatform m_strict;
    HostCallbacks m_callbacks;
    HMODULE m_hEnglish = LoadLibraryA("XFREN.DLL");
    HWND m_hwnd = nullptr;
    DWORD m_dwConfirm = 0;
    // Run inside each request, and inside a change of the mode.
    std::function<void()> m_inRequest, m_whenModeChanges;
    std::vector<DWORD> m_modes; // that the caller was told

private:
    struct Caller;
    friend struct Caller;
    void hear(const std::string& request);
    Strings m_requests;
};

#endif
