#include "chassisd/simulated/lldp.h"

namespace chassisd::simulated
{

namespace
{

struct connection_info {
    bytes kept;

    void set(const bytes &info) { kept = info; }
    bytes get() const { return kept; }
};

} // namespace

parameter_table lldp_parameters()
{
    constexpr lengths any{0, 0xFFFF};
    const auto info = std::make_shared<connection_info>();
    return {
        {0x24, {{any, on(info, &connection_info::set)}}, {{0, on(info, &connection_info::get)}}},
    };
}

} // namespace chassisd::simulated
