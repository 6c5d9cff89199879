// KRLANGCHK, the checker of language modules for those who make them. Its own resources hold the
// English texts.
#include "contract.h"

#include <stdio.h>
#include <string>

namespace {

using langcheck::Verdict;

// A console has a code page of its own; a file takes the text as the module has it.
void printLine(void* data, const char* text)
{
    std::string line = std::string(langcheck::fileNameOf(static_cast<char*>(data))) + ": " + text;
    if (GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_CHAR)
        CharToOemA(line.c_str(), &line[0]);
    puts(line.c_str());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        puts("KRLANGCHK MODULE.DLL... checks language modules of KRHAUL.\n"
             "Exit code: 0 all are whole, 1 something was found, 2 a module can't be checked.\n"
             "Warnings don't count.");
        return static_cast<int>(Verdict::UNREADABLE);
    }
    char own[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, own, sizeof own - 1);
    Verdict worst = Verdict::WHOLE;
    for (int i = 1; i < argc; i++) {
        const langcheck::Report report = {printLine, argv[i]};
        const Verdict verdict = langcheck::checkModule(argv[i], own, report);
        if (verdict > worst)
            worst = verdict;
    }
    return static_cast<int>(worst);
}
