// A platform as strict as its documentation, where that of the tests is more lenient or keeps
// handles for longer than some versions do.
#ifndef TESTS_SUPPORT_STRICT_H
#define TESTS_SUPPORT_STRICT_H

#include "imports.h"

#include <functional>
#include <string>
#include <vector>

// Serves the library for as long as the object lives, and fails the test at its end for calls that
// some version of the platform doesn't forgive:
// - Texts of the system come in the system's own language (0) alone.
// - A multi-line edit scrolls to its selection by EM_SCROLLCARET alone, and can be too low for a
//   line.
// - A single-selection list without a selected row takes LB_SETCARETINDEX with -1, and scrolls to
//   it.
// - The heap is asked for blocks alone.
// - The handle of a window that has gone is that of another window at once.
// - A window that has just been made is painted later, or, if a test says so, inside its creation.
class StrictPlatform : private ReplacedImports {
public:
    StrictPlatform();
    ~StrictPlatform();
    StrictPlatform(const StrictPlatform&) = delete;
    StrictPlatform& operator=(const StrictPlatform&) = delete;

    // Whether windows are painted inside their creation from now on.
    static void paintAtOnce(bool fAtOnce);

private:
    template <int NUMBER, typename Result, typename... Args>
    void asks(const char* pszName, Result(WINAPI* pfn)(HWND, Args...));
    template <int NUMBER, typename Result, typename... Args>
    void acts(const char* pszName, Result(WINAPI* pfn)(HWND, Args...));
    void watchWindows();
};

// Programs that the library starts, and that don't run. One at a time.
class StartedPrograms {
public:
    StartedPrograms();

    // The command lines since the last call.
    static std::vector<std::string> take();
    // The program that the platform finds for a command line: it tries the text up to each blank
    // that isn't quoted, and for a bare name the current directory before the path. In full and in
    // lower case; empty if there is none.
    static std::string programOf(const std::string& command);
    // The text behind the program's name, as one argument without its quotes.
    static std::string argumentOf(const std::string& command);

    static std::vector<UINT> s_results;           // of the starts to come; then successes
    static std::function<void()> s_whileStarting; // what sent messages do meanwhile

private:
    ReplacedImport m_exec;
};

#endif
