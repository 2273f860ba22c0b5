// Files that the blade fetches when it is told their path, and what it is told of firmware updates
// and log bundles.
#ifndef RUK_HOST_CHASSISD_SIMULATED_FILE_TRANSFER_H
#define RUK_HOST_CHASSISD_SIMULATED_FILE_TRANSFER_H

#include "chassisd/simulated/parameter.h"

namespace chassisd::simulated
{

// How long after its path was told the copy of a file begins, and is done.
constexpr std::chrono::milliseconds copy_begins_after{250};
constexpr std::chrono::milliseconds copy_done_after{1000};

parameter_table file_transfer_parameters(const environment &env);

} // namespace chassisd::simulated

#endif
