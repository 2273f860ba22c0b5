#include "chassisd/simulated/standard_parameter.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t set_in_progress = 0;

// States of it. There is no third, "commit write": what is written counts at once.
enum progress : uint8_t { complete = 0, in_progress = 1 };

} // namespace

standard_parameters::standard_parameters(std::vector<standard_parameter> table)
    : table_(std::move(table))
{
    table_.push_back({set_in_progress, {complete}});
    reset();
}

const bytes &standard_parameters::get(uint8_t number, uint8_t set) const
{
    refuse_if(set >= row(number).sets, out_of_range);
    return values_.at({number, set});
}

void standard_parameters::set(uint8_t number, const bytes &value)
{
    const standard_parameter &written = row(number);
    refuse_if(written.allowed == access::read_only, parameter_read_only);
    refuse_if(value.size() != written.initial.size(), wrong_request_length);
    const uint8_t set = written.sets > 1 ? value[0] : uint8_t{0};
    refuse_if(set >= written.sets, out_of_range);
    if (number == set_in_progress) {
        refuse_if(value[0] > in_progress, invalid_field);
        refuse_if(value[0] == in_progress && get(number)[0] == in_progress, already_in_progress);
    }
    values_[{number, set}] = value;
}

bool standard_parameters::has(uint8_t number) const
{
    return values_.count({number, 0}) != 0;
}

void standard_parameters::reset()
{
    for (const standard_parameter &each : table_) {
        for (uint8_t set = 0; set < each.sets; ++set) {
            bytes &value = values_[{each.number, set}];
            value = each.initial;
            if (each.sets > 1)
                value[0] = set;
        }
    }
}

const standard_parameter &standard_parameters::row(uint8_t number) const
{
    const auto found =
        std::find_if(table_.begin(), table_.end(),
                     [=](const standard_parameter &each) { return each.number == number; });
    refuse_if(found == table_.end(), parameter_unsupported);
    return *found;
}

} // namespace chassisd::simulated
