#include "chassisd/simulated/boot_options.h"

#include <set>

#include "chassisd/simulated/standard_parameter.h"

namespace chassisd::simulated
{

namespace
{

constexpr uint8_t boot_flags = 5;
constexpr uint8_t mailbox = 7;

constexpr uint8_t mailbox_blocks = 5; // of 16 bytes, each behind its number

std::vector<standard_parameter> table()
{
    return {
        {1, bytes(1)}, // service partition selector
        {2, bytes(1)}, // service partition scan
        {3, bytes(1)}, // when the flags are not cleared
        {4, bytes(2)}, // boot information acknowledge
        {5, bytes(5)}, // boot flags
        {6, bytes(9)}, // boot initiator information
        {7, bytes(17), access::writable, mailbox_blocks},
    };
}

} // namespace

class boot_options
{
  public:
    explicit boot_options(std::shared_ptr<const power_state> power) : power_(std::move(power)) {}

    // A parameter's number, with a bit that marks it invalid, and its value. Without a value the
    // mark alone is set.
    bytes set(const bytes &request)
    {
        const auto number = static_cast<uint8_t>(request[0] & ~is_invalid);
        refuse_if(!parameters_.has(number), parameter_unsupported);
        if (request.size() > 1)
            parameters_.set(number, {request.begin() + 1, request.end()});
        if (number == boot_flags)
            boots_when_flagged_ = power_->boots;
        if (request[0] & is_invalid)
            invalid_.insert(number);
        else
            invalid_.erase(number);
        return success();
    }

    bytes get(const bytes &request) const
    {
        constexpr uint8_t version = 0x01;
        const uint8_t number = request[0];
        bytes value = parameters_.get(number, number == mailbox ? request[1] : uint8_t{0});
        if (number == boot_flags && !flags_hold(value[0]))
            value[0] = static_cast<uint8_t>(value[0] & ~flags_valid);
        return success(version, number | (invalid_.count(number) != 0 ? is_invalid : 0), value);
    }

    void reset()
    {
        parameters_.reset();
        invalid_.clear();
    }

  private:
    static constexpr uint8_t is_invalid = 0x80;

    // Of the first byte of the flags.
    static constexpr uint8_t flags_valid = 0x80;
    static constexpr uint8_t for_all_boots = 0x40;

    // Flags are for the next boot, if they do not say that they are for all.
    bool flags_hold(uint8_t flags) const
    {
        return (flags & for_all_boots) != 0 || power_->boots == boots_when_flagged_;
    }

    const std::shared_ptr<const power_state> power_;
    standard_parameters parameters_{table()};
    std::set<uint8_t> invalid_;
    uint32_t boots_when_flagged_ = 0;
};

std::shared_ptr<boot_options> make_boot_options(std::shared_ptr<const power_state> power)
{
    return std::make_shared<boot_options>(std::move(power));
}

void reset_to_defaults(boot_options &options)
{
    options.reset();
}

command_table boot_options_commands(const std::shared_ptr<boot_options> &options)
{
    return {
        {netfn_chassis, 0x08, {1, 18}, on(options, &boot_options::set)},
        {netfn_chassis, 0x09, 3, on(options, &boot_options::get)},
    };
}

} // namespace chassisd::simulated
