// Help in a program that has no help file.
#ifndef SAMPLE_HELP_H
#define SAMPLE_HELP_H

namespace sample {

// Lets the KRUTILS of the samples answer requests for help by a box. Another KRUTILS is left alone.
void useHelpBox();

} // namespace sample

#endif
