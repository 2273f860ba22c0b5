#include "chassisd/simulated/hardware.h"

#include <array>

namespace chassisd::simulated
{

namespace
{

// The server's (KVM) LED and the sled's drive LED. A reader gets a byte for each, in this order: 1
// when it blinks.
class leds
{
  public:
    // A LED's code, how it is to be lit, whether it blinks; then times on and off and a pattern,
    // which nobody sees here.
    void set(const bytes &fields)
    {
        enum code : uint8_t { server = 0x01, drive = 0x03 };
        constexpr uint8_t by_pattern = 0x02;
        refuse_if(fields[0] != server && fields[0] != drive, invalid_field);
        refuse_if(fields[1] != by_pattern, invalid_field);
        (fields[0] == server ? server_blinks_ : drive_blinks_) = fields[2] != 0;
    }

    bytes get() const { return record_of(server_blinks_, drive_blinks_); }

  private:
    bool server_blinks_ = false;
    bool drive_blinks_ = false;
};

// 256 registers of 8 bits. A request is an operation, a register's number (16 bits), a value (32
// bits) and the mask of a masked write, which leaves the bits outside it; then two bytes that mean
// nothing. The answer is the register as it is afterwards, and two bytes that mean nothing either.
class cpld
{
  public:
    bytes access(const bytes &request)
    {
        enum operation : uint8_t { read = 1, write = 2, masked_write = 3 };
        const uint16_t number = ruk::load_le16(&request[1]);
        const uint32_t value = ruk::load_le32(&request[3]);
        const uint8_t mask = request[7];
        refuse_if(request[0] < read || request[0] > masked_write, invalid_field);
        refuse_if(number >= registers_.size(), out_of_range);
        refuse_if(request[0] != read && value > 0xFF, out_of_range);

        uint8_t &accessed = registers_[number];
        if (request[0] == write)
            accessed = static_cast<uint8_t>(value);
        else if (request[0] == masked_write)
            accessed = static_cast<uint8_t>((accessed & ~mask) | (value & mask));
        return success(accessed, 0x00, 0x00);
    }

    // Its revision, and four bytes that mean nothing.
    bytes version() const { return success(registers_[0], bytes(4)); }

  private:
    std::array<uint8_t, 256> registers_ = {0x12}; // the first is the CPLD's revision
};

constexpr uint8_t boot_is_over = 0xAA;
constexpr std::chrono::milliseconds post_pace{10};

// The request's four bytes choose nothing: the code is the one that there is. Twelve bytes that it
// does not use come behind it.
bytes tell_post_code(time_point now, const power_state &power)
{
    return success(le32{post_code(now, power)}, bytes(12));
}

// How many codes there were since power-on, and these in their order, zeros behind them.
bytes tell_post_codes(time_point now, const power_state &power)
{
    constexpr size_t room = 129;
    constexpr uint8_t all_but_the_last = boot_duration / post_pace;
    const uint8_t last = post_code(now, power);
    bytes codes;
    for (uint8_t code = 1; code <= std::min(last, all_but_the_last); ++code)
        codes.push_back(code);
    if (last == boot_is_over)
        codes.push_back(last);
    const auto count = static_cast<int>(codes.size());
    codes.resize(room);
    return success(count, codes);
}

} // namespace

uint8_t post_code(time_point now, const power_state &power)
{
    if (!power.on)
        return 0x00;
    const auto booting_for = now - power.booted;
    if (booting_for >= boot_duration)
        return boot_is_over;
    return static_cast<uint8_t>(1 + booting_for / post_pace);
}

parameter_table hardware_parameters()
{
    const auto lights = std::make_shared<leds>();
    return {
        {0x0E, {{12, on(lights, &leds::set)}}, {{0, on(lights, &leds::get)}}},
    };
}

command_table hardware_commands(const environment &env, std::shared_ptr<const power_state> power)
{
    const auto logic = std::make_shared<cpld>();
    return {
        {netfn_manager, 0xBC, 10, on(logic, &cpld::access)},
        {netfn_manager, 0x33, 0, on(logic, &cpld::version)},
        {netfn_manager, 0xD4, 4,
         [now = env.now, power](const bytes &) { return tell_post_code(now(), *power); }},
        {netfn_manager, 0x99, 0,
         [now = env.now, power](const bytes &) { return tell_post_codes(now(), *power); }},
    };
}

} // namespace chassisd::simulated
