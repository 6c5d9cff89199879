// What the robot does, step by step.
#ifndef ROBOT_STEPS_H
#define ROBOT_STEPS_H

namespace robot {

struct Step {
    const char* name;
    bool (*run)(); // false if the step didn't have its effect
};

struct StepTable {
    const Step* steps;
    int count;
};

// The steps for the sample caller. All but the first two begin and end with both panes on the
// folders of the run.
StepTable copySteps();   // with a status window alone
StepTable serverSteps(); // with a server, of whose files nothing is known
StepTable terminalSteps(); // for the sample terminal
StepTable transferSteps();
StepTable paneSteps();
StepTable keySteps();
StepTable dialogSteps();
StepTable windowSteps(); // closes the window at last

} // namespace robot

#endif
