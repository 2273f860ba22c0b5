// What the tool's commands say of themselves beside their command line.
#ifndef RUK_HOST_MANUAL_MARKS_H
#define RUK_HOST_MANUAL_MARKS_H

#include "cli/vocabulary.h"
#include "manual/tree.h"

namespace manual
{

// Marks all commands of the tool; what is known is then good for nothing else.
void add_marks(command &tool, cli::vocabulary &known);

} // namespace manual

#endif
