// What the driver does, step by step.
#ifndef KRDEMO_STEPS_H
#define KRDEMO_STEPS_H

struct Step {
    const char* pszName;
    bool (*pfnRun)(); // false if the step didn't have its effect
};

struct StepTable {
    const Step* pSteps;
    int cSteps;
};

// Each begins and ends with both panes on the folders of the run.
StepTable transferSteps();
StepTable paneSteps();
StepTable dialogSteps();
StepTable serverSteps(); // instead of the others, which know the files of the built-in host
StepTable windowSteps(); // closes the window at last

#endif
