// robot SCRIPT PICTURES LOCAL HOST [OPTIONS]: starts a program that uses KRHAUL, works it with real
// mouse and keyboard input, looks at its windows and at the disk after each step, and leaves
// pictures in the folder PICTURES. The program's own arguments are those from LOCAL on: folders, or
// the address of a server. The exit code is the number of steps that failed.
#include "looks.h"
#include "steps.h"

#include <iterator>
#include <stdio.h>
#include <string.h>

namespace {

// English, whose mnemonics are typed.
constexpr char SESSION_ARGUMENTS[] = "/language:EN";

using Tables = robot::StepTable (*const[5])();

struct Script {
    const char* name;
    const char* program; // beside this one
    const char* arguments;
    int idControl; // the window to be driven has this control; 0: the program's main window
    Tables tables;
};

constexpr Script SCRIPTS[] = {
    {"copy", "KRDEMO.EXE", "/copy", 0, {robot::copySteps}},
    {"server", "KRDEMO.EXE", SESSION_ARGUMENTS, IDC_DANDD_TOOLBAR, {robot::serverSteps}},
    {"terminal", "KRTERM.EXE", "", 0, {robot::terminalSteps}},
    {"demo",
     "KRDEMO.EXE",
     SESSION_ARGUMENTS,
     IDC_DANDD_TOOLBAR,
     {robot::transferSteps, robot::paneSteps, robot::keySteps, robot::dialogSteps,
      robot::windowSteps}},
};

int runSteps(robot::StepTable table)
{
    int failed = 0;
    for (int n = 0; n < table.count; ++n) {
        bool done = table.steps[n].run();
        failed += !done;
        printf("%s: %s\n", table.steps[n].name, done ? "done" : "FAILED");
        fflush(stdout);
    }
    return failed;
}

int runScript(const Script& script)
{
    int failed = 0;
    if (!robot::waitForWindow(script.idControl)) {
        printf("%s shows no window\n", script.program);
        return 1;
    }
    for (auto table : script.tables) {
        failed += table != nullptr ? runSteps(table()) : 0;
    }
    return failed;
}

} // namespace

int main(int argc, char** argv)
{
    const Script* found = nullptr;
    for (const Script& script : SCRIPTS) {
        found = argc >= 5 && strcmp(script.name, argv[1]) == 0 ? &script : found;
    }
    if (found == nullptr) {
        printf("usage: robot copy|server|terminal|demo PICTURES LOCAL HOST [OPTIONS]\n");
        return 2;
    }
    robot::setFolders(argv[2], argv[3], argv[4]);
    std::string arguments = found->arguments;
    for (int n = 3; n < argc; ++n) {
        arguments += std::string(" \"") + argv[n] + "\"";
    }
    if (!robot::startProgram(found->program, arguments)) {
        printf("%s can't be started\n", found->program);
        return 2;
    }
    int failed = runScript(*found);
    return robot::endProgram() ? failed : failed + 1;
}
