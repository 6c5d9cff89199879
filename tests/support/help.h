// Help that is asked for, and not shown.
#ifndef TESTS_SUPPORT_HELP_H
#define TESTS_SUPPORT_HELP_H

#include "imports.h"

#include <string>
#include <vector>

// Keeps the calls for as long as the object lives. One at a time.
class HelpCalls {
public:
    struct Call {
        HWND hwndOwner;
        std::string file;
        UINT uCommand;
        ULONG_PTR data;
    };
    // KRUTILS names this file; null if it shows the help itself.
    explicit HelpCalls(const char* pszFile = "KRDEMO.HLP");

    // What has been asked for since the last call.
    static std::vector<Call> take();

private:
    ReplacedImport m_winHelp;
    ReplacedImport m_helpFile;
};

#endif
