// Whether a name that came from a host can become a file of the local directory.
#ifndef SAMPLE_SAFENAME_H
#define SAMPLE_SAFENAME_H

namespace sample {

// Returns null if the name is that of a plain file in the directory itself, else what is wrong
// with it. Asked for the name as it will be used, after the last change to it.
const char* nameProblem(const char* name);

} // namespace sample

#endif
