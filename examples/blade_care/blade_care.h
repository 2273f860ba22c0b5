// What a chassis process may do for its blades: look for memory errors in their event logs, and
// power on those that are inserted.
#ifndef BLADE_CARE_H
#define BLADE_CARE_H

#include <ruk_ipmi.h>

// Counts the uncorrectable memory errors in a blade's event log. Returns 0, or the library's result
// for the command that failed; `count` is then left alone.
int count_memory_errors(const blade_location &blade, unsigned &count);

// From now on every blade that is inserted is powered on, unless its event log cannot be read or
// has memory errors: that one stays off until somebody has looked at it. Returns 0, or the
// library's status. Once a process.
uint32_t care_for_inserted_blades();

#endif
