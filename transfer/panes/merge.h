// The merge of changes that waited into the rows of their list.
#ifndef TRANSFER_PANES_MERGE_H
#define TRANSFER_PANES_MERGE_H

#include "transfer/panes/namesort.h"
#include "transfer/window/record.h"

namespace panes {

// Makes all changes, which stand in the order in which they came, with their kind as their tag.
// The list ends up as if they had been made one by one: so do its selection and its caret. Sorts
// the names. The window can end meanwhile.
void mergeChanges(XferWindowRecord* pRecord, int idControl, Names* pChanges);

} // namespace panes

#endif
