#include "chassisd/simulated/staging.h"

#include <map>

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

namespace
{

constexpr size_t edid_size = 128;

// A monitor's data (EDID), which comes in by the monitor's number, is the block of that number.
class staging_area
{
  public:
    bytes set_edid(const bytes &request)
    {
        blocks_[request[0]].assign(request.begin() + 1, request.end());
        return success();
    }

    // Zeros behind what there is.
    bytes get_block(const bytes &request) const
    {
        constexpr size_t block_size = 256;
        const auto found = blocks_.find(request[0]);
        bytes block = found == blocks_.end() ? bytes{} : found->second;
        block.resize(block_size);
        return success(block);
    }

  private:
    std::map<uint8_t, bytes> blocks_;
};

} // namespace

command_table staging_commands()
{
    const auto area = std::make_shared<staging_area>();
    return {
        {netfn_manager, 0x92, 1 + edid_size, on(area, &staging_area::set_edid)},
        {netfn_manager, 0x93, 1, on(area, &staging_area::get_block)},
    };
}

} // namespace chassisd::simulated
