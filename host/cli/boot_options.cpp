// What a blade boots from, and its other boot options.

#include "cli/command_tree.h"
#include "cli/names.h"
#include "cli/readers.h"

namespace cli
{

namespace
{

const request_name get_options = {0x0009, "Get System Boot Options"};
const request_name set_options = {0x0008, "Set System Boot Options"};

// Parameters.
constexpr uint8_t set_in_progress = 0;
constexpr uint8_t boot_flags = 5;

constexpr size_t longest_option = 487;

// The boot flags: whether they count, how long, and by which firmware; then, among others, from
// what.
constexpr uint8_t valid = 0x80;
constexpr uint8_t persistent = 0x40;
constexpr uint8_t by_efi = 0x20;
constexpr int device_shift = 2;

const name_table devices = {{0, "none"}, {1, "pxe"},   {2, "disk"}, {3, "safe"},
                            {4, "diag"}, {5, "cdrom"}, {6, "bios"}, {15, "floppy"}};

struct option_choice {
    uint8_t parameter = 0;
    uint8_t set = 0;
    bytes data;
};

bytes option(const blade &at, uint8_t parameter, uint8_t set)
{
    constexpr size_t head = 2; // version and number of the parameter
    constexpr uint8_t block = 0;
    const auto found = ask<boot_options_data>(get_options, at, ipmi_location_get_boot_options,
                                              parameter, set, block);
    bytes data(std::begin(found.data), std::end(found.data));
    if (may_be_cut_short(data)) {
        const bytes answer = exchange(get_options, at, {parameter, set, block}, head);
        data.resize(std::min(data.size(), answer.size() - head));
    }
    if ((found.parameter & 0x80) != 0)
        throw failure(exit_refused, "the blade marks the parameter as invalid: " + hex(data));
    return data;
}

void set_option(const blade &at, uint8_t parameter, const bytes &data)
{
    ask<uint8_t>(set_options, at, ipmi_location_set_boot_options, parameter, data.data(),
                 static_cast<uint32_t>(data.size()));
}

report get(const blade &at, const option_choice &chosen)
{
    const bytes data = option(at, chosen.parameter, chosen.set);
    return tell({{"parameter", chosen.parameter}, {"data", hex(data)}}, data);
}

report set(const blade &at, const option_choice &chosen)
{
    set_option(at, chosen.parameter, chosen.data);
    return tell({{"parameter", chosen.parameter}, {"data", hex(chosen.data)}});
}

struct device_choice {
    uint8_t device = 0;
    bool persistent = false;
    bool efi = false;
};

uint8_t device(const std::string &name)
{
    return number_named(devices, name);
}

std::vector<std::string> device_names()
{
    return all_names(devices);
}

report get_device(const blade &at)
{
    const bytes flags = option(at, boot_flags, 0);
    if (flags.size() < 2)
        throw failure(exit_refused,
                      "the boot flags have " + std::to_string(flags.size()) + " bytes, not 5");
    return tell({{"device", name_of(devices, flags[1] >> device_shift & 0x0F)},
                 {"valid", (flags[0] & valid) != 0},
                 {"persistent", (flags[0] & persistent) != 0},
                 {"efi", (flags[0] & by_efi) != 0}});
}

// Marks the options as being changed, so that two that do it at once do not mix theirs. Not every
// controller has the mark.
class options_change
{
  public:
    explicit options_change(const blade &at) : at_(at), marked_(mark(at)) {}
    options_change(const options_change &) = delete;
    options_change &operator=(const options_change &) = delete;

    // A failure on the way hides no other.
    ~options_change()
    {
        uint8_t completion_code = 0;
        constexpr uint8_t complete = 0;
        if (marked_)
            ipmi_location_set_boot_options(&at_.location, set_in_progress, &complete, 1,
                                           &completion_code);
    }

  private:
    static bool mark(const blade &at)
    {
        constexpr uint32_t no_such_parameter = 0x80;
        constexpr uint32_t invalid_field = 0xCC; // which some say instead
        try {
            set_option(at, set_in_progress, {1});
        } catch (const failure &refusal) {
            if (refusal.code != no_such_parameter && refusal.code != invalid_field)
                throw;
            return false;
        }
        return true;
    }

    const blade &at_;
    bool marked_;
};

report set_device(const blade &at, const device_choice &chosen)
{
    const auto first = static_cast<uint8_t>(valid | (chosen.persistent ? persistent : 0) |
                                            (chosen.efi ? by_efi : 0));
    const auto second = static_cast<uint8_t>(chosen.device << device_shift);
    const options_change change(at);
    set_option(at, boot_flags, {first, second, 0, 0, 0});
    return tell({{"device", name_of(devices, chosen.device)},
                 {"persistent", chosen.persistent},
                 {"efi", chosen.efi}});
}

} // namespace

void add_boot_options(const noun &chassis)
{
    const noun device_noun = chassis.noun_below("boot-device", "What the blade boots from");
    device_noun.verb("get", "Show what the blade boots from", get_device);
    device_noun.verb("set", "Set what the blade boots from next", set_device)
        .argument("DEVICE", &device_choice::device, device,
                  "none, pxe, disk, safe, diag, cdrom, bios or floppy")
        .choices(device_names)
        .flag("--persistent", &device_choice::persistent, "Every time, not only the next")
        .flag("--efi", &device_choice::efi, "By EFI, not by a legacy BIOS");

    const noun option = chassis.noun_below("boot-option", "The boot options in bytes");
    option.verb("get", "Show a boot option's first 5 bytes", get)
        .argument("N", &option_choice::parameter, number_from_to<uint8_t, 0, 127>,
                  "Parameter, 0 to 127")
        .option("--set", "N", &option_choice::set, number<uint8_t>,
                "Which of several values, 0 when not given")
        .binary();
    option.verb("set", "Set a boot option", set)
        .argument("N", &option_choice::parameter, number<uint8_t>,
                  "Parameter, 0 to 127; 128 more marks it as invalid")
        .argument("HEX", &option_choice::data, hex_up_to<longest_option>,
                  "Its bytes, e.g. 8004000000");
}

} // namespace cli
