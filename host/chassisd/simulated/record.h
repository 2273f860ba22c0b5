// Answers as bytes: of fields, and of parts of stored bytes.
#ifndef RUK_HOST_CHASSISD_SIMULATED_RECORD_H
#define RUK_HOST_CHASSISD_SIMULATED_RECORD_H

#include <algorithm>

#include "chassisd/fields.h"
#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

// The answer of a command that was carried out.
template <typename... Fields>
bytes success(const Fields &...fields)
{
    return record_of(completed, fields...);
}

// As much as there is of a stretch of stored bytes. At their end that is nothing.
inline bytes stretch_up_to(const bytes &stored, size_t offset, size_t count)
{
    refuse_if(offset > stored.size(), out_of_range);
    const auto from = stored.begin() + static_cast<std::ptrdiff_t>(offset);
    return {from, from + static_cast<std::ptrdiff_t>(std::min(count, stored.size() - offset))};
}

// A stretch of stored bytes that a reader asked for.
inline bytes stretch(const bytes &stored, size_t offset, size_t count)
{
    refuse_if(offset >= stored.size(), out_of_range);
    refuse_if(count > stored.size() - offset, cannot_return_that_many);
    return stretch_up_to(stored, offset, count);
}

} // namespace chassisd::simulated

#endif
